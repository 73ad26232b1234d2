// The network as a forest of branches: every section once, splits, loops and parts without an outfall.
#include "overview/forest/NetworkForest.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// A network told as "1>2 2>0:35.5 ?>2": from, to, length (10 when none is given); "?" is no node.
struct Told {
    int nodes = 0;
    std::vector<CForestSection> sections;
};
Told network(const std::string &text)
{
    Told told;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const auto arrow = word.find('>'), colon = word.find(':');
        const auto node = [&](const std::string &name) {
            const int number = name == "?" ? -1 : std::stoi(name);
            told.nodes = std::max(told.nodes, number + 1);
            return number;
        };
        const int from = node(word.substr(0, arrow));
        const int to = node(word.substr(arrow + 1, colon == std::string::npos ? colon : colon - arrow - 1));
        told.sections.push_back({from, to, colon == std::string::npos ? 10.0 : std::stod(word.substr(colon + 1))});
    }
    return told;
}

/// A branch as text: sections by number, joining branches in brackets.
std::string shape(const CNetworkForest &forest, int branch)
{
    std::string text;
    for (const CForestStep &step : forest.m_branches[static_cast<std::size_t>(branch)].m_steps) {
        text += text.empty() ? "" : " ";
        text += step.m_bBranch ? "(" + shape(forest, step.m_nIndex) + ")" : std::to_string(step.m_nIndex);
    }
    return text;
}

/// All branches that join no other: what they drain to, then their shape.
std::string shape(const CNetworkForest &forest)
{
    std::string text;
    for (std::size_t i = 0; i < forest.m_branches.size(); ++i) {
        const CForestBranch &branch = forest.m_branches[i];
        if (branch.m_nParent >= 0)
            continue;
        const std::map<EBranchEnd, std::string> names = {
            {EBranchEnd::Outfall, "outfall "}, {EBranchEnd::NoNode, "end"}, {EBranchEnd::Ring, "ring "}};
        text += (text.empty() ? "" : "; ") + names.at(branch.m_end) +
                (branch.m_nNode < 0 ? "" : std::to_string(branch.m_nNode)) + ": " + shape(forest, static_cast<int>(i));
    }
    return text;
}

std::string shapeOf(const std::string &text)
{
    const Told told = network(text);
    return shape(BuildForest(told.nodes, told.sections));
}

std::vector<int> numbersOf(const std::vector<bool> &flags)
{
    std::vector<int> numbers;
    for (std::size_t i = 0; i < flags.size(); ++i) {
        if (flags[i])
            numbers.push_back(static_cast<int>(i));
    }
    return numbers;
}

} // namespace

TEST(Forest, ALineStandsFromItsOutfallUpstream)
{
    EXPECT_EQ(shapeOf("2>1 1>0 3>2"), "outfall 0: 1 0 2");
}

TEST(Forest, ATributaryJoinsBehindTheSectionAtWhoseUpperEndItComesIn)
{
    // 0 <- 1 <- 2 <- 3, and 5 -> 4 -> 1
    EXPECT_EQ(shapeOf("1>0 2>1 3>2 4>1 5>4:5"), "outfall 0: 0 (3 4) 1 2");
}

TEST(Forest, AtAJunctionTheBranchGoesOnAlongTheLongestWayUpstreamNotTheWayOfMostSections)
{
    EXPECT_EQ(shapeOf("1>0 2>1:1 3>2:1 4>1:50"), "outfall 0: 0 (1 2) 3");
}

TEST(Forest, OfEquallyLongWaysTheOneOfMostSectionsGoesOnAndOfThoseTheFirst)
{
    EXPECT_EQ(shapeOf("1>0 2>1:20 3>1:10 4>3:10"), "outfall 0: 0 (1) 2 3");
    EXPECT_EQ(shapeOf("1>0 2>1 3>1"), "outfall 0: 0 (2) 1");
}

TEST(Forest, UnknownLengthsCountAsNone)
{
    EXPECT_EQ(shapeOf("1>0 2>1:-1000000 3>1:5"), "outfall 0: 0 (1) 2");
}

TEST(Forest, SeveralSectionsIntoAnOutfallAreItsLongestBranchAndOnesThatJoin)
{
    EXPECT_EQ(shapeOf("1>0:5 2>0:7 3>0:6"), "outfall 0: (0) (2) 1");
}

TEST(Forest, OutfallsStandInTheOrderOfTheirNodes)
{
    EXPECT_EQ(shapeOf("1>9 3>2"), "outfall 2: 1; outfall 9: 0");
}

TEST(Forest, ANodeWithoutSectionsIsNoOutfall)
{
    const CForestSection section{0, 1, 1.0};
    EXPECT_EQ(shape(BuildForest(9, {&section, 1})), "outfall 1: 0");
    EXPECT_THAT(BuildForest(9, {}).m_branches, IsEmpty());
    EXPECT_THAT(BuildForest(0, {}).m_branches, IsEmpty());
}

TEST(Forest, ASectionThatEndsAtNoNodeBeginsABranchOfItsOwn)
{
    EXPECT_EQ(shapeOf("1>? 2>1 4>3"), "outfall 3: 2; end: 0 1");
}

