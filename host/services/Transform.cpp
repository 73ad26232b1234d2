// GUIDs, block attributes, and polygons as text. The only place that knows GEOS.
#include "contracts/CoreServices.h"
#include "host/drawing/Drawing.h"
#include "host/drawing/Journal.h"
#include "host/services/Text.h"

#include <geos/geom/Coordinate.h>
#include <geos/geom/CoordinateSequence.h>
#include <geos/geom/GeometryFactory.h>
#include <geos/geom/LinearRing.h>
#include <geos/geom/Polygon.h>

#include <array>
#include <charconv>
#include <cmath>
#include <random>

namespace ZEMGis::Utility {

namespace {

using geos::geom::Coordinate;
using geos::geom::GeometryFactory;
using geos::geom::Polygon;

std::vector<Coordinate> closedRing(const AcGePoint3dArray &points)
{
    std::vector<Coordinate> ring;
    for (const AcGePoint3d &point : points) {
        if (!std::isfinite(point.x) || !std::isfinite(point.y))
            return {};
        ring.emplace_back(point.x, point.y);
    }
    if (!ring.empty() && !ring.front().equals2D(ring.back()))
        ring.push_back(ring.front());
    // Three corners and the closing repeat make the smallest ring.
    return ring.size() >= 4 ? ring : std::vector<Coordinate>();
}

void appendNumber(std::string &text, double value)
{
    char digits[40];
    text.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void appendRing(std::string &text, const geos::geom::LineString &ring)
{
    const auto &coordinates = *ring.getCoordinatesRO();
    text += '(';
    for (std::size_t i = 0; i < coordinates.size(); ++i) {
        if (i != 0)
            text += ", ";
        appendNumber(text, coordinates.getAt(i).x);
        text += ' ';
        appendNumber(text, coordinates.getAt(i).y);
    }
    text += ')';
}

} // namespace

std::wstring CUtility::CreateGUID()
{
    static std::random_device device; // the system's own source: no seed that two runs could share
    std::array<std::uint32_t, 4> words{};
    for (auto &word : words)
        word = device();
    words[1] = (words[1] & 0xFFFF0FFF) | 0x00004000; // version 4
    words[2] = (words[2] & 0x3FFFFFFF) | 0x80000000; // the standard variant
    std::wstring guid = L"{";
    for (int digit = 0; digit < 32; ++digit) {
        if (digit == 8 || digit == 12 || digit == 16 || digit == 20)
            guid += L'-';
        guid += L"0123456789ABCDEF"[words[static_cast<std::size_t>(digit / 8)] >> (28 - 4 * (digit % 8)) & 15];
    }
    guid += L'}';
    velmor::journal("CUtility::CreateGUID", guid);
    return guid;
}

int CUtility::GetAttributesFromBlockDef(const AcDbObjectId &definition, CStringArray &tags)
{
    velmor::journal("CUtility::GetAttributesFromBlockDef", definition.handle().value());
    AcDbObject *object = nullptr;
    if (acdbOpenAcDbObject(object, definition, AcDb::kForRead) != Acad::eOk)
        return 0;
    int count = 0;
    if (const auto *record = dynamic_cast<const velmor::BlockRecord *>(object)) {
        for (const AcDbEntity *entity : record->entities()) {
            const auto *attribute = dynamic_cast<const velmor::AttributeDefinitionEntity *>(entity);
            if (!attribute || attribute->isErased())
                continue;
            tags.push_back(attribute->tag());
            ++count;
        }
    }
    object->close();
    return count;
}

Polygon *CTransform::AcadPoly2GeosPoly(const AcGePoint3dArray &points)
{
    velmor::journal("CTransform::AcadPoly2GeosPoly", points.size());
    static std::unique_ptr<Polygon> last;
    const GeometryFactory &factory = *GeometryFactory::getDefaultInstance();
    last = factory.createPolygon();
    if (std::vector<Coordinate> ring = closedRing(points); !ring.empty()) {
        try {
            last = factory.createPolygon(std::move(ring));
        } catch (const std::exception &) {
            // What makes no ring stays the empty polygon.
        }
    }
    return last.get();
}

std::wstring CTransform::PolygonText(const Polygon *polygon)
{
    if (!polygon || polygon->isEmpty())
        return L"POLYGON EMPTY";
    std::string text = "POLYGON (";
    appendRing(text, *polygon->getExteriorRing());
    for (std::size_t i = 0; i < polygon->getNumInteriorRing(); ++i) {
        text += ", ";
        appendRing(text, *polygon->getInteriorRingN(i));
    }
    return velmor::wide(text + ')');
}

} // namespace ZEMGis::Utility
