// No folder knows another one that it must not know.
#include "tests/house/IncludeRules.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <regex>
#include <set>

using house::checkIncludes;
using testing::IsEmpty;
using testing::SizeIs;

TEST(IncludeArrows, EveryIncludeOfTheProjectFollowsAnArrow)
{
    const auto top = house::sourceFolder();
    const auto sources = house::projectSources(top);
    ASSERT_GT(sources.size(), 20u);
    for (const std::string &path : sources) {
        for (const house::Finding &finding : checkIncludes(path, house::readFile(top / path)))
            ADD_FAILURE() << finding.file << ":" << finding.line << ": " << finding.include << ": " << finding.reason;
    }
}

TEST(IncludeArrows, EveryProjectHeaderThatIsIncludedIsThere)
{
    const auto top = house::sourceFolder();
    static const std::regex pattern(R"re(^\s*#\s*include\s*"([^"]+)")re", std::regex::multiline);
    for (const std::string &path : house::projectSources(top)) {
        const std::string text = house::readFile(top / path);
        for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match) {
            const std::string include = (*match)[1];
            EXPECT_TRUE(house::isGenerated(include) || path.starts_with("tests/house/") ||
                        std::filesystem::is_regular_file(top / include))
                << path << " includes " << include;
        }
    }
}

TEST(IncludeArrows, AnArrowAgainstTheOrderIsReportedWithItsLine)
{
    const auto findings = checkIncludes("geometry/Polygon.cpp", "// first\n#include \"definition/Dialog.h\"\n");
    ASSERT_THAT(findings, SizeIs(1));
    EXPECT_EQ(findings[0].line, 2u);
    EXPECT_EQ(findings[0].include, "definition/Dialog.h");
    EXPECT_EQ(findings[0].reason, "geometry may not include definition");
}

TEST(IncludeArrows, TheModuleAndTheHostDoNotKnowEachOther)
{
    for (const char *module : {"shell", "catalog", "geometry", "controls", "dialogs", "definition", "review"}) {
        const std::string include = std::string("#include \"") + module + "/X.h\"\n";
        EXPECT_THAT(checkIncludes("host/editor/A.cpp", include), SizeIs(1)) << module;
        EXPECT_THAT(checkIncludes("app/main.cpp", include), SizeIs(1)) << module;
        EXPECT_THAT(checkIncludes("contracts/A.h", include), SizeIs(1)) << module;
        for (const char *host : {"host/drawing/D.h", "host/Host.h", "app/Run.h"})
            EXPECT_THAT(checkIncludes(std::string(module) + "/A.cpp", std::string("#include \"") + host + "\"\n"),
                        SizeIs(1))
                << module << " -> " << host;
        EXPECT_THAT(checkIncludes("tests/acceptance/A.cpp", include), IsEmpty());
    }
}

TEST(IncludeArrows, TheFoldersOfTheHostStandInOrder)
{
    const std::vector<std::string> order = {"drawing", "services", "network", "editor", "sewage"};
    for (std::size_t from = 0; from < order.size(); ++from) {
        for (std::size_t to = 0; to < order.size(); ++to) {
            EXPECT_THAT(checkIncludes("host/" + order[from] + "/A.cpp", "#include \"host/" + order[to] + "/B.h\"\n"),
                        SizeIs(to <= from ? 0 : 1))
                << order[from] << " -> " << order[to];
        }
        EXPECT_THAT(checkIncludes("host/boundary/A.cpp", "#include \"host/" + order[from] + "/B.h\"\n"), SizeIs(1));
    }
    EXPECT_THAT(checkIncludes("host/boundary/A.cpp", "#include \"contracts/HostTypes.h\"\n"), SizeIs(1));
    EXPECT_THAT(checkIncludes("host/editor/A.cpp", "#include \"host/boundary/Regions.h\"\n"), IsEmpty());
    EXPECT_THAT(checkIncludes("host/drawing/dxf/A.cpp", "#include \"host/editor/B.h\"\n"), SizeIs(1))
        << "subfolders too";
}

TEST(IncludeArrows, SomeFoldersAreFreeOfQt)
{
    for (const char *include :
         {"<QString>", "<QtCore/QString>", "<QWidget>", "<qglobal.h>", "\"contracts/HostDialog.h\""}) {
        EXPECT_THAT(checkIncludes("geometry/A.cpp", std::string("#include ") + include + "\n"), SizeIs(1)) << include;
        EXPECT_THAT(checkIncludes("definition/A.cpp", std::string("#include ") + include + "\n"), IsEmpty()) << include;
    }
}

TEST(IncludeArrows, TheOverviewKnowsTheContractsAndOneHeaderOfTheModule)
{
    const auto findings = [](const char *from, const std::string &include) {
        return checkIncludes(from, "#include \"" + include + "\"\n");
    };
    for (const char *allowed :
         {"contracts/HostDialog.h", "overview/forest/NetworkForest.h", "controls/treelist/TreeListCtrl.h"})
        EXPECT_THAT(findings("overview/A.cpp", allowed), IsEmpty()) << allowed;
    for (const char *refused : {"controls/treelist/TreeListGlyphs.h", "controls/treelist/sub/TreeListCtrl.h",
                                "controls/rules/TreeListModel.h", "controls/WideText.h", "dialogs/DialogTexts.h",
                                "shell/ModuleFrame.h", "review/ReviewControls.h", "host/drawing/Drawing.h"})
        EXPECT_THAT(findings("overview/A.cpp", refused), SizeIs(1)) << refused;
    for (const char *refused : {"contracts/HostTypes.h", "controls/treelist/TreeListCtrl.h", "overview/A.h"})
        EXPECT_THAT(findings("overview/forest/A.cpp", refused), SizeIs(1)) << refused;
    for (const char *from : {"shell/A.cpp", "review/A.cpp", "controls/A.cpp", "host/editor/A.cpp", "app/A.cpp"})
        EXPECT_THAT(findings(from, "overview/A.h"), SizeIs(1)) << from;
    EXPECT_THAT(findings("geometry/A.cpp", "controls/treelist/TreeListCtrl.h"), SizeIs(1));
}

TEST(IncludeArrows, HeadersAreNamedFromTheTopFolder)
{
    EXPECT_THAT(checkIncludes("geometry/A.cpp", "#include \"Polygon.h\"\n"), SizeIs(1));
    EXPECT_THAT(checkIncludes("geometry/A.cpp", "#include \"geometry/../geometry/Polygon.h\"\n"), SizeIs(1));
    EXPECT_THAT(checkIncludes("geometry/A.cpp", "#include <contracts/HostTypes.h>\n"), SizeIs(1));
    EXPECT_THAT(checkIncludes("geometry/A.cpp", "#  include  \"geometry/Polygon.h\"\n#include <vector>\n"), IsEmpty());
    EXPECT_THAT(checkIncludes("definition/A.cpp", "#include \"ui_definition.h\"\n#include \"A.moc\"\n"), IsEmpty());
}

TEST(IncludeArrows, AFolderWithoutARuleIsReported)
{
    EXPECT_THAT(checkIncludes("newfolder/A.cpp", "#include <vector>\n"), SizeIs(1));
    EXPECT_THAT(checkIncludes("geometry/A.cpp", "#include \"newfolder/A.h\"\n"), SizeIs(1));
}
