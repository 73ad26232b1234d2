#include "controls/treelist/TreeListHeaderWindows.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr double kSeenThrough = 0.8;
constexpr int kPoint = 4; // pixels of the points of the mark to each side of its line

void makeMarkOnly(QWidget &window, const char *name)
{
    window.setObjectName(QLatin1String(name));
    window.setAttribute(Qt::WA_TransparentForMouseEvents);
    window.setFocusPolicy(Qt::NoFocus);
}

} // namespace

CTLHDragWnd::CTLHDragWnd(const QPixmap &picture, QWidget *parent) : QWidget(parent), m_picture(picture)
{
    makeMarkOnly(*this, kClassName);
    resize(picture.deviceIndependentSize().toSize());
}

void CTLHDragWnd::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setOpacity(kSeenThrough);
    painter.drawPixmap(0, 0, m_picture);
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

CTLHDropWnd::CTLHDropWnd(QWidget *parent) : QWidget(parent)
{
    makeMarkOnly(*this, kClassName);
}

void CTLHDropWnd::ShowAt(int x, const QRect &header)
{
    const int line = std::clamp(x - 1, header.left() + 1, std::max(header.left() + 1, header.right() - 1));
    const int left = std::max(header.left(), line - kPoint), right = std::min(header.right(), line + kPoint);
    m_nLine = line - left;
    setGeometry(left, header.top(), right + 1 - left, header.height());
    update();
    show();
    raise();
}

void CTLHDropWnd::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QColor color = palette().color(QPalette::Highlight);
    const double middle = m_nLine + 0.5, reach = kPoint + 0.5, bottom = height();
    painter.fillRect(m_nLine - 1, 0, 3, height(), color);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    const QPointF above[] = {{middle - reach, 0}, {middle + reach, 0}, {middle, reach}};
    const QPointF below[] = {{middle - reach, bottom}, {middle + reach, bottom}, {middle, bottom - reach}};
    painter.drawPolygon(above, 3);
    painter.drawPolygon(below, 3);
}
