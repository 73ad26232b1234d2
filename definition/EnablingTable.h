// Which controls the definition dialog enables when: tables that the dialog walks. No widgets.
#pragma once

#include "definition/ControlIds.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

/// A handful of control numbers, fixed at build time.
class CControlSet {
public:
    template <class... Ids>
    constexpr CControlSet(Ids... ids) : m_ids{static_cast<int>(ids)...}, m_nCount(sizeof...(ids))
    {
        static_assert(sizeof...(ids) <= kCapacity);
    }
    constexpr const int *begin() const { return m_ids.data(); }
    constexpr const int *end() const { return m_ids.data() + m_nCount; }
    constexpr bool Contains(int id) const { return std::find(begin(), end(), id) != end(); }

private:
    static constexpr std::size_t kCapacity = 28;
    std::array<int, kCapacity> m_ids{};
    std::size_t m_nCount = 0;
};

namespace EnablingTable {

using namespace ControlId;

/// Enabled when a selection ends, before the method narrows it down.
inline constexpr CControlSet kAfterSelection{
    kGroupMethod,  kComboMethod,     kCheckIslands, kBtnLayers,  kEditLayers,       kGroupDefinition, kCheckLabel,
    kComboLabel,   kBtnLabelBlock,   kBtnPoint,     kBtnEntity,  kBtnCorners,       kListAreas,       kLabelDefined,
    kLabelCurrent, kLabelNumber,     kLabelArea,    kLabelSlope, kLabelCoefficient, kEditNumber,      kEditArea,
    kComboTerrain, kEditCoefficient, kComboType,    kGroupType};

/// What a definition method does to a control; Keep leaves it as it is.
enum class Switch { Off, On, Keep, OffWhileListIsEmpty };

struct MethodRow {
    CControlSet m_controls;
    std::array<Switch, kMethodCount> m_byMethod;
};

inline constexpr auto kMethodTable = [] {
    using enum Switch;
    return std::to_array<MethodRow>({
        {{kBtnSave}, {OffWhileListIsEmpty, OffWhileListIsEmpty, Off, On}},
        {{kBtnAuto}, {Off, Off, On, Off}},
        {{kBtnPoint, kBtnEntity, kBtnCorners}, {On, On, Off, Off}},
        {{kLabelNumber, kEditNumber}, {On, On, On, Off}},
        {{kEditArea}, {Off, Off, Off, On}},
        {{kLabelArea}, {Keep, Keep, Keep, On}},
        {{kEditDensity, kLabelDensity}, {Off, Off, Off, On}},
        {{kCheckIslands}, {On, On, On, Off}},
        {{kCheckLabel, kComboLabel, kBtnLabelBlock}, {On, On, On, Off}},
        {{kBtnLayers, kEditLayers}, {On, On, On, Off}},
        {{kLabelName, kEditName}, {On, On, Off, Off}},
        {{kLabelSlope, kComboTerrain}, {Keep, Keep, Keep, On}},
        {{kEditCoefficient, kLabelCoefficient}, {Keep, Keep, Keep, On}},
    });
}();

/// One step of what an area type does to the controls.
enum class TypeAction {
    Enable,
    Disable,
    EnableIfTypedArea,   ///< enabled in the method of a typed area, else left as it is
    MatchTypedArea,      ///< enabled in the method of a typed area, else disabled
    UseCoefficientSource ///< runs the coefficient source's own enabling
};

struct TypeStep {
    TypeAction m_action;
    CControlSet m_controls;
};

/// Everything around the coefficient's two sources, the radios included.
inline constexpr CControlSet kCoefficientSources{kRadioTerrain,    kRadioAtv,       kComboTerrain, kBtnTerrain,
                                                 kLabelSlopeClass, kLabelIntensity, kLabelRunoff,  kComboSlopeClass,
                                                 kEditIntensity,   kComboRunoff};

inline constexpr auto kCatchmentSteps = std::to_array<TypeStep>({
    {TypeAction::Enable, {kRadioTerrain, kRadioAtv}},
    {TypeAction::UseCoefficientSource, {}},
    {TypeAction::Disable, {kLabelDensity, kEditDensity}},
    {TypeAction::Enable, {kEditCoefficient}},
    {TypeAction::MatchTypedArea, {kEditArea}},
    {TypeAction::Enable, {kLabelArea, kLabelCoefficient}},
});

inline constexpr auto kHouseSteps = std::to_array<TypeStep>({
    {TypeAction::Disable, kCoefficientSources},
    {TypeAction::Enable, {kEditCoefficient}},
    {TypeAction::Disable, {kEditSlope}},
    {TypeAction::Enable, {kLabelCoefficient, kLabelDensity, kEditDensity}},
    {TypeAction::EnableIfTypedArea, {kLabelArea, kEditArea}},
    {TypeAction::Disable, {kLabelCoefficient, kEditCoefficient}},
});

inline constexpr auto kIndustrialSteps = std::to_array<TypeStep>({
    {TypeAction::Disable, kCoefficientSources},
    {TypeAction::Disable, {kLabelCoefficient, kEditCoefficient}},
    {TypeAction::EnableIfTypedArea, {kLabelArea, kEditArea}},
    {TypeAction::Disable, {kLabelDensity, kEditDensity}},
});

/// Steps of each type in the order in which they run, so that a later type overrules an earlier one.
inline constexpr std::array<std::span<const TypeStep>, 3> kTypeTable{kCatchmentSteps, kHouseSteps, kIndustrialSteps};

/// What a coefficient source enables and disables, by enmCoeffSource.
struct SourceRow {
    CControlSet m_on;
    CControlSet m_off;
};

inline constexpr CControlSet kTerrainSource{kComboTerrain, kBtnTerrain};
inline constexpr CControlSet kTableSource{kLabelSlopeClass, kLabelIntensity, kLabelRunoff,
                                          kComboSlopeClass, kEditIntensity,  kComboRunoff};
inline constexpr std::array<SourceRow, 2> kSourceTable{
    {{kTerrainSource, kTableSource}, {kTableSource, kTerrainSource}}};

/// Set to the state of the catchment check when it is clicked.
inline constexpr CControlSet kWithCatchmentCheck{kRadioTerrain, kRadioAtv, kEditCoefficient, kLabelCoefficient};
/// Off when the catchment check is clicked off.
inline constexpr CControlSet kWithoutCatchmentCheck{kComboTerrain, kBtnTerrain,      kLabelSlopeClass, kLabelIntensity,
                                                    kLabelRunoff,  kComboSlopeClass, kEditIntensity,   kComboRunoff};
/// Set to the state of the house check when it is clicked.
inline constexpr CControlSet kWithHouseCheck{kLabelDensity, kEditDensity};
/// Enabled exactly in the method of a typed area, when a catchment or house check is clicked on.
inline constexpr CControlSet kTypedArea{kLabelArea, kEditArea};

} // namespace EnablingTable
