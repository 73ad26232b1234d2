// The validating edits.
#include "tests/gallery/Options.h"
#include "tests/gallery/Rows.h"

#include "controls/AMSDateEdits.h"
#include "controls/AMSEdits.h"
#include "controls/WideText.h"

#include <QDateTimeEdit>

#include <cwctype>

namespace gallery {

namespace {

using namespace AMSEdit;

QString translated(const char *text)
{
    return Options::tr(text);
}

/// An edit that tells of its beeps and messages.
template <class Edit>
class Watched : public Edit {
public:
    template <class... Arguments>
    explicit Watched(const Setting &setting, const QString &name, Arguments &&...arguments)
        : Edit(std::forward<Arguments>(arguments)...), m_note(setting.note), m_name(name)
    {
        this->setAccessibleName(name);
    }
    void MessageBeep(unsigned sound) override
    {
        m_note(translated("%1: beep").arg(m_name));
        Edit::MessageBeep(sound);
    }
    void AfxMessageBox(const std::wstring &text, unsigned icon) override
    {
        m_note(translated("%1: %2").arg(m_name, ToQString(text)));
        Edit::AfxMessageBox(text, icon);
    }
    void SetFocus() override
    {
        m_note(translated("%1: takes the focus back").arg(m_name));
        Edit::SetFocus();
    }

private:
    std::function<void(const QString &)> m_note;
    QString m_name;
};

template <class Rule>
std::function<void(unsigned, unsigned)> modifyFlags(Rule &rule)
{
    return [&rule](unsigned add, unsigned remove) { rule.Rule::ModifyFlags(add, remove); };
}

template <class Edit>
Row rowOf(const QString &name, Edit *edit, Options *options)
{
    Row row;
    row.name = name;
    row.control = edit;
    row.options = options;
    row.text = [edit] { return ToQString(edit->GetText()); };
    return row;
}

QString shown(const CalendarTime &value, bool date, bool time)
{
    if (!value.IsValid())
        return translated("none");
    const QString day = QStringLiteral("%1-%2-%3")
                            .arg(value.GetYear(), 4, 10, QLatin1Char('0'))
                            .arg(value.GetMonth(), 2, 10, QLatin1Char('0'))
                            .arg(value.GetDay(), 2, 10, QLatin1Char('0'));
    const QString clock = QStringLiteral("%1:%2:%3")
                              .arg(value.GetHour(), 2, 10, QLatin1Char('0'))
                              .arg(value.GetMinute(), 2, 10, QLatin1Char('0'))
                              .arg(value.GetSecond(), 2, 10, QLatin1Char('0'));
    if (date && time)
        return day + QLatin1Char(' ') + clock;
    return date ? day : clock;
}

CalendarTime valueOf(const QDateTime &value)
{
    const QDate date = value.date();
    const QTime time = value.time();
    return {date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second()};
}

QDateTime valueOf(const CalendarTime &value)
{
    return {QDate(value.GetYear(), value.GetMonth(), value.GetDay()),
            QTime(value.GetHour(), value.GetMinute(), value.GetSecond())};
}

void addNumericOptions(Options &options, NumericBehavior &rule, bool decimals)
{
    wchar_t decimalPoint = 0, groupSeparator = 0;
    rule.GetSeparators(&decimalPoint, &groupSeparator);
    options.Number(translated("Whole digits"), rule.GetMaxWholeDigits(), 0, 15, [&rule](int n) {
        const bool negative = rule.IsNegativeAllowed();
        rule.SetMaxWholeDigits(n);
        rule.AllowNegative(negative);
    });
    if (decimals)
        options.Number(translated("Decimal places"), rule.GetMaxDecimalPlaces(), 0, 8,
                       [&rule](int n) { rule.SetMaxDecimalPlaces(n); });
    options.Number(translated("Digits in a group"), rule.GetDigitsInGroup(), 0, 9,
                   [&rule](int n) { rule.SetDigitsInGroup(n); });
    if (decimals)
        options.Character(translated("Decimal point"), decimalPoint, [&rule](wchar_t character) {
            wchar_t group = 0;
            rule.GetSeparators(nullptr, &group);
            rule.SetSeparators(character, group);
        });
    options.Character(translated("Group separator"), groupSeparator, [&rule](wchar_t character) {
        wchar_t point = 0;
        rule.GetSeparators(&point, nullptr);
        rule.SetSeparators(point, character);
    });
    options.Text(translated("Prefix"), ToQString(rule.GetPrefix()),
                 [&rule](const QString &text) { rule.SetPrefix(ToWide(text)); });
    options.Check(translated("Negative numbers"), rule.IsNegativeAllowed(),
                  [&rule](bool on) { rule.AllowNegative(on); });
    const auto flag = [&](const char *label, unsigned value) {
        options.Check(translated(label), (rule.GetFlags() & value) != 0,
                      [&rule, value](bool on) { rule.ModifyFlags(on ? value : 0, on ? 0 : value); });
    };
    if (decimals)
        flag("Point behind a full whole part", DecimalAfterMaxWhole);
    options.Check(translated("Range from 0 to 1000"), false, [&rule](bool on) {
        constexpr double kLargest = std::numeric_limits<double>::max();
        rule.SetRange(on ? 0.0 : -kLargest, on ? 1000.0 : kLargest);
    });
    AddFocusFlags(options, modifyFlags(rule));
    flag("Zeros in front", PadZerosBeforeDecimal);
    if (decimals)
        flag("Zeros behind", PadZerosAfterDecimal);
    flag("Nothing when empty", NoPadIfEmpty);
    flag("Leading zeros go", TrimLeadingZeros);
}

template <class Edit>
Row numericRow(const QString &name, Edit *edit, bool decimals, double value)
{
    auto *options = new Options;
    addNumericOptions(*options, *edit, decimals);
    AddColours(*options, *edit);
    edit->SetDouble(value, true);
    Row row = rowOf(name, edit, options);
    row.value = [edit] { return QString::number(edit->GetDouble(), 'g', 15); };
    row.valid = [edit] { return edit->IsValid(); };
    return row;
}

/// "#" takes digits, "A" letters, which become capitals, and "*" both. Literals of a mask are neither.
void fillSymbols(MaskedBehavior &rule)
{
    const auto isDigit = [](wchar_t c) { return std::iswdigit(static_cast<std::wint_t>(c)); };
    const auto isLetter = [](wchar_t c) { return std::iswalpha(static_cast<std::wint_t>(c)); };
    const auto isEither = [](wchar_t c) { return std::iswalnum(static_cast<std::wint_t>(c)); };
    const auto capital = [](wchar_t c) { return static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(c))); };
    rule.GetSymbolArray() = {Symbol(L'#', isDigit), Symbol(L'A', isLetter, capital), Symbol(L'*', isEither)};
}

