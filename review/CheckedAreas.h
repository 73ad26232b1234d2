// The areas whose tree items are checked, in an order that does not depend on addresses.
#pragma once

#include "contracts/CatchmentArea.h"

#include <memory>
#include <set>
#include <unordered_map>

/// Places of areas in a list: the null area comes before all, what is not in the list behind all, by GUID.
class CAreaOrder {
public:
    using AreaPtr = boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea>;

    /// A new list; no set that is ordered by the former one may hold anything.
    void Take(const ZEMGis::Sewage::CatchmentAreas &areas);
    bool Before(const AreaPtr &one, const AreaPtr &other) const;

private:
    std::size_t PlaceOf(const AreaPtr &area) const;
    std::unordered_map<const ZEMGis::Sewage::CCatchmentArea *, std::size_t> m_places;
};

struct CInAreaOrder {
    std::shared_ptr<const CAreaOrder> m_order;
    bool operator()(const CAreaOrder::AreaPtr &one, const CAreaOrder::AreaPtr &other) const
    {
        return m_order->Before(one, other);
    }
};

/// A null area can stand in it once.
using CCheckedAreas = std::set<CAreaOrder::AreaPtr, CInAreaOrder>;
