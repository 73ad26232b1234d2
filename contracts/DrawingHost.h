// What the module asks of the drawing host: the drawing's objects, commands and input, selection sets, display, and
// the wrappers that open an object for as short as a step needs.
//
// The host defines everything declared here and owns every object of a drawing. A pointer got from an open call is
// valid until close(). An AcDbObjectId names its object as long as the drawing is open and stays safe to use behind
// that: an id of a closed drawing names nothing, counts as erased and opens nothing, also when a later drawing holds
// another object at the same place. All calls belong on the main thread.
#pragma once

#include "contracts/HostTypes.h"

#include <memory>
#include <string>
#include <vector>

class AcDbBlockTable;
class AcDbBlockTableIterator;
class AcDbBlockTableRecord;
class AcDbBlockTableRecordIterator;
class AcDbDatabase;
class AcDbEntity;
class AcDbObject;

namespace velmor {
class ObjectAccess; ///< the embedded host's way into an object; nothing that a module needs
} // namespace velmor

// --- Classes, handles and ids --------------------------------------------------------------------------------------

/// Class descriptor; one object for each class, compared by address.
class ZEMX_CONTRACT AcRxClass {
public:
    AcRxClass(const wchar_t *name, const AcRxClass *parent) : m_name(name), m_parent(parent) {}
    const wchar_t *name() const { return m_name; }
    const AcRxClass *parent() const { return m_parent; }
    bool isDerivedFrom(const AcRxClass *ancestor) const
    {
        const AcRxClass *c = this;
        while (c && c != ancestor)
            c = c->m_parent;
        return c != nullptr;
    }

private:
    const wchar_t *m_name;
    const AcRxClass *m_parent;
};

/// Open modes.
namespace AcDb {
enum OpenMode { kForRead = 0, kForWrite = 1 };
}

/// Permanent number of an object in its drawing; 0 is none.
class ZEMX_CONTRACT AcDbHandle {
public:
    AcDbHandle() = default;
    explicit AcDbHandle(std::uint64_t value) : m_value(value) {}
    /// From hexadecimal text; anything else gives 0.
    explicit AcDbHandle(const wchar_t *text);
    /// Writes the handle as upper case hexadecimal without leading zeros; buffer takes at least 17 characters.
    bool getIntoAsciiBuffer(wchar_t *buffer) const;
    bool isNull() const { return m_value == 0; }
    std::uint64_t value() const { return m_value; }
    bool operator==(const AcDbHandle &) const = default;

private:
    std::uint64_t m_value = 0;
};

/// Names one object of one drawing, for the life of the drawing; cheap to copy and to compare.
class ZEMX_CONTRACT AcDbObjectId {
public:
    AcDbObjectId() = default;
    bool isNull() const { return m_object == nullptr; }
    /// True for an id that names an object of an open drawing, erased or not.
    bool isValid() const;
    /// True for what was erased, and for everything of a drawing that was closed.
    bool isErased() const;
    /// None for the null id and for one of a drawing that was closed.
    AcDbHandle handle() const;
    void setNull() { *this = AcDbObjectId(); }
    bool operator==(const AcDbObjectId &) const = default;
    /// A fixed order; ids of one drawing's entities come in it as they were made, as far as the host can.
    bool operator<(const AcDbObjectId &o) const
    {
        return m_object != o.m_object ? m_object < o.m_object : m_drawing < o.m_drawing;
    }

private:
    friend class AcDbObject;
    friend class AcDbBlockTableRecordIterator;
    friend class velmor::ObjectAccess;
    AcDbObjectId(AcDbObject *object, std::uint64_t drawing) : m_object(object), m_drawing(drawing) {}
    AcDbObject *m_object = nullptr;
    std::uint64_t m_drawing = 0; ///< number of the drawing; no two of one run of the program have the same
};

using AcDbObjectIdArray = AcArray<AcDbObjectId>;

// --- Objects and entities ------------------------------------------------------------------------------------------

/// Root of everything in a drawing.
class ZEMX_CONTRACT AcDbObject {
public:
    AcDbObject(const AcDbObject &) = delete;
    AcDbObject &operator=(const AcDbObject &) = delete;
    virtual ~AcDbObject();
    [[gnu::const]] static AcRxClass *desc() noexcept;
    virtual AcRxClass *isA() const;
    bool isKindOf(const AcRxClass *ancestor) const { return isA()->isDerivedFrom(ancestor); }
    AcDbObjectId objectId() const;
    /// Ends one open; an object made but never appended is left to its owner.
    Acad::ErrorStatus close()
    {
        m_host.readers = static_cast<std::int16_t>(m_host.readers > 0 ? m_host.readers - 1 : 0);
        return Acad::eOk;
    }
    /// From read to write; refused while others have it open.
    Acad::ErrorStatus upgradeOpen();
    /// Takes the object out of the drawing (true) or brings it back (false); it must be open for writing. Besides
    /// entities these can go: a block definition that nothing refers to (else eIsReferenced; model and paper space
    /// never go) and the record behind a key of a named dictionary or of attached data. Any other object is kept as it
    /// was read, since nobody can tell what refers to it: eInvalidInput.
    Acad::ErrorStatus erase(bool erasing = true);
    bool isErased() const { return (m_host.flags & kErasedFlag) != 0; }
    bool isWriteEnabled() const;

protected:
    AcDbObject();

private:
    friend class velmor::ObjectAccess;
    friend class AcDbObjectId;
    friend class AcDbBlockTableRecordIterator;
    static constexpr std::uint16_t kErasedFlag = 1;
    /// The host's bookkeeping. What a walk needs (open state, flags) stands right behind the table pointer, so that
    /// opening, testing and closing an object touch one cache line.
    struct HostState {
        std::uint16_t flags = 0;
        std::int16_t readers = 0;         ///< open for reading that many times, -1 for writing
        std::int16_t color = 256;         ///< colour index
        std::uint16_t drawing = 0;        ///< the drawing's place among the open ones; 0: in none yet
        std::uint32_t layer = 0xFFFFFFFF; ///< index in the drawing's layer table; none: the current one when appended
        std::uint32_t sourceLength = 0;   ///< 0: no text yet, it is written from the object
        std::uint64_t sourceOffset = 0;   ///< where the object's tags stand in the drawing's text
        std::uint64_t handle = 0;
        AcDbObject *owner = nullptr; ///< block record, block reference or dictionary that holds the object
    } m_host;
};

