#include "host/services/DataBox.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace velmor {
namespace {

using ZEMGis::Data::CDataBox;

TEST(DataBox, OnlyAnEmptyBoxIsNull)
{
    EXPECT_FALSE(CDataBox().IsNotNull());
    for (const CDataBox &box : {CDataBox(0), CDataBox(0.0), CDataBox(L""), CDataBox(CStringArray{})})
        EXPECT_TRUE(box.IsNotNull());
}

TEST(DataBox, NumbersConvertIntoEachOtherAndAFractionIsCut)
{
    EXPECT_EQ(static_cast<int>(CDataBox(2.9)), 2);
    EXPECT_EQ(static_cast<int>(CDataBox(-2.9)), -2);
    EXPECT_EQ(static_cast<double>(CDataBox(7)), 7.0);
    EXPECT_EQ(static_cast<int>(CDataBox(1e300)), std::numeric_limits<int>::max());
    EXPECT_EQ(static_cast<int>(CDataBox(std::nan(""))), 0);
}

TEST(DataBox, TextsAreParsedFromTheirFront)
{
    EXPECT_EQ(static_cast<int>(CDataBox(L" 42")), 42);
    EXPECT_EQ(static_cast<int>(CDataBox(L"+7 m")), 7);
    EXPECT_EQ(static_cast<double>(CDataBox(L"-2.5e3x")), -2500.0);
    EXPECT_EQ(static_cast<int>(CDataBox(L"none")), 0);
    EXPECT_EQ(static_cast<double>(CDataBox(CStringArray{L"1"})), 0.0);
    EXPECT_EQ(static_cast<int>(CDataBox()), 0);
}

TEST(DataBox, NumbersAreWrittenSoThatTheyReadBackTheSame)
{
    for (const double value : {0.1, 583195.159999074, 1e-300, -0.3333333333333333}) {
        const std::wstring text = CDataBox(value);
        EXPECT_EQ(static_cast<double>(CDataBox(text)), value);
    }
    EXPECT_EQ(CDataBox(-5).operator std::wstring(), L"-5");
    EXPECT_EQ(CDataBox(0.1).operator std::wstring(), L"0.1");
    EXPECT_EQ(CDataBox().operator std::wstring(), L"");
    EXPECT_EQ(CDataBox(CStringArray{L"a"}).operator std::wstring(), L"");
}

TEST(DataBox, AListIsCopiedAndASingleTextCountsAsAListOfOne)
{
    CStringArray list{L"old"};
    EXPECT_FALSE(CDataBox(3).GetArrayCopy(list));
    EXPECT_FALSE(CDataBox().GetArrayCopy(list));
    EXPECT_EQ(list, CStringArray{L"old"});
    EXPECT_TRUE(CDataBox(L"one").GetArrayCopy(list));
    EXPECT_EQ(list, CStringArray{L"one"});
    EXPECT_TRUE(CDataBox(CStringArray{L"a", L"b"}).GetArrayCopy(list));
    EXPECT_EQ(list, (CStringArray{L"a", L"b"}));
}

TEST(DataBox, EveryKindComesBackFromTheItemsItIsKeptAs)
{
    for (const CDataBox &box :
         {CDataBox(), CDataBox(0), CDataBox(-7), CDataBox(0.0), CDataBox(1.5), CDataBox(L""), CDataBox(L"{A-1}"),
          CDataBox(CStringArray{}), CDataBox(CStringArray{L""}), CDataBox(CStringArray{L"a", L"", L"č"})})
        EXPECT_EQ(boxOf(itemsOf(box)), box) << describe(box);
}

TEST(DataBox, ItemsOfAnotherShapeGiveAnEmptyBox)
{
    const DataItem text{1, std::wstring(L"a")}, two{90, std::int64_t{2}}, real{40, 1.0};

    EXPECT_FALSE(boxOf({two, text}).IsNotNull()) << "a list shorter than it says";
    EXPECT_FALSE(boxOf({text, text}).IsNotNull());
    EXPECT_FALSE(boxOf({two, text, real}).IsNotNull());
    EXPECT_EQ(boxOf({{90, std::int64_t{1} << 40}}), CDataBox(1099511627776.0)) << "too large for a whole number";
}

TEST(DataBox, DescriptionsAreOneLine)
{
    EXPECT_EQ(describe(CDataBox(CStringArray{L"a", L"b"})), "[a,b]");
    EXPECT_EQ(describe(CDataBox()), "null");
    EXPECT_EQ(describe(CDataBox(2.5)), "2.5");
}

} // namespace
} // namespace velmor
