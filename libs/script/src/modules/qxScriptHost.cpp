// The statements that a host has made of its functions: one module of names that no built-in has.
#include "qxScriptHostFunction.h"

#include "statements/qxScriptBuiltins.h"

#include <unordered_map>

namespace qx::host
{

namespace
{

using makerTable = std::unordered_map<std::wstring, std::unique_ptr<const statementMaker>>;

makerTable& makers()
{
    static auto* const table = new makerTable; // never destroyed: scripts may run to the end of the process
    return *table;
}

script::statement* makeOwn(const string& name, const std::vector<string>& types,
                           const std::vector<string>& params, int flags)
{
    const auto found = makers().find(name);
    return found == makers().end() ? nullptr : found->second->make(types, params, flags);
}

constinit script::scriptModule ownStatements(makeOwn);

} // namespace

void addStatement(const string& name, std::unique_ptr<const statementMaker> maker)
{
    string written = name;
    written.toLower().deleteAll(L" \t");
    if (script::findBuiltin(written) || !makers().emplace(written, std::move(maker)).second)
        throw unexpectedErrorException(L"addStatement: %s exists already", name);
    ownStatements.registerModule();
}

} // namespace qx::host
