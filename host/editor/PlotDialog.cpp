#include "host/editor/PlotDialog.h"

#include "host/editor/Asker.h"
#include "host/editor/Captions.h"
#include "host/editor/SaveFileDialog.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDate>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmor {

namespace {

constexpr double kEdge = 12.0; ///< around the page in the preview, pixels

template <class Widget>
Widget *row(QFormLayout &form, const char *caption, Widget *widget)
{
    auto *label = new QLabel(uiString(caption), form.parentWidget());
    label->setBuddy(widget);
    form.addRow(label, widget);
    widget->setAccessibleName(uiString(caption).remove(QLatin1Char('&')));
    return widget;
}

} // namespace

PlotPreview::PlotPreview(Drawing &drawing, QWidget *parent) : QWidget(parent), m_drawing(drawing)
{
    setMinimumSize(320, 240);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void PlotPreview::show(const PlotSettings &settings, const std::optional<PlotPlan> &plan)
{
    m_settings = settings;
    m_plan = plan;
    update();
}

void PlotPreview::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Dark));
    if (!m_plan)
        return;
    const double dots =
        std::min((width() - 2.0 * kEdge) / m_plan->paper.width(), (height() - 2.0 * kEdge) / m_plan->paper.height());
    const QSizeF page = m_plan->paper * dots;
    painter.translate((width() - page.width()) / 2.0, (height() - page.height()) / 2.0);
    painter.fillRect(QRectF(QPointF(), page), Qt::white);
    painter.setRenderHint(QPainter::Antialiasing);
    paintPlot(painter, m_drawing, m_settings, *m_plan, dots);
}

PlotDialog::PlotDialog(Session &session, const Extents &shown, QWidget *parent)
    : QDialog(parent), m_session(session), m_shown(shown), m_area(new QComboBox(this)), m_paper(new QComboBox(this)),
      m_turned(new QComboBox(this)), m_printer(new QComboBox(this)), m_scale(new QLineEdit(this)),
      m_title(new QCheckBox(uiString("ui.plot.withTitle"), this)),
      m_north(new QCheckBox(uiString("ui.plot.withNorth"), this)), m_preview(new PlotPreview(*session.drawing(), this)),
      m_message(new QLabel(this)), m_save(new QPushButton(uiString("ui.plot.save"), this)),
      m_print(new QPushButton(uiString("ui.plot.print"), this))
{
    setWindowTitle(uiString("ui.plot.heading"));
    m_area->addItems({uiString("ui.plot.everything"), uiString("ui.plot.shown")});
    for (const auto &[name, size] :
         {std::pair{"A4", QPageSize::A4}, std::pair{"A3", QPageSize::A3}, std::pair{"A2", QPageSize::A2},
          std::pair{"A1", QPageSize::A1}, std::pair{"A0", QPageSize::A0}})
        m_paper->addItem(QString::fromLatin1(name), static_cast<int>(size));
    m_turned->addItems({uiString("ui.word.Landscape"), uiString("ui.word.Portrait")});
    m_printer->addItems(QPrinterInfo::availablePrinterNames());
    m_printer->setCurrentText(QPrinterInfo::defaultPrinterName());
    m_scale->setPlaceholderText(uiString("ui.plot.fit"));
    m_title->setChecked(true);
    m_north->setChecked(true);
    m_preview->setAccessibleName(uiString("ui.plot.preview"));
    m_message->setWordWrap(true);

    auto *side = new QWidget(this);
    auto *form = new QFormLayout(side);
    form->setContentsMargins(0, 0, 0, 0);
    row(*form, "ui.plot.area", m_area);
    row(*form, "ui.plot.paper", m_paper);
    row(*form, "ui.plot.turned", m_turned);
    row(*form, "ui.plot.scaleField", m_scale);
    form->addRow(m_title);
    form->addRow(m_north);
    row(*form, "ui.plot.printer", m_printer);
    form->addRow(m_message);
    side->setFixedWidth(std::max(280, side->sizeHint().width()));

    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(m_save, QDialogButtonBox::ActionRole);
    buttons->addButton(m_print, QDialogButtonBox::ActionRole);
    QPushButton *close = buttons->addButton(uiString("ui.plot.close"), QDialogButtonBox::RejectRole);
    for (QPushButton *button : {m_save, m_print, close})
        button->setAutoDefault(false);

    auto *middle = new QHBoxLayout;
    middle->addWidget(side);
    middle->addWidget(m_preview, 1);
    auto *column = new QVBoxLayout(this);
    column->addLayout(middle, 1);
    column->addWidget(buttons);

    for (QComboBox *combo : {m_area, m_paper, m_turned})
        connect(combo, &QComboBox::currentIndexChanged, this, &PlotDialog::refresh);
    connect(m_scale, &QLineEdit::textChanged, this, &PlotDialog::refresh);
    for (QCheckBox *box : {m_title, m_north})
        connect(box, &QCheckBox::toggled, this, &PlotDialog::refresh);
    connect(m_save, &QPushButton::clicked, this, &PlotDialog::savePdfFile);
    connect(m_print, &QPushButton::clicked, this, &PlotDialog::print);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    resize(900, 520);
    refresh();
}

