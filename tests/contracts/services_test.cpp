// The core services: boxes, selections, texts, paths, settings, attached data, the guard, GUIDs, polygon texts.
#include "tests/contracts/ContractsFixture.h"

#include "contracts/HostDialog.h"
#include "contracts/NetworkTopology.h"
#include "host/drawing/Journal.h"
#include "host/drawing/Transient.h"
#include "host/network/Network.h"
#include "host/services/Text.h"

#include <QCoreApplication>
#include <QIcon>
#include <QProcess>
#include <QProcessEnvironment>

#include <set>

namespace velmor::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using ZEMGis::CModuleConfiguration;
using ZEMGis::Data::CDataBox;
using ZEMGis::Data::CDataRW;
using ZEMGis::Notification::CNotificationFramework;
using ZEMGis::Notification::SetActiveCommand;

class ServicesContract : public ContractsFixture {
protected:
    static CModuleConfiguration &configuration() { return *CModuleConfiguration::Instance(); }
    static int isActive() { return CNotificationFramework::Instance()->IsCommandActive(); }
};

TEST_F(ServicesContract, ABoxHoldsItsFourKindsAndAnEmptyTextIsNotNothing)
{
    EXPECT_FALSE(CDataBox().IsNotNull());
    EXPECT_TRUE(CDataBox(L"").IsNotNull());
    EXPECT_TRUE(CDataBox(0).IsNotNull());
    EXPECT_TRUE(CDataBox(CStringArray{}).IsNotNull());
    EXPECT_EQ(static_cast<int>(CDataBox(7.9)), 7);
    EXPECT_EQ(static_cast<std::wstring>(CDataBox(7)), L"7");
    EXPECT_EQ(static_cast<std::wstring>(CDataBox(L"text")), L"text");
    CStringArray list{L"before"};
    EXPECT_FALSE(CDataBox(1.0).GetArrayCopy(list));
    EXPECT_THAT(list, ElementsAre(L"before"));
}

TEST_F(ServicesContract, AttachedArraysOfNoneAndOfAHundredTextsStayWithTheirEntity)
{
    const AcDbObjectId none = line(0, 0, 1, 0), many = line(0, 1, 1, 1), plain = line(0, 2, 1, 2);
    CStringArray hundred;
    for (int i = 0; i < 100; ++i)
        hundred.push_back(L"{GUID-" + std::to_wstring(i) + L"} Č; \"" +
                          std::wstring(static_cast<std::size_t>(i), L'x'));
    const std::wstring handles[] = {handleTextOf(none), handleTextOf(many), handleTextOf(plain)};
    {
        CZEMCEntityPtr a(none, AcDb::kForWrite), b(many, AcDb::kForWrite), c(plain, AcDb::kForWrite);
        EXPECT_NE(CDataRW::Write(L"SLIV_ISLANDS", a, CDataBox(CStringArray{}), nullptr), 0);
        EXPECT_NE(CDataRW::Write(L"SLIV_ISLANDS", b, CDataBox(hundred), nullptr), 0);
        EXPECT_NE(CDataRW::Write(L"SLIV_MAIN_AREA", c, CDataBox(L""), nullptr), 0);
    }
    {
        CZEMCEntityPtr reading(plain, AcDb::kForRead);
        EXPECT_EQ(CDataRW::Write(L"SLIV_MAIN_AREA", reading, CDataBox(L"x"), nullptr), 0)
            << "the entity must be open for writing";
    }
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        CZEMCEntityPtr a(handles[0].c_str(), AcDb::kForRead), b(handles[1].c_str(), AcDb::kForRead),
            c(handles[2].c_str(), AcDb::kForRead);
        CDataBox box;
        CStringArray list{L"before"};
        CDataRW::Read(L"SLIV_ISLANDS", a, box, 0, nullptr);
        EXPECT_TRUE(box.IsNotNull() && box.GetArrayCopy(list));
        EXPECT_TRUE(list.empty());
        CDataBox texts;
        CDataRW::Read(L"SLIV_ISLANDS", b, texts, 0, nullptr);
        EXPECT_TRUE(texts.GetArrayCopy(list));
        EXPECT_EQ(list, hundred);
        CDataBox empty, absent;
        CDataRW::Read(L"SLIV_MAIN_AREA", c, empty, 0, nullptr);
        EXPECT_EQ(empty, CDataBox(L""));
        CDataRW::Read(L"SLIV_MAIN_AREA", a, absent, 0, nullptr);
        EXPECT_FALSE(absent.IsNotNull());
    }
    drawing().erase(entityOf(byHandle(handles[1])));
    reopen();
    EXPECT_THAT(savedText(), testing::Not(HasSubstr("{GUID-42}")));
}