struct AcDbFullSubentPath {}; ///< only the null path is used
inline constexpr AcDbFullSubentPath kNullSubent{};

class ZEMX_CONTRACT AcDbEntity : public AcDbObject {
public:
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    /// Layer name, exact.
    std::wstring layer() const;
    Acad::ErrorStatus setLayer(const std::wstring &name);
    /// Colour index: 0 by block, 256 by layer.
    int colorIndex() const;
    virtual Acad::ErrorStatus setColorIndex(int index, bool doSubents = true);
    /// Makes the entity stand out on the screen; no change of the drawing.
    virtual Acad::ErrorStatus highlight(const AcDbFullSubentPath &path = kNullSubent, bool highlightAll = false) const;
    virtual Acad::ErrorStatus unhighlight(const AcDbFullSubentPath &path = kNullSubent,
                                          bool highlightAll = false) const;
    /// Joins another region into this one (operation code 0). Drawings of this host hold no regions (they are bodies of
    /// a solid modeller), and what is no region has nothing to join: eInvalidInput, and both stay as they are.
    virtual Acad::ErrorStatus booleanOper(int operation, AcDbEntity *other);

protected:
    AcDbEntity() = default;
};

class ZEMX_CONTRACT AcDbCurve : public AcDbEntity {
public:
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    /// Enclosed area in square drawing units, arcs counted as arcs, open curves as if closed by a chord.
    virtual Acad::ErrorStatus getArea(double &area) const;
    virtual bool isClosed() const;

protected:
    AcDbCurve() = default;
};

class ZEMX_CONTRACT AcDbLine : public AcDbCurve {
public:
    AcDbLine() = default;
    AcDbLine(const AcGePoint3d &start, const AcGePoint3d &end);
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    Acad::ErrorStatus setStartPoint(const AcGePoint3d &point);
    Acad::ErrorStatus setEndPoint(const AcGePoint3d &point);
    const AcGePoint3d &startPoint() const { return m_start; }
    const AcGePoint3d &endPoint() const { return m_end; }
    Acad::ErrorStatus getArea(double &area) const override;

private:
    friend class velmor::ObjectAccess;
    AcGePoint3d m_start, m_end;
};

/// Circular arc, counter-clockwise from start to end angle.
class ZEMX_CONTRACT AcDbArc : public AcDbCurve {
public:
    AcDbArc() = default;
    AcDbArc(const AcGePoint3d &center, double radius, double startAngle, double endAngle);
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    const AcGePoint3d &center() const { return m_center; }
    double radius() const { return m_radius; }
    double startAngle() const { return m_startAngle; }
    double endAngle() const { return m_endAngle; }
    AcGePoint3d startPoint() const;
    AcGePoint3d endPoint() const;
    Acad::ErrorStatus getArea(double &area) const override;

private:
    friend class velmor::ObjectAccess;
    AcGePoint3d m_center;
    double m_radius = 0.0, m_startAngle = 0.0, m_endAngle = 0.0;
};

/// Light-weight polyline.
class ZEMX_CONTRACT AcDbPolyline : public AcDbCurve {
public:
    struct Vertex {
        double x = 0.0, y = 0.0, bulge = 0.0;
        bool operator==(const Vertex &) const = default;
    };
    AcDbPolyline() = default;
    AcDbPolyline(std::vector<Vertex> vertices, bool closed, double elevation = 0.0, double constantWidth = 0.0);
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    bool isOnlyLines() const;
    unsigned numVerts() const { return static_cast<unsigned>(m_vertices.size()); }
    Acad::ErrorStatus getPointAt(unsigned index, AcGePoint3d &point) const;
    Acad::ErrorStatus getBulgeAt(unsigned index, double &bulge) const;
    bool isClosed() const override { return m_closed; }
    double elevation() const { return m_elevation; }
    /// Width of every segment in drawing units, half of it to each side; 0: a thin line.
    double constantWidth() const { return m_width; }
    const std::vector<Vertex> &vertices() const { return m_vertices; }
    Acad::ErrorStatus getArea(double &area) const override;

private:
    friend class velmor::ObjectAccess;
    std::vector<Vertex> m_vertices;
    double m_elevation = 0.0, m_width = 0.0;
    bool m_closed = false;
};

