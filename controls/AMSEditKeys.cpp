// Keys, input methods, drops and the context menu of a validating edit.
#include "controls/AMSEdit.h"

#include "controls/WideText.h"
#include "controls/rules/NumberText.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

#include <algorithm>
#include <array>
#include <utility>

namespace AMSEdit {

namespace {

constexpr auto kKeys = std::to_array<std::pair<int, EditKey>>({
    {Qt::Key_Left, kKeyLeft},
    {Qt::Key_Right, kKeyRight},
    {Qt::Key_Up, kKeyUp},
    {Qt::Key_Down, kKeyDown},
    {Qt::Key_Home, kKeyHome},
    {Qt::Key_End, kKeyEnd},
    {Qt::Key_PageUp, kKeyPageUp},
    {Qt::Key_PageDown, kKeyPageDown},
    {Qt::Key_Delete, kKeyDelete},
});

/// True for a key that enters its text, as the toolkit itself tells it.
bool entersText(const QKeyEvent &event)
{
    if (event.text().isEmpty())
        return false;
    const QChar first = event.text().front();
    if (first.category() == QChar::Other_Format)
        return true;
    const auto modifiers = event.modifiers();
    if (modifiers == Qt::ControlModifier || modifiers == (Qt::ShiftModifier | Qt::ControlModifier))
        return false;
    return first.isPrint() || first.category() == QChar::Other_PrivateUse || first.isHighSurrogate();
}

/// The toolkit's own handling of a key while it lasts.
class KeyUnderWay {
public:
    KeyUnderWay(QKeyEvent *&place, QKeyEvent *event) : m_place(place), m_before(std::exchange(place, event)) {}
    KeyUnderWay(const KeyUnderWay &) = delete;
    KeyUnderWay &operator=(const KeyUnderWay &) = delete;
    ~KeyUnderWay() { m_place = m_before; }

private:
    QKeyEvent *&m_place;
    QKeyEvent *m_before;
};

} // namespace

void CAMSEdit::keyPressEvent(QKeyEvent *event)
{
    if (isReadOnly()) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    m_composedOver.reset();
    const KeyUnderWay key(m_pKeyEvent, event);
    if (entersText(*event)) {
        for (const wchar_t character : ToWide(event->text()))
            OnChar(character, 1, 0);
        return;
    }
    // These keys alone are no command of the desktop, which takes long to find out.
    const bool alone = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const auto found = std::ranges::find(kKeys, event->key(), &std::pair<int, EditKey>::first);
    if (alone && event->key() == Qt::Key_Backspace)
        OnChar(kKeyBackspace, 1, 0);
    else if (alone && found != kKeys.end())
        OnKeyDown(found->second, 1, 0);
    else if (HandleCommandKey(event))
        return;
    else if (found != kKeys.end())
        OnKeyDown(found->second, 1, 0);
    else
        QLineEdit::keyPressEvent(event);
}

bool CAMSEdit::HandleCommandKey(QKeyEvent *event)
{
    const int length = static_cast<int>(GetWindowText().size());
    if (event->matches(QKeySequence::Undo)) {
        undo();
    } else if (event->matches(QKeySequence::Redo)) {
        redo();
    } else if (event->matches(QKeySequence::Cut)) {
        cut();
    } else if (event->matches(QKeySequence::Paste)) {
        paste();
    } else if (event->matches(QKeySequence::DeleteEndOfLine)) {
        Clear(GetSel().start, length);
    } else if (event->matches(QKeySequence::DeleteCompleteLine)) {
        Clear(0, length);
    } else if (event->matches(QKeySequence::Delete) || event->matches(QKeySequence::DeleteEndOfWord)) {
        OnKeyDown(kKeyDelete, 1, 0);
    } else if (event->key() == Qt::Key_Backspace || event->matches(QKeySequence::DeleteStartOfWord) ||
               event->matches(QKeySequence::Backspace)) {
        OnChar(kKeyBackspace, 1, 0);
    } else {
        return false;
    }
    return true;
}

void CAMSEdit::Clear(int start, int end)
{
    SetSel(start, end);
    if (hasSelectedText())
        copy();
    m_pKeyEvent = nullptr; // its own meaning goes beyond the selection
    OnClear();
}

void CAMSEdit::DefaultChar(const EditMessage &message)
{
    if (isReadOnly())
        return;
    const auto character = static_cast<wchar_t>(message.code);
    const bool printable = IsPrintable(character);
    // The key goes to the toolkit once, and only where it stands for this character alone.
    const QString keyText = m_pKeyEvent ? m_pKeyEvent->text() : QString();
    const bool isKey = keyText.size() == 1 && keyText.front().unicode() == message.code;
    if (m_pKeyEvent && (printable ? isKey : !entersText(*m_pKeyEvent)))
        QLineEdit::keyPressEvent(std::exchange(m_pKeyEvent, nullptr));
    else if (printable)
        QLineEdit::insert(ToQString(std::wstring(1, character)));
    else if (character == kKeyBackspace)
        QLineEdit::backspace();
}

void CAMSEdit::DefaultKeyDown(const EditMessage &message)
{
    const auto key = std::ranges::find(kKeys, message.code, [](const auto &row) { return unsigned{row.second}; });
    if (key == kKeys.end())
        return;
    const bool underWay =
        m_pKeyEvent && !entersText(*m_pKeyEvent) &&
        (m_pKeyEvent->key() == key->first || (message.code == kKeyDelete && m_pKeyEvent->key() != Qt::Key_Backspace));
    const bool plain = !underWay || (m_pKeyEvent->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (hasSelectedText() && plain && (message.code == kKeyLeft || message.code == kKeyRight)) {
        // A plain arrow goes to that end of the selection; the toolkit would step on from the caret.
        setCursorPosition(message.code == kKeyLeft ? selectionStart() : selectionEnd());
    } else if (underWay) {
        QLineEdit::keyPressEvent(std::exchange(m_pKeyEvent, nullptr));
    } else {
        QKeyEvent event(QEvent::KeyPress, key->first, Qt::NoModifier);
        QLineEdit::keyPressEvent(&event);
    }
}

void CAMSEdit::inputMethodEvent(QInputMethodEvent *event)
{
    if (isReadOnly()) {
        event->ignore();
        return;
    }
    if (event->replacementLength() > 0) {
        PasteBy([=, this] { QLineEdit::inputMethodEvent(event); });
        return;
    }
    const Route route(*this);
    const bool composes = !event->preeditString().isEmpty();
    const bool commits = !event->commitString().isEmpty();
    if (commits || !composes) {
        // What was being composed goes; then each character comes as if it were typed.
        QInputMethodEvent composed;
        QLineEdit::inputMethodEvent(&composed);
        if (const auto selection = std::exchange(m_composedOver, std::nullopt))
            SetSel(selection->start, selection->end);
        for (const wchar_t character : ToWide(event->commitString()))
            OnChar(character, 1, 0);
    }
    if (composes) {
        // The toolkit would remove the selection, which only the rules may: it waits for what is entered.
        if (hasSelectedText()) {
            m_composedOver = GetSel();
            setCursorPosition(selectionStart());
        }
        QInputMethodEvent composing(event->preeditString(), event->attributes());
        QLineEdit::inputMethodEvent(&composing);
    }
}

void CAMSEdit::dropEvent(QDropEvent *event)
{
    PasteBy([=, this] { QLineEdit::dropEvent(event); });
}

void CAMSEdit::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::MiddleButton)
        PasteBy([=, this] { QLineEdit::mouseReleaseEvent(event); });
    else
        QLineEdit::mouseReleaseEvent(event);
}

