#include "controls/AMSEdits.h"

namespace AMSEdit {

CAMSAlphanumericEdit::CAMSAlphanumericEdit(int maxCharacters, const std::wstring &invalidCharacters, QWidget *parent)
    : TValidatingEdit(maxCharacters, invalidCharacters)
{
    setParent(parent);
}

CAMSMaskedEdit::CAMSMaskedEdit(const std::wstring &mask, QWidget *parent) : TValidatingEdit(mask)
{
    setParent(parent);
}

CAMSNumericEdit::CAMSNumericEdit(int maxWholeDigits, int maxDecimalPlaces, const IRegionalSettings &settings,
                                 QWidget *parent)
    : TValidatingEdit(maxWholeDigits, maxDecimalPlaces, settings)
{
    setParent(parent);
}

CAMSNumericEdit::CAMSNumericEdit(QWidget *parent) : CAMSNumericEdit(9, 4, UserRegionalSettings(), parent) {}

CAMSIntegerEdit::CAMSIntegerEdit(int maxWholeDigits, const IRegionalSettings &settings, QWidget *parent)
    : CAMSNumericEdit(maxWholeDigits, 0, settings, parent)
{
}

CAMSCurrencyEdit::CAMSCurrencyEdit(const IRegionalSettings &settings, QWidget *parent)
    : CAMSNumericEdit(9, 4, settings, parent)
{
    SetUpCurrency(*this, settings);
}

CAMSMultiMaskedEdit::CAMSMultiMaskedEdit(const IRegionalSettings &settings, QWidget *parent)
    : TMultiMaskedEdit(settings)
{
    setParent(parent);
}

} // namespace AMSEdit
