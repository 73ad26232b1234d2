#include "host/editor/HostVariables.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cwctype>

namespace velmor {

namespace {

enum class Variable {
    Aperture,
    Autosnap,
    Clayer,
    Dwgname,
    Dwgprefix,
    Hpgaptol,
    Orthomode,
    Osmode,
    Pickbox,
    Pickradius,
    Polarang,
};

struct Row {
    const wchar_t *name;
    Variable variable;
};
constexpr std::array kTable{
    Row{L"APERTURE", Variable::Aperture},   Row{L"AUTOSNAP", Variable::Autosnap},
    Row{L"CLAYER", Variable::Clayer},       Row{L"DWGNAME", Variable::Dwgname},
    Row{L"DWGPREFIX", Variable::Dwgprefix}, Row{L"HPGAPTOL", Variable::Hpgaptol},
    Row{L"ORTHOMODE", Variable::Orthomode}, Row{L"OSMODE", Variable::Osmode},
    Row{L"PICKBOX", Variable::Pickbox},     Row{L"PICKRADIUS", Variable::Pickradius},
    Row{L"POLARANG", Variable::Polarang},
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

bool setWhole(int &target, const VariableValue &value, int lowest, int highest)
{
    const auto *number = std::get_if<int>(&value);
    if (!number || *number < lowest || *number > highest)
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
    case Variable::Orthomode:
        return m_orthoMode;
    case Variable::Autosnap:
        return m_autoSnap;
    case Variable::Polarang:
        return m_polarAngle;
    case Variable::Aperture:
        return m_aperture;
    case Variable::Pickbox:
        return m_pickBox;
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
    case Variable::Osmode:
        return setWhole(m_osmode, value, 0, 32767);
    case Variable::Orthomode:
        return setWhole(m_orthoMode, value, 0, 1);
    case Variable::Autosnap:
        return setWhole(m_autoSnap, value, 0, 63);
    case Variable::Aperture:
        return setWhole(m_aperture, value, 1, 50);
    case Variable::Pickbox:
        return setWhole(m_pickBox, value, 1, 50);
    case Variable::Polarang: {
        const auto degrees = asNumber(value);
        return degrees && *degrees > 0.0 && *degrees <= 180.0 && setLength(m_polarAngle, value);
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
