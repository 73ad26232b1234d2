#include "host/sewage/AreaLabels.h"

#include "host/drawing/Blocks.h"
#include "host/services/Services.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cwctype>

namespace velmor {
namespace {

/// Blocks for labels are drawn for this scale on a plan at 1:1000.
constexpr double kBlockScale = 3.0;
/// At this plot scale a metre of the drawing is a millimetre on paper.
constexpr double kUnitPlotScale = 1000.0;
constexpr int kLabelColour = 7;
/// Distance of lines over the height of their text.
constexpr double kLineSpacing = 1.6;
constexpr int kCentred = 1, kMiddle = 2;
/// Names in the oldest drawings go up to 31 characters.
constexpr std::size_t kLongestBlockName = 28;

constexpr std::array kPlaces{LabelValue::Name, LabelValue::Area, LabelValue::Coefficient, LabelValue::Density};

struct Word {
    std::wstring_view word;
    LabelValue value;
};

constexpr auto kTagWords = std::to_array<Word>({
    {L"NAME", LabelValue::Name},        {L"IME", LabelValue::Name},         {L"NAZIV", LabelValue::Name},
    {L"ATT1", LabelValue::Name},        {L"AREA", LabelValue::Area},        {L"POVRSINA", LabelValue::Area},
    {L"POVRŠINA", LabelValue::Area},    {L"ATT2", LabelValue::Area},        {L"COEFF", LabelValue::Coefficient},
    {L"COEF", LabelValue::Coefficient}, {L"KOEF", LabelValue::Coefficient}, {L"KOEFICIJENT", LabelValue::Coefficient},
    {L"ATT3", LabelValue::Coefficient}, {L"DENSITY", LabelValue::Density},  {L"POPULATION", LabelValue::Density},
    {L"GUSTOCA", LabelValue::Density},  {L"GUSTOĆA", LabelValue::Density},  {L"ATT4", LabelValue::Density},
    {L"SLOPE", LabelValue::Slope},      {L"PAD", LabelValue::Slope},
});

constexpr auto kPlaceholders = std::to_array<Word>({
    {L"name", LabelValue::Name},
    {L"area", LabelValue::Area},
    {L"net", LabelValue::Area},
    {L"gross", LabelValue::Gross},
    {L"coeff", LabelValue::Coefficient},
    {L"density", LabelValue::Density},
    {L"slope", LabelValue::Slope},
});

std::wstring upper(std::wstring_view text)
{
    std::wstring folded(text);
    for (wchar_t &c : folded) {
        // The two letters of the table stand here because towupper hangs on the locale.
        if (c == L'š')
            c = L'Š';
        else if (c == L'ć')
            c = L'Ć';
        else
            c = static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(c)));
    }
    return folded;
}

std::wstring fixed(double value, int decimals)
{
    // A label reads the same in every country, so not by printf.
    std::array<char, 400> buffer{};
    const auto written =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, decimals);
    return {buffer.data(), written.ptr};
}

/// Those that a reference has an attribute for, in the order of its attributes; constant ones have none.
std::vector<const AttributeDefinitionEntity *> definitionsOf(const BlockRecord &block)
{
    std::vector<const AttributeDefinitionEntity *> definitions;
    for (const AcDbEntity *entity : block.entities()) {
        if (entity->isErased() || entity->isA() != AttributeDefinitionEntity::desc())
            continue;
        const auto *definition = static_cast<const AttributeDefinitionEntity *>(entity);
        if (!definition->isConstant())
            definitions.push_back(definition);
    }
    return definitions;
}

/// From millimetres on paper to units of the drawing, at the plot scale of the settings.
double unitsPerMillimetre()
{
    return std::get<int>(Services::instance().settings().valueOrStandard("LABEL_SCALE")) / kUnitPlotScale;
}

/// Whether a person chose the tags of the four values: a list that is just the block's own tags comes from nobody.
bool isChoice(const CStringArray &tags, const std::vector<const AttributeDefinitionEntity *> &definitions)
{
    if (tags.size() != kPlaces.size())
        return false;
    for (std::size_t i = 0; i < tags.size(); ++i) {
        const std::wstring own = i < definitions.size() ? definitions[i]->tag() : std::wstring();
        if (upper(tags[i]) != upper(own))
            return true;
    }
    return false;
}

