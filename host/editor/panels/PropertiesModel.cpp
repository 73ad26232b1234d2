#include "host/editor/panels/PropertiesModel.h"

#include "host/drawing/ObjectAccess.h"
#include "host/editor/Captions.h"
#include "host/network/Network.h"
#include "host/network/NetworkData.h"

#include <array>
#include <cmath>
#include <numbers>

namespace velmor {

namespace {

constexpr int kDecimals = 4;
/// More than these are told by number and kind only: their lengths would take longer than a person looks.
constexpr std::size_t kMostMeasured = 20000;
constexpr int kByLayer = 256;

std::vector<PropertySource> &propertySources()
{
    static std::vector<PropertySource> sources;
    return sources;
}

QString textOf(const std::wstring &text)
{
    return QString::fromStdWString(text);
}

QString degrees(double radians)
{
    return numberText(radians * 180.0 / std::numbers::pi, kDecimals) + QChar(0xB0);
}

QString point(const AcGePoint3d &p)
{
    QString text = numberText(p.x, kDecimals) + QStringLiteral("; ") + numberText(p.y, kDecimals);
    if (p.z != 0.0)
        text += QStringLiteral("; ") + numberText(p.z, kDecimals);
    return text;
}

/// Lines of one entity's shape.
class Shape {
public:
    explicit Shape(const AcDbEntity &entity) : m_entity(entity) { read(); }
    PropertyRows rows;

private:
    void add(const char *caption, const QString &value) { rows.push_back({caption, value}); }
    void number(const char *caption, double value) { add(caption, numberText(value, kDecimals)); }

    void vertices(std::size_t count, bool closed)
    {
        add("ui.property.vertices", QString::number(count));
        add("ui.property.closed", uiString(closed ? "ui.yes" : "ui.no"));
    }

    void measures()
    {
        if (const auto length = planLengthOf(m_entity))
            number("ui.property.length", *length);
        double area = 0.0;
        if (m_entity.isKindOf(AcDbCurve::desc()) && static_cast<const AcDbCurve &>(m_entity).isClosed() &&
            static_cast<const AcDbCurve &>(m_entity).getArea(area) == Acad::eOk) {
            number("ui.property.area", area);
            number("ui.property.hectares", area / 10000.0);
        }
    }

    void text(const TextEntity &entity)
    {
        add("ui.property.text", textOf(entity.shape().text));
        add("ui.property.position", point(entity.shape().position));
        number("ui.property.height", entity.shape().height);
        add("ui.property.rotation", degrees(entity.shape().rotation));
    }

    void reference(const AcDbBlockReference &entity)
    {
        AcDbObject *definition = nullptr;
        if (acdbOpenAcDbObject(definition, entity.blockTableRecord(), AcDb::kForRead) == Acad::eOk) {
            if (definition->isKindOf(AcDbBlockTableRecord::desc()))
                add("ui.property.block", textOf(static_cast<AcDbBlockTableRecord *>(definition)->name()));
            definition->close();
        }
        add("ui.property.position", point(entity.placement().position));
        number("ui.property.scale", entity.placement().scaleX);
        add("ui.property.rotation", degrees(entity.placement().rotation));
        for (const AttributeEntity *attribute : attributesOf(entity))
            rows.push_back(
                {QString::fromStdWString(attribute->tag()).toStdString(), textOf(attribute->shape().text), true});
    }