TEST_F(ServicesContract, ASelectionLetsItsSectionsLive)
{
    ASSERT_TRUE(importInpText(drawing(),
                              "[OPTIONS]\nFLOW_UNITS CMS\n[JUNCTIONS]\nA 1\n[OUTFALLS]\nB 0 FREE\n[CONDUITS]\n"
                              "S A B 50 0.01\n[COORDINATES]\nA 10 50\nB 90 50\n",
                              "net.inp"));
    const auto section = drawing().component<Network>().sectionByName(L"S");
    const long before = section.use_count();
    auto *set = new ZEMGis::Selection::CSelectionSet;
    for (int i = 0; i < 3; ++i)
        set->m_sections.push_back(section);
    set->m_extra.push_back(section);
    EXPECT_EQ(section.use_count(), before + 4);
    delete set;
    EXPECT_EQ(section.use_count(), before);
    EXPECT_EQ(section->GetName(), L"S");
}

TEST_F(ServicesContract, TextsComeFromTheUsersFileAndAnAbsentNumberIsEmpty)
{
    const std::wstring shipped = configuration().GetMsg(1993);
    ASSERT_THAT(shipped, HasSubstr(L"%d")) << "a text with a place for a number";
    EXPECT_EQ(configuration().GetMsg(4294967295u), L"");
    std::filesystem::create_directories(folder / "user" / "messages");
    std::ofstream(folder / "user" / "messages" / "en.txt") << "60 = Go on\n1993 = %d of mine\n67 = bad %s\n";
    const std::wstring cancel = configuration().GetMsg(67);
    startServices("en");
    EXPECT_EQ(configuration().GetMsg(60), L"Go on");
    EXPECT_EQ(configuration().GetMsg(1993), L"%d of mine");
    EXPECT_EQ(configuration().GetMsg(67), cancel) << "a text that can't be filled in is refused";
    std::filesystem::remove(folder / "user" / "messages" / "en.txt");
    startServices("en");
    EXPECT_EQ(configuration().GetMsg(1993), shipped);
}

TEST_F(ServicesContract, PathsEndWithTheirSeparatorAndAreEmptyWhenThereIsNone)
{
    for (const wchar_t *kind : {L"Support", L"Symbol"})
        EXPECT_EQ(configuration().GetPath(kind).back(), L'/') << utf8(kind);
    EXPECT_EQ(configuration().GetPath(L"Other"), L"");
    EXPECT_EQ(configuration().GetPath(nullptr), L"");
    ASSERT_TRUE(Services::instance().set("SYMBOL_PATH", (folder / "nowhere").wstring()));
    EXPECT_EQ(configuration().GetPath(L"Symbol"), L"");
    Services::instance().start({.language = "en"}, Paths({}, {}));
    EXPECT_EQ(configuration().GetPath(L"Support"), L"");
}

