// The command line under the drawing: what was said, the prompt, and a field to answer it.
#pragma once

#include <QStringList>
#include <QWidget>

class QLabel;
class QLineEdit;
class QPlainTextEdit;

namespace velmor {

/// Enter gives the typed text (empty for a bare Enter), Escape cancels, Up and Down walk through what was typed.
class CommandLine final : public QWidget {
    Q_OBJECT
public:
    explicit CommandLine(QWidget *parent = nullptr);
    void setPrompt(const QString &text);
    /// Adds a line to what was said.
    void say(const QString &text);
    /// Takes over a key that was pressed elsewhere in the window.
    void type(const QString &text);
    void focusInput();

Q_SIGNALS:
    void entered(const QString &text);
    void cancelled();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void give();
    void recall(int step);

    QPlainTextEdit *m_said;
    QLabel *m_prompt;
    QLineEdit *m_input;
    QStringList m_history;
    int m_historyPlace = 0;
};

} // namespace velmor
