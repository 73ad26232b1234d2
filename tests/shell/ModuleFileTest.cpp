// The module's file: what it shows to the loader.
#include <gmock/gmock.h>

#include <cstdio>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

/// Names of the symbols that nm lists with those options.
std::vector<std::string> symbols(const std::string &options)
{
    const std::string command = "nm " + options + " '" VELMOR_MODULE_FILE "'";
    const std::unique_ptr<FILE, int (*)(FILE *)> pipe(popen(command.c_str(), "r"), pclose);
    std::string text;
    char buffer[4096];
    while (pipe && std::fgets(buffer, sizeof buffer, pipe.get()))
        text += buffer;
    std::vector<std::string> names;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        names.push_back(line.substr(line.find_last_of(' ') + 1));
    return names;
}

} // namespace

TEST(ModuleFile, ShowsExactlyItsTwoEntryPoints)
{
    EXPECT_THAT(symbols("-D --defined-only"), testing::UnorderedElementsAre("acrxEntryPoint", "acrxGetApiVersion"));
}

TEST(ModuleFile, AsksTheHostForItsOperationsWhenItIsLoaded)
{
    const auto open = symbols("-D --undefined-only");
    EXPECT_THAT(open, testing::Contains(testing::HasSubstr("acrxSysRegistry")));
    EXPECT_THAT(open, testing::Contains(testing::HasSubstr("CAdUiBaseDialog")));
}