/// Old-style polyline in the plane; its vertices stand in the file as entities of their own.
class ZEMX_CONTRACT AcDb2dPolyline : public AcDbCurve {
public:
    using Vertex = AcDbPolyline::Vertex;
    AcDb2dPolyline() = default;
    AcDb2dPolyline(std::vector<Vertex> vertices, bool closed, double elevation = 0.0);
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    bool isClosed() const override { return m_closed; }
    double elevation() const { return m_elevation; }
    const std::vector<Vertex> &vertices() const { return m_vertices; }
    Acad::ErrorStatus getArea(double &area) const override;

private:
    friend class velmor::ObjectAccess;
    std::vector<Vertex> m_vertices;
    double m_elevation = 0.0;
    bool m_closed = false;
};

class ZEMX_CONTRACT AcDb3dPolyline : public AcDbCurve {
public:
    AcDb3dPolyline() = default;
    AcDb3dPolyline(std::vector<AcGePoint3d> vertices, bool closed);
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    bool isClosed() const override { return m_closed; }
    const std::vector<AcGePoint3d> &vertices() const { return m_vertices; }
    Acad::ErrorStatus getArea(double &area) const override;

private:
    friend class velmor::ObjectAccess;
    std::vector<AcGePoint3d> m_vertices;
    bool m_closed = false;
};

/// A placed block with its attributes.
class ZEMX_CONTRACT AcDbBlockReference : public AcDbEntity {
public:
    /// Everything of a reference that is drawn; the attributes are entities owned by the reference.
    struct Placement {
        AcGePoint3d position;
        double scaleX = 1.0, scaleY = 1.0, scaleZ = 1.0;
        double rotation = 0.0;
        int columns = 1, rows = 1;
        double columnSpacing = 0.0, rowSpacing = 0.0;
    };
    AcDbBlockReference() = default;
    AcDbBlockReference(AcDbObjectId definition, const Placement &placement);
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    AcDbObjectId blockTableRecord() const { return m_definition; }
    const Placement &placement() const { return m_placement; }

private:
    friend class velmor::ObjectAccess;
    AcDbObjectId m_definition;
    Placement m_placement;
    std::vector<AcDbObjectId> m_attributes;
};

/// Hatch as the definition dialog makes it: set up, loops appended, evaluated, appended to model space.
class ZEMX_CONTRACT AcDbHatch : public AcDbEntity {
public:
    enum HatchPatternType { kUserDefined = 0, kPreDefined = 1, kCustomDefined = 2 };
    enum HatchStyle { kNormal = 0, kOuter = 1, kIgnore = 2 };
    enum HatchLoopType { kDefault = 0, kExternal = 1 };
    struct Loop {
        int type = kExternal;
        std::vector<AcDbPolyline::Vertex> vertices; ///< closed ring, first vertex not repeated
    };
    AcDbHatch() = default;
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    Acad::ErrorStatus setNormal(const AcGeVector3d &normal);
    Acad::ErrorStatus setElevation(double elevation);
    Acad::ErrorStatus setPatternAngle(double radians);
    Acad::ErrorStatus setPatternScale(double scale);
    /// eInvalidInput for a pattern that this host doesn't know, of whatever type; the former one stays.
    Acad::ErrorStatus setPattern(HatchPatternType type, const wchar_t *name);
    Acad::ErrorStatus setAssociative(bool associative);
    Acad::ErrorStatus setHatchStyle(HatchStyle style);
    /// Copies the ring of each closed curve; eInvalidInput for an id that is none.
    Acad::ErrorStatus appendLoop(int loopType, const AcDbObjectIdArray &curves);
    /// Makes the pattern's lines; eDegenerateGeometry without a loop of an area.
    Acad::ErrorStatus evaluateHatch(bool underestimateLines = false);
    double patternAngle() const { return m_patternAngle; }
    double patternScale() const { return m_patternScale; }
    const std::wstring &patternName() const { return m_patternName; }
    const std::vector<Loop> &loops() const { return m_loops; }
    /// A piece of a pattern line inside the loops and outside of their holes.
    struct Line {
        double x1 = 0.0, y1 = 0.0, x2 = 0.0, y2 = 0.0;
        bool operator==(const Line &) const = default;
    };
    /// The pattern's lines, evaluated when they are not yet.
    const std::vector<Line> &lines() const;
    /// One set of parallel lines of a pattern, turned and scaled as the hatch has it.
    struct Family {
        double angle = 0.0;                  ///< direction of the lines, radians
        double baseX = 0.0, baseY = 0.0;     ///< a point on one of them
        double offsetX = 0.0, offsetY = 0.0; ///< from a line to the next
        std::vector<double> dashes;          ///< lengths, negative for gaps, 0 for dots; empty: unbroken
        bool operator==(const Family &) const = default;
    };
    /// The pattern as the file defines it, until the pattern is set anew; else by its name.
    std::vector<Family> families() const;

private:
    friend class velmor::ObjectAccess;
    /// Before a change; refused unless the hatch is new or open for writing.
    Acad::ErrorStatus change();
    mutable std::vector<Line> m_lines;
    mutable bool m_evaluated = false;
    AcGeVector3d m_normal{0.0, 0.0, 1.0};
    double m_elevation = 0.0, m_patternAngle = 0.0, m_patternScale = 1.0;
    std::wstring m_patternName;
    int m_patternType = kPreDefined, m_style = kNormal;
    bool m_associative = false;
    std::vector<Loop> m_loops;
    std::vector<Family> m_families; ///< empty: by the pattern's name
};

