#include "host/network/NetworkPaths.h"

#include <algorithm>
#include <deque>
#include <queue>
#include <unordered_map>
#include <unordered_set>

namespace velmor {

namespace {

using SectionPtr = Network::SectionPtr;

std::wstring guidOf(const Network::NodePtr &node)
{
    return node ? node->GetGuid() : std::wstring();
}

/// The ends of a section; empty where it has no node.
struct Ends {
    std::wstring start, end;
};
Ends endsOf(const SectionPtr &section)
{
    return {guidOf(section->GetStartingNode()), guidOf(section->GetEndingNode())};
}

std::vector<SectionPtr> spread(const Network &network, const std::wstring &from, const SectionPtr &first, bool upstream)
{
    std::unordered_map<std::wstring, std::vector<std::pair<SectionPtr, std::wstring>>> leaving; // with where it leads
    for (const SectionPtr &section : network.sections()) {
        const Ends ends = endsOf(section);
        const std::wstring &here = upstream ? ends.end : ends.start, &there = upstream ? ends.start : ends.end;
        if (!here.empty())
            leaving[here].emplace_back(section, there);
    }
    std::vector<SectionPtr> found;
    std::unordered_set<const ZEMGis::Topology::CSection *> seen;
    std::deque<std::wstring> open{from};
    if (first && seen.insert(first.get()).second)
        found.push_back(first);
    for (; !open.empty(); open.pop_front()) {
        const auto here = leaving.find(open.front());
        if (here == leaving.end())
            continue;
        for (const auto &[section, there] : here->second)
            if (seen.insert(section.get()).second) {
                found.push_back(section);
                open.push_back(there);
            }
    }
    return found;
}

} // namespace

std::vector<SectionPtr> upstreamOfNode(const Network &network, const std::wstring &nodeGuid)
{
    return nodeGuid.empty() ? std::vector<SectionPtr>() : spread(network, nodeGuid, {}, true);
}

std::vector<SectionPtr> downstreamOfNode(const Network &network, const std::wstring &nodeGuid)
{
    return nodeGuid.empty() ? std::vector<SectionPtr>() : spread(network, nodeGuid, {}, false);
}

std::vector<SectionPtr> branchOf(const Network &network, const SectionPtr &section, bool upstream)
{
    if (!section)
        return {};
    const Ends ends = endsOf(section);
    return spread(network, upstream ? ends.start : ends.end, section, upstream);
}

std::vector<SectionPtr> pathBetween(const Network &network, const std::wstring &fromGuid, const std::wstring &toGuid)
{
    if (fromGuid.empty() || toGuid.empty() || fromGuid == toGuid)
        return {};
    struct Way {
        SectionPtr section;
        std::wstring to;
        double length;
    };
    std::unordered_map<std::wstring, std::vector<Way>> ways;
    for (const SectionPtr &section : network.sections()) {
        const Ends ends = endsOf(section);
        if (ends.start.empty() || ends.end.empty())
            continue;
        double length = section->GetLength2D();
        if (!(length >= 0.0))
            length = section->GetStartPoint().distanceTo(section->GetEndPoint());
        ways[ends.start].push_back({section, ends.end, length});
        ways[ends.end].push_back({section, ends.start, length});
    }
    struct Reached {
        double distance;
        SectionPtr by;
        std::wstring from;
    };
    std::unordered_map<std::wstring, Reached> best{{fromGuid, {0.0, {}, {}}}};
    using Open = std::pair<double, std::wstring>;
    std::priority_queue<Open, std::vector<Open>, std::greater<>> open;
    open.emplace(0.0, fromGuid);
    while (!open.empty()) {
        const auto [distance, node] = open.top();
        open.pop();
        if (node == toGuid)
            break;
        if (distance > best.at(node).distance)
            continue;
        for (const Way &way : ways[node]) {
            const double there = distance + way.length;
            const auto known = best.find(way.to);
            if (known != best.end() && known->second.distance <= there)
                continue;
            best.insert_or_assign(way.to, Reached{there, way.section, node});
            open.emplace(there, way.to);
        }
    }
    std::vector<SectionPtr> path;
    for (auto at = best.find(toGuid); at != best.end() && at->second.by; at = best.find(at->second.from))
        path.push_back(at->second.by);
    std::reverse(path.begin(), path.end());
    return path;
}

bool hasNodes(const Network &network)
{
    return std::ranges::any_of(network.sections(), [](const SectionPtr &section) {
        return section->GetStartingNode() || section->GetEndingNode();
    });
}

} // namespace velmor
