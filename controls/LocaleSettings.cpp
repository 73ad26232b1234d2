#include "controls/LocaleSettings.h"

#include "controls/WideText.h"

#include <algorithm>

namespace AMSEdit {

namespace {

QString withoutMarks(QString text)
{
    text.removeIf([](QChar character) { return character.category() == QChar::Other_Format; });
    return text;
}

QString typedSign(QString sign)
{
    return withoutMarks(std::move(sign)).replace(QChar(0x2212), QLatin1Char('-'));
}

/// The first character behind the first field of a date or time pattern; fields tells what letters begin one.
QString separatorOf(const QString &pattern, QLatin1String fields)
{
    const QString plain = withoutMarks(pattern);
    const auto first =
        std::find_if(plain.cbegin(), plain.cend(), [=](QChar c) { return fields.contains(c, Qt::CaseInsensitive); });
    const auto found = std::find_if(first, plain.cend(), [](QChar c) { return !c.isLetter() && c != u'\''; });
    return found == plain.cend() ? QString() : QString(*found);
}

/// Digits behind the last occurrence of a separator; all of none is 0.
int digitsBehindLast(const QString &number, const QString &separator)
{
    const auto at = separator.isEmpty() ? -1 : number.lastIndexOf(separator);
    if (at < 0)
        return 0;
    const auto behind = QStringView(number).mid(at + separator.size());
    return static_cast<int>(std::count_if(behind.cbegin(), behind.cend(), [](QChar c) { return c.isDigit(); }));
}

/// How a symbol stands to an amount: 0 in front, 1 behind, 2 in front with a blank, 3 behind with a blank.
int symbolPosition(const QString &amount, const QString &symbol)
{
    const auto isDigit = [](QChar c) { return c.isDigit(); };
    const auto at = amount.indexOf(symbol);
    const auto first = std::find_if(amount.cbegin(), amount.cend(), isDigit) - amount.cbegin();
    if (at <= first) {
        const auto behind = at + symbol.size();
        return behind < amount.size() && amount[behind].isSpace() ? 2 : 0;
    }
    return at > 0 && amount[at - 1].isSpace() ? 3 : 1;
}

} // namespace

QString CLocaleSettings::Answer(RegionalQuery query) const
{
    QString symbol = m_locale.currencySymbol();
    if (symbol.isEmpty()) // some languages of a country name none
        symbol = m_locale.currencySymbol(QLocale::CurrencyIsoCode);
    switch (query) {
    case RegionalQuery::DecimalPoint:
    case RegionalQuery::MoneyDecimalPoint:
        return m_locale.decimalPoint();
    case RegionalQuery::GroupSeparator:
    case RegionalQuery::MoneyGroupSeparator:
        return m_locale.groupSeparator();
    case RegionalQuery::NegativeSign:
        return typedSign(m_locale.negativeSign());
    case RegionalQuery::CurrencySymbol:
        return withoutMarks(symbol);
    case RegionalQuery::MoneyGrouping:
        return QString::number(digitsBehindLast(m_locale.toString(123456789), m_locale.groupSeparator()));
    case RegionalQuery::MoneyDecimalPlaces:
        // Without the symbol, which may have a point of its own.
        return QString::number(
            digitsBehindLast(m_locale.toCurrencyString(1.0).remove(symbol), m_locale.decimalPoint()));
    case RegionalQuery::MoneySymbolPosition:
        return QString::number(symbolPosition(withoutMarks(m_locale.toCurrencyString(1.0)), withoutMarks(symbol)));
    case RegionalQuery::ShortDatePattern:
        return withoutMarks(m_locale.dateFormat(QLocale::ShortFormat));
    case RegionalQuery::DateSeparator:
        return separatorOf(m_locale.dateFormat(QLocale::ShortFormat), QLatin1String("dmy"));
    case RegionalQuery::TimeSeparator:
        return separatorOf(m_locale.timeFormat(QLocale::ShortFormat), QLatin1String("h"));
    case RegionalQuery::TimeOfTwentyFourHours:
        return m_locale.timeFormat(QLocale::ShortFormat).contains(u'a', Qt::CaseInsensitive) ? QStringLiteral("0")
                                                                                             : QStringLiteral("1");
    case RegionalQuery::MorningText:
        return m_locale.amText();
    case RegionalQuery::AfternoonText:
        return m_locale.pmText();
    }
    return {};
}

std::optional<std::wstring> CLocaleSettings::Query(RegionalQuery query) const
{
    const QString answer = Answer(query);
    if (answer.isEmpty())
        return std::nullopt;
    return ToWide(answer);
}

const IRegionalSettings &UserRegionalSettings()
{
    class User : public IRegionalSettings {
        std::optional<std::wstring> Query(RegionalQuery query) const override { return CLocaleSettings().Query(query); }
    };
    static const User user;
    return user;
}

} // namespace AMSEdit
