// Pictures that what is painted is compared with.
#pragma once

#include <QImage>

/// Compares with tests/treelist/golden/NAME.png. A pixel may be off by two steps of 255 in a colour; eight pixels, the
/// rims of curves, may be off by up to 64. That is less than the closest colours of the rows differ by (four steps,
/// over whole rows). With VELMOR_WRITE_PICTURES set the picture is written instead. A picture that is not there is a
/// failure; what was painted then stands in the build folder, under treelist-pictures.
void ExpectPicture(const QImage &painted, const char *name);
