#include "tests/controls/WidgetEditBox.h"

#include "controls/WideText.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QMenu>

#include <cstdlib>
#include <map>
#include <memory>

using namespace AMSEdit;

ToolkitForTests::ToolkitForTests()
{
    if (!qApp) {
        static int count = 1;
        static char name[] = "edits";
        static char *arguments[] = {name, nullptr};
        if (!std::getenv("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        static auto *application = new QApplication(count, arguments);
        application->setStyle(QStringLiteral("fusion"));
    }
}

void WidgetEditBox::SetClipboard(const std::wstring &text)
{
    QApplication::clipboard()->setText(ToQString(text));
}

std::wstring WidgetEditBox::Clipboard() const
{
    return ToWide(QApplication::clipboard()->text());
}

void WidgetEditBox::Type(wchar_t character)
{
    int key = Qt::Key_unknown;
    Qt::KeyboardModifiers modifiers;
    if (character == kKeyBackspace)
        key = Qt::Key_Backspace;
    else if (character < 0x80)
        key = QChar(static_cast<char16_t>(character)).toUpper().unicode();
    const QString text = character == kKeyBackspace ? QStringLiteral("\b") : ToQString(std::wstring(1, character));
    QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(this, &event);
}

void WidgetEditBox::PressKey(unsigned key)
{
    static const std::map<unsigned, int> keys = {
        {kKeyDelete, Qt::Key_Delete}, {kKeyLeft, Qt::Key_Left}, {kKeyRight, Qt::Key_Right}, {kKeyHome, Qt::Key_Home},
        {kKeyEnd, Qt::Key_End},       {kKeyUp, Qt::Key_Up},     {kKeyDown, Qt::Key_Down},
    };
    QKeyEvent event(QEvent::KeyPress, keys.at(key), Qt::NoModifier);
    QApplication::sendEvent(this, &event);
}

void WidgetEditBox::Press(const QKeySequence &keys)
{
    QKeyEvent event(QEvent::KeyPress, keys[0].key(), keys[0].keyboardModifiers());
    QApplication::sendEvent(this, &event);
}

void WidgetEditBox::PressCut()
{
    Press(QKeySequence::Cut);
}

void WidgetEditBox::PressPaste()
{
    Press(QKeySequence::Paste);
}

void WidgetEditBox::PressClear()
{
    const std::unique_ptr<QMenu> menu(createStandardContextMenu());
    menu->findChild<QAction *>(QStringLiteral("clear"))->trigger();
}

void WidgetEditBox::PressUndo()
{
    Press(QKeySequence::Undo);
}

void WidgetEditBox::PressRedo()
{
    Press(QKeySequence::Redo);
}

void WidgetEditBox::SetFocus()
{
    ++focusTakes;
    journal.push_back(L"focus");
    CAMSEdit::SetFocus();
}

void WidgetEditBox::Default(const EditMessage &message)
{
    defaults.push_back(message);
    CAMSEdit::Default(message);
}

void WidgetEditBox::MessageBeep(unsigned sound)
{
    ++beeps;
    journal.push_back(L"beep:" + std::to_wstring(sound));
}

void WidgetEditBox::AfxMessageBox(const std::wstring &text, unsigned icon)
{
    messages.push_back(text);
    journal.push_back(L"message:" + std::to_wstring(icon));
}

void WidgetEditBox::PlatformSetText(const std::wstring &text)
{
    ++sets;
    journal.push_back(L"set:" + text);
    CAMSEdit::PlatformSetText(text);
}

void WidgetEditBox::PlatformCopy()
{
    journal.push_back(L"copy");
    CAMSEdit::PlatformCopy();
}
