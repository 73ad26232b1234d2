#include "catalog/ZEMTerrainTypeCatalog.h"
#include "host/services/Text.h"
#include "tests/catalog/CatalogFixture.h"

#include <algorithm>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using velmor::Journal;
using velmor::test::CatalogFixture;

constexpr wchar_t kTemplate[] = L"<?xml version=\"1.0\" encoding=\"utf-8\" ?><Terrains></Terrains>";
constexpr char kFile[] = "support/ZEMXTerrainType.cfg";

class TerrainCatalog : public CatalogFixture {
protected:
    void writeFile(const std::string &text) { user.write(kFile, text); }
    void writeEntries(const std::string &entries) { writeFile("<Terrains>" + entries + "</Terrains>"); }
    static void setEntries(const std::wstring &entries) { setRecord(L"<Terrains>" + entries + L"</Terrains>"); }
    static CStringArray names(CZEMTerrainTypeCatalog &list)
    {
        CStringArray found;
        list.GetTerrainNames(found);
        return found;
    }
    static AcArray<double> flows(CZEMTerrainTypeCatalog &list)
    {
        CStringArray found;
        AcArray<double> values;
        list.GetTerrains(found, values);
        return values;
    }
    CZEMTerrainTypeCatalog catalog;
};

// --- Load

TEST_F(TerrainCatalog, ANewDrawingWithoutAFileStartsWithTheTemplate)
{
    CStringArray found{L"kept"};
    AcArray<double> values{7.0};

    EXPECT_FALSE(catalog.Load());
    EXPECT_EQ(catalog.GetText(), kTemplate);
    EXPECT_FALSE(catalog.GetTerrains(found, values));
    EXPECT_FALSE(catalog.GetTerrainNames(found));
    EXPECT_THAT(found, ElementsAre(L"kept"));
    EXPECT_THAT(values, ElementsAre(7.0));
    EXPECT_EQ(record(), L"(none)");
}

TEST_F(TerrainCatalog, ANewDrawingTakesTheFilesEntriesInReverseOrderAtOnce)
{
    writeEntries("\n<Terrain name=\"A\" flow=\"0.1\"/>\n<Terrain name=\"B\" flow=\"0.2\"/>\n"
                 "<Terrain name=\"C\" flow=\"0.3\"/>\n");
    Journal::instance().setRecording(true);

    EXPECT_TRUE(catalog.Load());
    EXPECT_EQ(recordedWrites(), 3u) << "for each entry";
    EXPECT_THAT(names(catalog), ElementsAre(L"C", L"B", L"A"));
    EXPECT_THAT(flows(catalog), ElementsAre(0.3, 0.2, 0.1));
    EXPECT_EQ(record(), catalog.GetText());
    CMarkup fromRecord;
    EXPECT_TRUE(fromRecord.SetText(record()));
}

TEST_F(TerrainCatalog, TheRecordIsWrittenAsTextOfTheDrawing)
{
    writeEntries("<Terrain name=\"A\" flow=\"0.1\"/>");
    Journal::instance().setRecording(true);
    ASSERT_TRUE(catalog.Load());

    const auto &entries = Journal::instance().entries();
    const auto write = std::ranges::find(entries, "CZEMCDictionaryPtr::dctWrite", &velmor::JournalEntry::operation);
    ASSERT_NE(write, entries.end());
    ASSERT_EQ(write->arguments.size(), 4u);
    EXPECT_EQ(write->arguments[0], "ZEMX_TERRAINTYPE");
    EXPECT_EQ(write->arguments[1], "TT_DEFINITION");
    EXPECT_EQ(write->arguments[3], "1");
}

TEST_F(TerrainCatalog, TheDrawingKeepsItsOwnCoefficientsAndTheFileOnlyAddsNames)
{
    setEntries(L"<Terrain name=\"A\" flow=\"0.9\"/>");
    writeEntries("<Terrain name=\"B\" flow=\"0.2\"/><Terrain name=\"A\" flow=\"0.1\"/>");

    EXPECT_TRUE(catalog.Load());
    EXPECT_THAT(names(catalog), ElementsAre(L"B", L"A"));
    EXPECT_THAT(flows(catalog), ElementsAre(0.2, 0.9));
}

