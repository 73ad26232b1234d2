// The plain tree beside the tree list: how it is changed, and how both are compared.
#include "tests/controls/TreeListSteps.h"

#include <algorithm>
#include <utility>

namespace tree_list_steps {

namespace {

constexpr std::uint32_t kChecks = kItemChecked | kItemUnchecked, kLocks = kItemLocked | kItemUnlocked;

} // namespace

// --- The plain tree ---

Plain *Walk::Any()
{
    return m_all.empty() ? nullptr : m_all[m_source.Below(static_cast<unsigned>(m_all.size()))];
}

Plain *Walk::AnyOrRoot()
{
    if (m_all.empty())
        return &m_root;
    if (m_options.wide && m_source.Below(8) != 0)
        return m_source.Below(2) == 0 ? &m_root : m_all.front();
    const unsigned at = m_source.Below(static_cast<unsigned>(m_all.size()) + 3);
    return at < m_all.size() ? m_all[at] : &m_root;
}

bool Walk::Within(const Plain *item, const Plain *top)
{
    for (; item; item = item->parent) {
        if (item == top)
            return true;
    }
    return false;
}

std::size_t Walk::PlaceOf(const Plain *item) const
{
    return IndexIn(item->parent->children, item);
}

Plain *Walk::Made(Plain *parent, std::size_t at, CTreeListItem *real, const std::wstring &text)
{
    auto made = std::make_unique<Plain>();
    Plain *item = made.get();
    item->id = m_nextId++;
    item->parent = parent;
    item->real = real;
    item->texts.assign(static_cast<std::size_t>(m_columns), L"");
    if (m_columns > 0)
        item->texts[0] = text;
    if ((parent->state & kChecks) == kItemChecked)
        item->state = (item->state & ~kChecks) | kItemChecked;
    if ((parent->state & kLocks) == kItemLocked)
        item->state = (item->state & ~kLocks) | kItemLocked;
    parent->children.insert(parent->children.begin() + static_cast<std::ptrdiff_t>(at), item);
    m_model->SetItemData(real, item->id);
    m_all.push_back(item);
    m_items.emplace(item->id, std::move(made));
    return item;
}

void Walk::Unselect(Plain *item)
{
    item->state &= ~kItemSelected;
    std::erase(m_selected, item);
}

void Walk::UnselectAll()
{
    while (!m_selected.empty())
        Unselect(m_selected.front());
}

void Walk::AddSelected(Plain *item)
{
    item->state |= kItemSelected;
    m_selected.insert(m_selected.begin(), item);
}

void Walk::RemoveChildren(Plain *item)
{
    while (!item->children.empty())
        Remove(item->children.back());
}

void Walk::Remove(Plain *item)
{
    RemoveChildren(item);
    Unselect(item);
    if (m_focus == item)
        m_focus = nullptr;
    std::erase(item->parent->children, item);
    std::erase(m_all, item);
    m_items.erase(item->id);
}

std::vector<Plain *> Walk::Rows() const
{
    std::vector<Plain *> rows, left(m_root.children.rbegin(), m_root.children.rend());
    while (!left.empty()) {
        Plain *item = left.back();
        left.pop_back();
        rows.push_back(item);
        if (item->IsExpanded())
            left.insert(left.end(), item->children.rbegin(), item->children.rend());
    }
    return rows;
}

void Walk::SetMarks(Plain *item, std::uint32_t both, std::uint32_t bits)
{
    item->state = (item->state & ~both) | bits;
    for (Plain *child : item->children)
        SetMarks(child, both, bits);
}

void Walk::RecountParents(Plain *item, std::uint32_t box, std::uint32_t both)
{
    for (Plain *parent = item->parent; parent && parent != &m_root; parent = parent->parent) {
        std::uint32_t bits = 0;
        for (const Plain *child : parent->children)
            bits |= child->state & box ? child->state & both : 0;
        if (bits)
            parent->state = (parent->state & ~both) | bits;
    }
}

// --- Comparison ---

void Walk::CompareItem(const Plain &item, const CTreeListItem &real, int &count, int &shown)
{
    count = shown = 1;
    m_mostChildren = std::max(m_mostChildren, static_cast<int>(item.children.size()));
    const CTreeListItem *previous = nullptr, *child = real.FirstChild();
    for (const Plain *each : item.children) {
        if (child != each->real || !child || child->Parent() != &real || child->Previous() != previous) {
            Fail("links");
            return;
        }
        int countBelow = 0, shownBelow = 0;
        if (child->Level() != real.Level() + 1)
            Fail("level");
        CompareItem(*each, *child, countBelow, shownBelow);
        count += countBelow;
        shown += shownBelow;
        previous = child;
        child = child->Next();
    }
    if (child || real.LastChild() != previous)
        Fail("the last child");
    if (!item.IsExpanded())
        shown = 1;
    if (real.ChildCount() != count)
        Fail("child count " + std::to_string(real.ChildCount()) + " instead of " + std::to_string(count));
    if (real.ShowCount() != shown)
        Fail("show count " + std::to_string(real.ShowCount()) + " instead of " + std::to_string(shown));
    if (real.State() != item.state)
        Fail("state " + std::to_string(real.State()) + " instead of " + std::to_string(item.state));
    if (&item != &m_root && real.Data() != item.id)
        Fail("data");
    if (&item != &m_root && (m_options.everyText || m_steps % 16 == 0)) {
        for (int column = 0; column < m_columns; ++column) {
            if (real.Text(column) != item.texts[static_cast<std::size_t>(column)])
                Fail("text of column " + std::to_string(column));
        }
        if (!real.Text(m_columns).empty())
            Fail("text of no column");
    }
}

void Walk::Compare()
{
    int count = 0, shown = 0;
    CompareItem(m_root, *m_root.real, count, shown);
    Expect(m_model->GetCount() == count - 1 && m_model->GetVisibleCount() == shown - 1, "the counts");

    const std::vector<Plain *> rows = Rows();
    int row = 0;
    CTreeListItem *walked = m_model->GetFirstVisibleItem();
    for (const Plain *item : rows) {
        Expect(m_model->GetFirstShowItem(row) == item->real, "the item of a row");
        Expect(m_model->GetShowIndex(item->real) == row, "the row of an item");
        Expect(walked == item->real, "the walk over rows");
        Expect(!walked || row == 0 ||
                   m_model->GetPrevVisibleItem(walked) == rows[static_cast<std::size_t>(row) - 1]->real,
               "the walk back over rows");
        walked = m_model->GetNextShowItem(walked);
        ++row;
    }
    Expect(!walked && !m_model->GetFirstShowItem(row) && !m_model->GetFirstShowItem(-1), "behind the last row");
    Expect(m_model->GetLastVisibleItem() == (rows.empty() ? nullptr : rows.back()->real), "the last row");
    for (const Plain *item : m_all) {
        if (item->parent != &m_root && !item->parent->IsExpanded())
            Expect(m_model->GetShowIndex(item->real) == -1, "the row of a hidden item");
    }

    TreeListPosition position = m_model->GetFirstSelectedItemPosition();
    for (const Plain *item : m_selected)
        Expect(m_model->GetNextSelectedItem(position) == item->real, "the selection");
    Expect(position == -1 && m_model->GetSelectedCount() == static_cast<int>(m_selected.size()), "its end");
    Expect(m_model->GetFocusItem() == (m_focus ? m_focus->real : nullptr), "the focus item");
    Expect(m_model->GetSelectColumn() == m_column, "the selected column");
}

} // namespace tree_list_steps
