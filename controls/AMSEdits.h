// The validating edits as widgets.
#pragma once

#include "controls/AMSEdit.h"
#include "controls/LocaleSettings.h"
#include "controls/rules/MultiMaskedEdit.h"

namespace AMSEdit {

class CAMSAlphanumericEdit : public TAlphanumericEdit<CAMSEdit> {
    Q_OBJECT

public:
    /// maxCharacters of 0: no limit.
    explicit CAMSAlphanumericEdit(int maxCharacters = 0, const std::wstring &invalidCharacters = {},
                                  QWidget *parent = nullptr);
};

/// The symbols of the mask are the owner's to fill (GetSymbolArray), before the text.
class CAMSMaskedEdit : public TMaskedEdit<CAMSEdit> {
    Q_OBJECT

public:
    explicit CAMSMaskedEdit(const std::wstring &mask = {}, QWidget *parent = nullptr);
};

class CAMSNumericEdit : public TNumericEdit<CAMSEdit> {
    Q_OBJECT

public:
    CAMSNumericEdit(int maxWholeDigits, int maxDecimalPlaces,
                    const IRegionalSettings &settings = UserRegionalSettings(), QWidget *parent = nullptr);
    /// 9 whole digits and 4 decimals, as the dialogs start from.
    explicit CAMSNumericEdit(QWidget *parent = nullptr);
};

/// Without decimals.
class CAMSIntegerEdit : public CAMSNumericEdit {
    Q_OBJECT

public:
    explicit CAMSIntegerEdit(int maxWholeDigits = 9, const IRegionalSettings &settings = UserRegionalSettings(),
                             QWidget *parent = nullptr);
};

class CAMSCurrencyEdit : public CAMSNumericEdit {
    Q_OBJECT

public:
    explicit CAMSCurrencyEdit(const IRegionalSettings &settings = UserRegionalSettings(), QWidget *parent = nullptr);
};

class CAMSMultiMaskedEdit : public TMultiMaskedEdit<CAMSEdit> {
    Q_OBJECT

public:
    explicit CAMSMultiMaskedEdit(const IRegionalSettings &settings = UserRegionalSettings(), QWidget *parent = nullptr);
};

} // namespace AMSEdit
