// Text and selection of an edit as a picture.
#pragma once

#include "controls/rules/EditSurface.h"

/// "12|34" for a caret, "1[23]4" for a selection.
inline std::wstring PictureOf(const AMSEdit::IEditSurface &edit)
{
    std::wstring picture = edit.GetWindowText();
    const auto [start, end] = edit.GetSel();
    if (start == end)
        return picture.insert(static_cast<std::size_t>(start), L"|");
    picture.insert(static_cast<std::size_t>(end), L"]");
    return picture.insert(static_cast<std::size_t>(start), L"[");
}
