// Named positions of a markup document.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Positions by name in seven buckets, chosen by the sum of the name's characters modulo 7.
class CMarkupSavedPositions {
public:
    struct Positions {
        std::uint32_t parent = 0, main = 0, child = 0;
    };

    /// Replaces an earlier one of that name.
    void Set(std::wstring_view name, const Positions &positions);
    /// Null when there is none.
    const Positions *Find(std::wstring_view name) const;
    std::size_t MemoryBytes() const;

private:
    struct Entry {
        std::wstring name;
        Positions positions;
    };
    static std::size_t BucketOf(std::wstring_view name);

    std::array<std::vector<Entry>, 7> m_buckets;
};
