// A box of a string and two positions, with the platform's part of a single-line edit. Keeps count of what it was
// asked.
#pragma once

#include "controls/rules/EditBox.h"

#include <string>
#include <vector>

class FakeEditBox : public AMSEdit::CEditBox {
public:
    // What a test sets and reads.
    std::wstring clipboard;
    bool readOnly = false;
    bool enabled = true;
    bool exists = true;
    std::size_t maxLength = std::wstring::npos; ///< longer text is cut, as a platform would
    AMSEdit::ColorRef desktopText = 0x000000;
    AMSEdit::ColorRef desktopBackground = 0xFFFFFF;
    int beeps = 0;
    int sets = 0;     ///< texts set as a whole
    int repaints = 0; ///< for a changed colour
    int scrolls = 0;  ///< selections with the caret scrolled into view
    int focusTakes = 0;
    std::vector<std::wstring> messages;
    std::vector<std::wstring> journal; ///< beep, message, focus, set:TEXT, copy in their order
    std::vector<AMSEdit::EditMessage> defaults;

    void PlaceCaret(int position) { SetSel(position, position, true); }
    /// Text and selection as a picture: "12|34" for a caret, "1[23]4" for a selection.
    std::wstring Picture() const;

    std::wstring GetWindowText() const override { return m_text; }
    AMSEdit::Selection GetSel() const override { return m_selection; }
    void SetSel(int start, int end, bool noScroll = false) override;
    unsigned GetStyle() const override { return readOnly ? AMSEdit::kStyleReadOnly : 0; }
    bool IsWindowEnabled() const override { return enabled; }
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
};
