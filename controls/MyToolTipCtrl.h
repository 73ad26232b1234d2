// Tool tips of a dialog's controls.
#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QString>

#include <string>
#include <vector>

class QWidget;

/// A tip's text that the toolkit shows as it is, whatever markup it looks like.
QString PlainTip(const std::wstring &text);

/// Each tool lives as long as this control and its window do: the dialog makes one of these at its start. Texts are
/// plain. A tool added once more takes the new text.
class CMyToolTipCtrl : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    /// Windows get the tool tips back that they had before.
    ~CMyToolTipCtrl() override;

    /// A tip for a whole window. False for a null window.
    bool AddWindowTool(QWidget *window, const std::wstring &text);
    /// A tip for a rectangle of a window, in its own pixels; there it comes before the window's tip. id tells the
    /// rectangles of a window apart. Where rectangles overlap the one added first counts. False for a null window.
    bool AddRectTool(QWidget *window, const std::wstring &text, const QRect &rect, unsigned id);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct WindowTool {
        QPointer<QWidget> window;
        QString before;
        QString text;
    };
    struct RectTool {
        QPointer<QWidget> window;
        QString text;
        QRect rect;
        unsigned id = 0;
    };

    std::vector<WindowTool> m_windowTools;
    std::vector<RectTool> m_rectTools;
};
