#include "catalog/ZEMTerrainTypeCatalog.h"

#include "catalog/NameCoding.h"
#include "catalog/NumberText.h"
#include "catalog/OwnedLocale.h"
#include "contracts/CoreServices.h"

#include <unordered_set>
#include <wctype.h>

namespace {

constexpr wchar_t kFileName[] = L"ZEMXTerrainType.cfg";
constexpr wchar_t kKeptEnding[] = L".bak";
constexpr wchar_t kDictionary[] = L"ZEMX_TERRAINTYPE";
constexpr wchar_t kKey[] = L"TT_DEFINITION";
constexpr wchar_t kTemplate[] = L"<?xml version=\"1.0\" encoding=\"utf-8\" ?><Terrains></Terrains>";
constexpr wchar_t kRoot[] = L"Terrains";
constexpr wchar_t kTerrain[] = L"Terrain";
constexpr wchar_t kName[] = L"name";
constexpr wchar_t kFlow[] = L"flow";
constexpr short kTextCode = 1;

/// The text in small letters, in all alphabets and whatever the program's locale.
std::wstring Folded(std::wstring text)
{
    static const COwnedLocale letters(LC_CTYPE_MASK, "C.UTF-8");
    for (wchar_t &c : text)
        c = static_cast<wchar_t>(letters.Get() ? towlower_l(static_cast<wint_t>(c), letters.Get())
                                               : towlower(static_cast<wint_t>(c)));
    return text;
}

} // namespace

bool CZEMTerrainTypeCatalog::FindTerrains()
{
    Rewind();
    return FindElement(kRoot);
}

bool CZEMTerrainTypeCatalog::FindNextTerrain()
{
    return FindChildElement(kTerrain);
}

std::wstring CZEMTerrainTypeCatalog::ChildName(const CAnsiCodePage &page) const
{
    return DecodeName(GetChildAttribute(kName), page);
}

/// Makes the first entry of that name the child; on a miss the last entry is.
bool CZEMTerrainTypeCatalog::FindTerrain(const std::wstring &name, const CAnsiCodePage &page)
{
    if (!FindTerrains())
        return false;
    const std::wstring wanted = Folded(name);
    while (FindNextTerrain())
        if (Folded(ChildName(page)) == wanted)
            return true;
    return false;
}

bool CZEMTerrainTypeCatalog::Load()
{
    std::wstring text;
    if (!CZEMCDictionaryPtr(AcDb::kForRead).dctRead(kDictionary, kKey, text, false))
        text = kTemplate;
    SetText(text);
    std::wstring path;
    if (acedFindFile(kFileName, path) != RTNORM)
        return false;
    CZEMTerrainTypeCatalog file;
    file.CMarkup::Load(path);
    if (!file.FindTerrains())
        return false;
    if (FindTerrains()) // else there is no place for an entry, and the record stays as it is
        AddFrom(file);
    return true;
}

/// The names of the list that FindTerrains found, in small letters.
std::unordered_set<std::wstring> CZEMTerrainTypeCatalog::FoldedNames(const CAnsiCodePage &page)
{
    std::unordered_set<std::wstring> names;
    while (FindNextTerrain())
        names.insert(Folded(ChildName(page)));
    return names;
}

/// Takes over each entry of the file's list whose name this one does not have.
void CZEMTerrainTypeCatalog::AddFrom(CZEMTerrainTypeCatalog &file)
{
    const CAnsiCodePage &page = CAnsiCodePage::OfSetting();
    FindTerrains();
    std::unordered_set<std::wstring> known = FoldedNames(page);
    while (file.FindNextTerrain()) {
        if (!known.insert(Folded(file.ChildName(page))).second)
            continue;
        FindTerrains(); // no child: the entry goes to the front
        InsertChildFragment(file.GetChildFragment());
        SaveToDrawing();
    }
}

bool CZEMTerrainTypeCatalog::SaveToDrawing()
{
    Rewind();
    CZEMCDictionaryPtr record(AcDb::kForRead);
    record.upgradeOpen();
    return record.dctWrite(kDictionary, kKey, std::wstring(GetText()), false, true, kTextCode);
}

