// The terrain catalogue: whatever stands in the drawing's record and in the file, each operation does what it says.
#include "catalog/NameCoding.h"
#include "catalog/ZEMTerrainTypeCatalog.h"
#include "fuzz/CatalogContract.h"
#include "fuzz/Require.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

struct List {
    CStringArray names;
    AcArray<double> flows;
};

List listOf(CZEMTerrainTypeCatalog &catalog)
{
    List list;
    const bool any = catalog.GetTerrains(list.names, list.flows);
    require(any == !list.names.empty() && list.names.size() == list.flows.size());
    CStringArray names;
    require(catalog.GetTerrainNames(names) == any && names == list.names);
    for (const double flow : list.flows)
        require(!std::isnan(flow));
    return list;
}

/// What a sound document says when it is read anew.
void requireSameWhenReadAgain(CZEMTerrainTypeCatalog &catalog)
{
    CZEMTerrainTypeCatalog again;
    if (!catalog.IsWellFormed() || !again.SetText(std::wstring(catalog.GetText())))
        return;
    require(listOf(again).names == listOf(catalog).names);
}

void set(CZEMTerrainTypeCatalog &catalog, const std::wstring &name, double flow)
{
    const List before = listOf(catalog);
    const std::wstring text(catalog.GetText());
    const bool done = catalog.SetTerrain(name, flow);
    const List after = listOf(catalog);
    if (!done) {
        require(catalog.GetText() == text);
        return;
    }
    if (after.names.size() == before.names.size()) {
        const auto at = std::ranges::find(before.names, name) - before.names.begin();
        require(static_cast<std::size_t>(at) < before.names.size() && after.names == before.names);
        require(std::abs(after.flows[static_cast<std::size_t>(at)] - flow) <= 0.00005001);
        return;
    }
    require(after.names.size() == before.names.size() + 1);
    require(std::equal(before.names.begin(), before.names.end(), after.names.begin()));
    const CAnsiCodePage &page = CAnsiCodePage::OfSetting();
    require(after.names.back() == page.ToWide(page.ToBytes(name)));
    require(std::abs(after.flows.back() - flow) <= 0.00005001);
}

void remove(CZEMTerrainTypeCatalog &catalog, const std::wstring &name)
{
    const List before = listOf(catalog);
    const bool found = catalog.RemoveTerrain(name);
    const List after = listOf(catalog);
    require(!found || !before.names.empty());
    if (before.names.empty()) {
        require(after.names.empty());
        return;
    }
    // One entry less, the others in their order; without a match it is the last one that goes.
    require(after.names.size() + 1 == before.names.size());
    const auto differs = std::ranges::mismatch(before.names, after.names).in1 - before.names.begin();
    require(std::equal(before.names.begin() + differs + 1, before.names.end(), after.names.begin() + differs));
    if (!found)
        require(std::equal(after.names.begin(), after.names.end(), before.names.begin()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // A byte of switches, then record, file and operations with zero bytes between them.
    if (size == 0)
        return 0;
    const std::uint8_t switches = data[0];
    std::string parts[3];
    std::size_t part = 0;
    for (std::size_t i = 1; i < size; ++i) {
        if (data[i] == 0 && part < 2)
            ++part;
        else
            parts[part].push_back(static_cast<char>(data[i]));
    }
    fuzz::codePage = 1250 + switches % 9;
    const CAnsiCodePage &page = CAnsiCodePage::OfSetting();
    fuzz::hasRecord = (switches & 64) != 0;
    fuzz::record = page.ToWide(parts[0]);
    if (switches & 128)
        fuzz::file.hold(parts[1]);
    else
        fuzz::file.remove();

    CZEMTerrainTypeCatalog catalog;
    const bool loaded = catalog.Load();
    require(!loaded || fuzz::file.isThere());
    const List first = listOf(catalog);
    requireSameWhenReadAgain(catalog);
    if (loaded && catalog.IsWellFormed()) {
        CZEMTerrainTypeCatalog second;
        require(second.Load() && listOf(second).names == first.names);
        require(!second.IsWellFormed() || second.GetText() == catalog.GetText()); // the second time adds nothing
    }

    // Operations: a letter, a flow, a name up to the line's end.
    std::size_t steps = 0;
    for (std::size_t at = 0; at < parts[2].size() && steps < 32; ++steps) {
        const std::size_t end = std::min(parts[2].find('\n', at), parts[2].size());
        const std::string line = parts[2].substr(at, end - at);
        at = end + 1;
        if (line.size() < 2)
            continue;
        const std::wstring name = page.ToWide(std::string_view(line).substr(2));
        const double flow = static_cast<unsigned char>(line[1]) / 200.0;
        double found = -1.0;
        switch (line[0] & 3) {
        case 0:
            set(catalog, name, flow);
            break;
        case 1:
            remove(catalog, name);
            break;
        case 2:
            if (catalog.SetFlow(name, flow))
                require(catalog.GetFlow(name, found) && found >= 0.0);
            break;
        default:
            require(catalog.SaveToDrawing() && fuzz::record == catalog.GetText());
            break;
        }
        requireSameWhenReadAgain(catalog);
    }
    return 0;
}