TEST(Forest, ASectionThatBeginsAtNoNodeIsTheLastOfItsBranch)
{
    EXPECT_EQ(shapeOf("1>0 ?>1 ?>?"), "outfall 0: 0 1; end: 2");
}

TEST(Forest, NodeNumbersBeyondTheCountAreNoNodes)
{
    const std::vector<CForestSection> sections = {{1, 0, 1.0}, {7, 1, 1.0}, {1, -5, 1.0}};
    const CNetworkForest forest = BuildForest(2, sections);
    EXPECT_EQ(shape(forest), "outfall 0: 0 1; end: 2");
    EXPECT_THAT(forest.m_splits, ElementsAre(1));
}

TEST(Forest, WhatLiesAboveASplitStandsOnceBeneathTheShorterWayToAnOutfallAndTheOtherWayIsMarked)
{
    // 4 > 3, then 3 > 0 straight, or 3 > 2 > 1 > 0.
    const Told told = network("1>0 2>1 3>2 3>0 4>3");
    const CNetworkForest forest = BuildForest(told.nodes, told.sections);
    EXPECT_EQ(shape(forest), "outfall 0: (3 4) 0 1 2");
    EXPECT_THAT(forest.m_splits, ElementsAre(3));
    EXPECT_THAT(numbersOf(forest.m_upstreamElsewhere), ElementsAre(2));
    EXPECT_THAT(numbersOf(forest.m_inLoop), IsEmpty());
}

TEST(Forest, ASplitToTwoOutfallsIsFollowedFromTheFirst)
{
    const Told told = network("2>0 2>1 3>2");
    const CNetworkForest forest = BuildForest(told.nodes, told.sections);
    EXPECT_EQ(shape(forest), "outfall 0: 0 2; outfall 1: 1");
    EXPECT_THAT(numbersOf(forest.m_upstreamElsewhere), ElementsAre(1));
}

TEST(Forest, ALoopWithAWayOutStandsBeneathThatWayAndItsSectionsAreTold)
{
    // 1 > 2 > 3 > 1, and out by 3 > 0.
    const Told told = network("3>0 1>2 2>3 3>1 4>1");
    const CNetworkForest forest = BuildForest(told.nodes, told.sections);
    EXPECT_EQ(shape(forest), "outfall 0: 0 2 1 (4) 3");
    EXPECT_THAT(numbersOf(forest.m_inLoop), ElementsAre(1, 2, 3));
    EXPECT_THAT(numbersOf(forest.m_upstreamElsewhere), ElementsAre(3));
    EXPECT_THAT(forest.m_splits, ElementsAre(3));
}

TEST(Forest, ALoopThatLiesAcrossTwoWaysDownIsToldToo)
{
    // 1 and 2 drain to 0 each, and into each other.
    const Told told = network("1>0 2>0 1>2 2>1");
    const CNetworkForest forest = BuildForest(told.nodes, told.sections);
    EXPECT_THAT(numbersOf(forest.m_inLoop), ElementsAre(2, 3));
    EXPECT_THAT(numbersOf(forest.m_upstreamElsewhere), ElementsAre(2, 3));
}

TEST(Forest, ARingWithoutAWayOutIsOpenedAtTheEndOfItsFirstSectionAndDrainsWhatFlowsIntoIt)
{
    const Told told = network("4>0 5>6 1>2 2>3 3>1 0>2");
    const CNetworkForest forest = BuildForest(told.nodes, told.sections);
    EXPECT_EQ(shape(forest), "outfall 6: 1; ring 2: (5 0) 2 4 3");
    EXPECT_THAT(numbersOf(forest.m_inLoop), ElementsAre(2, 3, 4));
}

TEST(Forest, WhatReachesAnOutfallIsNotDrawnIntoARing)
{
    // 1 leads to the outfall by a longer way than to the ring 5 > 6 > 5.
    const Told told = network("1>5 5>6 6>5 1>2 2>0 7>1");
    EXPECT_EQ(shape(BuildForest(told.nodes, told.sections)), "outfall 0: 4 3 5; ring 6: 1 (2) 0");
}

TEST(Forest, WhatReachesAnOutfallIsNotDrawnToAnEndWithoutANode)
{
    EXPECT_EQ(shapeOf("1>0 2>1 2>? 3>2"), "outfall 0: 0 1 3; end: 2");
}

TEST(Forest, ASectionFromANodeToItselfIsARingOfOne)
{
    const Told told = network("1>1 2>1");
    const CNetworkForest forest = BuildForest(told.nodes, told.sections);
    EXPECT_THAT(numbersOf(forest.m_inLoop), ElementsAre(0));
    EXPECT_EQ(shape(forest), "ring 1: (1) 0");
    EXPECT_EQ(shapeOf("1>0 1>1"), "outfall 0: 0 1");
}

