// Selection sets, display, documents and their locks, zoom.
#include "contracts/DrawingHost.h"
#include "host/drawing/Entities.h"
#include "host/drawing/Journal.h"
#include "host/drawing/Transient.h"
#include "host/editor/LineworkCache.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/Session.h"

#include <cmath>

using velmor::journal;
using velmor::SelectionSet;
using velmor::SelectionSets;
using velmor::Session;

namespace {

/// Writes a call over names of sets and entities.
template <class... Names>
void journalNames(const char *operation, Names... names)
{
    if (velmor::Journal::instance().isRecording())
        journal(operation, SelectionSets::textOf(names)...);
}

} // namespace

int acedSSLength(const ads_name set, std::int32_t *length)
{
    Session *session = Session::currentOrNull();
    const SelectionSet *found = session && length ? session->selectionSets().find(set) : nullptr;
    if (!found)
        return RTERROR;
    *length = static_cast<std::int32_t>(found->members().size());
    return RTNORM;
}

int acedSSName(const ads_name set, std::int32_t index, ads_name entity)
{
    Session *session = Session::currentOrNull();
    const SelectionSet *found = session && entity ? session->selectionSets().find(set) : nullptr;
    if (!found || index < 0 || static_cast<std::size_t>(index) >= found->members().size())
        return RTERROR;
    const AcDbObjectId id = found->members()[static_cast<std::size_t>(index)];
    return acdbGetAdsName(*reinterpret_cast<ads_name *>(entity), id) == Acad::eOk ? RTNORM : RTERROR;
}

int acedSSFree(const ads_name set)
{
    Session *session = Session::currentOrNull();
    journalNames("acedSSFree", static_cast<const std::int64_t *>(set));
    if (!session || !SelectionSets::isSetName(set) || !session->selectionSets().release(set[0]))
        return RTERROR;
    if (velmor::Drawing *drawing = session->drawing())
        drawing->component<velmor::LineworkCache>().drop(set[0]);
    return RTNORM;
}

int acedSSAdd(const std::int64_t *entity, const std::int64_t *set, ads_name result)
{
    Session *session = Session::currentOrNull();
    journalNames("acedSSAdd", entity, set);
    if (!session || !result)
        return RTERROR;
    SelectionSets &sets = session->selectionSets();
    SelectionSet *target = set ? sets.find(set) : nullptr;
    if (set && !target)
        return RTERROR;
    if (!entity) {
        SelectionSet &made = sets.create();
        if (target) {
            for (const AcDbObjectId &id : target->members())
                made.add(id);
        }
        SelectionSets::toName(made, result);
        return RTNORM;
    }
    AcDbObjectId id;
    if (acdbGetObjectId(id, entity) != Acad::eOk)
        return RTERROR;
    if (!target)
        target = &sets.create();
    target->add(id);
    SelectionSets::toName(*target, result);
    return RTNORM;
}

int acedRedraw(const std::int64_t *entity, int mode)
{
    Session *session = Session::currentOrNull();
    if (!session)
        return RTERROR;
    if (entity)
        journalNames("acedRedraw", entity);
    else
        journal("acedRedraw", mode);
    enum Mode { kView = 0, kDraw = 1, kBlank = 2, kHighlight = 3, kUnhighlight = 4 };
    if (mode < kView || mode > kUnhighlight || (entity && mode == kView))
        return RTREJ;
    if (entity) {
        AcDbObjectId id;
        AcDbEntity *target = nullptr;
        if (!session->drawing() || acdbGetObjectId(id, entity) != Acad::eOk ||
            acdbOpenAcDbEntity(target, id, AcDb::kForRead) != Acad::eOk)
            return RTERROR;
        auto &graphics = session->drawing()->component<velmor::TransientGraphics>();
        if (mode == kDraw || mode == kBlank)
            graphics.setBlanked(*target, mode == kBlank);
        else
            graphics.setHighlighted(*target, mode == kHighlight);
        target->close();
    } else if (session->drawing() && mode == kUnhighlight) {
        session->drawing()->component<velmor::TransientGraphics>().clearTemporary();
    }
    if (session->view())
        session->view()->redraw();
    return RTNORM;
}

void acedUpdateDisplay()
{
    journal("acedUpdateDisplay");
    if (Session *session = Session::currentOrNull(); session && session->view())
        session->view()->redraw();
}

void AcTransactionManager::flushGraphics()
{
    journal("AcTransactionManager::flushGraphics");
}

AcTransactionManager *AcApDocument::transactionManager()
{
    static AcTransactionManager manager;
    return &manager;
}

AcApDocument *AcApDocManager::curDocument()
{
    static AcApDocument document;
    const Session *session = Session::currentOrNull();
    return session && session->drawing() ? &document : nullptr;
}

AcApDocManager *acDocManagerPtr()
{
    static AcApDocManager manager;
    return &manager;
}

void RefreshDrawingDisplay()
{
    if (AcApDocument *document = acDocManagerPtr()->curDocument())
        document->transactionManager()->flushGraphics();
    acedUpdateDisplay();
}

AcAxDocLock::AcAxDocLock()
{
    journal("AcAxDocLock::AcAxDocLock");
    if (Session *session = Session::currentOrNull())
        session->lockDocument();
}

AcAxDocLock::~AcAxDocLock()
{
    journal("AcAxDocLock::~AcAxDocLock");
    if (Session *session = Session::currentOrNull())
        session->unlockDocument();
}

bool CZEMCEdit::zoom(AcDbObjectId id, double factor)
{
    return zoom(AcDbObjectIdArray{id}, factor);
}

bool CZEMCEdit::zoom(const AcDbObjectIdArray &ids, double factor)
{
    Session *session = Session::currentOrNull();
    if (!session || !session->drawing() || !std::isfinite(factor) || factor <= 0.0)
        return false;
    velmor::Extents extents;
    for (const AcDbObjectId &id : ids) {
        AcDbEntity *entity = nullptr;
        if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk)
            continue; // erased ones among them
        extents.add(velmor::extentsOf(*entity));
        entity->close();
    }
    if (extents.isEmpty())
        return false;
    const double width = extents.maxX - extents.minX, height = extents.maxY - extents.minY;
    const double growX = 0.5 * (factor - 1.0) * width, growY = 0.5 * (factor - 1.0) * height;
    extents = {extents.minX - growX, extents.minY - growY, extents.maxX + growX, extents.maxY + growY};
    journal("CZEMCEdit::zoom", ids.size(), factor, extents.minX, extents.minY, extents.maxX, extents.maxY);
    if (session->view())
        session->view()->zoomTo(extents);
    return true;
}
