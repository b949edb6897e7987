// The code manager: code calls, binding, running, and the cache of loaded functions. The cache is the
// process's own and knows files by the name in the call, so each test uses file names of its own.
#include "assertRecorder.h"
#include "host.h"
#include "scriptSupport.h"

#include <gtest/gtest.h>

namespace
{

namespace script = qx::script;

TEST(codeManager, splitsCodeCalls)
{
    const struct
    {
        const wchar_t* call;
        bool good;
        script::eCodeType type;
        const wchar_t* fileAndFunction;
    } cases[] = {
        {L"script$tools$pick", true, script::codeTypeScript, L"tools|pick"},
        {L"$Tools$PICK", true, script::codeTypeScript, L"tools|pick"},
        {L" D L\tl$ My Tools \t$ pi ck ", true, script::codeTypeDll, L"my tools|pick"},
        {L"dll$$f", false, script::codeTypeDll, L"|f"},
        {L"tools$pick", false, script::codeTypeDll, L"unchanged|unchanged"},
        {L"", false, script::codeTypeDll, L"unchanged|unchanged"},
        {L"\"script$tools$pick", false, script::codeTypeDll, L"unchanged|unchanged"},
    };
    const assertRecorder recorder;
    for (const auto& row : cases) {
        SCOPED_TRACE(qx::string(row.call).utf8());
        script::eCodeType type = script::codeTypeDll;
        qx::string file = L"unchanged";
        qx::string function = L"unchanged";
        EXPECT_EQ(script::codeManager::instance()->parseCodeCall(row.call, type, file, function), row.good);
        EXPECT_EQ(type, row.type);
        EXPECT_EQ(file + L"|" + function, row.fileAndFunction);
    }
    EXPECT_EQ(assertRecorder::take(), texts{L"parseCodeCall: invalid codetype \"script"});
}

TEST(codeManager, bindsLoadsAndRuns)
{
    const scratchDirectory directory;
    std::filesystem::create_directory(directory.path("sub"));
    directory.write(
        "running.qxscr",
        "scrdef both(in<int> a, in<string> b = \"ABC\") { return(callfunction($running$b, b)); }\n"
        "scrdef b(in x) { return(x); }\n"
        "scrdef unnamed(in<int> , in<int> a) { return(a); }\n"
        "scrdef twice(in a, in b = \"from the first\") { return(a); }\n"
        "scrdef TWICE(in c) { return(b); }\n"
        "scrdef text(){ throwmessage(\"thrown\"); }\n"
        "scrdef bound(in a = throwmessage(\"thrown\"){ return(a); }\n"
        "scrdef body(out<int> x){ nosuchstatement(); }\n"
        "scrdef paths() { callfunction($sub/deep$f); return(getglobalvar(scriptbasepath)); }\n"
        "scrdef here() { return(getglobalvar(scriptbasepath)); }\n");
    directory.write("sub/deep.qxscr", "scrdef f() { createvar(a); }");
    const currentDirectory current(directory.path("sub"));
    const std::string separator(1, static_cast<char>(std::filesystem::path::preferred_separator));
    const std::string base = directory.name().utf8();
    const std::string missing = "File " + base + separator + "sub" + separator;
    const struct
    {
        const wchar_t* call;
        std::string outcome;
        texts arguments;
    } rows[] = {
        {L"$running$both", "Two", {L"1", L"Two", L"surplus"}},
        {L"script$Running$Both", "abc", {L"1"}},
        {L"$running$unnamed", "first", {L"first"}},    // an empty name takes no argument
        {L"$running$twice", "from the first", {L"x"}}, // a later definition leaves parameters of the earlier
        {L"$running$text", "Error executing script \"thrown\n\ntext\" ", {}},
        {L"$running$bound", "Error preparing parameter for function \"bound\" (thrown)", {}},
        {L"$running$body", "Error parsing { nosuchstatement(); }", {}}, // it is parsed first
        // The base path follows the file that runs.
        {L"$running$here", base + separator, {}},
        {L"$running$paths", base + separator + "sub" + separator, {}},
        // Malformed calls find no file.
        {L"$nosuchfile$f", missing + "nosuchfile.qxsscr not found!", {}},
        {L"tools$pick", missing + ".qxsscr not found!", {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(runCall(directory.name(), row.call, row.arguments), row.outcome);
}

TEST(codeManager, aFinishedRunLeavesItsParametersAndNoSignal)
{
    const scratchDirectory directory;
    directory.write("finished.qxscr", "scrdef f(in a = \"1\") { callfunction(dll$lib$func); }");
    script::scriptcontext context;
    const wchar_t* const raised[] = {L"#breaksignal#", L"#continuesignal#", L"#breakallsignal#"};
    for (const wchar_t* signal : raised)
        context.setScriptSignal(nameOf(signal), qx::genericValue(true));
    std::vector<qx::genericValue> arguments(1); // null counts as missing
    qx::genericValue result(5);
    EXPECT_TRUE(script::codeManager::instance()->executeFunction(directory.name(), L"$finished$f", context,
                                                                 arguments, result));
    EXPECT_EQ(valueText(result), "int 5") << "a function without a return leaves the result alone";
    EXPECT_EQ(valueText(context.parameter(nameOf(L"a"))), "string \"1\"");
    EXPECT_TRUE(arguments[0].isNull());
    for (const wchar_t* signal : raised)
        EXPECT_EQ(bool(context.scriptSignal(nameOf(signal))), signal == raised[2]);
}

TEST(codeManager, aFunctionIsLoadedAgainOnlyForANewerFile)
{
    const scratchDirectory directory;
    std::filesystem::create_directory(directory.path("other"));
    const std::string name = unusedName();
    const auto callAfter = [&](const std::string& folder, const std::string& result, int age) {
        const std::string entry = folder + name + ".qxscr";
        directory.write(entry, "scrdef f(){ return(\"" + result + "\"); }");
        setAge(directory, entry, age);
        return runCall(directory.name(folder), qx::string::fromUtf8("$" + name + "$F"));
    };
    EXPECT_EQ(callAfter("", "old", -100), "old");
    EXPECT_EQ(callAfter("", "same time", -100), "old");
    EXPECT_EQ(callAfter("", "older", -200), "old") << "a time that goes backwards";
    EXPECT_EQ(callAfter("", "new", -50), "new");
    // Another directory's file of the same name shares the entry.
    EXPECT_EQ(callAfter("other/", "other", -70), "new");
    EXPECT_EQ(callAfter("other/", "other", -30), "other");
    const qx::string call = qx::string::fromUtf8("$" + name + "$f");
    EXPECT_EQ(runCall(directory.name(), call), "other");
    std::filesystem::remove(directory.path(name + ".qxscr"));
    EXPECT_TRUE(runCall(directory.name(), call).ends_with(" not found!")) << "a deleted file fails at once";
}

TEST(codeManager, whatAFailedReadOrListingGaveIsNotKept)
{
    class stumblingDisk final : public fakeSystem
    {
    public:
        bool readFile(const qx::string& name, qx::byteSink& sink) override
        {
            return !failsToRead && platformSystem::readFile(name, sink);
        }
        bool listDirectory(const qx::string& name, std::vector<qx::directoryEntry>& entries) override
        {
            return !failsToList && platformSystem::listDirectory(name, entries);
        }
        bool failsToRead = false;
        bool failsToList = false;
    };
    const scratchDirectory directory;
    const std::string name = unusedName();
    directory.write("Lost" + name + ".qxscr", "scrdef f(){ return(\"f\"); } \nscrdef g(){ return(\"g\"); }");
    setAge(directory, "", -60);
    stumblingDisk disk;
    const auto call = [&](const char* function) {
        return runCall(directory.name(), qx::string::fromUtf8("$Lost" + name + "$" + function));
    };
    disk.failsToList = qx::file(L"/a") != qx::file(L"/A");
    EXPECT_EQ(call("f").ends_with(" not found!"), disk.failsToList);
    disk.failsToList = false;
    EXPECT_EQ(call("f"), "f");
    disk.failsToRead = true;
    EXPECT_TRUE(call("g").starts_with("Function \"g\" not found in file "));
    disk.failsToRead = false;
    EXPECT_EQ(call("g"), "g");
}

TEST(codeManager, threadsShareOneFunction)
{
    const scratchDirectory directory;
    const std::string name = unusedName();
    const std::string fileName = name + ".qxscr";
    const qx::string call = qx::string::fromUtf8("$" + name + "$f");
    directory.write(fileName, "scrdef f(in n) {\n    createglobalvar(g, n);\n    return(callfunction($" +
                                  name +
                                  "$g, getglobalvar(g)));\n}\nscrdef g(in<string> x) { return(x); }\n");
    setAge(directory, fileName, -1000);
    std::atomic<int> wrong = 0;
    onManyThreads([&](int thread) {
        for (int i = 0; i < 200; ++i) {
            const qx::string text = std::to_wstring(thread * 1000 + i);
            if (runCall(directory.name(), call, {text}) != text.utf8())
                ++wrong;
            if (thread == 0 && i % 20 == 19)
                setAge(directory, fileName, i - 1000); // loads again during the others' runs
        }
    });
    EXPECT_EQ(wrong, 0);
}

} // namespace
