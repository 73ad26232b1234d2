// What catchment areas bring to the sections and branches of a network, and whether their shares are whole. Plain
// values; see NetworkForest.h.
#pragma once

#include "overview/forest/NetworkForest.h"

#include <span>
#include <vector>

// A number below 0 stands for one that is not known. It enters no sum.

/// One section that an area drains to. A share is a fraction of 1.
struct CForestShare {
    int m_nSection = -1;
    double m_share = 0.0;
};

struct CForestArea {
    double m_hectares = 0.0;    ///< gross
    double m_coefficient = 0.0; ///< of run-off, 0 to 1
    std::vector<CForestShare> m_shares;
    std::vector<int> m_islands; ///< areas that lie inside of it and are counted by themselves
};

struct CNetworkSums {
    int m_nSections = 0;
    double m_length = 0.0;
    int m_nUnknownLengths = 0;       ///< sections that m_length is without
    double m_hectares = 0.0;         ///< net, each area with its share
    double m_runoffHectares = 0.0;   ///< those with a coefficient, times it
    double m_weightedHectares = 0.0; ///< those with a coefficient
    /// Mean coefficient of the hectares; 0 without any.
    double Coefficient() const { return m_weightedHectares > 0.0 ? m_runoffHectares / m_weightedHectares : 0.0; }
    CNetworkSums &operator+=(const CNetworkSums &other);
};

/// Hectares of each area without its islands; an island counts once, however often it is named. Below 0: not known.
std::vector<double> NetHectares(std::span<const CForestArea> areas);
/// Of each section by itself. Shares of sections that are not there are passed over.
std::vector<CNetworkSums> SectionSums(std::span<const CForestSection> sections, std::span<const CForestArea> areas);
/// Of each branch with all that stands beneath it.
std::vector<CNetworkSums> BranchSums(const CNetworkForest &forest, std::span<const CNetworkSums> sectionSums);

/// Sum of an area's shares; below 0 when one of them is not known.
double WholeShare(const CForestArea &area);
/// True when a sum is 100 % as dialogs show it, with four decimals.
bool IsWhole(double share);
/// Areas of which the size, the coefficient or a share is not known, by number.
std::vector<int> AreasNotKnown(std::span<const CForestArea> areas);
/// Areas whose shares don't add up to 100 %, by number.
std::vector<int> AreasNotWhole(std::span<const CForestArea> areas);
/// Sections to which no area drains (none with a share above 0), by number.
std::vector<int> SectionsWithoutArea(std::size_t sectionCount, std::span<const CForestArea> areas);
