#include "overview/forest/NetworkForest.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace {

constexpr int kNone = -1;

/// Sections by the node at one of their ends, in their order.
class CSectionsAt {
public:
    CSectionsAt(int nodeCount, std::span<const CForestSection> sections, int CForestSection::*end)
        : m_first(static_cast<std::size_t>(nodeCount) + 1)
    {
        for (const CForestSection &section : sections) {
            if (section.*end != kNone)
                ++m_first[static_cast<std::size_t>(section.*end) + 1];
        }
        std::partial_sum(m_first.begin(), m_first.end(), m_first.begin());
        m_sections.resize(static_cast<std::size_t>(m_first.back()));
        std::vector<int> next = m_first;
        for (std::size_t i = 0; i < sections.size(); ++i) {
            if (sections[i].*end != kNone)
                m_sections[static_cast<std::size_t>(next[static_cast<std::size_t>(sections[i].*end)]++)] =
                    static_cast<int>(i);
        }
    }
    std::span<const int> of(int node) const
    {
        const auto n = static_cast<std::size_t>(node);
        return std::span(m_sections)
            .subspan(static_cast<std::size_t>(m_first[n]), static_cast<std::size_t>(m_first[n + 1] - m_first[n]));
    }

private:
    std::vector<int> m_first, m_sections;
};

/// How far a network goes on upstream.
struct CReach {
    double m_length = 0.0;
    int m_nSections = 0;
    bool operator<(const CReach &o) const
    {
        return m_length != o.m_length ? m_length < o.m_length : m_nSections < o.m_nSections;
    }
};

class CForestBuilder {
public:
    CForestBuilder(int nodeCount, std::span<const CForestSection> sections)
        : m_nodeCount(std::max(nodeCount, 0)), m_sections(Known(m_nodeCount, sections)),
          m_entering(m_nodeCount, m_sections, &CForestSection::m_nTo),
          m_leaving(m_nodeCount, m_sections, &CForestSection::m_nFrom)
    {
    }

    CNetworkForest Build()
    {
        m_forest.m_branchOf.assign(m_sections.size(), kNone);
        m_forest.m_upstreamElsewhere.assign(m_sections.size(), false);
        FindLoops();
        FindEnds();
        Drain();
        Measure();
        // Branches that join come behind, so the list grows while it is walked.
        for (std::size_t i = 0; i < m_forest.m_branches.size(); ++i)
            Fill(static_cast<int>(i));
        return std::move(m_forest);
    }

private:
    static std::vector<CForestSection> Known(int nodeCount, std::span<const CForestSection> sections)
    {
        std::vector<CForestSection> known(sections.begin(), sections.end());
        for (CForestSection &section : known) {
            for (int *end : {&section.m_nFrom, &section.m_nTo}) {
                if (*end < 0 || *end >= nodeCount)
                    *end = kNone;
            }
        }
        return known;
    }
    const CForestSection &At(int section) const { return m_sections[static_cast<std::size_t>(section)]; }
    template <class T>
    static decltype(auto) Of(T &list, int index)
    {
        return list[static_cast<std::size_t>(index)];
    }

    /// Nodes in the order in which a walk through the sections at them is done with each; from the given nodes.
    template <class Starts, class Visit>
    void Walk(const Starts &starts, const CSectionsAt &at, int CForestSection::*other, std::vector<bool> &seen,
              Visit done) const
    {
        std::vector<std::pair<int, std::size_t>> path; // a node, and how many of its sections were taken
        for (const int start : starts) {
            if (Of(seen, start))
                continue;
            Of(seen, start) = true;
            path.emplace_back(start, 0);
            while (!path.empty()) {
                const int node = path.back().first;
                const auto sections = at.of(node);
                if (path.back().second == sections.size()) {
                    done(start, node);
                    path.pop_back();
                    continue;
                }
                const int next = At(sections[path.back().second++]).*other;
                if (next != kNone && !Of(seen, next)) {
                    Of(seen, next) = true;
                    path.emplace_back(next, 0);
                }
            }
        }
    }

    /// Nodes that can be reached from each other belong together: two walks, one against the flow, and one with it from
    /// the last one done back to the first.
    void FindLoops()
    {
        const auto count = static_cast<std::size_t>(m_nodeCount);
        std::vector<int> order(count), done;
        std::iota(order.begin(), order.end(), 0);
        done.reserve(count);
        std::vector<bool> seen(count);
        Walk(order, m_entering, &CForestSection::m_nFrom, seen, [&](int, int node) { done.push_back(node); });
        std::ranges::reverse(done);
        m_group.assign(count, kNone);
        seen.assign(count, false);
        Walk(done, m_leaving, &CForestSection::m_nTo, seen, [&](int start, int node) { Of(m_group, node) = start; });

        m_forest.m_inLoop.assign(m_sections.size(), false);
        for (std::size_t i = 0; i < m_sections.size(); ++i) {
            const auto &[from, to, length] = m_sections[i];
            m_forest.m_inLoop[i] = from != kNone && to != kNone && Of(m_group, from) == Of(m_group, to);
        }
    }

