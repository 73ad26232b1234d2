// Tables of the panels: a model of rows that sorts and filters without copies, and the view over it.
#pragma once

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>
#include <QTableView>

#include <algorithm>
#include <string_view>
#include <vector>

namespace velmor {

/// Rows of values. Knows no widget; its display texts follow the program's language and the user's locale.
class PanelModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;
    /// Order of two rows by a column. REQUIRES rows of the model.
    virtual bool isLess(int column, int a, int b) const = 0;
    /// Whether a row is shown under a filter; the text is without blanks at its ends and not empty.
    virtual bool matches(int row, const QString &text) const = 0;
    /// False for a row that the model keeps back whatever the filter says.
    virtual bool isShown(int /*row*/) const { return true; }
    /// Name of the caption of a column, and of its explanation (a tip; null for none).
    virtual const char *caption(int column) const = 0;
    virtual const char *explanation(int /*column*/) const { return nullptr; }
    /// Name of the icon that stands in the head in place of the caption, which then is its tip; null for none.
    virtual const char *symbol(int /*column*/) const { return nullptr; }
    /// Numbers stand to the right.
    virtual bool isNumber(int /*column*/) const { return false; }

    int rowCount(const QModelIndex &parent = {}) const final;
    int columnCount(const QModelIndex &parent = {}) const final;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex &index, int role) const override;

    /// The texts are those of another language now.
    void languageChanged();

protected:
    virtual int rows() const = 0;
    virtual int columns() const = 0;
    /// What a cell shows.
    virtual QString text(int row, int column) const = 0;

    /// Takes up the rows as they are now with the fewest notices: rows that differ are told, and what came or went in
    /// one place is inserted or removed there, so that a view keeps its place and what is selected. isSame: whether two
    /// rows are about the same thing.
    template <class Row, class IsSame>
    void takeRows(std::vector<Row> &mine, std::vector<Row> now, IsSame isSame)
    {
        std::size_t front = 0, back = 0;
        const std::size_t least = std::min(mine.size(), now.size());
        while (front < least && isSame(mine[front], now[front]))
            ++front;
        while (back < least - front && isSame(mine[mine.size() - 1 - back], now[now.size() - 1 - back]))
            ++back;
        const auto from = static_cast<std::ptrdiff_t>(front);
        if (mine.size() > front + back) {
            beginRemoveRows({}, static_cast<int>(front), static_cast<int>(mine.size() - back) - 1);
            mine.erase(mine.begin() + from, mine.end() - static_cast<std::ptrdiff_t>(back));
            endRemoveRows();
        }
        if (now.size() > front + back) {
            beginInsertRows({}, static_cast<int>(front), static_cast<int>(now.size() - back) - 1);
            mine.insert(mine.begin() + from, now.begin() + from, now.end() - static_cast<std::ptrdiff_t>(back));
            endInsertRows();
        }
        for (std::size_t i = 0; i < mine.size();) {
            if (mine[i] == now[i]) {
                ++i;
                continue;
            }
            std::size_t end = i;
            for (; end < mine.size() && !(mine[end] == now[end]); ++end)
                mine[end] = std::move(now[end]);
            Q_EMIT dataChanged(index(static_cast<int>(i), 0), index(static_cast<int>(end) - 1, columns() - 1));
            i = end;
        }
    }
};

/// A model's rows in the order of a column, those that match a filter.
class PanelOrder final : public QSortFilterProxyModel {
    Q_OBJECT
public:
    explicit PanelOrder(PanelModel &model, QObject *parent = nullptr);
    PanelModel &model() const { return m_model; }
    void setFilter(const QString &text);
    /// What the model keeps back is other now.
    void filterAgain() { invalidateRowsFilter(); }
    /// Row of the model behind a row that is shown.
    int sourceRow(int shownRow) const { return mapToSource(index(shownRow, 0)).row(); }

protected:
    bool lessThan(const QModelIndex &a, const QModelIndex &b) const override;
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

private:
    PanelModel &m_model;
    QString m_filter;
};

/// Head line and rows as text for other programs: tabs between the cells, a line each.
QString asText(const QAbstractItemModel &model, const QList<int> &rows);

/// Names of several things at one place sort as people count: "M2" before "M10".
int compareNames(const QString &a, const QString &b);

/// A number as the user's locale writes it, with that many decimals and without grouping.
QString numberText(double value, int decimals);

/// Sorts by a click on a head, gives away rows by Enter or a double click, copies the selected rows (all, when none is
/// selected) by Ctrl+C, and leaves Tab to the window.
class PanelTable final : public QTableView {
    Q_OBJECT
public:
    /// The accessible name's text is named by caption. The model is the caller's.
    PanelTable(PanelModel &model, const char *caption, QWidget *parent);
    PanelOrder &order() const { return *m_order; }
    /// Rows of the model that are selected, in the order shown.
    QList<int> selectedRows() const;
    void copyRows() const;
    QSize sizeHint() const override;

Q_SIGNALS:
    /// Enter or a double click on rows: rows of the model, in the order shown.
    void chosen(const QList<int> &rows);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void fitRows();
    /// Widens columns whose head has become longer; what a person made wide stays so.
    void fitHeads();
    PanelOrder *m_order;
};

} // namespace velmor
