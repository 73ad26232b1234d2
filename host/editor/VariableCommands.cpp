// SETVAR, UNITS and SETTINGS.
#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"
#include "host/editor/DrawingUnits.h"
#include "host/editor/HostCommands.h"
#include "host/editor/HostVariables.h"
#include "host/editor/UiMessage.h"
#include "host/editor/dialogs/HostDialogs.h"
#include "host/services/Messages.h"
#include "host/services/Services.h"
#include "host/services/Text.h"

#include <fmt/xchar.h>

#include <algorithm>
#include <charconv>

namespace velmor {

namespace {

using Next = Command::Next;

std::wstring shown(const VariableValue &value)
{
    if (const auto *whole = std::get_if<int>(&value))
        return std::to_wstring(*whole);
    if (const auto *number = std::get_if<double>(&value))
        return fmt::format(L"{}", *number);
    return std::get<std::wstring>(value);
}

VariableValue valueFromText(const std::wstring &text)
{
    const std::string narrow = utf8(text);
    const char *end = narrow.data() + narrow.size();
    int whole = 0;
    if (const auto [last, error] = std::from_chars(narrow.data(), end, whole); error == std::errc() && last == end)
        return whole;
    double number = 0.0;
    if (const auto [last, error] = std::from_chars(narrow.data(), end, number); error == std::errc() && last == end)
        return number;
    return text;
}

Next workVariables(Asker &asker)
{
    Session &session = asker.session();
    const Reply name = asker.name({.message = "ui.prompt.setvar", .completion = Completion::Variables});
    if (name.text == L"?") {
        for (const std::wstring &each : HostVariables::names())
            if (const auto value = session.variable(each))
                session.status(each + L" = " + shown(*value));
        return Next::Commit;
    }
    const auto known = session.variable(name.text);
    if (!known) {
        session.alert(uiMessage("ui.variable.unknown", {name.text}));
        return Next::BadInput;
    }
    Ask ask{.message = "ui.prompt.setvar.value", .standard = shown(*known), .enter = true};
    const bool isText = std::holds_alternative<std::wstring>(*known); // a layer may be called 0
    const Reply value = isText ? asker.text(ask) : asker.name(ask);
    if (value.isEnter())
        return Next::Commit;
    if (!session.setVariable(name.text, isText ? VariableValue(value.text) : valueFromText(value.text))) {
        session.alert(uiMessage("ui.variable.refused", {name.text, value.text}));
        return Next::BadInput;
    }
    return Next::Commit;
}

struct UnitRow {
    const wchar_t *word;
    DrawingUnit unit;
};
constexpr UnitRow kUnits[] = {{L"MIllimetres", DrawingUnit::Millimetres},
                              {L"Centimetres", DrawingUnit::Centimetres},
                              {L"MEtres", DrawingUnit::Metres},
                              {L"Kilometres", DrawingUnit::Kilometres},
                              {L"Inches", DrawingUnit::Inches},
                              {L"Feet", DrawingUnit::Feet},
                              {L"None", DrawingUnit::None}};

Next workUnits(Asker &asker)
{
    const auto now = std::ranges::find(kUnits, unitOf(asker.drawing()), &UnitRow::unit);
    const std::wstring nowText =
        now == std::end(kUnits) ? std::wstring(L"?") : uiText("ui.word." + utf8(std::wstring(now->word)));
    Ask ask{.message = "ui.prompt.units", .words = {}, .standard = nowText};
    for (const UnitRow &row : kUnits)
        ask.words.emplace_back(row.word);
    const Reply reply = asker.word(ask);
    if (reply.isEnter())
        return Next::Commit;
    setUnit(asker.drawing(), std::ranges::find(kUnits, reply.word, &UnitRow::word)->unit);
    asker.session().status(uiText("ui.units.kept"));
    return Next::Commit;
}

/// The settings of the catchment dialogs, by the dialog that they are for.
Next showSettings(Asker &asker)
{
    const Reply group = asker.word({.message = "ui.prompt.settings",
                                    .words = {L"Definition", L"Review"},
                                    .standard = uiText("ui.word.Definition"),
                                    .optional = true,
                                    .silent = {L"TCE1", L"TCE2"}});
    if (!canShowDialogs())
        asker.session().status(uiText("ui.settings.noWindow") + L" " +
                               wide(Services::instance().settings().file().string()));
    else
        runSettingsDialog(group.is(L"Review") || group.is(L"TCE2") ? L"TCE2" : L"TCE1");
    return Next::Commit;
}

} // namespace

void addVariableCommands(CommandStack &stack)
{
    stack.addWork(L"SETVAR", CommandEntry::kTransparentByMark, workVariables, false);
    stack.addWork(L"UNITS", CommandEntry::kTransparentByMark, workUnits);
    stack.addWork(L"SETTINGS", 0, showSettings, false);
}

} // namespace velmor
