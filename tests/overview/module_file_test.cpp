// The second module's file: what it shows, and what it stands on.
#include <gmock/gmock.h>

#include <cstdio>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

using testing::HasSubstr;
using testing::Not;
using testing::UnorderedElementsAre;

namespace {

std::string outputOf(const std::string &command)
{
    const std::unique_ptr<FILE, int (*)(FILE *)> pipe(popen(command.c_str(), "r"), pclose);
    std::string text;
    char buffer[4096];
    while (pipe && std::fgets(buffer, sizeof buffer, pipe.get()))
        text += buffer;
    return text;
}

} // namespace

TEST(OverviewFile, ShowsItsTwoEntryPointsAndNothingElse)
{
    std::vector<std::string> names;
    std::istringstream lines(outputOf("nm --format=posix -D --defined-only '" VELMOR_OVERVIEW_FILE "'"));
    for (std::string line; std::getline(lines, line);)
        names.push_back(line.substr(0, line.find(' ')));
    EXPECT_THAT(names, UnorderedElementsAre("acrxEntryPoint", "acrxGetApiVersion"));
}

TEST(OverviewFile, TakesTheTreeListFromTheFirstModuleThatLiesBesideIt)
{
    const std::string needs = outputOf("readelf -d '" VELMOR_OVERVIEW_FILE "'");
    EXPECT_THAT(needs, HasSubstr("[zemxvelmor.so]"));
    EXPECT_THAT(needs, HasSubstr("[$ORIGIN"));
    EXPECT_THAT(needs, Not(HasSubstr("velmorhost"))) << "any host will do";
    const std::string open = outputOf("nm -C -D --undefined-only '" VELMOR_OVERVIEW_FILE "'");
    for (const char *name : {"CTreeListCtrl::CTreeListCtrl(QWidget*)", "CTreeListModel::InsertItem", "CAdUiBaseDialog"})
        EXPECT_THAT(open, HasSubstr(name));
}
