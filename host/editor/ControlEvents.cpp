#include "host/editor/ControlEvents.h"

#include "host/editor/TableEvents.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

namespace velmor {

namespace {

std::wstring numbered(int control)
{
    return std::to_wstring(control);
}

bool carriesNumbers(const QComboBox &combo)
{
    for (int i = 0; i < combo.count(); ++i) {
        bool whole = false;
        const QVariant data = combo.itemData(i);
        if (data.isValid())
            data.toInt(&whole);
        if (!whole || (data.typeId() != QMetaType::Int && data.typeId() != QMetaType::UInt &&
                       data.typeId() != QMetaType::LongLong))
            return false;
    }
    return combo.count() > 0;
}

} // namespace

void ControlEvents::sendKey(QWidget &widget, int key, const QString &text)
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(&widget, &press);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QApplication::sendEvent(&widget, &release);
}

void ControlEvents::sendFocus(QWidget &widget, QEvent::Type kind)
{
    QFocusEvent event(kind, Qt::TabFocusReason);
    QApplication::sendEvent(&widget, &event);
}

void ControlEvents::typeText(QLineEdit &edit, const std::wstring &text)
{
    edit.selectAll();
    if (text.empty())
        sendKey(edit, Qt::Key_Delete, {});
    for (const QChar c : QString::fromStdWString(text))
        sendKey(edit, c.isLetterOrNumber() ? c.toUpper().unicode() : c.unicode(), c);
}

template <class Widget>
ControlEvents::Problem ControlEvents::find(int control, Widget *&widget, const char *kind) const
{
    QWidget *item = m_dialog.GetDlgItem(control);
    if (!item)
        return uiMessage("control.none", {numbered(control)});
    widget = qobject_cast<Widget *>(item);
    if (!widget)
        return uiMessage("control.kind", {numbered(control), uiText(kind)});
    return std::nullopt;
}

template <class Widget>
ControlEvents::Problem ControlEvents::findUsable(int control, Widget *&widget, const char *kind) const
{
    if (auto problem = find(control, widget, kind))
        return problem;
    if (!widget->isVisibleTo(&m_dialog))
        return uiMessage("control.hidden", {numbered(control)});
    if (!widget->isEnabledTo(&m_dialog))
        return uiMessage("control.disabled", {numbered(control)});
    return std::nullopt;
}

std::optional<TableEvents> ControlEvents::tableOf(int control) const
{
    QWidget *item = m_dialog.GetDlgItem(control);
    return item && TableEvents::isTable(*item) ? std::optional(TableEvents(*item, control)) : std::nullopt;
}

ControlEvents::Problem ControlEvents::unusable(int control) const
{
    QWidget *item = nullptr;
    return findUsable(control, item, "control.control");
}

ControlEvents::Problem ControlEvents::click(int control)
{
    QAbstractButton *button = nullptr;
    if (auto problem = findUsable(control, button, "control.button"))
        return problem;
    button->click();
    return std::nullopt;
}

ControlEvents::Problem ControlEvents::check(int control, bool on)
{
    QAbstractButton *button = nullptr;
    if (auto problem = findUsable(control, button, "control.checkBox"))
        return problem;
    if (!button->isCheckable())
        return uiMessage("control.kind", {numbered(control), uiText("control.checkBox")});
    if (button->isChecked() != on)
        button->click();
    return std::nullopt;
}

ControlEvents::Problem ControlEvents::chooseIndex(QComboBox &combo, int index)
{
    combo.setCurrentIndex(index);
    Q_EMIT combo.activated(index); // what a person's choice sends besides the change
    Q_EMIT combo.textActivated(combo.itemText(index));
    return std::nullopt;
}

ControlEvents::Problem ControlEvents::choose(int control, int value)
{
    QComboBox *combo = nullptr;
    if (auto problem = findUsable(control, combo, "control.comboBox"))
        return problem;
    const bool byData = carriesNumbers(*combo);
    const int index = byData ? combo->findData(value) : value;
    if (index < 0 || index >= combo->count())
        return uiMessage(byData ? "control.noValue" : "control.noItem", {numbered(control), std::to_wstring(value)});
    return chooseIndex(*combo, index);
}

ControlEvents::Problem ControlEvents::chooseText(int control, const std::wstring &text)
{
    QComboBox *combo = nullptr;
    if (auto problem = findUsable(control, combo, "control.comboBox"))
        return problem;
    const int index = combo->findText(QString::fromStdWString(text), Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index < 0)
        return uiMessage("control.noText", {numbered(control), text});
    return chooseIndex(*combo, index);
}

