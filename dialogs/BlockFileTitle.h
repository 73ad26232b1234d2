// Titles of block files.
#pragma once

#include <string>

/// The name of a drawing file without folder and extension, asked of the opened file: empty when it can't be opened.
/// A ".dwg" that is not there is opened as the ".dxf" of its name beside it, as the host reads it.
std::wstring TitleOfBlockFile(const std::wstring &path);