TEST_F(TerrainCatalog, AnEntryThatIsGoneFromTheFileStaysInTheDrawing)
{
    setEntries(L"<Terrain name=\"A\" flow=\"0.9\"/>");
    writeEntries("");

    EXPECT_TRUE(catalog.Load());
    EXPECT_THAT(names(catalog), ElementsAre(L"A"));
}

TEST_F(TerrainCatalog, AFileThatAddsNothingLeavesTheDrawingUntouched)
{
    setEntries(L"<Terrain name=\"A\" flow=\"0.9\"/>");
    writeEntries("<Terrain name=\"A\" flow=\"0.1\"/>");
    Journal::instance().setRecording(true);

    EXPECT_TRUE(catalog.Load());
    EXPECT_EQ(recordedWrites(), 0u);
}

TEST_F(TerrainCatalog, ANameThatDiffersFromOneInTheDrawingByCaseOnlyIsNotAdded)
{
    setEntries(L"<Terrain name=\"Zeleni krov\" flow=\"0.4\"/><Terrain name=\"=EF=BE=8Aljunak\" flow=\"0.3\"/>");
    writeEntries("<Terrain name=\"ZELENI KROV\" flow=\"0.5\"/><Terrain name=\"=EF=BE=9ALJUNAK\" flow=\"0.6\"/>");

    EXPECT_TRUE(catalog.Load());
    EXPECT_THAT(names(catalog), ElementsAre(L"Zeleni krov", L"Šljunak"));
}

TEST_F(TerrainCatalog, ANameThatStandsTwiceInTheFileIsAddedOnce)
{
    writeEntries("<Terrain name=\"A\" flow=\"0.1\"/><Terrain name=\"a\" flow=\"0.2\"/>");

    EXPECT_TRUE(catalog.Load());
    EXPECT_THAT(names(catalog), ElementsAre(L"A"));
}

TEST_F(TerrainCatalog, NamesAreComparedDecodedAndTakenOverAsTheyStand)
{
    setEntries(L"<Terrain name=\"a=42c\" flow=\"0.1\"/>");
    writeEntries("<Terrain  name='aBc' flow='0.2'/><Terrain flow='1' note='x' name='=41d' />");

    EXPECT_TRUE(catalog.Load());
    EXPECT_THAT(names(catalog), ElementsAre(L"Ad", L"aBc"));
    EXPECT_NE(std::wstring(catalog.GetText()).find(L"<Terrain flow='1' note='x' name='=41d' />"), std::wstring::npos);
}

TEST_F(TerrainCatalog, AFileWithoutAListIsNoFileThoughTheDrawingsListIsThere)
{
    setEntries(L"<Terrain name=\"A\" flow=\"0.9\"/>");
    for (const char *text : {"", "<Other/>", "no markup", "<terrains><Terrain name=\"B\"/></terrains>"}) {
        writeFile(text);
        EXPECT_FALSE(catalog.Load()) << text;
        EXPECT_THAT(names(catalog), ElementsAre(L"A")) << text;
    }
}

TEST_F(TerrainCatalog, LoadingTakesTheDrawingAnew)
{
    writeEntries("<Terrain name=\"A\" flow=\"0.1\"/>");
    ASSERT_TRUE(catalog.Load());
    ASSERT_TRUE(catalog.SetTerrain(L"unsaved", 0.5));

    EXPECT_TRUE(catalog.Load());
    EXPECT_THAT(names(catalog), ElementsAre(L"A"));
}

// --- Damage

TEST_F(TerrainCatalog, ADamagedRecordIsReadAsFarAsItCanBe)
{
    setRecord(L"<Terrains><Terrain name=\"A\" flow=\"0.9\"><Terrain name=\"B\" flow=\"0.2\"/></Stray></Terrains>");
    writeEntries("<Terrain name=\"C\" flow=\"0.3\"/>");

    EXPECT_TRUE(catalog.Load());
    EXPECT_THAT(names(catalog), ElementsAre(L"C", L"A", L"B"));
    EXPECT_FALSE(catalog.IsWellFormed());
}