PlotSettings PlotDialog::settings() const
{
    PlotSettings settings;
    settings.paper = static_cast<QPageSize::PageSizeId>(m_paper->currentData().toInt());
    settings.orientation = m_turned->currentIndex() == 0 ? QPageLayout::Landscape : QPageLayout::Portrait;
    if (m_area->currentIndex() == 1)
        settings.window = m_shown;
    const auto value = parseReal(m_scale->text().toStdWString());
    if (value && *value > 0.0)
        settings.denominator = *value < 1.0 ? 1.0 / *value : *value;
    settings.title = m_title->isChecked();
    settings.north = m_north->isChecked();
    settings.file = plotFileName(m_session);
    settings.date = QDate::currentDate().toString(Qt::ISODate);
    return settings;
}

void PlotDialog::tell(const std::wstring &text)
{
    m_message->setText(QString::fromStdWString(text));
}

void PlotDialog::refresh()
{
    const PlotSettings chosen = settings();
    const bool isWrong = !m_scale->text().trimmed().isEmpty() && chosen.denominator < 1.0;
    const auto plan = isWrong ? std::nullopt : planPlot(*m_session.drawing(), chosen);
    m_preview->show(chosen, plan);
    m_save->setEnabled(plan.has_value());
    m_print->setEnabled(plan.has_value() && m_printer->count() > 0);
    if (isWrong)
        tell(uiText("ui.plot.badScale"));
    else if (!plan)
        tell(uiText("ui.plot.empty"));
    else if (!plan->fits)
        tell(uiText("ui.plot.cut"));
    else
        tell(uiText("ui.plot.scale") + L" " + scaleText(plan->denominator).toStdWString());
}

void PlotDialog::savePdfFile()
{
    const QString file =
        askForSaveFile(this, uiString("ui.plot.save.title"), uiString("ui.filter.pdf"), QStringLiteral("pdf"));
    if (file.isEmpty())
        return;
    const PlotSettings chosen = settings();
    if (const auto plan = planPlot(*m_session.drawing(), chosen)) {
        const SaveResult saved = savePdf(*m_session.drawing(), file.toStdString(), chosen, *plan);
        tell(saved ? uiMessage("ui.plot.done", {file.toStdWString(), scaleText(plan->denominator).toStdWString()})
                   : wide(saved.message));
    }
}

void PlotDialog::print()
{
    const PlotSettings chosen = settings();
    const auto plan = planPlot(*m_session.drawing(), chosen);
    if (!plan)
        return;
    const QString printer = m_printer->currentText();
    const auto failure = printPlot(*m_session.drawing(), chosen, *plan, printer);
    tell(failure ? *failure
                 : uiMessage("ui.plot.done", {printer.toStdWString(), scaleText(plan->denominator).toStdWString()}));
}

} // namespace velmor
