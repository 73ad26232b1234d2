#include "app/Script.h"

#include "host/editor/CommandStack.h"
#include "host/editor/ControlEvents.h"
#include "host/editor/SectionChoice.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"
#include "host/sewage/AreaTable.h"

#include <QCoreApplication>

#include <charconv>

namespace velmor {

namespace {

std::optional<int> wholeNumber(const std::wstring &text)
{
    const std::string narrow = utf8(text);
    int value = 0;
    const auto [last, error] = std::from_chars(narrow.data(), narrow.data() + narrow.size(), value);
    return error == std::errc() && last == narrow.data() + narrow.size() ? std::optional(value) : std::nullopt;
}

std::optional<bool> onOrOff(const std::wstring &text)
{
    return text == L"on" ? std::optional(true) : text == L"off" ? std::optional(false) : std::nullopt;
}

ControlEvents::ItemPath pathOf(std::span<const Word> words)
{
    ControlEvents::ItemPath path;
    for (const Word &word : words)
        path.push_back(word.text);
    return path;
}

/// The rest of a line behind its first word.
std::wstring restOf(std::wstring_view line)
{
    std::size_t at = 0;
    const auto blank = [&] { return at < line.size() && std::iswspace(line[at]); };
    while (blank())
        ++at;
    while (at < line.size() && !blank())
        ++at;
    while (blank())
        ++at;
    line.remove_prefix(at);
    while (!line.empty() && std::iswspace(line.back()))
        line.remove_suffix(1);
    return std::wstring(line);
}

} // namespace

/// A verb that works a control: how many words it takes behind the control's number, and what it does with them.
struct Script::Verb {
    const wchar_t *name;
    std::size_t fewest, most;
    ControlEvents::Problem (*run)(ControlEvents &controls, int control, Words words);
};

Script::Script(Session &session, std::string name, std::string_view text, std::ostream &out, std::ostream &err)
    : m_session(session), m_name(std::move(name)), m_out(out), m_err(err)
{
    std::size_t number = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view raw = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        ++number;
        if (number == 1 && raw.starts_with("\xEF\xBB\xBF"))
            raw.remove_prefix(3);
        const std::wstring line = wide(raw);
        std::wstring reason;
        auto words = splitWords(line, reason);
        if (!words && m_result.code == kDone) {
            m_lines.push_back({number, {}, {}});
            m_current = m_lines.size() - 1;
            fail(reason);
        }
        if (words && !words->empty())
            m_lines.push_back({number, restOf(line), std::move(*words)});
    }
    m_session.setPromptSource(this);
    m_session.setDialogDriver([this](CAdUiBaseDialog &dialog) { drive(dialog); });
    m_session.setMessageSink([this](MessageKind kind, const std::wstring &message) {
        if (kind == MessageKind::Status) {
            m_out << utf8(message) << std::endl;
            return;
        }
        tellHeldAlert();
        m_heldAlert = message;
        if (!m_holdsAlerts)
            tellHeldAlert();
    });
}

Script::~Script()
{
    m_session.setPromptSource(nullptr);
    m_session.setDialogDriver({});
    m_session.setMessageSink({});
}

ScriptResult Script::run()
{
    while (m_result.code == kDone && m_next < m_lines.size() && !m_session.commands().isQuitAsked())
        execute(m_lines[m_current = m_next++]);
    m_session.commands().askToQuit(false);
    return m_result;
}

void Script::fail(std::wstring reason, ExitCode code)
{
    if (m_result.code != kDone)
        return;
    m_result.code = code;
    m_result.message = m_name + ":" + std::to_string(current().number) + ": " + utf8(reason);
}

std::optional<Answer> Script::ask(const Prompt &prompt)
{
    if (m_result.code != kDone || m_next == m_lines.size())
        return std::nullopt;
    const Line &line = m_lines[m_next];
    const std::wstring &verb = line.words.front().text;
    if (verb != L"answer" && verb != L"escape")
        return std::nullopt;
    const std::size_t asking = m_current;
    m_current = m_next++;
    if (verb == L"escape")
        return Answer{Answer::Escape{}};
    if (line.words.size() == 1)
        return Answer{Answer::Enter{}};
    const Answer answer{line.words.size() == 2 ? line.words[1].text : line.text};
    if (prompt.kind == PromptKind::Point && !answer.isEnter() && !answer.point(prompt.base) &&
        !matchKeyword(prompt.keywords, *answer.text()))
        fail(uiText("script.point"));
    m_current = asking;
    return m_result.code == kDone ? std::optional(answer) : std::nullopt;
}

