// The pictures of the documents: each that is named is there, and each that is there is named.
#include "tests/house/IncludeRules.h"

#include <gmock/gmock.h>

#include <regex>
#include <set>

namespace {

using testing::IsEmpty;

/// Files that a Markdown text shows from the folder pictures.
std::set<std::string> picturesOf(const std::string &text)
{
    static const std::regex pattern("!\\[[^\\]]*\\]\\(pictures/([^)\\s]+)\\)");
    std::set<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match)
        found.insert((*match)[1]);
    return found;
}

TEST(Pictures, TheDocumentsNameEachPictureThatIsThereAndNoOther)
{
    namespace fs = std::filesystem;
    const fs::path docs = house::sourceFolder() / "docs";
    std::set<std::string> named, there;
    for (const fs::directory_entry &file : fs::directory_iterator(docs)) {
        if (file.path().extension() == ".md")
            named.merge(picturesOf(house::readFile(file.path())));
    }
    for (const fs::directory_entry &file : fs::directory_iterator(docs / "pictures"))
        there.insert(file.path().filename().string());
    EXPECT_GT(named.size(), 10u);
    EXPECT_EQ(named, there);
}

TEST(Pictures, APictureIsRecognisedByItsLink)
{
    EXPECT_EQ(picturesOf("![A b](pictures/a-b.png) | ![](pictures/c.png)\n[d](pictures/d.png) ![e](e.png)"),
              (std::set<std::string>{"a-b.png", "c.png"}));
    EXPECT_THAT(picturesOf("pictures/x.png"), IsEmpty());
}

} // namespace
