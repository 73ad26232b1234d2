#include "host/editor/HostVariables.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cwctype>

namespace velmor {

namespace {

enum class Variable { Clayer, Dwgname, Dwgprefix, Hpgaptol, Osmode, Pickradius };

struct Row {
    const wchar_t *name;
    Variable variable;
};
constexpr std::array kTable{
    Row{L"CLAYER", Variable::Clayer},     Row{L"DWGNAME", Variable::Dwgname}, Row{L"DWGPREFIX", Variable::Dwgprefix},
    Row{L"HPGAPTOL", Variable::Hpgaptol}, Row{L"OSMODE", Variable::Osmode},   Row{L"PICKRADIUS", Variable::Pickradius},
};

std::optional<Variable> find(const std::wstring &name)
{
    std::wstring upper = name;
    std::ranges::transform(upper, upper.begin(), [](wchar_t c) { return static_cast<wchar_t>(std::towupper(c)); });
    const auto row = std::ranges::find_if(kTable, [&](const Row &r) { return upper == r.name; });
    return row == kTable.end() ? std::nullopt : std::optional(row->variable);
}

std::optional<double> asNumber(const VariableValue &value)
{
    if (const auto *number = std::get_if<double>(&value))
        return *number;
    if (const auto *whole = std::get_if<int>(&value))
        return *whole;
    return std::nullopt;
}

bool setLength(double &target, const VariableValue &value)
{
    const auto number = asNumber(value);
    if (!number || !std::isfinite(*number) || *number < 0.0)
        return false;
    target = *number;
    return true;
}

bool setCurrentLayer(Drawing *drawing, const VariableValue &value)
{
    const auto *name = std::get_if<std::wstring>(&value);
    const auto index = drawing && name ? drawing->findLayer(*name) : std::nullopt;
    if (!index)
        return false;
    drawing->setCurrentLayer(*index);
    return true;
}

} // namespace

std::optional<VariableValue> HostVariables::get(const Session &session, const std::wstring &name) const
{
    const auto variable = find(name);
    if (!variable)
        return std::nullopt;
    const Drawing *drawing = session.drawing();
    switch (*variable) {
    case Variable::Clayer:
        return drawing ? std::optional<VariableValue>(drawing->layer(drawing->currentLayer()).name) : std::nullopt;
    case Variable::Dwgname:
        return session.path().filename().wstring();
    case Variable::Dwgprefix: {
        const auto folder = session.path().parent_path();
        return folder.empty() ? std::wstring() : (folder / "").wstring();
    }
    case Variable::Hpgaptol:
        return m_gapTolerance;
    case Variable::Osmode:
        return m_osmode;
    case Variable::Pickradius:
        return m_pickRadius;
    }
    return std::nullopt;
}

bool HostVariables::set(Session &session, const std::wstring &name, const VariableValue &value)
{
    const auto variable = find(name);
    if (!variable)
        return false;
    switch (*variable) {
    case Variable::Clayer:
        return setCurrentLayer(session.drawing(), value);
    case Variable::Hpgaptol:
        return setLength(m_gapTolerance, value);
    case Variable::Pickradius:
        return setLength(m_pickRadius, value);
    case Variable::Osmode: {
        const auto *bits = std::get_if<int>(&value);
        if (!bits || *bits < 0 || *bits > 32767)
            return false;
        m_osmode = *bits;
        return true;
    }
    case Variable::Dwgname:
    case Variable::Dwgprefix:
        return false;
    }
    return false;
}

std::vector<std::wstring> HostVariables::names()
{
    std::vector<std::wstring> names;
    for (const Row &row : kTable)
        names.emplace_back(row.name);
    return names;
}

} // namespace velmor
