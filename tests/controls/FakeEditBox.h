// A box of a string and two positions, with the platform's part of a single-line edit. Keeps count of what it was
// asked.
#pragma once

#include "controls/rules/EditBox.h"

#include "tests/controls/Picture.h"

#include <string>
#include <vector>

class FakeEditBox : public AMSEdit::CEditBox {
public:
    // What a test sets.
    bool exists = true;
    AMSEdit::ColorRef desktopText = 0x000000;
    AMSEdit::ColorRef desktopBackground = 0xFFFFFF;
    void SetReadOnly(bool readOnly) { m_readOnly = readOnly; }
    void SetEnabled(bool enabled) { m_enabled = enabled; }
    /// Longer text is cut, as a platform would.
    void SetMaxLength(int length) { m_maxLength = static_cast<std::size_t>(length); }
    void SetClipboard(const std::wstring &text) { m_clipboard = text; }

    // What a test reads.
    const std::wstring &Clipboard() const { return m_clipboard; }
    int beeps = 0;
    int sets = 0;     ///< texts set as a whole
    int repaints = 0; ///< for a changed colour
    int scrolls = 0;  ///< selections with the caret scrolled into view
    int focusTakes = 0;
    std::vector<std::wstring> messages;
    std::vector<std::wstring> journal; ///< beep, message, focus, set:TEXT, copy in their order
    std::vector<AMSEdit::EditMessage> defaults;

    // What a user does.
    void Type(wchar_t character) { OnChar(character, 1, 0); }
    void PressKey(unsigned key) { OnKeyDown(key, 1, 0); }
    void PressCut() { OnCut(); }
    void PressPaste() { OnPaste(0, 0); }
    void PressClear() { OnClear(); }
    void PressUndo() { OnUndo(); }
    void PressRedo() { OnRedo(); }

    void PlaceCaret(int position) { SetSel(position, position, true); }
    /// Text and selection as a picture: "12|34" for a caret, "1[23]4" for a selection.
    std::wstring Picture() const { return PictureOf(*this); }

    std::wstring GetWindowText() const override { return m_text; }
    AMSEdit::Selection GetSel() const override { return m_selection; }
    void SetSel(int start, int end, bool noScroll = false) override;
    unsigned GetStyle() const override { return m_readOnly ? AMSEdit::kStyleReadOnly : 0; }
    bool IsWindowEnabled() const override { return m_enabled; }
    bool IsWindow() const override { return exists; }
    void SetFocus() override;
    void Default(const AMSEdit::EditMessage &message) override;
    void MessageBeep(unsigned sound) override;
    void AfxMessageBox(const std::wstring &text, unsigned icon) override;

protected:
    void PlatformSetText(const std::wstring &text) override;
    void PlatformReplaceSel(const std::wstring &text) override;
    void PlatformCopy() override;
    AMSEdit::ColorRef ContextBackgroundColor() const override { return desktopBackground; }
    AMSEdit::ColorRef ContextTextColor() const override { return desktopText; }
    void PlatformRepaint() override { ++repaints; }

private:
    int Length() const { return static_cast<int>(m_text.size()); }
    void DefaultKey(unsigned key);

    std::wstring m_text;
    AMSEdit::Selection m_selection;
    std::wstring m_clipboard;
    std::size_t m_maxLength = std::wstring::npos;
    bool m_readOnly = false;
    bool m_enabled = true;
};