// --- The drawing ---------------------------------------------------------------------------------------------------

class ZEMX_CONTRACT AcDbDatabase {
public:
    virtual ~AcDbDatabase();
    /// Turns a handle into an id. create is false and reserved 0 in all calls; eUnknownHandle when there is none.
    virtual Acad::ErrorStatus getAcDbObjectId(AcDbObjectId &id, bool create, const AcDbHandle &handle,
                                              std::uint32_t reserved = 0) = 0;
    virtual Acad::ErrorStatus getBlockTable(AcDbBlockTable *&table, AcDb::OpenMode mode) = 0;
};

class ZEMX_CONTRACT AcDbHostApplicationServices {
public:
    /// The one drawing that is worked on; null when none is open.
    AcDbDatabase *workingDatabase() const;
};
ZEMX_CONTRACT AcDbHostApplicationServices *acdbHostApplicationServices();

class ZEMX_CONTRACT AcDbBlockTable : public AcDbObject {
public:
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    /// A new iterator over model space, paper spaces and definitions; the caller deletes it.
    virtual Acad::ErrorStatus newIterator(AcDbBlockTableIterator *&iterator, bool atBeginning = true,
                                          bool skipErased = true) const = 0;
};

class ZEMX_CONTRACT AcDbBlockTableIterator {
public:
    virtual ~AcDbBlockTableIterator();
    virtual void start(bool atBeginning = true, bool skipErased = true) = 0;
    virtual bool done() const = 0;
    virtual void step(bool forward = true, bool skipErased = true) = 0;
    virtual Acad::ErrorStatus getRecord(AcDbBlockTableRecord *&record, AcDb::OpenMode mode) const = 0;
};

class ZEMX_CONTRACT AcDbBlockTableRecord : public AcDbObject {
public:
    [[gnu::const]] static AcRxClass *desc() noexcept;
    AcRxClass *isA() const override;
    virtual std::wstring name() const = 0;
    /// A new iterator over the record's entities in their order; the caller deletes it.
    virtual Acad::ErrorStatus newIterator(AcDbBlockTableRecordIterator *&iterator, bool atBeginning = true,
                                          bool skipErased = true) const = 0;
};

/// What a walk asks about each entity of a record, in one byte each. The host keeps it beside the record's list, so
/// that a walk over a whole drawing passes by what it doesn't want without touching it.
struct AcDbEntityTags {
    static constexpr std::uint8_t kAsk = 0;    ///< the object itself has to be asked
    static constexpr std::uint8_t kErased = 1; ///< any other: neither erased nor open for writing, and of that class
    std::uint8_t at(std::size_t index) const { return bytes ? bytes[index] : kAsk; }
    const std::uint8_t *bytes = nullptr;       ///< as long as the list was when a walk began; null: all are to be asked
    const AcRxClass *const *classes = nullptr; ///< by tag; null behind the last
    std::uint64_t drawing = 0;                 ///< number of the record's drawing; 0: the objects know
};

/// Not virtual: a walk over a whole drawing runs through it.
class ZEMX_CONTRACT AcDbBlockTableRecordIterator {
public:
    /// Walks the entities that the list holds now; what is added to it meanwhile is not seen. The tags, if there are
    /// any, are those of the list and live as long as it.
    AcDbBlockTableRecordIterator(const AcArray<AcDbEntity *> &entities, bool skipErased,
                                 const AcDbEntityTags *tags = nullptr);
    void start(bool atBeginning = true, bool skipErased = true);
    bool done() const { return m_next == m_size; }
    void step(bool forward = true, bool skipErased = true)
    {
        if (!forward || !skipErased)
            return stepAnyWay(forward, skipErased);
        // The way of every walk: to the next that is not erased.
        if (m_next != m_size)
            while (++m_next != m_size && isErasedAt(m_next)) {
            }
    }
    /// The exact class of the entity, without opening it; null for one that could not be opened for reading now.
    const AcRxClass *readableClass() const
    {
        if (m_next == m_size)
            return nullptr;
        const std::uint8_t tag = m_tags.at(m_next);
        return tag > AcDbEntityTags::kErased ? m_tags.classes[tag] : readableClassAnyWay();
    }
    /// From the entity where it stands on, that one included, to the first whose readable class is one of the two;
    /// done() when there is none. All entities on the way are looked at.
    void seek(const AcRxClass *kind, const AcRxClass *otherKind)
    {
        if (const AcRxClass *here = readableClass(); here != nullptr && (here == kind || here == otherKind))
            return;
        seekOn(kind, otherKind);
    }
    Acad::ErrorStatus getEntity(AcDbEntity *&entity, AcDb::OpenMode mode) const
    {
        if (mode == AcDb::kForRead && m_next != m_size && openForRead(m_next)) {
            entity = m_entities[m_next];
            return Acad::eOk;
        }
        return getEntityAnyWay(entity, mode);
    }
    Acad::ErrorStatus getEntityId(AcDbObjectId &id) const
    {
        if (m_next == m_size || m_tags.drawing == 0)
            return getEntityIdAnyWay(id);
        id = AcDbObjectId(m_entities[m_next], m_tags.drawing);
        return Acad::eOk;
    }

private:
    void stepAnyWay(bool forward, bool skipErased);
    void seekOn(const AcRxClass *kind, const AcRxClass *otherKind);
    const AcRxClass *readableClassAnyWay() const;
    Acad::ErrorStatus getEntityAnyWay(AcDbEntity *&entity, AcDb::OpenMode mode) const;
    Acad::ErrorStatus getEntityIdAnyWay(AcDbObjectId &id) const;
    bool isErasedAt(std::size_t index) const;
    bool openForRead(std::size_t index) const;
    const AcArray<AcDbEntity *> &m_entities;
    const AcDbEntityTags &m_tags;
    const AcRxClass *m_sought[2] = {nullptr, nullptr}; ///< last, and ...
    std::uint8_t m_soughtTags[2] = {0, 0};             ///< ... their tags
    std::size_t m_next = 0;
    std::size_t m_size;
};

