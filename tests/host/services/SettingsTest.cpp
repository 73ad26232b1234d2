#include "host/services/Settings.h"

#include "tests/host/services/TestFolder.h"

#include <gmock/gmock.h>

namespace velmor {
namespace {

using test::TestFolder;
using testing::HasSubstr;

TEST(Settings, AMissingFileHoldsNoSettingsAndIsNoFault)
{
    TestFolder folder;
    Settings settings;
    settings.load(folder.path() / "settings.cfg");

    EXPECT_FALSE(settings.value("DEFAULT_ZOOM"));
    EXPECT_TRUE(settings.findings().empty());
    EXPECT_EQ(settings.valueOrStandard("DEFAULT_ZOOM"), SettingValue(1.5));
}

TEST(Settings, WhatWasSetIsReadBackInItsTypeByTheNextRun)
{
    TestFolder folder;
    Settings first;
    first.load(folder.path() / "deep" / "settings.cfg");
    ASSERT_TRUE(first.set("DEFAULT_ZOOM", 2.125));
    ASSERT_TRUE(first.set("ZOOM_ONOFF", 1));
    ASSERT_TRUE(first.set("CATCH_NAME_PREFIX", std::wstring(L" Š- ")));

    Settings second;
    second.load(first.file());

    EXPECT_EQ(second.value("DEFAULT_ZOOM"), SettingValue(2.125));
    EXPECT_EQ(second.value("ZOOM_ONOFF"), SettingValue(1));
    EXPECT_EQ(second.value("CATCH_NAME_PREFIX"), SettingValue(std::wstring(L" Š- ")));
    EXPECT_TRUE(second.findings().empty());
}

TEST(Settings, SettingAKeyChangesItsLineAndNoOther)
{
    TestFolder folder;
    const auto file =
        folder.write("settings.cfg", "# mine\r\nOTHER_PROGRAM = kept\nZOOM_ONOFF = 0\nnonsense\n\nMARK_COLOR = 5");
    Settings settings;
    settings.load(file);

    ASSERT_TRUE(settings.set("ZOOM_ONOFF", 1));
    EXPECT_EQ(folder.read("settings.cfg"),
              "# mine\r\nOTHER_PROGRAM = kept\nZOOM_ONOFF = 1\nnonsense\n\nMARK_COLOR = 5\n");
    ASSERT_TRUE(settings.set("LOGGING", 1));
    EXPECT_THAT(folder.read("settings.cfg"), HasSubstr("MARK_COLOR = 5\nLOGGING = 1\n"));
    ASSERT_TRUE(settings.reset("ZOOM_ONOFF"));
    EXPECT_EQ(folder.read("settings.cfg"), "# mine\r\nOTHER_PROGRAM = kept\nnonsense\n\nMARK_COLOR = 5\nLOGGING = 1\n");
    EXPECT_FALSE(settings.value("ZOOM_ONOFF"));
}

TEST(Settings, WhatAnotherProgramWroteMeanwhileStays)
{
    TestFolder folder;
    const auto file = folder.write("settings.cfg", "ZOOM_ONOFF = 0\n");
    Settings settings;
    settings.load(file);
    folder.write("settings.cfg", "ZOOM_ONOFF = 0\nMARK_COLOR = 7\n");

    ASSERT_TRUE(settings.set("ZOOM_ONOFF", 1));
    EXPECT_EQ(folder.read("settings.cfg"), "ZOOM_ONOFF = 1\nMARK_COLOR = 7\n");
}

TEST(Settings, AValueOfTheWrongTypeOrBeyondTheLimitsIsPassedOverWithFileAndLine)
{
    TestFolder folder;
    const auto file = folder.write("settings.cfg", "MARK_COLOR = blue\nMARK_COLOR = 256\nDEFAULT_ZOOM = 0\n"
                                                   "CATCH_HATCH_SCALE = 2,5\nZOOM_ONOFF = 1 \n");
    Settings settings;
    settings.load(file);

    EXPECT_FALSE(settings.value("MARK_COLOR"));
    EXPECT_FALSE(settings.value("DEFAULT_ZOOM"));
    EXPECT_EQ(settings.value("CATCH_HATCH_SCALE"), SettingValue(2.5)) << "a decimal comma counts as a point";
    EXPECT_EQ(settings.value("ZOOM_ONOFF"), SettingValue(1));
    ASSERT_EQ(settings.findings().size(), 3u);
    EXPECT_THAT(settings.findings()[1].message(),
                HasSubstr("settings.cfg:2: MARK_COLOR must be a whole number from 1 to 255, not \"256\""));
}

TEST(Settings, SettingBeyondTheLimitsOrInAnotherTypeIsRefused)
{
    TestFolder folder;
    Settings settings;
    settings.load(folder.path() / "settings.cfg");

    EXPECT_EQ(settings.set("MARK_COLOR", 0).status, FileStatus::Refused);
    EXPECT_EQ(settings.set("MARK_COLOR", 2.0).status, FileStatus::Refused);
    EXPECT_EQ(settings.set("A = B", 2.0).status, FileStatus::Refused);
    EXPECT_EQ(settings.set("", 2).status, FileStatus::Refused);
    EXPECT_FALSE(std::filesystem::exists(settings.file()));
}

TEST(Settings, AFileThatCannotBeWrittenLeavesTheOldOneAndSaysSo)
{
    TestFolder folder;
    std::filesystem::create_directories(folder.path() / "settings.cfg");
    Settings settings;
    settings.load(folder.path() / "settings.cfg");
    EXPECT_EQ(settings.findings().size(), 1u);

    const SaveResult saved = settings.set("ZOOM_ONOFF", 1);

    EXPECT_FALSE(saved);
    EXPECT_THAT(saved.message, HasSubstr("settings.cfg"));
    EXPECT_EQ(settings.value("ZOOM_ONOFF"), SettingValue(1)) << "it still counts for this run";
    EXPECT_TRUE(std::filesystem::is_directory(folder.path() / "settings.cfg"));
}

TEST(Settings, EveryKeyHasADefaultWithinItsLimitsAndStandsOnce)
{
    std::vector<std::string> keys;
    for (const SettingSpec &spec : settingTable()) {
        keys.emplace_back(spec.key);
        const int *whole = std::get_if<int>(&spec.standard);
        const double *real = std::get_if<double>(&spec.standard);
        if (whole || real) {
            const double standard = whole ? *whole : *real;
            EXPECT_TRUE(standard >= spec.lowest && standard <= spec.highest) << spec.key;
        }
        EXPECT_EQ(findSetting(spec.key), &spec);
    }
    EXPECT_THAT(keys, testing::IsSupersetOf({"DECIMAL_PLACES_CATCHMENT", "DEFAULT_ZOOM", "ZOOM_ONOFF", "MARK_COLOR",
                                             "CATCH_HATCH_SCALE", "CATCH_HATCH_COLOR_DEFINED", "CATCH_HATCH_COLOR_TEMP",
                                             "CATCH_NAME_PREFIX", "CATCH_NAME_SUFIX", "CATCH_COUNTER_DELIMITER"}));
}

TEST(Settings, TheZoomFactorsDefaultIsTheOneOfTheGroupThatShowsIt)
{
    TestFolder folder;
    Settings settings;
    settings.load(folder.path() / "settings.cfg");

    EXPECT_EQ(settings.valueOrStandard("DEFAULT_ZOOM", kGroupDefinition), SettingValue(1.5));
    EXPECT_EQ(settings.valueOrStandard("DEFAULT_ZOOM", kGroupReview), SettingValue(2.0));
    EXPECT_EQ(settings.valueOrStandard("HIGHLIGHT_COLOR", kGroupReview), SettingValue(6));
    ASSERT_TRUE(settings.set("DEFAULT_ZOOM", 3.0));
    EXPECT_EQ(settings.valueOrStandard("DEFAULT_ZOOM", kGroupReview), SettingValue(3.0));
}

TEST(Settings, TheTwoDialogGroupsAreKnownByName)
{
    EXPECT_EQ(settingGroup(L"TCE1"), kGroupDefinition);
    EXPECT_EQ(settingGroup(L"TCE2"), kGroupReview);
    EXPECT_EQ(settingGroup(L"TCE3"), 0u);
    EXPECT_EQ(findSetting("NO_SUCH_KEY"), nullptr);
}

} // namespace
} // namespace velmor
