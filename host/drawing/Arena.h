// Memory for the objects of one drawing, given back all at once; neighbours in reading order are neighbours in memory.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace velmor {

class Arena {
public:
    /// Makes an object; its destructor is the caller's business.
    template <class T, class... Arguments>
    T *make(Arguments &&...arguments)
    {
        static_assert(alignof(T) <= kAlignment);
        return new (allocate(sizeof(T))) T(std::forward<Arguments>(arguments)...);
    }

private:
    static constexpr std::size_t kAlignment = 16;
    static constexpr std::size_t kChunkSize = std::size_t{1} << 20;
    void *allocate(std::size_t size)
    {
        size = (size + kAlignment - 1) & ~(kAlignment - 1);
        if (size > m_left) {
            m_chunks.push_back(std::make_unique_for_overwrite<std::byte[]>(kChunkSize));
            m_next = m_chunks.back().get();
            m_left = kChunkSize;
        }
        void *place = m_next;
        m_next += size;
        m_left -= size;
        return place;
    }
    std::vector<std::unique_ptr<std::byte[]>> m_chunks;
    std::byte *m_next = nullptr;
    std::size_t m_left = 0;
};

} // namespace velmor
