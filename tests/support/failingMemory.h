// Memory that runs out, for the calling thread.
#pragma once

#include <cstddef>
#include <cstdint>

// While an object of this class lives, allocations of more than so many bytes fail, and once so many bytes
// have been given in all, freed ones included, those of more than a few KiB. One at a time.
class memoryLimit
{
public:
    explicit memoryLimit(std::size_t largest, std::size_t inAll = SIZE_MAX) noexcept;
    memoryLimit(const memoryLimit&) = delete;
    memoryLimit& operator=(const memoryLimit&) = delete;
    ~memoryLimit();

    // True when an allocation has failed.
    bool isReached() const noexcept;
};
