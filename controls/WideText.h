// The two conversions between the module's text and a widget's text.
#pragma once

#include <QString>

#include <string>

inline QString ToQString(const std::wstring &text)
{
    return QString::fromStdWString(text);
}

inline std::wstring ToWide(const QString &text)
{
    return text.toStdWString();
}
