#include "tests/host/sewage/AreaWorld.h"

#include "host/drawing/Journal.h"
#include "host/sewage/AreaTable.h"

#include <algorithm>

namespace velmor::test {
namespace {

class AreaTable : public AreaWorld {
protected:
    void makeAreas()
    {
        // Sides that are multiples of three keep the centre a whole number.
        constexpr wchar_t block[] = L"POLYGON ((0 0, 300 0, 300 300, 0 300, 0 0))";
        const AreaPtr main = manager().CreateCA(block, L"Main \"A\", left", 3,
                                                bag({{L"CA_GUID", L"{M}"},
                                                     {L"CA_POPULATION", 120.0},
                                                     {L"CA_COEFF", 0.1},
                                                     {L"CA_SLOPE", 2.0},
                                                     {L"CA_TYPE_ISLAND", 0}}));
        manager().AssignCA({{section(L"S1"), 0.3}, {section(L"S2"), 0.7}}, main);
        main->SetPropertyData(L"CA_ISLANDS", CDataBox(CStringArray{L"{I}"}));
        manager().CreateCA(kSmallSquare, L"otok č", 1,
                           bag({{L"CA_GUID", L"{I}"}, {L"CA_TYPE_ISLAND", 1}, {L"CA_MAIN_AREA", L"{M}"}}));
        manager().SetHiddenCA(section(L"S3"), 5000.0, 4, bag({{L"CA_GUID", L"{H}"}}));
    }
};

TEST_F(AreaTable, HasARowForEachAreaInOrderOfCreation)
{
    makeAreas();
    const std::vector<AreaRow> rows = areaTable(drawing());
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0].guid, L"{M}");
    EXPECT_EQ(rows[0].areaHectares, 9.0);
    EXPECT_DOUBLE_EQ(rows[0].netAreaHectares, 8.96) << "less its island";
    EXPECT_EQ(rows[0].sections, (std::vector<AreaRow::Section>{{L"S1", section(L"S1")->GetHandleText(), 0.3},
                                                               {L"S2", section(L"S2")->GetHandleText(), 0.7}}));
    EXPECT_FALSE(rows[0].island);
    EXPECT_TRUE(rows[1].island);
    EXPECT_EQ(rows[1].mainArea, L"{M}");
    EXPECT_DOUBLE_EQ(rows[1].netAreaHectares, 0.04);
    EXPECT_TRUE(rows[2].hidden);
    EXPECT_EQ(rows[2].areaHectares, 0.5);
    EXPECT_EQ(rows[2].centre, AcGePoint3d(0, 70));
}

TEST_F(AreaTable, AsJsonHasTheAgreedFields)
{
    makeAreas();
    const std::string handle1 = journalText(section(L"S1")->GetHandleText());
    const std::string handle2 = journalText(section(L"S2")->GetHandleText());
    const std::string handle3 = journalText(section(L"S3")->GetHandleText());
    const std::string name3 = "S3_1";
    EXPECT_EQ(areasJson(areaTable(drawing())),
              "[\n"
              " {\"guid\": \"{M}\", \"name\": \"Main \\\"A\\\", left\", \"type\": 3, \"hidden\": false, "
              "\"area_ha\": 9, \"coefficient\": 0.1, \"population\": 120, \"slope\": 2, \"island\": 0, "
              "\"main_area\": null, \"centre\": [150, 150], \"sections\": ["
              "{\"name\": \"S1\", \"handle\": \"" +
                  handle1 +
                  "\", \"share\": 0.3}, "
                  "{\"name\": \"S2\", \"handle\": \"" +
                  handle2 +
                  "\", \"share\": 0.7}]},\n"
                  " {\"guid\": \"{I}\", \"name\": \"otok č\", \"type\": 1, \"hidden\": false, "
                  "\"area_ha\": 0.04, \"coefficient\": 0, \"population\": 0, \"slope\": 0, \"island\": 1, "
                  "\"main_area\": \"{M}\", \"centre\": [30, 30], \"sections\": []},\n"
                  " {\"guid\": \"{H}\", \"name\": \"" +
                  name3 +
                  "\", \"type\": 4, \"hidden\": true, "
                  "\"area_ha\": 0.5, \"coefficient\": 0, \"population\": 0, \"slope\": 0, \"island\": 0, "
                  "\"main_area\": null, \"centre\": [0, 70], \"sections\": ["
                  "{\"name\": \"S3\", \"handle\": \"" +
                  handle3 +
                  "\", \"share\": 1}]}\n"
                  "]\n");
}

TEST_F(AreaTable, OfNoAreasIsAnEmptyList)
{
    EXPECT_EQ(areasJson(areaTable(drawing())), "[]\n");
    const std::string csv = areasCsv({});
    EXPECT_EQ(std::count(csv.begin(), csv.end(), 0x0A), 1) << "the head line alone";
}

TEST_F(AreaTable, ControlCharactersStandEscapedInJson)
{
    AreaRow row;
    row.name = L"a\nb\tc\x01\\";
    EXPECT_NE(areasJson({row}).find("\"a\\nb\\tc\\u0001\\\\\""), std::string::npos);
}

TEST_F(AreaTable, AsCsvQuotesWhatNeedsIt)
{
    makeAreas();
    const std::string csv = areasCsv(areaTable(drawing()));
    EXPECT_EQ(
        csv.substr(0, csv.find('\n')),
        "guid,name,type,hidden,area_ha,net_area_ha,coefficient,population,slope,island,main_area,centre_x,centre_y,"
        "sections");
    EXPECT_NE(csv.find("\n{M},\"Main \"\"A\"\", left\",3,0,9,8.96,0.1,120,2,0,,150,150,S1:0.3 S2:0.7\n"),
              std::string::npos)
        << csv;
    EXPECT_NE(csv.find("\n{I},otok č,1,0,0.04,0.04,"), std::string::npos) << csv;
}

TEST_F(AreaTable, AsTextIsAlignedWithGrossAndNetTotals)
{
    makeAreas();
    const std::string text = areasText(areaTable(drawing()));
    // Each line of the table has its numbers in the same columns.
    std::vector<std::wstring> lines;
    std::wstring line;
    for (const wchar_t c : [&] {
             std::wstring wideText;
             for (std::size_t i = 0; i < text.size(); ++i)
                 if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80)
                     wideText += static_cast<unsigned char>(text[i]) < 0x80 ? static_cast<wchar_t>(text[i]) : L'?';
             return wideText;
         }()) {
        if (c == L'\n') {
            lines.push_back(line);
            line.clear();
        } else {
            line += c;
        }
    }
    ASSERT_EQ(lines.size(), 7u) << text;
    EXPECT_EQ(lines[2].find(L"9.0000"), lines[3].find(L"0.0400")) << text;
    EXPECT_EQ(lines[2].find(L"9.0000"), lines[6].find(L"9.5400")) << "gross total\n" << text;
    EXPECT_EQ(lines[2].find(L"8.9600"), lines[6].find(L"9.5000")) << "net total\n" << text;
    EXPECT_NE(lines[2].find(L"S1 30.0%, S2 70.0%"), std::wstring::npos) << text;
}

} // namespace
} // namespace velmor::test
