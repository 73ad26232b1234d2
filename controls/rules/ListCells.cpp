#include "controls/rules/ListCells.h"

#include <algorithm>
#include <new>
#include <utility>

namespace {

std::vector<CellRecord> newRecords(std::size_t count)
{
    return std::vector<CellRecord>(count);
}

constexpr int kChecked = 1;

} // namespace

CListCells::CListCells(IListCellsView &view) : m_view(view), m_maker(newRecords) {}

// --- Columns ---------------------------------------------------------------------------------------------------------

int CListCells::InsertColumn(int column, const std::wstring &text, int format)
{
    if (column < 0)
        return -1;
    column = std::min(column, GetColumnCount());
    m_columns.insert(m_columns.begin() + column, Column{text, format});
    // Texts move with their columns; records are counted and placed at their row's insertion.
    for (Row &row : m_rows) {
        if (column < static_cast<int>(row.texts.size()))
            row.texts.insert(row.texts.begin() + column, std::wstring());
    }
    return column;
}

bool CListCells::SetHeaderText(int column, const std::wstring &text)
{
    if (!IsColumn(column))
        return false;
    m_columns[static_cast<std::size_t>(column)].text = text;
    m_view.RepaintHeader(column);
    return true;
}

std::wstring CListCells::GetHeaderText(int column) const
{
    return IsColumn(column) ? m_columns[static_cast<std::size_t>(column)].text : std::wstring();
}

int CListCells::GetColumnFormat(int column) const
{
    return IsColumn(column) ? m_columns[static_cast<std::size_t>(column)].format : kFormatLeft;
}

int CListCells::GetHeaderCheckedState(int column) const
{
    return IsColumn(column) ? m_columns[static_cast<std::size_t>(column)].image : -1;
}

bool CListCells::SetHeaderCheckedState(int column, int state)
{
    if (!IsColumn(column))
        return false;
    if (std::exchange(m_columns[static_cast<std::size_t>(column)].image, state) != state)
        m_view.RepaintHeader(column);
    return true;
}

void CListCells::FollowInHeader(int column)
{
    if (GetHeaderCheckedState(column) != -1)
        SetHeaderCheckedState(column, CountCheckedItems(column) == GetItemCount() ? 1 : 0);
}

// --- Rows ------------------------------------------------------------------------------------------------------------

int CListCells::InsertItem(int row, const std::wstring &text, std::uint32_t textColor, std::uint32_t backColor)
{
    if (row < 0 || row > GetItemCount())
        return -1;
    Row &made = *m_rows.emplace(m_rows.begin() + row);
    made.texts.push_back(text);
    try {
        made.records = m_maker(m_columns.size());
    } catch (const std::bad_alloc &) {
        return -1;
    }
    made.hasRecords = true;
    if (!made.records.empty()) {
        made.records.front().textColor = textColor;
        made.records.front().backColor = backColor;
    }
    return row;
}

void CListCells::CountOut(const Row &row)
{
    for (std::size_t column = 0; column < row.records.size(); ++column) {
        if (row.records[column].checkState == kChecked)
            --m_checked[column];
    }
}

bool CListCells::DeleteItem(int row)
{
    if (!IsRow(row))
        return false;
    CountOut(m_rows[static_cast<std::size_t>(row)]);
    m_rows.erase(m_rows.begin() + row);
    return true;
}

void CListCells::DeleteAllItems()
{
    m_rows.clear();
    std::ranges::fill(m_checked, 0);
}

bool CListCells::SetItemText(int row, int column, const std::wstring &text)
{
    if (!IsRow(row) || !IsColumn(column))
        return false;
    std::vector<std::wstring> &texts = m_rows[static_cast<std::size_t>(row)].texts;
    if (column >= static_cast<int>(texts.size()))
        texts.resize(static_cast<std::size_t>(column) + 1);
    texts[static_cast<std::size_t>(column)] = text;
    m_view.RepaintCell(row, column);
    return true;
}

bool CListCells::SetItemText(int row, int column, const wchar_t *text, std::uint32_t textColor, std::uint32_t backColor)
{
    CellRecord *record = Record(row, column);
    if (!record)
        return false;
    record->textColor = textColor;
    record->backColor = backColor;
    if (text)
        return SetItemText(row, column, std::wstring(text));
    m_view.RepaintCell(row, column);
    return true;
}

std::wstring CListCells::GetItemText(int row, int column) const
{
    if (!IsRow(row) || !IsColumn(column))
        return {};
    const std::vector<std::wstring> &texts = m_rows[static_cast<std::size_t>(row)].texts;
    return column < static_cast<int>(texts.size()) ? texts[static_cast<std::size_t>(column)] : std::wstring();
}

