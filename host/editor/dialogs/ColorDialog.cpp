#include "host/editor/dialogs/ColorDialog.h"

#include "host/editor/Captions.h"
#include "host/editor/dialogs/HostDialogs.h"

#include <QHBoxLayout>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QSpinBox>
#include <QToolTip>
#include <QVBoxLayout>

#include <algorithm>

namespace velmor {

namespace {

constexpr int kField = 18, kColumns = 24, kMixedRows = 10, kGap = 8;
constexpr int kFirstMixed = 10, kFirstGrey = 250, kLast = 255, kNamed = 9;
constexpr int kByLayer = 256, kByBlock = 0;
constexpr float kBorderStrength = 0.4F; ///< of the fields' borders, between the window and its text

QColor screenColor(int index)
{
    const std::uint32_t bgr = acedGetRGB(index);
    return {static_cast<int>(bgr & 0xff), static_cast<int>(bgr >> 8 & 0xff), static_cast<int>(bgr >> 16 & 0xff)};
}

/// Row and column of an index: rows 0 to 9 the mixed colours, 10 the named ones with the greys behind them.
struct Cell {
    int row, column;
};
Cell cellOf(int index)
{
    if (index <= kNamed)
        return {kMixedRows, index - 1};
    if (index >= kFirstGrey)
        return {kMixedRows, kNamed + 1 + index - kFirstGrey};
    return {(index - kFirstMixed) % 10, (index - kFirstMixed) / 10};
}
int indexIn(Cell cell)
{
    if (cell.row < 0 || cell.column < 0 || cell.column >= kColumns || cell.row > kMixedRows)
        return 0;
    if (cell.row < kMixedRows)
        return kFirstMixed + cell.column * 10 + cell.row;
    if (cell.column < kNamed)
        return cell.column + 1;
    const int grey = kFirstGrey + cell.column - kNamed - 1;
    return grey >= kFirstGrey && grey <= kLast ? grey : 0;
}

} // namespace

ColorGrid::ColorGrid(QWidget *parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ColorGrid::sizeHint() const
{
    return {kColumns * kField + 1, (kMixedRows + 1) * kField + kGap + 1};
}

QRect ColorGrid::fieldOf(int index) const
{
    const Cell cell = cellOf(index);
    return {cell.column * kField, cell.row * kField + (cell.row == kMixedRows ? kGap : 0), kField, kField};
}

int ColorGrid::indexAt(const QPoint &place) const
{
    for (int index = 1; index <= kLast; ++index)
        if (fieldOf(index).contains(place))
            return index;
    return 0;
}

void ColorGrid::setIndex(int index)
{
    m_index = index;
    update();
}

void ColorGrid::choose(int index)
{
    if (index < 1 || index > kLast)
        return;
    setIndex(index);
    Q_EMIT chosen(index);
}

bool ColorGrid::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        if (const int index = indexAt(help->pos())) {
            const QColor c = screenColor(index);
            QToolTip::showText(help->globalPos(),
                               QStringLiteral("%1 (%2, %3, %4)").arg(index).arg(c.red()).arg(c.green()).arg(c.blue()),
                               this);
        } else {
            QToolTip::hideText();
        }
        return true;
    }
    return QWidget::event(event);
}

void ColorGrid::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    // A border around each field, or white ones would be lost on a light window and black ones on a dark one.
    QColor border = palette().color(QPalette::WindowText);
    border.setAlphaF(kBorderStrength);
    for (int index = 1; index <= kLast; ++index) {
        const QRect field = fieldOf(index).adjusted(0, 0, 1, 1);
        painter.fillRect(field, palette().color(QPalette::Window));
        painter.fillRect(field, border);
    }
    for (int index = 1; index <= kLast; ++index)
        painter.fillRect(fieldOf(index).adjusted(1, 1, 0, 0), screenColor(index));
    if (m_index < 1 || m_index > kLast)
        return;
    // Black and white together stand out on any colour.
    const QRect field = fieldOf(m_index);
    painter.setPen(QPen(Qt::white, 3));
    painter.drawRect(field.adjusted(1, 1, -1, -1));
    painter.setPen(QPen(Qt::black, hasFocus() ? 2 : 1));
    painter.drawRect(field);
}

void ColorGrid::mousePressEvent(QMouseEvent *event)
{
    choose(indexAt(event->position().toPoint()));
}

