// Any text is a condition or is refused, and a condition gives an outcome for values of every kind, the same
// each time; `not` turns it round.
#include "sandbox.h"

#include <qxHeldTypes.h>

#include <vector>

namespace
{

using qx::genericValue;
using condition = qx::sharedPtr<qx::conditions::condition>;

const std::vector<genericValue>& values()
{
    static const auto* const all =
        new std::vector<genericValue>{genericValue(),
                                      genericValue(qx::string(L"abc")),
                                      genericValue(qx::string(L"12")),
                                      genericValue(5),
                                      genericValue(-0.5),
                                      genericValue(true),
                                      genericValue(qx::date(2024, 3, 9)),
                                      genericValue(qx::time(12, 0, 0)),
                                      genericValue(qx::timestamp(qx::date(2024, 3, 9), qx::time(12, 0, 0))),
                                      genericValue(qx::valueArray()),
                                      genericValue(qx::sharedPtr<genericValue>(new genericValue(7)))};
    return *all;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const qx::string text = fuzzing::textOf(data, size);
    const condition made(qx::conditions::condition::parse(text));
    const condition turned(qx::conditions::condition::parse(L"not (" + text + L")"));
    if (!made || !turned)
        return 0;
    for (const genericValue& value : values()) {
        const bool outcome = made->isTrue(value);
        fuzzing::require(made->isTrue(value) == outcome, "a condition stays with its outcome");
        fuzzing::require(turned->isTrue(value) != outcome, "not turns the outcome round");
    }
    return 0;
}
