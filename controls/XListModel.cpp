#include "controls/XListModel.h"

#include "controls/WideText.h"
#include "controls/XListCtrl.h"

#include <algorithm>

CXListModel::CXListModel(CXListCtrl &list) : QAbstractTableModel(&list), m_list(list) {}

int CXListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_list.m_cells.GetItemCount();
}

int CXListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_list.m_cells.GetColumnCount();
}

QString CXListModel::ShownText(int row, int column) const
{
    const std::wstring text = m_list.m_cells.GetItemText(row, column);
    if (text == L"-1" && m_list.m_cells.m_colorColumns.Has(column))
        return ToQString(m_list.m_cells.m_strColorLabel);
    return ToQString(text);
}

QVariant CXListModel::data(const QModelIndex &index, int role) const
{
    const int row = index.row(), column = index.column();
    switch (role) {
    case Qt::DisplayRole:
        return ShownText(row, column);
    case Qt::EditRole:
        return ToQString(m_list.m_cells.GetItemText(row, column));
    case Qt::TextAlignmentRole:
        return headerData(column, Qt::Horizontal, role);
    case Qt::CheckStateRole: {
        const int state = m_list.m_cells.GetCheckbox(row, column);
        return state == -1 ? QVariant() : QVariant(state == 1 ? Qt::Checked : Qt::Unchecked);
    }
    default:
        return {};
    }
}

QVariant CXListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::DisplayRole)
        return ToQString(m_list.m_cells.GetHeaderText(section));
    if (role != Qt::TextAlignmentRole)
        return {};
    const int format = m_list.m_cells.GetColumnFormat(section);
    const Qt::Alignment across = format & kFormatCenter  ? Qt::AlignHCenter
                                 : format & kFormatRight ? Qt::AlignRight
                                                         : Qt::AlignLeft;
    return QVariant::fromValue(across | Qt::AlignVCenter);
}

Qt::ItemFlags CXListModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (!index.isValid())
        return flags;
    const CListCells::Target target = m_list.m_cells.TargetOf(index.row(), index.column());
    if (target == CListCells::Target::Refused)
        return flags;
    if (target == CListCells::Target::CheckBox)
        flags |= Qt::ItemIsUserCheckable;
    if (m_list.m_cells.CanEdit(index.row(), index.column()))
        flags |= Qt::ItemIsEditable;
    return flags;
}

bool CXListModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const Qt::ItemFlags offered = flags(index);
    if (role == Qt::CheckStateRole && offered & Qt::ItemIsUserCheckable) {
        if (value.toInt() != data(index, role).toInt())
            m_list.m_cells.ClickCheckbox(index.row(), index.column());
        return true;
    }
    if (role == Qt::EditRole && offered & Qt::ItemIsEditable)
        return m_list.TakeText(index.row(), index.column(), ToWide(value.toString()));
    return false;
}

void CXListModel::CellChanged(int row, int column)
{
    const QModelIndex changed = index(row, column);
    Q_EMIT dataChanged(changed, changed);
}

void CXListModel::HeaderChanged(int column)
{
    Q_EMIT headerDataChanged(Qt::Horizontal, column, column);
}

int CXListModel::InsertColumn(int column, const std::wstring &text, int format)
{
    if (column < 0)
        return -1;
    const int at = std::min(column, columnCount());
    beginInsertColumns({}, at, at);
    m_list.m_cells.InsertColumn(at, text, format);
    endInsertColumns();
    return at;
}

int CXListModel::InsertRow(int row, const std::wstring &text, std::uint32_t textColor, std::uint32_t backColor)
{
    if (row < 0 || row > rowCount())
        return -1;
    beginInsertRows({}, row, row);
    const int made = m_list.m_cells.InsertItem(row, text, textColor, backColor);
    endInsertRows();
    return made;
}

void CXListModel::RemoveRows(int first, int last)
{
    beginRemoveRows({}, first, last);
    if (first == 0 && last + 1 == rowCount())
        m_list.m_cells.DeleteAllItems();
    else
        m_list.m_cells.DeleteItem(first);
    endRemoveRows();
}
