// Block definitions out of other drawing files.
#include "host/drawing/BlockSource.h"

#include "host/drawing/BlockFile.h"
#include "host/drawing/Blocks.h"
#include "host/drawing/DrawingData.h"
#include "host/drawing/Findings.h"
#include "host/drawing/Journal.h"
#include "host/drawing/Texts.h"
#include "host/drawing/Utf8.h"

#include <algorithm>
#include <iterator>

namespace fs = std::filesystem;

using velmor::BlockRecord;
using velmor::Drawing;
using velmor::journal;
using velmor::workingDrawing;

namespace {

/// Where the drawing remembers which file a block definition came from.
constexpr char kSources[] = "VELMOR_BLOCK_SOURCES";

/// A name that a block may have in any drawing file.
std::wstring blockNameOf(const std::wstring &name, const fs::path &path)
{
    std::wstring wanted = !name.empty() ? name : velmor::fromUtf8(path.stem().string());
    for (wchar_t &c : wanted)
        if (!velmor::isNameCharacter(c))
            c = L'_';
    return wanted;
}

/// Tells one content from another; 64 bits of FNV-1a.
std::wstring fingerprintOf(std::string_view bytes)
{
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char c : bytes)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    wchar_t digits[17];
    AcDbHandle(hash).getIntoAsciiBuffer(digits);
    return digits;
}

/// What is remembered about a definition: the content it came from, and the definitions that came with it.
struct SourceRecord {
    std::wstring fingerprint;
    std::set<std::wstring> nested;
};

std::optional<SourceRecord> recordOf(const Drawing &drawing, const std::string &key)
{
    const auto items = drawing.dictionaryEntry(kSources, key);
    if (!items)
        return std::nullopt;
    SourceRecord record;
    for (const velmor::DataItem &item : *items)
        if (const auto *text = std::get_if<std::wstring>(&item.value)) {
            if (record.fingerprint.empty())
                record.fingerprint = *text;
            else
                record.nested.insert(*text);
        }
    return record;
}

void remember(Drawing &drawing, const std::string &key, const SourceRecord &record)
{
    velmor::DataItems items{{1, record.fingerprint}};
    for (const std::wstring &name : record.nested)
        items.push_back({1, name});
    drawing.setDictionaryEntry(kSources, key, items);
}

/// What of a block file is not in the definition: what could not be read, and what could not be copied.
void tellWhatIsMissing(const std::string &file, const velmor::LoadReport &report, const velmor::BlockImport &imported)
{
    std::vector<velmor::Finding> damages;
    std::ranges::copy_if(report.findings, std::back_inserter(damages),
                         [](const velmor::Finding &finding) { return finding.severity != velmor::Severity::Note; });
    for (const std::string &line : velmor::findingLines(file, damages))
        velmor::notice(line);
    if (imported.leftOut.empty())
        return;
    std::string kinds;
    for (const auto &[kind, count] : imported.leftOut)
        kinds += (kinds.empty() ? "" : ", ") + std::to_string(count) + " " + kind;
    velmor::notice(file + ": " + velmor::drawingText("block.without", {kinds}));
}

/// Where the drawing remembers the source of the block of that name.
std::string sourceKey(const std::wstring &blockName)
{
    return velmor::toUtf8(velmor::foldedName(blockName));
}

} // namespace

namespace velmor {

BlockRecord *ownBlockInPlaceOf(const Drawing &drawing, const std::wstring &name, const fs::path &file)
{
    const std::wstring blockName = blockNameOf(name, file);
    BlockRecord *known = drawing.findBlock(blockName);
    return known && !known->isLayout() && !recordOf(drawing, sourceKey(blockName)) ? known : nullptr;
}

} // namespace velmor

AcDbObjectId CZEMCDraw::insertBlockDefinition(const wchar_t *name, const wchar_t *path)
{
    journal("CZEMCDraw::insertBlockDefinition", name, path);
    Drawing *drawing = workingDrawing();
    if (!drawing || !path || !*path)
        return {};
    auto file = velmor::readBlockFile(velmor::toUtf8(path));
    if (!file)
        return {};
    const std::wstring blockName = blockNameOf(name ? name : L"", file->path);
    const std::wstring fingerprint = fingerprintOf(file->bytes);
    const std::string key = sourceKey(blockName);
    BlockRecord *known = drawing->findBlock(blockName);
    const auto record = recordOf(*drawing, key);
    if (known && known->isLayout())
        return {};
    if (known && record && record->fingerprint == fingerprint)
        return idOf(*known);
    const auto source = Drawing::read(std::move(file->bytes));
    if (!source.drawing) {
        velmor::notice(file->path.string() + ": " + source.message);
        return {};
    }
    // A definition that came with the drawing is the user's own. The file is not remembered as its content, which it
    // is not: once the definition is out of the way, the file comes in.
    if (known && !record)
        return idOf(*known);
    const auto imported =
        importBlockInto(*drawing, blockName, *source.drawing, record ? record->nested : std::set<std::wstring>());
    remember(*drawing, key, {fingerprint, imported.nested});
    tellWhatIsMissing(file->path.string(), source.report, imported);
    return idOf(*imported.block);
}
