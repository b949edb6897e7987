// Frames: the room of their cells, the way of parameters into cells and back, and the ends of what cells
// hold.
#include "compiled/qxScriptFrame.h"

#include "compiled/qxScriptProgram.h"

#include "qxHeldTypes.h"
#include "qxSystem.h"

#include <algorithm>

namespace qx::script
{

namespace
{

// False for a value whose copies and ends run nothing but the library.
bool mayReachHost(const genericValue& value, unsigned nesting = 0)
{
    if (!value.hasHolder() || heldInPlace<string>(value))
        return false;
    constexpr unsigned deepest = 4;
    const auto reaches = [nesting](const genericValue& element) {
        return mayReachHost(element, nesting + 1);
    };
    const valueArray* const array = nesting < deepest ? heldInPlace<valueArray>(value) : nullptr;
    return !array || std::any_of(array->begin(), array->end(), reaches);
}

} // namespace

frame::frame(scriptcontext& root, bool isHosts, const program& outermost)
    : codecontext(root, nullptr), mRoot(root), mpFirst(reinterpret_cast<genericValue*>(mRoom)),
      mpRunning(&outermost), mIsHosts(isHosts),
      mIsSystemHosts(isHosts && &system::current() != &system::platform()), mOutermost(outermost),
      mpOutermost(mpFirst), mpTop(mpFirst), mpEnd(mpFirst + ownCells)
{
    cell::access::storeSmall(mReturned, cell::refused);
    push(outermost.cellCount());
    enterCells(mpFirst);
    takeParameters();
}

frame::~frame()
{
    giveParameters();
    std::destroy_n(mpOutermost, mOutermost.cellCount());
}

bool frame::grow() noexcept
{
    return declinesWithoutMemory([this] {
        if (mChunksInUse == mChunks.size())
            mChunks.push_back(std::make_unique_for_overwrite<std::byte[]>(chunkCells * sizeof(genericValue)));
        mpTop = reinterpret_cast<genericValue*>(mChunks[mChunksInUse++].get());
        mpEnd = mpTop + chunkCells;
        return true;
    });
}

bool frame::setReturned(genericValue&& value) noexcept
{
    // That of the outermost function is seen by a host's object that ends with a block.
    if (isOutermost() && !declinesWithoutMemory([&] {
            scope::takeParameter(mRoot, scriptcontext::returnparam(), std::move(value));
            return true;
        }))
        return false;
    if (!isOutermost())
        cell::access::fill(mReturned, std::move(value));
    return true;
}

void frame::giveParameters() noexcept
{
    const std::span<const scString> names = mOutermost.parameters();
    for (unsigned i = 0; i < names.size(); ++i) {
        if (cell::access::load(mpOutermost[i]) == cell::refused)
            continue;
        scope::parameter(mRoot, names[i])->value() = std::move(mpOutermost[i]);
        cell::access::storeSmall(mpOutermost[i], cell::refused);
    }
}

bool frame::takeParameters() noexcept
{
    const std::span<const scString> names = mOutermost.parameters();
    const auto own = [this](const scString& name) {
        genericSet::entry* const found = scope::parameter(mRoot, name);
        return found ? found->own() : nullptr;
    };
    if (scope::pending(mRoot) != 0 || scope::hasVariables(mRoot) ||
        !std::all_of(names.begin(), names.end(), own))
        return false;
    for (unsigned i = 0; i < names.size(); ++i)
        if (cell::access::load(mpOutermost[i]) == cell::refused)
            cell::access::fill(mpOutermost[i], std::move(*own(names[i])));
    return true;
}

std::size_t frame::parameterCount() const noexcept
{
    return mOutermost.parameters().size();
}

bool frame::isEndOfHolderSeen(unsigned cell) const noexcept
{
    return mayReachHost(mpFirst[cell]);
}

bool frame::isLookedInto(const genericValue& value) const
{
    return mIsHosts && mayReachHost(value);
}

// What ends may be an object of the host that looks into its root.
void frame::replaceHolder(unsigned cell, genericValue&& value) noexcept
{
    const genericValue ended(std::move(at(cell)));
    cell::access::fill(at(cell), std::move(value));
    if (isLookedInto(ended))
        giveParameters();
}

} // namespace qx::script