TEST_F(ServicesContract, ASettingOfTheWrongKindOrAbsentLeavesTheValue)
{
    int number = -5;
    double real = -5.0;
    std::wstring text = L"before";
    EXPECT_EQ(configuration().GetGSValueInt(L"DECIMAL_PLACES_CATCHMENT", number), 0);
    EXPECT_EQ(configuration().GetGSValueDouble(L"DEFAULT_ZOOM", real), 0);
    EXPECT_EQ(configuration().GetGSValueString(L"CATCH_NAME_PREFIX", text), 0);
    ASSERT_TRUE(Services::instance().set("CATCH_NAME_PREFIX", std::wstring(L"12")));
    EXPECT_EQ(configuration().GetGSValueInt(L"CATCH_NAME_PREFIX", number), 0);
    EXPECT_EQ(configuration().GetGSValueDouble(L"CATCH_NAME_PREFIX", real), 0);
    std::ofstream(folder / "user" / "settings.cfg") << "MARK_COLOR = green\nDEFAULT_ZOOM = far\n";
    startServices("en");
    EXPECT_EQ(configuration().GetGSValueInt(L"MARK_COLOR", number), 0);
    EXPECT_EQ(configuration().GetGSValueDouble(L"DEFAULT_ZOOM", real), 0);
    EXPECT_EQ(number, -5);
    EXPECT_EQ(real, -5.0);
    EXPECT_EQ(text, L"before");
}

/// Runs in a process of its own (see below).
TEST(OtherProcess, DISABLED_SetsZoom)
{
    Services::instance().start({.language = "en"});
    ASSERT_NE(CModuleConfiguration::Instance()->SetGSValueInt(L"ZOOM_ONOFF", 1), 0);
}

TEST_F(ServicesContract, WhatOneProcessSetsTheNextOneReads)
{
    int value = 0;
    startServices("en");
    EXPECT_EQ(configuration().GetGSValueInt(L"ZOOM_ONOFF", value), 0);
    QProcess other;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("VELMOR_CONFIG_DIR"), QString::fromStdString((folder / "user").string()));
    other.setProcessEnvironment(environment);
    other.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--gtest_filter=OtherProcess.*"), QStringLiteral("--gtest_also_run_disabled_tests")});
    ASSERT_TRUE(other.waitForFinished(60000));
    ASSERT_EQ(other.exitCode(), 0) << other.readAllStandardOutput().toStdString();
    startServices("en");
    EXPECT_NE(configuration().GetGSValueInt(L"ZOOM_ONOFF", value), 0);
    EXPECT_EQ(value, 1);
}

TEST_F(ServicesContract, TheHighlightColourFollowsItsSetting)
{
    box(10, 10, 90, 90);
    const auto litWith = [&](int color) {
        EXPECT_TRUE(Services::instance().set("HIGHLIGHT_COLOR", color));
        EXPECT_EQ(configuration().GetHighlightColor(), color);
        drawing().component<TransientGraphics>().drawTemporary(*entities().front(),
                                                               configuration().GetHighlightColor());
        const QImage image = picture();
        acedRedraw(nullptr, 4);
        return image;
    };
    EXPECT_GT(differences(litWith(1), litWith(5)), 100);
}

TEST_F(ServicesContract, IconsStandOnButtonsWithTheirTips)
{
    std::set<std::wstring> names{L"CATCHMENT_RAIN", L"CATCHMENT_HOME", L"CATCHMENT_IND"};
    for (const auto &file : std::filesystem::directory_iterator(std::filesystem::path(VELMOR_TEST_RESOURCES) / "icons"))
        names.insert(file.path().stem().wstring());
    EXPECT_GE(names.size(), 17u);
    for (const std::wstring &each : names) {
        const wchar_t *name = each.c_str();
        ZEMGis::Utility::CZEMBitmapButton button;
        button.resize(32, 32);
        const QImage blank = button.grab().toImage();
        button.SetButtonIcon(name, 1, 24, 24, 0);
        button.SetToolTip(L"what it does");
        EXPECT_GT(differences(blank, button.grab().toImage()), 20) << utf8(name);
        EXPECT_EQ(button.iconSize(), QSize(24, 24));
        EXPECT_EQ(button.toolTip(), QStringLiteral("what it does"));
        EXPECT_NE(configuration().LoadImageW(name, 1, 16, 16, 32), nullptr);
    }
    EXPECT_EQ(configuration().LoadImageW(L"NO SUCH", 1, 16, 16, 32), nullptr);
}