    void read()
    {
        switch (kindOf(m_entity)) {
        case EntityKind::Line: {
            const auto ends = endsOf(m_entity);
            add("ui.property.start", point(ends->start));
            add("ui.property.end", point(ends->end));
            measures();
            add("ui.property.angle", degrees(std::atan2(ends->end.y - ends->start.y, ends->end.x - ends->start.x)));
            break;
        }
        case EntityKind::Arc: {
            const auto &arc = static_cast<const AcDbArc &>(m_entity);
            add("ui.property.center", point(arc.center()));
            number("ui.property.radius", arc.radius());
            add("ui.property.startAngle", degrees(arc.startAngle()));
            add("ui.property.endAngle", degrees(arc.endAngle()));
            measures();
            break;
        }
        case EntityKind::Circle: {
            const auto &circle = static_cast<const CircleEntity &>(m_entity);
            add("ui.property.center", point(circle.center()));
            number("ui.property.radius", circle.radius());
            number("ui.property.length", 2.0 * std::numbers::pi * circle.radius());
            measures();
            break;
        }
        case EntityKind::Ellipse: {
            const auto &shape = static_cast<const EllipseEntity &>(m_entity).shape();
            const double major = std::hypot(shape.majorAxis.x, shape.majorAxis.y);
            add("ui.property.center", point(shape.center));
            number("ui.property.major", major);
            number("ui.property.minor", major * std::abs(shape.ratio));
            measures();
            break;
        }
        case EntityKind::Spline: {
            const auto &shape = static_cast<const SplineEntity &>(m_entity).shape();
            add("ui.property.controls",
                QString::number(shape.controlPoints.empty() ? shape.fitPoints.size() : shape.controlPoints.size()));
            add("ui.property.degree", QString::number(shape.degree));
            add("ui.property.closed", uiString(shape.closed ? "ui.yes" : "ui.no"));
            break;
        }
        case EntityKind::LwPolyline: {
            const auto &line = static_cast<const AcDbPolyline &>(m_entity);
            vertices(line.vertices().size(), line.isClosed());
            measures();
            if (line.elevation() != 0.0)
                number("ui.property.elevation", line.elevation());
            if (line.constantWidth() != 0.0)
                number("ui.property.width", line.constantWidth());
            break;
        }
        case EntityKind::Polyline2d: {
            const auto &line = static_cast<const AcDb2dPolyline &>(m_entity);
            vertices(line.vertices().size(), line.isClosed());
            measures();
            break;
        }
        case EntityKind::Polyline3d: {
            const auto &line = static_cast<const AcDb3dPolyline &>(m_entity);
            vertices(line.vertices().size(), line.isClosed());
            measures();
            break;
        }
        case EntityKind::Point:
            add("ui.property.position", point(static_cast<const PointEntity &>(m_entity).position()));
            break;
        case EntityKind::Text:
        case EntityKind::MText:
        case EntityKind::Attribute:
        case EntityKind::AttributeDefinition:
            text(static_cast<const TextEntity &>(m_entity));
            break;
        case EntityKind::BlockReference:
            reference(static_cast<const AcDbBlockReference &>(m_entity));
            break;
        case EntityKind::Hatch: {
            const auto &hatch = static_cast<const AcDbHatch &>(m_entity);
            add("ui.property.pattern", textOf(hatch.patternName()));
            number("ui.property.scale", hatch.patternScale());
            add("ui.property.angle", degrees(hatch.patternAngle()));
            break;
        }
        case EntityKind::Unknown:
            rows.push_back({"ui.property.kindInFile", QString::fromStdString(typeNameOf(m_entity))});
            break;
        }
    }

