// smallList: a list whose first elements lie in the object itself.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <span>
#include <type_traits>

namespace qx::script
{

template <class T, std::size_t Inside>
class smallList
{
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

public:
    smallList() noexcept = default;
    smallList(const smallList&) = delete;
    smallList& operator=(const smallList&) = delete;

    void push(const T& added)
    {
        if (mSize == mCapacity)
            grow();
        std::construct_at(mpItems + mSize, added);
        ++mSize;
    }

    std::span<const T> items() const noexcept { return {mpItems, mSize}; }

private:
    void grow()
    {
        auto larger = std::make_unique<std::byte[]>(2 * mCapacity * sizeof(T));
        T* const items = reinterpret_cast<T*>(larger.get());
        std::uninitialized_copy_n(mpItems, mSize, items);
        mOutside = std::move(larger);
        mpItems = items;
        mCapacity *= 2;
    }

    alignas(T) std::byte mInside[Inside * sizeof(T)];
    std::unique_ptr<std::byte[]> mOutside;
    T* mpItems = reinterpret_cast<T*>(mInside);
    std::size_t mSize = 0;
    std::size_t mCapacity = Inside;
};

} // namespace qx::script
