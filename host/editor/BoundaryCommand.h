// The host command that draws the region around a point, prompt by prompt:
//
//   internal point     a point searches its region; Advanced goes to the options; Enter draws what was found and ends
//   advanced options   Boundary set, Island detection, Object type; Enter goes back to the point
//   boundary set       New (then a selection, ended by Enter) or Everything; Enter keeps it as it is
//   island detection   Yes or No; after No one more question about the ray's direction, which is not used here
//   object type        Polyline or Region; a region is a body of a solid modeller, which drawings of this host don't
//                      hold, so none is made and one line at the end says so
//
// The options' own words are understood at the prompt for the point too. At the start the set is everything visible,
// islands are searched and polylines are made.
#pragma once

#include "host/boundary/Regions.h"
#include "host/editor/Command.h"
#include "host/editor/LineworkCache.h"

#include <vector>

namespace velmor {

class BoundaryCommand final : public Command {
public:
    enum class Form {
        Prompts, ///< all prompts
        OnePoint ///< one point with its islands, and done
    };
    explicit BoundaryCommand(Form form) : m_form(form) {}

    Next start(Session &session) override;
    Prompt prompt() const override;
    Next take(Session &session, const Answer &answer) override;

private:
    enum class State { Point, Advanced, BoundarySet, Selecting, Islands, RayCasting, ObjectType };

    Next takePoint(Session &session, const Answer &answer);
    Next takeOption(const Answer &answer);
    Next takeSelection(Session &session, const Answer &answer);
    Next search(Session &session, const AcGePoint3d &point);
    Next finish(Session &session);
    boundary::Linework &linework(Session &session);

    Form m_form;
    State m_state = State::Point;
    bool m_islands = true;
    bool m_regions = false;
    bool m_everything = true;     ///< no boundary set of its own
    std::int64_t m_setId = 0;     ///< the set that was picked, when it is a single one
    AcDbObjectIdArray m_selected; ///< what was picked otherwise
    std::vector<boundary::Region> m_found;
};

/// One line that says why a search found nothing.
std::wstring describe(const boundary::Region &region);

/// Loose ends nearer than this are joined in searches: the host variable HPGAPTOL, drawing units.
double gapTolerance(const Session &session);

} // namespace velmor
