// Numeric edits on the real widget, to be reached by every route, and what listeners hear of them.
#pragma once

#include "controls/rules/ValidatingEdit.h"

#include "tests/controls/WidgetEditBox.h"

#include <QObject>
#include <QString>

#include <vector>

namespace routed {

inline const AMSEdit::CNoRegionalSettings kNoSettings;

class NumericEdit : public AMSEdit::TNumericEdit<WidgetEditBox> {
public:
    explicit NumericEdit(int whole = 9, int places = 4) : TValidatingEdit(whole, places, kNoSettings) {}
};

inline void place(AMSEdit::CAMSEdit &edit, const wchar_t *text, int start, int end)
{
    edit.SetWindowText(text);
    edit.SetSel(start, end);
}

/// The texts that a listener hears of.
struct Heard {
    explicit Heard(QLineEdit &edit)
    {
        QObject::connect(&edit, &QLineEdit::textChanged, [this](const QString &text) { changed.push_back(text); });
        QObject::connect(&edit, &QLineEdit::textEdited, [this](const QString &text) { edited.push_back(text); });
    }
    std::vector<QString> changed, edited;
};

} // namespace routed
