// The one table through which the engine knows its modules.
#include "modules/qxScriptModules.h"

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

std::span<const builtinModule> builtinModules()
{
    return modules;
}

std::span<scriptModule> builtinModuleObjects()
{
    return moduleObjects;
}

} // namespace qx::script
