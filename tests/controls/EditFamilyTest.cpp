// The edits of the family as they are constructed, found and set up.
#include "controls/AMSEdits.h"

#include "tests/controls/MaskSymbols.h"
#include "tests/controls/RoutedEdits.h"

#include <gtest/gtest.h>

using namespace AMSEdit;
using namespace routed;

TEST(EditFamily, EachIsConstructedAsTold)
{
    const ToolkitForTests toolkit;
    QWidget parent;
    const auto *numeric = new CAMSNumericEdit(&parent);
    EXPECT_EQ(numeric->parentWidget(), &parent);
    EXPECT_EQ(numeric->GetMaxWholeDigits(), 9);
    EXPECT_EQ(numeric->GetMaxDecimalPlaces(), 4);
    CAMSIntegerEdit integer(5, kNoSettings);
    EXPECT_EQ(integer.GetMaxWholeDigits(), 5);
    EXPECT_EQ(integer.GetMaxDecimalPlaces(), 0);
    integer.SetWindowText(L"12.5");
    EXPECT_EQ(integer.GetText(), L"12");
    CAMSCurrencyEdit currency(kNoSettings);
    EXPECT_EQ(currency.GetFlags(), 0xE00u);
    currency.SetWindowText(L"1234.5");
    EXPECT_EQ(currency.GetText(), L"$1,234.5");
    currency.OnKillFocus(nullptr);
    EXPECT_EQ(currency.GetText(), L"$1,234.50");
    CAMSAlphanumericEdit alphanumeric(3, L"x");
    alphanumeric.SetWindowText(L"axbc");
    EXPECT_EQ(alphanumeric.GetText(), L"ab");
    CAMSMaskedEdit masked(L"##/##");
    masked.GetSymbolArray() = mask_symbols::kDigits;
    masked.SetWindowText(L"123");
    EXPECT_EQ(masked.GetText(), L"12/3");
    CAMSMultiMaskedEdit multi(kNoSettings);
    multi.SetMask(L"###");
    multi.SetWindowText(L"a1234");
    EXPECT_EQ(multi.GetText(), L"123");
}

TEST(EditFamily, EachIsFoundByItsOwnClass)
{
    const ToolkitForTests toolkit;
    QWidget parent;
    new CAMSNumericEdit(9, 4, kNoSettings, &parent);
    new CAMSCurrencyEdit(kNoSettings, &parent);
    new CAMSAlphanumericEdit(0, L"", &parent);
    EXPECT_EQ(parent.findChildren<CAMSNumericEdit *>().size(), 2);
    EXPECT_EQ(parent.findChildren<CAMSCurrencyEdit *>().size(), 1);
    EXPECT_EQ(parent.findChildren<CAMSMaskedEdit *>().size(), 0);
    EXPECT_EQ(parent.findChildren<CAMSEdit *>().size(), 3);
}

TEST(EditFamily, ADialogsFieldIsSetUpInItsOrder)
{
    const ToolkitForTests toolkit;
    CAMSNumericEdit edit(9, 4);
    edit.SetMaxWholeDigits(4);
    edit.SetMaxDecimalPlaces(4);
    edit.SetSeparators(L'.', L',');
    edit.AllowNegative(false);
    edit.SetRange(0.0, 1.0);
    EXPECT_EQ(edit.GetFlags(), CannotBeNegative);
    edit.SetDouble(12345.678912, true);
    EXPECT_EQ(edit.GetText(), L"1234.6789");
    EXPECT_EQ(edit.GetDouble(), 1234.6789);
    edit.OnKillFocus(nullptr);
    EXPECT_EQ(edit.GetText(), L"1234.6789") << "the range is never enforced";
}
