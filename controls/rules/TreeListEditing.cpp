// The edit of a row: from its begin over the columns to its end, with the places where the owner may refuse.
#include "controls/rules/TreeListModel.h"

#include <algorithm>
#include <utility>

/// While an edit is being ended; gone with the edit, or when the row stays in edit.
struct CTreeListModel::EndingScope {
    explicit EndingScope(CTreeListModel &model) : m_model(model), m_serial(model.m_nModifySerial)
    {
        m_model.SetState(kControlEndingEdit, 0);
    }
    ~EndingScope()
    {
        if (IsSameEdit())
            m_model.SetState(0, kControlEndingEdit);
    }
    EndingScope(const EndingScope &) = delete;
    EndingScope &operator=(const EndingScope &) = delete;
    /// False once a notice has ended the edit, whether or not another one has begun.
    bool IsSameEdit() const { return m_model.m_nModifySerial == m_serial; }

private:
    CTreeListModel &m_model;
    std::uint64_t m_serial;
};

// --- Begin -----------------------------------------------------------------------------------------------------------

int CTreeListModel::BeginModify(CTreeListItem *item, int column)
{
    if (HasStyle(StyleReadOnly) || !item || item == m_pRoot || !OwnsItem(item) || !GetColumns(column))
        return 0;
    if (!GetState(kControlEditing))
        return StartModify(item, column);
    if (GetState(kControlEndingEdit))
        return 0;
    if (item == m_pModifyItem)
        return MoveModify(column);
    CTreeListItemGuard guard(*this, item);
    if (!UpdateModify() || GetState(kControlEditing))
        return 0;
    return BeginModify(guard.Get(), column);
}

int CTreeListModel::StartModify(CTreeListItem *item, int column)
{
    m_pModifyItem = item;
    m_nModifyColumn = column;
    m_modifyShadow.clear();
    for (int each = 0; each < GetColumnCount(); ++each)
        m_modifyShadow.push_back(GetItemText(item, each));
    const std::uint64_t serial = ++m_nModifySerial;
    SetState(kControlEditing, 0);
    BeginControl(item, column);
    Invalidate();
    return serial == m_nModifySerial;
}

int CTreeListModel::MoveModify(int column)
{
    const std::uint64_t serial = m_nModifySerial;
    const int accepted = UpdateModifyColumn();
    if (serial != m_nModifySerial)
        return 0;
    if (!accepted || !GetColumns(column)) {
        RestoreControl(m_pModifyItem, m_nModifyColumn);
        return 0;
    }
    m_nModifyColumn = column;
    SetState(kControlEditing, 0);
    BeginControl(m_pModifyItem, column);
    Invalidate();
    return serial == m_nModifySerial;
}

// --- End -------------------------------------------------------------------------------------------------------------

int CTreeListModel::FinishModify()
{
    if (GetState(kControlEndingEdit))
        return 1;
    if (!GetState(kControlEditing))
        return 0;
    const std::uint64_t serial = m_nModifySerial;
    if (UpdateModifyColumns()) {
        Invalidate();
        return 1;
    }
    if (serial == m_nModifySerial)
        RestoreControl(m_pModifyItem, m_nModifyColumn);
    return 0;
}

int CTreeListModel::CancelModify()
{
    if (!GetState(kControlEditing) || m_nEndToldSerial == m_nModifySerial)
        return 0;
    const EndingScope ending(*this);
    CancelControl(m_pModifyItem, m_nModifyColumn);
    if (!ending.IsSameEdit())
        return 0;
    for (int each = 0; each < GetColumnCount(); ++each)
        RestoreShadow(each);
    CloseModify(-1);
    return 1;
}

int CTreeListModel::UpdateModify()
{
    return EndRow(false);
}

int CTreeListModel::UpdateModifyColumns()
{
    return EndRow(true);
}

int CTreeListModel::UpdateModifyColumn()
{
    if (GetState(kControlEndingEdit))
        return 1;
    if (!GetState(kControlEditing))
        return 0;
    const EndingScope ending(*this);
    CancelControl(m_pModifyItem, m_nModifyColumn);
    const bool accepted = ending.IsSameEdit() && AskColumn();
    if (!ending.IsSameEdit())
        return 0;
    if (!accepted)
        RestoreShadow(m_nModifyColumn);
    return accepted;
}

int CTreeListModel::EndRow(bool keepRefused)
{
    if (GetState(kControlEndingEdit))
        return 1;
    if (!GetState(kControlEditing))
        return 0;
    const EndingScope ending(*this);
    const auto refuse = [this] {
        for (int each = 0; each < GetColumnCount(); ++each)
            RestoreShadow(each);
        CloseModify(-1);
        return 0;
    };
    CancelControl(m_pModifyItem, m_nModifyColumn);
    const bool accepted = ending.IsSameEdit() && AskColumn();
    if (!ending.IsSameEdit())
        return 0;
    if (!accepted && keepRefused && m_nModifyColumn >= 0) {
        RestoreShadow(m_nModifyColumn);
        return 0;
    }
    if (!accepted)
        return refuse();
    if (GetModifiedColumnIndex() < 0) {
        CloseModify(1);
        return 1;
    }
    const bool refused = Notify(NotifyRowChanging, m_pModifyItem, m_nModifyColumn) < 0;
    if (!ending.IsSameEdit())
        return 0;
    if (refused)
        return refuse();
    CloseModify(0);
    return 1;
}

