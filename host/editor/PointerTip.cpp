#include "host/editor/PointerTip.h"

#include <QLabel>
#include <QPainter>

namespace velmor {

namespace {

constexpr QPoint kBesidePointer{16, 20};

class Tip final : public QLabel {
public:
    explicit Tip(QWidget &widget) : QLabel(&widget)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents); // the click belongs to what lies below
        setFocusPolicy(Qt::NoFocus);
        setTextFormat(Qt::PlainText);
        setMargin(5);
        setForegroundRole(QPalette::ToolTipText);
        hide();
    }
    static Tip *of(const QWidget &widget)
    {
        for (QObject *child : widget.children())
            if (auto *tip = dynamic_cast<Tip *>(child))
                return tip;
        return nullptr;
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::ToolTipText));
        painter.setBrush(palette().color(QPalette::ToolTipBase));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
        painter.end();
        QLabel::paintEvent(event);
    }
};

} // namespace

void showPointerTip(QWidget &widget, const QPoint &place, const QString &text)
{
    if (text.isEmpty())
        return hidePointerTip(widget);
    Tip *tip = Tip::of(widget);
    if (!tip)
        tip = new Tip(widget);
    tip->setText(text);
    tip->adjustSize();
    // On the other side of the pointer where there is no room.
    QPoint corner = place + kBesidePointer;
    if (corner.x() + tip->width() > widget.width())
        corner.setX(place.x() - kBesidePointer.x() / 2 - tip->width());
    if (corner.y() + tip->height() > widget.height())
        corner.setY(place.y() - kBesidePointer.y() / 2 - tip->height());
    tip->move(std::max(0, corner.x()), std::max(0, corner.y()));
    tip->show();
    tip->raise();
}

void hidePointerTip(QWidget &widget)
{
    if (Tip *tip = Tip::of(widget))
        tip->hide();
}

QString pointerTipText(const QWidget &widget)
{
    const Tip *tip = Tip::of(widget);
    return tip && !tip->isHidden() ? tip->text() : QString();
}

} // namespace velmor
