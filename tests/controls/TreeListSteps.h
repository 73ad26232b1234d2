// Random doings with a tree list beside a plain tree that is told the same and counted anew after each step: the two
// stay equal.
#pragma once

#include "tests/controls/TreeListJournal.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tree_list_steps {

/// Where choices come from.
class Source {
public:
    virtual ~Source() = default;
    virtual unsigned Below(unsigned bound) = 0;
};

/// A row of the plain tree.
struct Plain {
    unsigned id = 0;
    Plain *parent = nullptr;
    std::vector<Plain *> children;
    std::uint32_t state = kItemDefaultState;
    std::vector<std::wstring> texts;
    CTreeListItem *real = nullptr;

    bool IsExpanded() const { return (state & kItemExpanded) != 0; }
};

/// Where an item stands in a list; the list's size when it doesn't.
inline std::size_t IndexIn(const std::vector<Plain *> &list, const Plain *item)
{
    return static_cast<std::size_t>(std::find(list.begin(), list.end(), item) - list.begin());
}

struct Options {
    std::size_t most = 40;  ///< items
    bool wide = false;      ///< most go under the root and one other item
    bool nested = true;     ///< notices do something too
    bool pooled = true;     ///< memory in slabs; else each block by itself, and some fail
    bool everyText = false; ///< all texts are compared after each step
};

class Walk {
public:
    Walk(Source &source, const Options &options);

    /// One step and the comparison. False when the two differ: What() tells how.
    bool Step();
    const std::string &What() const { return m_what; }
    std::size_t Count() const { return m_items.size(); }
    unsigned Steps() const { return m_steps; }
    int MostChildren() const { return m_mostChildren; }
    /// Ends the tree list; the bytes of its items that were not given back.
    long Close();

private:
    /// What a call does to the plain tree once it is past its first notice.
    struct Pending {
        std::function<void()> deleting, done;
    };
    class Scope;

    void Fail(const std::string &what);
    void Expect(bool holds, const char *what);
    std::int64_t OnNotice(int code, int column);
    void Do(unsigned what);

    void Insert();
    void Delete();
    void Move();
    void Exchange();
    void Expand();
    void Mark();
    void Select();
    void State();
    void Text();
    void Columns();
    void Style();
    void Nonsense();

    Plain *Any();
    Plain *AnyOrRoot();
    bool Alive(unsigned id) const { return id == 0 || m_items.count(id) != 0; }
    static bool Within(const Plain *item, const Plain *top);
    Plain *Made(Plain *parent, std::size_t at, CTreeListItem *real, const std::wstring &text);
    void Remove(Plain *item);
    void RemoveChildren(Plain *item);
    void Unselect(Plain *item);
    void UnselectAll();
    void AddSelected(Plain *item);
    std::size_t PlaceOf(const Plain *item) const;
    std::vector<Plain *> Rows() const;
    void SetMarks(Plain *item, std::uint32_t both, std::uint32_t bits);
    void RecountParents(Plain *item, std::uint32_t box, std::uint32_t both);

    void Compare();
    void CompareItem(const Plain &item, const CTreeListItem &real, int &count, int &shown);

    Source &m_source;
    Options m_options;
    FailingAllocator m_allocator;
    std::unique_ptr<TreeListJournal> m_model;
    Plain m_root;
    std::map<unsigned, std::unique_ptr<Plain>> m_items;
    std::vector<Plain *> m_all;      ///< for drawing one
    std::vector<Plain *> m_selected; ///< newest first
    Plain *m_focus = nullptr;
    int m_column = -1;
    int m_columns = 1;
    unsigned m_nextId = 1;
    bool m_growing = true;
    unsigned m_steps = 0;
    int m_depth = 0;
    int m_deletions = 0; ///< in whose notices a step is done
    int m_mostChildren = 0;
    bool m_refused = false; ///< the notice that was told last was refused
    std::vector<Pending *> m_pending;
    std::string m_what;
};

} // namespace tree_list_steps