ControlEvents::Problem ControlEvents::type(int control, const std::wstring &text)
{
    QLineEdit *edit = nullptr;
    if (auto problem = findUsable(control, edit, "control.edit"))
        return problem;
    if (edit->isReadOnly())
        return uiMessage("control.readOnly", {numbered(control)});
    sendFocus(*edit, QEvent::FocusIn);
    typeText(*edit, text);
    sendFocus(*edit, QEvent::FocusOut);
    return std::nullopt;
}

ControlEvents::Problem ControlEvents::selectRows(int control, const std::vector<int> &rows)
{
    if (auto table = tableOf(control)) {
        const Problem problem = unusable(control);
        return problem ? problem : table->selectRows(rows);
    }
    QAbstractItemView *list = nullptr;
    if (auto problem = findUsable(control, list, "control.list"))
        return problem;
    const QAbstractItemModel *model = list->model();
    const int count = model ? model->rowCount() : 0;
    for (const int row : rows) {
        if (row < 0 || row >= count)
            return uiMessage("control.noRow", {numbered(control), std::to_wstring(row)});
    }
    list->selectionModel()->clearSelection();
    for (const int row : rows)
        list->selectionModel()->select(model->index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    return std::nullopt;
}

ControlEvents::Problem ControlEvents::text(int control, std::wstring &shown) const
{
    QWidget *item = nullptr;
    if (auto problem = find(control, item, "control.control"))
        return problem;
    QString text;
    if (const auto *label = qobject_cast<QLabel *>(item))
        text = label->text();
    else if (const auto *edit = qobject_cast<QLineEdit *>(item))
        text = edit->text();
    else if (const auto *button = qobject_cast<QAbstractButton *>(item))
        text = button->text();
    else if (const auto *combo = qobject_cast<QComboBox *>(item))
        text = combo->currentText();
    else if (const auto *group = qobject_cast<QGroupBox *>(item))
        text = group->title();
    else
        return uiMessage("control.noCaption", {numbered(control)});
    shown = text.toStdWString();
    return std::nullopt;
}

ControlEvents::Problem ControlEvents::expectText(int control, const std::wstring &expected) const
{
    std::wstring shown;
    if (auto problem = text(control, shown))
        return problem;
    if (shown != expected)
        return uiMessage("control.shows", {numbered(control), shown, expected});
    return std::nullopt;
}

ControlEvents::Problem ControlEvents::expectChecked(int control, bool on) const
{
    QAbstractButton *button = nullptr;
    if (auto problem = find(control, button, "control.checkBox"))
        return problem;
    if (button->isChecked() != on)
        return uiMessage(on ? "control.off" : "control.on", {numbered(control)});
    return std::nullopt;
}

ControlEvents::Problem ControlEvents::expectEnabled(int control, bool on) const
{
    QWidget *item = nullptr;
    if (auto problem = find(control, item, "control.control"))
        return problem;
    if (item->isEnabledTo(&m_dialog) != on)
        return uiMessage(on ? "control.disabled" : "control.enabled", {numbered(control)});
    return std::nullopt;
}

ControlEvents::Problem ControlEvents::expectRows(int control, int count) const
{
    if (const auto table = tableOf(control))
        return table->expectRows(count);
    QAbstractItemView *list = nullptr;
    if (auto problem = find(control, list, "control.list"))
        return problem;
    const int rows = list->model() ? list->model()->rowCount() : 0;
    if (rows != count)
        return uiMessage("control.rows", {numbered(control), std::to_wstring(rows), std::to_wstring(count)});
    return std::nullopt;
}

ControlEvents::Problem ControlEvents::expectCell(int control, int row, int column, const std::wstring &expected) const
{
    if (const auto table = tableOf(control))
        return table->expectCell(row, column, expected);
    QAbstractItemView *list = nullptr;
    if (auto problem = find(control, list, "control.list"))
        return problem;
    const QAbstractItemModel *model = list->model();
    if (!model || row < 0 || row >= model->rowCount() || column < 0 || column >= model->columnCount())
        return uiMessage("control.noCell", {numbered(control)});
    const std::wstring shown = model->index(row, column).data().toString().toStdWString();
    if (shown != expected)
        return uiMessage("control.cell", {numbered(control), shown, expected});
    return std::nullopt;
}

template ControlEvents::Problem ControlEvents::find(int, QAbstractItemView *&, const char *) const;
template ControlEvents::Problem ControlEvents::findUsable(int, QAbstractItemView *&, const char *) const;
template ControlEvents::Problem ControlEvents::findUsable(int, QWidget *&, const char *) const;

} // namespace velmor
