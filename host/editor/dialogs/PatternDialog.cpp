#include "host/editor/dialogs/PatternDialog.h"

#include "host/drawing/HatchPattern.h"
#include "host/drawing/PatternLibrary.h"
#include "host/editor/Captions.h"
#include "host/editor/dialogs/HostDialogs.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace velmor {

namespace {

constexpr wchar_t kStartPattern[] = L"ANSI31";
constexpr QSize kPicture{72, 54};

/// The scale at which some repetitions of a pattern fit into so many pixels.
double pictureScale(const Pattern &pattern, double pixels)
{
    double repeat = 0.0;
    for (const PatternFamily &family : pattern.families) {
        double dashes = 0.0;
        for (const double dash : family.dashes)
            dashes += std::abs(dash);
        // Of long dashes a part is enough, or the lines run together.
        repeat = std::max({repeat, std::abs(family.across), std::min(dashes, 4.0 * std::abs(family.across))});
    }
    return repeat > 0.0 ? std::clamp(pixels / repeat, 1e-6, 3.0) : 1.0;
}

/// What a pattern is for: our own in the program's language, the user's as the file says it.
QString descriptionOf(const Pattern &pattern)
{
    if (PatternLibrary::instance().isUsers(pattern.name))
        return QString::fromStdWString(pattern.description);
    QString name = QString::fromStdWString(pattern.name);
    return uiString(QStringLiteral("ui.pattern.about.%1").arg(name.remove(QLatin1Char('-'))).toStdString());
}

} // namespace

QImage patternPicture(const std::wstring &name, const QSize &size, const QColor &ink, const QColor &ground,
                      double ratio)
{
    QImage image((QSizeF(size) * ratio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(ground);
    const Pattern *pattern = PatternLibrary::instance().find(name);
    QPainter painter(&image);
    if (!pattern || pattern->families.empty()) {
        if (pattern)
            painter.fillRect(QRect(QPoint(), size).adjusted(4, 4, -4, -4), ink);
        return image;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ink, 1.0, Qt::SolidLine, Qt::RoundCap));
    const double width = size.width(), height = size.height();
    const std::vector<std::vector<AcDbPolyline::Vertex>> rings{
        {{0.0, 0.0, 0.0}, {width, 0.0, 0.0}, {width, height, 0.0}, {0.0, height, 0.0}}};
    const auto families = hatchFamilies(*pattern, 0.0, pictureScale(*pattern, 0.45 * height));
    for (const PatternLine &line : patternLines(rings, families)) {
        const QPointF from(line.x1, height - line.y1), to(line.x2, height - line.y2);
        if (from == to)
            painter.drawPoint(from);
        else
            painter.drawLine(from, to);
    }
    return image;
}

PatternDialog::PatternDialog(const std::wstring &current, bool showCustom, QWidget *parent)
    : DefaultButtonDialog(parent), m_filter(new QLineEdit(this)), m_list(new QListWidget(this)),
      m_description(new QLabel(this))
{
    setWindowTitle(uiString("ui.pattern.title"));
    m_filter->setPlaceholderText(uiString("ui.pattern.filter"));
    m_filter->setAccessibleName(uiString("ui.pattern.filter"));
    m_filter->setClearButtonEnabled(true);
    m_filter->setProperty(kControlIdProperty, static_cast<int>(kControlPatternFilter));
    m_list->setViewMode(QListView::IconMode);
    m_list->setResizeMode(QListView::Adjust);
    m_list->setMovement(QListView::Static);
    m_list->setUniformItemSizes(true);
    m_list->setIconSize(kPicture);
    m_list->setGridSize({kPicture.width() + 28, kPicture.height() + fontMetrics().height() + 14});
    m_list->setAccessibleName(uiString("ui.pattern.list"));
    m_list->setProperty(kControlIdProperty, static_cast<int>(kControlPatterns));
    m_description->setWordWrap(true);
    m_description->setMinimumHeight(2 * fontMetrics().height());
    m_description->setAlignment(Qt::AlignTop | Qt::AlignLeft);

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
    column->addWidget(m_filter);
    column->addWidget(m_list, 1);
    column->addWidget(m_description);
    column->addLayout(buttons);
    resize(560, 520);

    fill(current, showCustom);
    connect(m_filter, &QLineEdit::textChanged, this, &PatternDialog::filter);
    connect(m_list, &QListWidget::currentItemChanged, this, [this] { showChoice(); });
    connect(m_list, &QListWidget::itemActivated, this, [this] { accept(); });
    showChoice();
    m_list->setFocus();
}

void PatternDialog::fill(const std::wstring &current, bool showCustom)
{
    auto &library = PatternLibrary::instance();
    library.refresh();
    const Pattern *start = library.find(current);
    const std::wstring startName = start ? start->name : std::wstring(kStartPattern);
    const QColor ink = palette().color(QPalette::Text), ground = palette().color(QPalette::Base);
    for (const Pattern *pattern : library.all()) {
        if (!showCustom && library.isUsers(pattern->name))
            continue;
        auto *item = new QListWidgetItem(
            QIcon(QPixmap::fromImage(patternPicture(pattern->name, kPicture, ink, ground, devicePixelRatioF()))),
            QString::fromStdWString(pattern->name), m_list);
        item->setToolTip(descriptionOf(*pattern));
        item->setData(Qt::AccessibleTextRole, item->text() + QStringLiteral(", ") + item->toolTip());
        if (pattern->name == startName)
            m_list->setCurrentItem(item);
    }
}

void PatternDialog::filter(const QString &text)
{
    QListWidgetItem *first = nullptr;
    for (int row = 0; row < m_list->count(); ++row) {
        QListWidgetItem *item = m_list->item(row);
        const bool fits =
            item->text().contains(text, Qt::CaseInsensitive) || item->toolTip().contains(text, Qt::CaseInsensitive);
        item->setHidden(!fits);
        if (fits && !first)
            first = item;
    }
    if (const QListWidgetItem *current = m_list->currentItem(); !current || current->isHidden())
        m_list->setCurrentItem(first);
}

void PatternDialog::showChoice()
{
    const QListWidgetItem *item = m_list->currentItem();
    m_description->setText(item ? item->text() + QStringLiteral(": ") + item->toolTip() : QString());
    if (QWidget *ok = GetDlgItem(kControlOk))
        ok->setEnabled(item != nullptr);
    if (item)
        m_list->scrollToItem(item);
}

std::wstring PatternDialog::chosen() const
{
    const QListWidgetItem *item = m_list->currentItem();
    return item ? item->text().toStdWString() : std::wstring();
}

void PatternDialog::OnOK()
{
    if (m_list->currentItem())
        EndDialog(kOk);
}

bool runPatternDialog(const std::wstring &current, bool showCustom, std::wstring &chosen)
{
    if (!canShowDialogs())
        return false;
    PatternDialog dialog(current, showCustom, dialogOwner());
    if (dialog.DoModal() != CAdUiBaseDialog::kOk || dialog.chosen().empty())
        return false;
    chosen = dialog.chosen();
    return true;
}

} // namespace velmor