TEST(Forest, ALongLineAndACombAreWalkedWithoutRecursion)
{
    constexpr int kCount = 200000;
    std::vector<CForestSection> line, comb;
    for (int i = 0; i < kCount; ++i)
        line.push_back({i + 1, i, -1.0});
    // At each node a longer dead end first, so that each next part joins the one before.
    for (int i = 0; i < kCount; ++i) {
        comb.push_back({2 * i + 3, 2 * i + 1, 0.0});
        comb.push_back({2 * i + 2, 2 * i + 1, 1.0 + i});
    }
    const CNetworkForest straight = BuildForest(kCount + 1, line);
    ASSERT_THAT(straight.m_branches, SizeIs(1));
    EXPECT_THAT(straight.m_branches[0].m_steps, SizeIs(kCount));
    const CNetworkForest deep = BuildForest(2 * kCount + 2, comb);
    std::size_t sections = 0;
    for (const CForestBranch &branch : deep.m_branches)
        sections += static_cast<std::size_t>(std::ranges::count(branch.m_steps, false, &CForestStep::m_bBranch));
    EXPECT_EQ(sections, comb.size());
}

namespace {

/// All nodes that flow can reach from one, itself included.
std::set<int> downstreamOf(const Told &told, int node)
{
    std::set<int> seen = {node};
    std::vector<int> open = {node};
    while (!open.empty()) {
        const int at = open.back();
        open.pop_back();
        for (const CForestSection &section : told.sections) {
            if (section.m_nFrom == at && section.m_nTo >= 0 && seen.insert(section.m_nTo).second)
                open.push_back(section.m_nTo);
        }
    }
    return seen;
}

} // namespace

TEST(Forest, InAnyNetworkEachSectionStandsOnceBehindOneThatItFlowsInto)
{
    constexpr unsigned kSeed = 20261121;
    std::mt19937 random(kSeed);
    int withLoops = 0, withSplits = 0, withRings = 0;
    for (int round = 0; round < 3000; ++round) {
        Told told;
        told.nodes = 1 + static_cast<int>(random() % 9);
        const auto count = random() % 14;
        for (unsigned i = 0; i < count; ++i) {
            const auto end = [&] { return static_cast<int>(random() % static_cast<unsigned>(told.nodes + 1)) - 1; };
            told.sections.push_back({end(), end(), static_cast<double>(random() % 4)});
        }
        SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", round " << round);
        const CNetworkForest forest = BuildForest(told.nodes, told.sections);
        std::vector<int> seen(told.sections.size()), joined(forest.m_branches.size());
        for (std::size_t b = 0; b < forest.m_branches.size(); ++b) {
            const CForestBranch &branch = forest.m_branches[b];
            ASSERT_LT(branch.m_nParent, static_cast<int>(b)) << "behind the one it joins";
            ASSERT_EQ(branch.m_nParent >= 0, branch.m_end == EBranchEnd::Junction);
            ASSERT_FALSE(branch.m_steps.empty());
            int node = branch.m_nNode;
            for (const CForestStep &step : branch.m_steps) {
                if (step.m_bBranch) {
                    const CForestBranch &joining = forest.m_branches[static_cast<std::size_t>(step.m_nIndex)];
                    ++joined[static_cast<std::size_t>(step.m_nIndex)];
                    ASSERT_EQ(joining.m_nParent, static_cast<int>(b));
                    ASSERT_EQ(joining.m_nNode, node);
                    continue;
                }
                const auto s = static_cast<std::size_t>(step.m_nIndex);
                ++seen[s];
                ASSERT_EQ(forest.m_branchOf[s], static_cast<int>(b));
                ASSERT_EQ(told.sections[s].m_nTo, node);
                node = told.sections[s].m_nFrom;
            }
            if (branch.m_end == EBranchEnd::Ring) {
                ++withRings;
                for (const int down : downstreamOf(told, branch.m_nNode))
                    ASSERT_TRUE(downstreamOf(told, down).contains(branch.m_nNode)) << "a way leads out of the ring";
            }
        }
        for (std::size_t b = 0; b < joined.size(); ++b)
            ASSERT_EQ(joined[b], forest.m_branches[b].m_nParent >= 0 ? 1 : 0);
        for (std::size_t s = 0; s < seen.size(); ++s) {
            ASSERT_EQ(seen[s], 1) << "section " << s;
            const auto &[from, to, length] = told.sections[s];
            const bool loop = from >= 0 && to >= 0 && downstreamOf(told, to).contains(from);
            ASSERT_EQ(forest.m_inLoop[s], loop) << "section " << s;
            withLoops += loop;
        }
        for (int node = 0; node < told.nodes; ++node) {
            const auto leaving = std::ranges::count(told.sections, node, &CForestSection::m_nFrom);
            ASSERT_EQ(leaving > 1, std::ranges::binary_search(forest.m_splits, node));
            withSplits += leaving > 1;
            const bool outfall = leaving == 0 && std::ranges::count(told.sections, node, &CForestSection::m_nTo) > 0;
            const auto root = std::ranges::find_if(forest.m_branches, [&](const CForestBranch &branch) {
                return branch.m_end == EBranchEnd::Outfall && branch.m_nNode == node;
            });
            ASSERT_EQ(outfall, root != forest.m_branches.end());
        }
    }
    EXPECT_GT(withLoops, 1000);
    EXPECT_GT(withSplits, 1000);
    EXPECT_GT(withRings, 300);
}