/// Places a reference at the area's centre with these texts, one for each attribute definition, in place of the old.
void place(CatchmentStore &store, const StoredArea &area, BlockRecord &block, double scale,
           const std::vector<std::wstring> &texts)
{
    Drawing &drawing = store.drawing();
    store.eraseLabels(area);

    AcDbBlockReference::Placement placement;
    placement.position = area.GetCenterPoint();
    placement.scaleX = placement.scaleY = placement.scaleZ = scale;
    const std::size_t layer = drawing.ensureLayer(kLabelLayer, kLabelColour);
    const AcDbObjectId id = appendReference(drawing, block, placement, layer, drawing.modelSpace());
    auto &reference = static_cast<AcDbBlockReference &>(*store.objectOf(id));
    std::size_t next = 0;
    for (AttributeEntity *attribute : attributesOf(reference))
        drawing.setAttributeText(*attribute, texts[next++]);
    store.addLabel(area, reference);
}

// --- Blocks of the catalogue's types ------------------------------------------------------------------------

struct Line {
    std::wstring tag;
    double y = 0.0;
};

/// A tag for each line: what the line tells when it tells one thing only, else its number.
std::vector<Line> linesOf(const LabelType &type)
{
    static constexpr std::array<std::wstring_view, 6> names{L"NAME", L"AREA", L"GROSS", L"COEFF", L"DENSITY", L"SLOPE"};
    std::vector<Line> lines;
    const double step = type.textHeight * kLineSpacing;
    const double top = step * (static_cast<double>(type.lines.size()) - 1.0) / 2.0;
    for (std::size_t i = 0; i < type.lines.size(); ++i) {
        std::wstring tag;
        int told = 0;
        for (const Word &placeholder : kPlaceholders) {
            const std::wstring braced = L'{' + std::wstring(placeholder.word) + L'}';
            if (type.lines[i].find(braced) == std::wstring::npos)
                continue;
            ++told;
            tag = names[static_cast<std::size_t>(placeholder.value)];
        }
        const bool taken = std::any_of(lines.begin(), lines.end(), [&](const Line &l) { return l.tag == tag; });
        if (told != 1 || taken)
            tag = L"LINE" + std::to_wstring(i + 1);
        lines.push_back({tag, top - step * static_cast<double>(i)});
    }
    return lines;
}

bool holds(const BlockRecord &block, const LabelType &type, const std::vector<Line> &lines)
{
    const auto definitions = definitionsOf(block);
    return std::equal(definitions.begin(), definitions.end(), lines.begin(), lines.end(),
                      [&](const AttributeDefinitionEntity *definition, const Line &line) {
                          return definition->tag() == line.tag && definition->shape().position.y == line.y &&
                                 definition->shape().height == type.textHeight;
                      });
}