QMenu *CAMSEdit::createStandardContextMenu()
{
    auto *menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("qt_edit_menu"));
    const auto add = [this, menu](const char *name, const char *label, const char *icon, bool enabled,
                                  QKeySequence::StandardKey key, auto slot) {
        QString shown = QLineEdit::tr(label);
        if (const QString keys = QKeySequence(key).toString(QKeySequence::NativeText); !keys.isEmpty())
            shown += u'\t' + keys;
        QAction *action = menu->addAction(QIcon::fromTheme(QLatin1String(icon)), shown, this, slot);
        action->setObjectName(QLatin1String(name));
        action->setEnabled(enabled);
    };
    const bool editable = !isReadOnly(), selected = hasSelectedText();
    add("undo", "&Undo", "edit-undo", isUndoAvailable(), QKeySequence::Undo, &CAMSEdit::undo);
    add("redo", "&Redo", "edit-redo", isRedoAvailable(), QKeySequence::Redo, &CAMSEdit::redo);
    menu->addSeparator();
    add("cut", "Cu&t", "edit-cut", editable && selected, QKeySequence::Cut, &CAMSEdit::cut);
    add("copy", "&Copy", "edit-copy", selected, QKeySequence::Copy, &QLineEdit::copy);
    add("paste", "&Paste", "edit-paste", editable && !QGuiApplication::clipboard()->text().isEmpty(),
        QKeySequence::Paste, &CAMSEdit::paste);
    add("clear", "Delete", "edit-delete", editable && selected, QKeySequence::UnknownKey, &CAMSEdit::clearSelection);
    menu->addSeparator();
    add("select-all", "Select All", "edit-select-all", !text().isEmpty() && selectedText() != text(),
        QKeySequence::SelectAll, &QLineEdit::selectAll);
    return menu;
}

void CAMSEdit::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu *menu = createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(event->globalPos());
}

} // namespace AMSEdit
