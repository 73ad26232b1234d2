// The host's way into the private parts of objects: bookkeeping, ids, members that only a reader or an edit sets.
//
// Everything here is inline and checks nothing. Code outside of host/drawing uses Drawing's operations instead.
#pragma once

#include "host/drawing/Drawing.h"

#include <atomic>
#include <tuple>

namespace velmor {

/// Bits of HostState::flags.
enum ObjectFlag : std::uint16_t {
    kErased = 1 << 0,
    kErasedWithOwner = 1 << 1, ///< an attribute that goes and comes back with its reference
    kInArena = 1 << 2,         ///< memory belongs to the drawing's arena
    kIsEntity = 1 << 3,        ///< an entity in a drawing
    kHandleInText = 1 << 4,    ///< the tags hold the handle
    kHasExtension = 1 << 5,    ///< the tags name an extension dictionary or hold extended data of ours
    kListed = 1 << 6,          ///< stands in the drawing's list of touched objects
    kPatchLayer = 1 << 7,      ///< parts whose tags no longer say what the object says
    kPatchColor = 1 << 8,
    kPatchText = 1 << 9,
    kPatchData = 1 << 10,
    kPatchGeometry = 1 << 11,
    kPatchAttributes = 1 << 12, ///< a reference that got attributes
    kPaperSpace = 1 << 13,      ///< an entity of a paper space
    kWithdrawn = 1 << 14,       ///< its making was undone: erased, and its handle belongs to nobody
    kInvisible = 1 << 15,       ///< an entity that the file marks as not to be shown
};

/// Class descriptor of a class of the host, with what the host asks about it.
struct HostClass final : AcRxClass {
    HostClass(const wchar_t *name, const AcRxClass *parent, EntityKind entityKind = EntityKind::Unknown,
              const char *nameInFile = "")
        : AcRxClass(name, parent), kind(entityKind), fileName(nameInFile)
    {
    }
    EntityKind kind;
    const char *fileName; ///< "LWPOLYLINE"
};

/// The numbers of the drawings that are open, each at its place; 0 where there is none. A number holds its place in its
/// low bits, so one look tells whether an id's drawing is still there. Read on any thread.
inline constexpr std::size_t kDrawingPlaces = 4096;
extern std::atomic<std::uint64_t> openDrawings[kDrawingPlaces];

/// Enters a drawing among the open ones for as long as this lives.
class DrawingPlace {
public:
    /// Throws std::length_error when as many drawings are open as there are places.
    DrawingPlace();
    ~DrawingPlace();
    DrawingPlace(const DrawingPlace &) = delete;
    DrawingPlace &operator=(const DrawingPlace &) = delete;
    std::uint16_t place() const { return static_cast<std::uint16_t>(m_number % kDrawingPlaces); }

private:
    std::uint64_t m_number;
};

class ObjectAccess {
public:
    using HostState = AcDbObject::HostState;
    static_assert(AcDbObject::kErasedFlag == kErased);
    static HostState &host(AcDbObject &object) { return object.m_host; }
    static const HostState &host(const AcDbObject &object) { return object.m_host; }
    /// The id of an object that has an owner; none for null.
    static AcDbObjectId id(AcDbObject *object)
    {
        return {object, object ? openDrawings[object->m_host.drawing].load(std::memory_order_relaxed) : 0};
    }
    static bool isOpen(std::uint64_t drawing)
    {
        return drawing != 0 && openDrawings[drawing % kDrawingPlaces].load(std::memory_order_relaxed) == drawing;
    }
    /// Null for the null id and for one of a drawing that was closed.
    static AcDbObject *object(AcDbObjectId id) { return isOpen(id.m_drawing) ? id.m_object : nullptr; }
    /// The number of the id's drawing, open or not.
    static std::uint64_t drawingNumber(AcDbObjectId id) { return id.m_drawing; }
    /// An id from its two numbers, as a name keeps them; the object is not looked at.
    static AcDbObjectId id(AcDbObject *object, std::uint64_t drawing) { return {object, drawing}; }
    /// Enters the object in its owner's drawing.
    static void setOwner(AcDbObject &object, AcDbObject &owner)
    {
        object.m_host.owner = &owner;
        object.m_host.drawing = owner.m_host.drawing;
    }
    static bool has(const AcDbObject &object, unsigned flag) { return (object.m_host.flags & flag) != 0; }
    static void set(AcDbObject &object, unsigned flag, bool on = true)
    {
        auto &flags = object.m_host.flags;
        flags = static_cast<std::uint16_t>(on ? flags | flag : flags & ~flag);
    }
    /// The drawing that holds the object, found over its owners; null for an object that was never appended.
    static Drawing *drawing(const AcDbObject &object);

