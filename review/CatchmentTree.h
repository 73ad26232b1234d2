// The tree of catchment areas: areas at top level, the sections of each beneath it, a check box beside every item.
//
// What a person does comes as signals, each before the tree does its own part of it: a click tells of itself while the
// check box still stands as it did.
#pragma once

#include "contracts/NetworkTopology.h"
#include "dialogs/CatchItemData.h"

#include <QTreeWidget>

/// A row: an area or, beneath one, a section. What it holds stands in the item itself, so tens of thousands are cheap.
class CCatchmentTreeItem : public QTreeWidgetItem {
public:
    using SectionPtr = boost::shared_ptr<ZEMGis::Topology::CSection>;

    /// For an area; it has no payload at first.
    explicit CCatchmentTreeItem(const QString &name);
    /// For a section, whose name is asked for when it is shown: most sections of a large network never are.
    explicit CCatchmentTreeItem(SectionPtr section);

    QVariant data(int column, int role) const override;
    void setData(int column, int role, const QVariant &value) override;

    bool IsChecked() const { return m_bChecked; }
    QString Name() const;
    /// A section's; null for an area.
    AcDbObjectId SectionId() const;
    CCatchmentTreeItem *Parent() const { return static_cast<CCatchmentTreeItem *>(parent()); }

    CCatchItemData *m_pPayload = nullptr; ///< an area's; not owned

private:
    friend class CCatchmentTree;
    QString m_name; ///< an area's
    SectionPtr m_section;
    bool m_bChecked = false;
};

class CCatchmentTree : public QTreeWidget {
    Q_OBJECT

public:
    explicit CCatchmentTree(QWidget *parent = nullptr);

    CCatchmentTreeItem *AreaItem(int row) const { return static_cast<CCatchmentTreeItem *>(topLevelItem(row)); }
    /// Null when nothing is selected.
    CCatchmentTreeItem *SelectedItem() const;
    void SelectItem(QTreeWidgetItem *item);
    /// Ticks of top-level items from code, which tell nobody. check answers for each of them.
    template <class Check>
    void SetChecks(Check check)
    {
        for (int row = 0; row < topLevelItemCount(); ++row) {
            CCatchmentTreeItem *item = AreaItem(row);
            item->m_bChecked = check(*item);
        }
        ShowChecks();
    }
    /// Items that go are no items that are let go of: nobody is told of a selection that ends.
    void Empty();

Q_SIGNALS:
    /// A click with the left button ended on the item on which it began.
    void Clicked(CCatchmentTreeItem *item, bool onCheckBox);
    /// A tick changed in a way that is neither a click nor the space bar: through an aid of the desktop.
    void Ticked(CCatchmentTreeItem *item);
    void SpacePressed();
    void DeletePressed();
    /// An editor of a name was ended with a text, an empty one too. One that was abandoned tells nothing.
    void NameEdited(CCatchmentTreeItem *item, const QString &text);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index,
                                                         const QEvent *event = nullptr) const override;

private:
    class NameDelegate;
    friend class CCatchmentTreeItem;
    void TellTicked(CCatchmentTreeItem *item);
    void ShowChecks();
    /// The item whose check box holds the point of the viewport; null elsewhere.
    CCatchmentTreeItem *CheckBoxAt(const QPoint &point) const;
    CCatchmentTreeItem *ItemAt(const QPoint &point) const;
    void Toggle(CCatchmentTreeItem *item);

    CCatchmentTreeItem *m_pPressed = nullptr;         ///< only compared
    CCatchmentTreeItem *m_pPressedCheckBox = nullptr; ///< only compared
    bool m_bOwnToggle = false;                        ///< of which the tree has told already
};
