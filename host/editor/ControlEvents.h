// Works the controls of a dialog as a person would, by the controls' numbers.
//
// Each operation answers nothing when it was done, else one line that says why not: no such control, a control of
// another kind, one that is disabled or hidden, an item that it doesn't have.
#pragma once

#include "contracts/HostDialog.h"

#include <QEvent>

#include <optional>
#include <string>
#include <vector>

namespace velmor {

class TableEvents;

class ControlEvents {
public:
    using Problem = std::optional<std::wstring>;
    explicit ControlEvents(CAdUiBaseDialog &dialog) : m_dialog(dialog) {}

    /// A click on any button.
    Problem click(int control);
    /// Turns a check box or a radio button by a click when it stands otherwise.
    Problem check(int control, bool on);
    /// Chooses an item of a combo box: by its item data when its items carry whole numbers, else by index from 0.
    Problem choose(int control, int value);
    Problem chooseText(int control, const std::wstring &text);
    /// Replaces the text of an edit by typing.
    Problem type(int control, const std::wstring &text);
    /// Selects rows of a list, by index from 0, and no others.
    /// What is said of lists and trees from here on holds for any control that is a table to a screen reader, with the
    /// rules of TableEvents.
    Problem selectRows(int control, const std::vector<int> &rows);

    // Items of a list or a tree go by the text of their first column; each further text goes one level down in a tree.
    using ItemPath = std::vector<std::wstring>;
    /// A click on the item.
    Problem clickItem(int control, const ItemPath &item);
    /// Turns the item's check box with the space bar, after a click on the item, when it stands otherwise.
    Problem tickItem(int control, const ItemPath &item, bool on);
    /// A cell edited in place: a click or F2, whichever opens an editor, the text in place of what stands there, Enter.
    Problem editCell(int control, int row, int column, const std::wstring &text);
    /// A key by its name: space, delete, enter, escape, f2, up, down, left, right, home, end.
    Problem pressKey(int control, const std::wstring &key);

    Problem expectItem(int control, const std::wstring &text) const;
    Problem expectTick(int control, const ItemPath &item, bool on) const;
    Problem expectText(int control, const std::wstring &text) const;
    Problem expectChecked(int control, bool on) const;
    Problem expectEnabled(int control, bool on) const;
    Problem expectRows(int control, int count) const;
    Problem expectCell(int control, int row, int column, const std::wstring &text) const;

    /// What a control shows: a button's, a label's or a group's text, an edit's, a combo box's current item.
    Problem text(int control, std::wstring &shown) const;

private:
    template <class Widget>
    Problem find(int control, Widget *&widget, const char *kind) const;
    template <class Widget>
    Problem findUsable(int control, Widget *&widget, const char *kind) const;
    /// Nothing for a control that is none, or is an item view of the toolkit.
    std::optional<TableEvents> tableOf(int control) const;
    /// What speaks against working the control: it is hidden or disabled.
    Problem unusable(int control) const;
    Problem chooseIndex(class QComboBox &combo, int index);
    /// What sendKey and sendFocus do is what the toolkit does for a person.
    static void sendKey(QWidget &widget, int key, const QString &text);
    static void sendFocus(QWidget &widget, QEvent::Type kind);
    static void typeText(class QLineEdit &edit, const std::wstring &text);

    CAdUiBaseDialog &m_dialog;
};

} // namespace velmor
