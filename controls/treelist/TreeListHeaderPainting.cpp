// What the header of the tree list looks like.
#include "controls/treelist/TreeListGlyphs.h"
#include "controls/treelist/TreeListHeaderCtrl.h"

#include "controls/ReadableColour.h"
#include "controls/WideText.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int kMargin = 6;                     // pixels beside what stands in a section, where there is room
constexpr int kLeastLeft = 2, kLeastRight = 1; // where there is none
constexpr int kAboveText = 4;                  // pixels above and below a text
constexpr int kDivider = 1;                    // pixels of the line at the right of a section
constexpr int kImage = 16;
constexpr int kArrowWidth = 9, kArrowHeight = 5;             // odd, so that its point is one pixel
constexpr int kGap = 4;                                      // between text, image and arrow
constexpr double kLine = 0.28, kHot = 0.07, kPressed = 0.16; // parts of the text's colour in the face's

QColor mixed(const QColor &one, const QColor &other, double part)
{
    const auto mix = [part](int a, int b) { return static_cast<int>(a + (b - a) * part); };
    return {mix(one.red(), other.red()), mix(one.green(), other.green()), mix(one.blue(), other.blue())};
}

Qt::Alignment alignmentOf(std::uint32_t format)
{
    if (format & kColumnLeft)
        return Qt::AlignLeft;
    if (format & kColumnRight)
        return Qt::AlignRight;
    return format & kColumnCentred ? Qt::AlignHCenter : Qt::AlignLeft;
}

bool showsImage(const CTreeListColumnInfo &info)
{
    return (info.format & kColumnShowsImage) && info.image >= 0 &&
           (info.format & (kColumnImageLeft | kColumnImageRight | kColumnImageCentred));
}

/// Of width pixels, in the middle of the height of rect.
QRect standing(int left, int width, int height, const QRect &rect)
{
    return {left, rect.top() + (rect.height() - height) / 2, width, height};
}

} // namespace

int CTreeListHeaderCtrl::GetHeight() const
{
    return std::max(fontMetrics().height(), kImage) + 2 * kAboveText;
}

int CTreeListHeaderCtrl::GetWholeWidth(int column) const
{
    const CTreeListColumnInfo *info = m_list.GetColumns(column);
    if (info == nullptr)
        return 0;
    // An automatic width leaves 2 pixels beside a text; a cell keeps 2 on both sides of it, and its grid line.
    constexpr int kBesideAutomatic = 3, kFitItems = -1;
    int header = fontMetrics().horizontalAdvance(ToQString(info->text)) + 2 * kMargin + kDivider;
    if (showsImage(*info))
        header += kImage + (info->text.empty() ? 0 : kGap);
    if (Sorts(column))
        header += kArrowWidth + kGap;
    const int items = m_list.GetFittedWidth(column, kFitItems) + kBesideAutomatic;
    return Limited(column, std::max(header, items));
}

CTreeListHeaderCtrl::Parts CTreeListHeaderCtrl::PartsIn(int column, const QRect &rect) const
{
    const CTreeListColumnInfo &info = *m_list.GetColumns(column);
    const bool image = showsImage(info), arrow = IsArrowOn(column);
    const int text = fontMetrics().horizontalAdvance(ToQString(info.text));
    const int beside = (image ? kImage + (text > 0 ? kGap : 0) : 0) + (arrow ? kArrowWidth + kGap : 0);
    QRect inner = rect.adjusted(0, 0, -kDivider, -kDivider);
    const int room = inner.width() - text - beside;
    inner.adjust(std::clamp((room + 1) / 2, kLeastLeft, kMargin), 0, -std::clamp(room / 2, kLeastRight, kMargin), 0);

    Parts parts;
    parts.alignment = alignmentOf(info.format);
    if (arrow) {
        parts.arrow = standing(inner.right() + 1 - kArrowWidth, kArrowWidth, kArrowHeight, inner);
        inner.setRight(parts.arrow.left() - 1 - kGap);
    }
    if (image && (info.format & kColumnImageLeft)) {
        parts.image = standing(inner.left(), kImage, kImage, inner);
        inner.setLeft(parts.image.right() + 1 + kGap);
    } else if (image && (info.format & kColumnImageRight)) {
        parts.image = standing(inner.right() + 1 - kImage, kImage, kImage, inner);
        inner.setRight(parts.image.left() - 1 - kGap);
    } else if (image) {
        // Image and text stand in the middle together.
        const int shown = std::min(text, std::max(0, inner.width() - kImage - kGap));
        const int both = kImage + (shown > 0 ? kGap + shown : 0);
        parts.image = standing(inner.left() + std::max(0, (inner.width() - both) / 2), kImage, kImage, inner);
        inner.setLeft(parts.image.right() + 1 + kGap);
        parts.alignment = Qt::AlignLeft;
    }
    parts.text = inner.width() > 0 ? inner : QRect();
    return parts;
}

