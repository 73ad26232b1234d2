// The messages that the extended list and its popup know by name. No Qt.
#pragma once

#include <string_view>

inline constexpr std::wstring_view kComboReturn = L"WM_XCOMBOLIST_VK_RETURN";
inline constexpr std::wstring_view kComboEscape = L"WM_XCOMBOLIST_VK_ESCAPE";
inline constexpr std::wstring_view kComboKeyDown = L"WM_XCOMBOLIST_KEYDOWN";
inline constexpr std::wstring_view kComboButtonUp = L"WM_XCOMBOLIST_LBUTTONUP";
inline constexpr std::wstring_view kListDataChanged = L"WM_XLISTCTRL_QUILLON_DATACHANGED";

/// The number registered for a name: the same at each call, and beyond those that programs choose for themselves.
/// 0 for an unknown name.
constexpr unsigned RegisteredMessage(std::wstring_view name)
{
    constexpr std::wstring_view kNames[] = {kComboReturn, kComboEscape, kComboKeyDown, kComboButtonUp,
                                            kListDataChanged};
    unsigned number = 0xC000; // the first that the platform registers
    for (const std::wstring_view known : kNames) {
        if (known == name)
            return number;
        ++number;
    }
    return 0;
}
