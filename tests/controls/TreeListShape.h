// A tree list whose whole tree reads as one line of text.
#pragma once

#include "tests/controls/TreeListJournal.h"

#include <gmock/gmock.h>

#include <string>

class TreeListShape : public testing::Test {
protected:
    /// Texts of an item's children, each with those of its own in parentheses.
    std::wstring Shape(const CTreeListItem *item = nullptr)
    {
        std::wstring shape;
        for (CTreeListItem *child = list.GetChildItem(item); child; child = list.GetNextSiblingItem(child)) {
            shape += (shape.empty() ? L"" : L" ") + list.GetItemText(child);
            if (list.ItemHasChildren(child))
                shape += L"(" + Shape(child) + L")";
        }
        return shape;
    }
    CTreeListItem *Add(const std::wstring &text, CTreeListItem *parent = TreeListRoot())
    {
        return list.InsertItem(text, parent);
    }

    TreeListJournal list;
};