bool CListCells::SetItemData(int row, std::uint64_t value)
{
    CellRecord *record = Record(row, 0);
    if (!record)
        return false;
    record->itemData = value;
    m_view.RepaintCell(row, 0);
    return true;
}

std::uint64_t CListCells::GetItemData(int row) const
{
    const CellRecord *record = GetRecord(row, 0);
    return record ? record->itemData : 0;
}

// --- Cell records ----------------------------------------------------------------------------------------------------

const CellRecord *CListCells::GetRecord(int row, int column) const
{
    if (!IsRow(row) || !IsColumn(column))
        return nullptr;
    const std::vector<CellRecord> &records = m_rows[static_cast<std::size_t>(row)].records;
    return column < static_cast<int>(records.size()) ? &records[static_cast<std::size_t>(column)] : nullptr;
}

CellRecord *CListCells::Record(int row, int column)
{
    return const_cast<CellRecord *>(std::as_const(*this).GetRecord(row, column));
}

bool CListCells::HasRecords(int row) const
{
    return IsRow(row) && m_rows[static_cast<std::size_t>(row)].hasRecords;
}

int CListCells::GetRecordCount(int row) const
{
    return IsRow(row) ? static_cast<int>(m_rows[static_cast<std::size_t>(row)].records.size()) : 0;
}

int &CListCells::CheckedCount(int column)
{
    if (column >= static_cast<int>(m_checked.size()))
        m_checked.resize(static_cast<std::size_t>(column) + 1);
    return m_checked[static_cast<std::size_t>(column)];
}

void CListCells::SetCheckState(int row, int column, int state)
{
    CellRecord *record = Record(row, column);
    const int before = std::exchange(record->checkState, state);
    CheckedCount(column) += (state == kChecked ? 1 : 0) - (before == kChecked ? 1 : 0);
}

bool CListCells::SetCheckbox(int row, int column, int state, bool exclusive)
{
    CellRecord *record = Record(row, column);
    if (!record)
        return false;
    SetCheckState(row, column, state);
    record->checkExclusive = exclusive;
    FollowInHeader(column);
    m_view.RepaintCell(row, column);
    return true;
}

int CListCells::GetCheckbox(int row, int column) const
{
    const CellRecord *record = GetRecord(row, column);
    return record ? record->checkState : -1;
}

int CListCells::CountCheckedItems(int column) const
{
    return column >= 0 && column < static_cast<int>(m_checked.size()) ? m_checked[static_cast<std::size_t>(column)] : 0;
}

bool CListCells::SetComboBox(int row, int column, bool enable, const std::vector<std::wstring> *strings, int listHeight,
                             int initialSel)
{
    CellRecord *record = Record(row, column);
    if (!record)
        return false;
    record->combo = enable;
    if (enable) {
        record->comboStrings = strings;
        record->comboListHeight = listHeight;
        record->comboInitialSel = initialSel;
        if (strings && initialSel >= 0 && initialSel < static_cast<int>(strings->size()))
            return SetItemText(row, column, (*strings)[static_cast<std::size_t>(initialSel)]);
    }
    m_view.RepaintCell(row, column);
    return true;
}

bool CListCells::SetBold(int row, int column, bool bold)
{
    CellRecord *record = Record(row, column);
    if (!record)
        return false;
    record->bold = bold;
    m_view.RepaintCell(row, column);
    return true;
}

bool CListCells::GetBold(int row, int column) const
{
    const CellRecord *record = GetRecord(row, column);
    return record && record->bold;
}

bool CListCells::SetEnabled(int row, bool enabled)
{
    CellRecord *record = Record(row, 0);
    if (!record)
        return false;
    record->enabled = enabled;
    for (int column = 0; column < GetColumnCount(); ++column)
        m_view.RepaintCell(row, column);
    return true;
}

bool CListCells::GetEnabled(int row) const
{
    const CellRecord *record = GetRecord(row, 0);
    return record && record->enabled;
}

bool CListCells::SetCellNumeric(int row, int column, bool numeric)
{
    CellRecord *record = Record(row, column);
    if (!record)
        return false;
    record->numeric = numeric;
    m_view.RepaintCell(row, column);
    return true;
}

bool CListCells::SetNoDraw(int row, int column, bool noDraw)
{
    CellRecord *record = Record(row, column);
    if (!record)
        return false;
    record->noDraw = noDraw;
    m_view.RepaintCell(row, column);
    return true;
}