bool CZEMTerrainTypeCatalog::SaveToFile()
{
    std::wstring path;
    if (acedFindFile(kFileName, path) != RTNORM) {
        path = ZEMGis::CModuleConfiguration::Instance()->GetPath(L"Support");
        if (path.empty())
            return false;
        path += kFileName;
    }
    if (KeepReplaced(path))
        CMarkup::Save(path);
    return true;
}

/// The file is every drawing's, and this list may come from a damaged record or lack what somebody removed. What was
/// kept may be the only good list that is left, so a file without an entry never takes its place.
bool CZEMTerrainTypeCatalog::KeepReplaced(const std::wstring &path) const
{
    CZEMTerrainTypeCatalog file;
    const bool isWhole = file.CMarkup::Load(path);
    if (file.GetText().empty() || (isWhole && HasAllOf(file)))
        return true;
    CZEMTerrainTypeCatalog kept;
    kept.CMarkup::Load(path + kKeptEnding);
    if (kept.HasEntry() && !file.HasEntry())
        return true;
    return file.CMarkup::Save(path + kKeptEnding);
}

bool CZEMTerrainTypeCatalog::HasEntry()
{
    return FindTerrains() && FindNextTerrain();
}

bool CZEMTerrainTypeCatalog::HasAllOf(CZEMTerrainTypeCatalog &other) const
{
    const CAnsiCodePage &page = CAnsiCodePage::OfSetting();
    CZEMTerrainTypeCatalog own; // looking moves the place in a list
    own.SetText(GetText());
    if (!other.FindTerrains() || !own.FindTerrains())
        return false;
    const std::unordered_set<std::wstring> names = own.FoldedNames(page);
    while (other.FindNextTerrain())
        if (!names.contains(Folded(other.ChildName(page))))
            return false;
    return true;
}

bool CZEMTerrainTypeCatalog::Save()
{
    SaveToDrawing();
    SaveToFile();
    return true;
}

bool CZEMTerrainTypeCatalog::GetTerrainNames(CStringArray &names)
{
    if (!FindTerrains())
        return false;
    const CAnsiCodePage &page = CAnsiCodePage::OfSetting();
    bool any = false;
    for (; FindNextTerrain(); any = true)
        names.push_back(ChildName(page));
    return any;
}

bool CZEMTerrainTypeCatalog::GetTerrains(CStringArray &names, AcArray<double> &flows)
{
    if (!FindTerrains())
        return false;
    const CAnsiCodePage &page = CAnsiCodePage::OfSetting();
    bool any = false;
    for (; FindNextTerrain(); any = true) {
        names.push_back(ChildName(page));
        flows.push_back(ReadDouble(GetChildAttribute(kFlow)).value);
    }
    return any;
}

bool CZEMTerrainTypeCatalog::GetFlow(std::wstring name, double &flow)
{
    if (!FindTerrains())
        return false;
    const CAnsiCodePage &page = CAnsiCodePage::OfSetting();
    name = Folded(std::move(name));
    bool any = false;
    for (; FindNextTerrain(); any = true)
        if (Folded(ChildName(page)) == name)
            flow = ReadDouble(GetChildAttribute(kFlow)).value;
    return any;
}

bool CZEMTerrainTypeCatalog::SetFlow(std::wstring name, double flow)
{
    return FindTerrain(name, CAnsiCodePage::OfSetting()) && SetChildAttribute(kFlow, FourDecimals(flow));
}

bool CZEMTerrainTypeCatalog::SetTerrain(std::wstring name, double flow)
{
    if (!FindTerrains())
        return false;
    const CAnsiCodePage &page = CAnsiCodePage::OfSetting();
    const std::wstring flowText = FourDecimals(flow);
    while (FindNextTerrain()) {
        if (ChildName(page) != name)
            continue;
        EnterChild();
        if (SetAttribute(kFlow, flowText))
            return true;
        LeaveElement();
        while (FindNextTerrain()) // its tag can't be written to: a new one behind the last
            continue;
        break;
    }
    if (!AddChildElement(kTerrain))
        return false;
    SetChildAttribute(kName, EncodeName(name, page));
    SetChildAttribute(kFlow, flowText);
    return true;
}

bool CZEMTerrainTypeCatalog::RemoveTerrain(std::wstring name)
{
    const bool found = FindTerrain(name, CAnsiCodePage::OfSetting());
    // Also without a match: what goes is then the entry at which the search ended.
    LeaveElement();
    RemoveChildElement();
    return found;
}