void ColorGrid::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (indexAt(event->position().toPoint()) != 0)
        Q_EMIT activated();
}

void ColorGrid::keyPressEvent(QKeyEvent *event)
{
    Cell cell = cellOf(std::clamp(m_index, 1, kLast));
    switch (event->key()) {
    case Qt::Key_Left:
        --cell.column;
        break;
    case Qt::Key_Right:
        ++cell.column;
        break;
    case Qt::Key_Up:
        --cell.row;
        break;
    case Qt::Key_Down:
        ++cell.row;
        break;
    case Qt::Key_Home:
        cell.column = 0;
        break;
    case Qt::Key_End:
        for (cell.column = kColumns - 1; indexIn(cell) == 0;)
            --cell.column;
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    // Between the named colours and the greys one place is empty, and behind the greys all are.
    if (indexIn(cell) == 0 && cell.row == kMixedRows && cell.column == kNamed)
        cell.column += event->key() == Qt::Key_Left ? -1 : 1;
    else if (indexIn(cell) == 0 && cell.row == kMixedRows && event->key() == Qt::Key_Down)
        cell.column = kNamed + 1 + kLast - kFirstGrey;
    choose(indexIn(cell));
}

ColorDialog::ColorDialog(int index, bool withLogical, int layerColor, QWidget *parent)
    : DefaultButtonDialog(parent), m_index(index), m_layerColor(layerColor), m_grid(new ColorGrid(this)),
      m_number(new QSpinBox(this)), m_sample(new QLabel(this))
{
    setWindowTitle(uiString("ui.color.title"));
    m_grid->setAccessibleName(uiString("ui.color.palette"));
    m_grid->setProperty(kControlIdProperty, static_cast<int>(kControlColours));
    m_number->setRange(withLogical ? kByBlock : 1, withLogical ? kByLayer : kLast);
    m_number->setAccessibleName(uiString("ui.color.index"));
    m_number->setProperty(kControlIdProperty, static_cast<int>(kControlColourNumber));
    m_sample->setFixedSize(48, 24);
    m_sample->setAccessibleName(uiString("ui.color.sample"));

    auto *line = new QHBoxLayout;
    auto *label = new QLabel(uiString("ui.color.index"), this);
    label->setBuddy(m_number);
    line->addWidget(label);
    line->addWidget(m_number);
    line->addWidget(m_sample);
    line->addStretch();
    if (withLogical) {
        const auto add = [&](const char *text, int control, int logical) {
            auto *button = new QPushButton(uiString(text), this);
            button->setProperty(kControlIdProperty, control);
            connect(button, &QPushButton::clicked, this, [this, logical] { showIndex(logical); });
            line->addWidget(button);
        };
        add("ui.color.bylayer", kControlByLayer, kByLayer);
        add("ui.color.byblock", kControlByBlock, kByBlock);
    }
    auto *ok = new QPushButton(uiString("ui.button.ok"), this);
    auto *cancel = new QPushButton(uiString("ui.button.cancel"), this);
    ok->setProperty(kControlIdProperty, static_cast<int>(kControlOk));
    cancel->setProperty(kControlIdProperty, static_cast<int>(kControlCancel));
    ok->setDefault(true);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto *column = new QVBoxLayout(this);
    column->addWidget(m_grid);
    column->addLayout(line);
    column->addLayout(buttons);

    connect(m_grid, &ColorGrid::chosen, this, &ColorDialog::showIndex);
    connect(m_grid, &ColorGrid::activated, this, [this] { accept(); });
    connect(m_number, &QSpinBox::valueChanged, this, &ColorDialog::showIndex);
    showIndex(std::clamp(index, m_number->minimum(), m_number->maximum()));
    m_grid->setFocus();
}

void ColorDialog::showIndex(int index)
{
    m_index = index;
    const QSignalBlocker quiet(m_number);
    m_number->setValue(index);
    m_grid->setIndex(index);
    QPixmap sample(m_sample->size());
    sample.fill(screenColor(index == kByLayer ? m_layerColor : index == kByBlock ? 7 : index));
    m_sample->setPixmap(sample);
}

bool runColorDialog(int &index, bool withLogical, int layerColor)
{
    if (!canShowDialogs())
        return false;
    ColorDialog dialog(index, withLogical, layerColor, dialogOwner());
    if (dialog.DoModal() != CAdUiBaseDialog::kOk)
        return false;
    index = dialog.index();
    return true;
}

} // namespace velmor
