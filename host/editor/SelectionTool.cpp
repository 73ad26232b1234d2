#include "host/editor/SelectionTool.h"

#include "host/drawing/Transient.h"
#include "host/editor/Captions.h"
#include "host/editor/EntityPick.h"
#include "host/editor/PickedIds.h"
#include "host/editor/Picking.h"
#include "host/editor/SectionChoice.h"
#include "host/editor/UiMessage.h"
#include "host/network/NetworkPaths.h"
#include "host/services/Messages.h"

#include <QMenu>

#include <algorithm>
#include <array>

namespace velmor {

namespace {

using SectionPtr = Network::SectionPtr;

struct ModeRow {
    SectionMode mode;
    const char *text, *prompt;
    bool needsNodes;
};
constexpr std::array<ModeRow, 6> kModes{{
    {SectionMode::All, "ui.select.all", "", false},
    {SectionMode::Pick, "ui.select.pick", "ui.select.pick.prompt", false},
    {SectionMode::Window, "ui.select.window", "ui.select.window.prompt", false},
    {SectionMode::Upstream, "ui.select.upstream", "ui.select.upstream.prompt", true},
    {SectionMode::Downstream, "ui.select.downstream", "ui.select.downstream.prompt", true},
    {SectionMode::Path, "ui.select.path", "ui.select.path.prompt", true},
}};

const ModeRow &rowOf(SectionMode mode)
{
    return *std::ranges::find(kModes, mode, &ModeRow::mode);
}

/// One selection: what was chosen, highlighted until it ends.
class Selecting {
public:
    Selecting(Session &session, Drawing &drawing)
        : m_session(session), m_drawing(drawing), m_network(drawing.component<Network>()),
          m_graphics(drawing.component<TransientGraphics>())
    {
    }
    ~Selecting()
    {
        for (const AcDbEntity *entity : m_highlighted)
            m_graphics.setHighlighted(*entity, false);
        if (m_session.view())
            m_session.view()->redraw();
    }
    Selecting(const Selecting &) = delete;
    Selecting &operator=(const Selecting &) = delete;

    std::optional<std::vector<AcDbObjectId>> run(SectionMode mode)
    {
        if (mode == SectionMode::All) {
            addAll(m_network.sections());
            return m_chosen.list();
        }
        const bool finished = mode == SectionMode::Window ? byWindows()
                              : mode == SectionMode::Path ? byPath()
                                                          : byPicks(mode);
        return finished ? std::optional(m_chosen.list()) : std::nullopt;
    }

private:
    /// False after Escape.
    bool byPicks(SectionMode mode)
    {
        for (;;) {
            const Answer answer =
                m_session.ask({.kind = mode == SectionMode::Pick ? PromptKind::Selection : PromptKind::Entity,
                               .text = uiText(rowOf(mode).prompt)});
            if (answer.isEscape())
                return false;
            if (answer.isEnter())
                return true;
            if (const auto *removed = std::get_if<Answer::Removed>(&answer.value)) {
                takeOut(removed->ids);
                continue;
            }
            const AcDbObjectIdArray picked = selectedEntities(m_session, answer).value_or(AcDbObjectIdArray());
            std::vector<SectionPtr> sections;
            for (const AcDbObjectId &id : picked) {
                const SectionPtr section = m_network.GetSectionById(id);
                if (mode == SectionMode::Pick) {
                    if (section)
                        sections.push_back(section);
                    continue;
                }
                const bool upstream = mode == SectionMode::Upstream;
                const std::wstring node = section ? std::wstring() : nodeOf(id);
                const auto branch = section    ? branchOf(m_network, section, upstream)
                                    : upstream ? upstreamOfNode(m_network, node)
                                               : downstreamOfNode(m_network, node);
                sections.insert(sections.end(), branch.begin(), branch.end());
            }
            tell(sections, picked.size());
        }
    }

    bool byWindows()
    {
        for (;;) {
            const auto corner = askPoint(rowOf(SectionMode::Window).prompt, {});
            if (!corner)
                return m_entered;
            const auto opposite = askPoint("ui.select.window.other", corner);
            if (!opposite) {
                if (!m_entered)
                    return false;
                continue;
            }
            Extents window;
            window.add(corner->x, corner->y);
            window.add(opposite->x, opposite->y);
            // From left to right what lies inside, from right to left also what is crossed.
            const auto ids =
                entitiesIn(m_drawing, window, opposite->x >= corner->x ? SelectBy::Window : SelectBy::Crossing);
            std::vector<SectionPtr> sections;
            for (const AcDbObjectId &id : ids)
                if (const SectionPtr section = m_network.GetSectionById(id))
                    sections.push_back(section);
            tell(sections, sections.size());
        }
    }

