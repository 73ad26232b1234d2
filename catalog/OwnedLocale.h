// A locale of the C library, given back when its owner goes: the module may be taken out of a running program.
#pragma once

#include <locale.h>

class COwnedLocale {
public:
    /// mask, name: as newlocale(3) takes them.
    COwnedLocale(int mask, const char *pName) : m_locale(newlocale(mask, pName, nullptr)) {}
    ~COwnedLocale()
    {
        if (m_locale)
            freelocale(m_locale);
    }
    COwnedLocale(const COwnedLocale &) = delete;
    COwnedLocale &operator=(const COwnedLocale &) = delete;

    /// Null where the system does not have it.
    locale_t Get() const { return m_locale; }

private:
    locale_t m_locale;
};