    const AcDbEntity &m_entity;
};

/// Section and node, which the network knows.
void addNetwork(Drawing &drawing, AcDbEntity &entity, PropertyRows &rows)
{
    const auto &network = drawing.component<Network>();
    if (const auto items = drawing.data(entity, kSectionKey)) {
        if (const auto data = sectionDataOf(*items)) {
            const auto nodeName = [&](const std::wstring &guid) {
                const auto node = network.nodeByGuid(guid);
                return node ? textOf(node->GetName()) : QString(QChar(0x2013));
            };
            rows.push_back({"ui.property.section", textOf(data->name)});
            rows.push_back({"ui.property.from", nodeName(data->startNode)});
            rows.push_back({"ui.property.to", nodeName(data->endNode)});
            const auto section = network.GetSectionById(idOf(entity));
            if (section && section->GetLength2D() > 0.0)
                rows.push_back({"ui.property.sectionLength", numberText(section->GetLength2D(), kDecimals)});
        }
    }
    if (const auto items = drawing.data(entity, kNodeKey))
        if (const auto data = nodeDataOf(*items))
            rows.push_back({"ui.property.node", textOf(data->name)});
}

} // namespace

PropertySourceRegistration::PropertySourceRegistration(PropertySource source)
{
    propertySources().push_back(std::move(source));
}

PropertyRows geometryOf(const AcDbEntity &entity)
{
    return Shape(entity).rows;
}

const char *kindName(EntityKind kind)
{
    constexpr const char *kNames[] = {
        "ui.kind.unknown",    "ui.kind.line",       "ui.kind.arc",        "ui.kind.circle",
        "ui.kind.ellipse",    "ui.kind.spline",     "ui.kind.point",      "ui.kind.polyline",
        "ui.kind.polyline2d", "ui.kind.polyline3d", "ui.kind.text",       "ui.kind.mtext",
        "ui.kind.reference",  "ui.kind.attribute",  "ui.kind.definition", "ui.kind.hatch"};
    return kNames[static_cast<std::size_t>(kind)];
}

PropertiesModel::PropertiesModel(Change change, QObject *parent) : PanelModel(parent), m_change(std::move(change)) {}

void PropertiesModel::show(Drawing *drawing, const AcDbObjectIdArray &ids)
{
    m_drawing = drawing;
    m_entities.clear();
    for (const AcDbObjectId &id : ids) {
        AcDbEntity *entity = nullptr;
        if (!drawing || acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk)
            continue;
        entity->close();
        m_entities.push_back(entity);
    }
    takeRows(m_rows, read(),
             [](const PropertyRow &a, const PropertyRow &b) { return a.caption == b.caption && a.isText == b.isText; });
}

PropertyRows PropertiesModel::read()
{
    PropertyRows rows;
    m_layer.reset();
    m_color.reset();
    m_layerRow = m_colorRow = -1;
    if (m_entities.empty())
        return rows;
    std::array<std::size_t, static_cast<std::size_t>(EntityKind::Hatch) + 1> kinds{};
    bool sameLayer = true, sameColor = true;
    const std::size_t layer = layerIndexOf(*m_entities.front());
    const int color = m_entities.front()->colorIndex();
    for (const AcDbEntity *entity : m_entities) {
        ++kinds[static_cast<std::size_t>(kindOf(*entity))];
        sameLayer = sameLayer && layerIndexOf(*entity) == layer;
        sameColor = sameColor && entity->colorIndex() == color;
    }
    if (sameLayer)
        m_layer = layer;
    if (sameColor)
        m_color = color;

    QStringList words;
    for (std::size_t i = 0; i < kinds.size(); ++i)
        if (kinds[i] > 0)
            words.append(m_entities.size() == 1
                             ? uiString(kindName(static_cast<EntityKind>(i)))
                             : QStringLiteral("%1: %2").arg(uiString(kindName(static_cast<EntityKind>(i))).toLower(),
                                                            QString::number(kinds[i])));
    if (m_entities.size() > 1)
        rows.push_back({"ui.property.count", QString::number(m_entities.size())});
    rows.push_back({"ui.property.kind", words.join(QStringLiteral(", "))});
    m_layerRow = static_cast<int>(rows.size());
    rows.push_back(
        {"ui.property.layer", sameLayer ? textOf(m_drawing->layer(layer).name) : uiString("ui.property.various")});
    m_colorRow = static_cast<int>(rows.size());
    rows.push_back({"ui.property.color", !sameColor          ? uiString("ui.property.various")
                                         : color == kByLayer ? uiString("ui.property.byLayer")
                                         : color == 0        ? uiString("ui.property.byBlock")
                                                             : QString::number(color)});
    if (m_entities.size() > 1) {
        addSums(rows);
        return rows;
    }
    AcDbEntity &entity = *m_entities.front();
    // Asking for a handle would give one to an entity of a file without them, and looking is no change.
    if (const std::uint64_t handle = ObjectAccess::host(entity).handle)
        rows.push_back({"ui.property.handle", QString::number(handle, 16).toUpper()});
    for (PropertyRow &row : geometryOf(entity))
        rows.push_back(std::move(row));
    addNetwork(*m_drawing, entity, rows);
    for (const PropertySource &source : propertySources())
        source(*m_drawing, entity, rows);
    return rows;
}

void PropertiesModel::addSums(PropertyRows &rows) const
{
    if (m_entities.size() > kMostMeasured)
        return;
    double length = 0.0, area = 0.0;
    bool anyLength = false, anyArea = false;
    for (const AcDbEntity *entity : m_entities) {
        if (const auto own = planLengthOf(*entity)) {
            length += *own;
            anyLength = true;
        }
        double own = 0.0;
        if (entity->isKindOf(AcDbCurve::desc()) && static_cast<const AcDbCurve *>(entity)->isClosed() &&
            static_cast<const AcDbCurve *>(entity)->getArea(own) == Acad::eOk) {
            area += own;
            anyArea = true;
        }
    }
    if (anyLength)
        rows.push_back({"ui.property.totalLength", numberText(length, kDecimals)});
    if (anyArea)
        rows.push_back({"ui.property.totalArea", numberText(area, kDecimals)});
}

bool PropertiesModel::changeUnlocked(const char *name, const std::function<void(Drawing &, AcDbEntity &)> &change)
{
    std::vector<AcDbEntity *> unlocked;
    for (AcDbEntity *entity : m_entities)
        if (!m_drawing->layer(layerIndexOf(*entity)).locked)
            unlocked.push_back(entity);
    if (const std::size_t locked = m_entities.size() - unlocked.size(); locked > 0)
        Q_EMIT leftOut(locked);
    return !unlocked.empty() && m_change(name, [&](Drawing &drawing) {
        for (AcDbEntity *entity : unlocked)
            change(drawing, *entity);
    });
}

bool PropertiesModel::setLayer(std::size_t layer)
{
    return m_layer != layer && changeUnlocked("ui.property.step.layer", [&](Drawing &drawing, AcDbEntity &entity) {
               drawing.setLayerOf(entity, layer);
           });
}

bool PropertiesModel::setColor(int color)
{
    return m_color != color && color >= 1 && color <= kByLayer &&
           changeUnlocked("ui.property.step.color",
                          [&](Drawing &drawing, AcDbEntity &entity) { drawing.setColorOf(entity, color); });
}

bool PropertiesModel::isLess(int column, int a, int b) const
{
    return compareNames(text(a, column), text(b, column)) < 0;
}

bool PropertiesModel::matches(int row, const QString &wanted) const
{
    return text(row, Property).contains(wanted, Qt::CaseInsensitive) ||
           text(row, Value).contains(wanted, Qt::CaseInsensitive);
}

const char *PropertiesModel::caption(int column) const
{
    return column == Property ? "ui.property.head.property" : "ui.property.head.value";
}

QString PropertiesModel::text(int row, int column) const
{
    const PropertyRow &line = m_rows[static_cast<std::size_t>(row)];
    if (column == Value)
        return line.value;
    return line.isText ? QString::fromStdString(line.caption) : uiString(line.caption);
}

} // namespace velmor
