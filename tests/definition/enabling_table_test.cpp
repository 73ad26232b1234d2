#include "definition/EnablingTable.h"

#include <gtest/gtest.h>

namespace {

using namespace EnablingTable;

TEST(EnablingTables, NoControlStandsInTwoRowsOfTheMethodTable)
{
    for (std::size_t row = 0; row < kMethodTable.size(); ++row) {
        for (const int control : kMethodTable[row].m_controls) {
            for (std::size_t other = row + 1; other < kMethodTable.size(); ++other)
                EXPECT_FALSE(kMethodTable[other].m_controls.Contains(control)) << control;
        }
    }
}

TEST(EnablingTables, TheCoefficientsTwoSourcesExcludeEachOther)
{
    for (const SourceRow &row : kSourceTable) {
        for (const int control : row.m_on)
            EXPECT_FALSE(row.m_off.Contains(control)) << control;
    }
    EXPECT_TRUE(std::ranges::equal(kSourceTable[0].m_on, kSourceTable[1].m_off));
    EXPECT_TRUE(std::ranges::equal(kSourceTable[0].m_off, kSourceTable[1].m_on));
}

TEST(EnablingTables, TypesRunInTheOrderCatchmentHouseIndustrial)
{
    EXPECT_EQ(kTypeTable[0].data(), kCatchmentSteps.data());
    EXPECT_EQ(kTypeTable[1].data(), kHouseSteps.data());
    EXPECT_EQ(kTypeTable[2].data(), kIndustrialSteps.data());
}

} // namespace
