// Replays: a call is found among those that were made, and given once.
#include "compiled/qxScriptReplay.h"

namespace qx::script
{

replay::replay(frame& left) noexcept : mFrame(left), mpMade(left.done()), mFailure(left.failure()) {}

// A call comes before those among its own arguments, which were made before it and are not asked for any
// more.
bool replay::give(const statement& call, genericValue& result)
{
    const settledCall* made = mpMade;
    while (made && made->call != &call)
        made = made->before;
    if (!made || made->order < mGiven)
        return false;
    mGiven = made->order + 1;
    if (made == mpMade && mFailure)
        std::rethrow_exception(std::exchange(mFailure, nullptr));
    if (mFrame.isBound(made->cell)) {
        result = std::move(mFrame.at(made->cell));
        cell::access::store(mFrame.at(made->cell), cell::refused);
    }
    return true;
}

} // namespace qx::script
