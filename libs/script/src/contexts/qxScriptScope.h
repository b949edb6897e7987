// How the engine looks into contexts.
//
// A chain of contexts in which nobody overrides anything is walked by plain loads: the blocks outward, then
// the parameters and the globals of the root. A chain with a context of a host's own class has no plain root,
// and its virtual operations are called as they are described.
#pragma once

#include "contexts/qxScriptSignals.h"
#include "qxScriptContext.h"

#include <typeinfo>

namespace qx::script
{

class replay;

class scope
{
public:
    // The root, if the whole chain is plain; null otherwise.
    static scriptcontext* plainRoot(codecontext& context) noexcept
    {
        return context.mpPlainRoot ? context.mpPlainRoot : findPlainRoot(context);
    }

    // Finds out whether the chain of a context is plain, for a context that is a root mostly: at the
    // beginning of a run.
    static void knowPlainRoot(codecontext& context) noexcept
    {
        if (context.mpPlainRoot)
            return;
        if (&typeid(context) == &typeid(scriptcontext)) // without a call; equal types may have two addresses
            context.mpPlainRoot = static_cast<scriptcontext*>(&context);
        else
            findPlainRoot(context);
    }

    // The value of a variable whose address nobody has ever asked for, in a chain that is known to be plain.
    // Null where `variable` has to look. It is what running scripts does most, and calls nothing, so that who
    // asks here first and calls for the rest last saves no registers: a third of what a read takes.
    static genericValue* ownVariable(codecontext& context, const scString& name) noexcept
    {
        scriptcontext* const root = context.mpPlainRoot;
        bool isIndexed = false;
        genericSet::entry* const found = root ? findByWalk(context, *root, name, isIndexed) : nullptr;
        return found ? found->own() : nullptr;
    }

    // The cells of a frame of compiled code; null for every other context.
    static genericValue* cells(const codecontext& context) noexcept { return context.mpCells; }

    // Null for a name that is not visible. Sets so large that they are indexed go another way, so that this
    // one has no call in it.
    static genericSet::entry* variable(codecontext& context, scriptcontext& root,
                                       const scString& name) noexcept
    {
        bool isIndexed = false;
        if (genericSet::entry* const found = findByWalk(context, root, name, isIndexed))
            return found;
        if (isIndexed) [[unlikely]]
            return variableIndexed(context, root, name);
        return root.mpGlobalVariables ? globalIndexed(root, name) : nullptr;
    }
    static genericSet::entry* parameter(scriptcontext& root, const scString& name) noexcept
    {
        return root.mParameters.find(name);
    }
    static genericSet::entry* global(scriptcontext& root, const scString& name) noexcept
    {
        return root.mpGlobalVariables ? root.mpGlobalVariables->find(name) : nullptr;
    }

    // True for a root as it is made: nobody has put anything into it but globals.
    static bool isBare(const scriptcontext& root) noexcept
    {
        return root.mPending == 0 && root.mParameters.isEmpty() && root.mSignals.isEmpty() &&
               root.mVariables.isEmpty();
    }

    static bool hasVariables(const scriptcontext& root) noexcept { return !root.mVariables.isEmpty(); }

    static void shareGlobals(scriptcontext& from, scriptcontext& with)
    {
        with.setGlobalVariables(from.mpGlobalVariables);
    }

    // See qxScriptReplay.h.
    static replay* replayed(const scriptcontext& root) noexcept { return root.mpReplayed; }
    static void setReplayed(scriptcontext& root, replay* given) noexcept { root.mpReplayed = given; }

    // A new local variable of the block; the name must not be visible.
    static void create(codecontext& block, const scString& name, genericValue&& value)
    {
        block.mVariables.insert(name, std::move(value));
    }
    // What setParameter does, with a value that may be emptied.
    static void takeParameter(scriptcontext& root, const scString& name, genericValue&& value)
    {
        root.mParameters.take(name, std::move(value));
        if (name == scriptcontext::returnparam())
            root.mPending = static_cast<unsigned char>(root.mPending | bitOf(raised::returned));
    }
    // Null when nothing has been returned.
    static genericSet::entry* returned(scriptcontext& root) noexcept
    {
        return root.mPending & bitOf(raised::returned) ? root.mParameters.find(scriptcontext::returnparam())
                                                       : nullptr;
    }

    // What stands raised, as bits; 0 for nothing.
    static unsigned pending(const scriptcontext& root) noexcept { return root.mPending; }
    static constexpr unsigned bitOf(raised what) noexcept { return 1u << static_cast<unsigned>(what); }

private:
    // Among the locals and the parameters, up to a set that is indexed.
    [[gnu::always_inline]] static genericSet::entry*
    findByWalk(codecontext& context, scriptcontext& root, const scString& name, bool& isIndexed) noexcept
    {
        for (codecontext* block = &context; block; block = block->mpOuterBlock) {
            isIndexed = block->mVariables.isIndexed();
            if (isIndexed) [[unlikely]]
                return nullptr;
            if (genericSet::entry* const local = block->mVariables.findByWalk(name))
                return local;
        }
        isIndexed = root.mParameters.isIndexed();
        return isIndexed ? nullptr : root.mParameters.findByWalk(name);
    }
    static scriptcontext* findPlainRoot(codecontext& context) noexcept;
    static genericSet::entry* variableIndexed(codecontext& context, scriptcontext& root,
                                              const scString& name) noexcept;
    static genericSet::entry* globalIndexed(scriptcontext& root, const scString& name) noexcept;
};

// The storage of the visible variable of this name, kept for the caller: contexts of a host's own class may
// make values on demand. Throws variableNotFoundException.
sharedPtr<genericValue> requireVariable(codecontext& context, const scString& name);

// raisedIn for those who want to know whether anything is.
inline bool isAnythingRaised(codecontext& context)
{
    const scriptcontext* const root = scope::plainRoot(context);
    return root ? scope::pending(*root) != 0 : raisedIn(context) != raised::nothing;
}

// The scope of a block that the engine opens.
class blockcontext final : public codecontext
{
public:
    explicit blockcontext(codecontext& outer) noexcept : codecontext(outer, scope::plainRoot(outer)) {}
};

} // namespace qx::script
