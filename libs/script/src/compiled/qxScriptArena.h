// Memory for what lives and ends together: objects without a destructor of their own.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

namespace qx::script
{

class arena
{
public:
    // Throws std::bad_alloc.
    template <class Made, class... Arguments>
    Made* make(Arguments&&... arguments)
    {
        static_assert(std::is_trivially_destructible_v<Made>);
        return new (take(sizeof(Made))) Made(std::forward<Arguments>(arguments)...);
    }

    // So many in a row, as they are by default.
    template <class Made>
    std::span<Made> makeRow(std::size_t count)
    {
        static_assert(std::is_trivially_destructible_v<Made>);
        // NOLINTNEXTLINE(bugprone-sizeof-expression): a row may be one of pointers
        auto* const first = static_cast<Made*>(take(count * sizeof(Made)));
        std::uninitialized_value_construct_n(first, count);
        return {first, count};
    }

private:
    static constexpr std::size_t chunkSize = 2048;

    // Aligned for everything.
    void* take(std::size_t size)
    {
        constexpr std::size_t aligned = alignof(std::max_align_t);
        size = (size + aligned - 1) / aligned * aligned;
        if (size > mLeft) {
            mLeft = size > chunkSize ? size : chunkSize;
            mpNext = mChunks.emplace_back(new std::byte[mLeft]).get();
        }
        mLeft -= size;
        return std::exchange(mpNext, mpNext + size);
    }

    std::vector<std::unique_ptr<std::byte[]>> mChunks;
    std::byte* mpNext = nullptr;
    std::size_t mLeft = 0;
};

} // namespace qx::script
