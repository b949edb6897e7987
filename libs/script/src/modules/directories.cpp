// Directories: listing, and the current one.
#include "modules/qxScriptModules.h"
#include "statements/qxScriptBase.h"

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
    static constexpr declaredParameter declared[] = {{L"path", true}, {L"filter", false}};

    statement* clone() const override { return new directory_getAllFiles(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const string path = require<string>(L"path", context, L"Error retrieving path");
        string filter;
        read(L"filter", context, filter);
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
    static constexpr declaredParameter declared[] = {{L"dir", true}};

    statement* clone() const override { return new directory_setcurrent(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const directory wanted(require<string>(L"dir", context, L"Error retrieving directoryname"));
        replaceResult(result, wanted.makeCurrent());
    }
};

// --- Table ---

const builtin rows[] = {
    {.name = L"directory_getallfiles",
     .create = createNamed<directory_getAllFiles>,
     .parameters = L"(path, [filter])",
     .summary =
         L"Gives an array of the full names of the files directly in a directory, in the order of their "
         L"names, hidden ones included. The filter is a pattern with `*` and `?`, without regard to "
         L"case; several are separated by a semicolon.",
     .failures = {L"Error retrieving path"}},
    {.name = L"directory_getcurrent",
     .create = createNamed<directory_getcurrent>,
     .parameters = L"()",
     .summary = L"Gives the current directory of the process."},
    {.name = L"directory_setcurrent",
     .create = createNamed<directory_setcurrent>,
     .parameters = L"(dir)",
     .summary = L"Makes a directory the current one of the process; tells whether it could be entered.",
     .failures = {L"Error retrieving directoryname"}},
};

} // namespace

constinit const builtinModule directoryModule{L"directory", rows};

} // namespace qx::script
