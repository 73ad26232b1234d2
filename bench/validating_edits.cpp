// A key in a numeric edit against a line edit with QDoubleValidator, and the rule alone against the validator alone.
// Both run in turns in one process; the figures are the best of many rounds in time of the processor, the ratios are of
// ours to theirs.
#include "controls/AMSEdits.h"

#include <QApplication>
#include <QDoubleValidator>
#include <QKeyEvent>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <limits>

using namespace AMSEdit;

namespace {

constexpr int kRounds = 60;

double now()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Best seconds of each of the two, which are run in turns.
std::pair<double, double> inTurns(const std::function<void()> &ours, const std::function<void()> &theirs)
{
    double best[2] = {std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    for (int round = 0; round < 2 * kRounds; ++round) {
        const bool first = round % 2 == 0;
        const double start = now();
        (first ? ours : theirs)();
        best[first ? 0 : 1] = std::min(best[first ? 0 : 1], now() - start);
    }
    return {best[0], best[1]};
}

void tell(const char *what, std::pair<double, double> seconds, int count)
{
    std::printf("%-44s %9.1f ns %9.1f ns   ratio %.2f\n", what, seconds.first / count * 1e9,
                seconds.second / count * 1e9, seconds.first / seconds.second);
}

struct Typed {
    int key;
    QString text;
};

/// A number and its removal: 9 characters in, 9 out.
std::vector<Typed> keys()
{
    std::vector<Typed> all;
    for (const QChar character : QStringLiteral("1234.5678"))
        all.push_back({character.unicode(), QString(character)});
    for (int i = 0; i < 9; ++i)
        all.push_back({Qt::Key_Backspace, QStringLiteral("\b")});
    return all;
}

constexpr int kTurns = 50;

void typeInto(QLineEdit &edit, const std::vector<Typed> &all)
{
    for (int turn = 0; turn < kTurns; ++turn) {
        for (const Typed &typed : all) {
            QKeyEvent event(QEvent::KeyPress, typed.key, Qt::NoModifier, typed.text);
            QApplication::sendEvent(&edit, &event);
        }
    }
}

void compareEdits(const char *what, bool shown)
{
    CAMSNumericEdit ours(9, 4);
    ours.SetSeparators(L'.', L',');
    QLineEdit theirs;
    QDoubleValidator validator(-999999999, 999999999, 4);
    validator.setLocale(QLocale::c());
    theirs.setValidator(&validator);
    if (shown) {
        ours.show();
        theirs.show();
        QApplication::processEvents();
    }
    const auto all = keys();
    tell(what, inTurns([&] { typeInto(ours, all); }, [&] { typeInto(theirs, all); }),
         kTurns * static_cast<int>(all.size()));
    if (!ours.text().isEmpty() || !theirs.text().isEmpty())
        std::printf("the keys did not come to nothing\n");
}

/// A box of a string and two positions, with nothing beside.
class LeanBox : public CEditBox {
public:
    std::wstring GetWindowText() const override { return m_text; }
    Selection GetSel() const override { return m_selection; }
    void SetSel(int start, int end, bool) override
    {
        const int length = static_cast<int>(m_text.size());
        m_selection = {std::clamp(start, 0, length), std::clamp(end, 0, length)};
    }
    unsigned GetStyle() const override { return 0; }
    bool IsWindowEnabled() const override { return true; }
    bool IsWindow() const override { return true; }
    void SetFocus() override {}
    void MessageBeep(unsigned) override {}
    void AfxMessageBox(const std::wstring &, unsigned) override {}
    void Default(const EditMessage &message) override
    {
        if (message.kind != EditMessage::Kind::Char)
            return;
        if (message.code != kKeyBackspace)
            PlatformReplaceSel(std::wstring(1, static_cast<wchar_t>(message.code)));
        else if (m_selection.start > 0)
            SetSel(m_selection.start - 1, m_selection.end, true), PlatformReplaceSel({});
    }

protected:
    void PlatformSetText(const std::wstring &text) override
    {
        m_text = text;
        SetSel(0, 0, true);
    }
    void PlatformReplaceSel(const std::wstring &text) override
    {
        m_text.replace(static_cast<std::size_t>(m_selection.start),
                       static_cast<std::size_t>(m_selection.end - m_selection.start), text);
        const int behind = m_selection.start + static_cast<int>(text.size());
        m_selection = {behind, behind};
    }
    void PlatformCopy() override {}
    ColorRef ContextBackgroundColor() const override { return 0; }
    ColorRef ContextTextColor() const override { return 0; }
    void PlatformRepaint() override {}

private:
    std::wstring m_text;
    Selection m_selection;
};

/// The rule with all that it does to its box for a key, against one look of the validator at the text that comes of it.
void compareRules(const char *what, int digitsInGroup)
{
    LeanBox box;
    NumericBehavior rule(box, 9, 4, CNoRegionalSettings());
    rule.SetDigitsInGroup(digitsInGroup);
    QDoubleValidator validator(-999999999, 999999999, 4);
    validator.setLocale(QLocale::c());
    const std::wstring number = L"1234.5678";
    std::vector<QString> texts;
    for (std::size_t length = 1; length <= number.size(); ++length)
        texts.push_back(QString::fromStdWString(number.substr(0, length)));

    constexpr int kRepeats = 2000;
    int accepted = 0;
    const auto ours = [&] {
        for (int i = 0; i < kRepeats; ++i) {
            for (const wchar_t character : number)
                rule.OnChar(character, 1, 0);
            box.SetWindowText({});
        }
    };
    const auto theirs = [&] {
        for (int i = 0; i < kRepeats; ++i) {
            for (QString &text : texts) {
                int position = static_cast<int>(text.size());
                accepted += validator.validate(text, position) != QValidator::Invalid ? 1 : 0;
            }
        }
    };
    tell(what, inTurns(ours, theirs), kRepeats * static_cast<int>(number.size()));
    if (accepted == 0)
        std::printf("the validator took nothing\n");
}

} // namespace

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    std::printf("%-44s %12s %12s\n", "", "ours", "theirs");
    compareEdits("key in an edit", false);
    compareEdits("key in an edit, shown", true);
    compareRules("rule alone", 0);
    compareRules("rule alone, groups of three", 3);
    return 0;
}
