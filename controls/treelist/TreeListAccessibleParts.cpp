// A cell and a column header of the list as a screen reader sees them.
#include "controls/treelist/TreeListAccessibleParts.h"

#include "contracts/CoreServices.h"
#include "controls/WideText.h"
#include "controls/treelist/TreeListCtrl.h"
#include "controls/treelist/TreeListHeaderCtrl.h"

namespace {

/// Numbers of the texts.
enum Message : unsigned {
    kMsgLevel = 60120,
    kMsgLocked = 60121,
    kMsgPartlyLocked = 60122,
    kMsgExpand = 60123,
    kMsgCollapse = 60124,
    kMsgLock = 60125,
    kMsgEdit = 60126,
    kMsgAscending = 60127,
    kMsgDescending = 60128,
};

QString textOf(Message message)
{
    return ToQString(ZEMGis::CModuleConfiguration::Instance()->GetMsg(message));
}

} // namespace

QString tree_list_actions::Expand()
{
    return QStringLiteral("Expand");
}

QString tree_list_actions::Collapse()
{
    return QStringLiteral("Collapse");
}

QString tree_list_actions::Lock()
{
    return QStringLiteral("Lock");
}

QString tree_list_actions::Edit()
{
    return QStringLiteral("Edit");
}

// --- What both share ---

bool CTreeListPart::isValid() const
{
    return m_pAccess && m_pAccess->PlaceOf(m_nColumn) >= 0;
}

QWindow *CTreeListPart::window() const
{
    QAccessibleInterface *list = parent();
    return list ? list->window() : nullptr;
}

QAccessibleInterface *CTreeListPart::parent() const
{
    return m_pAccess ? QAccessible::queryAccessibleInterface(&m_pAccess->Control()) : nullptr;
}

// --- A cell ---

CTreeListCell::CTreeListCell(CTreeListAccessible &access, const CTreeListItem &item, int column)
    : CTreeListPart(access, column), m_pItem(const_cast<CTreeListItem *>(&item))
{
}

void *CTreeListCell::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TableCellInterface)
        return static_cast<QAccessibleTableCellInterface *>(this);
    if (type == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface *>(this);
    return nullptr;
}

bool CTreeListCell::isValid() const
{
    return CTreeListPart::isValid() && m_pAccess->Control().GetShowIndex(m_pItem) >= 0;
}

bool CTreeListCell::CanExpand() const
{
    const CTreeListCtrl &control = m_pAccess->Control();
    return IsFirstColumn() && control.HasStyle(StyleTree) && control.ItemHasChildren(m_pItem);
}

bool CTreeListCell::CanCheck() const
{
    return IsFirstColumn() && m_pAccess->Control().HasStyle(StyleCheck) && m_pItem->Has(kItemShowsCheck);
}

bool CTreeListCell::CanLock() const
{
    return IsFirstColumn() && m_pAccess->Control().HasStyle(StyleLock) && m_pItem->Has(kItemShowsLock);
}

bool CTreeListCell::CanEdit() const
{
    const CTreeListCtrl &control = m_pAccess->Control();
    return !control.HasStyle(StyleReadOnly) && control.GetControl(m_pItem, Column()) != kEditorStatic;
}

QString CTreeListCell::text(QAccessible::Text which) const
{
    if (!isValid())
        return {};
    const CTreeListCtrl &control = m_pAccess->Control();
    if (which == QAccessible::Name)
        return ToQString(m_pItem->Text(Column()));
    if (which != QAccessible::Description || !IsFirstColumn())
        return {};
    QStringList parts;
    if (control.HasStyle(StyleTree))
        parts += textOf(kMsgLevel).replace(QLatin1String("%d"), QString::number(m_pItem->Level()));
    if (CanLock() && control.GetLock(m_pItem) != kCheckOff)
        parts += textOf(control.GetLock(m_pItem) == kCheckOn ? kMsgLocked : kMsgPartlyLocked);
    return parts.join(QLatin1String(", "));
}

void CTreeListCell::setText(QAccessible::Text which, const QString &text)
{
    const bool isText = which == QAccessible::Name || which == QAccessible::Value;
    if (isText && isValid() && m_pAccess->Control().isEnabled() && CanEdit())
        m_pAccess->EnterText(m_pItem, Column(), text);
}

QRect CTreeListCell::rect() const
{
    return isValid() ? m_pAccess->CellRect(m_pItem, Column()) : QRect();
}

QList<QPair<QAccessibleInterface *, QAccessible::Relation>> CTreeListCell::relations(QAccessible::Relation match) const
{
    if (!isValid() || !(match & QAccessible::Controller))
        return {};
    QAccessibleInterface *above = m_pAccess->Cell(m_pAccess->Control().GetParentItem(m_pItem), 0);
    if (!above)
        return {};
    return {{above, QAccessible::Controller}};
}

QAccessible::State CTreeListCell::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const CTreeListCtrl &control = m_pAccess->Control();
    state.disabled = !control.isEnabled();
    state.selectable = state.focusable = control.isEnabled();
    state.selected = m_pItem->Has(kItemSelected);
    const int column = control.GetSelectColumn();
    state.active = m_pItem == control.GetFocusItem() &&
                   Column() == (m_pAccess->PlaceOf(column) >= 0 ? column : m_pAccess->ColumnAt(0));
    state.focused = state.active && control.hasFocus();
    if (CanExpand()) {
        state.expandable = true;
        state.expanded = m_pItem->Has(kItemExpanded);
        state.collapsed = !state.expanded;
    }
    if (CanCheck()) {
        state.checkable = true;
        state.checked = control.GetCheck(m_pItem) == kCheckOn;
        state.checkStateMixed = control.GetCheck(m_pItem) == kCheckMixed;
    }
    state.editable = CanEdit();
    state.readOnly = !state.editable;
    const QRect viewport(control.viewport()->mapToGlobal(QPoint(0, 0)), control.viewport()->size());
    state.offscreen = !m_pAccess->CellRect(m_pItem, Column()).intersects(viewport);
    state.invisible = state.offscreen || !control.isVisible();
    return state;
}

