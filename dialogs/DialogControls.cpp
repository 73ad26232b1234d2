#include "dialogs/DialogControls.h"

#include "controls/WideText.h"
#include "controls/XColorStatic.h"

#include <QComboBox>

using ZEMGis::Utility::CZEMBitmapButton;

double GetNumber(const AMSEdit::CAMSNumericEdit *edit)
{
    return edit->GetDouble();
}

void SetNumber(AMSEdit::CAMSNumericEdit *edit, double value)
{
    edit->SetDouble(value, true);
}

void SetColouredText(CXColorStatic *label, const std::wstring &text, std::uint32_t colour)
{
    label->setText(ToQString(text));
    label->SetTextColor(colour, false);
    label->SetBold(true, false);
}

void SetNamedText(CXColorStatic *label, unsigned message, const std::wstring &text, std::uint32_t colour)
{
    SetColouredText(label, text, colour);
    label->setAccessibleName(ToQString(text.empty() ? Msg(message) : Msg(message) + L": " + text));
}

void SetUpNumericFields(const CAdUiBaseDialog &dialog, std::span<const CNumericField> fields)
{
    for (const CNumericField &field : fields) {
        auto *edit = dialog.Control<AMSEdit::CAMSNumericEdit>(field.m_nControl);
        edit->SetMaxWholeDigits(field.m_nWholeDigits);
        edit->SetMaxDecimalPlaces(field.m_nDecimals);
        edit->SetSeparators(L'.', L',');
        edit->AllowNegative(field.m_bNegative);
    }
}

void LoadButtonImages(const CAdUiBaseDialog &dialog, std::span<const CImageRow> images)
{
    constexpr unsigned kIconType = 1, kNoFlags = 0;
    for (const CImageRow &image : images)
        dialog.Control<CZEMBitmapButton>(image.m_nControl)
            ->SetButtonIcon(image.m_pName, kIconType, image.m_nSize, image.m_nSize, kNoFlags);
}

void AddToolTips(CMyToolTipCtrl &tips, const CAdUiBaseDialog &dialog, std::span<const CMessageRow> rows)
{
    for (const CMessageRow &row : rows)
        tips.AddWindowTool(dialog.GetDlgItem(row.m_nControl), Msg(row.m_nMessage));
}

void FillLabelCatalog(QComboBox &combo)
{
    combo.clear();
    const auto catalog = ZEMGis::Data::CCatalogManager::Instance()->GetCatalog(L"CA_LABEL_CATALOG", 1);
    ZEMGis::Data::CCatalog::ElementsMap *elements = catalog ? catalog->GetAllElementsMap() : nullptr;
    if (!elements)
        return;
    for (const auto &[key, item] : *elements) {
        if (item && item->IsGroup() == 0)
            combo.addItem(ToQString(item->GetName()), QVariant::fromValue(static_cast<void *>(item.get())));
    }
    if (combo.count() > 0)
        combo.setCurrentIndex(0);
}

ZEMGis::Data::CCatalogItem *LabelItemOf(const QComboBox &combo)
{
    return static_cast<ZEMGis::Data::CCatalogItem *>(combo.currentData().value<void *>());
}