inline bool AcDbBlockTableRecordIterator::isErasedAt(std::size_t index) const
{
    const std::uint8_t tag = m_tags.at(index);
    return tag == AcDbEntityTags::kErased || (tag == AcDbEntityTags::kAsk && m_entities[index]->isErased());
}
inline bool AcDbBlockTableRecordIterator::openForRead(std::size_t index) const
{
    AcDbObject &object = *m_entities[index];
    if (object.isErased() || object.m_host.readers < 0)
        return false;
    ++object.m_host.readers;
    return true;
}

/// Opens an entity (eNotAnEntity for another object). Read opens may be many, a write open stands alone.
ZEMX_CONTRACT Acad::ErrorStatus acdbOpenAcDbEntity(AcDbEntity *&entity, AcDbObjectId id, AcDb::OpenMode mode);
ZEMX_CONTRACT Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject *&object, AcDbObjectId id, AcDb::OpenMode mode);
ZEMX_CONTRACT Acad::ErrorStatus acdbGetObjectId(AcDbObjectId &id, const ads_name name);
ZEMX_CONTRACT Acad::ErrorStatus acdbGetAdsName(ads_name &name, AcDbObjectId id);

// --- Modules and commands --------------------------------------------------------------------------------------------

using AcRxFunctionPtr = void (*)();

class ZEMX_CONTRACT AcRxObject {
public:
    virtual ~AcRxObject();
};

/// The host's service dictionary: "DynamicLinker" and "ACAD_REGISTERED_COMMANDS"; at() gives null for another name.
class ZEMX_CONTRACT AcRxDictionary : public AcRxObject {
public:
    virtual AcRxObject *at(const wchar_t *name) const = 0;
};
ZEMX_CONTRACT AcRxDictionary *acrxSysRegistry();

class ZEMX_CONTRACT AcRxDynamicLinker : public AcRxObject {
public:
    /// Lets the host unload the module that owns packet.
    virtual bool unlockApplication(void *packet) = 0;
    virtual bool registerAppMDIAware(void *packet) = 0;
};

class ZEMX_CONTRACT AcEdCommandStack : public AcRxObject {
public:
    /// Adds a command; eInvalidInput when group and global name are taken. commandId may be null.
    virtual Acad::ErrorStatus addCommand(const wchar_t *group, const wchar_t *globalName, const wchar_t *localName,
                                         std::int32_t flags, AcRxFunctionPtr function, void *uiContext = nullptr,
                                         int functionCode = -1, void *resourceInstance = nullptr,
                                         void **commandId = nullptr) = 0;
    virtual Acad::ErrorStatus removeCmd(const wchar_t *group, const wchar_t *globalName) = 0;
};

ZEMX_CONTRACT void acrxBuildClassHierarchy();

// A module offers exactly two entry points to the host, with C linkage:
//   int acrxEntryPoint(int message, void *packet);  message is an AcRxAppMessage, packet names the module to the
//                                                   dynamic linker; 0 when the module goes on
//   int acrxGetApiVersion();                        kAcRxApiVersion of the headers that it was built with
enum AcRxAppMessage { kInitAppMsg = 1, kUnloadAppMsg = 2 };
inline constexpr int kAcRxApiVersion = 18;
extern "C" using AcRxEntryPoint = int(*)(int message, void *packet);
extern "C" using AcRxApiVersionPoint = int(*)();

/// Sets up the host's dialog library for a module; called once when it is attached.
ZEMX_CONTRACT void InitAcUiDLL();
/// Enters a module in (or takes it out of) the chain that is searched for forms, icons and texts.
ZEMX_CONTRACT void acuiAttachModule(void *moduleHandle);
ZEMX_CONTRACT void acuiDetachModule(void *moduleHandle);
/// One entry of a module's string table.
struct AcUiString {
    int id;
    const wchar_t *text;
};
/// Hands over the module's string table; the entries stay the module's and must live until acuiDetachModule.
ZEMX_CONTRACT void acuiSetStringTable(void *moduleHandle, const AcUiString *entries, int count);
/// A text of a module's string table by id, cut to the buffer; false when there is none. buffer takes length
/// characters, the closing zero included.
ZEMX_CONTRACT bool acuiLoadString(void *moduleHandle, int id, wchar_t *buffer, int length);

