// What is left of a run when a frame is left: the tree does it.
//
// The statements around the place are entered again from the outermost inward, each by its `resume`, which
// does what is left of it and nothing that has been done. So contexts, guards and the links of a failure are
// those of a run by the tree.
#pragma once

#include "compiled/qxScriptProgram.h"
#include "compiled/qxScriptReplay.h"

namespace qx::script
{

class resumption
{
public:
    // Of the function that ran in the frame, which has been left: its cells are emptied bit by bit.
    explicit resumption(frame& left) noexcept;
    resumption(const resumption&) = delete;
    resumption& operator=(const resumption&) = delete;

    // `root` is that of the call, and has the parameters.
    void run(scriptcontext& root);

    // --- For resume ---

    // The piece of the statement in which the frame was left: the position in a block, the branch of an `if`.
    unsigned piece() const noexcept { return placeAt(mDepth + 1).piece; }
    // Makes the variables that the block around that piece had.
    void fill(codecontext& block);
    // The run of that piece. Inside is for one in a block that has just been opened for it.
    void go(const statement& run, codecontext& context);
    void goInside(const statement& run, codecontext& fresh);

private:
    // Of the places from the function to where the frame was left. By walking: nothing is allocated.
    const place& placeAt(unsigned depth) const noexcept;

    template <class Run>
    void atPlace(codecontext& context, const Run& run);

    const program& mProgram;
    frame& mFrame;
    const place& mPlace;
    replay mReplay;
    unsigned mDepth = 0; // of the statement that is being resumed
};

} // namespace qx::script