bool CTreeListCell::isSelected() const
{
    return isValid() && m_pItem->Has(kItemSelected);
}

QList<QAccessibleInterface *> CTreeListCell::columnHeaderCells() const
{
    QAccessibleInterface *header = isValid() ? m_pAccess->Header(Column()) : nullptr;
    return header ? QList<QAccessibleInterface *>{header} : QList<QAccessibleInterface *>();
}

int CTreeListCell::columnIndex() const
{
    return isValid() ? m_pAccess->PlaceOf(Column()) : -1;
}

int CTreeListCell::rowIndex() const
{
    return isValid() ? m_pAccess->Control().GetShowIndex(m_pItem) : -1;
}

QStringList CTreeListCell::actionNames() const
{
    QStringList names;
    if (!isValid() || !m_pAccess->Control().isEnabled())
        return names;
    names += pressAction();
    if (CanCheck())
        names += toggleAction();
    if (CanLock())
        names += tree_list_actions::Lock();
    if (CanExpand())
        names += m_pItem->Has(kItemExpanded) ? tree_list_actions::Collapse() : tree_list_actions::Expand();
    if (CanEdit())
        names += tree_list_actions::Edit();
    return names;
}

QString CTreeListCell::localizedActionName(const QString &name) const
{
    if (name == tree_list_actions::Expand())
        return textOf(kMsgExpand);
    if (name == tree_list_actions::Collapse())
        return textOf(kMsgCollapse);
    if (name == tree_list_actions::Lock())
        return textOf(kMsgLock);
    if (name == tree_list_actions::Edit())
        return textOf(kMsgEdit);
    return QAccessibleActionInterface::localizedActionName(name);
}

void CTreeListCell::doAction(const QString &name)
{
    if (!actionNames().contains(name))
        return;
    // The owner may delete the item, and with it this object, in any of these.
    CTreeListCtrl &control = m_pAccess->Control();
    if (name == pressAction())
        control.SelectItem(m_pItem, Column(), true);
    else if (name == toggleAction())
        control.SetItemCheck(m_pItem, true);
    else if (name == tree_list_actions::Lock())
        control.SetItemLock(m_pItem, true);
    else if (name == tree_list_actions::Expand())
        control.Expand(m_pItem, kExpand, Column());
    else if (name == tree_list_actions::Collapse())
        control.Expand(m_pItem, kCollapse, Column());
    else
        control.BeginModify(m_pItem, Column());
}

QStringList CTreeListCell::keyBindingsForAction(const QString &name) const
{
    const auto keys = [](QKeyCombination key) {
        return QStringList(QKeySequence(key).toString(QKeySequence::NativeText));
    };
    if (name == tree_list_actions::Expand())
        return keys(Qt::SHIFT | Qt::Key_Right);
    if (name == tree_list_actions::Collapse())
        return keys(Qt::SHIFT | Qt::Key_Left);
    if (name == tree_list_actions::Edit())
        return keys(QKeyCombination(Qt::Key_Return));
    return {};
}

// --- A column header ---

bool CTreeListHeaderCell::isValid() const
{
    return CTreeListPart::isValid() && m_pAccess->HasHeader() && m_pAccess->Control().GetHeader();
}

void *CTreeListHeaderCell::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
}

QString CTreeListHeaderCell::text(QAccessible::Text which) const
{
    if (!isValid())
        return {};
    const CTreeListHeaderCtrl &header = *m_pAccess->Control().GetHeader();
    if (which == QAccessible::Name)
        return header.NameOf(Column());
    if (which != QAccessible::Description || header.GetSortColumn() != Column())
        return {};
    return textOf(header.IsSortDescending() ? kMsgDescending : kMsgAscending);
}

QRect CTreeListHeaderCell::rect() const
{
    return isValid() ? m_pAccess->HeaderRect(Column()) : QRect();
}

QAccessible::State CTreeListHeaderCell::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const CTreeListCtrl &control = m_pAccess->Control();
    state.disabled = !control.isEnabled();
    const QRect shown(control.mapToGlobal(QPoint(0, 0)), control.size());
    state.offscreen = !m_pAccess->HeaderRect(Column()).intersects(shown);
    state.invisible = state.offscreen || !control.isVisible();
    return state;
}

QStringList CTreeListHeaderCell::actionNames() const
{
    const bool canPress =
        isValid() && m_pAccess->Control().isEnabled() && m_pAccess->Control().GetHeader()->Sorts(Column());
    return canPress ? QStringList(pressAction()) : QStringList();
}

void CTreeListHeaderCell::doAction(const QString &name)
{
    if (!actionNames().contains(name))
        return;
    // As a click: the edit of a row ends before the rows may go to other places.
    CTreeListCtrl &control = m_pAccess->Control();
    const int column = Column();
    control.FinishModify();
    if (!control.GetState(kControlEditing))
        control.GetHeader()->ClickColumn(column);
}
