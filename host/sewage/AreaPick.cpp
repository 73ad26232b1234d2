#include "host/sewage/AreaPick.h"

#include "host/drawing/Journal.h"
#include "host/editor/Drafting.h"
#include "host/editor/Session.h"
#include "host/editor/ViewControl.h"
#include "host/services/Messages.h"
#include "host/sewage/AreaLabels.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

namespace velmor {
namespace {

/// How far beside a section a pick may go: the pick box of a window, else drawing units.
double sectionReach(Session &session)
{
    constexpr double kWithoutWindow = 5.0;
    const ViewControl *control = viewControl(session);
    return control ? draftingOf(session).pickBox / control->shownView().pixelsPerUnit : kWithoutWindow;
}

std::wstring typeWords(int type)
{
    std::wstring words;
    const auto add = [&](int bit, std::string_view name) {
        if ((type & bit) == 0)
            return;
        if (!words.empty())
            words += L", ";
        words += uiText(name);
    };
    add(ZEMGis::Sewage::kTypeCatchment, "ui.area.catchment");
    add(ZEMGis::Sewage::kTypeHouse, "ui.area.house");
    add(ZEMGis::Sewage::kTypeIndustrial, "ui.area.industrial");
    return words;
}

std::wstring shareText(double share)
{
    return share == ZEMGis::Topology::kUnknownValue ? std::wstring(L"?") : fmt::format(L"{:.2f} %", share * 100.0);
}

void addLine(std::wstring &text, std::string_view caption, const std::wstring &value)
{
    if (value.empty())
        return;
    text += L'\n';
    text += uiText(caption);
    text += L": ";
    text += value;
}

enum class Picked { Point, Entity, Ended };

/// What one prompt gave.
struct Pick {
    Picked kind = Picked::Ended;
    AcGePoint3d point;
    AcDbObjectId entity;
};

Pick ask(Session &session, std::string_view prompt, std::function<std::wstring(const AcGePoint3d &)> tip)
{
    Prompt question;
    question.kind = PromptKind::Point;
    question.text = uiText(prompt);
    question.tip = std::move(tip);
    for (;;) {
        const Answer answer = session.ask(question);
        if (const auto *pick = std::get_if<Answer::Pick>(&answer.value))
            return {Picked::Entity, pick->point, pick->id};
        if (const auto point = answer.point())
            return {Picked::Point, *point, {}};
        if (!answer.text() || answer.isEnter())
            return {};
        session.status(uiText("ui.input.point")); // a slip of the keyboard does not end the picking
    }
}

void show(Session &session, const std::wstring &text)
{
    if (!text.empty())
        session.status(text);
}

} // namespace

std::wstring areaTip(CatchmentStore &store, const StoredArea &area)
{
    std::wstring text = area.GetName();
    if (const std::wstring type = typeWords(area.GetType()); !type.empty())
        text += L" (" + type + L')';
    addLine(text, "ui.area.area", labelText(store, area, LabelValue::Gross) + L" ha");
    const std::wstring net = labelText(store, area, LabelValue::Area);
    if (net != labelText(store, area, LabelValue::Gross))
        addLine(text, "ui.area.net", net + L" ha");
    addLine(text, "ui.area.coefficient", labelText(store, area, LabelValue::Coefficient));
    addLine(text, "ui.area.density", labelText(store, area, LabelValue::Density));
    ZEMGis::Sewage::SectionShares sections;
    area.GetConnectedSections(sections);
    std::wstring list;
    for (const auto &[section, share] : sections)
        list += (list.empty() ? L"" : L", ") + section->GetName() + L' ' + shareText(share);
    addLine(text, "ui.area.sections", list);
    return text;
}

std::wstring sectionTip(CatchmentStore &store, const CatchmentStore::SectionPtr &section)
{
    std::wstring text = section->GetName();
    if (const double length = section->GetLength2D(); length != ZEMGis::Topology::kUnknownValue)
        addLine(text, "ui.section.length", fmt::format(L"{:.2f} m", length));
    std::wstring nodes;
    for (const auto &node : {section->GetStartingNode(), section->GetEndingNode()})
        nodes += (nodes.empty() ? L"" : L" - ") + (node ? node->GetName() : std::wstring(L"?"));
    addLine(text, "ui.section.nodes", nodes);
    CatchmentStore::Areas areas;
    const std::wstring guid = section->GetGuid();
    store.collectBySection(guid, areas, ZEMGis::Sewage::kTypeAll);
    std::wstring list;
    for (const auto &area : areas)
        if (const CatchmentStore::AreaPtr own = store.own(area.get()))
            for (const AreaRecord::Share &share : own->record().shares)
                if (share.sectionGuid == guid)
                    list += (list.empty() ? L"" : L", ") + own->GetName() + L' ' + shareText(share.share);
    addLine(text, "ui.section.areas", list);
    return text;
}

int pickArea(CatchmentStore &store)
{
    Session *session = Session::currentOrNull();
    if (!session)
        return RTERROR;
    const Pick pick = ask(*session, "ui.area.pick", [&store](const AcGePoint3d &cursor) {
        const CatchmentStore::AreaPtr area = store.areaAt(cursor);
        return area ? areaTip(store, *area) : std::wstring();
    });
    if (pick.kind == Picked::Ended)
        return RTCAN;
    CatchmentStore::AreaPtr area;
    if (pick.kind == Picked::Entity)
        area = store.areaOfEntity(pick.entity);
    if (!area)
        area = store.areaAt(pick.point);
    store.setPicked(area);
    if (area)
        show(*session, areaTip(store, *area));
    return RTNORM;
}

void pickSections(CatchmentStore &store)
{
    Session *session = Session::currentOrNull();
    if (!session)
        return;
    auto &network = store.drawing().component<Network>();
    const std::vector<CatchmentStore::SectionPtr> sections = network.sections();
    std::vector<ZEMGis::Topology::CEntity *> entities;
    std::unordered_map<const ZEMGis::Topology::CEntity *, CatchmentStore::SectionPtr> byAddress;
    for (const CatchmentStore::SectionPtr &section : sections) {
        entities.push_back(section.get());
        byAddress.emplace(section.get(), section);
    }
    boost::shared_ptr<ZEMGis::Topology::CSpatialIndex> index;
    {
        const JournalPause pause;
        index = ZEMGis::Topology::CTopoEditor::Instance()->CreateCustomSpatialIndex(entities);
    }
    const auto tipAt = [&](const AcGePoint3d &point) {
        double radius = sectionReach(*session);
        const auto found = byAddress.find(index->GetClosestEntity(point, &radius));
        return found == byAddress.end() ? std::wstring() : sectionTip(store, found->second);
    };
    for (;;) {
        const Pick pick = ask(*session, "ui.section.pick", tipAt);
        if (pick.kind == Picked::Ended)
            return;
        CatchmentStore::SectionPtr section;
        if (pick.kind == Picked::Entity) {
            const JournalPause pause;
            section = network.GetSectionById(pick.entity);
        }
        show(*session, section ? sectionTip(store, section) : tipAt(pick.point));
    }
}

} // namespace velmor
