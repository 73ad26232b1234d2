#include "tests/controls/ListHost.h"

#include "contracts/DrawingHost.h"
#include "contracts/HostDialog.h"

#include <iterator>

ListHost &listHost()
{
    static ListHost host;
    return host;
}

bool acedSetColorDialog(int &colorIndex, bool, int)
{
    return listHost().color(colorIndex);
}

bool acedHatchPalletteDialog(const wchar_t *, bool, std::wstring &result)
{
    return listHost().pattern(result);
}

std::uint32_t acedGetRGB(int colorIndex)
{
    constexpr std::uint32_t kFirst[] = {0xFFFFFF, 0x0000FF, 0x00FFFF, 0x00FF00, 0xFFFF00, 0xFF0000, 0xFF00FF, 0xFFFFFF};
    return kFirst[static_cast<std::uint32_t>(colorIndex) % std::size(kFirst)];
}

bool CZEMCLayerTablePtr::allLayerNames(CStringArray &names) const
{
    names = {L"0", L"PARCELS", L"PIPES"};
    return true;
}

ZEMGis::Selection::CSelectionButton::CSelectionButton(QWidget *parent) : QPushButton(parent) {}
ZEMGis::Utility::CZEMBitmapButton::CZEMBitmapButton(QWidget *parent) : QPushButton(parent) {}

struct CAdUiBaseDialog::Private {};
CAdUiBaseDialog::CAdUiBaseDialog(QWidget *parent) : QDialog(parent) {}
CAdUiBaseDialog::~CAdUiBaseDialog() = default;

bool CAdUiBaseDialog::RunHandler(const std::function<void()> &handler)
{
    handler();
    return true;
}

std::intptr_t CAdUiBaseDialog::OnWindowMessage(unsigned, std::uintptr_t, std::intptr_t)
{
    return 0;
}

bool CAdUiBaseDialog::OnInitDialog()
{
    return true;
}

void CAdUiBaseDialog::OnCancel() {}
void CAdUiBaseDialog::OnHandlerFailed() {}
void CAdUiBaseDialog::OnOK() {}
void CAdUiBaseDialog::keyPressEvent(QKeyEvent *) {}
void CAdUiBaseDialog::closeEvent(QCloseEvent *) {}
void CAdUiBaseDialog::reject() {}
void CAdUiBaseDialog::accept() {}
