// Any text reads as each held type or is refused, and what was read survives the way into text and back.
#include "sandbox.h"

#include <qxHeldTypes.h>

#include <cmath>

namespace
{

using qx::genericValue;
using qx::string;

template <class T>
bool isSame(const T& a, const T& b)
{
    if constexpr (std::is_floating_point_v<T>)
        return a == b || (std::isnan(a) && std::isnan(b));
    else
        return a == b;
}

template <class T>
void readAs(const genericValue& text)
{
    T value{};
    if (!text.getValue(value))
        return;
    string written;
    fuzzing::require(genericValue(value).getValue(written), "what came from text goes into text");
    T again{};
    fuzzing::require(genericValue(written).getValue(again), "what went into text is read again");
    fuzzing::require(isSame(again, value), "a value survives text");

    // A typed write of text converts by the same rules.
    genericValue typed{T{}};
    string held;
    fuzzing::require(typed.setValue(written) && typed.getValue(held) && held == written,
                     "a typed write keeps it");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const genericValue text(fuzzing::textOf(data, size));
    readAs<bool>(text);
    readAs<short>(text);
    readAs<qx::ushort>(text);
    readAs<int>(text);
    readAs<qx::uint>(text);
    readAs<qx::long32>(text);
    readAs<qx::ulong32>(text);
    readAs<float>(text);
    readAs<double>(text);
    readAs<qx::date>(text);
    readAs<qx::time>(text);
    readAs<qx::timestamp>(text);
    readAs<string>(text);
    return 0;
}
