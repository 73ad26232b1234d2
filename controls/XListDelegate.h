// How the cells of the extended list look.
#pragma once

#include <QStyledItemDelegate>

class CXListCtrl;
class CXListModel;

class CXListDelegate : public QStyledItemDelegate {
public:
    CXListDelegate(CXListCtrl &list, const CXListModel &model);

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    /// Where a cell's text stands within its rectangle.
    QRect TextPlace(const QRect &cell, const QModelIndex &index) const;
    QFont FontOf(const QModelIndex &index) const;

private:
    struct Colours {
        QColor text, ground;
    };
    Colours ColoursOf(const QModelIndex &index) const;
    void PaintText(QPainter &painter, const QRect &cell, const QModelIndex &index, const QColor &colour) const;

    CXListCtrl &m_list;
    const CXListModel &m_model;
};
