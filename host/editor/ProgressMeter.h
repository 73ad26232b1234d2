// The status bar's progress meter, and the one place where a long work looks whether the person wants it to stop.
#pragma once

#include <QElapsedTimer>
#include <QWidget>

#include <chrono>
#include <string>

class QLabel;
class QProgressBar;

namespace velmor {

class Session;

class ProgressMeter final : public QWidget {
    Q_OBJECT
public:
    explicit ProgressMeter(QWidget *parent = nullptr);

    void begin(const std::wstring &label, int from, int to);
    void setPosition(int position);
    void end();
    bool isActive() const { return m_active; }
    int position() const { return m_position; }

    /// True when Escape was pressed since begin. A few times a second it takes in what the person did: Escape is noted,
    /// the screen is painted, and every other key, click and drop is dropped, so that nothing can start from here.
    bool isBreakAsked();
    /// It is taking in events now.
    bool isLooking() const { return m_looking; }
    /// How long it waits between two looks; a test sets 0.
    void setInterval(std::chrono::milliseconds interval) { m_interval = interval; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void look();
    QLabel *m_label;
    QProgressBar *m_bar;
    QElapsedTimer m_sinceLook;
    std::chrono::milliseconds m_interval{60};
    int m_from = 0, m_to = 1, m_position = 0;
    bool m_active = false, m_break = false, m_looking = false;
};

/// A view that has a meter.
class ProgressOwner {
public:
    virtual ~ProgressOwner() = default;
    virtual ProgressMeter &progressMeter() = 0;
};

/// That of the session's view; null without one.
ProgressMeter *progressMeterOf(const Session *session);
/// A long work is looking for Escape: nothing else may start.
bool isLookingForBreak(const Session *session);

} // namespace velmor