/// External functions: a table of names by code, which a module fills with acedDefun and thins with acedUndef. RTNORM
/// when the name stands under the code (a later one replaces it); RTERROR for no name or a code below 0. A name that
/// begins with "C:" can be typed as a command once its code has a function.
ZEMX_CONTRACT int acedDefun(const wchar_t *name, short code);
/// RTNORM when the name was taken out; RTERROR when it does not stand under that code.
ZEMX_CONTRACT int acedUndef(const wchar_t *name, short code);
/// Gives the name under the code its function (null takes it away). RTERROR when no name stands there.
ZEMX_CONTRACT int acedRegFunc(int (*function)(), int code);
/// The code of the external function that is being called; RTERROR while none is.
ZEMX_CONTRACT int acedGetFunCode();

/// Runs a host command over arguments that stand as pairs of ResbufKind and value (RTSTR const wchar_t*, RTPOINT and
/// RT3DPOINT const double*, RTPICKS const int64_t*, RTSHORT int, RTREAL double), ended by RTNONE. An empty text is the
/// bare Enter. RTNORM when the command took all of them, RTERROR for an unknown command, RTREJ for arguments that its
/// prompts refuse, RTCAN when it was cancelled.
ZEMX_CONTRACT int acedCommand(int kind, ...);
/// The same over a chain.
ZEMX_CONTRACT int acedCmd(const resbuf *arguments);
/// A chain of the pairs given, ended by 0 or RTNONE; the caller frees it with acutRelRb.
ZEMX_CONTRACT resbuf *acutBuildList(int kind, ...);
ZEMX_CONTRACT resbuf *acutNewRb(int kind);
ZEMX_CONTRACT int acutRelRb(resbuf *chain);
ZEMX_CONTRACT void acutDelBuffer(wchar_t *&text);
/// Direction from one point to another, 0 to 2 pi.
ZEMX_CONTRACT double acutAngle(const ads_point from, const ads_point to);
/// The point at a distance in a direction.
ZEMX_CONTRACT void acutPolar(const ads_point from, double angle, double distance, ads_point result);

// --- Input and the user
// ------------------------------------------------------------------------------------------------

/// Asks for a point in world coordinates; base (may be null) is where the rubber band starts.
ZEMX_CONTRACT int acedGetPoint(const ads_point base, const wchar_t *prompt, ads_point result);
/// Asks for one entity; a miss is RTERROR.
ZEMX_CONTRACT int acedEntSel(const wchar_t *prompt, ads_name entity, ads_point pickPoint);
/// Asks for a text (with blanks when cronly is not 0); only waits when the answer is not used.
ZEMX_CONTRACT int acedGetString(int cronly, const wchar_t *prompt, std::wstring &result);
/// Host variables. Integer variables come and go as RTSHORT, numbers as RTREAL, texts as RTSTR (freed by
/// acutDelBuffer).
ZEMX_CONTRACT int acedGetVar(const wchar_t *name, resbuf *result);
ZEMX_CONTRACT int acedSetVar(const wchar_t *name, const resbuf *value);
/// Full path of a file of the support path.
ZEMX_CONTRACT int acedFindFile(const wchar_t *name, std::wstring &path);
/// File chooser; flags are the host's. result is RTSTR on RTNORM.
ZEMX_CONTRACT int acedGetFileD(const wchar_t *title, const wchar_t *defaultPath, const wchar_t *extension, int flags,
                               resbuf *result);
ZEMX_CONTRACT void acedAlert(const wchar_t *text);
/// Pattern chooser; true and a new name on OK.
ZEMX_CONTRACT bool acedHatchPalletteDialog(const wchar_t *current, bool showCustom, std::wstring &result);
ZEMX_CONTRACT bool acedSetColorDialog(int &colorIndex, bool allowMetaColor, int layerColor);
/// Screen colour of a colour index in blue, green, red byte order (0x00BBGGRR).
ZEMX_CONTRACT std::uint32_t acedGetRGB(int colorIndex);
/// Shows a drawing file's picture in a widget (a native handle or a QWidget of this host) on a ground of a colour, as
/// acedGetRGB gives colours, or with 0 on that of drawings; called at each paint of the widget. False when nothing was
/// shown.
ZEMX_CONTRACT bool acdbDisplayPreviewFromDwg(const wchar_t *path, void *widget, std::uint32_t ground);

// --- Selection sets, display
// -----------------------------------------------------------------------------------------------

/// With all arguments null the user selects. Else mode says what is selected among what is visible in model space:
/// "X" everything in it, visible or not; "A" everything visible; "L" the last one visible; "P" what the last call
/// selected; "W" what lies inside a box of two corners, "C" what also crosses it (first and second are ads_points);
/// "WP", "CP" the same of a polygon and "F" what crosses a line (first is a chain of points); null with first: what the
/// user could pick at that point. filter (any mode, null too) is a chain of group codes that must all hold: 0 kind, 2
/// block, 8 layer, 62 colour, -4 "<OR", "<AND", "<NOT" with their ends; texts may hold the wild cards * ? # @ and
/// alternatives behind commas. RTREJ for another mode or code, RTERROR when nothing was selected (no set is made then).
ZEMX_CONTRACT int acedSSGet(const wchar_t *mode, const void *first, const void *second, const resbuf *filter,
                            ads_name set);