QString kindOf(MaskChoice::Kind kind)
{
    switch (kind) {
    case MaskChoice::Kind::Alphanumeric:
        return translated("alphanumeric");
    case MaskChoice::Kind::DateTime:
        return translated("date and time");
    case MaskChoice::Kind::Numeric:
        return translated("numeric");
    case MaskChoice::Kind::Masked:
        break;
    }
    return translated("masked");
}

/// Limits as the toolkit's own fields.
template <class Rule>
void addRange(Options &options, Rule &rule, const QString &format)
{
    CalendarTime min, max;
    rule.GetRange(&min, &max);
    for (const bool first : {true, false}) {
        auto *field = new QDateTimeEdit;
        field->setDisplayFormat(format);
        field->setDateTimeRange(QDateTime(QDate(1752, 9, 14), QTime(0, 0)),
                                QDateTime(QDate(9999, 12, 31), QTime(23, 59, 59)));
        field->setDateTime(valueOf(first ? min : max));
        field->setFixedWidth(150);
        QObject::connect(field, &QDateTimeEdit::dateTimeChanged, &options, [&rule, first](const QDateTime &value) {
            CalendarTime from, to;
            rule.GetRange(&from, &to);
            (first ? from : to) = valueOf(value);
            rule.SetRange(from, to);
        });
        options.Row(first ? translated("From") : translated("To"), field);
    }
}

void addDateOptions(Options &options, DateBehavior &rule)
{
    options.Check(translated("Day in front of the month"), rule.IsDayShownBeforeMonth(),
                  [&rule](bool on) { rule.ShowDayBeforeMonth(on); });
    options.Character(translated("Date separator"), rule.GetSeparator(),
                      [&rule](wchar_t character) { rule.SetSeparator(character); });
}

