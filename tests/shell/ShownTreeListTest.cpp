// Another module's view of the tree list: this program has nothing of it but its header, and takes all else from the
// module.
#include "controls/treelist/TLCDragWnd.h"
#include "controls/treelist/TLCDropWnd.h"
#include "controls/treelist/TreeListCtrl.h"
#include "controls/treelist/TreeListHeaderWindows.h"
#include "tests/dialogs/DialogProgram.h"

#include <gmock/gmock.h>

#include <QSignalSpy>
#include <QTest>

#include <cstring>
#include <set>

#include <dlfcn.h>

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

/// A method as it is stored; taking it makes the linker look for it.
template <class Method>
std::string stored(Method method)
{
    std::string bytes(sizeof method, '\0');
    std::memcpy(bytes.data(), &method, sizeof method);
    return bytes;
}

/// What a module would make of it: other rows, the same hooks.
class CCountingTree : public CTreeListCtrl, public CTreeListOwner {
public:
    CCountingTree() { SetOwner(this); }
    ~CCountingTree() override { SetOwner(nullptr); }
    std::int64_t OnTreeListNotify(const TreeListNotice &notice) override
    {
        m_codes.push_back(notice.code);
        return 0;
    }
    std::vector<int> m_codes;
    int m_nDeleted = 0;

protected:
    void OnItemDeleted(const CTreeListItem *item) override
    {
        ++m_nDeleted;
        CTreeListCtrl::OnItemDeleted(item);
    }
};

class ShownTreeList : public testing::Test {
protected:
    ShownTreeList() { dialogApplication(); }
};

} // namespace

TEST_F(ShownTreeList, ComesFromTheModule)
{
    const CTreeListCtrl list;
    Dl_info library = {};
    ASSERT_NE(dladdr(list.metaObject(), &library), 0);
    EXPECT_THAT(library.dli_fname, HasSubstr("zemxvelmor.so"));
}

TEST_F(ShownTreeList, ThePlacesOfACellCanBeAsked)
{
    const TreeListRect rect{0, 0, 100, 20};
    const TreeListCell cell{kCellMain, 1, StyleCheck, kItemShowsCheck};
    const TreeListParts parts = PartsOf(cell, rect);
    EXPECT_EQ(PartAt(parts, rect, 5, 10), kHitCheck);
    EXPECT_EQ(TextOffsetOf(cell), 18);
    EXPECT_TRUE(TextFits(parts, rect, 82));
    EXPECT_FALSE(TextFits(parts, rect, 83));
}

TEST_F(ShownTreeList, TheWindowsOfADragCanBeMade)
{
    QWidget parent;
    CTLCDragWnd rows(&parent, QPixmap(20, 10));
    CTLCDropWnd place(&parent);
    CTLHDragWnd column(QPixmap(30, 10), &parent);
    CTLHDropWnd mark(20, &parent);
    EXPECT_EQ(rows.GetPicture().width(), 20);
    EXPECT_EQ(rows.objectName(), QStringLiteral("Morvane.TLCDragWnd"));
    EXPECT_EQ(place.objectName(), QStringLiteral("Morvane.TLCDropWnd"));
    EXPECT_EQ(column.objectName(), QStringLiteral("Morvane.TLHDragWnd"));
    EXPECT_EQ(mark.objectName(), QStringLiteral("Morvane.TLHDropWnd"));
}

