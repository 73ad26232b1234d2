// The text label of the dialogs, which can show a colour, a bold face or an icon.
#pragma once

#include "controls/rules/EditBox.h"

#include <QIcon>
#include <QLabel>

#include <optional>
#include <string>

/// Without colours of its own it is painted in the desktop's. A text colour alone is lightened on a dark window until
/// it can be read; with a background of its own it is painted as it was given.
///
/// Alignment as of any label: centred vertically means one line, otherwise, and from the start, the text begins at the
/// top and is broken between words. The text is plain.
///
/// One line that is wider than the label shows whole in a tip, unless the label has a tip of its own.
///
/// Every setter has a redraw argument: true paints the label at once, false leaves that to the next paint.
class CXColorStatic : public QLabel {
    Q_OBJECT

public:
    /// In blue, green, red byte order.
    using ColorRef = AMSEdit::ColorRef;

    explicit CXColorStatic(QWidget *parent = nullptr);
    explicit CXColorStatic(const QString &text, QWidget *parent = nullptr);

    void SetTextColor(ColorRef colour, bool redraw = true);
    void SetBackgroundColor(ColorRef colour, bool redraw = true);
    /// As they were set; none while they are the desktop's.
    std::optional<ColorRef> GetTextColor() const { return m_crText; }
    std::optional<ColorRef> GetBackgroundColor() const { return m_crBackground; }
    /// Weight 700 or 400; face and size stay, and follow the desktop where they are its own.
    void SetBold(bool bold, bool redraw = true);
    /// Face, size and slant of the font, with the weight of SetBold. Null changes nothing.
    void SetFont(const QFont *font, bool redraw = true);
    /// faceName: its first 31 characters; null keeps the present font with another size. pointSize in points, as the
    /// screen has them.
    void SetFont(const wchar_t *faceName, int pointSize, bool redraw = true);
    /// Drawn centred in place of the text, in the desktop's size of large icons. A null icon: the text again.
    void SetIcon(const QIcon &icon, bool redraw = true);
    /// What the text's rectangle loses at its left and at its top, in pixels.
    void SetMargins(int x, int y, bool redraw = true);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override;
    int heightForWidth(int width) const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QColor TextColour() const;
    QSize WithMargins(const QSize &ofText) const;
    int IconSize() const;
    int TextFlags() const;
    bool IsCutOff() const;
    void Redraw(bool redraw);

    std::optional<ColorRef> m_crText; ///< none: the desktop's
    std::optional<ColorRef> m_crBackground;
    std::optional<QFont> m_font; ///< what it has of a font of its own
    bool m_bBold = false;
    int m_nXMargin = 0;
    int m_nYMargin = 0;
    QIcon m_icon;
};