TEST_F(TerrainCatalog, ARecordWhoseListCantBeFoundIsLeftAlone)
{
    for (const wchar_t *text : {L"", L"nothing", L"<Other><Terrain name=\"A\" flow=\"0.9\"/></Other>", L"<Terrains"}) {
        setRecord(text);
        writeEntries("<Terrain name=\"C\" flow=\"0.3\"/>");
        CStringArray found;
        AcArray<double> values;
        Journal::instance().setRecording(true);

        EXPECT_TRUE(catalog.Load()) << testing::PrintToString(text);
        EXPECT_EQ(recordedWrites(), 0u);
        EXPECT_FALSE(catalog.GetTerrains(found, values)) << testing::PrintToString(text);
        EXPECT_THAT(found, IsEmpty());
        EXPECT_EQ(record(), text);
        EXPECT_FALSE(catalog.SetTerrain(L"A", 0.5));
        EXPECT_FALSE(catalog.RemoveTerrain(L"A"));
        EXPECT_EQ(catalog.GetText(), text);
    }
    EXPECT_NE(catalog.GetErrorText(), L"");
}

TEST_F(TerrainCatalog, OfADamagedFileEveryEntryThatCanBeRecognisedIsTaken)
{
    writeFile("\xEF\xBB\xBF<Terrains><Terrain name=\"A\" flow=\"0.1\"><Terrain name=\"\x8A\xFF\" flow=\"0.2\"/>\xFE"
              "</Stray></Terrains>");

    EXPECT_TRUE(catalog.Load());
    EXPECT_THAT(names(catalog), ElementsAre(L"Š˙", L"A")) << "bytes that are not UTF-8 count in the code page";
}

TEST_F(TerrainCatalog, AFolderInThePlaceOfTheFileIsNoFile)
{
    setEntries(L"<Terrain name=\"A\" flow=\"0.9\"/>");
    std::filesystem::create_directories(user.path() / kFile);

    EXPECT_FALSE(catalog.Load());
    EXPECT_THAT(names(catalog), ElementsAre(L"A"));
    EXPECT_TRUE(catalog.SaveToFile()) << "a write that fails is not reported";
    EXPECT_TRUE(std::filesystem::is_directory(user.path() / kFile));
}

TEST_F(TerrainCatalog, AFileThatCantBeReadIsNoFile)
{
    setEntries(L"<Terrain name=\"A\" flow=\"0.9\"/>");
    writeEntries("<Terrain name=\"B\" flow=\"0.2\"/>");

    EXPECT_TRUE(withoutRightsTo(kFile, [&] { return !catalog.Load() && names(catalog) == CStringArray{L"A"}; }));
    EXPECT_NE(record().find(L"\"A\""), std::wstring::npos);
}

TEST_F(TerrainCatalog, WithoutADrawingTheFileIsReadAllTheSame)
{
    writeEntries("<Terrain name=\"A\" flow=\"0.1\"/>");
    session.setDrawing(nullptr);

    EXPECT_TRUE(catalog.Load());
    EXPECT_THAT(names(catalog), ElementsAre(L"A"));
    EXPECT_FALSE(catalog.SaveToDrawing());
}

// --- Reading

TEST_F(TerrainCatalog, NamesAndFlowsComeInDocumentOrderBehindWhatTheArraysHold)
{
    setEntries(L"<Terrain name=\"A\" flow=\"0.9000\"/><Other name=\"X\"/><Terrain name=\"=41\" flow=\" 1.5e-1 m\"/>"
               L"<Terrain name=\"B\"/><Terrain name=\"C\" flow=\"0,5\"/>");
    catalog.Load();
    CStringArray found{L"first"};
    AcArray<double> values{-1.0};

    EXPECT_TRUE(catalog.GetTerrains(found, values));
    EXPECT_THAT(found, ElementsAre(L"first", L"A", L"A", L"B", L"C"));
    EXPECT_THAT(values, ElementsAre(-1.0, 0.9, 0.15, 0.0, 0.0));
    EXPECT_TRUE(catalog.GetTerrainNames(found));
    EXPECT_EQ(found.size(), 9u);
}

