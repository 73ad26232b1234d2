// The catalogue files that come with the program.
#include "catalog/ATV118FlowTable.h"
#include "catalog/ZEMTerrainTypeCatalog.h"
#include "tests/catalog/CatalogFixture.h"

#include <cstdlib>
#include <map>

namespace {

using velmor::test::CatalogFixture;
using velmor::test::TestFolder;

class ShippedFiles : public CatalogFixture {
protected:
    ShippedFiles()
    {
        const char *source = std::getenv("VELMOR_SOURCE_DIR");
        m_shipped = std::filesystem::path(source ? source : ".") / "resources";
        velmor::Services::instance().start({"en"}, {{m_shipped}, user.path()});
    }
    std::string text(const std::string &name) const
    {
        std::ostringstream bytes;
        bytes << std::ifstream(m_shipped / "support" / name, std::ios::binary).rdbuf();
        return bytes.str();
    }
    std::filesystem::path m_shipped;
};

/// Hundredths of the straight line from one end to the other, halves rounded up.
int onLine(int at0, int at100, int percent)
{
    return (at0 * 100 + (at100 - at0) * percent + 50) / 100;
}

TEST_F(ShippedFiles, TheFlowTableHasAll176CellsOnTheLinesBetweenItsEnds)
{
    constexpr int at0[4][4] = {{0, 0, 10, 31}, {10, 15, 30, 46}, {15, 20, 45, 60}, {20, 30, 55, 75}};
    constexpr int at100[4][4] = {{92, 92, 95, 96}, {94, 95, 96, 97}, {94, 95, 96, 97}, {95, 96, 97, 98}};
    constexpr double intensities[4] = {100, 130, 180, 225};
    const CATV118FlowTable table;
    for (int slope = 0; slope < 4; ++slope)
        for (int column = 0; column < 4; ++column)
            for (int percent = 0; percent <= 100; percent += 10)
                EXPECT_NEAR(table.GetCoefficient(slope, intensities[column], percent),
                            onLine(at0[slope][column], at100[slope][column], percent) / 100.0, 1e-12)
                    << slope << ", " << intensities[column] << ", " << percent;
    EXPECT_TRUE(CMarkup().Load((m_shipped / "support/ATV118flow.cfg").wstring()));
}

TEST_F(ShippedFiles, TheFlowTableSaysThatItsValuesAreAnExample)
{
    EXPECT_NE(text("ATV118flow.cfg").find("THE VALUES ARE AN EXAMPLE"), std::string::npos);
    EXPECT_NE(text("ATV118flow.cfg").find("VRIJEDNOSTI SU PRIMJER"), std::string::npos);
}

TEST_F(ShippedFiles, ANewDrawingStartsWithTheTerrainTypesInTheirOrder)
{
    CZEMTerrainTypeCatalog catalog;
    CStringArray names;
    AcArray<double> flows;
    EXPECT_TRUE(catalog.Load());
    EXPECT_TRUE(catalog.IsWellFormed());
    ASSERT_TRUE(catalog.GetTerrains(names, flows));

    EXPECT_THAT(names, testing::ElementsAre(L"Kosi krov", L"Ravni krov sa šljunkom", L"Zeleni krov", L"Asfalt i beton",
                                            L"Opločenje s uskim fugama", L"Opločenje sa širokim otvorenim fugama",
                                            L"Čvrsto nabijeni šljunak", L"Rahli šljunak", L"Travne rešetke",
                                            L"Bankine i pokosi", L"Ravno neuređeno tlo", L"Parkovi i travnjaci"));
    EXPECT_THAT(flows, testing::ElementsAre(0.9, 0.7, 0.4, 0.9, 0.75, 0.5, 0.6, 0.3, 0.15, 0.4, 0.2, 0.1));
}

TEST_F(ShippedFiles, TheTerrainFileSaysThatItsValuesAreToBeConfirmed)
{
    EXPECT_NE(text("ZEMXTerrainType.cfg").find("starting values"), std::string::npos);
    EXPECT_NE(text("ZEMXTerrainType.cfg").find("početne vrijednosti"), std::string::npos);
}

TEST_F(ShippedFiles, SavingTheTerrainTypesLeavesTheShippedFileAsItIs)
{
    const std::string before = text("ZEMXTerrainType.cfg");
    CZEMTerrainTypeCatalog catalog;
    ASSERT_TRUE(catalog.Load());
    EXPECT_EQ(user.read("support/ZEMXTerrainType.cfg"), before) << "copied to the user";
    ASSERT_TRUE(catalog.SetTerrain(L"Novo", 0.5));
    ASSERT_TRUE(catalog.SaveToFile());

    EXPECT_EQ(text("ZEMXTerrainType.cfg"), before);
    EXPECT_NE(user.read("support/ZEMXTerrainType.cfg").find("name=\"Novo\""), std::string::npos);
}

} // namespace
