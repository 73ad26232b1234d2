// The date and time edits on a box of any platform.
#pragma once

#include "controls/rules/DateTimeBehavior.h"
#include "controls/rules/ValidatingEdit.h"

namespace AMSEdit {

template <class Box>
using TDateEdit = TValidatingEdit<Box, DateBehavior, kRouteChar | kRouteKeyDown | kRouteKillFocus>;
template <class Box>
using TTimeEdit = TValidatingEdit<Box, TimeBehavior, kRouteChar | kRouteKeyDown | kRouteKillFocus>;
template <class Box>
using TDateTimeEdit = TValidatingEdit<Box, DateTimeBehavior, kRouteChar | kRouteKeyDown | kRouteKillFocus>;

} // namespace AMSEdit
