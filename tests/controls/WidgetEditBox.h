// The real widget under the same names as the fake box: what a user does comes as events of the toolkit.
#pragma once

#include "controls/AMSEdit.h"

#include "tests/controls/Picture.h"

#include <string>
#include <vector>

/// Brings up the application for the test program, once.
struct ToolkitForTests {
    ToolkitForTests();
};

class WidgetEditBox : private ToolkitForTests, public AMSEdit::CAMSEdit {
public:
    // What a test sets.
    void SetReadOnly(bool readOnly) { setReadOnly(readOnly); }
    void SetEnabled(bool enabled) { setEnabled(enabled); }
    void SetMaxLength(int length) { setMaxLength(length); }
    void SetClipboard(const std::wstring &text);

    // What a test reads.
    std::wstring Clipboard() const;
    int beeps = 0;
    int sets = 0;
    int focusTakes = 0;
    std::vector<std::wstring> messages;
    std::vector<std::wstring> journal;
    std::vector<AMSEdit::EditMessage> defaults;

    // What a user does.
    void Type(wchar_t character);
    void PressKey(unsigned key);
    void PressCut();
    void PressPaste();
    void PressClear();
    void PressUndo();
    void PressRedo();

    std::wstring Picture() const { return PictureOf(*this); }

    void SetFocus() override;
    void Default(const AMSEdit::EditMessage &message) override;
    void MessageBeep(unsigned sound) override;
    void AfxMessageBox(const std::wstring &text, unsigned icon) override;

protected:
    void PlatformSetText(const std::wstring &text) override;
    void PlatformCopy() override;

private:
    void Press(const QKeySequence &keys);
};