void addTimeOptions(Options &options, TimeBehavior &rule)
{
    std::wstring am, pm;
    rule.GetAMPMSymbols(&am, &pm);
    options.Check(translated("Twenty-four hours"), rule.IsShowing24HourFormat(),
                  [&rule](bool on) { rule.Show24HourFormat(on); });
    options.Check(translated("Seconds"), rule.IsShowingSeconds(), [&rule](bool on) { rule.ShowSeconds(on); });
    options.Character(translated("Time separator"), rule.GetSeparator(),
                      [&rule](wchar_t character) { rule.SetSeparator(character); });
    options.Choice(translated("Morning, afternoon"),
                   {ToQString(am) + QStringLiteral(", ") + ToQString(pm), QStringLiteral("AM, PM"),
                    QStringLiteral("a.m., p.m."), QStringLiteral("dop., odp.")},
                   0, [&rule, am, pm](int index) {
                       const std::pair<std::wstring, std::wstring> texts[] = {
                           {am, pm}, {L"AM", L"PM"}, {L"a.m.", L"p.m."}, {L"dop.", L"odp."}};
                       rule.SetAMPMSymbols(texts[index].first, texts[index].second);
                   });
}

} // namespace

Group NumberRows(const Setting &setting)
{
    const QString numeric = translated("Numeric"), integer = translated("Integer"), currency = translated("Currency");
    auto *numericEdit = new Watched<CAMSNumericEdit>(setting, numeric, 9, 4, setting.regional);
    numericEdit->SetDigitsInGroup(3);
    auto *integerEdit = new Watched<CAMSIntegerEdit>(setting, integer, 8, setting.regional);
    auto *currencyEdit = new Watched<CAMSCurrencyEdit>(setting, currency, setting.regional);
    Group group{translated("Numbers"),
                {numericRow(numeric, numericEdit, true, 0.0), numericRow(integer, integerEdit, false, 4711),
                 numericRow(currency, currencyEdit, true, 1250)}};
    wchar_t decimalPoint = 0;
    numericEdit->GetSeparators(&decimalPoint, nullptr);
    numericEdit->SetText(std::wstring(L"-12345") + decimalPoint + L"6789");
    return group;
}

Group TextRows(const Setting &setting)
{
    const QString alphanumeric = translated("Alphanumeric"), masked = translated("Masked"),
                  multi = translated("Multi-masked");
    const QString plain = translated("Without rules");
    auto *plainEdit = new Watched<CAMSEdit>(setting, plain);
    auto *plainOptions = new Options;
    AddColours(*plainOptions, *plainEdit);
    plainEdit->SetText(L"Any text");

    auto *alphanumericEdit = new Watched<CAMSAlphanumericEdit>(setting, alphanumeric, 12, L"%*?");
    auto *alphanumericOptions = new Options;
    alphanumericOptions->Number(translated("Most characters (0: any)"), 12, 0, 100,
                                [=](int n) { alphanumericEdit->SetMaxCharacters(n); });
    alphanumericOptions->Text(translated("Not allowed"), QStringLiteral("%*?"),
                              [=](const QString &text) { alphanumericEdit->SetInvalidCharacters(ToWide(text)); });
    AddColours(*alphanumericOptions, *alphanumericEdit);
    alphanumericEdit->SetText(L"Manhole 12");

    auto *maskedEdit = new Watched<CAMSMaskedEdit>(setting, masked, L"AA-### (##)");
    fillSymbols(*maskedEdit);
    auto *maskedOptions = new Options;
    maskedOptions->Text(translated("Mask"), QStringLiteral("AA-### (##)"),
                        [=](const QString &text) { maskedEdit->SetMask(ToWide(text)); });
    maskedOptions->Row(QString(), new QLabel(translated("#  digit\nA  letter, made a capital\n*  digit or letter")));
    AddColours(*maskedOptions, *maskedEdit);
    maskedEdit->SetText(L"KS-104 (2");
    Row maskedRow = rowOf(masked, maskedEdit, maskedOptions);
    maskedRow.value = [maskedEdit] { return ToQString(maskedEdit->GetNumericText()); };

    auto *multiEdit = new Watched<CAMSMultiMaskedEdit>(setting, multi, setting.regional);
    fillSymbols(*multiEdit);
    auto *multiOptions = new Options;
    const QStringList masks = {
        QStringLiteral("#,###.##"),   QStringLiteral("(##) ##-##"), QStringLiteral("Up to 16 signs__"),
        QStringLiteral("##/##/####"), QStringLiteral("##:##"),      QStringLiteral("##/##/#### ##:##")};
    multiOptions->EditableChoice(translated("Mask"), masks,
                                 [=](const QString &text) { multiEdit->SetMask(ToWide(text)); });
    multiOptions->Row(QString(), new QLabel(translated("Flags of a date mask stay\nwhen another mask follows.")));
    AddColours(*multiOptions, *multiEdit);
    multiEdit->SetMask(ToWide(masks.front()));
    multiEdit->SetText(L"1234.5");
    Row multiRow = rowOf(multi, multiEdit, multiOptions);
    multiRow.value = [multiEdit] { return kindOf(multiEdit->CurrentKind()); };

    return {translated("Text and masks"),
            {rowOf(plain, plainEdit, plainOptions), rowOf(alphanumeric, alphanumericEdit, alphanumericOptions),
             maskedRow, multiRow}};
}

