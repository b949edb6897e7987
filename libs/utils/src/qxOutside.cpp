#include "qxOutside.h"

#include <atomic>

namespace qx::outside
{

namespace
{

constinit std::atomic<listener> current = nullptr;

} // namespace

void note() noexcept
{
    if (const listener told = current.load(std::memory_order_relaxed))
        told();
}

void setListener(listener told) noexcept
{
    current.store(told, std::memory_order_relaxed);
}

} // namespace qx::outside
