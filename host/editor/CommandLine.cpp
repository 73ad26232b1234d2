#include "host/editor/CommandLine.h"

#include "host/editor/Captions.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include <algorithm>

namespace velmor {

namespace {
constexpr int kShownLines = 4;
constexpr int kKeptLines = 2000;
} // namespace

CommandLine::CommandLine(QWidget *parent)
    : QWidget(parent), m_said(new QPlainTextEdit(this)), m_prompt(new QLabel(this)), m_input(new QLineEdit(this))
{
    m_said->setReadOnly(true);
    m_said->setMaximumBlockCount(kKeptLines);
    m_said->setFixedHeight(m_said->fontMetrics().lineSpacing() * kShownLines + 10);
    keepCaptioned(this, [this] {
        m_said->setAccessibleName(uiString("ui.command.history"));
        m_input->setAccessibleName(uiString("ui.command.input"));
    });
    m_said->setFocusPolicy(Qt::ClickFocus);
    m_input->installEventFilter(this);
    m_prompt->setTextFormat(Qt::PlainText);
    m_prompt->setBuddy(m_input);

    auto *row = new QHBoxLayout;
    row->addWidget(m_prompt);
    row->addWidget(m_input, 1);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(6, 2, 6, 4);
    column->setSpacing(3);
    column->addWidget(m_said);
    column->addLayout(row);
}

void CommandLine::setPrompt(const QString &text)
{
    m_prompt->setText(text);
}

void CommandLine::say(const QString &text)
{
    m_said->appendPlainText(text);
}

void CommandLine::type(const QString &text)
{
    m_input->setFocus();
    m_input->insert(text);
}

void CommandLine::focusInput()
{
    m_input->setFocus();
}

bool CommandLine::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    switch (static_cast<QKeyEvent *>(event)->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        give();
        return true;
    case Qt::Key_Escape:
        m_input->clear();
        Q_EMIT cancelled();
        return true;
    case Qt::Key_Up:
        recall(-1);
        return true;
    case Qt::Key_Down:
        recall(1);
        return true;
    default:
        return QWidget::eventFilter(watched, event);
    }
}

void CommandLine::give()
{
    const QString text = m_input->text().trimmed();
    m_input->clear();
    say(m_prompt->text() + QLatin1Char(' ') + text);
    if (!text.isEmpty())
        m_history.append(text);
    m_historyPlace = static_cast<int>(m_history.size());
    Q_EMIT entered(text);
}

void CommandLine::recall(int step)
{
    m_historyPlace = std::clamp(m_historyPlace + step, 0, static_cast<int>(m_history.size()));
    m_input->setText(m_history.value(m_historyPlace));
}

} // namespace velmor
