#include "host/editor/CommandLine.h"

#include "host/drawing/dxf/AtomicFile.h"
#include "host/editor/Captions.h"
#include "host/services/Messages.h"

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace velmor {

namespace {

constexpr int kShownLines = 4;
constexpr int kKeptLines = 2000;
constexpr int kKeptHistory = 300;
constexpr int kShownCompletions = 10;

QString ui(std::string_view name)
{
    return QString::fromStdWString(uiText(name));
}

} // namespace

// --- The field
// -----------------------------------------------------------------------------------------------------------

CommandField::CommandField(QWidget *parent) : QLineEdit(parent), m_popup(new QListWidget(this))
{
    // A tip's window never takes the keyboard away from the field.
    m_popup->setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint);
    m_popup->setFocusPolicy(Qt::NoFocus);
    m_popup->setFrameStyle(QFrame::Box | QFrame::Plain);
    m_popup->setUniformItemSizes(true);
    m_popup->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_popup->hide();
    keepCaptioned(m_popup, [this] { m_popup->setAccessibleName(ui("ui.command.completions")); });
    connect(m_popup, &QListWidget::itemClicked, this, [this](QListWidgetItem *item) {
        setText(item->text());
        hideCompletions();
        setFocus();
    });
}

void CommandField::setCompletions(std::function<QStringList(const QString &)> completions)
{
    m_completions = std::move(completions);
}

void CommandField::hideCompletions()
{
    m_popup->hide();
    m_completing = false;
}

bool CommandField::areCompletionsShown() const
{
    return m_popup->isVisible();
}

/// Between quotation marks a blank belongs to the text.
bool CommandField::isBlankText() const
{
    return m_takesBlanks || text().left(cursorPosition()).count(QLatin1Char('"')) % 2 == 1;
}

bool CommandField::event(QEvent *event)
{
    // Tab belongs to the completion as long as something is typed; else it goes on to the next widget.
    if (event->type() == QEvent::KeyPress && !text().isEmpty()) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab) {
            complete(key->key() == Qt::Key_Tab ? 1 : -1);
            return true;
        }
    }
    // Where nothing is typed there is nothing of the field's own to work on: the keys are the window's.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool isOther = text().isEmpty() && (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
        const bool isShiftSpace = key->key() == Qt::Key_Space && key->modifiers() == Qt::ShiftModifier;
        if (isOther || (isShiftSpace && !isBlankText())) {
            event->ignore();
            return true;
        }
    }
    return QLineEdit::event(event);
}

bool CommandField::isForView(const QKeyEvent &event) const
{
    if (!text().isEmpty() || (event.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier)) != Qt::NoModifier)
        return false;
    switch (event.key()) {
    case Qt::Key_Home:
    case Qt::Key_Backspace:
    case Qt::Key_Left:
    case Qt::Key_Right:
        return true;
    case Qt::Key_Space:
        return !isBlankText();
    default:
        return false;
    }
}

void CommandField::keyPressEvent(QKeyEvent *event)
{
    if (isForView(*event)) {
        m_spaceIsViews = m_spaceIsViews || event->key() == Qt::Key_Space;
        // Whoever holds it to clear the field does not mean the view before.
        if (event->key() != Qt::Key_Backspace || !event->isAutoRepeat())
            Q_EMIT keyForView(*event);
        return;
    }
    if (m_spaceIsViews && !event->text().isEmpty()) {
        // Typed on before Space was let go: it was Enter. What it starts may go on for long, so this key comes again.
        m_spaceIsViews = false;
        QCoreApplication::postEvent(this, event->clone());
        Q_EMIT keyForView(QKeyEvent(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier));
        return;
    }
    switch (event->key()) {
    case Qt::Key_Space:
        if (isBlankText())
            break;
        if (event->modifiers() != Qt::NoModifier || event->isAutoRepeat())
            return;
        [[fallthrough]];
    case Qt::Key_Return:
    case Qt::Key_Enter:
        hideCompletions();
        Q_EMIT given();
        return;
    case Qt::Key_Escape:
        hideCompletions();
        clear();
        Q_EMIT escaped();
        return;
    case Qt::Key_Up:
    case Qt::Key_Down:
        hideCompletions();
        Q_EMIT recalled(event->key() == Qt::Key_Up ? -1 : 1);
        return;
    default:
        break;
    }
    const QString before = text();
    QLineEdit::keyPressEvent(event);
    if (text() != before)
        refreshCompletions();
}