    bool byPath()
    {
        for (;;) {
            const auto from = askNode(rowOf(SectionMode::Path).prompt);
            if (!from)
                return m_entered;
            const auto to = askNode("ui.select.path.other");
            if (!to) {
                if (!m_entered)
                    return false;
                continue;
            }
            const auto path = pathBetween(m_network, *from, *to);
            if (path.empty())
                m_session.status(uiText("ui.select.path.none"));
            else
                tell(path, path.size());
        }
    }

    /// The corner of a window; nothing for Enter (then m_entered) and Escape.
    std::optional<AcGePoint3d> askPoint(const char *prompt, const std::optional<AcGePoint3d> &base)
    {
        for (;;) {
            const Answer answer =
                m_session.ask({.kind = PromptKind::Point, .text = uiText(prompt), .base = base, .corner = true});
            m_entered = answer.isEnter();
            if (m_entered || answer.isEscape())
                return std::nullopt;
            if (const auto point = answer.point(base))
                return point;
            m_session.status(uiText("ui.input.point"));
        }
    }

    /// The GUID of a picked node, or of the node at the nearer end of a picked section.
    std::optional<std::wstring> askNode(const char *prompt)
    {
        for (;;) {
            const Answer answer = m_session.ask({.kind = PromptKind::Entity, .text = uiText(prompt)});
            m_entered = answer.isEnter();
            if (m_entered || answer.isEscape())
                return std::nullopt;
            const auto pick = pickedEntity(m_session, answer);
            std::wstring node = pick ? nodeOf(pick->id) : std::wstring();
            if (const SectionPtr section = pick && node.empty() ? m_network.GetSectionById(pick->id) : nullptr) {
                const bool atStart =
                    section->GetStartPoint().distanceTo(pick->point) <= section->GetEndPoint().distanceTo(pick->point);
                const auto end = atStart ? section->GetStartingNode() : section->GetEndingNode();
                if (end)
                    node = end->GetGuid();
            }
            if (!node.empty())
                return node;
            m_session.status(uiText("ui.select.noNode"));
        }
    }

    std::wstring nodeOf(const AcDbObjectId &id) const
    {
        for (const Network::NodePtr &node : m_network.nodes())
            if (node->GetObjectId() == id)
                return node->GetGuid();
        return {};
    }

    void addAll(const std::vector<SectionPtr> &sections)
    {
        for (const SectionPtr &section : sections)
            m_chosen.add(section->GetObjectId());
    }

    void takeOut(const AcDbObjectIdArray &ids)
    {
        m_chosen.remove(ids);
        std::erase_if(m_highlighted, [&](const AcDbEntity *entity) {
            const bool out = !m_chosen.contains(entity->objectId());
            if (out)
                m_graphics.setHighlighted(*entity, false);
            return out;
        });
        tell({}, 0);
    }

    void tell(const std::vector<SectionPtr> &sections, std::size_t picked)
    {
        addAll(sections);
        for (const SectionPtr &section : sections) {
            const auto *entity =
                static_cast<const AcDbEntity *>(m_drawing.findByHandle(section->GetObjectId().handle().value()));
            if (!entity || m_graphics.isHighlighted(*entity))
                continue;
            m_graphics.setHighlighted(*entity, true);
            m_highlighted.push_back(entity);
        }
        m_session.status(sections.empty() && picked > 0
                             ? uiText("ui.select.noSection")
                             : uiMessage("ui.select.count", {std::to_wstring(m_chosen.list().size())}));
        if (m_session.view())
            m_session.view()->redraw();
    }

    Session &m_session;
    Drawing &m_drawing;
    Network &m_network;
    TransientGraphics &m_graphics;
    PickedIds m_chosen;
    std::vector<const AcDbEntity *> m_highlighted;
    bool m_entered = false;
};

} // namespace

std::optional<SectionMode> chooseSectionMode(QWidget &below, const Network &network, bool hideDisabled)
{
    QMenu menu(&below);
    menu.setAccessibleName(uiString("ui.select.menu"));
    const bool any = !network.sections().empty(), nodes = hasNodes(network);
    for (const ModeRow &row : kModes) {
        const bool isOffered = any && (nodes || !row.needsNodes);
        // An empty network is told by a menu that stands there and offers nothing.
        if (!isOffered && hideDisabled && any)
            continue;
        QAction *action = menu.addAction(uiString(row.text));
        action->setData(static_cast<int>(row.mode));
        action->setEnabled(isOffered);
    }
    const QAction *chosen = menu.exec(below.mapToGlobal(QPoint(0, below.height())));
    return chosen ? std::optional(static_cast<SectionMode>(chosen->data().toInt())) : std::nullopt;
}

std::optional<std::vector<AcDbObjectId>> selectSections(Session &session, SectionMode mode)
{
    Drawing *drawing = session.drawing();
    return drawing ? Selecting(session, *drawing).run(mode) : std::nullopt;
}

} // namespace velmor
