// Forms of options, one line each.
#pragma once

#include "controls/AMSEdit.h"

#include <QFormLayout>
#include <QWidget>

#include <functional>
#include <initializer_list>
#include <utility>

namespace gallery {

/// A form whose lines act on a control as soon as they are changed.
class Options : public QWidget {
    Q_OBJECT

public:
    explicit Options(QWidget *parent = nullptr);

    void Heading(const QString &text);
    void Check(const QString &label, bool value, std::function<void(bool)> set);
    void Number(const QString &label, int value, int min, int max, std::function<void(int)> set);
    void Text(const QString &label, const QString &value, std::function<void(const QString &)> set);
    /// Nothing happens for an empty text.
    void Character(const QString &label, wchar_t value, std::function<void(wchar_t)> set);
    void Choice(const QString &label, std::initializer_list<QString> choices, int index, std::function<void(int)> set);
    /// Any text, or one of the choices.
    void EditableChoice(const QString &label, const QStringList &choices, std::function<void(const QString &)> set);
    /// A colour of a short list; the desktop's until one is chosen.
    void Colour(const QString &label, std::function<void(std::uint32_t)> set);
    void Button(const QString &label, std::function<void()> press);
    void Row(const QString &label, QWidget *field);

private:
    QFormLayout *m_form;
};

/// The eight flags of the low byte: what happens when the focus leaves.
void AddFocusFlags(Options &options, std::function<void(unsigned add, unsigned remove)> modify);
/// Text and background colour of an edit.
void AddColours(Options &options, AMSEdit::CEditBox &edit);

} // namespace gallery
