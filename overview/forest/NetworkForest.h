// A sewage network as a forest of branches, from the outfalls upstream. Plain values: no widgets, no drawing.
//
// Nodes, sections and areas go by their numbers, from 0. A section flows from its starting to its ending node; -1 where
// none stands. Lengths are drawing units.
#pragma once

#include <span>
#include <vector>

struct CForestSection {
    int m_nFrom = -1;
    int m_nTo = -1;
    double m_length = 0.0; ///< below 0: not known
};

/// What a branch drains to.
enum class EBranchEnd {
    Outfall,  ///< a node that no section leaves
    NoNode,   ///< the lower end of its first section, at which no node stands
    Ring,     ///< a node of sections that flow in a ring, and out of it nowhere
    Junction, ///< a node of another branch, beneath which it stands
};

/// One row beneath a branch: a section of it, or a branch that joins.
struct CForestStep {
    bool m_bBranch = false;
    int m_nIndex = -1;
    bool operator==(const CForestStep &) const = default;
};

/// A line of sections, each flowing into the one before, with the branches that join it.
struct CForestBranch {
    EBranchEnd m_end = EBranchEnd::Outfall;
    int m_nNode = -1;                 ///< at its lower end; -1 for NoNode
    int m_nParent = -1;               ///< the branch it joins
    std::vector<CForestStep> m_steps; ///< upstream; what joins at a section's upper end stands behind the section
};

struct CNetworkForest {
    /// Each branch behind the one it joins. Those that join none come first: outfalls by node, then ends without a node
    /// and rings by section.
    std::vector<CForestBranch> m_branches;
    std::vector<int> m_branchOf; ///< of each section
    /// Of each section: what lies upstream of it stands beneath another section that leaves the same node (or beneath
    /// none, at the node that a ring was opened at).
    std::vector<bool> m_upstreamElsewhere;
    std::vector<bool> m_inLoop; ///< of each section: it lies on a way that comes back to where it began
    std::vector<int> m_splits;  ///< nodes that several sections leave, by number
};

/// Each section stands in exactly one branch. A node that several sections leave is followed upstream from the one on
/// the shortest way to an outfall (by sections; of equal ones the first). At a junction the branch goes on along the
/// longest way upstream (by length, then by sections, then the first), and the others join it. Numbers of nodes beyond
/// nodeCount count as none. Cost O(nodes + sections).
CNetworkForest BuildForest(int nodeCount, std::span<const CForestSection> sections);