TEST_F(ServicesContract, TheGuardNestsAndEndsOnAnException)
{
    EXPECT_EQ(isActive(), 0);
    {
        const SetActiveCommand outer(L"CA_SAVE");
        {
            const SetActiveCommand inner(L"CA_ZOOM");
            EXPECT_NE(isActive(), 0);
        }
        EXPECT_NE(isActive(), 0) << "the outer one still runs";
    }
    EXPECT_EQ(isActive(), 0);
    try {
        const SetActiveCommand first(L"CA_SAVE"), second(nullptr);
        throw std::runtime_error("out");
    } catch (const std::runtime_error &) {
    }
    EXPECT_EQ(isActive(), 0);
}

TEST_F(ServicesContract, AHundredThousandGuidsAreAllDifferent)
{
    std::set<std::wstring> guids;
    for (int i = 0; i < 100000; ++i)
        guids.insert(ZEMGis::Utility::CUtility::CreateGUID());
    EXPECT_EQ(guids.size(), 100000u);
    EXPECT_EQ(guids.begin()->size(), 38u);
}

TEST_F(ServicesContract, TagsOfABlockComeInTheOrderOfItsDefinition)
{
    for (const bool afterwards : {false, true}) {
        for (const std::size_t count : {0u, 2u, 6u}) {
            const std::wstring name = L"WITH" + std::to_wstring(count);
            if (!afterwards) {
                BlockRecord &block = drawing().addBlock(name);
                for (std::size_t i = 0; i < count; ++i) {
                    TextShape shape;
                    drawing().append(std::make_unique<AttributeDefinitionEntity>(L"ATT" + std::to_wstring(count - i),
                                                                                 L"prompt", shape),
                                     block);
                }
                TextShape fixed;
                fixed.text = L"fixed";
                drawing().append(
                    std::make_unique<AttributeDefinitionEntity>(L"CONSTANT", L"", fixed, false, /*constant=*/true),
                    block);
            }
            CStringArray tags;
            EXPECT_EQ(ZEMGis::Utility::CUtility::GetAttributesFromBlockDef(idOf(*drawing().findBlock(name)), tags),
                      static_cast<int>(count))
                << "constant ones are no attributes of a reference";
            ASSERT_EQ(tags.size(), count);
            for (std::size_t i = 0; i < count; ++i)
                EXPECT_EQ(tags[i], L"ATT" + std::to_wstring(count - i));
        }
        if (!afterwards)
            reopen();
    }
}

TEST_F(ServicesContract, PolygonTextReadsBackToTheSameNumbersInTheSameDirection)
{
    using ZEMGis::Utility::CTransform;
    const AcGePoint3dArray clockwise{
        {5071234.123456789, 4870000.1, 7}, {5071240.1, 4870010.3, 7}, {5071250.7, 4870000.2, 7}};
    const std::wstring text = CTransform::PolygonText(CTransform::AcadPoly2GeosPoly(clockwise));
    std::vector<double> numbers;
    std::wistringstream in(text.substr(text.find_first_of(L"0123456789")));
    in.imbue(std::locale::classic());
    for (std::wstring word; in >> word;) {
        std::erase_if(word, [](wchar_t c) { return c == L',' || c == L')' || c == L'('; });
        if (!word.empty())
            numbers.push_back(std::stod(word));
    }
    ASSERT_EQ(numbers.size(), 8u) << utf8(text);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(numbers[2 * i], clockwise[i % 3].x);
        EXPECT_EQ(numbers[2 * i + 1], clockwise[i % 3].y);
    }
    const std::wstring few = CTransform::PolygonText(CTransform::AcadPoly2GeosPoly({{0, 0}, {1, 1}}));
    EXPECT_THAT(few, HasSubstr(L"EMPTY"));
    EXPECT_NE(ZEMGis::System::CSystemManager::Instance()->GetActiveSystem(), nullptr);
    ZEMGis::Data::CDataConfiguration::Instance()->GetDataDefinitionByID(L"SLIV_LABEL");
}

} // namespace
} // namespace velmor::test