void Script::drive(CAdUiBaseDialog &dialog)
{
    m_dialogs.push_back(&dialog);
    m_holdsAlerts = false; // nor do a dialog's alerts wait for its end
    tellHeldAlert();
    const auto open = [&] { return dialog.isVisible() || dialog.IsEditorCommandRunning(); };
    while (m_result.code == kDone && m_next < m_lines.size() && open()) {
        execute(m_lines[m_current = m_next++]);
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
    m_dialogs.pop_back();
    m_holdsAlerts = m_dialogs.empty();
}

void Script::execute(const Line &line)
{
    const std::wstring &verb = line.words.front().text;
    const Words words = Words(line.words).subspan(1);
    if (verb == L"select" && (!m_dialogs.empty() || isSectionForm(words))) // else the command of that name
        select(words);
    else if (verb == L"print")
        print(words);
    else if (verb == L"echo")
        m_out << utf8(words.size() == 1 ? words[0].text : line.text) << std::endl;
    else if (verb == L"answer" || verb == L"escape")
        fail(uiText("script.noPrompt"));
    else if (verb == L"expect-alert") {
        const auto &alerts = m_session.alerts();
        if (words.size() != 1)
            fail(uiText("script.alertWords"));
        else if (alerts.empty() || alerts.back() != words[0].text)
            fail(alerts.empty() ? uiText("script.noAlert") : uiMessage("script.otherAlert", {alerts.back()}));
    } else
        executeInDialog(line);
}

void Script::executeInDialog(const Line &line)
{
    using Problem = ControlEvents::Problem;
    static const auto onOffMissing = [] { return Problem(uiText("script.onOff")); };
    static const auto numberMissing = [] { return Problem(uiText("script.number")); };
    static constexpr std::size_t kAny = 1000;
    static const Verb kVerbs[] = {
        {L"click", 0, 0, [](ControlEvents &c, int n, Words) { return c.click(n); }},
        {L"check", 1, 1,
         [](ControlEvents &c, int n, Words w) {
             const auto on = onOrOff(w[0].text);
             return on ? c.check(n, *on) : onOffMissing();
         }},
        {L"choose", 1, 1,
         [](ControlEvents &c, int n, Words w) {
             const auto value = wholeNumber(w[0].text);
             return value ? c.choose(n, *value) : numberMissing();
         }},
        {L"choose-text", 1, 1, [](ControlEvents &c, int n, Words w) { return c.chooseText(n, w[0].text); }},
        {L"type", 1, 1, [](ControlEvents &c, int n, Words w) { return c.type(n, w[0].text); }},
        {L"rows", 0, kAny,
         [](ControlEvents &c, int n, Words w) {
             std::vector<int> rows;
             for (const Word &word : w) {
                 const auto row = wholeNumber(word.text);
                 if (!row)
                     return numberMissing();
                 rows.push_back(*row);
             }
             return c.selectRows(n, rows);
         }},
        {L"item", 1, kAny, [](ControlEvents &c, int n, Words w) { return c.clickItem(n, pathOf(w)); }},
        {L"tick", 2, kAny,
         [](ControlEvents &c, int n, Words w) {
             const auto on = onOrOff(w.back().text);
             return on ? c.tickItem(n, pathOf(w.first(w.size() - 1)), *on) : onOffMissing();
         }},
        {L"edit", 3, 3,
         [](ControlEvents &c, int n, Words w) {
             const auto row = wholeNumber(w[0].text), column = wholeNumber(w[1].text);
             return row && column ? c.editCell(n, *row, *column, w[2].text) : numberMissing();
         }},
        {L"key", 1, 1, [](ControlEvents &c, int n, Words w) { return c.pressKey(n, w[0].text); }},
        {L"expect-item", 1, 1, [](ControlEvents &c, int n, Words w) { return c.expectItem(n, w[0].text); }},
        {L"expect-tick", 2, kAny,
         [](ControlEvents &c, int n, Words w) {
             const auto on = onOrOff(w.back().text);
             return on ? c.expectTick(n, pathOf(w.first(w.size() - 1)), *on) : onOffMissing();
         }},
        {L"expect", 1, 1, [](ControlEvents &c, int n, Words w) { return c.expectText(n, w[0].text); }},
        {L"expect-checked", 1, 1,
         [](ControlEvents &c, int n, Words w) {
             const auto on = onOrOff(w[0].text);
             return on ? c.expectChecked(n, *on) : onOffMissing();
         }},
        {L"expect-enabled", 1, 1,
         [](ControlEvents &c, int n, Words w) {
             const auto on = onOrOff(w[0].text);
             return on ? c.expectEnabled(n, *on) : onOffMissing();
         }},
        {L"expect-rows", 1, 1,
         [](ControlEvents &c, int n, Words w) {
             const auto count = wholeNumber(w[0].text);
             return count ? c.expectRows(n, *count) : numberMissing();
         }},
        {L"expect-cell", 3, 3,
         [](ControlEvents &c, int n, Words w) {
             const auto row = wholeNumber(w[0].text), column = wholeNumber(w[1].text);
             return row && column ? c.expectCell(n, *row, *column, w[2].text) : numberMissing();
         }},
    };
    const std::wstring &name = line.words.front().text;
    const Words words = Words(line.words).subspan(1);
    const bool close = name == L"close";
    const auto *verb = std::ranges::find_if(kVerbs, [&](const Verb &row) { return name == row.name; });
    if (!close && verb == std::end(kVerbs))
        return runCommand(line);
    if (m_dialogs.empty())
        return fail(uiText("script.noDialog"));
    if (close) {
        if (!words.empty())
            return fail(uiText("script.close"));
        static_cast<QDialog *>(m_dialogs.back())->reject(); // as Escape and the window's own button do
        return;
    }
    const auto control = words.empty() ? std::nullopt : wholeNumber(words[0].text);
    if (!control)
        return fail(uiText("script.control"));
    if (words.size() - 1 < verb->fewest || words.size() - 1 > verb->most)
        return fail(uiMessage(words.size() - 1 < verb->fewest ? "script.moreWords" : "script.fewerWords", {name}));
    ControlEvents controls(*m_dialogs.back());
    const std::size_t running = m_current; // a click may run a whole dialog, and its lines with it
    const std::size_t failuresBefore = m_session.failures();
    const auto problem = verb->run(controls, *control, words.subspan(1));
    m_current = running;
    if (problem)
        fail(*problem);
    else if (m_session.failures() != failuresBefore)
        fail(m_session.alerts().back(), kFailed);
}

void Script::runCommand(const Line &line)
{
    const std::wstring &name = line.words.front().text;
    std::vector<Answer> answers;
    for (const Word &word : Words(line.words).subspan(1))
        answers.push_back({word.text});
    const std::size_t running = m_current;
    const std::size_t alertsBefore = m_session.alerts().size();
    // The alert of a command that fails comes with the script's line, so it is not told before.
    m_holdsAlerts = m_dialogs.empty();
    const RunStatus status = m_session.commands().start(name, answers);
    m_holdsAlerts = false;
    m_current = running;
    if ((status == RunStatus::BadInput || status == RunStatus::Failed) && m_result.code == kDone)
        m_heldAlert.reset();
    tellHeldAlert();
    const auto why = [&] {
        return m_session.alerts().size() > alertsBefore ? m_session.alerts().back() : m_session.lastStatus();
    };
    switch (status) {
    case RunStatus::Done:
        break;
    case RunStatus::Unknown:
        fail(uiMessage("ui.run.unknown", {name}));
        break;
    case RunStatus::InputRefused:
        fail(uiMessage("script.badAnswer", {name}));
        break;
    case RunStatus::Cancelled:
        fail(uiMessage("script.noAnswer", {name}));
        break;
    case RunStatus::Busy:
        fail(m_session.lastStatus());
        break;
    case RunStatus::BadInput:
        fail(why());
        break;
    case RunStatus::Failed:
        fail(why(), kFailed);
        break;
    }
}

void Script::tellHeldAlert()
{
    if (m_heldAlert)
        m_err << utf8(*m_heldAlert) << std::endl;
    m_heldAlert.reset();
}

void Script::select(Words words)
{
    if (!m_session.drawing())
        return fail(uiText("script.noDrawing"));
    std::wstring reason;
    auto ids = sectionsByWords(*m_session.drawing(), words, reason);
    if (!ids)
        return fail(reason);
    m_session.setNextSelection(std::move(*ids));
}

void Script::print(Words words)
{
    if (words.size() != 1)
        return fail(uiText("script.print"));
    const std::wstring &what = words[0].text;
    if (const auto control = wholeNumber(what)) {
        if (m_dialogs.empty())
            return fail(uiText("script.noDialog"));
        std::wstring shown;
        if (const auto problem = ControlEvents(*m_dialogs.back()).text(*control, shown))
            return fail(*problem);
        m_out << utf8(shown) << std::endl;
        return;
    }
    if (!m_session.drawing())
        return fail(uiText("script.noDrawing"));
    if (what != L"areas" && what != L"areas-csv" && what != L"areas-json")
        return fail(uiText("script.print"));
    const auto rows = areaTable(*m_session.drawing());
    m_out << (what == L"areas"       ? areasText(rows)
              : what == L"areas-csv" ? areasCsv(rows)
                                     : areasJson(rows))
          << std::flush;
}

} // namespace velmor
