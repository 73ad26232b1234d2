// Pictures that what is painted is compared with.
#pragma once

#include <QImage>

/// Compares with tests/treelist/golden/NAME.png: up to eight pixels may be off by more than a shade, for the rims of
/// curves. With VELMOR_WRITE_PICTURES set the picture is written instead. A picture that is not there is a failure;
/// what was painted then stands in the build folder, under treelist-pictures.
void ExpectPicture(const QImage &painted, const char *name);