TEST_F(ShownTreeList, EveryOperationCanBeBound)
{
    using M = CTreeListModel;
    using C = CTreeListCtrl;
    const std::vector<std::string> operations = {
        stored(
            static_cast<CTreeListItem *(M::*)(const std::wstring &, CTreeListItem *, CTreeListItem *)>(&M::InsertItem)),
        stored(static_cast<int (M::*)(int, const std::wstring &)>(&M::InsertItem)),
        stored(&M::InsertItemNew),
        stored(&M::InsertItemFirst),
        stored(&M::InsertItemNext),
        stored(&M::DeleteItem),
        stored(&M::DeleteItemX),
        stored(&M::DeleteItemFast),
        stored(&M::DeleteAllItems),
        stored(&M::ExchangeItem),
        stored(&M::MoveAfterItem),
        stored(&M::SetItemText),
        stored(&M::GetItemText),
        stored(&M::SetItemData),
        stored(&M::GetItemData),
        stored(&M::SetItemImage),
        stored(&M::GetItemImage),
        stored(&M::SetItemState),
        stored(&M::GetItemState),
        stored(&M::SetCheck),
        stored(&M::GetCheck),
        stored(&M::SetLock),
        stored(&M::GetLock),
        stored(&M::SetItemCheck),
        stored(&M::SetItemLock),
        stored(&M::GetParentItem),
        stored(&M::GetChildItem),
        stored(&M::GetLastChildItem),
        stored(&M::GetNextSiblingItem),
        stored(&M::GetPrevSiblingItem),
        stored(&M::GetNextItem),
        stored(&M::GetFirstVisibleItem),
        stored(&M::GetNextVisibleItem),
        stored(&M::GetPrevVisibleItem),
        stored(&M::GetLastVisibleItem),
        stored(&M::GetFirstShowItem),
        stored(&M::GetNextShowItem),
        stored(&M::GetTreeListItem),
        stored(&M::GetValidChildItem),
        stored(&M::GetSortChildItem),
        stored(&M::ItemHasChildren),
        stored(&M::GetCount),
        stored(&M::GetVisibleCount),
        stored(&M::SelectItem),
        stored(&M::Select),
        stored(&M::ActiveItem),
        stored(&M::GetSelectedItem),
        stored(&M::GetSelectedCount),
        stored(&M::GetFirstSelectedItemPosition),
        stored(&M::GetNextSelectedItem),
        stored(&M::SetSelectionMark),
        stored(&M::IsInSelectsTree),
        stored(&M::Expand),
        stored(&M::SetItemHeight),
        stored(&M::InsertColumn),
        stored(&M::DeleteColumn),
        stored(&M::GetColumns),
        stored(&M::SetColumnText),
        stored(&M::GetColumnText),
        stored(&M::SetColumnFormat),
        stored(&M::GetColumnFormat),
        stored(&M::GetColumnWidth),
        stored(&M::SetColumnImage),
        stored(&M::GetColumnImage),
        stored(&M::SetColumnModify),
        stored(&M::GetColumnModify),
        stored(&M::SetColumnDefaultText),
        stored(&M::GetColumnDefaultText),
        stored(&M::SetColumnOrderArray),
        stored(&M::BeginModify),
        stored(&M::FinishModify),
        stored(&M::CancelModify),
        stored(&M::UpdateModify),
        stored(&M::UpdateModifyColumn),
        stored(&M::UpdateModifyColumns),
        stored(&M::GetModifiedColumnIndex),
        stored(&M::GetNextModifyCol),
        stored(&M::GetPrevModifyCol),
        stored(&M::GetControl),
        stored(&C::Create),
        stored(&C::SetBkColor),
        stored(&C::SetTextColor),
        stored(&C::SetItemImages),
        stored(&C::SetHeaderImages),
        stored(&C::GetItemRectTree),
        stored(&C::GetItemRectMain),
        stored(&C::SetAllScroll),
        stored(&C::SetVertScroll),
        stored(&C::SetHorzScroll),
        stored(&C::BeginEdit),
        stored(&C::CancelEdit),
        stored(&C::RestoreEdit),
        stored(&C::BeginCombo),
        stored(&C::CancelCombo),
        stored(&C::RestoreCombo),
        stored(&C::BeginStatic),
        stored(&C::CancelStatic),
        stored(&C::RestoreStatic),
        stored(&C::SetCtrlFocus),
        stored(&C::PreTranslateMessage),
        stored(&C::PreTranslateKeyDownMessage),
        stored(&C::PreTranslateKeyDownMessage2),
        stored(&C::BeginDraging),
        stored(&C::DoDraging),
        stored(&C::EndDraging),
        stored(&C::DragEnter),
        stored(&C::DragLeave),
        stored(&C::DragOver),
        stored(&C::Drop),
        stored(&C::SetTargetItem),
        stored(&C::SetHoverItem),
        stored(&C::OnTimer),
        stored(&C::OnCancelMode),
        stored(&C::DrawCtrl)};
    EXPECT_EQ(std::set<std::string>(operations.begin(), operations.end()).size(), operations.size());
}

TEST_F(ShownTreeList, AModuleDerivesFromItAndIsToldByItsHooks)
{
    CCountingTree list;
    ASSERT_NE(list.Create(StyleTree | StyleTreeButtons | StyleCheck | StyleHeader, QRect(0, 0, 300, 200), nullptr, 7),
              0);
    list.InsertColumn(L"two", kColumnDefaultFormat, 60);
    CTreeListItem *pipe = list.InsertItem(L"pipe");
    CTreeListItem *area = list.InsertItem(L"area", pipe);
    EXPECT_EQ(list.Expand(pipe, kExpand), 0);
    EXPECT_EQ(list.GetVisibleCount(), 2);
    EXPECT_EQ(list.SelectItem(area, 1), 1);
    EXPECT_FALSE(list.grab().isNull());
    EXPECT_EQ(list.DeleteItem(pipe), 1);
    EXPECT_EQ(list.m_nDeleted, 2);
    EXPECT_THAT(list.m_codes,
                testing::IsSupersetOf({NotifyExpanding, NotifyExpanded, NotifySelChanging, NotifySelChanged}));
}

TEST_F(ShownTreeList, ItsTypesAreTheModules)
{
    CCountingTree list;
    QObject *object = &list;
    CTreeListModel *model = &list;
    EXPECT_EQ(qobject_cast<CTreeListCtrl *>(object), &list);
    EXPECT_EQ(dynamic_cast<CTreeListCtrl *>(model), &list);
    EXPECT_STREQ(object->metaObject()->className(), "CTreeListCtrl");
    EXPECT_THAT(std::string(CTreeListCtrl::kClassName), testing::Eq("Morvane.TreeListCtrl"));
    QSignalSpy spy(&list, &CTreeListCtrl::ColumnClicked);
    Q_EMIT list.ColumnClicked(3);
    EXPECT_EQ(spy.count(), 1);
}
