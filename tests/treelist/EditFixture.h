// A tree list whose cells are edited: column 1 in a box, column 2 from a list.
#pragma once

#include "tests/treelist/TreeFixture.h"

class TreeListEditTest : public TreeListTest {
protected:
    void CreateEdited(std::uint32_t style = kTreeStyle)
    {
        CreateTree(style);
        list->SetColumnModify(2, kEditorCombo);
        owner.onNotice = [this](const TreeListNotice &notice) {
            if (notice.code == NotifyBeginControl && notice.column == 2) {
                for (const wchar_t *kind : {L"section", L"area", L"outfall"})
                    list->GetCombo()->AddString(kind);
            }
            if (onNotice)
                onNotice(notice);
        };
        owner.told.clear();
    }
    void Begin(CTreeListItem *item, int column)
    {
        ASSERT_EQ(list->BeginModify(item, column), 1);
        owner.told.clear();
    }
    /// Types over the whole text of the box.
    void TypeOver(const QString &text)
    {
        Edit().selectAll();
        Type(text);
    }
    CTreeListEditCtrl &Edit() const { return *list->GetEdit(); }
    CTreeListComboCtrl &Combo() const { return *list->GetCombo(); }
    QRect TextOf(CTreeListItem *item, int column) const
    {
        QRect rect;
        EXPECT_TRUE(list->GetItemRect(item, column, rect, true));
        return rect;
    }
    std::wstring Text(CTreeListItem *item, int column) const { return list->GetItemText(item, column); }
    bool InEdit() const { return list->GetState(kControlEditing); }
    void Answer(int code, std::int64_t answer) { owner.answers[code] = {answer}; }

    std::function<void(const TreeListNotice &)> onNotice;
};

inline void PrintTo(const JournalOwner::Told &told, std::ostream *out)
{
    *out << told.code << " of " << std::string(told.text.begin(), told.text.end()) << ", " << told.column;
}
