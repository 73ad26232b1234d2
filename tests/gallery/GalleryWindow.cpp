#include "tests/gallery/GalleryWindow.h"

#include "controls/AMSEdit.h"
#include "controls/ReadableColour.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QScrollArea>
#include <QStackedWidget>
#include <QStyle>
#include <QStyleFactory>
#include <QTimer>

namespace gallery {

namespace {

constexpr int kControlWidth = 190;
constexpr int kTextWidth = 180;
constexpr int kValueWidth = 150;
constexpr int kMostNotes = 100;
constexpr int kRefreshMilliseconds = 150;

struct Region {
    const char *name;
    const char *locale;
};
constexpr Region kRegions[] = {
    {"This desktop", ""},  {"English (United States)", "en_US"}, {"English (United Kingdom)", "en_GB"},
    {"Croatian", "hr_HR"}, {"German (Switzerland)", "de_CH"},    {"Czech", "cs_CZ"},
};

QPalette darkPalette()
{
    const QColor window(0x38, 0x3a, 0x3e), base(0x22, 0x23, 0x26), text(0xe8, 0xe8, 0xea), faint(0x98, 0x9a, 0x9e);
    QPalette palette(QColor(0x4a, 0x4d, 0x52), window);
    palette.setColor(QPalette::Mid, QColor(0x60, 0x63, 0x68));
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, faint);
    }
    palette.setColor(QPalette::ToolTipBase, base);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::Highlight, QColor(0x2f, 0x65, 0xca));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x6b, 0x9b, 0xfa));
    return palette;
}

