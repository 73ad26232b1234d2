#include "host/sewage/AreaRecord.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace velmor {
namespace {

using ZEMGis::Data::CDataBox;
using ZEMGis::Topology::kUnknownValue;

AreaRecord fullRecord()
{
    AreaRecord record;
    record.order = 17;
    record.guid = L"{ABC}";
    record.name = L"Sliv Čakovec 日";
    record.type = 3;
    record.hidden = true;
    record.hiddenSquareMetres = 12345.678901234567;
    record.shares = {{L"{S1}", 0.1}, {L"{S2}", kUnknownValue}};
    record.setProperty(L"CA_COEFF", 0.35);
    record.setProperty(L"CA_TYPE_ISLAND", 1);
    record.setProperty(L"CA_MAIN_AREA", L"");
    record.setProperty(L"CA_ISLANDS", CDataBox(CStringArray{L"{I1}", L"", L"{I2}"}));
    record.setProperty(L"EMPTY", CDataBox(CStringArray{}));
    return record;
}

TEST(AreaRecord, EveryPartComesBackFromItsItems)
{
    EXPECT_EQ(recordFromItems(toItems(fullRecord())), fullRecord());
}

TEST(AreaRecord, AnEmptyTextIsAProperty)
{
    const auto record = recordFromItems(toItems(fullRecord()));
    ASSERT_TRUE(record);
    const CDataBox *main = record->property(L"CA_MAIN_AREA");
    ASSERT_TRUE(main);
    EXPECT_TRUE(main->IsNotNull());
}

TEST(AreaRecord, ANullValueTakesThePropertyAway)
{
    AreaRecord record = fullRecord();
    record.setProperty(L"CA_COEFF", {});
    EXPECT_FALSE(record.property(L"CA_COEFF"));
    EXPECT_EQ(record.number(L"CA_COEFF"), 0.0);
}

TEST(AreaRecord, NumbersThatNoFileHoldsBecomeTheUnknownMarker)
{
    AreaRecord record;
    record.setProperty(L"CA_COEFF", std::nan(""));
    EXPECT_EQ(record.number(L"CA_COEFF"), kUnknownValue);
    EXPECT_EQ(storable(std::numeric_limits<double>::infinity()), kUnknownValue);
    EXPECT_EQ(storable(-0.5), -0.5);
}

TEST(AreaRecord, ItemsCutShortAreNoRecord)
{
    const DataItems items = toItems(fullRecord());
    for (std::size_t length = 0; length < items.size(); ++length)
        EXPECT_FALSE(recordFromItems(DataItems(items.begin(), items.begin() + static_cast<std::ptrdiff_t>(length))))
            << length << " items";
}

TEST(AreaRecord, ItemsOfAnotherKindAreNoRecord)
{
    const DataItems items = toItems(fullRecord());
    for (std::size_t i = 0; i < items.size(); ++i) {
        DataItems changed = items;
        if (std::holds_alternative<std::wstring>(items[i].value))
            changed[i].value = std::int64_t{5};
        else
            changed[i].value = std::wstring(L"x");
        EXPECT_FALSE(recordFromItems(changed)) << "item " << i;
    }
}

TEST(AreaRecord, ACountBeyondTheItemsIsNoRecord)
{
    AreaRecord record;
    record.guid = L"{G}";
    DataItems items = toItems(record);
    items[7].value = std::int64_t{9'000'000};
    EXPECT_FALSE(recordFromItems(items));
    items[7].value = std::int64_t{-1};
    EXPECT_FALSE(recordFromItems(items));
}

TEST(AreaRecord, ARecordOfALaterFormatIsLeftAlone)
{
    DataItems items = toItems(fullRecord());
    items[0].value = std::int64_t{2};
    EXPECT_FALSE(recordFromItems(items));
}

} // namespace
} // namespace velmor