void CommandField::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Space || !m_spaceIsViews)
        return QLineEdit::keyReleaseEvent(event);
    m_spaceIsViews = event->isAutoRepeat();
    Q_EMIT keyForView(*event);
}

void CommandField::focusOutEvent(QFocusEvent *event)
{
    hideCompletions();
    if (std::exchange(m_spaceIsViews, false))
        Q_EMIT spaceLost();
    QLineEdit::focusOutEvent(event);
}

void CommandField::refreshCompletions()
{
    hideCompletions();
    const QStringList found = m_completions && !text().isEmpty() ? m_completions(text()) : QStringList();
    m_popup->clear();
    m_popup->addItems(found);
    if (found.isEmpty() || (found.size() == 1 && found.front() == text()) || !isVisible())
        return;
    const int rows = std::min(kShownCompletions, static_cast<int>(found.size()));
    const int height = rows * m_popup->sizeHintForRow(0) + 2 * m_popup->frameWidth();
    const int width = std::clamp(m_popup->sizeHintForColumn(0) + 40, 160, std::max(160, this->width()));
    m_popup->resize(width, height);
    m_popup->move(mapToGlobal(QPoint(0, -height - 2)));
    m_popup->show();
}

void CommandField::complete(int step)
{
    if (!m_completing) {
        m_popup->clear();
        if (m_completions)
            m_popup->addItems(m_completions(text()));
    }
    const int count = m_popup->count();
    if (count == 0)
        return;
    const int at = m_completing ? m_popup->currentRow() + step : step > 0 ? 0 : count - 1;
    m_popup->setCurrentRow((at + count) % count);
    setText(m_popup->currentItem()->text());
    m_completing = true;
}

// --- The line
// ------------------------------------------------------------------------------------------------------------

CommandLine::CommandLine(QWidget *parent, std::filesystem::path historyFile)
    : QWidget(parent), m_said(new QPlainTextEdit(this)), m_prompt(new QLabel(this)), m_input(new CommandField(this)),
      m_historyFile(std::move(historyFile))
{
    m_said->setReadOnly(true);
    m_said->setMaximumBlockCount(kKeptLines);
    m_said->setFixedHeight(m_said->fontMetrics().lineSpacing() * kShownLines + 10);
    m_said->setFocusPolicy(Qt::ClickFocus);
    m_prompt->setTextFormat(Qt::RichText);
    m_prompt->setTextInteractionFlags(Qt::LinksAccessibleByMouse);
    keepCaptioned(this, [this] { retranslate(); });
    m_prompt->setBuddy(m_input);

    auto *row = new QHBoxLayout;
    row->addWidget(m_prompt);
    row->addWidget(m_input, 1);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(6, 2, 6, 4);
    column->setSpacing(3);
    column->addWidget(m_said);
    column->addLayout(row);

    connect(m_input, &CommandField::given, this, &CommandLine::give);
    connect(m_input, &CommandField::escaped, this, &CommandLine::cancelled);
    connect(m_input, &CommandField::recalled, this, &CommandLine::recall);
    connect(m_input, &CommandField::keyForView, this, &CommandLine::keyForView);
    connect(m_input, &CommandField::spaceLost, this, &CommandLine::spaceLost);
    connect(m_prompt, &QLabel::linkActivated, this, [this](const QString &link) {
        const auto at = static_cast<std::size_t>(link.toInt());
        if (at >= m_options.size())
            return;
        m_input->setText(m_options[at].answer);
        give();
        focusInput();
    });
    readHistory();
}

CommandLine::~CommandLine()
{
    writeHistory();
}

void CommandLine::retranslate()
{
    m_said->setAccessibleName(ui("ui.command.history"));
    m_input->setAccessibleName(ui("ui.command.input"));
}

