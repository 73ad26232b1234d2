// The regional settings of the desktop.
#pragma once

#include "controls/rules/RegionalSettings.h"

#include <QLocale>

namespace AMSEdit {

/// Answers from a locale. What cannot be typed is put in its typed form: the minus sign of typography becomes "-", and
/// marks of writing direction are left out.
class CLocaleSettings : public IRegionalSettings {
public:
    explicit CLocaleSettings(const QLocale &locale = QLocale()) : m_locale(locale) {}
    std::optional<std::wstring> Query(RegionalQuery query) const override;

private:
    QString Answer(RegionalQuery query) const;

    QLocale m_locale;
};

/// The user's own settings, as they are when asked.
const IRegionalSettings &UserRegionalSettings();

} // namespace AMSEdit
