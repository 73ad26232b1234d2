// Regional settings of the desktop, as the edits ask for them.
#include "controls/LocaleSettings.h"
#include "controls/AMSEdits.h"

#include "tests/controls/WidgetEditBox.h"

#include <gtest/gtest.h>

using namespace AMSEdit;
using Query = RegionalQuery;

namespace {

std::wstring answer(const char *locale, Query query)
{
    return CLocaleSettings(QLocale(QLatin1String(locale))).Query(query).value_or(L"(none)");
}

class WithLocale {
public:
    explicit WithLocale(const char *name) { QLocale::setDefault(QLocale(QLatin1String(name))); }
    ~WithLocale() { QLocale::setDefault(m_before); }

private:
    QLocale m_before;
};

} // namespace

TEST(LocaleSettings, NumbersOfALanguageWithADecimalComma)
{
    EXPECT_EQ(answer("de_DE", Query::DecimalPoint), L",");
    EXPECT_EQ(answer("de_DE", Query::GroupSeparator), L".");
    EXPECT_EQ(answer("de_DE", Query::NegativeSign), L"-");
    EXPECT_EQ(answer("hr_HR", Query::DecimalPoint), L",");
    EXPECT_EQ(answer("hr_HR", Query::GroupSeparator), L".");
}

TEST(LocaleSettings, ASignOfTypographyIsGivenAsItIsTyped)
{
    ASSERT_EQ(QLocale(QLatin1String("hr_HR")).negativeSign(), QString(QChar(0x2212)));
    EXPECT_EQ(answer("hr_HR", Query::NegativeSign), L"-");
    EXPECT_EQ(answer("sv_SE", Query::NegativeSign), L"-");
    EXPECT_EQ(answer("ar_EG", Query::NegativeSign), L"-") << "without the mark of direction";
}

TEST(LocaleSettings, Currencies)
{
    struct Row {
        const char *locale;
        std::wstring symbol, position, places, grouping;
    };
    for (const Row &row : {Row{"en_US", L"$", L"0", L"2", L"3"}, Row{"de_DE", L"\u20ac", L"3", L"2", L"3"},
                           Row{"es_PA", L"B/.", L"0", L"2", L"3"}, Row{"da_DK", L"kr.", L"3", L"2", L"3"},
                           Row{"hi_IN", L"\u20b9", L"0", L"2", L"3"}, Row{"ja_JP", L"\uffe5", L"0", L"0", L"3"},
                           Row{"nl_NL", L"\u20ac", L"2", L"2", L"3"}, Row{"it_CH", L"CHF", L"3", L"2", L"3"}}) {
        EXPECT_EQ(answer(row.locale, Query::CurrencySymbol), row.symbol) << row.locale;
        EXPECT_EQ(answer(row.locale, Query::MoneySymbolPosition), row.position) << row.locale;
        EXPECT_EQ(answer(row.locale, Query::MoneyDecimalPlaces), row.places) << row.locale;
        EXPECT_EQ(answer(row.locale, Query::MoneyGrouping), row.grouping) << row.locale;
    }
    EXPECT_EQ(answer("de_DE", Query::MoneyDecimalPoint), L",");
    EXPECT_EQ(answer("de_DE", Query::MoneyGroupSeparator), L".");
}

TEST(LocaleSettings, WithoutGroupsTheGroupingIsZero)
{
    QLocale plain(QLatin1String("en_US"));
    plain.setNumberOptions(QLocale::OmitGroupSeparator);
    EXPECT_EQ(CLocaleSettings(plain).Query(Query::MoneyGrouping), L"0");
}

TEST(LocaleSettings, DatesAndTimes)
{
    EXPECT_EQ(answer("en_US", Query::DateSeparator), L"/");
    EXPECT_EQ(answer("en_US", Query::ShortDatePattern), L"M/d/yy");
    EXPECT_EQ(answer("en_US", Query::TimeSeparator), L":");
    EXPECT_EQ(answer("en_US", Query::TimeOfTwentyFourHours), L"0");
    EXPECT_EQ(answer("en_US", Query::MorningText), L"AM");
    EXPECT_EQ(answer("en_US", Query::AfternoonText), L"PM");
    EXPECT_EQ(answer("hr_HR", Query::DateSeparator), L".");
    EXPECT_EQ(answer("hr_HR", Query::TimeOfTwentyFourHours), L"1");
    EXPECT_EQ(answer("da_DK", Query::TimeSeparator), L".");
    EXPECT_EQ(answer("sv_SE", Query::DateSeparator), L"-");
    ASSERT_TRUE(QLocale(QLatin1String("ko_KR")).timeFormat(QLocale::ShortFormat).startsWith(QStringLiteral("AP")));
    EXPECT_EQ(answer("ko_KR", Query::TimeSeparator), L":") << "what stands between hour and minute";
}

TEST(LocaleSettings, AnEditTakesThemFromTheUsersLocale)
{
    const ToolkitForTests toolkit;
    const WithLocale croatian("hr_HR");
    CAMSNumericEdit edit(6, 2);
    edit.SetDigitsInGroup(3);
    edit.SetWindowText(L"-1234,567");
    EXPECT_EQ(edit.GetText(), L"-1.234,56");
    EXPECT_EQ(edit.GetDouble(), -1234.56);
}

TEST(LocaleSettings, ACurrencyEditPadsInTheUsersCharacters)
{
    const ToolkitForTests toolkit;
    const WithLocale german("de_DE");
    CAMSCurrencyEdit edit;
    EXPECT_EQ(edit.GetPrefix(), L"") << "the symbol stands behind the number";
    edit.SetWindowText(L"1234,5");
    edit.OnKillFocus(nullptr);
    EXPECT_EQ(edit.GetText(), L"1.234,50");
    const WithLocale panamanian("es_PA");
    CAMSCurrencyEdit balboa;
    balboa.SetWindowText(L"1234.5");
    balboa.OnKillFocus(nullptr);
    EXPECT_EQ(balboa.GetText(), L"B/.1,234.50");
    EXPECT_EQ(balboa.GetDouble(), 1234.5);
}