Group DateRows(const Setting &setting)
{
    const QString date = translated("Date"), time = translated("Time"), both = translated("Date and time");

    auto *dateEdit = new Watched<CAMSDateEdit>(setting, date, setting.regional);
    auto *dateOptions = new Options;
    addDateOptions(*dateOptions, *dateEdit);
    addRange<DateBehavior>(*dateOptions, *dateEdit, QStringLiteral("yyyy-MM-dd"));
    dateOptions->Button(translated("Today"), [=] { dateEdit->SetToday(); });
    AddFocusFlags(*dateOptions, modifyFlags<DateBehavior>(*dateEdit));
    AddColours(*dateOptions, *dateEdit);
    dateEdit->SetDate(2024, 2, 29);
    Row dateRow = rowOf(date, dateEdit, dateOptions);
    dateRow.value = [dateEdit] { return shown(dateEdit->GetDate(), true, false); };
    dateRow.valid = [dateEdit] { return dateEdit->IsValid(); };

    auto *timeEdit = new Watched<CAMSTimeEdit>(setting, time, setting.regional);
    auto *timeOptions = new Options;
    addTimeOptions(*timeOptions, *timeEdit);
    addRange<TimeBehavior>(*timeOptions, *timeEdit, QStringLiteral("HH:mm:ss"));
    timeOptions->Button(translated("Now"), [=] { timeEdit->SetToNow(); });
    AddFocusFlags(*timeOptions, modifyFlags<TimeBehavior>(*timeEdit));
    AddColours(*timeOptions, *timeEdit);
    timeEdit->SetTime(13, 45, 0);
    Row timeRow = rowOf(time, timeEdit, timeOptions);
    timeRow.value = [timeEdit] { return shown(timeEdit->GetTime(), false, true); };
    timeRow.valid = [timeEdit] { return timeEdit->IsValid(); };

    auto *bothEdit = new Watched<CAMSDateTimeEdit>(setting, both, setting.regional);
    auto *bothOptions = new Options;
    bothOptions->Choice(translated("Shows"), {translated("Date and time"), translated("Date"), translated("Time")}, 0,
                        [=](int index) {
                            const unsigned flags[] = {0, DateOnly, TimeOnly};
                            bothEdit->ModifyFlags(flags[index], (DateOnly | TimeOnly) & ~flags[index]);
                        });
    addDateOptions(*bothOptions, *bothEdit);
    addTimeOptions(*bothOptions, *bothEdit);
    addRange<DateTimeBehavior>(*bothOptions, *bothEdit, QStringLiteral("yyyy-MM-dd HH:mm"));
    bothOptions->Button(translated("Now"), [=] { bothEdit->SetToNow(); });
    AddFocusFlags(*bothOptions, modifyFlags<DateTimeBehavior>(*bothEdit));
    AddColours(*bothOptions, *bothEdit);
    bothEdit->SetDateTime({2024, 2, 29, 13, 45, 0});
    Row bothRow = rowOf(both, bothEdit, bothOptions);
    bothRow.value = [bothEdit] { return shown(bothEdit->GetDateTime(), true, true); };
    bothRow.valid = [bothEdit] { return bothEdit->IsValid(); };

    return {translated("Dates and times"), {dateRow, timeRow, bothRow}};
}

} // namespace gallery
