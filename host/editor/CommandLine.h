// The command line under the drawing: what was said, the prompt with its options, and a field to answer it.
#pragma once

#include <QLineEdit>
#include <QStringList>
#include <QWidget>

#include <filesystem>
#include <functional>

class QFrame;
class QLabel;
class QListWidget;
class QPlainTextEdit;

namespace velmor {

/// The field of the command line. A blank ends the answer like Enter, unless the answer is a text; within quotation
/// marks it is always text. Tab takes what fits, one after another.
///
/// While nothing is typed, keys that would do nothing here are the drawing's: Home, Backspace, Left, Right, and Space,
/// which may be held to move the view. With Shift, Space is no answer but the window's key.
class CommandField final : public QLineEdit {
    Q_OBJECT
public:
    explicit CommandField(QWidget *parent = nullptr);
    void setTakesBlanks(bool takes) { m_takesBlanks = takes; }
    /// What can stand in the place of a typed text; asked anew after each key.
    void setCompletions(std::function<QStringList(const QString &)> completions);
    void hideCompletions();
    bool areCompletionsShown() const;

Q_SIGNALS:
    void given();
    void escaped();
    void recalled(int step);
    /// A key was pressed or let go that is the drawing's.
    void keyForView(const QKeyEvent &event);
    void spaceLost(); ///< the focus went away while Space was down; whoever has it now hears when it is let go

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void refreshCompletions();
    void complete(int step);
    bool isBlankText() const;
    bool isForView(const QKeyEvent &event) const;

    bool m_takesBlanks = false;
    bool m_spaceIsViews = false; ///< Space is down, and the drawing was told
    std::function<QStringList(const QString &)> m_completions;
    QListWidget *m_popup;
    bool m_completing = false; ///< the text is one of the list's; Tab goes on to the next
};

/// Enter gives the typed text (empty for a bare Enter), Escape cancels, Up and Down walk through what was typed.
class CommandLine final : public QWidget {
    Q_OBJECT
public:
    /// What was typed is kept in the file over restarts; an empty path keeps nothing.
    explicit CommandLine(QWidget *parent = nullptr, std::filesystem::path historyFile = {});
    ~CommandLine() override;

    /// An option of a prompt that can be clicked: what is shown of it within brackets, and what it answers.
    struct Option {
        QString shown, answer;
    };
    void setPrompt(const QString &text, const std::vector<Option> &options = {}, bool takesBlanks = false);
    /// The prompt as it is read.
    const QString &promptText() const { return m_promptText; }
    void setCompletions(std::function<QStringList(const QString &)> completions);
    /// Adds a line to what was said.
    void say(const QString &text);
    /// Takes over a key that was pressed elsewhere in the window.
    void type(const QKeyEvent &event);
    void focusInput();
    /// Opens all that was said in a window of its own, or closes it.
    void toggleTranscript();
    /// Everything that was said and typed.
    QString transcript() const;
    /// Reads its texts anew, in the language of now.
    void retranslate();

Q_SIGNALS:
    void entered(const QString &text);
    void cancelled();
    // Of the field
    void keyForView(const QKeyEvent &event);
    void spaceLost();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    /// A long prompt goes over several lines, so that there is room to answer it.
    void fitPrompt();
    void give();
    void recall(int step);
    void readHistory();
    void writeHistory() const;

    QPlainTextEdit *m_said;
    QLabel *m_prompt;
    CommandField *m_input;
    QWidget *m_transcript = nullptr;
    QString m_promptText;
    std::vector<Option> m_options;
    std::filesystem::path m_historyFile;
    QStringList m_history;
    int m_historyPlace = 0;
};

} // namespace velmor
