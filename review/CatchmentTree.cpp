#include "review/CatchmentTree.h"

#include "controls/WideText.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QSignalBlocker>
#include <QStyledItemDelegate>

#include <algorithm>

namespace {

constexpr Qt::ItemFlags kSectionFlags =
    Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
/// Only an area's name is edited.
constexpr Qt::ItemFlags kAreaFlags =
    Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemIsEnabled | Qt::ItemIsEditable;

} // namespace

// --- Items ------------------------------------------------------------------------------------------------------

CCatchmentTreeItem::CCatchmentTreeItem(const QString &name) : m_name(name)
{
    setFlags(kAreaFlags);
}

CCatchmentTreeItem::CCatchmentTreeItem(SectionPtr section) : m_section(std::move(section))
{
    setFlags(kSectionFlags);
}

QString CCatchmentTreeItem::Name() const
{
    return m_section ? ToQString(m_section->GetName()) : m_name;
}

AcDbObjectId CCatchmentTreeItem::SectionId() const
{
    return m_section ? m_section->GetObjectId() : AcDbObjectId();
}

QVariant CCatchmentTreeItem::data(int column, int role) const
{
    if (column != 0)
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return Name();
    case Qt::CheckStateRole:
        return m_bChecked ? Qt::Checked : Qt::Unchecked;
    default:
        return {};
    }
}

void CCatchmentTreeItem::setData(int column, int role, const QVariant &value)
{
    if (column != 0)
        return;
    if (role == Qt::DisplayRole || role == Qt::EditRole) {
        m_name = value.toString();
        emitDataChanged();
    } else if (role == Qt::CheckStateRole) {
        m_bChecked = value.toInt() == Qt::Checked;
        emitDataChanged();
        if (auto *tree = static_cast<CCatchmentTree *>(treeWidget()))
            tree->TellTicked(this);
    }
}

// --- Editing names ----------------------------------------------------------------------------------------------

/// An edit that ends with a text tells the tree of it and leaves the item to whoever listens.
class CCatchmentTree::NameDelegate : public QStyledItemDelegate {
public:
    explicit NameDelegate(CCatchmentTree &tree) : QStyledItemDelegate(&tree), m_tree(tree) {}

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QWidget *editor = QStyledItemDelegate::createEditor(parent, option, index);
        if (editor)
            editor->setAccessibleName(m_tree.accessibleName());
        return editor;
    }
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override
    {
        QStyledItemDelegate::updateEditorGeometry(editor, option, index);
        QRect whole = editor->geometry(); // a name may become longer than it is
        whole.setRight(std::max(whole.right(), option.rect.right()));
        whole.setTop(option.rect.top());
        whole.setBottom(option.rect.bottom());
        editor->setGeometry(whole);
    }
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        constexpr int kRowPadding = 6; // room for the editor's frame
        QSize size = QStyledItemDelegate::sizeHint(option, index);
        size.setHeight(std::max(size.height(), option.fontMetrics.height() + kRowPadding));
        return size;
    }
    void setModelData(QWidget *editor, QAbstractItemModel *, const QModelIndex &index) const override
    {
        auto *item = static_cast<CCatchmentTreeItem *>(m_tree.itemFromIndex(index));
        if (const auto *line = qobject_cast<QLineEdit *>(editor); line && item)
            Q_EMIT m_tree.NameEdited(item, line->text());
    }

private:
    CCatchmentTree &m_tree;
};

// --- The tree ---------------------------------------------------------------------------------------------------

CCatchmentTree::CCatchmentTree(QWidget *parent) : QTreeWidget(parent)
{
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setSelectionMode(SingleSelection);
    setEditTriggers(SelectedClicked | EditKeyPressed);
    setExpandsOnDoubleClick(true);
    setItemDelegate(new NameDelegate(*this));
}

CCatchmentTreeItem *CCatchmentTree::SelectedItem() const
{
    const QModelIndexList selected = selectionModel()->selectedIndexes();
    return selected.isEmpty() ? nullptr : static_cast<CCatchmentTreeItem *>(itemFromIndex(selected.first()));
}

void CCatchmentTree::SelectItem(QTreeWidgetItem *item)
{
    if (item)
        setCurrentItem(item, 0, QItemSelectionModel::ClearAndSelect);
}

