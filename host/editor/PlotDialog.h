// Printing and PDF with a preview of the page.
#pragma once

#include "host/editor/Plot.h"
#include "host/editor/Session.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace velmor {

/// Shows the page as it will be, at whatever size it has.
class PlotPreview final : public QWidget {
    Q_OBJECT
public:
    PlotPreview(Drawing &drawing, QWidget *parent);
    void show(const PlotSettings &settings, const std::optional<PlotPlan> &plan);
    QSize sizeHint() const override { return {520, 400}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Drawing &m_drawing;
    PlotSettings m_settings;
    std::optional<PlotPlan> m_plan;
};

class PlotDialog final : public QDialog {
    Q_OBJECT
public:
    /// shown is what the window shows, offered beside everything. The session's drawing must outlive the dialog.
    PlotDialog(Session &session, const Extents &shown, QWidget *parent);

    PlotSettings settings() const;

private:
    void refresh();
    void savePdfFile();
    void print();
    void tell(const std::wstring &text);

    Session &m_session;
    Extents m_shown;
    QComboBox *m_area, *m_paper, *m_turned, *m_printer;
    QLineEdit *m_scale;
    QCheckBox *m_title, *m_north;
    PlotPreview *m_preview;
    QLabel *m_message;
    QPushButton *m_save, *m_print;
};

} // namespace velmor
