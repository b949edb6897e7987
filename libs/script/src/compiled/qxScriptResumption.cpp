// Resumptions: the way back from the function to the statement at which a frame was left.
#include "compiled/qxScriptResumption.h"

#include "statements/qxScriptRunning.h"

namespace qx::script
{

resumption::resumption(frame& left) noexcept
    : mProgram(left.running()), mFrame(left), mPlace(*left.left()->where()), mReplay(left)
{
    left.forgetLeft();
}

void resumption::run(scriptcontext& root)
{
    if (mPlace.depth == 0)
        atPlace(root, [&] { inside::exec(mProgram.body(), root); });
    else
        inside::resume(mProgram.body(), root, *this);
}

void resumption::fill(codecontext& block)
{
    const place& opened = placeAt(mDepth + 1);
    for (unsigned cell = opened.firstCell; cell < opened.firstCell + opened.cellCount; ++cell) {
        if (!mFrame.isBound(cell))
            continue;
        scope::create(block, mProgram.nameOf(cell), std::move(mFrame.at(cell)));
        cell::access::store(mFrame.at(cell), cell::refused);
    }
}

void resumption::go(const statement& run, codecontext& context)
{
    if (++mDepth == mPlace.depth)
        atPlace(context, [&] { inside::exec(run, context); });
    else
        inside::resume(run, context, *this);
}

void resumption::goInside(const statement& run, codecontext& fresh)
{
    if (++mDepth == mPlace.depth)
        atPlace(fresh, [&] { inside::execInBlock(run, fresh); });
    else
        inside::resumeInside(run, fresh, *this);
}

// The statement at which the frame was left begins anew, but for the calls that it has made.
template <class Run>
void resumption::atPlace(codecontext& context, const Run& run)
{
    const replay::inForce given(mReplay, *scope::plainRoot(context));
    run();
}

const place& resumption::placeAt(unsigned depth) const noexcept
{
    const place* at = &mPlace;
    while (at->depth > depth)
        at = at->outer;
    return *at;
}

} // namespace qx::script
