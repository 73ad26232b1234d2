// What the two main dialogs do with their controls alike: numbers in edits, coloured text, tips, images, label types.
#pragma once

#include "contracts/HostDialog.h"
#include "contracts/NetworkTopology.h"
#include "controls/AMSEdits.h"
#include "controls/MyToolTipCtrl.h"
#include "dialogs/DialogTexts.h"

#include <cstdint>
#include <span>
#include <string>

class CXColorStatic;
class QComboBox;

/// 0 for an empty edit.
double GetNumber(const AMSEdit::CAMSNumericEdit *edit);
/// Trailing zeros are trimmed; what the edit does not take is cut.
void SetNumber(AMSEdit::CAMSNumericEdit *edit, double value);

/// Bold, in a colour in blue, green, red byte order.
void SetColouredText(CXColorStatic *label, const std::wstring &text, std::uint32_t colour);
/// The same; who hears the dialog hears before the text the message that says what it is, and that alone when the text
/// is empty.
void SetNamedText(CXColorStatic *label, unsigned message, const std::wstring &text, std::uint32_t colour);

/// A numeric edit: how many digits it takes before and behind the point, and whether a sign.
struct CNumericField {
    int m_nControl;
    int m_nWholeDigits;
    int m_nDecimals;
    bool m_bNegative;
};
/// With "." as decimal and "," as group separator.
void SetUpNumericFields(const CAdUiBaseDialog &dialog, std::span<const CNumericField> fields);

/// The image of an icon button, a square of so many pixels.
struct CImageRow {
    int m_nControl;
    const wchar_t *m_pName;
    int m_nSize;
};
void LoadButtonImages(const CAdUiBaseDialog &dialog, std::span<const CImageRow> images);

void AddToolTips(CMyToolTipCtrl &tips, const CAdUiBaseDialog &dialog, std::span<const CMessageRow> rows);

/// The label types of the catalogue in its order, groups left out; the first one is chosen.
void FillLabelCatalog(QComboBox &combo);
/// Of the chosen entry; null when there is none.
ZEMGis::Data::CCatalogItem *LabelItemOf(const QComboBox &combo);
