#include "overview/forest/NetworkSums.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kPercent = 100.0;
/// Half of the last decimal that is shown.
constexpr double kShownPercent = 0.00005;

bool IsAmong(int index, std::size_t count)
{
    return index >= 0 && static_cast<std::size_t>(index) < count;
}

} // namespace

CNetworkSums &CNetworkSums::operator+=(const CNetworkSums &other)
{
    m_nSections += other.m_nSections;
    m_length += other.m_length;
    m_nUnknownLengths += other.m_nUnknownLengths;
    m_hectares += other.m_hectares;
    m_runoffHectares += other.m_runoffHectares;
    m_weightedHectares += other.m_weightedHectares;
    return *this;
}

std::vector<double> NetHectares(std::span<const CForestArea> areas)
{
    std::vector<double> net;
    net.reserve(areas.size());
    for (std::size_t i = 0; i < areas.size(); ++i) {
        double hectares = areas[i].m_hectares;
        std::vector<int> islands = areas[i].m_islands;
        std::ranges::sort(islands);
        islands.erase(std::unique(islands.begin(), islands.end()), islands.end());
        for (const int island : islands) {
            if (areas[i].m_hectares >= 0.0 && IsAmong(island, areas.size()) && static_cast<std::size_t>(island) != i)
                hectares -= std::max(areas[static_cast<std::size_t>(island)].m_hectares, 0.0);
        }
        net.push_back(areas[i].m_hectares < 0.0 ? hectares : std::max(hectares, 0.0)); // one that is all islands
    }
    return net;
}

std::vector<CNetworkSums> SectionSums(std::span<const CForestSection> sections, std::span<const CForestArea> areas)
{
    std::vector<CNetworkSums> sums;
    sums.reserve(sections.size());
    for (const CForestSection &section : sections) {
        const bool known = section.m_length >= 0.0;
        sums.push_back({1, known ? section.m_length : 0.0, known ? 0 : 1, 0.0, 0.0, 0.0});
    }
    const std::vector<double> net = NetHectares(areas);
    for (std::size_t i = 0; i < areas.size(); ++i) {
        for (const auto &[section, share] : areas[i].m_shares) {
            if (!IsAmong(section, sums.size()) || net[i] < 0.0 || share < 0.0)
                continue;
            CNetworkSums &sum = sums[static_cast<std::size_t>(section)];
            sum.m_hectares += net[i] * share;
            if (areas[i].m_coefficient < 0.0)
                continue;
            sum.m_runoffHectares += net[i] * share * areas[i].m_coefficient;
            sum.m_weightedHectares += net[i] * share;
        }
    }
    return sums;
}

std::vector<CNetworkSums> BranchSums(const CNetworkForest &forest, std::span<const CNetworkSums> sectionSums)
{
    std::vector<CNetworkSums> sums(forest.m_branches.size());
    for (std::size_t i = sums.size(); i-- > 0;) { // who joins comes behind
        for (const auto &[isBranch, index] : forest.m_branches[i].m_steps)
            sums[i] += isBranch ? sums[static_cast<std::size_t>(index)] : sectionSums[static_cast<std::size_t>(index)];
    }
    return sums;
}

double WholeShare(const CForestArea &area)
{
    double sum = 0.0;
    for (const CForestShare &share : area.m_shares) {
        if (share.m_share < 0.0)
            return -1.0;
        sum += share.m_share;
    }
    return sum;
}

bool IsWhole(double share)
{
    return std::abs(share * kPercent - kPercent) < kShownPercent;
}

std::vector<int> AreasNotKnown(std::span<const CForestArea> areas)
{
    std::vector<int> found;
    for (std::size_t i = 0; i < areas.size(); ++i) {
        if (areas[i].m_hectares < 0.0 || areas[i].m_coefficient < 0.0 || WholeShare(areas[i]) < 0.0)
            found.push_back(static_cast<int>(i));
    }
    return found;
}

std::vector<int> AreasNotWhole(std::span<const CForestArea> areas)
{
    std::vector<int> found;
    for (std::size_t i = 0; i < areas.size(); ++i) {
        if (!IsWhole(WholeShare(areas[i])))
            found.push_back(static_cast<int>(i));
    }
    return found;
}

std::vector<int> SectionsWithoutArea(std::size_t sectionCount, std::span<const CForestArea> areas)
{
    std::vector<bool> drains(sectionCount);
    for (const CForestArea &area : areas) {
        for (const auto &[section, share] : area.m_shares) {
            if (share > 0.0 && IsAmong(section, sectionCount))
                drains[static_cast<std::size_t>(section)] = true;
        }
    }
    std::vector<int> found;
    for (std::size_t i = 0; i < sectionCount; ++i) {
        if (!drains[i])
            found.push_back(static_cast<int>(i));
    }
    return found;
}
