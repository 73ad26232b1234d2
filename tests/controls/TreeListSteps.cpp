#include "tests/controls/TreeListSteps.h"

#include <algorithm>
#include <utility>

namespace tree_list_steps {

namespace {

constexpr int kDeepestNotice = 2;
constexpr std::uint32_t kChecks = kItemChecked | kItemUnchecked, kLocks = kItemLocked | kItemUnlocked;

} // namespace

/// A call under way: its notices find here what to do to the plain tree first.
class Walk::Scope {
public:
    explicit Scope(Walk &walk, Pending pending) : m_walk(walk), m_pending(std::move(pending))
    {
        walk.m_pending.push_back(&m_pending);
    }
    ~Scope() { m_walk.m_pending.pop_back(); }
    void Finish()
    {
        Run(m_pending.deleting);
        Run(m_pending.done);
    }
    static void Run(std::function<void()> &what)
    {
        if (const auto once = std::exchange(what, nullptr))
            once();
    }

private:
    Walk &m_walk;
    Pending m_pending;
};

Walk::Walk(Source &source, const Options &options)
    : m_source(source), m_options(options), m_allocator(options.pooled),
      m_model(std::make_unique<TreeListJournal>(m_allocator))
{
    m_root.state |= kItemExpanded | kItemExpandedOnce;
    m_root.real = m_model->GetRootItem();
    m_model->answer = [this](int code, CTreeListItem *, int column) { return OnNotice(code, column); };
}

long Walk::Close()
{
    m_model.reset();
    return m_allocator.out;
}

void Walk::Fail(const std::string &what)
{
    if (m_what.empty())
        m_what = "step " + std::to_string(m_steps) + ": " + what;
}

void Walk::Expect(bool holds, const char *what)
{
    if (!holds)
        Fail(what);
}

bool Walk::Step()
{
    ++m_steps;
    m_growing = m_growing ? m_items.size() < m_options.most : m_items.size() < m_options.most / 12;
    const bool poor = !m_options.pooled && m_source.Below(16) == 0;
    m_allocator.failAt = poor ? 1 + static_cast<int>(m_source.Below(4)) : 0;
    Do(m_source.Below(64));
    m_allocator.failAt = 0;
    m_model->notes.clear();
    m_model->steps.clear();
    m_model->ensured.clear();
    m_model->deleted.clear();
    m_model->changes.clear();
    Expect(m_pending.empty(), "a call is left open");
    Compare();
    return m_what.empty();
}

void Walk::Do(unsigned what)
{
    if (what < (m_growing ? m_options.wide ? 24u : 22u : 4u))
        Insert();
    else if (what < 24)
        Delete();
    else if (what < 30)
        Move();
    else if (what < 33)
        Exchange();
    else if (what < 43)
        Expand();
    else if (what < 49)
        Mark();
    else if (what < 56)
        Select();
    else if (what < 58)
        State();
    else if (what < 60)
        Text();
    else if (what < 61)
        Columns();
    else if (what < 62)
        Style();
    else
        Nonsense();
}

std::int64_t Walk::OnNotice(int code, int column)
{
    const bool deleting = code == NotifySelChanging && column == -1;
    if (!m_pending.empty()) {
        if (deleting)
            Scope::Run(m_pending.back()->deleting);
        else if (code == NotifySelChanged || code == NotifyExpanded)
            Scope::Run(m_pending.back()->done);
    }
    if (m_options.nested && m_depth < kDeepestNotice && m_source.Below(12) == 0) {
        ++m_depth;
        m_deletions += deleting;
        // A choice among rows that are going does not last: it is left out.
        Do(m_source.Below(m_deletions > 0 ? 43 : 56));
        m_deletions -= deleting;
        --m_depth;
    }
    const bool asked = !deleting && (code == NotifySelChanging || code == NotifyExpanding || code == NotifyCheck ||
                                     code == NotifyLock);
    if (asked)
        m_refused = m_source.Below(10) == 0;
    return asked && m_refused ? -1 : 0;
}

// --- Steps ---

void Walk::Insert()
{
    if (m_items.size() >= m_options.most)
        return;
    static const wchar_t *const texts[] = {L"", L"s", L"section 12", L"\u010dvor \u0161aht", L"\U0001F600 wide"};
    const std::wstring text = texts[m_source.Below(5)];
    Plain *parent = AnyOrRoot();
    const unsigned form = m_source.Below(12);
    const int failures = m_allocator.failed;
    CTreeListItem *made = nullptr;
    std::size_t at = 0;
    if (form < 6) {
        CTreeListItem *after = TreeListLast();
        at = parent->children.size();
        if (form == 0) {
            after = TreeListFirst();
            at = 0;
        } else if (form == 1) {
            after = TreeListSorted();
        } else if (form < 4) {
            const Plain *sibling = AnyOrRoot(); // often no child of the parent: then first
            at = IndexIn(parent->children, sibling);
            at = at == parent->children.size() ? 0 : at + 1;
            after = sibling->real;
        }
        made = m_model->InsertItem(text, parent == &m_root && form % 2 ? TreeListRoot() : parent->real, after);
    } else if (form < 8) {
        const std::vector<Plain *> rows = Rows();
        const auto index = m_source.Below(static_cast<unsigned>(rows.size()) + 3);
        const int answer = m_model->InsertItem(static_cast<int>(index), text);
        parent = &m_root;
        if (index == 0) {
            at = 0;
        } else if (index >= rows.size()) {
            at = m_root.children.size();
        } else {
            parent = rows[index]->parent;
            at = PlaceOf(rows[index]);
        }
        if (answer >= 0) {
            Expect(answer == static_cast<int>(std::min<std::size_t>(index, rows.size())), "the new index");
            made = m_model->GetFirstShowItem(answer);
        }
    } else if (form < 9) {
        made = m_model->InsertItemNew(text, parent->real);
        if (!parent->children.empty()) {
            Expect(!made, "an only child among others");
            return;
        }
    } else if (form < 10) {
        made = m_model->InsertItemFirst(text, parent->real);
    } else {
        Plain *sibling = Any();
        if (!sibling)
            return;
        parent = sibling->parent;
        at = PlaceOf(sibling) + 1;
        made = m_model->InsertItemNext(text, sibling->real);
    }
    Expect(made || m_allocator.failed > failures, "an insertion failed");
    if (made)
        Made(parent, at, made, text);
}

void Walk::Delete()
{
    Plain *item = Any();
    const unsigned how = m_source.Below(50);
    if ((how == 0 && !m_growing) || !item) {
        Scope scope(*this, {[this] { RemoveChildren(&m_root); }, nullptr});
        Expect(how % 2 ? m_model->DeleteAllItems() : m_model->DeleteItem(nullptr), "deleting all");
        scope.Finish();
        return;
    }
    while (m_growing && item->children.size() > 3) // or no tree gets large
        item = item->children.front();
    const unsigned id = item->id;
    Scope scope(*this, {[this, id] {
                            if (Alive(id))
                                Remove(m_items[id].get());
                        },
                        nullptr});
    Expect(how % 2 ? m_model->DeleteItemX(item->real) : m_model->DeleteItem(item->real), "deleting");
    scope.Finish();
}

void Walk::Move()
{
    Plain *item = Any();
    if (!item)
        return;
    Plain *parent = AnyOrRoot();
    const Plain *sibling = AnyOrRoot();
    CTreeListItem *const places[] = {TreeListFirst(), TreeListLast(), TreeListSorted(), sibling->real};
    const unsigned how = m_source.Below(4);
    const int answer = m_model->MoveAfterItem(item->real, parent->real, places[how]);
    Expect(answer == (Within(parent, item) ? 0 : 1), "answer of a move");
    if (Within(parent, item) || (how == 3 && sibling == item && item->parent == parent))
        return;
    if ((how == 1 || how == 2) && !parent->children.empty() && parent->children.back() == item)
        return;
    std::erase(item->parent->children, item);
    std::size_t at = how == 0 ? 0 : parent->children.size();
    if (how == 3) {
        at = IndexIn(parent->children, sibling);
        at = at == parent->children.size() ? 0 : at + 1;
    }
    parent->children.insert(parent->children.begin() + static_cast<std::ptrdiff_t>(at), item);
    item->parent = parent;
}

void Walk::Exchange()
{
    Plain *one = Any(), *other = Any();
    if (!one)
        return;
    const bool refused = Within(one, other) || Within(other, one);
    Expect(m_model->ExchangeItem(one->real, other->real) == (refused ? 0 : 1), "answer of an exchange");
    if (refused)
        return;
    std::swap(one->parent->children[PlaceOf(one)], other->parent->children[PlaceOf(other)]);
    std::swap(one->parent, other->parent);
}

void Walk::Expand()
{
    Plain *item = Any();
    if (!item)
        return;
    const unsigned id = item->id;
    static constexpr int codes[] = {kExpand, kExpand, kExpand, kCollapse, kToggle, kToggle, kCollapseAndDelete, 4};
    int code = codes[m_source.Below(8)];
    if (code == kCollapseAndDelete && m_growing && item->children.size() > 3)
        code = kCollapse; // or no tree gets large
    const int asked = code;
    int expected = -1;
    if ((item->state & kItemExpandedOnce) && item->children.empty())
        expected = 1;
    else if (code > kCollapseAndDelete)
        expected = 0;
    if (code == kToggle)
        code = item->IsExpanded() ? kCollapse : kExpand;
    if (expected < 0 && item->IsExpanded() == (code == kExpand))
        expected = 1;
    if (expected >= 0) {
        const std::size_t notes = m_model->notes.size();
        Expect(m_model->Expand(item->real, asked) == expected, "answer of an expansion that does nothing");
        Expect(m_model->notes.size() == notes, "a notice of nothing");
        return;
    }
    bool did = false;
    const auto isDue = [this, id, code] { return Alive(id) && m_items[id]->IsExpanded() != (code == kExpand); };
    Pending pending;
    if (code == kCollapseAndDelete) {
        pending.deleting = [this, id, isDue] {
            if (isDue())
                RemoveChildren(m_items[id].get());
        };
    }
    pending.done = [this, id, code, isDue, &did] {
        if (!isDue())
            return;
        std::uint32_t &state = m_items[id]->state;
        state = code == kExpand ? state | kItemExpanded | kItemExpandedOnce : state & ~kItemExpanded;
        if (code == kCollapseAndDelete)
            state &= ~kItemExpandedOnce;
        did = true;
    };
    Scope scope(*this, std::move(pending));
    const int answer = m_model->Expand(item->real, asked);
    Expect(did ? answer == 0 : answer == 0 || answer == 1, "answer of an expansion");
}

void Walk::Mark()
{
    Plain *item = Any();
    if (!item)
        return;
    const unsigned id = item->id;
    const bool lock = m_source.Below(3) == 0;
    const std::uint32_t on = lock ? kItemLocked : kItemChecked, both = lock ? kLocks : kChecks;
    const std::uint32_t box = lock ? kItemShowsLock : kItemShowsCheck;
    if (m_source.Below(3) == 0) { // the one item's
        const int value = static_cast<int>(m_source.Below(3));
        Expect(lock ? m_model->SetLock(item->real, value) : m_model->SetCheck(item->real, value), "setting a mark");
        item->state = (item->state & ~both) | (value == 2 ? both : value == 1 ? on : both & ~on);
        return;
    }
    const bool toggle = m_source.Below(4) != 0;
    const int answer = lock ? m_model->SetItemLock(item->real, toggle) : m_model->SetItemCheck(item->real, toggle);
    if (!answer) {
        Expect(m_refused || !Alive(id), "a mark was refused by nobody");
        return;
    }
    Expect(Alive(id), "a mark of an item that went");
    if (!Alive(id))
        return;
    item = m_items[id].get();
    if (toggle)
        item->state = (item->state & ~both) | ((item->state & both) == on ? both & ~on : on);
    if (!m_model->HasStyle(lock ? StyleNoLockPropagation : StyleNoCheckPropagation)) {
        SetMarks(item, both, item->state & both);
        RecountParents(item, box, both);
    }
}

void Walk::Select()
{
    Plain *item = m_source.Below(8) == 0 ? nullptr : Any();
    const bool multi = m_model->HasStyle(StyleMultiSelect);
    const unsigned how = m_source.Below(10);
    const int column = static_cast<int>(m_source.Below(static_cast<unsigned>(std::max(1, m_columns))));
    if (how < 6) {
        const bool clear = how < 2;
        const unsigned id = item ? item->id : 0;
        if (item && !m_selected.empty() && m_selected.front() == item && m_column == column) {
            Expect(m_model->SelectItem(item->real, column, clear) == 1, "selecting again");
            return;
        }
        bool did = false;
        Scope scope(*this, {nullptr, [this, id, column, clear, multi, &did] {
                                if (!Alive(id))
                                    return;
                                did = true;
                                Plain *chosen = id ? m_items[id].get() : nullptr;
                                if (!chosen || !multi || clear)
                                    UnselectAll();
                                if (chosen && chosen->state & kItemSelected)
                                    Unselect(chosen);
                                else if (chosen)
                                    AddSelected(chosen);
                                m_focus = chosen;
                                m_column = column;
                            }});
        const int answer = m_model->SelectItem(item ? item->real : nullptr, column, clear);
        Expect(answer == (did ? 1 : 0), "answer of a selection");
        return;
    }
    if (!item)
        return;
    if (how < 8) {
        const bool select = how == 6;
        Expect(m_model->Select(item->real, select) == 1, "selecting quietly");
        if (((item->state & kItemSelected) != 0) == select)
            return;
        if (!select)
            Unselect(item);
        else {
            if (!multi)
                UnselectAll();
            AddSelected(item);
        }
        return;
    }
    Expect(m_model->ActiveItem(item->real, column) == 1, "making active");
    if (multi && item->state & kItemSelected) {
        Unselect(item);
        AddSelected(item);
    }
    m_focus = item;
    m_column = column;
}

void Walk::State()
{
    Plain *item = Any();
    if (!item)
        return;
    static constexpr std::uint32_t bits[] = {kItemExpanded,   kItemExpandedOnce, kItemShowsCheck, kItemShowsLock,
                                             kItemShowsImage, kItemChecked,      kItemUnlocked,   0x100,
                                             kItemSelected};
    const std::uint32_t add = bits[m_source.Below(9)], remove = bits[m_source.Below(9)];
    std::uint32_t state = item->state & ~remove;
    if (remove == kItemExpandedOnce)
        state &= ~kItemExpanded;
    state |= add;
    if (add == kItemExpanded)
        state |= kItemExpandedOnce;
    const bool select = state & kItemSelected, was = item->state & kItemSelected;
    Expect(m_model->SetItemState(item->real, add, remove) == 1, "setting a state");
    item->state = (state & ~kItemSelected) | (was ? kItemSelected + 0u : 0u);
    if (was && !select)
        Unselect(item);
    if (!was && select) {
        if (!m_model->HasStyle(StyleMultiSelect))
            UnselectAll();
        AddSelected(item);
    }
}

void Walk::Text()
{
    Plain *item = Any();
    if (!item || m_columns == 0)
        return;
    static constexpr wchar_t widths[] = {L'x', L'\u0161', L'\U0001F601', static_cast<wchar_t>(-1), L'\0'};
    const std::wstring text(m_source.Below(9) == 0 ? 300 : m_source.Below(14), widths[m_source.Below(5)]);
    const auto column = m_source.Below(static_cast<unsigned>(m_columns));
    const int failures = m_allocator.failed;
    if (m_model->SetItemText(item->real, static_cast<int>(column), text))
        item->texts[column] = text;
    else
        Expect(m_allocator.failed > failures, "setting a text");
}

void Walk::Columns()
{
    if (m_columns == 0 || (m_columns < 5 && m_source.Below(2) == 0)) {
        Expect(m_model->InsertColumn(L"c") == m_columns, "the new column's number");
        ++m_columns;
        for (const auto &[id, item] : m_items)
            item->texts.emplace_back();
        return;
    }
    const int column = static_cast<int>(m_source.Below(static_cast<unsigned>(m_columns)));
    Expect(m_model->DeleteColumn(column) == 1, "deleting a column");
    --m_columns;
    for (const auto &[id, item] : m_items)
        item->texts.erase(item->texts.begin() + column);
    m_column = m_column == column ? -1 : m_column - (m_column > column);
}

void Walk::Style()
{
    m_model->SetStyle(m_source.Below(2) * StyleMultiSelect);
    if (m_source.Below(4) == 0)
        m_model->SetStyle(m_model->GetStyle() | StyleNoCheckPropagation | StyleNoLockPropagation);
}

void Walk::Nonsense()
{
    Plain *item = Any();
    CTreeListItem *real = item ? item->real : nullptr;
    switch (m_source.Below(6)) {
    case 0:
        Expect(!m_model->InsertItem(L"x", nullptr) && !m_model->InsertItem(L"x", TreeListLast()), "a wrong parent");
        break;
    case 1:
        Expect(!m_model->SetItemText(real, m_columns, L"x") && !m_model->SetItemText(real, -1, L"x"), "a wrong column");
        break;
    case 2:
        Expect(!m_model->DeleteItemFast(real) && !m_model->DeleteItemX(m_root.real), "what is linked");
        break;
    case 3:
        Expect(!m_model->MoveAfterItem(m_root.real, real ? real : m_root.real), "moving the root");
        break;
    case 4:
        Expect(m_model->Expand(m_root.real, kExpand) == 1, "the root");
        Expect(m_model->Expand(m_root.real, kCollapse) == (m_root.children.empty() ? 1 : 0), "the root");
        break;
    default:
        Expect(!m_model->SelectItem(m_root.real, 0) && !m_model->SelectItem(real ? real : m_root.real, 99),
               "selecting what can't be");
        break;
    }
}

} // namespace tree_list_steps
