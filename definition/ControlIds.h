// Numbers of the definition dialog's controls, and the item data of its combos.
#pragma once

namespace ControlId {
enum : int {
    kBtnClose = 2,
    kBtnHide = 3,
    kBtnHelp = 9,
    kBtnInfoSections = 100,
    kBtnInfoAreas = 101,
    kCheckCatchment = 106,
    kCheckHouse = 107,
    kCheckIndustrial = 108,
    kComboLabel = 135,
    kBtnSelect = 203,
    kBtnPrevious = 204,
    kBtnNext = 205,
    kBtnLayers = 207,
    kBtnPoint = 208,
    kBtnEntity = 209,
    kListAreas = 210,
    kEditArea = 213,
    kEditCoefficient = 215,
    kEditSlope = 216,
    kBtnZoom = 217,
    kEditZoom = 218,
    kBtnSettings = 219,
    kEditDensity = 220,
    kBtnSave = 221,
    kEditIntensity = 222,
    kBtnCorners = 239,
    kLabelSlope = 244,
    kBtnTerrain = 246,
    kComboType = 256,
    kComboMethod = 257,
    kGroupDefinition = 259,
    kTextSection = 266,
    kCheckIslands = 268,
    kCheckLabel = 274,
    kTextStatus = 281,
    kBtnLabelBlock = 286,
    kGroupMethod = 289,
    kBtnAuto = 290,
    kCheckZoom = 296,
    kLabelArea = 301,
    kComboTerrain = 322,
    kLabelNumber = 323,
    kLabelCoefficient = 324,
    kLabelSlopeClass = 325,
    kEditNumber = 326,
    kLabelDensity = 327,
    kLabelName = 328,
    kEditName = 329,
    kSwatchDefined = 332,
    kSwatchCurrent = 333,
    kLabelDefined = 334,
    kLabelCurrent = 335,
    kGroupType = 336,
    kRadioTerrain = 343,
    kRadioAtv = 344,
    kComboSlopeClass = 345,
    kLabelSection = 346,
    kComboRunoff = 347,
    kLabelRunoff = 348,
    kLabelIntensity = 349,
    kEditLayers = 363,
};
} // namespace ControlId

/// How areas are defined; the item data of the method combo.
enum enmDefinitionMethod {
    kMethodCurrentSection = 0, ///< one section at a time
    kMethodAllSections = 1,    ///< one area serves all selected sections
    kMethodAutomatic = 2,      ///< boundaries are traced from the sections by themselves
    kMethodTypedArea = 3,      ///< no polygon, the area is typed
};
inline constexpr int kMethodCount = 4;

/// Where the run-off coefficient comes from.
enum enmCoeffSource { kCoeffFromTerrain = 0, kCoeffFromTable = 1 };
