// The one table through which the engine knows its modules.
#include "modules/qxScriptModules.h"

#include "qxTextView.h"

#include <cstdint>

namespace qx::script
{

namespace
{

// In the order in which the parser asks them.
constexpr builtinModule modules[] = {
    {L"colour", {&colourRows}},
    {L"condition", {&conditionRows}},
    {L"checksum", {&checksumRows}},
    {L"date", {&dateRows}},
    {L"directory", {&directoryRows}},
    {L"library", {&libraryRows}},
    {L"file", {&fileRows, &configurationRows}},
    {L"math", {&mathRows}},
    {L"object", {&fieldRows, &stateRows, &relationRows}},
    {L"localisation", {&localisationRows}},
    {L"operator", {&operatorRows, &logicRows}},
    {L"control", {&controlRows, &callRows, &messageRows}},
    {L"collection", {&collectionRows}},
    {L"string", {&stringRows}},
    {L"time", {&timeRows}},
    {L"variable", {&variableRows}},
};

const builtin* findIn(const builtinModule& module, std::wstring_view name)
{
    const builtin* found = nullptr;
    module.forEachRow([&](const builtin& row) {
        if (!found && name == row.name)
            found = &row;
    });
    return found;
}

// All rows, hashed. Every call of a script text looks its name up here.
class rowTable
{
public:
    rowTable()
    {
        for (const builtinModule& module : modules)
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

// The factory of the module at `Place`, for those who ask a module object itself.
template <std::size_t Place>
statement* makeIn(const string& name, const std::vector<string>& types, const std::vector<string>& params,
                  int flags)
{
    const builtin* const row = findIn(modules[Place], name);
    if (!row)
        return nullptr;
    return row->create(callOfTexts(name, types, params, flags).text());
}

constinit scriptModule moduleObjects[] = {
    scriptModule(makeIn<0>),  scriptModule(makeIn<1>),  scriptModule(makeIn<2>),  scriptModule(makeIn<3>),
    scriptModule(makeIn<4>),  scriptModule(makeIn<5>),  scriptModule(makeIn<6>),  scriptModule(makeIn<7>),
    scriptModule(makeIn<8>),  scriptModule(makeIn<9>),  scriptModule(makeIn<10>), scriptModule(makeIn<11>),
    scriptModule(makeIn<12>), scriptModule(makeIn<13>), scriptModule(makeIn<14>), scriptModule(makeIn<15>),
};
static_assert(std::size(modules) == std::size(moduleObjects));

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

std::span<const builtinModule> builtinModules()
{
    return modules;
}

namespace
{

// Not inline, so that a look-up saves few registers.
[[gnu::noinline]] const rowTable& rowsOfAll()
{
    static const rowTable* const rows =
        new rowTable; // never destroyed: scripts may run to the end of the process
    return *rows;
}

} // namespace

const builtin* findBuiltin(std::wstring_view name)
{
    return rowsOfAll().find(name);
}

std::span<scriptModule> builtinModuleObjects()
{
    return moduleObjects;
}

} // namespace qx::script
