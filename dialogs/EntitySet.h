// A selection set of the host that frees itself.
#pragma once

#include "contracts/DrawingHost.h"

/// None at the start. What is moved from has none any more.
class CEntitySet {
public:
    CEntitySet() = default;
    ~CEntitySet();
    CEntitySet(CEntitySet &&other) noexcept;
    /// Frees what it had.
    CEntitySet &operator=(CEntitySet &&other);

    /// A new empty set in place of the one it had.
    void Renew();
    void Free();
    /// What has no name in the host's sets is left out.
    void Add(const AcDbEntity &entity);
    bool IsNone() const { return m_name[0] == 0 && m_name[1] == 0; }
    /// For the host's calls, which take it by its name.
    const ads_name &Name() const { return m_name; }

private:
    ads_name m_name = {0, 0};
};