TEST_F(TerrainCatalog, TheFlowOfANameIsThatOfItsLastEntryWhateverTheCase)
{
    setEntries(L"<Terrain name=\"a\" flow=\"0.1\"/><Terrain name=\"A\" flow=\"0.2\"/><Terrain name=\"B\" flow=\"3\"/>");
    catalog.Load();
    double flow = -1.0;

    EXPECT_TRUE(catalog.GetFlow(L"a", flow));
    EXPECT_EQ(flow, 0.2);
}

TEST_F(TerrainCatalog, TheFlowOfAnUnknownNameIsTrueAndUntouchedUnlessTheListIsEmpty)
{
    setEntries(L"<Terrain name=\"A\" flow=\"0.1\"/>");
    catalog.Load();
    double flow = -1.0;

    EXPECT_TRUE(catalog.GetFlow(L"B", flow));
    EXPECT_EQ(flow, -1.0);
    catalog.SetText(kTemplate);
    EXPECT_FALSE(catalog.GetFlow(L"A", flow));
    catalog.SetText(L"<Other/>");
    EXPECT_FALSE(catalog.GetFlow(L"A", flow));
    EXPECT_EQ(flow, -1.0);
}

// --- Changing

TEST_F(TerrainCatalog, SetFlowChangesTheFirstEntryOfTheNameWhateverTheCase)
{
    catalog.SetText(L"<Terrains><Terrain name='b' flow='1'/> <Terrain name='a' flow='2'/><Terrain name='A' flow='3'/>"
                    L"</Terrains>");

    EXPECT_TRUE(catalog.SetFlow(L"A", 0.35));
    EXPECT_EQ(catalog.GetText(), L"<Terrains><Terrain name='b' flow='1'/> <Terrain name='a' flow=\"0.3500\"/>"
                                 L"<Terrain name='A' flow='3'/></Terrains>");
    EXPECT_FALSE(catalog.SetFlow(L"c", 0.5));
    catalog.SetText(kTemplate);
    EXPECT_FALSE(catalog.SetFlow(L"A", 0.5));
    EXPECT_EQ(catalog.GetText(), kTemplate);
}

TEST_F(TerrainCatalog, ADocumentWithOneEntryHasThreeLines)
{
    catalog.SetText(kTemplate);

    EXPECT_TRUE(catalog.SetTerrain(L"Kosi krov", 0.9));
    EXPECT_EQ(catalog.GetText(), L"<?xml version=\"1.0\" encoding=\"utf-8\" ?><Terrains>\r\n"
                                 L"<Terrain name=\"Kosi krov\" flow=\"0.9000\"/>\r\n"
                                 L"</Terrains>");
}

TEST_F(TerrainCatalog, SettingAKnownTerrainChangesOnlyItsFlow)
{
    catalog.SetText(L"<Terrains><Terrain name='A' flow='1' note='n'/><Terrain name='B' flow='2'/></Terrains>");

    EXPECT_TRUE(catalog.SetTerrain(L"A", 0.35));
    EXPECT_EQ(catalog.GetText(),
              L"<Terrains><Terrain name='A' flow=\"0.3500\" note='n'/><Terrain name='B' flow='2'/></Terrains>");
}

TEST_F(TerrainCatalog, SettingANewTerrainAppendsItAtTheEnd)
{
    catalog.SetText(L"<Terrains><Terrain name='A' flow='1'/><Terrain name='B' flow='2'/></Terrains>");

    EXPECT_TRUE(catalog.SetTerrain(L"C", 0.35));
    EXPECT_THAT(names(catalog), ElementsAre(L"A", L"B", L"C"));
    EXPECT_THAT(flows(catalog), ElementsAre(1.0, 2.0, 0.35));
}

TEST_F(TerrainCatalog, SettingATerrainIsExactAboutCase)
{
    catalog.SetText(kTemplate);

    EXPECT_TRUE(catalog.SetTerrain(L"krov", 0.1));
    EXPECT_TRUE(catalog.SetTerrain(L"Krov", 0.2));
    EXPECT_THAT(names(catalog), ElementsAre(L"krov", L"Krov"));
    EXPECT_THAT(flows(catalog), ElementsAre(0.1, 0.2));
}