ZEMX_CONTRACT int acedSSLength(const ads_name set, std::int32_t *length);
ZEMX_CONTRACT int acedSSName(const ads_name set, std::int32_t index, ads_name entity);
ZEMX_CONTRACT int acedSSFree(const ads_name set);
/// entity null: result is a new set, empty or (with set) a copy. Else adds the entity; set and result may be the same.
ZEMX_CONTRACT int acedSSAdd(const std::int64_t *entity, const std::int64_t *set, ads_name result);

/// With null the view is drawn again; mode 4 then wipes what DrawTemporary drew, the other modes leave it. With an
/// entity: 1 draws it, 2 blanks it out until it is drawn again, 3 highlights it, 4 takes the highlight away; none of it
/// changes the drawing. RTREJ for another mode, RTERROR for a name that is no entity's.
ZEMX_CONTRACT int acedRedraw(const std::int64_t *entity, int mode);
ZEMX_CONTRACT void acedUpdateDisplay();

class ZEMX_CONTRACT AcTransactionManager {
public:
    void flushGraphics();
};
class ZEMX_CONTRACT AcApDocument {
public:
    AcTransactionManager *transactionManager();
};
class ZEMX_CONTRACT AcApDocManager {
public:
    AcApDocument *curDocument();
};
ZEMX_CONTRACT AcApDocManager *acDocManagerPtr();
/// The end of nearly every drawing handler: graphics flush, then the display.
ZEMX_CONTRACT void RefreshDrawingDisplay();

/// Holds the document for writing from outside a command; nests.
class ZEMX_CONTRACT AcAxDocLock {
public:
    AcAxDocLock();
    ~AcAxDocLock();
    AcAxDocLock(const AcAxDocLock &) = delete;
    AcAxDocLock &operator=(const AcAxDocLock &) = delete;
};

// --- The drawing wrapper library
// ---------------------------------------------------------------------------------------------

/// Opens an entity on construction or by open(), closes it on destruction.
class ZEMX_CONTRACT CZEMCEntityPtr {
public:
    CZEMCEntityPtr() = default;
    CZEMCEntityPtr(AcDbObjectId id, AcDb::OpenMode mode) { open(id, mode); }
    CZEMCEntityPtr(const wchar_t *handleText, AcDb::OpenMode mode) { open(handleText, mode); }
    ~CZEMCEntityPtr() { close(); }
    CZEMCEntityPtr(const CZEMCEntityPtr &) = delete;
    CZEMCEntityPtr &operator=(const CZEMCEntityPtr &) = delete;
    Acad::ErrorStatus open(AcDbObjectId id, AcDb::OpenMode mode);
    Acad::ErrorStatus open(const wchar_t *handleText, AcDb::OpenMode mode);
    void close();
    Acad::ErrorStatus openStatus() const { return m_status; }
    AcDb::OpenMode openMode() const { return m_mode; }
    bool isOpen() const { return m_entity != nullptr; }
    AcDbEntity *get() const { return m_entity; }
    AcDbEntity *operator->() const { return m_entity; }

protected:
    /// For a wrapper of one class; anything else is refused with status 34.
    explicit CZEMCEntityPtr(const AcRxClass *accepted) : m_accepted(accepted) {}
    const AcRxClass *m_accepted = AcDbEntity::desc();
    AcDbEntity *m_entity = nullptr;
    Acad::ErrorStatus m_status = Acad::eNullObjectId;
    AcDb::OpenMode m_mode = AcDb::kForRead;
};

/// Any AcDbCurve.
class ZEMX_CONTRACT CZEMCCurvePtr : public CZEMCEntityPtr {
public:
    CZEMCCurvePtr() : CZEMCEntityPtr(AcDbCurve::desc()) {}
    CZEMCCurvePtr(AcDbObjectId id, AcDb::OpenMode mode) : CZEMCCurvePtr() { open(id, mode); }
    AcDbCurve *curve() const { return static_cast<AcDbCurve *>(m_entity); }
};

class ZEMX_CONTRACT CZEMCPolylineLWPtr : public CZEMCEntityPtr {
public:
    CZEMCPolylineLWPtr() : CZEMCEntityPtr(AcDbPolyline::desc()) {}
    CZEMCPolylineLWPtr(AcDbObjectId id, AcDb::OpenMode mode) : CZEMCPolylineLWPtr() { open(id, mode); }
    AcDbPolyline *polyline() const { return static_cast<AcDbPolyline *>(m_entity); }
    /// Appends the vertices in order, elevation as z; true when open.
    bool getVertexPoints(AcGePoint3dArray &points) const;
};

class ZEMX_CONTRACT CZEMC2dPolylinePtr : public CZEMCEntityPtr {
public:
    CZEMC2dPolylinePtr() : CZEMCEntityPtr(AcDb2dPolyline::desc()) {}
    CZEMC2dPolylinePtr(AcDbObjectId id, AcDb::OpenMode mode) : CZEMC2dPolylinePtr() { open(id, mode); }
    bool getVertexPoints(AcGePoint3dArray &points) const;
};

class ZEMX_CONTRACT CZEMC3dPolylinePtr : public CZEMCEntityPtr {
public:
    CZEMC3dPolylinePtr() : CZEMCEntityPtr(AcDb3dPolyline::desc()) {}
    CZEMC3dPolylinePtr(AcDbObjectId id, AcDb::OpenMode mode) : CZEMC3dPolylinePtr() { open(id, mode); }
    bool getVertexPoints(AcGePoint3dArray &points) const;
};

