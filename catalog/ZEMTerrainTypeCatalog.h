// The list of terrain types: names with a flow coefficient each.
//
//   <Terrains> <Terrain name="Zeleni krov" flow="0.4000"/> ... </Terrains>
//
// The list has two homes. A record in the drawing (dictionary ZEMX_TERRAINTYPE, key TT_DEFINITION) travels with it and
// wins; the support file ZEMXTerrainType.cfg is shared by all drawings and only adds names. Both hold the same text.
// Names stand in it in the coding of NameCoding.h, flows with "." and four decimals.
//
// The catalogue is the document: every operation starts at its root and leaves the position where it ended. Nothing is
// told to the user here. Names compare without regard to case except where it is said. One thread.
#pragma once

#include "catalog/MarkupSTL.h"
#include "contracts/HostTypes.h"

#include <string>
#include <unordered_set>

class CAnsiCodePage;

class CZEMTerrainTypeCatalog : public CMarkupSTL {
public:
    ~CZEMTerrainTypeCatalog() override = default;

    /// Takes the drawing's list, or an empty one, and adds in front of it each entry of the file whose name it does not
    /// have; each time the drawing's record is written at once. False when there is no file or no list in it; the
    /// drawing's list is there all the same. A damaged record is read as far as it can be and, when its list can't be
    /// found, left alone.
    bool Load();
    /// Writes the list into the drawing; false when the drawing did not take it.
    bool SaveToDrawing();
    /// Writes the list to the file that Load finds, else to a new one in the support folder. False only when there is
    /// no such folder: a write that failed is not reported, and leaves the old file. A file that is damaged or has
    /// entries that this list has not is kept beside, with ".bak" behind its name, unless it has no entry itself and
    /// the one that is kept there has; when the keeping fails nothing is written.
    bool SaveToFile();
    /// To both homes; true.
    bool Save();

    /// Appends the names in the list's order. False when there is none.
    bool GetTerrainNames(CStringArray &names);
    /// Appends names and flows. A flow is the number at the start of its text, 0 when there is none.
    bool GetTerrains(CStringArray &names, AcArray<double> &flows);
    /// The flow of the last entry of that name; untouched when there is none. True when the list has any entry.
    bool GetFlow(std::wstring name, double &flow);
    /// Changes the first entry of that name; false when there is none.
    bool SetFlow(std::wstring name, double flow);
    /// Changes the flow of the first entry of exactly that name, case included, or adds one at the end. False when
    /// there is no list.
    bool SetTerrain(std::wstring name, double flow);
    /// Removes the first entry of that name. With another name it is false, and the last entry is removed.
    bool RemoveTerrain(std::wstring name);

private:
    bool FindTerrains();
    bool FindNextTerrain();
    std::wstring ChildName(const CAnsiCodePage &page) const;
    bool FindTerrain(const std::wstring &name, const CAnsiCodePage &page);
    std::unordered_set<std::wstring> FoldedNames(const CAnsiCodePage &page);
    void AddFrom(CZEMTerrainTypeCatalog &file);
    bool KeepReplaced(const std::wstring &path) const;
    bool HasEntry();
    bool HasAllOf(CZEMTerrainTypeCatalog &other) const;
};
