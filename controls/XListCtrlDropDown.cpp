// Drop-down cells of the extended list and their popup.
#include "controls/WideText.h"
#include "controls/XComboList.h"
#include "controls/XListCtrl.h"
#include "controls/XListModel.h"

#include <utility>

CXComboList *CXListCtrl::GetPopup() const
{
    return m_popup;
}

void CXListCtrl::OpenPopupIfDue()
{
    const int row = m_cells.GetComboRow(), column = m_cells.GetComboColumn();
    const CellRecord *record = m_cells.GetRecord(row, column);
    if (m_popup || !m_cells.IsArrowDown() || !record || !record->comboPressed || row != GetCurSel())
        return;
    const int height = record->comboListHeight;
    CListCells::Choices choices = m_cells.OpenChoices();
    QRect cell;
    GetSubItemRect(row, column, kBounds, cell);
    m_popup = new CXComboList(*this);
    m_popup->setFont(font());
    m_popup->setAccessibleName(ToQString(m_cells.GetHeaderText(column)));
    m_popup->SetChoices(std::move(choices.strings), choices.selected);
    m_popup->ShowAt(QRect(viewport()->mapToGlobal(cell.topLeft()), cell.size()), height);
}

void CXListCtrl::ClosePopup()
{
    CXComboList *popup = std::exchange(m_popup, nullptr);
    if (!popup)
        return;
    popup->Close();
    popup->deleteLater(); // it may be in the midst of telling
}

bool CXListCtrl::OpenPopup(int row, int column)
{
    if (m_cells.TargetOf(row, column) != CListCells::Target::DropDown)
        return false;
    ClosePopup();
    scrollTo(m_model->index(row, column));
    SetCurSel(row);
    m_cells.PressArrow(row, column);
    OpenPopupIfDue();
    m_cells.ReleaseArrow();
    return m_popup != nullptr;
}

std::intptr_t CXListCtrl::OnPopupMessage(unsigned message)
{
    const auto selected = m_popup ? m_popup->GetSelected() : std::nullopt;
    const std::wstring *choice = selected ? &*selected : nullptr;
    if (message == CXComboList::EscapeMessage())
        ClosePopup();
    else if (message == CXComboList::KeyDownMessage())
        m_cells.ShowChoice(choice);
    else if (message == CXComboList::ReturnMessage() || message == CXComboList::ButtonUpMessage())
        m_cells.TakeChoice(choice);
    return 0;
}
