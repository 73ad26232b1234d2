// The date and time edits as widgets.
#pragma once

#include "controls/AMSEdit.h"
#include "controls/LocaleSettings.h"
#include "controls/rules/DateTimeEdits.h"

namespace AMSEdit {

class CAMSDateEdit : public TDateEdit<CAMSEdit> {
    Q_OBJECT

public:
    explicit CAMSDateEdit(const IRegionalSettings &settings = UserRegionalSettings(),
                          const IClock &clock = SystemClock(), QWidget *parent = nullptr);
};

class CAMSTimeEdit : public TTimeEdit<CAMSEdit> {
    Q_OBJECT

public:
    explicit CAMSTimeEdit(const IRegionalSettings &settings = UserRegionalSettings(),
                          const IClock &clock = SystemClock(), QWidget *parent = nullptr);
};

class CAMSDateTimeEdit : public TDateTimeEdit<CAMSEdit> {
    Q_OBJECT

public:
    explicit CAMSDateTimeEdit(const IRegionalSettings &settings = UserRegionalSettings(),
                              const IClock &clock = SystemClock(), QWidget *parent = nullptr);
};

} // namespace AMSEdit