QPalette lightPalette()
{
    QPalette palette(QColor(0xf3, 0xf3, 0xf4));
    palette.setColor(QPalette::PlaceholderText, QColor(0x70, 0x70, 0x70));
    palette.setColor(QPalette::Highlight, QColor(0x2f, 0x65, 0xca));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

QLabel *headingLabel(const QString &text)
{
    auto *label = new QLabel(text);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

/// A label whose text is read beside the control and never widens the window.
QLabel *readoutLabel(int width)
{
    auto *label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setFixedWidth(width);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

void setReadout(QLabel *label, const QString &text)
{
    const QString shown = label->fontMetrics().elidedText(text, Qt::ElideRight, label->width());
    if (label->text() != shown) {
        label->setText(shown);
        label->setToolTip(shown == text ? QString() : text);
    }
}

} // namespace

GalleryWindow::GalleryWindow(QWidget *parent) : QMainWindow(parent)
{
    setWindowTitle(tr("Velmor: controls"));
    auto *central = new QWidget;
    auto *all = new QVBoxLayout(central);
    all->setContentsMargins(16, 12, 16, 16);
    all->setSpacing(12);
    all->addWidget(MakeBar());
    auto *panes = new QHBoxLayout;
    panes->setSpacing(16);
    m_scroll = new QScrollArea;
    m_scroll->setWidgetResizable(true);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    panes->addWidget(m_scroll, 1);
    panes->addWidget(MakeOptionsPane());
    all->addLayout(panes, 1);
    setCentralWidget(central);
    connect(qApp, &QApplication::focusChanged, this, &GalleryWindow::OnFocusChanged);
    auto *clock = new QTimer(this);
    connect(clock, &QTimer::timeout, this, &GalleryWindow::Refresh);
    clock->start(kRefreshMilliseconds);
    Rebuild();
    resize(1240, 1000);
}

QWidget *GalleryWindow::MakeBar()
{
    auto *bar = new QWidget;
    auto *line = new QHBoxLayout(bar);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(8);
    m_region = new QComboBox;
    for (const auto &[name, locale] : kRegions)
        m_region->addItem(tr(name), QLatin1String(locale));
    m_theme = new QComboBox;
    m_theme->addItems({tr("As the desktop"), tr("Light"), tr("Dark")});
    auto *readOnly = new QCheckBox(tr("Read-only"));
    auto *disabled = new QCheckBox(tr("Disabled"));
    line->addWidget(new QLabel(tr("Region")));
    line->addWidget(m_region);
    line->addSpacing(16);
    line->addWidget(new QLabel(tr("Theme")));
    line->addWidget(m_theme);
    line->addSpacing(16);
    line->addWidget(readOnly);
    line->addSpacing(8);
    line->addWidget(disabled);
    line->addStretch(1);
    connect(m_region, &QComboBox::currentIndexChanged, this, &GalleryWindow::Rebuild);
    connect(m_theme, &QComboBox::currentIndexChanged, this, &GalleryWindow::SetTheme);
    connect(readOnly, &QCheckBox::toggled, this, [this](bool on) {
        m_bReadOnly = on;
        Refresh();
    });
    connect(disabled, &QCheckBox::toggled, this, [this](bool on) {
        m_bDisabled = on;
        Refresh();
    });
    return bar;
}

QWidget *GalleryWindow::MakeOptionsPane()
{
    auto *pane = new QWidget;
    pane->setFixedWidth(340);
    auto *column = new QVBoxLayout(pane);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    auto *title = new QHBoxLayout;
    title->addWidget(headingLabel(tr("Options of")));
    m_optionsOf = new QComboBox;
    title->addWidget(m_optionsOf, 1);
    column->addLayout(title);
    auto *scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_options = new QStackedWidget;
    scroll->setWidget(m_options);
    column->addWidget(scroll, 1);
    column->addWidget(headingLabel(tr("Beeps and messages")));
    m_notes = new QListWidget;
    m_notes->setFixedHeight(84);
    m_notes->setFocusPolicy(Qt::NoFocus);
    column->addWidget(m_notes);
    connect(m_optionsOf, &QComboBox::currentIndexChanged, this, &GalleryWindow::ShowOptionsOf);
    return pane;
}

void GalleryWindow::Rebuild()
{
    const QString locale = m_region->currentData().toString();
    m_settings = AMSEdit::CLocaleSettings(locale.isEmpty() ? QLocale() : QLocale(locale));
    m_shown.clear();
    m_optionsOf->clear();
    while (m_options->count() > 0)
        delete m_options->widget(0);
    m_page = new QWidget;
    auto *column = new QVBoxLayout(m_page);
    column->setContentsMargins(0, 0, 8, 0);
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(20);
    grid->setVerticalSpacing(10);
    int at = 0;
    for (const QString &heading : {QString(), QString(), tr("Text"), tr("Value"), tr("Valid")}) {
        auto *label = new QLabel(heading);
        label->setForegroundRole(QPalette::PlaceholderText);
        grid->addWidget(label, 0, at++);
    }
    const Setting setting{m_settings, [this](const QString &what) { Note(what); }};
    AddGroup(*grid, NumberRows(setting));
    AddGroup(*grid, TextRows(setting));
    AddGroup(*grid, DateRows(setting));
    AddGroup(*grid, SmallRows());
    AddGroup(*grid, ListRows(setting));
    AddGroup(*grid, TreeRows(setting));
    grid->setColumnStretch(5, 1);
    column->addLayout(grid);
    column->addStretch(1);
    m_scroll->setWidget(m_page);
    ShowOptionsOf(m_optionsOf->currentIndex());
    Refresh();
}

void GalleryWindow::AddGroup(QGridLayout &grid, const Group &group)
{
    auto *heading = headingLabel(group.title);
    heading->setContentsMargins(0, grid.rowCount() > 1 ? 14 : 0, 0, 0);
    grid.addWidget(heading, grid.rowCount(), 0, 1, 5);
    auto *line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Plain);
    line->setForegroundRole(QPalette::Mid);
    grid.addWidget(line, grid.rowCount(), 0, 1, 6);
    for (const Row &row : group.rows) {
        Shown shown{row, new QLabel(row.name), readoutLabel(kTextWidth), readoutLabel(kValueWidth), readoutLabel(50)};
        shown.name->setBuddy(row.control);
        shown.name->setMinimumWidth(110);
        const int at = grid.rowCount();
        grid.addWidget(shown.name, at, 0, row.wide ? Qt::AlignTop : Qt::Alignment());
        if (row.wide) {
            grid.addWidget(row.control, at, 1, 1, 4);
            for (QLabel *readout : {shown.text, shown.value, shown.valid}) {
                readout->setParent(m_page);
                readout->hide();
            }
            AddShown(shown);
            continue;
        }
        row.control->setFixedWidth(kControlWidth);
        grid.addWidget(row.control, at, 1);
        grid.addWidget(shown.text, at, 2);
        grid.addWidget(shown.value, at, 3);
        grid.addWidget(shown.valid, at, 4);
        AddShown(shown);
    }
}

void GalleryWindow::AddShown(const Shown &shown)
{
    m_shown.push_back(shown);
    m_options->addWidget(shown.row.options);
    m_optionsOf->addItem(shown.row.name);
}

void GalleryWindow::Refresh()
{
    for (const Shown &shown : m_shown) {
        setReadout(shown.text, shown.row.text());
        setReadout(shown.value, shown.row.value ? shown.row.value() : QStringLiteral("–"));
        const bool valid = !shown.row.valid || shown.row.valid();
        setReadout(shown.valid, !shown.row.valid ? QStringLiteral("–") : valid ? tr("yes") : tr("no"));
        QPalette colours;
        if (!valid)
            colours.setColor(QPalette::WindowText,
                             ReadableColour(QColor(0xB0, 0x20, 0x20), palette().color(QPalette::Window)));
        shown.valid->setPalette(colours);
        shown.row.control->setEnabled(!m_bDisabled);
        if (auto *edit = dynamic_cast<AMSEdit::CAMSEdit *>(shown.row.control))
            edit->setReadOnly(m_bReadOnly);
    }
}

void GalleryWindow::ShowOptionsOf(int row)
{
    m_options->setCurrentIndex(row);
    for (int page = 0; page < m_options->count(); ++page) // the others don't make the pane taller
        m_options->widget(page)->setSizePolicy(QSizePolicy::Preferred,
                                               page == row ? QSizePolicy::Preferred : QSizePolicy::Ignored);
    if (row >= 0 && m_scroll->widget() == m_page)
        m_scroll->ensureWidgetVisible(m_shown[static_cast<std::size_t>(row)].row.control);
    for (std::size_t at = 0; at < m_shown.size(); ++at) {
        QFont font = m_shown[at].name->font();
        font.setBold(static_cast<int>(at) == row);
        m_shown[at].name->setFont(font);
    }
}

bool GalleryWindow::ShowControl(const QString &name)
{
    const int row = m_optionsOf->findText(name);
    m_optionsOf->setCurrentIndex(row);
    return row >= 0;
}

void GalleryWindow::OnFocusChanged(QWidget *, QWidget *now)
{
    for (std::size_t at = 0; now && at < m_shown.size(); ++at) {
        if (m_shown[at].row.control == now || m_shown[at].row.control->isAncestorOf(now))
            m_optionsOf->setCurrentIndex(static_cast<int>(at));
    }
}

void GalleryWindow::Note(const QString &what)
{
    m_notes->addItem(what);
    if (m_notes->count() > kMostNotes)
        delete m_notes->takeItem(0);
    m_notes->scrollToBottom();
}

void GalleryWindow::SetTheme(int theme)
{
    m_theme->setCurrentIndex(theme);
    if (theme == 0) {
        QApplication::setPalette(QApplication::style()->standardPalette());
        return;
    }
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(theme == 1 ? lightPalette() : darkPalette());
}

} // namespace gallery
