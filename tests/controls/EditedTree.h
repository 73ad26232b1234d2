// A tree list without a widget whose rows are edited: an editor that is no more than a text, an owner that answers what
// he was told to, and a journal of both.
#pragma once

#include "controls/rules/TreeListModel.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

class EditedTree : public CTreeListModel {
public:
    /// Columns 0 to 3, each of 50 pixels, all typed in; rows a (with child c) and b, whose texts are a0, a1 ...
    EditedTree()
    {
        SetColumnText(0, L"0");
        for (const wchar_t *name : {L"1", L"2", L"3"})
            InsertColumn(name);
        for (int column = 0; column < 4; ++column) {
            SetColumnWidth(column, 50);
            SetColumnModify(column, kEditorEdit);
        }
        a = AddRow(L'a', TreeListRoot());
        b = AddRow(L'b', TreeListRoot());
        c = AddRow(L'c', a);
        journal.clear();
    }
    CTreeListItem *AddRow(wchar_t name, CTreeListItem *parent)
    {
        CTreeListItem *item = InsertItem(std::wstring{name, L'0'}, parent);
        SetItemData(item, static_cast<std::uint32_t>(name));
        for (int column = 1; column < GetColumnCount(); ++column)
            SetItemText(item, column, std::wstring{name, static_cast<wchar_t>(L'0' + column)});
        return item;
    }
    /// What the user types over the text of the open editor.
    void Type(const std::wstring &text) { editor = text; }
    bool InEdit() const { return GetState(kControlEditing); }
    bool Ending() const { return GetState(kControlEndingEdit); }
    std::vector<std::string> TakeJournal() { return std::exchange(journal, {}); }

    std::int64_t Notify(int code, CTreeListItem *item, int column) override
    {
        const std::string name = NameOf(code);
        if (name.empty())
            return 0;
        journal.push_back(name + " " + static_cast<char>(GetItemData(item)) + " " + std::to_string(column));
        if (onNotice)
            onNotice(code, item, column);
        const auto answer = answers.find(code);
        return answer == answers.end() ? 0 : answer->second;
    }
    int EnsureVisible(CTreeListItem *, int) override { return 1; }
    int GetTopIndex() const override { return 0; }
    int GetCountPerPage() const override { return 10; }

    int BeginControl(CTreeListItem *item, int column) override
    {
        editor.clear();
        begun = true;
        Notify(NotifyBeginControl, item, column);
        if (GetModifyItem() != item || GetModifyColumn() != column || !begun)
            return 0;
        editor = GetItemText(item, column);
        shown = true;
        return 1;
    }
    int CancelControl(CTreeListItem *item, int column) override
    {
        if (!begun)
            return 0;
        begun = false;
        if (shown)
            SetItemText(item, column, editor);
        shown = false;
        Notify(NotifyEndControl, item, column);
        return 1;
    }
    int RestoreControl(CTreeListItem *item, int column) override
    {
        begun = shown = true;
        journal.push_back(std::string("restore ") + static_cast<char>(GetItemData(item)) + " " +
                          std::to_string(column));
        return 1;
    }

    CTreeListItem *a = nullptr, *b = nullptr, *c = nullptr;
    std::wstring editor;
    bool begun = false, shown = false;
    std::map<int, std::int64_t> answers;
    std::function<void(int code, CTreeListItem *item, int column)> onNotice;
    std::vector<std::string> journal;
    int repaints = 0;

protected:
    void SetRedraw(bool) override {}
    void Layout() override {}
    void Invalidate() override { ++repaints; }
    void InvalidateItem(const CTreeListItem *) override { ++repaints; }
    int GetFontHeight() const override { return -11; }
    void OnItemDeleted(const CTreeListItem *item) override
    {
        // Who is destroyed is in no edit any more.
        if (item == GetModifyItem())
            journal.push_back("destroyed in edit");
    }
    void OnTextChanged(const CTreeListItem *, int) override {}
    void OnStateChanged(const CTreeListItem *, std::uint32_t) override {}
    void OnColumnsChanged() override {}

private:
    static std::string NameOf(int code)
    {
        switch (code) {
        case NotifyColumnChanging:
            return "column";
        case NotifyRowChanging:
            return "row";
        case NotifyEndEdit:
            return "end";
        case NotifyBeginControl:
            return "begin control";
        case NotifyEndControl:
            return "end control";
        case NotifySelChanging:
            return "selection";
        default:
            return {};
        }
    }
};

/// One such tree for each test.
class TreeListEditing : public testing::Test {
protected:
    void Begin(CTreeListItem *item, int column)
    {
        ASSERT_EQ(tree.BeginModify(item, column), 1);
        tree.TakeJournal();
    }
    /// The state of a tree in which nothing is in edit.
    void ExpectNothingInEdit() const
    {
        EXPECT_FALSE(tree.InEdit());
        EXPECT_FALSE(tree.Ending());
        EXPECT_EQ(tree.GetModifyItem(), nullptr);
        EXPECT_EQ(tree.GetModifyColumn(), -1);
        EXPECT_EQ(tree.GetModifyShadow(0), L"");
        EXPECT_FALSE(tree.shown);
    }
    void ExpectInEdit(CTreeListItem *item, int column) const
    {
        EXPECT_TRUE(tree.InEdit());
        EXPECT_FALSE(tree.Ending());
        EXPECT_EQ(tree.GetModifyItem(), item);
        EXPECT_EQ(tree.GetModifyColumn(), column);
        EXPECT_TRUE(tree.shown);
    }

    EditedTree tree;
};
