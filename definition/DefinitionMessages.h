// Numbers of the texts that the definition dialog takes from the message file.
#pragma once

#include "dialogs/DialogTexts.h"

namespace MessageId {
enum : unsigned {
    kNextCorner = 125,
    kFirstCorner = 215,
    kIdle = 658,
    kSectionTitle = 1221,
    kNameTaken = 1620,
    kTypeCatchment = 1936,
    kDialogTitle = 1978,
    kAreaWord = 1989,
    kSectionCount = 1993,
    kListColumn = 1994,
    kTypeHouse = 1995,
    kTypeIndustrial = 1996,
    kMethodFirst = 1997, ///< the four methods follow one another
    kPointPrompt = 2001,
    kNoBoundary = 2002,
    kMainRow = 2003,
    kIslandRow = 2004,
    kCentreTaken = 2005,
    kEntityPrompt = 2006,
    kAutoCount = 2007,
    kParameterEmpty = 2155,
    kCurrentSection = 2226,
    kInfoWord = 2666,
    kSaved = 3498,
    kLayerStatus = 3996,
    kAreasTitle = 5795,
    kWaitForKey = 50200,
    kAutoStopped = 60040,
    kAutoSearching = 60041,
    kAutoSaving = 60042,
    // The module's own texts
    kSelectSections = 60001,
    kZoomToSection = 60002,
    kSettings = 60003,
    kZoomFactor = 60005,
    kExampleTable = 60006,
    kStatus = 60007,
};
} // namespace MessageId
