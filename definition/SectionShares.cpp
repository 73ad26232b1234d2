#include "definition/SectionShares.h"

#include "contracts/NetworkTopology.h"

using ZEMGis::Topology::kUnknownValue;

void CSectionShares::Add(const std::wstring &name, double length)
{
    if (length != kUnknownValue)
        m_total += length;
    m_lengths.emplace(name, length);
}

double CSectionShares::Of(const std::wstring &name) const
{
    const auto found = m_lengths.find(name);
    return found == m_lengths.end() ? kUnknownValue : found->second / m_total;
}
