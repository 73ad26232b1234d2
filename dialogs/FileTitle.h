// The title of a file. No widgets, no drawing.
#pragma once

#include <string>

/// File name of a path without folder and extension; both kinds of slashes count, since a drawing may carry a path
/// that another system wrote.
std::wstring FileTitle(const std::wstring &path);
