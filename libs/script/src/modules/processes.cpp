// Libraries and processes of the system.
#include "modules/qxScriptModules.h"
#include "modules/qxScriptRows.h"

#include "qxDirectory.h"
#include "qxSystem.h"

namespace qx::script
{

namespace
{

class loadDLL final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"loadDLL";
    static constexpr declaredParameter fileParam{L"file", true, L"error retrieving filename"};
    static constexpr declaredParameter declared[] = {fileParam};
    static constexpr const wchar_t* notFound = L"file not found";
    static constexpr const wchar_t* failures[] = {notFound};

    statement* clone() const override { return new loadDLL(*this); }
    // The library stays loaded until the process ends. One that cannot be loaded gives a null handle.
    void execute(codecontext& context, genericValue& result) const override
    {
        const string name = require<string>(fileParam, context);
        file found = plainOrDebug(name);
        directory program;
        if (!found.exists() && getModulePath(string(), program))
            found = plainOrDebug(file(program.fullName(), name).fullName());
        if (!found.exists())
            execError(this, notFound);
        replaceResult(result, system::current().loadLibrary(found.fullName()));
    }

private:
    // The file of this name; where there is none, that of its debug build.
    static file plainOrDebug(const string& name)
    {
        const fsEntryName entry(name);
        const file plain(name);
        return plain.exists() ? plain
                              : file(string(entry.path(0) + entry.name(nameWithoutExtension) + L"-d." +
                                            entry.extension(0)));
    }
};

class runExe final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"runExe";
    static constexpr declaredParameter programParam{L"exe", true, L"error retrieving exe"};
    static constexpr declaredParameter paramsParam{L"params", false};
    static constexpr declaredParameter flagsParam{L"flags", false};
    static constexpr declaredParameter declared[] = {programParam, paramsParam, flagsParam};

    statement* clone() const override { return new runExe(*this); }
    // REQUIRED: the exit code is asked for and dropped, and a program that cannot be started is no failure.
    void execute(codecontext& context, genericValue&) const override
    {
        const string program = require<string>(programParam, context);
        string params;
        string flags;
        read(paramsParam, context, params);
        read(flagsParam, context, flags);
        void* process = nullptr;
        if (!startProcess(program, params, flagsIn(flags), nullptr, nullptr, &process, directory()))
            return;
        long32 code = 0;
        getExitCodeProcess(process, &code);
        system::current().closeProcess(process);
    }

private:
    static int flagsIn(const string& text)
    {
        std::vector<string> words;
        text.splitAt(L",", words, false);
        int flags = 0;
        for (const string& word : words) {
            const string flag = word.lower().deleteAll(L" \t");
            if (flag == L"w")
                flags |= processWait;
            else if (flag == L"h")
                flags |= processHidden;
        }
        return flags;
    }
};

// --- Table ---

constexpr builtin rows[] = {
    namedRow<loadDLL>(
        L"Loads a shared library, for good, and gives its handle. The file, then its debug build, whose "
        L"name ends in `-d`, are looked for under the given name and then in the directory of the "
        L"program."),
    namedRow<runExe>(
        L"Starts a program with these parameters, without a shell; one that cannot be started is passed "
        L"over. The flags, separated by commas: `w` waits for its end, `h` hides its window.",
        resultRule::none),
};

} // namespace

constinit const builtinTable libraryRows = rows;

} // namespace qx::script