    static std::vector<AcDbEntity *> &entities(BlockRecord &record) { return record.m_entities; }
    static EntityTags &tags(BlockRecord &record) { return record.m_tags; }
    static AcGePoint3d &basePoint(BlockRecord &record) { return record.m_basePoint; }
    static std::wstring &name(BlockRecord &record) { return record.m_name; }
    static std::vector<AcDbEntity *> &erasedWithIt(BlockRecord &record) { return record.m_erasedWithIt; }

    static std::vector<AcDbObjectId> &attributes(AcDbBlockReference &reference) { return reference.m_attributes; }
    static const std::vector<AcDbObjectId> &attributes(const AcDbBlockReference &reference)
    {
        return reference.m_attributes;
    }
    static void setDefinition(AcDbBlockReference &reference, AcDbObjectId definition)
    {
        reference.m_definition = definition;
    }
    /// Moves an end of a line; refused unless it is free or open for writing.
    static Acad::ErrorStatus changeLine(AcDbLine &line, AcGePoint3d &end, const AcGePoint3d &to);
    static TextShape &shape(TextEntity &text) { return text.m_shape; }

    /// The members that make the shape of an entity.
    static auto members(AcDbLine &line) { return std::tie(line.m_start, line.m_end); }
    static auto members(AcDbArc &arc) { return std::tie(arc.m_center, arc.m_radius, arc.m_startAngle, arc.m_endAngle); }
    static auto members(CircleEntity &circle) { return std::tie(circle.m_center, circle.m_radius); }
    static EllipseEntity::Shape &member(EllipseEntity &ellipse) { return ellipse.m_shape; }
    static SplineEntity::Shape &member(SplineEntity &spline) { return spline.m_shape; }
    static AcGePoint3d &member(PointEntity &point) { return point.m_position; }
    template <class Polyline>
    static auto &vertices(Polyline &polyline)
    {
        return polyline.m_vertices;
    }
    template <class Polyline>
    static bool &closed(Polyline &polyline)
    {
        return polyline.m_closed;
    }
    template <class Polyline>
    static double &elevation(Polyline &polyline)
    {
        return polyline.m_elevation;
    }
    static double &width(AcDbPolyline &polyline) { return polyline.m_width; }
    static AcDbBlockReference::Placement &placement(AcDbBlockReference &reference) { return reference.m_placement; }
    /// The pattern's lines are evaluated anew when they are asked for.
    static void forgetLines(AcDbHatch &hatch)
    {
        hatch.m_lines.clear();
        hatch.m_evaluated = false;
    }

    /// The members of a hatch, for the reader and the writer.
    struct HatchParts {
        AcGeVector3d &normal;
        double &elevation, &angle, &scale;
        std::wstring &pattern;
        int &patternType, &style;
        bool &associative;
        std::vector<AcDbHatch::Loop> &loops;
        std::vector<AcDbHatch::Family> &families;
    };
    static HatchParts parts(AcDbHatch &h)
    {
        return {h.m_normal,      h.m_elevation, h.m_patternAngle, h.m_patternScale, h.m_patternName,
                h.m_patternType, h.m_style,     h.m_associative,  h.m_loops,        h.m_families};
    }
};

/// To be called when an object was erased, came back or was opened for writing: walks over its record look anew.
void noteState(AcDbObject &object);

} // namespace velmor