// --- Special columns -------------------------------------------------------------------------------------------------

void CListCells::CColumnSet::Add(int column)
{
    if (!Has(column))
        m_columns.push_back(column);
}

bool CListCells::CColumnSet::Has(int column) const
{
    return std::ranges::find(m_columns, column) != m_columns.end();
}

// --- Clicks ----------------------------------------------------------------------------------------------------------

CListCells::Target CListCells::TargetOf(int row, int column) const
{
    if (!IsRow(row))
        return Target::None;
    if (!HasRecords(row))
        return Target::Refused;
    if (const CellRecord *first = GetRecord(row, 0); first && !first->enabled)
        return Target::Refused;
    const CellRecord *record = GetRecord(row, column);
    if (!record)
        return IsColumn(column) ? Target::Other : Target::None;
    if (record->checkState != -1)
        return Target::CheckBox;
    return record->combo ? Target::DropDown : Target::Other;
}

void CListCells::ClickCheckbox(int row, int column)
{
    const CellRecord *record = GetRecord(row, column);
    if (!record || record->checkState == -1)
        return;
    if (!record->checkExclusive) {
        SetCheckState(row, column, record->checkState == 0 ? 1 : 0);
    } else {
        if (record->checkState != kChecked) {
            for (int other = 0; other < GetItemCount(); ++other) {
                if (!GetRecord(other, column))
                    continue;
                SetCheckState(other, column, 0);
                m_view.RepaintCell(other, column);
            }
        }
        SetCheckState(row, column, kChecked);
    }
    m_view.RepaintCell(row, column);
    m_view.TellChanged(row, column);
    FollowInHeader(column);
}

// --- Drop-down -------------------------------------------------------------------------------------------------------

void CListCells::PressArrow(int row, int column)
{
    CellRecord *record = Record(row, column);
    if (!record)
        return;
    record->comboPressed = true;
    m_bComboDown = true;
    m_nComboRow = row;
    m_nComboColumn = column;
    m_view.RepaintCell(row, column);
}

void CListCells::ReleaseArrow()
{
    if (std::exchange(m_bReleasing, true))
        return;
    if (CellRecord *record = m_bComboDown ? Record(m_nComboRow, m_nComboColumn) : nullptr) {
        record->comboPressed = false;
        m_view.RepaintCell(m_nComboRow, m_nComboColumn);
    }
    m_bComboDown = false;
    m_bReleasing = false;
}

CListCells::Choices CListCells::OpenChoices()
{
    Choices choices;
    const CellRecord *record = GetRecord(m_nComboRow, m_nComboColumn);
    if (!record)
        return choices;
    if (record->comboStrings) {
        std::ranges::copy_if(*record->comboStrings, std::back_inserter(choices.strings),
                             [](const std::wstring &text) { return !text.empty(); });
    }
    if (choices.strings.empty())
        return choices;
    choices.selected = 0;
    const std::wstring text = GetItemText(m_nComboRow, m_nComboColumn);
    if (text.empty())
        SetItemText(m_nComboRow, m_nComboColumn, choices.strings.front());
    else if (const auto same = std::ranges::find(choices.strings, text); same != choices.strings.end())
        choices.selected = static_cast<int>(same - choices.strings.begin());
    return choices;
}

bool CListCells::ShowChoice(const std::wstring *selected)
{
    return selected && SetItemText(m_nComboRow, m_nComboColumn, *selected);
}

void CListCells::TakeChoice(const std::wstring *selected)
{
    const bool written = ShowChoice(selected);
    m_view.ClosePopup();
    if (written)
        m_view.TellChanged(m_nComboRow, m_nComboColumn);
}

// --- In-place editor -------------------------------------------------------------------------------------------------

bool CListCells::CanEdit(int row, int column) const
{
    return IsRow(row) && IsColumn(column) && m_editColumns.Has(column);
}

CListCells::EditEnd CListCells::EndEditing(std::wstring text, const NumericRule &rule)
{
    const int row = m_nCurrentRow, column = m_nCurrentColumn;
    if (!HasRecords(row))
        return EditEnd::NoRecord;
    const CellRecord *record = GetRecord(row, column);
    if (record && record->numeric && !rule(text))
        return EditEnd::Refused;
    WriteChoice(row, column, text);
    return EditEnd::Written;
}

void CListCells::WriteChoice(int row, int column, const std::wstring &text)
{
    const std::wstring before = GetItemText(row, column);
    SetItemText(row, column, text);
    if (text != before)
        m_view.TellChanged(row, column);
}
