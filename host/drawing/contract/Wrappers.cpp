// The wrappers that open an entity for as short as a step needs.
#include "host/drawing/DrawingData.h"
#include "host/drawing/Journal.h"

#include <numbers>

using velmor::Drawing;
using velmor::journal;
using velmor::workingDrawing;

Acad::ErrorStatus CZEMCEntityPtr::open(AcDbObjectId id, AcDb::OpenMode mode)
{
    close();
    m_mode = mode;
    AcDbEntity *entity = nullptr;
    m_status = acdbOpenAcDbEntity(entity, id, mode);
    if (m_status != Acad::eOk)
        return m_status;
    if (!entity->isKindOf(m_accepted)) {
        entity->close();
        return m_status = Acad::eNotAnEntity;
    }
    m_entity = entity;
    return m_status;
}

Acad::ErrorStatus CZEMCEntityPtr::open(const wchar_t *handleText, AcDb::OpenMode mode)
{
    close();
    m_mode = mode;
    Drawing *drawing = workingDrawing();
    AcDbObjectId id;
    if (drawing && handleText)
        m_status = drawing->getAcDbObjectId(id, false, AcDbHandle(handleText), 0);
    else
        m_status = Acad::eNullObjectId;
    return m_status == Acad::eOk ? open(id, mode) : m_status;
}

void CZEMCEntityPtr::close()
{
    if (m_entity)
        m_entity->close();
    m_entity = nullptr;
    m_status = Acad::eNullObjectId;
}

namespace {

template <class Polyline>
void appendFlatVertices(const Polyline &polyline, AcGePoint3dArray &points)
{
    points.reserve(points.size() + polyline.vertices().size());
    for (const auto &vertex : polyline.vertices())
        points.emplace_back(vertex.x, vertex.y, polyline.elevation());
}

} // namespace

bool CZEMCPolylineLWPtr::getVertexPoints(AcGePoint3dArray &points) const
{
    if (!isOpen())
        return false;
    appendFlatVertices(static_cast<const AcDbPolyline &>(*m_entity), points);
    return true;
}

bool CZEMC2dPolylinePtr::getVertexPoints(AcGePoint3dArray &points) const
{
    if (!isOpen())
        return false;
    appendFlatVertices(static_cast<const AcDb2dPolyline &>(*m_entity), points);
    return true;
}

bool CZEMC3dPolylinePtr::getVertexPoints(AcGePoint3dArray &points) const
{
    if (!isOpen())
        return false;
    const auto &vertices = static_cast<const AcDb3dPolyline &>(*m_entity).vertices();
    points.insert(points.end(), vertices.begin(), vertices.end());
    return true;
}

AcGePoint3d CZEMCArcPtr::getPointOnArc() const
{
    if (!isOpen())
        return {};
    const auto &arc = static_cast<const AcDbArc &>(*m_entity);
    constexpr double kFullTurn = 2.0 * std::numbers::pi;
    double sweep = std::fmod(arc.endAngle() - arc.startAngle(), kFullTurn);
    if (sweep <= 0.0)
        sweep += kFullTurn;
    const double middle = arc.startAngle() + sweep / 2.0;
    return {arc.center().x + arc.radius() * std::cos(middle), arc.center().y + arc.radius() * std::sin(middle),
            arc.center().z};
}

bool CZEMCBlockReferencePtr::setAttributeText(const wchar_t *tag, const wchar_t *text)
{
    journal("CZEMCBlockReferencePtr::setAttributeText", isOpen() ? m_entity->objectId() : AcDbObjectId(), tag, text);
    if (!isOpen() || !m_entity->isWriteEnabled() || !tag || !text)
        return false;
    Drawing *drawing = velmor::ObjectAccess::drawing(*m_entity);
    if (!drawing)
        return false;
    const std::wstring wanted = velmor::foldedName(tag);
    bool found = false;
    for (velmor::AttributeEntity *attribute : velmor::attributesOf(static_cast<const AcDbBlockReference &>(*m_entity)))
        if (velmor::foldedName(attribute->tag()) == wanted) {
            drawing->setAttributeText(*attribute, text);
            found = true;
        }
    return found;
}

bool CZEMCLayerTablePtr::allLayerNames(CStringArray &names) const
{
    const Drawing *drawing = workingDrawing();
    if (!drawing)
        return false;
    for (const velmor::Layer &layer : drawing->layers())
        if (!layer.erased)
            names.push_back(layer.name);
    return true;
}

bool CZEMCLayerTablePtr::getCurrent(std::wstring &name) const
{
    const Drawing *drawing = workingDrawing();
    if (!drawing)
        return false;
    name = drawing->layer(drawing->currentLayer()).name;
    return true;
}
