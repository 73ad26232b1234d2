// The texts of the drawing are those of the shipped English file, wherever the test runs.
#include "host/services/Services.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

class EnglishTexts final : public testing::Environment {
    void SetUp() override
    {
        const char *source = std::getenv("VELMOR_SOURCE_DIR");
        const std::filesystem::path resources = std::filesystem::path(source ? source : ".") / "resources";
        velmor::Services::instance().start({.language = "en"}, velmor::Paths({resources}, {}));
    }
};

[[maybe_unused]] const auto *environment = testing::AddGlobalTestEnvironment(new EnglishTexts);

} // namespace