TEST_F(TerrainCatalog, FlowsAreWrittenWithFourDecimals)
{
    catalog.SetText(kTemplate);
    for (const auto &[flow, text] : {std::pair(0.35, L"\"0.3500\""), {1.0, L"\"1.0000\""}, {0.00005, L"\"0.0001\""}}) {
        EXPECT_TRUE(catalog.SetTerrain(L"A", flow));
        EXPECT_NE(std::wstring(catalog.GetText()).find(text), std::wstring::npos) << flow;
    }
}

TEST_F(TerrainCatalog, EveryNameOfTheCodePageSurvivesTheDocument)
{
    catalog.SetText(kTemplate);
    const CStringArray given = {L"a=b", L"=", L"=3D", L"\"<&>'", L"Šđčćž ŠĐČĆŽ", L" ", L"", L"line\r\nend", L"€˙"};
    for (const std::wstring &name : given)
        EXPECT_TRUE(catalog.SetTerrain(name, 0.5));

    EXPECT_EQ(names(catalog), given);
    for (const std::wstring &name : given)
        EXPECT_TRUE(catalog.SetTerrain(name, 0.6));
    EXPECT_EQ(names(catalog), given) << "each is found again";
    EXPECT_TRUE(catalog.SetText(std::wstring(catalog.GetText())));
    EXPECT_EQ(names(catalog), given);
}

TEST_F(TerrainCatalog, TheCodePageOfNamesIsASetting)
{
    catalog.SetText(kTemplate);
    ASSERT_TRUE(catalog.SetTerrain(L"č", 0.5));
    start("ANSI_CODE_PAGE = 1252\n");
    EXPECT_THAT(names(catalog), ElementsAre(L"è"));
    ASSERT_TRUE(catalog.SetTerrain(L"ñ", 0.5));
    start();
    EXPECT_THAT(names(catalog), ElementsAre(L"č", L"ń")) << "1250 when it is not set";
    start("ANSI_CODE_PAGE = 9999\n");
    EXPECT_FALSE(velmor::Services::instance().findings().empty()) << "told as any wrong setting";
    EXPECT_THAT(names(catalog), ElementsAre(L"č", L"ń"));
}

TEST_F(TerrainCatalog, ATagThatCantBeWrittenToGetsANewEntryBehindTheLast)
{
    // Its loose quotes hide a ">": with another value the tag would end there.
    const std::wstring damaged = L"<Terrain name=A flow=5\"x>\"/>";
    catalog.SetText(L"<Terrains>" + damaged + L"<Terrain name=\"B\" flow=\"2\"/></Terrains>");

    EXPECT_TRUE(catalog.SetTerrain(L"A", 0.5));
    EXPECT_THAT(names(catalog), ElementsAre(L"A", L"B", L"A"));
    EXPECT_EQ(flows(catalog).back(), 0.5);
    EXPECT_TRUE(catalog.GetText().starts_with(L"<Terrains>" + damaged));
    EXPECT_FALSE(catalog.SetFlow(L"A", 0.6)) << "what the write returned";
}

TEST_F(TerrainCatalog, RemovingTakesTheFirstEntryOfTheNameWhateverTheCase)
{
    catalog.SetText(L"<Terrains>\r\n<Terrain name='A'/>\r\n<Terrain name='b'/>\r\n<Terrain name='B'/>\r\n</Terrains>");

    EXPECT_TRUE(catalog.RemoveTerrain(L"B"));
    EXPECT_EQ(catalog.GetText(), L"<Terrains>\r\n<Terrain name='A'/>\r\n<Terrain name='B'/>\r\n</Terrains>");
}

TEST_F(TerrainCatalog, RemovingAnUnknownNameRemovesTheLastEntryAndIsFalse)
{
    catalog.SetText(L"<Terrains><Terrain name='A'/><Terrain name='B'/><Terrain name='C'/></Terrains>");

    EXPECT_FALSE(catalog.RemoveTerrain(L"X"));
    EXPECT_EQ(catalog.GetText(), L"<Terrains><Terrain name='A'/><Terrain name='B'/></Terrains>");
}

TEST_F(TerrainCatalog, RemovingFromAnEmptyListRemovesNothingAndIsFalse)
{
    catalog.SetText(kTemplate);

    EXPECT_FALSE(catalog.RemoveTerrain(L"X"));
    EXPECT_EQ(catalog.GetText(), kTemplate);
}

