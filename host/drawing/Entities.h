// The entity kinds that only the host knows, and what all kinds have in common for it.
//
// Coordinates are world coordinates in drawing units: entities in a mirrored plane (extrusion 0,0,-1) are turned when
// they are read. Angles are radians, counter-clockwise.
#pragma once

#include "contracts/DrawingHost.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velmor {

enum class EntityKind : std::uint8_t {
    Unknown,
    Line,
    Arc,
    Circle,
    Ellipse,
    Spline,
    Point,
    LwPolyline,
    Polyline2d,
    Polyline3d,
    Text,
    MText,
    BlockReference,
    Attribute,
    AttributeDefinition,
    Hatch,
};

class CircleEntity final : public AcDbCurve {
public:
    CircleEntity(const AcGePoint3d &center, double radius) : m_center(center), m_radius(radius) {}
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    bool isClosed() const override { return true; }
    Acad::ErrorStatus getArea(double &area) const override;
    const AcGePoint3d &center() const { return m_center; }
    double radius() const { return m_radius; }

private:
    friend class ObjectAccess;
    AcGePoint3d m_center;
    double m_radius;
};

/// Parameters run from start to end counter-clockwise; a full ellipse is 0 to 2 pi.
class EllipseEntity final : public AcDbCurve {
public:
    struct Shape {
        AcGePoint3d center;
        AcGeVector3d majorAxis; ///< from the centre to the end of the major axis
        double ratio = 1.0;     ///< minor to major, negative when mirrored
        double startParameter = 0.0, endParameter = 6.283185307179586;
    };
    explicit EllipseEntity(const Shape &shape) : m_shape(shape) {}
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    bool isClosed() const override;
    Acad::ErrorStatus getArea(double &area) const override;
    const Shape &shape() const { return m_shape; }
    AcGePoint3d pointAt(double parameter) const;

private:
    friend class ObjectAccess;
    Shape m_shape;
};

class SplineEntity final : public AcDbCurve {
public:
    struct Shape {
        int degree = 3;
        bool closed = false;
        std::vector<double> knots;
        std::vector<AcGePoint3d> controlPoints;
        std::vector<double> weights;        ///< empty: not rational
        std::vector<AcGePoint3d> fitPoints; ///< used when there are no control points
    };
    explicit SplineEntity(Shape shape) : m_shape(std::move(shape)) {}
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    bool isClosed() const override;
    Acad::ErrorStatus getArea(double &area) const override;
    const Shape &shape() const { return m_shape; }
    /// Points along the curve, no farther than tolerance from it, ends included.
    std::vector<AcGePoint3d> flatten(double tolerance) const;

private:
    friend class ObjectAccess;
    Shape m_shape;
};

class PointEntity final : public AcDbEntity {
public:
    explicit PointEntity(const AcGePoint3d &position) : m_position(position) {}
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    const AcGePoint3d &position() const { return m_position; }

private:
    friend class ObjectAccess;
    AcGePoint3d m_position;
};

/// One line of text, or several (MText) in which "\n" ends a line and formatting codes are taken out.
struct TextShape {
    AcGePoint3d position; ///< insertion or alignment point, whichever places the text
    double height = 1.0;
    double rotation = 0.0;
    double widthFactor = 1.0;
    int horizontal = 0; ///< 0 left, 1 centre, 2 right
    int vertical = 0;   ///< 0 base line, 1 bottom, 2 middle, 3 top
    std::wstring text;
};

class TextEntity : public AcDbEntity {
public:
    explicit TextEntity(TextShape shape) : m_shape(std::move(shape)) {}
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    const TextShape &shape() const { return m_shape; }

protected:
    friend class ObjectAccess;
    TextShape m_shape;
};

class MTextEntity final : public TextEntity {
public:
    using TextEntity::TextEntity;
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
};

/// Text of a block reference under a tag.
class AttributeEntity final : public TextEntity {
public:
    AttributeEntity(std::wstring tag, TextShape shape, bool invisible = false)
        : TextEntity(std::move(shape)), m_tag(std::move(tag)), m_invisible(invisible)
    {
    }
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    const std::wstring &tag() const { return m_tag; }
    bool isInvisible() const { return m_invisible; }

private:
    std::wstring m_tag;
    bool m_invisible;
};

/// What a block definition gives its references: tag, prompt, default text and place.
class AttributeDefinitionEntity final : public TextEntity {
public:
    AttributeDefinitionEntity(std::wstring tag, std::wstring prompt, TextShape shape, bool invisible = false,
                              bool constant = false)
        : TextEntity(std::move(shape)), m_tag(std::move(tag)), m_prompt(std::move(prompt)), m_invisible(invisible),
          m_constant(constant)
    {
    }
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    const std::wstring &tag() const { return m_tag; }
    const std::wstring &prompt() const { return m_prompt; }
    bool isInvisible() const { return m_invisible; }
    /// The same text in every reference, which gets no attribute for it.
    bool isConstant() const { return m_constant; }

private:
    std::wstring m_tag, m_prompt;
    bool m_invisible, m_constant;
};

/// Any kind that is kept as it was read.
class UnknownEntity final : public AcDbEntity {
public:
    explicit UnknownEntity(std::string typeName) : m_typeName(std::move(typeName)) {}
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    const std::string &typeName() const { return m_typeName; }

private:
    std::string m_typeName;
};

EntityKind kindOf(const AcDbEntity &entity);
/// Name of the kind as it stands in a file ("LWPOLYLINE").
std::string typeNameOf(const AcDbEntity &entity);

struct Extents {
    double minX = 1e300, minY = 1e300, maxX = -1e300, maxY = -1e300;
    bool isEmpty() const { return minX > maxX; }
    void add(double x, double y);
    void add(const Extents &other);
    void grow(double by);
    bool contains(double x, double y) const { return x >= minX && x <= maxX && y >= minY && y <= maxY; }
    bool operator==(const Extents &) const = default;
};
/// Extents in the plane; empty for a kind that has none. A block reference counts with its contents.
Extents extentsOf(const AcDbEntity &entity);
/// Attributes of a reference in order, erased ones left out.
std::vector<AttributeEntity *> attributesOf(const AcDbBlockReference &reference);
std::uint64_t handleOf(const AcDbObject &object);
/// "1F4"; empty for an object without a handle.
std::wstring handleText(const AcDbObject &object);
/// Colour on the screen: the entity's own index, or its layer's for 256 (and white, 7, for 0).
int effectiveColor(const class Drawing &drawing, const AcDbEntity &entity);
std::size_t layerIndexOf(const AcDbEntity &entity);
/// The record that holds the entity; null for one that was never appended and for an attribute of a reference.
const class BlockRecord *ownerOf(const AcDbEntity &entity);
AcDbObjectId idOf(AcDbObject &object);

} // namespace velmor