class ZEMX_CONTRACT CZEMCArcPtr : public CZEMCEntityPtr {
public:
    CZEMCArcPtr() : CZEMCEntityPtr(AcDbArc::desc()) {}
    CZEMCArcPtr(AcDbObjectId id, AcDb::OpenMode mode) : CZEMCArcPtr() { open(id, mode); }
    /// The middle of the arc; the origin when not open.
    AcGePoint3d getPointOnArc() const;
};

class ZEMX_CONTRACT CZEMCLinePtr : public CZEMCEntityPtr {
public:
    CZEMCLinePtr() : CZEMCEntityPtr(AcDbLine::desc()) {}
    CZEMCLinePtr(AcDbObjectId id, AcDb::OpenMode mode) : CZEMCLinePtr() { open(id, mode); }
};

class ZEMX_CONTRACT CZEMCBlockReferencePtr : public CZEMCEntityPtr {
public:
    CZEMCBlockReferencePtr() : CZEMCEntityPtr(AcDbBlockReference::desc()) {}
    CZEMCBlockReferencePtr(AcDbObjectId id, AcDb::OpenMode mode) : CZEMCBlockReferencePtr() { open(id, mode); }
    /// Sets the attribute of that tag (upper and lower case alike); false when there is none or it is not open for
    /// write.
    bool setAttributeText(const wchar_t *tag, const wchar_t *text);
};

class ZEMX_CONTRACT CZEMCLayerTablePtr {
public:
    /// All layers in the table's order; false without a drawing.
    bool allLayerNames(CStringArray &names) const;
    bool getCurrent(std::wstring &name) const;
};

/// Per-drawing settings: named dictionaries of keyed values, kept in the drawing file.
/// Constructed with mode 0 (or 1 for writing); with mode 0, a write needs upgradeOpen() first and is refused without
/// it.
class ZEMX_CONTRACT CZEMCDictionaryPtr {
public:
    explicit CZEMCDictionaryPtr(AcDb::OpenMode mode);
    bool upgradeOpen();
    /// True when the key holds a value of that type; value is untouched otherwise. The flag is false in all calls.
    bool dctRead(const wchar_t *dictionary, const wchar_t *key, std::wstring &value, bool flag) const;
    bool dctRead(const wchar_t *dictionary, const wchar_t *key, double &value, bool flag) const;
    bool dctRead(const wchar_t *dictionary, const wchar_t *key, int &value, bool flag) const;
    /// The chain is the caller's to free with acutRelRb.
    bool dctRead(const wchar_t *dictionary, const wchar_t *key, resbuf *&value, bool flag) const;
    /// code is the group code: 1 text, 38 double, 60 int. first is false and create true in all calls; with create
    /// false, a dictionary that is not there is not made. False when nothing was written: not open for writing, no
    /// drawing, a code that does not hold such a value. A chain's items keep their group codes; RTSTR becomes 1, RTREAL
    /// 38, RTSHORT 60, RTLONG 90, a point 10. An empty chain takes the key away.
    bool dctWrite(const wchar_t *dictionary, const wchar_t *key, const std::wstring &value, bool first, bool create,
                  short code);
    bool dctWrite(const wchar_t *dictionary, const wchar_t *key, double value, bool first, bool create, short code);
    bool dctWrite(const wchar_t *dictionary, const wchar_t *key, int value, bool first, bool create, short code);
    bool dctWrite(const wchar_t *dictionary, const wchar_t *key, const resbuf *value, bool first, bool create);

private:
    AcDb::OpenMode m_mode;
};

class AcDbBlockReference;

/// Draws in model space of the working drawing, on the current layer.
class ZEMX_CONTRACT CZEMCDraw {
public:
    /// A light-weight polyline of a width, closed when closed is not 0, with the first point's z as elevation. A null
    /// id without a drawing, without a point, or for a width below 0.
    static AcDbObjectId polylineLW(const AcGePoint3dArray &points, double width, int closed,
                                   CZEMCPolylineLWPtr *opened);
    static AcDbObjectId line(const AcGePoint3d &from, const AcGePoint3d &to, CZEMCLinePtr *opened);
    /// Reads a drawing file as a block definition. A known name answers the definition of the drawing, renewed when
    /// the file is another one; null only when the file can't be read.
    static AcDbObjectId insertBlockDefinition(const wchar_t *name, const wchar_t *path);
    static AcDbObjectId insertBlockReference(AcDbObjectId definition, const AcGePoint3d &point, const wchar_t *layer,
                                             double scale, CZEMCBlockReferencePtr *opened);
    /// Gives the entity to the drawing and leaves it open for writing.
    static Acad::ErrorStatus appendToModelSpace(AcDbEntity *entity, AcDbObjectId &id);
};

class ZEMX_CONTRACT CZEMCEdit {
public:
    /// Shows the extents of the entities enlarged by the factor, centred; erased ids are passed over.
    static bool zoom(AcDbObjectId id, double factor);
    static bool zoom(const AcDbObjectIdArray &ids, double factor);
};

class ZEMX_CONTRACT CZEMCDocLock {
public:
    CZEMCDocLock() = default;

private:
    AcAxDocLock m_lock;
};