void CommandLine::setPrompt(const QString &text, const std::vector<Option> &options, bool takesBlanks)
{
    m_promptText = text;
    m_options = options;
    m_input->setTakesBlanks(takesBlanks);
    m_input->hideCompletions();
    QString shown = text.toHtmlEscaped();
    const auto open = shown.indexOf(QLatin1Char('[')), close = shown.indexOf(QLatin1Char(']'), open);
    if (!options.empty() && open >= 0 && close > open) {
        QStringList links = shown.mid(open + 1, close - open - 1).split(QLatin1Char('/'));
        if (links.size() == static_cast<qsizetype>(options.size())) {
            for (qsizetype i = 0; i < links.size(); ++i)
                links[i] = QStringLiteral("<a href=\"%1\">%2</a>").arg(i).arg(links[i]);
            shown.replace(open + 1, close - open - 1, links.join(QLatin1Char('/')));
        }
    }
    m_prompt->setText(shown);
    fitPrompt();
    m_input->setAccessibleDescription(text);
}

void CommandLine::fitPrompt()
{
    m_prompt->setWordWrap(false);
    m_prompt->setMinimumWidth(0);
    m_prompt->setMaximumWidth(QWIDGETSIZE_MAX);
    const int room = std::max(100, width() * 6 / 10);
    if (m_prompt->sizeHint().width() <= room)
        return;
    m_prompt->setWordWrap(true);
    m_prompt->setFixedWidth(room);
}

void CommandLine::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fitPrompt();
}

void CommandLine::setCompletions(std::function<QStringList(const QString &)> completions)
{
    m_input->setCompletions(std::move(completions));
}

void CommandLine::say(const QString &text)
{
    m_said->appendPlainText(text);
}

void CommandLine::type(const QKeyEvent &event)
{
    m_input->setFocus();
    QKeyEvent copy(event.type(), event.key(), event.modifiers(), event.text());
    QCoreApplication::sendEvent(m_input, &copy);
}

void CommandLine::focusInput()
{
    m_input->setFocus();
}

QString CommandLine::transcript() const
{
    return m_said->toPlainText();
}

void CommandLine::toggleTranscript()
{
    if (m_transcript == nullptr) {
        auto *dialog = new QDialog(window());
        auto *view = new QPlainTextEdit(dialog);
        view->setReadOnly(true);
        view->setDocument(m_said->document());
        auto *copy = new QPushButton(dialog);
        keepCaptioned(dialog, [dialog, view, copy] {
            dialog->setWindowTitle(ui("ui.transcript.title"));
            view->setAccessibleName(ui("ui.command.history"));
            copy->setText(ui("ui.transcript.copy"));
        });
        connect(copy, &QPushButton::clicked, this, [this] { QApplication::clipboard()->setText(transcript()); });
        auto *column = new QVBoxLayout(dialog);
        column->addWidget(view);
        column->addWidget(copy, 0, Qt::AlignRight);
        dialog->resize(760, 520);
        m_transcript = dialog;
    }
    m_transcript->setVisible(!m_transcript->isVisible());
}

void CommandLine::give()
{
    const QString text = m_input->text().trimmed();
    m_input->clear();
    m_input->hideCompletions();
    say(m_promptText + QLatin1Char(' ') + text);
    if (!text.isEmpty() && (m_history.isEmpty() || m_history.back() != text))
        m_history.append(text);
    m_historyPlace = static_cast<int>(m_history.size());
    Q_EMIT entered(text);
}

void CommandLine::recall(int step)
{
    m_historyPlace = std::clamp(m_historyPlace + step, 0, static_cast<int>(m_history.size()));
    m_input->setText(m_history.value(m_historyPlace));
}

void CommandLine::readHistory()
{
    if (m_historyFile.empty())
        return;
    if (const ReadFileResult read = readWholeFile(m_historyFile))
        m_history = QString::fromStdString(read.bytes).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    m_historyPlace = static_cast<int>(m_history.size());
}

void CommandLine::writeHistory() const
{
    if (m_historyFile.empty() || m_history.isEmpty())
        return;
    std::error_code error;
    std::filesystem::create_directories(m_historyFile.parent_path(), error);
    const std::string text = m_history.mid(std::max<qsizetype>(0, m_history.size() - kKeptHistory))
                                 .join(QLatin1Char('\n'))
                                 .append(QLatin1Char('\n'))
                                 .toStdString();
    const std::string_view pieces[] = {text};
    writeFileAtomically(m_historyFile, pieces, false); // a history that can't be kept is no loss worth a word
}

} // namespace velmor