TEST_F(TerrainCatalog, WhatIsNotEditedStaysAsItIs)
{
    const std::wstring text =
        L"<?xml version='1.0'?>\n<!-- mine -->\n<Terrains note = x >\n\t<!-- A --><Terrain\n"
        L"name='A' flow=1 />\n <Terrain name='B' flow='2'></Terrain>\n</Terrains>\n<!-- end -->\n";
    catalog.SetText(text);

    EXPECT_TRUE(catalog.SetTerrain(L"C", 1));
    EXPECT_TRUE(catalog.RemoveTerrain(L"C"));
    EXPECT_EQ(catalog.GetText(), text);
}

// --- Saving

TEST_F(TerrainCatalog, ChangesReachTheHomesOnlyWhenTheyAreSaved)
{
    writeEntries("<Terrain name=\"A\" flow=\"0.1\"/>");
    ASSERT_TRUE(catalog.Load());
    const std::wstring loaded = record();
    const std::string file = user.read(kFile);
    ASSERT_TRUE(catalog.SetTerrain(L"B", 0.2));
    EXPECT_EQ(record(), loaded);
    EXPECT_EQ(user.read(kFile), file);

    EXPECT_TRUE(catalog.SaveToDrawing());
    EXPECT_EQ(record(), catalog.GetText());
    EXPECT_EQ(user.read(kFile), file);
    EXPECT_TRUE(catalog.SaveToFile());
    EXPECT_EQ(velmor::wide(user.read(kFile)), catalog.GetText());
}

TEST_F(TerrainCatalog, SaveWritesBothHomesAndIsTrue)
{
    catalog.SetText(kTemplate);
    ASSERT_TRUE(catalog.SetTerrain(L"Rahli šljunak", 0.3));
    session.setDrawing(nullptr);
    EXPECT_TRUE(catalog.Save()) << "whatever comes of it";
    EXPECT_NE(user.read(kFile).find("<Terrain name=\"Rahli =EF=BE=9Aljunak\" flow=\"0.3000\"/>"), std::string::npos);
    session.setDrawing(velmor::Drawing::createNew());
    EXPECT_TRUE(catalog.Save());
    EXPECT_EQ(record(), catalog.GetText());
}

TEST_F(TerrainCatalog, AFileWithEntriesThatTheListLacksIsKeptBesideTheNewOne)
{
    const std::string kept = std::string(kFile) + ".bak";
    writeEntries("<Terrain name=\"A\" flow=\"0.1\"/><Terrain name=\"B\" flow=\"0.2\"/>");
    const std::string both = user.read(kFile);
    setRecord(L"<Other/>"); // a record without a list, as another program may leave it
    EXPECT_TRUE(catalog.Load());
    EXPECT_TRUE(catalog.SaveToFile());
    EXPECT_EQ(user.read(kFile), "<Other/>");
    EXPECT_EQ(user.read(kept), both);

    // A list that has all of the file's entries leaves what is kept alone.
    writeEntries("<Terrain name=\"a\" flow=\"0.1\"/>");
    catalog.SetText(L"<Terrains><Terrain name=\"A\" flow=\"0.7\"/></Terrains>");
    EXPECT_TRUE(catalog.SaveToFile());
    EXPECT_EQ(user.read(kept), both);
}

TEST_F(TerrainCatalog, WhatWasKeptWithEntriesIsOnlyReplacedByAFileWithEntries)
{
    const std::string kept = std::string(kFile) + ".bak";
    const std::wstring healthy = L"<Terrains><Terrain name=\"C\" flow=\"0.7\"/></Terrains>";
    for (const wchar_t *damage : {L"<Other/>", L"<Terrains", L"nothing", L"<Terrains></Terrains>"}) {
        writeEntries("<Terrain name=\"A\" flow=\"0.1\"/><Terrain name=\"B\" flow=\"0.2\"/>");
        const std::string both = user.read(kFile);
        for (int i = 0; i < 2; ++i) {
            catalog.SetText(damage);
            EXPECT_TRUE(catalog.SaveToFile());
            EXPECT_EQ(user.read(kFile), velmor::utf8(damage));
            EXPECT_EQ(user.read(kept), both) << velmor::utf8(damage);
        }
        catalog.SetText(healthy);
        EXPECT_TRUE(catalog.SaveToFile());
        EXPECT_EQ(velmor::wide(user.read(kFile)), healthy) << "what has no entry stops no save";
        EXPECT_EQ(user.read(kept), both) << velmor::utf8(damage);
        catalog.SetText(damage);
        EXPECT_TRUE(catalog.SaveToFile());
        EXPECT_EQ(velmor::wide(user.read(kept)), healthy) << "a file with entries is kept";
    }
}

