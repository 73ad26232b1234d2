// Class descriptors of everything in a drawing, handles and ids.
#include "host/drawing/ObjectAccess.h"

#include <cwctype>

using velmor::EntityKind;
using velmor::HostClass;

namespace {
HostClass s_object{L"AcDbObject", nullptr};
HostClass s_entity{L"AcDbEntity", &s_object};
HostClass s_curve{L"AcDbCurve", &s_entity};
HostClass s_line{L"AcDbLine", &s_curve, EntityKind::Line, "LINE"};
HostClass s_arc{L"AcDbArc", &s_curve, EntityKind::Arc, "ARC"};
HostClass s_polyline{L"AcDbPolyline", &s_curve, EntityKind::LwPolyline, "LWPOLYLINE"};
HostClass s_polyline2d{L"AcDb2dPolyline", &s_curve, EntityKind::Polyline2d, "POLYLINE"};
HostClass s_polyline3d{L"AcDb3dPolyline", &s_curve, EntityKind::Polyline3d, "POLYLINE"};
HostClass s_reference{L"AcDbBlockReference", &s_entity, EntityKind::BlockReference, "INSERT"};
HostClass s_hatch{L"AcDbHatch", &s_entity, EntityKind::Hatch, "HATCH"};
HostClass s_blockTable{L"AcDbBlockTable", &s_object};
HostClass s_blockRecord{L"AcDbBlockTableRecord", &s_object};
HostClass s_circle{L"AcDbCircle", &s_curve, EntityKind::Circle, "CIRCLE"};
HostClass s_ellipse{L"AcDbEllipse", &s_curve, EntityKind::Ellipse, "ELLIPSE"};
HostClass s_spline{L"AcDbSpline", &s_curve, EntityKind::Spline, "SPLINE"};
HostClass s_point{L"AcDbPoint", &s_entity, EntityKind::Point, "POINT"};
HostClass s_text{L"AcDbText", &s_entity, EntityKind::Text, "TEXT"};
HostClass s_mtext{L"AcDbMText", &s_entity, EntityKind::MText, "MTEXT"};
HostClass s_attribute{L"AcDbAttribute", &s_text, EntityKind::Attribute, "ATTRIB"};
HostClass s_attributeDefinition{L"AcDbAttributeDefinition", &s_text, EntityKind::AttributeDefinition, "ATTDEF"};
HostClass s_unknown{L"AcDbUnknownEntity", &s_entity};
} // namespace

#define VELMOR_CLASS(type, descriptor)                                                                                 \
    AcRxClass *type::desc() noexcept                                                                                   \
    {                                                                                                                  \
        return &descriptor;                                                                                            \
    }                                                                                                                  \
    AcRxClass *type::isA() const                                                                                       \
    {                                                                                                                  \
        return &descriptor;                                                                                            \
    }

VELMOR_CLASS(AcDbObject, s_object)
VELMOR_CLASS(AcDbEntity, s_entity)
VELMOR_CLASS(AcDbCurve, s_curve)
VELMOR_CLASS(AcDbLine, s_line)
VELMOR_CLASS(AcDbArc, s_arc)
VELMOR_CLASS(AcDbPolyline, s_polyline)
VELMOR_CLASS(AcDb2dPolyline, s_polyline2d)
VELMOR_CLASS(AcDb3dPolyline, s_polyline3d)
VELMOR_CLASS(AcDbBlockReference, s_reference)
VELMOR_CLASS(AcDbHatch, s_hatch)
VELMOR_CLASS(AcDbBlockTable, s_blockTable)
VELMOR_CLASS(AcDbBlockTableRecord, s_blockRecord)

namespace velmor {
VELMOR_CLASS(CircleEntity, s_circle)
VELMOR_CLASS(EllipseEntity, s_ellipse)
VELMOR_CLASS(SplineEntity, s_spline)
VELMOR_CLASS(PointEntity, s_point)
VELMOR_CLASS(TextEntity, s_text)
VELMOR_CLASS(MTextEntity, s_mtext)
VELMOR_CLASS(AttributeEntity, s_attribute)
VELMOR_CLASS(AttributeDefinitionEntity, s_attributeDefinition)
VELMOR_CLASS(UnknownEntity, s_unknown)

EntityKind kindOf(const AcDbEntity &entity)
{
    // Every class that can be made has a descriptor of the host's.
    return static_cast<const HostClass *>(entity.isA())->kind;
}

std::string typeNameOf(const AcDbEntity &entity)
{
    const auto *c = static_cast<const HostClass *>(entity.isA());
    if (c == &s_unknown)
        return static_cast<const UnknownEntity &>(entity).typeName();
    return c->fileName;
}
} // namespace velmor

AcDbHandle::AcDbHandle(const wchar_t *text)
{
    if (!text || !*text)
        return;
    std::uint64_t value = 0;
    int digits = 0;
    for (; *text; ++text) {
        const wchar_t c = *text;
        const int digit = c >= L'0' && c <= L'9'   ? c - L'0'
                          : c >= L'A' && c <= L'F' ? c - L'A' + 10
                          : c >= L'a' && c <= L'f' ? c - L'a' + 10
                                                   : -1;
        if (digit < 0)
            return;
        if (value != 0 && ++digits > 15)
            return;
        value = value << 4 | static_cast<unsigned>(digit);
    }
    m_value = value;
}

bool AcDbHandle::getIntoAsciiBuffer(wchar_t *buffer) const
{
    if (!buffer)
        return false;
    wchar_t reversed[16];
    int count = 0;
    std::uint64_t rest = m_value;
    do {
        reversed[count++] = L"0123456789ABCDEF"[rest & 15];
        rest >>= 4;
    } while (rest != 0);
    while (count > 0)
        *buffer++ = reversed[--count];
    *buffer = 0;
    return true;
}

bool AcDbObjectId::isValid() const
{
    return velmor::ObjectAccess::object(*this) != nullptr;
}
bool AcDbObjectId::isErased() const
{
    const AcDbObject *object = velmor::ObjectAccess::object(*this);
    return !object || object->isErased();
}
AcDbHandle AcDbObjectId::handle() const
{
    const AcDbObject *object = velmor::ObjectAccess::object(*this);
    return object ? AcDbHandle(velmor::handleOf(*object)) : AcDbHandle();
}
