#include "contracts/CoreServices.h"
#include "contracts/LogEngine.h"
#include "host/drawing/Journal.h"
#include "host/services/Icons.h"
#include "host/services/Services.h"
#include "host/services/Text.h"
#include "tests/host/services/TestFolder.h"

#include <gmock/gmock.h>

namespace velmor {
namespace {

using test::TestFolder;
using test::TestVariable;
using ZEMGis::CModuleConfiguration;

/// A program started over a resource folder and a user folder of the test's own.
class Configuration : public testing::Test {
protected:
    void start(const std::string &settings = {}, const std::string &language = "en")
    {
        if (!settings.empty())
            user.write("settings.cfg", settings);
        Services::instance().start({language}, {{resources.path()}, user.path()});
    }
    void TearDown() override
    {
        Services::instance().setNotice({});
        Journal::instance().setRecording(false);
    }
    TestFolder resources, user;
    TestVariable log{"VELMOR_LOG", nullptr}, logFile{"VELMOR_LOG_FILE", nullptr};
    CModuleConfiguration &configuration = *CModuleConfiguration::Instance();
};

TEST_F(Configuration, AKeyThatWasNotSetLeavesTheCallersDefault)
{
    start();
    int places = 4;
    double zoom = 2.0;
    std::wstring delimiter = L"_";

    EXPECT_EQ(configuration.GetGSValueInt(L"DECIMAL_PLACES_CATCHMENT", places), 0);
    EXPECT_EQ(configuration.GetGSValueDouble(L"DEFAULT_ZOOM", zoom), 0);
    EXPECT_EQ(configuration.GetGSValueString(L"CATCH_COUNTER_DELIMITER", delimiter), 0);
    EXPECT_EQ(configuration.GetGSValueInt(nullptr, places), 0);
    EXPECT_EQ(places, 4);
    EXPECT_EQ(zoom, 2.0);
    EXPECT_EQ(delimiter, L"_");
}

TEST_F(Configuration, AKeyThatWasSetAnswersInItsOwnTypeOnly)
{
    start("DECIMAL_PLACES_CATCHMENT = 2\nDEFAULT_ZOOM = 3\nCATCH_COUNTER_DELIMITER = -\n");
    int places = 4;
    double zoom = 2.0, wrong = 7.0;
    std::wstring delimiter = L"_";

    EXPECT_NE(configuration.GetGSValueInt(L"DECIMAL_PLACES_CATCHMENT", places), 0);
    EXPECT_NE(configuration.GetGSValueDouble(L"DEFAULT_ZOOM", zoom), 0);
    EXPECT_NE(configuration.GetGSValueString(L"CATCH_COUNTER_DELIMITER", delimiter), 0);
    EXPECT_EQ(configuration.GetGSValueDouble(L"DECIMAL_PLACES_CATCHMENT", wrong), 0);
    EXPECT_EQ(places, 2);
    EXPECT_EQ(zoom, 3.0);
    EXPECT_EQ(wrong, 7.0);
    EXPECT_EQ(delimiter, L"-");
}

TEST_F(Configuration, AnEmptyTextThatWasSetCountsAsSet)
{
    start("CATCH_COUNTER_DELIMITER =\n");
    std::wstring delimiter = L"_";

    EXPECT_NE(configuration.GetGSValueString(L"CATCH_COUNTER_DELIMITER", delimiter), 0);
    EXPECT_EQ(delimiter, L"");
}

TEST_F(Configuration, SettingTheZoomTakesEffectAtOnceAndOutlivesTheRun)
{
    start();
    int zoom = 0;

    EXPECT_NE(configuration.SetGSValueInt(L"ZOOM_ONOFF", 1), 0);
    EXPECT_NE(configuration.GetGSValueInt(L"ZOOM_ONOFF", zoom), 0);
    EXPECT_EQ(zoom, 1);

    start();
    zoom = 0;
    EXPECT_NE(configuration.GetGSValueInt(L"ZOOM_ONOFF", zoom), 0);
    EXPECT_EQ(zoom, 1);
}

TEST_F(Configuration, ARefusedSettingIsToldAndChangesNothing)
{
    resources.write("messages/en.txt", "settings.bad = %1 must be %2\nsettings.whole = a whole number from %1 to %2\n");
    start();
    std::wstring told;
    Services::instance().setNotice([&](const std::wstring &text) { told = text; });
    int color = 2;

    EXPECT_EQ(configuration.SetGSValueInt(L"MARK_COLOR", 1000), 0);
    EXPECT_EQ(configuration.GetGSValueInt(L"MARK_COLOR", color), 0);
    EXPECT_EQ(told, L"MARK_COLOR must be a whole number from 1 to 255");
}

TEST_F(Configuration, MessagesComeInTheChosenLanguageAndFollowTheSetting)
{
    resources.write("messages/en.txt", "60 = OK\n");
    resources.write("messages/hr.txt", "60 = U redu\n");
    TestVariable locale("LC_ALL", "en_GB.UTF-8");
    start({}, {});
    EXPECT_EQ(configuration.GetMsg(60), L"OK");

    ASSERT_TRUE(Services::instance().set("LANGUAGE", std::wstring(L"hr")));
    EXPECT_EQ(configuration.GetMsg(60), L"U redu");

    start({}, "en");
    EXPECT_EQ(configuration.GetMsg(60), L"OK") << "the command line counts before the settings";
    EXPECT_EQ(configuration.GetMsg(9), L"") << "a control without a text stays empty";
}

TEST_F(Configuration, PathsEndInTheirSeparatorAndAreEmptyForOtherKinds)
{
    std::filesystem::create_directories(resources.path() / "symbols");
    start();

    EXPECT_EQ(configuration.GetPath(L"Symbol"), wide((resources.path() / "symbols").string()) + L"/");
    EXPECT_EQ(configuration.GetPath(L"Support"), wide((user.path() / "support").string()) + L"/");
    EXPECT_EQ(configuration.GetPath(L"Other"), L"");
    EXPECT_EQ(configuration.GetPath(nullptr), L"");
}

TEST_F(Configuration, AMissingSymbolFolderGivesAnEmptyPath)
{
    start();
    EXPECT_EQ(configuration.GetPath(L"Symbol"), L"");

    start("SYMBOL_PATH = /no/such/folder\n");
    EXPECT_EQ(configuration.GetPath(L"Symbol"), L"");

    start("SYMBOL_PATH = " + user.path().string() + "\n");
    EXPECT_EQ(configuration.GetPath(L"Symbol"), wide(user.path().string()) + L"/");
}

TEST_F(Configuration, SupportFilesAreFoundInTheSetFoldersThenTheUsersThenTheShippedOnes)
{
    TestFolder first, second;
    resources.write("support/a.cfg", "shipped");
    resources.write("support/b.cfg", "shipped");
    resources.write("support/c.cfg", "shipped");
    user.write("support/b.cfg", "user");
    user.write("support/c.cfg", "user");
    second.write("c.cfg", "second");
    start("SUPPORT_PATH = " + first.path().string() + "; " + second.path().string() + "\n");
    const Paths &paths = Services::instance().paths();

    EXPECT_EQ(paths.supportFile("a.cfg"), resources.path() / "support/a.cfg");
    EXPECT_EQ(paths.supportFile("b.cfg"), user.path() / "support/b.cfg");
    EXPECT_EQ(paths.supportFile("c.cfg"), second.path() / "c.cfg");
    EXPECT_EQ(paths.supportFile("none.cfg"), "");
    EXPECT_EQ(paths.supportFile(""), "");
    EXPECT_EQ(paths.supportFile(resources.path() / "support/a.cfg"), resources.path() / "support/a.cfg");
    EXPECT_EQ(configuration.GetPath(L"Support"), wide(first.path().string()) + L"/");
}

TEST_F(Configuration, ACatalogueThatTheModuleWritesIsCopiedToTheUserBeforeItIsFound)
{
    const auto shipped = resources.write("support/ZEMXTerrainType.cfg", "<types/>");
    start();
    const Paths &paths = Services::instance().paths();

    EXPECT_EQ(paths.supportFile("ZEMXTerrainType.cfg"), user.path() / "support/ZEMXTerrainType.cfg");
    EXPECT_EQ(user.read("support/ZEMXTerrainType.cfg"), "<types/>");
    user.write("support/ZEMXTerrainType.cfg", "<mine/>");
    EXPECT_EQ(paths.supportFile("ZEMXTerrainType.cfg"), user.path() / "support/ZEMXTerrainType.cfg");
    EXPECT_EQ(user.read("support/ZEMXTerrainType.cfg"), "<mine/>") << "the user's own copy is never replaced";
    EXPECT_EQ(resources.read("support/ZEMXTerrainType.cfg"), "<types/>");
    EXPECT_TRUE(std::filesystem::exists(shipped));
}

TEST_F(Configuration, WhereTheUsersFolderTakesNoCopyTheShippedCatalogueIsFound)
{
    const auto shipped = resources.write("support/ZEMXTerrainType.cfg", "<types/>");
    user.write("support", "a file where the folder should be");
    start();

    EXPECT_EQ(Services::instance().paths().supportFile("ZEMXTerrainType.cfg"), shipped);
    EXPECT_EQ(user.read("support"), "a file where the folder should be");
}

TEST_F(Configuration, WithoutAWindowTheSettingsAreNotShownAndTheirFileIsTold)
{
    start();
    std::wstring told;
    Services::instance().setNotice([&](const std::wstring &text) { told = text; });
    Journal::instance().setRecording(true);

    EXPECT_EQ(configuration.ShowGSDialog(L"TCE1"), 0);
    EXPECT_THAT(utf8(told), testing::HasSubstr("settings.cfg"));
    Services::instance().setSettingsDialog([](const std::wstring &group) { return group == L"TCE2"; });
    EXPECT_EQ(configuration.ShowGSDialog(L"TCE2"), 1);
    EXPECT_EQ(configuration.ShowGSDialog(L"OTHER"), 0);
    EXPECT_EQ(configuration.ShowGSDialog(nullptr), 0);
    Services::instance().setSettingsDialog({});
    ASSERT_EQ(Journal::instance().entries().size(), 4u);
    EXPECT_EQ(Journal::instance().entries()[0], (JournalEntry{"CModuleConfiguration::ShowGSDialog", {"TCE1"}}));
}

TEST_F(Configuration, EveryReadStandsInTheJournalWithItsKeyAndWhetherThereWasAValue)
{
    start("ZOOM_ONOFF = 1\n");
    Journal::instance().setRecording(true);
    int whole = 0;
    double number = 0.0;
    std::wstring text;

    EXPECT_EQ(configuration.GetGSValueInt(L"ZOOM_ONOFF", whole), 1);
    EXPECT_EQ(configuration.GetGSValueDouble(L"DEFAULT_ZOOM", number), 0);
    EXPECT_EQ(configuration.GetGSValueString(L"ZOOM_ONOFF", text), 0) << "a value of another type";
    EXPECT_EQ(configuration.GetGSValueInt(nullptr, whole), 0);
    configuration.GetPath(L"Symbol");
    configuration.LoadImageW(L"NO_SUCH_ICON", 1, 16, 18, 32);
    Journal::instance().setRecording(false);
    EXPECT_THAT(Journal::instance().entries(),
                testing::ElementsAre(
                    JournalEntry{"CModuleConfiguration::GetGSValueInt", {"ZOOM_ONOFF", "1"}},
                    JournalEntry{"CModuleConfiguration::GetGSValueDouble", {"DEFAULT_ZOOM", "0"}},
                    JournalEntry{"CModuleConfiguration::GetGSValueString", {"ZOOM_ONOFF", "0"}},
                    JournalEntry{"CModuleConfiguration::GetGSValueInt", {"null", "0"}},
                    JournalEntry{"CModuleConfiguration::GetPath", {"Symbol"}},
                    JournalEntry{"CModuleConfiguration::LoadImageW", {"NO_SUCH_ICON", "1", "16", "18", "32"}}));
}

TEST_F(Configuration, IconsAreFilesByNameAndNullWhenThereIsNone)
{
    resources.write("icons/TEST_ICON.svg", "<svg/>");
    start();

    void *icon = configuration.LoadImageW(L"TEST_ICON", 1, 16, 16, 32);
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(static_cast<IconFile *>(icon)->path, resources.path() / "icons/TEST_ICON.svg");
    EXPECT_EQ(configuration.LoadImageW(L"NO_SUCH_ICON", 1, 16, 16, 32), nullptr);
    EXPECT_EQ(configuration.LoadImageW(L"../settings", 1, 16, 16, 32), nullptr);
    EXPECT_EQ(configuration.LoadImageW(nullptr, 1, 16, 16, 32), nullptr);
}

TEST_F(Configuration, TheHighlightColourIsASettingWithADefault)
{
    start();
    EXPECT_EQ(configuration.GetHighlightColor(), 6);
    start("HIGHLIGHT_COLOR = 1\n");
    EXPECT_EQ(configuration.GetHighlightColor(), 1);
}

TEST_F(Configuration, LoggingFollowsTheEnvironmentBeforeTheSettings)
{
    start();
    EXPECT_EQ(CLogEngine::GetLoggingOnOff(), 0);
    EXPECT_EQ(CLogEngine::GetLogFileFullPath(), (user.path() / "velmor.log").string());

    start("LOGGING = 1\nLOG_FILE = " + (user.path() / "other.log").string() + "\n");
    EXPECT_NE(CLogEngine::GetLoggingOnOff(), 0);
    EXPECT_EQ(CLogEngine::GetLogFileFullPath(), (user.path() / "other.log").string());

    TestVariable off("VELMOR_LOG", "0"), file("VELMOR_LOG_FILE", "here.log");
    start();
    EXPECT_EQ(CLogEngine::GetLoggingOnOff(), 0);
    EXPECT_EQ(CLogEngine::GetLogFileFullPath(), "here.log");
}

TEST_F(Configuration, PathsComeFromTheEnvironment)
{
    TestVariable chosen("VELMOR_RESOURCES", resources.path()), config("VELMOR_CONFIG_DIR", user.path());
    resources.write("messages/en.txt", "60 = OK\n");
    EXPECT_EQ(Paths::fromEnvironment().resource("messages/en.txt"), resources.path() / "messages/en.txt");
    EXPECT_EQ(Paths::fromEnvironment().resource("messages/hr.txt"), "");
    EXPECT_EQ(Paths::fromEnvironment().settingsFile(), user.path() / "settings.cfg");

    TestVariable none("VELMOR_CONFIG_DIR", nullptr), xdg("XDG_CONFIG_HOME", "/x");
    EXPECT_EQ(Paths::fromEnvironment().userFolder(), "/x/velmor");

    TestVariable noXdg("XDG_CONFIG_HOME", nullptr), home("HOME", "/people/me");
    EXPECT_EQ(Paths::fromEnvironment().userFolder(), "/people/me/.config/velmor");

    TestVariable source("VELMOR_RESOURCES", nullptr);
    EXPECT_TRUE(std::filesystem::exists(Paths::fromEnvironment().resource("messages/en.txt")));
}

TEST(ActiveCommand, IsToldForAsLongAsOneGuardLives)
{
    auto &framework = *ZEMGis::Notification::CNotificationFramework::Instance();
    EXPECT_EQ(framework.IsCommandActive(), 0);
    {
        ZEMGis::Notification::SetActiveCommand outer(L"CA_SAVE");
        EXPECT_NE(framework.IsCommandActive(), 0);
        {
            ZEMGis::Notification::SetActiveCommand inner(L"CA_ZOOM");
        }
        EXPECT_NE(framework.IsCommandActive(), 0);
    }
    EXPECT_EQ(framework.IsCommandActive(), 0);
}

TEST(ActiveCommand, AHandlerThatLeavesEarlyEndsItsGuard)
{
    const auto handler = [](bool early) {
        ZEMGis::Notification::SetActiveCommand guard(L"CA_LAYER");
        if (early)
            return 1;
        return 2;
    };
    Journal::instance().setRecording(true);
    EXPECT_EQ(handler(true), 1);
    Journal::instance().setRecording(false);

    EXPECT_EQ(ZEMGis::Notification::CNotificationFramework::Instance()->IsCommandActive(), 0);
    ASSERT_EQ(Journal::instance().entries().size(), 2u);
    EXPECT_EQ(Journal::instance().entries()[0], (JournalEntry{"SetActiveCommand", {"CA_LAYER"}}));
    EXPECT_EQ(Journal::instance().entries()[1], (JournalEntry{"~SetActiveCommand", {"CA_LAYER"}}));
}

} // namespace
} // namespace velmor
