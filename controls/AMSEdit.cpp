#include "controls/AMSEdit.h"

#include "controls/WideText.h"

#include <QApplication>
#include <QMessageBox>

#include <algorithm>

namespace AMSEdit {

namespace {

/// Above 0 while a box takes its focus back or shows its message.
int g_nFocusTakers = 0;

struct FocusTaking {
    FocusTaking() { ++g_nFocusTakers; }
    ~FocusTaking() { --g_nFocusTakers; }
};

bool isPair(const QString &text, qsizetype at)
{
    return text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
}

/// Characters in front of a position of the toolkit, which counts some of them as two.
int charactersBefore(const QString &text, qsizetype position)
{
    int characters = 0;
    for (qsizetype at = 0; at < position && at < text.size(); at += isPair(text, at) ? 2 : 1)
        ++characters;
    return characters;
}

/// The toolkit's position behind so many characters; at most the end.
int positionBehind(const QString &text, int characters)
{
    qsizetype at = 0;
    for (; characters > 0 && at < text.size(); --characters)
        at += isPair(text, at) ? 2 : 1;
    return static_cast<int>(at);
}

} // namespace

CAMSEdit::CAMSEdit(QWidget *parent) : QLineEdit(parent)
{
    connect(this, &QLineEdit::textChanged, this, &CAMSEdit::OnTextChanged);
}

CAMSEdit::~CAMSEdit() = default;

std::wstring CAMSEdit::GetWindowText() const
{
    return ToWide(text());
}

Selection CAMSEdit::GetSel() const
{
    const QString shown = text();
    if (!hasSelectedText()) {
        const int caret = charactersBefore(shown, cursorPosition());
        return {caret, caret};
    }
    return {charactersBefore(shown, selectionStart()), charactersBefore(shown, selectionEnd())};
}

void CAMSEdit::SetSel(int start, int end, bool)
{
    const QString shown = text();
    start = positionBehind(shown, start);
    end = positionBehind(shown, end);
    if (start != end)
        setSelection(start, end - start);
    else if (hasSelectedText() || cursorPosition() != start)
        setCursorPosition(start);
}

unsigned CAMSEdit::GetStyle() const
{
    return isReadOnly() ? kStyleReadOnly : 0;
}

bool CAMSEdit::IsWindowEnabled() const
{
    return isEnabled();
}

void CAMSEdit::SetFocus()
{
    const FocusTaking taking;
    setFocus(Qt::OtherFocusReason);
}

void CAMSEdit::MessageBeep(unsigned)
{
    QApplication::beep();
}

void CAMSEdit::AfxMessageBox(const std::wstring &message, unsigned)
{
    const FocusTaking taking;
    QMessageBox::warning(this, window()->windowTitle(), ToQString(message));
}

void CAMSEdit::PlatformSetText(const std::wstring &newText)
{
    QLineEdit::setText(ToQString(newText));
}

void CAMSEdit::PlatformReplaceSel(const std::wstring &newText)
{
    QLineEdit::insert(ToQString(newText));
}

void CAMSEdit::PlatformCopy()
{
    QLineEdit::copy();
}

void CAMSEdit::Default(const EditMessage &message)
{
    switch (message.kind) {
    case EditMessage::Kind::Char:
        DefaultChar(message);
        break;
    case EditMessage::Kind::KeyDown:
        DefaultKeyDown(message);
        break;
    case EditMessage::Kind::KillFocus:
        DefaultKillFocus();
        break;
    case EditMessage::Kind::Paste:
        if (m_fnPaste)
            m_fnPaste();
        else if (!isReadOnly())
            QLineEdit::paste();
        break;
    }
}

void CAMSEdit::focusOutEvent(QFocusEvent *event)
{
    const bool stays = event->reason() == Qt::PopupFocusReason || event->reason() == Qt::MenuBarFocusReason;
    if (stays || g_nFocusTakers > 0) {
        QLineEdit::focusOutEvent(event);
        return;
    }
    m_pFocusEvent = event;
    OnKillFocus(dynamic_cast<CAMSEdit *>(QApplication::focusWidget()));
    m_pFocusEvent = nullptr;
}

void CAMSEdit::DefaultKillFocus()
{
    if (!m_pFocusEvent)
        return;
    // Who hears that editing is finished may set this box: not a change by the user.
    const bool blocked = blockSignals(m_bSignalsWereBlocked);
    const QString before = text();
    QLineEdit::focusOutEvent(m_pFocusEvent);
    if (text() != before)
        HandleForeignChange();
    blockSignals(blocked);
    m_before = Look();
}

CAMSEdit::Seen CAMSEdit::Look() const
{
    return {text(), cursorPosition(), selectionStart(), selectionLength()};
}

void CAMSEdit::RouteBegins()
{
    m_before = Look();
    m_bSignalsWereBlocked = blockSignals(true);
}

void CAMSEdit::RouteEnds(Route::By by)
{
    blockSignals(m_bSignalsWereBlocked);
    const Seen before = std::exchange(m_before, {}), now = Look();
    // A listener may change the text, also past this box.
    const std::optional<QString> telling = std::exchange(m_telling, now.text);
    if (now.text != before.text) {
        if (by == Route::By::User) {
            setModified(true);
            Q_EMIT textEdited(now.text);
        }
        Q_EMIT textChanged(now.text);
    }
    if (now.cursor != before.cursor)
        Q_EMIT cursorPositionChanged(before.cursor, now.cursor);
    if (now.selectionStart != before.selectionStart || now.selectionLength != before.selectionLength)
        Q_EMIT selectionChanged();
    m_telling = telling;
}

void CAMSEdit::OnTextChanged()
{
    const QString given = text();
    if (m_telling == given || IsInRoute())
        return;
    HandleForeignChange();
    // Those who are told after this box still hear of the text as it was given.
    if (text() != given)
        QMetaObject::invokeMethod(
            this, [this] { Q_EMIT textChanged(text()); }, Qt::QueuedConnection);
}

void CAMSEdit::setText(const QString &newText)
{
    SetWindowText(ToWide(newText));
}

void CAMSEdit::clear()
{
    SetWindowText({});
}

void CAMSEdit::cut()
{
    if (!isReadOnly())
        OnCut();
}

void CAMSEdit::paste()
{
    OnPaste(0, 0);
}

void CAMSEdit::undo()
{
    if (!isReadOnly())
        OnUndo();
}

void CAMSEdit::redo()
{
    if (!isReadOnly())
        OnRedo();
}

void CAMSEdit::clearSelection()
{
    if (!isReadOnly())
        OnClear();
}

void CAMSEdit::PasteBy(std::function<void()> platform)
{
    m_fnPaste = std::move(platform);
    OnPaste(0, 0);
    m_fnPaste = nullptr;
}

} // namespace AMSEdit
