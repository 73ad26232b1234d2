// One font for pictures that must look alike on every machine.
#pragma once

#include <QFont>

/// Letters of 5 by 7 pixels, six apart, ten from line to line, at 8 pixels; made here, so no installed font matters.
/// Characters outside of ASCII are a box, but for the ellipsis. Needs an application; asked again it is the same font.
QFont PinnedFont();
