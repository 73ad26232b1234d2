// Items of lists and trees, and keys.
#include "host/editor/ControlEvents.h"

#include "host/editor/TableEvents.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>
#include <QTreeView>

#include <algorithm>

namespace velmor {

namespace {

struct NamedKey {
    const wchar_t *name;
    int key;
    const char *text;
};

constexpr NamedKey kKeys[] = {
    {L"space", Qt::Key_Space, " "},  {L"delete", Qt::Key_Delete, ""}, {L"enter", Qt::Key_Return, "\r"},
    {L"escape", Qt::Key_Escape, ""}, {L"f2", Qt::Key_F2, ""},         {L"up", Qt::Key_Up, ""},
    {L"down", Qt::Key_Down, ""},     {L"left", Qt::Key_Left, ""},     {L"right", Qt::Key_Right, ""},
    {L"home", Qt::Key_Home, ""},     {L"end", Qt::Key_End, ""},
};

/// Where an item stands: by the texts on the way to it, the first of several alike; invalid when there is none.
QModelIndex indexOf(const QAbstractItemView &view, const ControlEvents::ItemPath &item)
{
    const QAbstractItemModel *model = view.model();
    QModelIndex found;
    for (const std::wstring &wanted : item) {
        const QString text = QString::fromStdWString(wanted);
        const int rows = model ? model->rowCount(found) : 0;
        int row = 0;
        while (row < rows && model->index(row, 0, found).data().toString() != text)
            ++row;
        if (row == rows)
            return {};
        found = model->index(row, 0, found);
    }
    return found;
}

void clickAt(QAbstractItemView &view, const QModelIndex &index)
{
    auto *tree = qobject_cast<QTreeView *>(&view);
    for (QModelIndex above = index.parent(); tree && above.isValid(); above = above.parent())
        tree->expand(above);
    view.scrollTo(index);
    // To the right of a check box, which stands at the left end of its item.
    const QRect field = view.visualRect(index) & view.viewport()->rect();
    const QPoint place(field.left() + field.width() * 3 / 4, field.center().y());
    const QPoint global = view.viewport()->mapToGlobal(place);
    for (const auto &[type, buttons] : {std::pair{QEvent::MouseButtonPress, Qt::MouseButtons(Qt::LeftButton)},
                                        std::pair{QEvent::MouseButtonRelease, Qt::MouseButtons(Qt::NoButton)}}) {
        QMouseEvent event(type, place, global, Qt::LeftButton, buttons, Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &event);
    }
}

QLineEdit *editorIn(const QAbstractItemView &view)
{
    const auto edits = view.findChildren<QLineEdit *>();
    const auto open = std::ranges::find_if(edits, [&](const QLineEdit *edit) { return edit->isVisibleTo(&view); });
    return open == edits.end() ? nullptr : *open;
}

} // namespace

ControlEvents::Problem ControlEvents::clickItem(int control, const ItemPath &item)
{
    if (auto table = tableOf(control)) {
        const Problem problem = unusable(control);
        return problem ? problem : table->clickItem(item);
    }
    QAbstractItemView *view = nullptr;
    if (auto problem = findUsable(control, view, "control.list"))
        return problem;
    const QModelIndex index = indexOf(*view, item);
    if (!index.isValid())
        return uiMessage("control.noText", {std::to_wstring(control), item.empty() ? std::wstring() : item.back()});
    clickAt(*view, index);
    return std::nullopt;
}

ControlEvents::Problem ControlEvents::tickItem(int control, const ItemPath &item, bool on)
{
    if (auto table = tableOf(control)) {
        const Problem problem = unusable(control);
        return problem ? problem : table->tickItem(item, on);
    }
    if (!expectTick(control, item, on))
        return std::nullopt;
    if (auto problem = clickItem(control, item))
        return problem;
    if (auto problem = pressKey(control, L"space"))
        return problem;
    return expectTick(control, item, on);
}

ControlEvents::Problem ControlEvents::editCell(int control, int row, int column, const std::wstring &text)
{
    if (auto table = tableOf(control)) {
        const Problem problem = unusable(control);
        return problem ? problem : table->editCell(row, column, text);
    }
    QAbstractItemView *view = nullptr;
    if (auto problem = findUsable(control, view, "control.list"))
        return problem;
    const QAbstractItemModel *model = view->model();
    if (!model || row < 0 || row >= model->rowCount() || column < 0 || column >= model->columnCount())
        return uiMessage("control.noCell", {std::to_wstring(control)});
    const QModelIndex index = model->index(row, column);
    QPointer<QLineEdit> edit;
    const auto open = [&](bool byKey) {
        if (edit)
            return;
        if (byKey)
            sendKey(*view, Qt::Key_F2, {});
        else
            clickAt(*view, index);
        edit = editorIn(*view);
    };
    // A click on the item that is selected already begins the wait for a double click, and F2 does nothing in it.
    const bool isCurrent = view->currentIndex() == index;
    open(isCurrent);
    open(!isCurrent);
    if (!edit)
        return uiMessage("control.noEditor", {std::to_wstring(control)});
    typeText(*edit, text);
    if (edit)
        sendKey(*edit, Qt::Key_Return, QStringLiteral("\r"));
    QApplication::sendPostedEvents(); // the toolkit's editors give their text a moment after Enter
    return std::nullopt;
}

ControlEvents::Problem ControlEvents::pressKey(int control, const std::wstring &key)
{
    QWidget *widget = nullptr;
    if (auto problem = findUsable(control, widget, "control.control"))
        return problem;
    const auto *known = std::ranges::find_if(kKeys, [&](const NamedKey &row) { return key == row.name; });
    if (known == std::end(kKeys))
        return uiMessage("control.noKey", {key});
    sendKey(*widget, known->key, QString::fromLatin1(known->text));
    return std::nullopt;
}

ControlEvents::Problem ControlEvents::expectItem(int control, const std::wstring &text) const
{
    if (const auto table = tableOf(control))
        return table->expectItem(text);
    QAbstractItemView *view = nullptr;
    if (auto problem = find(control, view, "control.list"))
        return problem;
    const std::wstring shown = view->currentIndex().siblingAtColumn(0).data().toString().toStdWString();
    if (shown != text)
        return uiMessage("control.item", {std::to_wstring(control), shown, text});
    return std::nullopt;
}

ControlEvents::Problem ControlEvents::expectTick(int control, const ItemPath &item, bool on) const
{
    if (const auto table = tableOf(control))
        return table->expectTick(item, on);
    QAbstractItemView *view = nullptr;
    if (auto problem = find(control, view, "control.list"))
        return problem;
    const QModelIndex index = indexOf(*view, item);
    if (!index.isValid())
        return uiMessage("control.noText", {std::to_wstring(control), item.empty() ? std::wstring() : item.back()});
    if ((index.data(Qt::CheckStateRole).toInt() == Qt::Checked) != on)
        return uiMessage(on ? "control.unticked" : "control.ticked", {std::to_wstring(control), item.back()});
    return std::nullopt;
}

} // namespace velmor
