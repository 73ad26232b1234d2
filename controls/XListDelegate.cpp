#include "controls/XListDelegate.h"

#include "contracts/DrawingHost.h"
#include "controls/ListPainting.h"
#include "controls/ReadableColour.h"
#include "controls/XListCtrl.h"
#include "controls/XListModel.h"

#include <QPainter>

namespace {

constexpr int kTextIndent = 6;   // pixels between a cell's edge and its text
constexpr int kBoxIndent = 9;    // between a cell's left edge and its check box
constexpr int kBehindBox = 4;    // between check box and text
constexpr int kBoxMargin = 3;    // between a check box and the cell's upper and lower edge
constexpr int kBrowseWidth = 20; // a browse button at a cell's right end
constexpr int kWhiteIndex = 7;

QRect boxOf(const QRect &cell, bool alone)
{
    QRect square(0, cell.top(), cell.height(), cell.height());
    square.moveLeft(alone ? cell.center().x() - cell.height() / 2 : cell.left() + kBoxIndent);
    return square;
}

QRect swatchOf(const QRect &cell)
{
    const int side = cell.height() - 2 * kBoxMargin;
    return {cell.left() + kTextIndent, cell.top() + kBoxMargin, side, side};
}

} // namespace

CXListDelegate::CXListDelegate(CXListCtrl &list, const CXListModel &model)
    : QStyledItemDelegate(&list), m_list(list), m_model(model)
{
}

QFont CXListDelegate::FontOf(const QModelIndex &index) const
{
    QFont font = m_list.font();
    if (index.column() == 0 || m_list.GetBold(index.row(), index.column()))
        font.setWeight(QFont::Bold);
    return font;
}

QRect CXListDelegate::TextPlace(const QRect &cell, const QModelIndex &index) const
{
    const CListCells &cells = m_list.GetCells();
    const int row = index.row(), column = index.column();
    const CellRecord *record = cells.GetRecord(row, column);
    QRect place = cell.adjusted(kTextIndent, 0, -kTextIndent, 0);
    if (record && record->combo) {
        if (row == m_list.GetCurSel())
            place.setRight(cell.right() - cell.height() - 1);
    } else if (record && record->checkState != -1) {
        place.setLeft(boxOf(cell, false).right() + 1 + kBehindBox);
    } else if (cells.m_colorColumns.Has(column)) {
        place.setLeft(swatchOf(cell).right() + 1 + kTextIndent);
    }
    if (m_list.HasBrowseButton(row, column))
        place.setRight(cell.right() - kBrowseWidth - 1);
    return place;
}

CXListDelegate::Colours CXListDelegate::ColoursOf(const QModelIndex &index) const
{
    const CListCells &cells = m_list.GetCells();
    const CellRecord *record = cells.GetRecord(index.row(), index.column());
    const QPalette palette = m_list.palette();
    if (index.row() == m_list.GetCurSel()) {
        if (m_list.hasFocus())
            return {palette.color(QPalette::Active, QPalette::HighlightedText),
                    palette.color(QPalette::Active, QPalette::Highlight)};
        const QColor face = palette.color(QPalette::Button);
        return {ReadableText(palette.color(QPalette::WindowText), face), face};
    }
    const bool ownGround = index.column() != 0 && record && record->backColor != kSystemColor;
    const QColor ground = index.column() == 0 ? list_painting::FirstColumnGround(palette)
                          : ownGround         ? ColourOf(record->backColor)
                                              : palette.color(QPalette::Base);
    const bool disabled = !m_list.isEnabled() || (cells.GetRecord(index.row(), 0) && !cells.GetEnabled(index.row()));
    if (disabled)
        return {palette.color(QPalette::Disabled, QPalette::Text), ground};
    if (!record || record->textColor == kSystemColor)
        return {ReadableText(palette.color(QPalette::Text), ground), ground};
    const QColor wanted = ColourOf(record->textColor);
    return {ownGround ? wanted : ReadableColour(wanted, ground), ground};
}

void CXListDelegate::PaintText(QPainter &painter, const QRect &cell, const QModelIndex &index,
                               const QColor &colour) const
{
    const QRect place = TextPlace(cell, index);
    if (place.width() <= 0)
        return;
    const QFont font = FontOf(index);
    painter.setFont(font);
    painter.setPen(colour);
    const auto alignment = index.data(Qt::TextAlignmentRole).value<Qt::Alignment>();
    painter.drawText(
        place, static_cast<int>(alignment) | Qt::TextSingleLine,
        QFontMetrics(font).elidedText(m_model.ShownText(index.row(), index.column()), Qt::ElideRight, place.width()));
}

void CXListDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const CListCells &cells = m_list.GetCells();
    const CellRecord *record = cells.GetRecord(index.row(), index.column());
    if (record && record->noDraw)
        return;
    const QRect cell = option.rect;
    const QPalette palette = m_list.palette();
    auto [text, ground] = ColoursOf(index);
    painter->save();
    painter->setClipRect(cell);
    painter->fillRect(cell, ground);
    if (record && record->combo && index.row() == m_list.GetCurSel()) {
        list_painting::DropDown(*painter, cell, record->comboPressed, palette);
        text = palette.color(QPalette::Text);
    } else if (record && !record->combo && record->checkState != -1) {
        const bool alone = m_model.ShownText(index.row(), index.column()).isEmpty();
        const QRect box = boxOf(cell, alone).adjusted(kBoxMargin, kBoxMargin, -kBoxMargin, -kBoxMargin);
        list_painting::CheckBox(*painter, box, record->checkState == 1, palette,
                                cells.GetEnabled(index.row()) && m_list.isEnabled());
    } else if (cells.m_colorColumns.Has(index.column())) {
        const std::wstring shown = cells.GetItemText(index.row(), index.column());
        const bool special = shown == L"-1" || shown == cells.m_strColorLabel;
        const int number = special ? kWhiteIndex : static_cast<int>(std::wcstol(shown.c_str(), nullptr, 10));
        painter->setPen(text);
        painter->setBrush(ColourOf(acedGetRGB(number)));
        painter->drawRect(swatchOf(cell).adjusted(0, 0, -1, -1));
    }
    PaintText(*painter, cell, index, text);
    if (m_list.hasFocus() && index == m_list.currentIndex()) {
        painter->setPen(QPen(text, 1, Qt::DotLine));
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(cell.adjusted(1, 1, -2, -2));
    }
    painter->restore();
}
