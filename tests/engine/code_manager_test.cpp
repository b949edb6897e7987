// The code manager: code calls, binding, running, and the cache of loaded functions. The cache is the
// process's own and knows files by the name in the call, so each test uses file names of its own.
#include "assertRecorder.h"
#include "host.h"
#include "scriptSupport.h"
#include "support/expectations.h"

#include <gtest/gtest.h>

namespace
{

namespace script = qx::script;

TEST(codeManager, code_calls_are_split_as_expected)
{
    expectOutcomes("engine/codecalls", [](const qx::string& call) {
        const assertRecorder recorder;
        script::eCodeType type = script::codeTypeDll;
        qx::string file = L"unchanged";
        qx::string function = L"unchanged";
        const bool isSplit = script::codeManager::instance()->parseCodeCall(call, type, file, function);
        texts lines{(isSplit ? L"" : L"refused: ") +
                    qx::string(type == script::codeTypeDll ? L"dll|" : L"script|") + file + L"|" + function};
        const texts reports = assertRecorder::take();
        lines.insert(lines.end(), reports.begin(), reports.end());
        return lines;
    });
}

TEST(codeManager, finished_run_leaves_its_parameters_and_no_signal)
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

TEST(codeManager, function_is_loaded_again_only_for_a_newer_file)
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

TEST(codeManager, what_a_failed_read_or_listing_gave_is_not_kept)
{
    const scratchDirectory directory;
    const std::string name = unusedName();
    directory.write("Lost" + name + ".qxscr", "scrdef f(){ return(\"f\"); } \nscrdef g(){ return(\"g\"); }");
    setAge(directory, "", -60);
    watchedDisk disk;
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

TEST(codeManager, threads_share_one_function)
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
