#include "host/editor/SectionChoice.h"

#include "host/editor/EntityPick.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"
#include "host/network/NetworkPaths.h"
#include "host/services/Messages.h"

#include <algorithm>

namespace velmor {

namespace {

using SectionPtr = Network::SectionPtr;

const std::vector<std::wstring> kForms{L"all", L"name", L"handle", L"upstream", L"downstream", L"path"};

void addOnce(std::vector<AcDbObjectId> &ids, const AcDbObjectId &id)
{
    if (std::ranges::find(ids, id) == ids.end())
        ids.push_back(id);
}

} // namespace

bool isSectionForm(std::span<const Word> words)
{
    return !words.empty() && std::ranges::find(kForms, words[0].text) != kForms.end() &&
           (words[0].text != L"all" || words.size() == 1);
}

std::optional<std::vector<AcDbObjectId>> sectionsByWords(Drawing &drawing, std::span<const Word> words,
                                                         std::wstring &reason)
{
    const auto &network = drawing.component<Network>();
    const std::wstring form = words.empty() ? std::wstring() : words.front().text;
    const auto names = words.empty() ? words : words.subspan(1);
    std::vector<AcDbObjectId> ids;
    if (form == L"all" && names.empty()) {
        for (const SectionPtr &section : network.sections())
            ids.push_back(section->GetObjectId());
    } else if ((form == L"name" || form == L"handle") && !names.empty()) {
        for (const Word &name : names) {
            const SectionPtr section =
                form == L"name" ? network.sectionByName(name.text) : network.GetSectionByHandle(name.text.c_str());
            if (!section) {
                reason = uiMessage("ui.sections.none", {form, name.text});
                return std::nullopt;
            }
            addOnce(ids, section->GetObjectId());
        }
    } else if ((form == L"upstream" || form == L"downstream") && names.size() == 1) {
        const auto node = network.nodeByName(names[0].text);
        const auto section = node ? nullptr : network.sectionByName(names[0].text);
        if (!node && !section) {
            reason = uiMessage("ui.sections.nowhere", {names[0].text});
            return std::nullopt;
        }
        const bool upstream = form == L"upstream";
        for (const SectionPtr &found : section    ? branchOf(network, section, upstream)
                                       : upstream ? upstreamOfNode(network, node->GetGuid())
                                                  : downstreamOfNode(network, node->GetGuid()))
            ids.push_back(found->GetObjectId());
    } else if (form == L"path" && names.size() == 2) {
        for (const Word &name : names)
            if (!network.nodeByName(name.text)) {
                reason = uiMessage("ui.sections.nowhere", {name.text});
                return std::nullopt;
            }
        for (const SectionPtr &section : pathBetween(network, network.nodeByName(names[0].text)->GetGuid(),
                                                     network.nodeByName(names[1].text)->GetGuid()))
            ids.push_back(section->GetObjectId());
    } else {
        reason = uiMessage("ui.sections.forms", {kSectionForms});
        return std::nullopt;
    }
    if (ids.empty()) {
        reason = uiText("ui.sections.empty");
        return std::nullopt;
    }
    return ids;
}

std::optional<std::vector<AcDbObjectId>> askForSections(Session &session)
{
    Drawing *drawing = session.drawing();
    if (!drawing)
        return std::nullopt;
    const Prompt prompt{
        .kind = PromptKind::Selection, .text = uiMessage("ui.prompt.sections", {kSectionForms}), .keywords = kForms};
    std::vector<AcDbObjectId> ids;
    for (;;) {
        const Answer answer = session.ask(prompt);
        if (answer.isEscape())
            return std::nullopt;
        if (answer.isEnter())
            return ids;
        if (const auto *removed = std::get_if<Answer::Removed>(&answer.value)) {
            std::erase_if(
                ids, [&](const AcDbObjectId &id) { return std::ranges::find(removed->ids, id) != removed->ids.end(); });
            continue;
        }
        std::wstring reason = uiText("ui.input.nothing");
        std::vector<AcDbObjectId> chosen;
        if (const auto *list = std::get_if<AcDbObjectIdArray>(&answer.value)) {
            chosen.assign(list->begin(), list->end());
        } else if (const std::wstring *text = answer.text(); text && !parsePoint(*text) && !text->starts_with(L'#')) {
            if (const auto words = splitWords(*text, reason))
                chosen = sectionsByWords(*drawing, *words, reason).value_or(chosen);
        } else if (const auto pick = pickedEntity(session, answer)) {
            chosen = {pick->id};
        }
        if (chosen.empty())
            session.status(reason);
        for (const AcDbObjectId &id : chosen)
            addOnce(ids, id);
    }
}

} // namespace velmor