void CCatchmentTree::Empty()
{
    const QSignalBlocker silence(selectionModel());
    clear();
}

void CCatchmentTree::TellTicked(CCatchmentTreeItem *item)
{
    if (!m_bOwnToggle)
        Q_EMIT Ticked(item);
}

void CCatchmentTree::ShowChecks()
{
    if (const int count = topLevelItemCount())
        Q_EMIT model()->dataChanged(model()->index(0, 0), model()->index(count - 1, 0), {Qt::CheckStateRole});
}

CCatchmentTreeItem *CCatchmentTree::ItemAt(const QPoint &point) const
{
    return static_cast<CCatchmentTreeItem *>(itemAt(point));
}

CCatchmentTreeItem *CCatchmentTree::CheckBoxAt(const QPoint &point) const
{
    CCatchmentTreeItem *item = ItemAt(point);
    if (!item)
        return nullptr;
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = visualItemRect(item);
    option.features |= QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
    option.text = item->Name();
    option.checkState = item->m_bChecked ? Qt::Checked : Qt::Unchecked;
    option.widget = this;
    return style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, this).contains(point) ? item
                                                                                                         : nullptr;
}

void CCatchmentTree::Toggle(CCatchmentTreeItem *item)
{
    m_bOwnToggle = true;
    item->setData(0, Qt::CheckStateRole, item->m_bChecked ? Qt::Unchecked : Qt::Checked);
    m_bOwnToggle = false;
}

void CCatchmentTree::mousePressEvent(QMouseEvent *event)
{
    m_pPressed = m_pPressedCheckBox = nullptr;
    if (event->button() != Qt::LeftButton) {
        QTreeWidget::mousePressEvent(event);
        return;
    }
    // A press on a check box neither selects nor opens an editor; one that is open ends as the focus leaves it.
    const QPoint point = event->position().toPoint();
    m_pPressed = ItemAt(point);
    m_pPressedCheckBox = CheckBoxAt(point);
    if (!m_pPressedCheckBox)
        QTreeWidget::mousePressEvent(event);
}

void CCatchmentTree::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (CheckBoxAt(event->position().toPoint())) {
        mousePressEvent(event);
        return;
    }
    m_pPressed = event->button() == Qt::LeftButton ? ItemAt(event->position().toPoint()) : nullptr;
    m_pPressedCheckBox = nullptr;
    QTreeWidget::mouseDoubleClickEvent(event);
}

void CCatchmentTree::mouseReleaseEvent(QMouseEvent *event)
{
    const QPoint point = event->position().toPoint();
    CCatchmentTreeItem *pressed = std::exchange(m_pPressed, nullptr);
    CCatchmentTreeItem *pressedCheckBox = std::exchange(m_pPressedCheckBox, nullptr);
    CCatchmentTreeItem *item = pressed && ItemAt(point) == pressed ? pressed : nullptr;
    const bool onCheckBox = item && pressedCheckBox == item && CheckBoxAt(point) == item;
    if (item && event->button() == Qt::LeftButton)
        Q_EMIT Clicked(item, onCheckBox);
    if (!pressedCheckBox)
        QTreeWidget::mouseReleaseEvent(event);
    else if (onCheckBox && ItemAt(point) == item) // it still stands there
        Toggle(item);
}

void CCatchmentTree::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Space: {
        Q_EMIT SpacePressed();
        if (CCatchmentTreeItem *item = SelectedItem())
            Toggle(item);
        event->accept();
        return;
    }
    case Qt::Key_Delete:
        Q_EMIT DeletePressed();
        event->accept();
        return;
    default:
        QTreeWidget::keyPressEvent(event);
    }
}

QItemSelectionModel::SelectionFlags CCatchmentTree::selectionCommand(const QModelIndex &index,
                                                                     const QEvent *event) const
{
    // One item stays selected: a click beside all items and Ctrl leave it so.
    if (!index.isValid())
        return QItemSelectionModel::NoUpdate;
    const auto command = QTreeWidget::selectionCommand(index, event);
    return command & (QItemSelectionModel::Deselect | QItemSelectionModel::Toggle)
               ? QItemSelectionModel::SelectionFlags(QItemSelectionModel::ClearAndSelect)
               : command;
}
