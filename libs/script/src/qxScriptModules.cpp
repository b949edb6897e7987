// The one table through which the engine knows its modules.
#include "qxScriptModules.h"

#include <unordered_map>

namespace qx::script
{

namespace
{

constexpr const builtinModule* modules[] = {
    &colourModule,     &conditionModule,    &checksumModule, &dateModule,
    &directoryModule,  &libraryModule,      &fileModule,     &mathModule,
    &objectModule,     &localisationModule, &operatorModule, &controlModule,
    &collectionModule, &stringModule,       &timeModule,     &variableModule,
};

const builtin* findIn(const builtinModule& module, std::wstring_view name)
{
    for (const builtin& row : module.rows)
        if (name == row.name)
            return &row;
    return nullptr;
}

// The factory of the module at `Place`, for those who ask a module object itself.
template <std::size_t Place>
statement* makeIn(const string& name, const std::vector<string>& types, const std::vector<string>& params,
                  int flags)
{
    const builtin* const row = findIn(*modules[Place], name);
    if (!row)
        return nullptr;
    const std::vector<textSlice> slices(params.begin(), params.end());
    return row->create({name, types, slices, flags});
}

constinit scriptModule moduleObjects[] = {
    scriptModule(makeIn<0>),  scriptModule(makeIn<1>),  scriptModule(makeIn<2>),  scriptModule(makeIn<3>),
    scriptModule(makeIn<4>),  scriptModule(makeIn<5>),  scriptModule(makeIn<6>),  scriptModule(makeIn<7>),
    scriptModule(makeIn<8>),  scriptModule(makeIn<9>),  scriptModule(makeIn<10>), scriptModule(makeIn<11>),
    scriptModule(makeIn<12>), scriptModule(makeIn<13>), scriptModule(makeIn<14>), scriptModule(makeIn<15>),
};
static_assert(std::size(modules) == std::size(moduleObjects));

} // namespace

std::span<const builtinModule* const> builtinModules()
{
    return modules;
}

const builtin* findBuiltin(std::wstring_view name)
{
    using rowTable = std::unordered_map<std::wstring_view, const builtin*>;
    static const rowTable* const rows = [] {
        auto* const table = new rowTable; // never destroyed: scripts may run to the end of the process
        for (const builtinModule* module : modules)
            for (const builtin& row : module->rows)
                table->emplace(row.name, &row);
        return table;
    }();
    const auto found = rows->find(name);
    return found == rows->end() ? nullptr : found->second;
}

std::span<scriptModule> builtinModuleObjects()
{
    return moduleObjects;
}

} // namespace qx::script
