// Labels of catchment areas: block references on the label layer whose attributes tell the area's values.
//
// A label stands at the area's centre point. Its area is the net one (less the islands, which have labels of their
// own), so a main area's label is to be written again when an island was added.
//
// Heights count in millimetres on a plan: the setting LABEL_SCALE, the n of the 1:n at which the drawing is plotted,
// makes units of the drawing of them, which is in metres. A label that stands keeps its size.
#pragma once

#include "host/network/Catalog.h"
#include "host/sewage/CatchmentStore.h"

#include <optional>
#include <string>
#include <string_view>

namespace velmor {

/// What a label can say.
enum class LabelValue { Name, Area, Gross, Coefficient, Density, Slope };

/// What an attribute tag asks for: NAME, AREA, COEFF, DENSITY, SLOPE, their Croatian words (IME, POVRSINA, KOEF,
/// GUSTOCA, PAD) and ATT1 to ATT4 (name, area, coefficient, density), in letters of either case. Nothing for any other.
std::optional<LabelValue> meaningOfTag(std::wstring_view tag);

/// The value as a label shows it: areas in hectares with four decimals, the others with two. Empty for a value that
/// the area's type does not have: a coefficient or a slope without the catchment bit, a density without the house bit.
std::wstring labelText(CatchmentStore &store, const StoredArea &area, LabelValue value);

/// Writes the label from a block definition, replacing the one before. A list of four that isn't just the block's own
/// tags was chosen: each tag gets the value of its place (name, area, coefficient, density). In any other list each tag
/// gets its value by its meaning; when none of them has one, by its place too. All other attributes of the block keep
/// their default text. False, and nothing is done, when the id names no block or all tags are empty.
bool writeLabel(CatchmentStore &store, const StoredArea &area, const AcDbObjectId &block, const CStringArray &tags);
/// Writes the label from a type of the catalogue: one attribute for each of its lines. A line with a value that the
/// area does not have stays empty.
bool writeLabel(CatchmentStore &store, const StoredArea &area, const LabelType &type);

} // namespace velmor
