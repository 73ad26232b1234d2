#include "host/editor/Asker.h"

#include "host/drawing/ObjectAccess.h"
#include "host/editor/CommandStack.h"
#include "host/editor/EntityPick.h"
#include "host/editor/Picking.h"
#include "host/editor/Selection.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <fmt/xchar.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>
#include <unordered_set>

namespace velmor {

namespace {

std::optional<double> plainReal(std::string_view text)
{
    if (text.starts_with('+'))
        text.remove_prefix(1);
    double value = 0.0;
    const char *end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || last != end || text.empty() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

/// The words that a prompt offers, in the user's language.
std::wstring offeredWords(const Prompt &prompt, const wchar_t *between)
{
    std::wstring words;
    for (std::size_t i = 0; i < prompt.localKeywords.size() - prompt.silent; ++i)
        words += (i == 0 ? L"" : between) + prompt.localKeywords[i];
    return words;
}

/// What was selected last in a drawing.
struct PreviousSelection {
    explicit PreviousSelection(Drawing &) {}
    AcDbObjectIdArray ids;
};

} // namespace

Prompt promptOf(PromptKind kind, const Ask &ask)
{
    Prompt prompt{.kind = kind, .text = uiText(ask.message), .base = ask.base, .keywords = ask.words};
    prompt.keywords.insert(prompt.keywords.end(), ask.silent.begin(), ask.silent.end());
    prompt.silent = ask.silent.size();
    prompt.optional = ask.optional;
    prompt.completion = ask.completion;
    prompt.corner = ask.corner;
    prompt.free = ask.free;
    for (const std::wstring &word : prompt.keywords)
        prompt.localKeywords.push_back(uiText("ui.word." + utf8(word)));
    const std::wstring options = offeredWords(prompt, L"/");
    if (!options.empty())
        prompt.text += L" [" + options + L"]";
    if (!ask.standard.empty())
        prompt.text += L" <" + ask.standard + L">";
    prompt.text += L":";
    return prompt;
}

std::optional<double> parseReal(std::wstring_view text)
{
    while (!text.empty() && text.front() == L' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == L' ')
        text.remove_suffix(1);
    std::string narrow;
    for (const wchar_t c : text)
        narrow.push_back(c < 128 ? static_cast<char>(c) : '?');
    const std::size_t bar = narrow.find_first_of("/:");
    if (bar == std::string::npos)
        return plainReal(narrow);
    const auto over = plainReal(std::string_view(narrow).substr(0, bar)),
               under = plainReal(std::string_view(narrow).substr(bar + 1));
    if (!over || !under || *under == 0.0)
        return std::nullopt;
    const double quotient = *over / *under;
    return std::isfinite(quotient) ? std::optional(quotient) : std::nullopt;
}

std::wstring realText(double value, int decimals)
{
    std::wstring text = fmt::format(L"{:.{}f}", value, decimals);
    if (text.find(L'.') != std::wstring::npos) {
        text.erase(text.find_last_not_of(L'0') + 1);
        if (text.ends_with(L'.'))
            text.pop_back();
    }
    return text == L"-0" ? L"0" : text;
}

void Asker::refuse(const std::wstring &why)
{
    m_refused = m_asksAgain = true;
    m_session.status(why);
}

Answer Asker::ask(const Prompt &prompt)
{
    Answer answer{Answer::Escape{}};
    m_wasPrepared = !m_answers.empty();
    if (m_wasPrepared) {
        answer = m_answers.front();
        m_answers = m_answers.subspan(1);
    } else if (prompt.optional && !m_asksAgain && (!m_askSession || !m_session.view())) {
        answer = {Answer::Enter{}};
    } else if (m_askSession) {
        answer = m_session.ask(prompt);
    }
    if (answer.isEscape())
        throw Cancelled();
    return answer;
}

bool Asker::takeWord(const std::wstring &word)
{
    const std::wstring *text = m_answers.empty() ? nullptr : m_answers.front().text();
    if (!text || !matchKeyword({word}, *text))
        return false;
    m_answers = m_answers.subspan(1);
    return true;
}

template <class Reader>
Reply Asker::askFor(PromptKind kind, const Ask &ask, const char *needed, Reader read)
{
    Prompt prompt = promptOf(kind, ask);
    const auto standard = std::ranges::find(prompt.localKeywords, ask.standard) - prompt.localKeywords.begin();
    prompt.again = [&ask, kind, standard] {
        Ask now = ask;
        if (const auto word = static_cast<std::size_t>(standard); !ask.standard.empty() && word < ask.words.size())
            now.standard = uiText("ui.word." + utf8(ask.words[word]));
        return promptOf(kind, now);
    };
    for (;;) {
        const Answer answer = this->ask(prompt);
        if (answer.isEnter()) {
            if (ask.enter || ask.optional || !ask.standard.empty()) {
                m_asksAgain = false;
                return {};
            }
        } else if (const std::wstring *text = answer.text()) {
            if (const std::wstring *word = matchKeyword(prompt.keywords, *text)) {
                m_asksAgain = false;
                return {.kind = Reply::Kind::Word, .word = *word, .text = *text};
            }
        }
        if (!answer.isEnter())
            if (std::optional<Reply> reply = read(answer)) {
                m_asksAgain = false;
                return *std::move(reply);
            }
        const std::wstring words = offeredWords(prompt, L", ");
        const std::wstring what = uiText(needed);
        refuse(words.empty() ? uiMessage("ui.input.needed", {what}) : uiMessage("ui.input.neededOr", {what, words}));
    }
}

Reply Asker::point(const Ask &ask)
{
    CommandStack &stack = m_session.commands();
    return askFor(PromptKind::Point, ask, "ui.needed.point", [&](const Answer &answer) -> std::optional<Reply> {
        const auto point = answer.point(ask.base ? ask.base : stack.lastPoint());
        if (!point || !std::isfinite(point->x) || !std::isfinite(point->y) || !std::isfinite(point->z))
            return std::nullopt;
        if (!ask.corner && !ask.free)
            stack.setLastPoint(*point);
        return Reply{.kind = Reply::Kind::Point, .point = *point};
    });
}

AcGePoint3d Asker::onlyPoint(const char *message, const std::optional<AcGePoint3d> &base)
{
    return point({.message = message, .base = base}).point;
}

AcGePoint3d Asker::corner(const char *message, const std::optional<AcGePoint3d> &base)
{
    return point({.message = message, .base = base, .corner = true}).point;
}

Reply Asker::number(const Ask &ask)
{
    return askFor(PromptKind::Number, ask, "ui.needed.number", [](const Answer &answer) -> std::optional<Reply> {
        const auto value = answer.text() ? parseReal(*answer.text()) : std::nullopt;
        return value ? std::optional(Reply{.kind = Reply::Kind::Number, .number = *value}) : std::nullopt;
    });
}

Reply Asker::distance(const Ask &ask, double lowest)
{
    return askFor(PromptKind::Distance, ask, "ui.needed.distance", [&](const Answer &answer) -> std::optional<Reply> {
        auto value = answer.text() ? parseReal(*answer.text()) : std::nullopt;
        if (const auto point = answer.point(ask.base); !value && point && ask.base)
            value = std::hypot(point->x - ask.base->x, point->y - ask.base->y);
        if (!value || !std::isfinite(*value) || *value < lowest)
            return std::nullopt;
        return Reply{.kind = Reply::Kind::Number, .number = *value};
    });
}

Reply Asker::angle(const Ask &ask)
{
    return askFor(PromptKind::Angle, ask, "ui.needed.angle", [&](const Answer &answer) -> std::optional<Reply> {
        if (const auto degrees = answer.text() ? parseReal(*answer.text()) : std::nullopt)
            return Reply{.kind = Reply::Kind::Number, .number = *degrees * std::numbers::pi / 180.0};
        const auto point = answer.point(ask.base);
        if (!point || !ask.base || (point->x == ask.base->x && point->y == ask.base->y))
            return std::nullopt;
        return Reply{.kind = Reply::Kind::Number, .number = std::atan2(point->y - ask.base->y, point->x - ask.base->x)};
    });
}

Reply Asker::word(const Ask &ask)
{
    return askFor(PromptKind::Keyword, ask, "ui.needed.word",
                  [](const Answer &) -> std::optional<Reply> { return std::nullopt; });
}

namespace {

std::optional<Reply> textReply(const Answer &answer)
{
    if (!answer.text())
        return std::nullopt;
    return Reply{.kind = Reply::Kind::Text, .text = *answer.text()};
}

} // namespace

Reply Asker::text(const Ask &ask)
{
    return askFor(PromptKind::Text, ask, "ui.needed.text", textReply);
}

Reply Asker::name(const Ask &ask)
{
    return askFor(PromptKind::Word, ask, "ui.needed.text", textReply);
}

Answer::Pick Asker::entity(const Ask &ask)
{
    std::optional<Answer::Pick> pick;
    askFor(PromptKind::Entity, ask, "ui.needed.entity", [&](const Answer &answer) -> std::optional<Reply> {
        pick = pickedEntity(m_session, answer);
        return pick ? std::optional(Reply{.kind = Reply::Kind::Point, .point = pick->point}) : std::nullopt;
    });
    return pick.value_or(Answer::Pick{});
}

Reply Asker::attribute(const std::wstring &question, const std::wstring &standard)
{
    Prompt prompt{.kind = PromptKind::Text, .text = question};
    if (!standard.empty())
        prompt.text += L" <" + standard + L">";
    prompt.text += L":";
    prompt.optional = true;
    const Answer answer = ask(prompt);
    return answer.isEnter() ? Reply{} : textReply(answer).value_or(Reply{});
}

AcDbObjectIdArray Asker::windowObjects(bool crossing)
{
    const AcGePoint3d first = corner("ui.prompt.corner.first");
    const AcGePoint3d second = corner("ui.prompt.corner", first);
    Extents window;
    window.add(first.x, first.y);
    window.add(second.x, second.y);
    return entitiesIn(drawing(), window, crossing ? SelectBy::Crossing : SelectBy::Window);
}

std::optional<Answer> Asker::selection(const char *message)
{
    std::optional<Answer> given;
    const Reply reply = askFor(PromptKind::Selection, {.message = message, .words = {kAllWord}, .enter = true},
                               "ui.needed.entity", [&](const Answer &answer) -> std::optional<Reply> {
                                   const auto *set = std::get_if<Answer::Set>(&answer.value);
                                   const bool means = set ? m_session.selectionSets().find(set->id) != nullptr
                                                          : std::holds_alternative<Answer::Removed>(answer.value) ||
                                                                selectedEntities(m_session, answer).has_value();
                                   if (!means)
                                       return std::nullopt;
                                   given = answer;
                                   return Reply{.kind = Reply::Kind::Point};
                               });
    return reply.is(kAllWord) ? Answer{std::wstring(kAllWord)} : given;
}

AcDbObjectIdArray Asker::objects(const char *message)
{
    auto &previous = drawing().component<PreviousSelection>();
    auto &standing = drawing().component<Selection>();
    AcDbObjectIdArray chosen = standing.members();
    if (!chosen.empty()) {
        standing.clear();
        m_session.status(uiMessage("ui.objects.count", {std::to_wstring(chosen.size())}));
        previous.ids = chosen;
        return chosen;
    }
    std::unordered_set<const void *> known; // by entity: thousands may be picked one after the other
    bool removing = false;
    const auto change = [&](const AcDbObjectIdArray &ids, bool out) {
        std::unordered_set<const void *> gone;
        for (const AcDbObjectId &id : ids) {
            const void *key = id.isNull() || id.isErased() ? nullptr : ObjectAccess::object(id);
            if (key && out && known.erase(key))
                gone.insert(key);
            else if (key && !out && known.insert(key).second)
                chosen.push_back(id);
        }
        if (!gone.empty())
            std::erase_if(chosen, [&](const AcDbObjectId &id) { return gone.contains(ObjectAccess::object(id)); });
        m_session.status(uiMessage("ui.objects.count", {std::to_wstring(chosen.size())}));
    };
    const std::vector<std::wstring> words{L"ALL", L"Window", L"Crossing", L"Last", L"Previous", L"Remove", L"Add"};
    for (;;) {
        AcDbObjectIdArray picked;
        bool isRemoved = false;
        const Reply reply = askFor(PromptKind::Selection, {.message = message, .words = words, .enter = true},
                                   "ui.needed.entity", [&](const Answer &answer) -> std::optional<Reply> {
                                       const auto *removed = std::get_if<Answer::Removed>(&answer.value);
                                       const auto ids =
                                           removed ? std::optional(removed->ids) : selectedEntities(m_session, answer);
                                       if (!ids)
                                           return std::nullopt;
                                       isRemoved = removed != nullptr;
                                       picked = *ids;
                                       return Reply{.kind = Reply::Kind::Point};
                                   });
        if (reply.isEnter())
            break;
        if (reply.is(L"Remove") || reply.is(L"Add"))
            removing = reply.is(L"Remove");
        else if (reply.is(L"ALL"))
            change(selectedEntities(m_session, {std::wstring(kAllWord)}).value_or(AcDbObjectIdArray()), removing);
        else if (reply.is(L"Window") || reply.is(L"Crossing"))
            change(windowObjects(reply.is(L"Crossing")), removing);
        else if (reply.is(L"Previous"))
            change(previous.ids, removing);
        else if (reply.is(L"Last")) {
            const auto &all = drawing().modelSpace().entities();
            const auto last =
                std::find_if(all.rbegin(), all.rend(), [](const AcDbEntity *e) { return !e->isErased(); });
            change(last == all.rend() ? AcDbObjectIdArray() : AcDbObjectIdArray{idOf(**last)}, removing);
        } else
            change(picked, removing != isRemoved);
    }
    if (!chosen.empty())
        previous.ids = chosen;
    return chosen;
}

} // namespace velmor
