// What the module asks of the core services: configuration, messages, a variant value, attached data, the guard
// against overlapping commands, document locks, GUIDs, polygons as text.
//
// All of it belongs on the main thread. Nothing throws.
#pragma once

#include "contracts/DrawingHost.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <variant>
#include <vector>

namespace geos::geom {
class Polygon;
}

namespace ZEMGis {
namespace Topology {
class CSection;
class CEntity;
} // namespace Topology

/// Settings, messages and paths of the program.
class ZEMX_CONTRACT CModuleConfiguration {
public:
    static CModuleConfiguration *Instance();
    /// Text of a numbered message in the user's language; empty for an unknown number.
    std::wstring GetMsg(unsigned number) const;
    /// Folder of a kind ("Support", "Symbol") with its trailing separator; empty when unset.
    std::wstring GetPath(const wchar_t *kind) const;
    /// The getters answer not 0 when the key has a value of that type, else value is untouched.
    int GetGSValueInt(const wchar_t *key, int &value) const;
    int GetGSValueDouble(const wchar_t *key, double &value) const;
    int GetGSValueString(const wchar_t *key, std::wstring &value) const;
    int SetGSValueInt(const wchar_t *key, int value);
    /// Settings dialog of a group ("TCE1", "TCE2"); modal; not 0 on OK.
    int ShowGSDialog(const wchar_t *group);
    /// Colour index of marks and of temporary drawing.
    int GetHighlightColor() const;
    /// An icon of the module's resources; the host owns it. Null when there is none of that name.
    void *LoadImageW(const wchar_t *name, unsigned type, int width, int height, unsigned flags) const;
};

namespace System {
/// The system of data definitions that a drawing belongs to; only handed on.
class CGisSystem;
class ZEMX_CONTRACT CSystemManager {
public:
    static CSystemManager *Instance();
    CGisSystem *GetActiveSystem() const;
};
} // namespace System
using System::CGisSystem;

namespace Data {

/// A variant: nothing, a number, a whole number, a text or a list of texts.
class ZEMX_CONTRACT CDataBox {
public:
    CDataBox() = default;
    CDataBox(double value) : m_value(value) {}
    CDataBox(int value) : m_value(value) {}
    CDataBox(const wchar_t *value) : m_value(std::wstring(value)) {}
    CDataBox(std::wstring value) : m_value(std::move(value)) {}
    CDataBox(CStringArray value) : m_value(std::move(value)) {}
    bool IsNotNull() const { return m_value.index() != 0; }
    /// Numbers convert into each other (a fraction is cut), texts are parsed; 0 for nothing or a list.
    operator int() const;
    operator double() const;
    /// Numbers are written so that they read back the same; empty for nothing or a list.
    operator std::wstring() const;
    /// Copies the list; a single text counts as a list of one. False for anything else, list untouched.
    bool GetArrayCopy(CStringArray &list) const;
    bool operator==(const CDataBox &) const = default;
    using Value = std::variant<std::monostate, double, int, std::wstring, CStringArray>;
    const Value &value() const { return m_value; }

private:
    Value m_value;
};

/// Data attached to drawing entities under a key.
class ZEMX_CONTRACT CDataRW {
public:
    /// Leaves the box null when the entity is not open or has no such data. flag is 0, system null in all calls.
    static int Read(const wchar_t *key, CZEMCEntityPtr &entity, CDataBox &box, int flag, CGisSystem *system);
    /// The entity must be open for writing. Not 0 when written.
    static int Write(const wchar_t *key, CZEMCEntityPtr &entity, const CDataBox &box, CGisSystem *system);
};

class CDataDefinition;
class ZEMX_CONTRACT CDataConfiguration {
public:
    static CDataConfiguration *Instance();
    CDataDefinition *GetDataDefinitionByID(const wchar_t *id) const;
};

} // namespace Data

namespace Notification {

class ZEMX_CONTRACT CNotificationFramework {
public:
    static CNotificationFramework *Instance();
    /// Not 0 while any command of the family runs.
    int IsCommandActive() const;
};

/// Declares a command active for its own life.
class ZEMX_CONTRACT SetActiveCommand {
public:
    explicit SetActiveCommand(const wchar_t *name);
    ~SetActiveCommand();
    SetActiveCommand(const SetActiveCommand &) = delete;
    SetActiveCommand &operator=(const SetActiveCommand &) = delete;
};

} // namespace Notification

namespace Utility {

/// Locks the active document for its own life; nests.
class ZEMX_CONTRACT CDocLock {
public:
    CDocLock() = default;

private:
    AcAxDocLock m_lock;
};

class ZEMX_CONTRACT CUtility {
public:
    /// A new random GUID, upper case in braces.
    static std::wstring CreateGUID();
    /// Appends the tags of the definition's attributes in their order; their number.
    static int GetAttributesFromBlockDef(const AcDbObjectId &definition, CStringArray &tags);
};

class ZEMX_CONTRACT CTransform {
public:
    /// A polygon over the points in x and y, closed if they aren't; empty for fewer than three points.
    /// The host keeps it until the next call.
    static geos::geom::Polygon *AcadPoly2GeosPoly(const AcGePoint3dArray &points);
    /// Its well-known text, with digits enough to read the same coordinates back; an empty polygon's text for null.
    static std::wstring PolygonText(const geos::geom::Polygon *polygon);
};

} // namespace Utility

namespace Selection {

/// What the selection tool gives: sections in pick order without duplicates.
class ZEMX_CONTRACT CSelectionSet {
public:
    CSelectionSet() = default;
    virtual ~CSelectionSet();
    std::vector<boost::shared_ptr<Topology::CSection>> m_sections;
    std::vector<boost::shared_ptr<Topology::CEntity>> m_extra; ///< a second list; empty in this host
};

} // namespace Selection
} // namespace ZEMGis