    void FindEnds()
    {
        for (int node = 0; node < m_nodeCount; ++node) {
            const std::size_t leaving = m_leaving.of(node).size();
            if (leaving == 0 && !m_entering.of(node).empty())
                m_forest.m_branches.push_back({EBranchEnd::Outfall, node, kNone, {}});
            if (leaving > 1)
                m_forest.m_splits.push_back(node);
        }
        std::vector<bool> goesOn(static_cast<std::size_t>(m_nodeCount)); // by group: something leaves it
        for (const CForestSection &section : m_sections) {
            if (section.m_nFrom != kNone &&
                (section.m_nTo == kNone || Of(m_group, section.m_nFrom) != Of(m_group, section.m_nTo)))
                Of(goesOn, Of(m_group, section.m_nFrom)) = true;
        }
        m_firsts.assign(m_forest.m_branches.size(), kNone);
        for (std::size_t i = 0; i < m_sections.size(); ++i) {
            const CForestSection &section = m_sections[i];
            const auto add = [&](EBranchEnd end, int first) {
                m_forest.m_branches.push_back({end, section.m_nTo, kNone, {}});
                m_firsts.push_back(first);
            };
            if (section.m_nTo == kNone) {
                add(EBranchEnd::NoNode, static_cast<int>(i));
            } else if (m_forest.m_inLoop[i] && !Of(goesOn, Of(m_group, section.m_nTo))) {
                add(EBranchEnd::Ring, kNone);
                Of(goesOn, Of(m_group, section.m_nTo)) = true; // one end for each ring
            }
        }
    }

    /// Gives each node the section through which it drains, nearest to an end first.
    void Drain()
    {
        m_drain.assign(static_cast<std::size_t>(m_nodeCount), kUnseen);
        m_upstream.reserve(static_cast<std::size_t>(m_nodeCount));
        const auto reach = [this](int node, int through) {
            if (node == kNone || Of(m_drain, node) != kUnseen)
                return;
            Of(m_drain, node) = through;
            m_upstream.push_back(node);
        };
        std::size_t next = 0;
        const auto goUp = [&] {
            for (; next < m_upstream.size(); ++next) {
                for (const int section : m_entering.of(m_upstream[next]))
                    reach(At(section).m_nFrom, section);
            }
        };
        // What drains to an outfall is not drawn away by another end, and a ring takes only what nothing else does.
        for (const EBranchEnd kind : {EBranchEnd::Outfall, EBranchEnd::NoNode, EBranchEnd::Ring}) {
            for (std::size_t i = 0; i < m_firsts.size(); ++i) {
                const CForestBranch &branch = m_forest.m_branches[i];
                if (branch.m_end != kind)
                    continue;
                if (branch.m_end == EBranchEnd::NoNode)
                    reach(At(m_firsts[i]).m_nFrom, m_firsts[i]);
                else
                    reach(branch.m_nNode, kNone);
            }
            goUp();
        }
    }

    bool GoesOn(int section) const
    {
        const int from = At(section).m_nFrom;
        return from != kNone && Of(m_drain, from) == section;
    }

    CReach ReachOf(int section) const
    {
        CReach reach = GoesOn(section) ? Of(m_reach, At(section).m_nFrom) : CReach();
        reach.m_length += std::max(At(section).m_length, 0.0);
        ++reach.m_nSections;
        return reach;
    }

    void Measure()
    {
        m_reach.resize(static_cast<std::size_t>(m_nodeCount));
        for (auto node = m_upstream.rbegin(); node != m_upstream.rend(); ++node) {
            for (const int section : m_entering.of(*node))
                Of(m_reach, *node) = std::max(Of(m_reach, *node), ReachOf(section));
        }
    }

    /// Puts the section that goes farthest up at the end of the branch and lets the others at the node join before it;
    /// answers with it.
    int Join(int branch, int node)
    {
        int longest = kNone;
        CReach farthest;
        for (const int section : m_entering.of(node)) {
            if (const CReach reach = ReachOf(section); longest == kNone || farthest < reach) {
                longest = section;
                farthest = reach;
            }
        }
        for (const int section : m_entering.of(node)) {
            if (section == longest)
                continue;
            const int joining = static_cast<int>(m_forest.m_branches.size());
            m_forest.m_branches.push_back({EBranchEnd::Junction, node, branch, {}});
            m_firsts.push_back(section);
            Of(m_forest.m_branches, branch).m_steps.push_back({true, joining});
        }
        return longest;
    }

    void Fill(int branch)
    {
        int section = Of(m_firsts, branch);
        if (section == kNone)
            section = Join(branch, Of(m_forest.m_branches, branch).m_nNode);
        while (section != kNone) {
            Of(m_forest.m_branches, branch).m_steps.push_back({false, section});
            Of(m_forest.m_branchOf, section) = branch;
            const int from = At(section).m_nFrom;
            const bool goesOn = GoesOn(section);
            Of(m_forest.m_upstreamElsewhere, section) = from != kNone && !goesOn;
            section = goesOn ? Join(branch, from) : kNone;
        }
    }

    static constexpr int kUnseen = -2;

    const int m_nodeCount;
    const std::vector<CForestSection> m_sections;
    const CSectionsAt m_entering, m_leaving;
    CNetworkForest m_forest;
    std::vector<int> m_firsts;   ///< of each branch the section that it begins with; none: the longest at its node
    std::vector<int> m_group;    ///< of each node one of those that can be reached from each other
    std::vector<int> m_drain;    ///< of each node the section through which it drains; none at an end
    std::vector<int> m_upstream; ///< nodes, each behind the one that it drains to
    std::vector<CReach> m_reach; ///< of each node
};

} // namespace

CNetworkForest BuildForest(int nodeCount, std::span<const CForestSection> sections)
{
    return CForestBuilder(nodeCount, sections).Build();
}
