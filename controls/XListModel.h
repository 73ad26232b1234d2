// The cells of the extended list as the toolkit's views, and programs that read them aloud, ask for them.
#pragma once

#include <QAbstractTableModel>

class CXListCtrl;

/// Setting a text or a check state here does what the person's edit or click does.
class CXListModel : public QAbstractTableModel {
public:
    explicit CXListModel(CXListCtrl &list);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    void CellChanged(int row, int column);
    void HeaderChanged(int column);
    int InsertColumn(int column, const std::wstring &text, int format);
    int InsertRow(int row, const std::wstring &text, std::uint32_t textColor, std::uint32_t backColor);
    void RemoveRows(int first, int last);

    /// What a cell shows: its text, or the colour column's label.
    QString ShownText(int row, int column) const;

private:
    CXListCtrl &m_list;
};
