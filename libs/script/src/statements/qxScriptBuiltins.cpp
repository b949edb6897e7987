// The look-up of built-in statements by name, and calls that are given as texts.
#include "statements/qxScriptBuiltins.h"

#include "qxTextView.h"

#include <cstdint>

namespace qx::script
{

namespace
{

// All rows, hashed. Every call of a script text looks its name up here.
class rowTable
{
public:
    rowTable()
    {
        for (const builtinModule& module : builtinModules())
            module.forEachRow([this](const builtin& row) { add(row); });
    }

    const builtin* find(std::wstring_view name) const noexcept
    {
        return name.empty() ? nullptr : const_cast<rowTable*>(this)->slotOf(name).row;
    }

private:
    struct slot
    {
        std::wstring_view name;
        const builtin* row = nullptr;
    };

    static constexpr unsigned slotBits = 10;
    static constexpr std::size_t slotCount = 1u << slotBits; // some five times as many as there are rows

    // Of rows with one name the first counts.
    void add(const builtin& row)
    {
        slot& place = slotOf(row.name);
        if (!place.row)
            place = {row.name, &row};
    }

    // The slot of a name, which is not empty, or the empty one where it would be. Some characters tell the
    // names apart well enough.
    slot& slotOf(std::wstring_view name) noexcept
    {
        const auto at = [name](std::size_t place) { return static_cast<std::uint32_t>(name[place]); };
        const std::size_t last = name.size() - 1;
        std::uint32_t hash = static_cast<std::uint32_t>(last) ^ at(0) ^ (at(last / 4) << 8) ^
                             (at(last / 2) << 16) ^ (at(last) << 24);
        hash *= 0x9E37'79B1u;
        for (hash >>= 32 - slotBits;; hash = (hash + 1) % slotCount) {
            slot& candidate = mSlots[hash];
            if (!candidate.row || isSameShort(candidate.name, name))
                return candidate;
        }
    }

    slot mSlots[slotCount];
};

// Not inline, so that a look-up saves fewer registers (W9).
[[gnu::noinline]] const rowTable& rowsOfAll()
{
    static const rowTable* const rows =
        new rowTable; // never destroyed: scripts may run to the end of the process
    return *rows;
}

} // namespace

callOfTexts::callOfTexts(const string& name, const std::vector<string>& types,
                         const std::vector<string>& params, int flags)
    : mText{name, {}, {}, flags}
{
    for (const string& type : types)
        mTypes.emplace_back(std::wstring_view(type));
    for (const string& param : params)
        mParams.emplace_back(mSources.emplace_back(param));
    mText.types = mTypes;
    mText.params = mParams;
}

const builtin* findBuiltin(std::wstring_view name)
{
    return rowsOfAll().find(name);
}

} // namespace qx::script
