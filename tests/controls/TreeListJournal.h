// A tree list without a view: it notes what it is told and gives prepared answers.
#pragma once

#include "controls/rules/TreeListItemPool.h"
#include "controls/rules/TreeListModel.h"

#include <cstdlib>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// Memory in which any allocation can fail; each item and each text block is one.
class FailingAllocator : public CTreeListAllocator {
public:
    explicit FailingAllocator(bool pooled = false) : m_bPooled(pooled) {}

    void *Allocate(std::size_t bytes) noexcept override
    {
        ++asked;
        if (failAt > 0 && --failAt == 0) {
            ++failed;
            return nullptr;
        }
        out += static_cast<long>(bytes);
        return std::malloc(bytes);
    }
    void Release(void *block, std::size_t bytes) noexcept override
    {
        out -= static_cast<long>(bytes);
        std::free(block);
    }
    bool AreBlocksPooled() const noexcept override { return m_bPooled; }

    int failAt = 0; ///< the so manyth allocation from now on fails; 0: none
    int failed = 0;
    int asked = 0;
    long out = 0; ///< bytes that are not given back

private:
    bool m_bPooled;
};

struct TreeListNote {
    int code = 0;
    CTreeListItem *item = nullptr;
    int column = 0;
    bool operator==(const TreeListNote &) const = default;
};

class TreeListJournal : public CTreeListModel {
public:
    TreeListJournal() = default;
    explicit TreeListJournal(CTreeListAllocator &allocator) : CTreeListModel(allocator) {}

    std::int64_t Notify(int code, CTreeListItem *item, int column) override
    {
        notes.push_back({code, item, column});
        return answer ? answer(code, item, column) : 0;
    }
    int EnsureVisible(CTreeListItem *item, int) override
    {
        steps.emplace_back("ensure visible");
        ensured.push_back(item);
        return 1;
    }
    int GetTopIndex() const override { return 0; }
    int GetCountPerPage() const override { return 10; }

    std::function<std::int64_t(int, CTreeListItem *, int)> answer;
    std::vector<TreeListNote> notes;
    std::vector<std::string> steps; ///< what the view was told, the notices left out
    std::vector<CTreeListItem *> ensured;
    std::vector<std::wstring> deleted; ///< texts of the items that the view was told to forget
    std::vector<std::pair<const CTreeListItem *, std::uint32_t>> changes;
    int fontHeight = 0;

protected:
    void SetRedraw(bool on) override { steps.emplace_back(on ? "redraw on" : "redraw off"); }
    void Layout() override { steps.emplace_back("layout"); }
    void Invalidate() override { steps.emplace_back("repaint"); }
    void InvalidateItem(const CTreeListItem *) override { steps.emplace_back("repaint item"); }
    int GetFontHeight() const override { return fontHeight; }
    void OnItemDeleted(const CTreeListItem *item) override { deleted.push_back(item->Text(0)); }
    void OnTextChanged(const CTreeListItem *, int) override { steps.emplace_back("text"); }
    void OnStateChanged(const CTreeListItem *item, std::uint32_t changed) override
    {
        changes.emplace_back(item, changed);
    }
    void OnColumnsChanged() override { steps.emplace_back("columns"); }
    int BeginControl(CTreeListItem *, int) override { return 1; }
    int CancelControl(CTreeListItem *, int) override
    {
        steps.emplace_back("cancel control");
        return 1;
    }
    int RestoreControl(CTreeListItem *, int) override { return 1; }
};
