#include "controls/treelist/TreeListHeaderWindows.h"

#include <QPainter>

namespace {

constexpr double kSeenThrough = 0.8;
constexpr int kMarkWidth = 9; // odd: the line stands in the middle
constexpr int kPoint = kMarkWidth / 2;

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
    setGeometry(x - kPoint - 1, header.top(), kMarkWidth, header.height());
    show();
    raise();
}

void CTLHDropWnd::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QColor color = palette().color(QPalette::Highlight);
    const int bottom = height() - 1;
    painter.fillRect(kPoint - 1, 0, 3, height(), color);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    const QPoint above[] = {{0, 0}, {kMarkWidth, 0}, {kPoint, kPoint}};
    const QPoint below[] = {{0, bottom + 1}, {kMarkWidth, bottom + 1}, {kPoint, bottom - kPoint}};
    painter.drawPolygon(above, 3);
    painter.drawPolygon(below, 3);
}
