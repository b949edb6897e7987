// Directories: listing, and the current one.
#include "modules/qxScriptModules.h"
#include "modules/qxScriptRows.h"

#include "qxDirectory.h"

#include <array>

namespace qx::script
{

namespace
{

class directory_getAllFiles final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"directory_getAllFiles";
    static constexpr declaredParameter pathParam{L"path", true, L"Error retrieving path"};
    static constexpr declaredParameter filterParam{L"filter", false};
    static constexpr declaredParameter declared[] = {pathParam, filterParam};

    statement* clone() const override { return new directory_getAllFiles(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const string path = require<string>(pathParam, context);
        string filter;
        read(filterParam, context, filter);
        valueArray names;
        for (fileIterator it = directory(path).fileIt(filter.c_str(), DI_HIDDEN | DI_SYSTEM); it; it.next())
            names.emplace_back(it->fullName());
        replaceResult(result, names);
    }
};

class directory_getcurrent final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"directory_getcurrent";
    static constexpr std::array<declaredParameter, 0> declared{};

    statement* clone() const override { return new directory_getcurrent(*this); }
    void execute(codecontext&, genericValue& result) const override
    {
        replaceResult(result, directory(L".").fullName());
    }
};

class directory_setcurrent final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"directory_setcurrent";
    static constexpr declaredParameter nameParam{L"dir", true, L"Error retrieving directoryname"};
    static constexpr declaredParameter declared[] = {nameParam};

    statement* clone() const override { return new directory_setcurrent(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const directory wanted(require<string>(nameParam, context));
        replaceResult(result, wanted.makeCurrent());
    }
};

// --- Table ---

constexpr builtin rows[] = {
    namedRow<directory_getAllFiles>(
        L"Gives an array of the full names of the files directly in a directory, in the order of their "
        L"names, hidden ones included. The filter is a pattern with `*` and `?`, without regard to "
        L"case; several are separated by a semicolon."),
    namedRow<directory_getcurrent>(L"Gives the current directory of the process."),
    namedRow<directory_setcurrent>(
        L"Makes a directory the current one of the process; tells whether it could be entered."),
};

} // namespace

constinit const builtinTable directoryRows = rows;

} // namespace qx::script