bool CTreeListModel::AskColumn()
{
    const int column = m_nModifyColumn;
    return column < 0 || GetItemText(m_pModifyItem, column) == GetModifyShadow(column) ||
           Notify(NotifyColumnChanging, m_pModifyItem, column) >= 0;
}

void CTreeListModel::RestoreShadow(int column)
{
    if (column >= 0 && GetItemText(m_pModifyItem, column) != GetModifyShadow(column))
        SetItemText(m_pModifyItem, column, GetModifyShadow(column));
}

void CTreeListModel::CloseModify(int how)
{
    const std::uint64_t serial = m_nModifySerial;
    m_nEndToldSerial = serial;
    struct Clearing { // also when the owner throws
        CTreeListModel &model;
        std::uint64_t serial;
        ~Clearing()
        {
            if (model.m_nModifySerial == serial)
                model.ClearModify();
        }
    };
    const Clearing clearing{*this, serial};
    Notify(NotifyEndEdit, m_pModifyItem, how);
}

void CTreeListModel::ClearModify()
{
    std::vector<std::wstring>().swap(m_modifyShadow);
    m_pModifyItem = nullptr;
    m_nModifyColumn = -1;
    ++m_nModifySerial;
    SetState(0, kControlEditing | kControlEndingEdit);
    Invalidate();
}

// --- Columns ---------------------------------------------------------------------------------------------------------

int CTreeListModel::GetControl(const CTreeListItem *item, int column) const
{
    if (!item || !GetColumns(column))
        return kEditorStatic;
    const int own = item->ColumnModify(column);
    return own == -1 ? GetColumnModify(column) : own;
}

std::wstring CTreeListModel::GetModifyShadow(int column) const
{
    return column >= 0 && column < static_cast<int>(m_modifyShadow.size()) ? m_modifyShadow[column] : std::wstring();
}

int CTreeListModel::GetModifiedColumnIndex() const
{
    if (!m_pModifyItem)
        return -1;
    for (int each = 0; each < GetColumnCount(); ++each) {
        if (GetItemText(m_pModifyItem, each) != GetModifyShadow(each))
            return each;
    }
    return -1;
}

int CTreeListModel::StepModifyCol(int step) const
{
    const auto found = std::find(m_showOrder.begin(), m_showOrder.end(), m_nModifyColumn);
    if (!m_pModifyItem || found == m_showOrder.end())
        return -1;
    const auto count = static_cast<std::ptrdiff_t>(m_showOrder.size());
    for (auto at = found - m_showOrder.begin() + step; at >= 0 && at < count; at += step) {
        const int column = m_showOrder[at];
        const int kind = GetControl(m_pModifyItem, column);
        if ((kind == kEditorEdit || kind == kEditorCombo) && GetColumnWidth(column) > 0)
            return column;
    }
    return -1;
}

int CTreeListModel::GetNextModifyCol() const
{
    return StepModifyCol(1);
}

int CTreeListModel::GetPrevModifyCol() const
{
    return StepModifyCol(-1);
}

// --- What goes while it is in edit -----------------------------------------------------------------------------------

void CTreeListModel::EndModifyWithin(const CTreeListItem *item)
{
    for (const CTreeListItem *each = m_pModifyItem; each; each = each->Parent()) {
        if (!item || each == item) {
            CancelModify();
            return;
        }
    }
}

void CTreeListModel::ForgetModify(const CTreeListItem *item)
{
    if (!item || m_pModifyItem != item)
        return;
    const EndingScope ending(*this);
    CancelControl(m_pModifyItem, -1);
    if (!ending.IsSameEdit())
        return;
    if (m_nEndToldSerial == m_nModifySerial) // deleted from inside the notice of its end
        ClearModify();
    else
        CloseModify(-1);
}

void CTreeListModel::OnModifyColumnInserted(int column)
{
    if (!m_pModifyItem)
        return;
    const auto at = std::min(static_cast<std::size_t>(column), m_modifyShadow.size());
    m_modifyShadow.insert(m_modifyShadow.begin() + at, GetItemText(m_pModifyItem, column));
    if (m_nModifyColumn >= column)
        ++m_nModifyColumn;
}

void CTreeListModel::OnModifyColumnDeleted(int column)
{
    if (!m_pModifyItem)
        return;
    if (column < static_cast<int>(m_modifyShadow.size()))
        m_modifyShadow.erase(m_modifyShadow.begin() + column);
    if (m_nModifyColumn > column)
        --m_nModifyColumn;
    else if (m_nModifyColumn == column) {
        m_nModifyColumn = -1; // so nothing is written
        const std::uint64_t serial = m_nModifySerial;
        CancelControl(m_pModifyItem, -1);
        if (serial == m_nModifySerial)
            UpdateModify();
    }
}
