// What the calls of a statement gave that had made them when its frame was left: the tree does the statement
// anew, and each of these calls gives the same without being made again.
#pragma once

#include "compiled/qxScriptFrame.h"

namespace qx::script
{

class replay
{
public:
    // Of the function that ran in the frame, which has been left.
    explicit replay(frame& left) noexcept;

    // For a call that begins in `root`. True where it has been made: `result` is what it gave, or the same as
    // before where it gave nothing. Throws what it threw.
    static bool gives(scriptcontext& root, const statement& call, genericValue& result)
    {
        replay* const given = scope::replayed(root);
        return given && given->give(call, result);
    }

    // Set for the calls of a root, for the length of a scope.
    class inForce
    {
    public:
        inForce(replay& given, scriptcontext& root) noexcept : mRoot(root)
        {
            scope::setReplayed(root, &given);
        }
        inForce(const inForce&) = delete;
        inForce& operator=(const inForce&) = delete;
        ~inForce() { scope::setReplayed(mRoot, nullptr); }

    private:
        scriptcontext& mRoot;
    };

private:
    bool give(const statement& call, genericValue& result);

    frame& mFrame;
    const settledCall* mpMade;   // the last one
    unsigned mGiven = 0;         // those before this one are not asked for any more
    std::exception_ptr mFailure; // of the last one
};

} // namespace qx::script
