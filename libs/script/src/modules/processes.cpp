// Libraries and processes of the system.
#include "modules/qxScriptModules.h"
#include "statements/qxScriptBase.h"

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
    static constexpr declaredParameter declared[] = {{L"file", true}};

    statement* clone() const override { return new loadDLL(*this); }
    // The library stays loaded until the process ends. One that cannot be loaded gives a null handle.
    void execute(codecontext& context, genericValue& result) const override
    {
        const string name = require<string>(L"file", context, L"error retrieving filename");
        file found = plainOrDebug(name);
        directory program;
        if (!found.exists() && getModulePath(string(), program))
            found = plainOrDebug(file(program.fullName(), name).fullName());
        if (!found.exists())
            execError(this, L"file not found");
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
    static constexpr declaredParameter declared[] = {{L"exe", true}, {L"params", false}, {L"flags", false}};

    statement* clone() const override { return new runExe(*this); }
    // REQUIRED: the exit code is asked for and dropped, and a program that cannot be started is no failure.
    void execute(codecontext& context, genericValue&) const override
    {
        const string program = require<string>(L"exe", context, L"error retrieving exe");
        string params;
        string flags;
        read(L"params", context, params);
        read(L"flags", context, flags);
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

const builtin rows[] = {
    {.name = L"loaddll",
     .create = createNamed<loadDLL>,
     .parameters = L"(file)",
     .summary =
         L"Loads a shared library, for good, and gives its handle. The file, then its debug build, whose "
         L"name ends in `-d`, are looked for under the given name and then in the directory of the "
         L"program.",
     .failures = {L"error retrieving filename\n"
                  L"file not found"}},
    {.name = L"runexe",
     .create = createNamed<runExe>,
     .parameters = L"(exe, [params], [flags])",
     .result = resultRule::none,
     .summary =
         L"Starts a program with these parameters, without a shell; one that cannot be started is passed "
         L"over. The flags, separated by commas: `w` waits for its end, `h` hides its window.",
     .failures = {L"error retrieving exe"}},
};

} // namespace

constinit const builtinModule libraryModule{L"library", rows};

} // namespace qx::script
