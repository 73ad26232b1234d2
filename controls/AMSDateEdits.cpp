#include "controls/AMSDateEdits.h"

namespace AMSEdit {

CAMSDateEdit::CAMSDateEdit(const IRegionalSettings &settings, const IClock &clock, QWidget *parent)
    : TValidatingEdit(settings, clock)
{
    setParent(parent);
}

CAMSTimeEdit::CAMSTimeEdit(const IRegionalSettings &settings, const IClock &clock, QWidget *parent)
    : TValidatingEdit(settings, clock)
{
    setParent(parent);
}

CAMSDateTimeEdit::CAMSDateTimeEdit(const IRegionalSettings &settings, const IClock &clock, QWidget *parent)
    : TValidatingEdit(settings, clock)
{
    setParent(parent);
}

} // namespace AMSEdit
