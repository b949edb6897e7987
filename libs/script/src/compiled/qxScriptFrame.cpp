// Frames: the way of parameters into cells and back, and the ends of what cells hold.
#include "compiled/qxScriptFrame.h"

#include "qxHeldTypes.h"

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

frame::frame(scriptcontext& root, bool isHosts, std::span<const scString> parameters, unsigned cells) noexcept
    : codecontext(root, nullptr), mRoot(root), mParameters(parameters), mCount(cells), mIsHosts(isHosts),
      mpFirst(reinterpret_cast<genericValue*>(mRoom))
{
    for (unsigned i = 0; i < cells; ++i)
        cell::access::store(*new (mpFirst + i) genericValue, cell::refused);
    for (unsigned i = 0; i < parameters.size(); ++i)
        mpFirst[i] = std::move(scope::parameter(root, parameters[i])->value());
    enterCells(mpFirst);
}

frame::~frame()
{
    giveParameters();
    std::destroy_n(mpFirst, mCount);
}

void frame::giveParameters() noexcept
{
    for (unsigned i = 0; i < mParameters.size(); ++i) {
        if (!isBound(i))
            continue;
        scope::parameter(mRoot, mParameters[i])->value() = std::move(at(i));
        cell::access::store(at(i), cell::refused);
    }
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