/// The definition for a type of the catalogue, made at first use. A type that was changed since gets a new one, so that
/// the labels that stand keep theirs.
BlockRecord &blockOf(Drawing &drawing, const LabelType &type)
{
    std::wstring name = L"VELMOR_";
    for (const wchar_t c : upper(type.name))
        name.push_back((c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') ? c : L'_');
    name.resize(std::min(name.size(), kLongestBlockName));

    const std::vector<Line> lines = linesOf(type);
    std::wstring free = name;
    for (int number = 2; const BlockRecord *taken = drawing.findBlock(free); ++number) {
        if (holds(*taken, type, lines))
            return *drawing.findBlock(free);
        free = name + std::to_wstring(number);
    }
    BlockRecord &block = drawing.addBlock(free);
    for (const Line &line : lines) {
        TextShape shape;
        shape.position = {0.0, line.y, 0.0};
        shape.height = type.textHeight;
        shape.horizontal = kCentred;
        shape.vertical = kMiddle;
        auto made = std::make_unique<AttributeDefinitionEntity>(line.tag, line.tag, std::move(shape));
        AttributeDefinitionEntity &definition = *made;
        drawing.append(std::move(made), block);
        drawing.setLayerOf(definition, 0);
        drawing.setColorOf(definition, type.color);
    }
    return block;
}

/// The line with its placeholders filled in; empty when a value is missing.
std::wstring filled(CatchmentStore &store, const StoredArea &area, std::wstring line)
{
    for (const Word &placeholder : kPlaceholders) {
        const std::wstring braced = L'{' + std::wstring(placeholder.word) + L'}';
        std::size_t at = line.find(braced);
        if (at == std::wstring::npos)
            continue;
        const std::wstring value = labelText(store, area, placeholder.value);
        if (value.empty() && placeholder.value != LabelValue::Name)
            return {};
        while (at != std::wstring::npos) {
            line.replace(at, braced.size(), value);
            at = line.find(braced, at + value.size());
        }
    }
    return line;
}

} // namespace

std::optional<LabelValue> meaningOfTag(std::wstring_view tag)
{
    const std::wstring folded = upper(tag);
    for (const Word &known : kTagWords)
        if (known.word == folded)
            return known.value;
    return std::nullopt;
}

std::wstring labelText(CatchmentStore &store, const StoredArea &area, LabelValue value)
{
    const unsigned type = static_cast<unsigned>(area.GetType());
    const bool catchment = (type & ZEMGis::Sewage::kTypeCatchment) != 0;
    const bool house = (type & ZEMGis::Sewage::kTypeHouse) != 0;
    switch (value) {
    case LabelValue::Name:
        return area.GetName();
    case LabelValue::Area:
        return fixed(store.netHectares(area), 4);
    case LabelValue::Gross:
        return fixed(area.GetArea(), 4);
    case LabelValue::Coefficient:
        return catchment ? fixed(area.GetFlowCoeff(), 2) : std::wstring();
    case LabelValue::Density:
        return house ? fixed(area.GetPopulation(), 2) : std::wstring();
    case LabelValue::Slope:
        return catchment ? fixed(area.record().number(L"CA_SLOPE"), 2) : std::wstring();
    }
    return {};
}

bool writeLabel(CatchmentStore &store, const StoredArea &area, const AcDbObjectId &block, const CStringArray &tags)
{
    AcDbObject *object = store.objectOf(block);
    if (!object || std::all_of(tags.begin(), tags.end(), [](const auto &t) { return t.empty(); }))
        return false;
    auto *definition = dynamic_cast<BlockRecord *>(object);
    if (!definition || definition->isLayout())
        return false;

    const std::vector<const AttributeDefinitionEntity *> definitions = definitionsOf(*definition);
    const bool byMeaning = !isChoice(tags, definitions) &&
                           std::any_of(tags.begin(), tags.end(), [](const auto &t) { return meaningOfTag(t); });
    std::vector<std::wstring> texts;
    for (const AttributeDefinitionEntity *attribute : definitions) {
        std::wstring text = attribute->shape().text;
        const auto asked = std::find_if(tags.begin(), tags.end(),
                                        [tag = upper(attribute->tag())](const auto &t) { return upper(t) == tag; });
        if (asked != tags.end()) {
            const auto at = static_cast<std::size_t>(asked - tags.begin());
            if (!byMeaning && at < kPlaces.size())
                text = labelText(store, area, kPlaces[at]);
            else if (const auto meaning = meaningOfTag(*asked))
                text = labelText(store, area, *meaning);
        }
        texts.push_back(std::move(text));
    }
    place(store, area, *definition, kBlockScale * unitsPerMillimetre(), texts);
    return true;
}

bool writeLabel(CatchmentStore &store, const StoredArea &area, const LabelType &type)
{
    if (type.lines.empty())
        return false;
    std::vector<std::wstring> texts;
    for (const std::wstring &line : type.lines)
        texts.push_back(filled(store, area, line));
    place(store, area, blockOf(store.drawing(), type), unitsPerMillimetre(), texts);
    return true;
}

} // namespace velmor