TEST_F(TerrainCatalog, ADamagedFileWithoutAnEntryIsKeptWhereNothingBetterIs)
{
    writeFile("<Terrains");
    catalog.SetText(kTemplate);
    EXPECT_TRUE(catalog.SaveToFile());
    EXPECT_EQ(user.read(std::string(kFile) + ".bak"), "<Terrains");
}

TEST_F(TerrainCatalog, ADamagedFileIsKeptAsItWasBesideTheNewOne)
{
    const std::string damaged = "<Terrains><Terrain name=\"A\" flow=\"0.1\"/><Terrain name=\"B\xFF";
    writeFile(damaged);
    catalog.SetText(L"<Terrains><Terrain name=\"A\" flow=\"0.7\"/></Terrains>");
    EXPECT_TRUE(catalog.SaveToFile());
    EXPECT_EQ(user.read(std::string(kFile) + ".bak"), damaged);
    EXPECT_NE(user.read(kFile).find("0.7"), std::string::npos);
}

TEST_F(TerrainCatalog, WhatCannotBeKeptIsNotReplaced)
{
    writeEntries("<Terrain name=\"A\" flow=\"0.1\"/>");
    const std::string before = user.read(kFile);
    std::filesystem::create_directory(user.path() / (std::string(kFile) + ".bak"));
    catalog.SetText(kTemplate);
    EXPECT_TRUE(catalog.SaveToFile()) << "a write that fails is not reported";
    EXPECT_EQ(user.read(kFile), before);
}

TEST_F(TerrainCatalog, WithoutAFileANewOneIsMadeInTheSupportFolder)
{
    catalog.SetText(kTemplate);

    EXPECT_TRUE(catalog.SaveToFile());
    EXPECT_EQ(user.read(kFile), "<?xml version=\"1.0\" encoding=\"utf-8\" ?><Terrains></Terrains>");
}

TEST_F(TerrainCatalog, WithoutAFileAndASupportFolderThereIsNowhereToSaveTo)
{
    catalog.SetText(kTemplate);
    velmor::Services::instance().start({"en"}, velmor::Paths({}, {}));

    EXPECT_FALSE(catalog.SaveToFile());
    EXPECT_TRUE(catalog.Save());
}

TEST_F(TerrainCatalog, AFileThatIsFoundIsWrittenWhereItWasFound)
{
    velmor::test::TestFolder shared;
    shared.write("ZEMXTerrainType.cfg", "<Terrains></Terrains>");
    start("SUPPORT_PATH = " + shared.path().string() + "\n");
    ASSERT_TRUE(catalog.Load());
    ASSERT_TRUE(catalog.SetTerrain(L"A", 0.5));

    EXPECT_TRUE(catalog.SaveToFile());
    EXPECT_NE(shared.read("ZEMXTerrainType.cfg").find("name=\"A\""), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(user.path() / kFile));
}

TEST_F(TerrainCatalog, TheRecordTravelsWithTheDrawingsFile)
{
    catalog.SetText(kTemplate);
    ASSERT_TRUE(catalog.SetTerrain(L"a=b \"Šljunak\" <&>", 0.3));
    for (int i = 0; i < 200; ++i)
        ASSERT_TRUE(catalog.SetTerrain(L"Opločenje " + std::to_wstring(i), 0.001 * i));
    ASSERT_TRUE(catalog.SaveToDrawing());
    const std::wstring text(catalog.GetText());

    auto loaded = velmor::Drawing::read(session.drawing()->write());
    ASSERT_TRUE(loaded.drawing);
    EXPECT_THAT(loaded.report.findings, IsEmpty());
    session.setDrawing(std::move(loaded.drawing));
    EXPECT_EQ(record(), text);
}

} // namespace