void CTreeListHeaderCtrl::PaintSection(QPainter &painter, int column, const QRect &rect, bool lifted) const
{
    const QPalette &colors = palette();
    const QColor ink = colors.color(QPalette::ButtonText);
    QColor face = colors.color(QPalette::Button);
    if (m_gesture == Gesture::Pressed && column == m_nColumn && Sorts(column))
        face = mixed(face, ink, kPressed);
    else if (m_gesture == Gesture::None && column == m_nHot && Sorts(column))
        face = mixed(face, ink, kHot);
    const QColor line = mixed(colors.color(QPalette::Button), ink, kLine);
    painter.fillRect(rect, face);

    painter.save();
    painter.setClipRect(rect.adjusted(0, 0, -kDivider, -kDivider), Qt::IntersectClip);
    const Parts parts = PartsIn(column, rect);
    const CTreeListColumnInfo &info = *m_list.GetColumns(column);
    const QColor text = ReadableText(ink, face);
    if (!parts.image.isEmpty()) {
        m_list.m_glyphs->Prepare(m_list.palette(), devicePixelRatioF());
        m_list.m_glyphs->DrawHeaderImage(painter, parts.image.topLeft(), info.image, !isEnabled());
    }
    if (!parts.text.isEmpty()) {
        // Widths are whole pixels and glyphs need not be: what counts as fitting is not cut at its last fraction.
        // Placed here, since a text in the middle would stand between two pixels.
        QString words = ToQString(info.text);
        if (fontMetrics().horizontalAdvance(words) > parts.text.width())
            words = fontMetrics().elidedText(words, Qt::ElideRight, parts.text.width());
        QRect place = parts.text;
        const int spare = std::max(0, place.width() - fontMetrics().horizontalAdvance(words));
        if (parts.alignment == Qt::AlignRight)
            place.adjust(spare, 0, 0, 0);
        else if (parts.alignment == Qt::AlignHCenter)
            place.adjust(spare / 2, 0, 0, 0);
        painter.setPen(text);
        painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip, words);
    }
    if (!parts.arrow.isEmpty()) {
        // Row by row of the device, so that its edges are sharp at any scale.
        const double step = 1 / painter.device()->devicePixelRatioF();
        for (double row = 0; row < kArrowHeight; row += step) {
            const double inset = m_bDescending ? row : kArrowHeight - step - row;
            painter.fillRect(QRectF(parts.arrow.left() + inset, parts.arrow.top() + row, kArrowWidth - 2 * inset, step),
                             text);
        }
    }
    painter.restore();

    painter.fillRect(QRect(rect.right(), rect.top(), kDivider, rect.height()), line);
    if (hasFocus() && column == m_nCurrent && !lifted) {
        constexpr double kFrameContrast = 3; // enough for what is no text
        const QColor frame = colors.color(QPalette::Highlight);
        painter.setPen(ContrastOf(frame, face) >= kFrameContrast ? frame : text);
        painter.drawRect(rect.adjusted(1, 1, -2 - kDivider, -2 - kDivider));
    }
}

QPixmap CTreeListHeaderCtrl::PictureOf(const Section &section) const
{
    const qreal ratio = devicePixelRatioF();
    QPixmap picture(QSize(std::max(1, section.width), height()) * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(palette().color(QPalette::Button));
    QPainter painter(&picture);
    painter.setFont(font());
    PaintSection(painter, section.column, QRect(0, 0, section.width, height()), true);
    return picture;
}

void CTreeListHeaderCtrl::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const QRect clip = event->rect();
    const QColor face = palette().color(QPalette::Button);
    painter.fillRect(clip, face);
    for (const Section &section : Sections()) {
        const QRect rect(section.left, 0, section.width, height());
        if (section.width > 0 && rect.intersects(clip))
            PaintSection(painter, section.column, rect, false);
    }
    painter.fillRect(QRect(clip.left(), height() - kDivider, clip.width(), kDivider),
                     mixed(face, palette().color(QPalette::ButtonText), kLine));
}

QString CTreeListHeaderCtrl::CutTextAt(int x) const
{
    const int column = GetColumnAt(x);
    if (column < 0)
        return {};
    const QString text = ToQString(m_list.GetColumns(column)->text);
    const bool cut = fontMetrics().horizontalAdvance(text) > PartsIn(column, GetColumnRect(column)).text.width();
    return cut ? text : QString();
}
