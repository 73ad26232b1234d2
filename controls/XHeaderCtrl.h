// The header of the extended list: centred texts, a check box for a column that has one.
#pragma once

#include <QHeaderView>
#include <QPixmap>

#include <functional>
#include <vector>

class CListCells;

/// Paints itself: a check box at the left, a picture at the right, the text in the rest, centred and cut with an
/// ellipsis, a groove between two columns and a raised edge around all. The check box only shows how the column's own
/// stand: nothing comes of a click.
class CXHeaderCtrl : public QHeaderView {
    Q_OBJECT

public:
    /// Texts and check boxes are those of the cells, which outlive this.
    explicit CXHeaderCtrl(const CListCells &cells, QWidget *parent = nullptr);

    /// Pixels between check box and text; 6.
    void SetSpacing(int pixels);
    int GetSpacing() const { return m_nSpacing; }
    /// Size of the check box in pixels; 0, as at the start: as high as a letter.
    void SetImageSize(int pixels);
    /// Makes columns that are sized to their header wider by the two borders of the platform's boxes.
    void SetWidened(bool widened);
    /// A picture at the right of a column's text; a null one: none. False when out of range.
    bool SetItemBitmap(int column, const QPixmap &bitmap);
    /// Paints the header of a column whose format has kFormatOwnerDraw, over the face and within rect.
    using DrawItem = std::function<void(QPainter &painter, const QRect &rect, int column)>;
    void SetDrawItem(DrawItem draw);
    /// A column has come in: its item goes to the same place.
    void OnColumnInserted(int column);
    /// What a column needs to show its header.
    int WidthOf(int column) const { return sectionSizeFromContents(column).width(); }

    QSize sizeHint() const override;

protected:
    QSize sectionSizeFromContents(int column) const override;
    void paintSection(QPainter *painter, const QRect &rect, int column) const override;
    void paintEvent(QPaintEvent *event) override;

private:
    int ImageSize() const;
    /// In pixels of the screen's scale; 0 without a picture.
    QSize BitmapSize(int column) const;
    void PaintItem(QPainter &painter, const QRect &rect, int column) const;

    const CListCells &m_cells;
    int m_nSpacing = 6;
    int m_nImageSize = 0;
    bool m_bWidened = false;
    std::vector<QPixmap> m_bitmaps; ///< one for each column
    DrawItem m_draw;
};
