// The code manager: code calls, binding, running, and the cache of loaded functions. The cache is the
// process's own and knows files by the name in the call, so each test uses file names of its own.
#include "assertRecorder.h"
#include "host.h"
#include "scriptSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace
{

namespace script = qx::script;
using testing::ElementsAre;

TEST(codeManager, splitsCodeCalls)
{
    const struct
    {
        const wchar_t* call;
        bool good;
        script::eCodeType type;
        const wchar_t* file;
        const wchar_t* function;
    } cases[] = {
        {L"script$tools$pick", true, script::codeTypeScript, L"tools", L"pick"},
        {L"$Tools$PICK", true, script::codeTypeScript, L"tools", L"pick"},
        {L" D L\tl$ My Tools \t$ pi ck ", true, script::codeTypeDll, L"my tools", L"pick"},
        {L"dll$$f", false, script::codeTypeDll, L"", L"f"},
        {L"tools$pick", false, script::codeTypeDll, L"unchanged", L"unchanged"},
        {L"", false, script::codeTypeDll, L"unchanged", L"unchanged"},
        {L"\"script$tools$pick", false, script::codeTypeDll, L"unchanged", L"unchanged"},
    };
    const assertRecorder recorder;
    for (const auto& row : cases) {
        SCOPED_TRACE(qx::string(row.call).utf8());
        script::eCodeType type = script::codeTypeDll;
        qx::string file = L"unchanged";
        qx::string function = L"unchanged";
        EXPECT_EQ(script::codeManager::instance()->parseCodeCall(row.call, type, file, function), row.good);
        EXPECT_EQ(type, row.type);
        EXPECT_EQ(file, row.file);
        EXPECT_EQ(function, row.function);
    }
    EXPECT_THAT(assertRecorder::take(), ElementsAre(L"parseCodeCall: invalid codetype \"script"));
}

TEST(codeManager, bindsArgumentsInOrder)
{
    const scratchDirectory directory;
    directory.write(
        "binding.qxscr",
        "scrdef both(in<int> a, in<string> b = \"ABC\") { return(callfunction($binding$b, b)); }\n"
        "scrdef b(in x) { return(x); }\n"
        "scrdef unnamed(in<int> , in<int> a) { return(a); }\n"
        "scrdef nothing(in a = \"1\") { callfunction(dll$lib$func); }\n"
        "scrdef bare(in<int> n = 1) { return(n); }\n");
    const qx::string base = directory.name();
    EXPECT_EQ(runCall(base, L"$binding$both", {L"1", L"Two", L"surplus"}), "Two");
    EXPECT_EQ(runCall(base, L"script$Binding$Both", {L"1"}), "abc");
    EXPECT_EQ(runCall(base, L"$binding$unnamed", {L"first"}), "first") << "an empty name takes no argument";

    script::scriptcontext context;
    std::vector<qx::genericValue> arguments(1); // null counts as missing
    qx::genericValue result(qx::string(L"kept"));
    EXPECT_TRUE(script::codeManager::instance()->executeFunction(base, L"$binding$nothing", context,
                                                                 arguments, result));
    qx::string text;
    EXPECT_TRUE(result.getValue(text));
    EXPECT_EQ(text, L"kept") << "a function without a return leaves the result alone";
    EXPECT_TRUE(context.parameter(nameOf(L"a")).getValue(text));
    EXPECT_EQ(text, L"1") << "parameters stay in the context";
    EXPECT_TRUE(arguments[0].isNull());

    EXPECT_THAT(
        chainOfFailure([&] { runCall(base, L"$binding$both"); }),
        ElementsAre("Error preparing parameter for function \"both\" ()", "Input parameter \"a\" not found"));
    EXPECT_THAT(chainOfFailure([&] { runCall(base, L"$binding$bare"); }),
                ElementsAre("Error preparing parameter for function \"bare\" ()",
                            "Error executing script \"getvar(1)\" ", "Variable \"1\" not found"));
}

TEST(codeManager, whatIsNoExceptionBecomesOne)
{
    // No hostStatement: the cache keeps the functions, and those are counted.
    class thrower final : public script::statement
    {
    public:
        explicit thrower(bool text) : mText(text) {}
        statement* clone() const override { return new thrower(*this); }
        void destroy() override { delete this; }
        void execute(codecontext&, qx::genericValue&) const override
        {
            if (mText)
                throw qx::string(L"thrown");
            throw 7;
        }

    private:
        bool mText;
    };
    const hostModule host([](const moduleCall& call) -> script::statement* {
        const bool isKnown = call.name == L"throwtext" || call.name == L"thrownumber";
        return isKnown ? new thrower(call.name == L"throwtext") : nullptr;
    });
    const scratchDirectory directory;
    directory.write("throwing.qxscr", "scrdef text(){ throwtext(); }\n"
                                      "scrdef number(){ thrownumber(); }\n"
                                      "scrdef bound(in a = throwtext(){ return(a); }\n");
    const qx::string base = directory.name();
    EXPECT_THAT(chainOfFailure([&] { runCall(base, L"$throwing$text"); }),
                ElementsAre("Error executing script \"thrown\n\ntext\" "));
    EXPECT_THAT(
        chainOfFailure([&] { runCall(base, L"$throwing$number"); }),
        ElementsAre("Error executing script \"number\" ", "Error executing script \"thrownumber();\" "));
    EXPECT_THAT(chainOfFailure([&] { runCall(base, L"$throwing$bound"); }),
                ElementsAre("Error preparing parameter for function \"bound\" (thrown)"));
}

TEST(codeManager, whatCannotBeLoadedSaysWhy)
{
    const scratchDirectory directory;
    directory.write("loading.qxscr", "scrdef good(){ return(\"1\"); }\n"
                                     "scrdef brackets(){ return(\"1\"; }\n"
                                     "scrdef kind(out<int> x){ return(x); }\n"
                                     "scrdef both(out<int> x){ nosuchstatement(); }\n"
                                     "scrdef blank() \n");
    const assertRecorder recorder;
    const qx::string base = directory.name();
    const auto failure = [&](const wchar_t* call) { return chainOfFailure([&] { runCall(base, call); }); };
    const std::string file = directory.name("loading.qxscr").utf8();
    EXPECT_EQ(runCall(base, L"$loading$good"), "1") << "the other definitions do no harm";
    EXPECT_THAT(failure(L"$loading$kind"), ElementsAre("Error parsing parametertype \"out\""));
    EXPECT_THAT(failure(L"$loading$blank"),
                ElementsAre("Function \"blank\" not found in file \"" + file + "\""));
    EXPECT_THROW(runCall(base, L"$loading$brackets"), script::parserException);
    EXPECT_THROW(runCall(base, L"$loading$both"), script::errParsingException) << "the body is parsed first";
    EXPECT_THROW(runCall(base, L"$nosuchfile$f"), qx::fileNotFoundException);
}

TEST(codeManager, malformedCallsFindNoFileAndLibraryCallsDoNothing)
{
    const scratchDirectory directory;
    const currentDirectory current(directory.path(""));
    const assertRecorder recorder;
    const std::string missing = "File " + directory.name(".qxsscr").utf8() + " not found!";
    for (const wchar_t* call : {L"tools$pick", L"", L"exe$tools$pick"})
        EXPECT_THAT(chainOfFailure([&] { runCall(qx::string(), call); }), ElementsAre(missing));
    EXPECT_THAT(assertRecorder::take(), ElementsAre(L"parseCodeCall: invalid codetype exe"));
    EXPECT_EQ(runCall(qx::string(), L"dll$lib$func"), "declined");
}

TEST(codeManager, aFunctionIsLoadedAgainOnlyForANewerFile)
{
    const scratchDirectory directory;
    const qx::string base = directory.name();
    const std::string name = unusedName();
    const std::string fileName = name + ".qxscr";
    const std::string otherName = "other/" + fileName;
    const qx::string call = qx::string::fromUtf8("$" + name + "$f");
    const auto write = [&](const char* result, int age) {
        directory.write(fileName, std::string("scrdef f(){ return(\"") + result + "\"); }");
        setAge(directory, fileName, age);
    };
    write("old", -100);
    EXPECT_EQ(runCall(base, call), "old");
    write("same time", -100);
    setAge(directory, fileName, -200);
    EXPECT_EQ(runCall(base, call), "old") << "a time that goes backwards";
    write("new", -50);
    EXPECT_EQ(runCall(base, qx::string(call).toUpper()), "new");

    // Another directory's file of the same name shares the entry.
    std::filesystem::create_directory(directory.path("other"));
    directory.write(otherName, "scrdef f(){ return(\"other\"); }");
    setAge(directory, otherName, -70);
    EXPECT_EQ(runCall(directory.name("other"), call), "new");
    setAge(directory, otherName, -30);
    EXPECT_EQ(runCall(directory.name("other"), call), "other");
    EXPECT_EQ(runCall(base, call), "other");

    std::filesystem::remove(directory.path(fileName));
    EXPECT_THROW(runCall(base, call), qx::fileNotFoundException) << "a deleted file fails at once";
}

TEST(codeManager, aLaterDefinitionLeavesParametersOfTheEarlier)
{
    const scratchDirectory directory;
    directory.write("twice.qxscr", "scrdef f(in a, in b = \"from the first\") { return(a); }\n"
                                   "scrdef F(in c) { return(b); }\n");
    EXPECT_EQ(runCall(directory.name(), L"$twice$f", {L"x"}), "from the first");
}

TEST(codeManager, aScrambledFileRunsLikeAPlainOne)
{
    const scratchDirectory directory;
    directory.write("source.qxscr", "scrdef f(in a) { return(a); }");
    ASSERT_TRUE(script::scrambleFile(qx::file(directory.name("source.qxscr")),
                                     qx::file(directory.name("secret.qxsscr"))));
    EXPECT_EQ(runCall(directory.name(), L"$secret$f", {L"x"}), "x");
    directory.write("mistaken.qxsscr", "scrdef f(in a) { return(a); }");
    EXPECT_THROW(runCall(directory.name(), L"$mistaken$f", {L"x"}), script::scriptFunctionNotFoundException);
}

TEST(codeManager, theBasePathFollowsTheFileThatRuns)
{
    const scratchDirectory directory;
    std::filesystem::create_directory(directory.path("sub"));
    directory.write("paths.qxscr",
                    "scrdef f() { callfunction($sub/deep$f); return(getglobalvar(scriptbasepath)); }\n"
                    "scrdef here() { return(getglobalvar(scriptbasepath)); }\n");
    directory.write("sub/deep.qxscr", "scrdef f() { createvar(a); }");
    const qx::string separator = directory.name().find(L'/') == qx::string::npos ? L"\\" : L"/";
    EXPECT_EQ(runCall(directory.name(), L"$paths$here"), qx::string(directory.name() + separator).utf8());
    EXPECT_EQ(runCall(directory.name(), L"$paths$f"), qx::string(directory.name("sub") + separator).utf8());
}

TEST(codeManager, aFinishedRunLeavesItsReturnedValueAndNoSignal)
{
    const scratchDirectory directory;
    directory.write("finished.qxscr", "scrdef f() { return(\"1\"); }");
    script::scriptcontext context;
    const wchar_t* const raised[] = {L"#breaksignal#", L"#continuesignal#", L"#breakallsignal#"};
    for (const wchar_t* signal : raised)
        context.setScriptSignal(nameOf(signal), qx::genericValue(true));
    std::vector<qx::genericValue> arguments;
    qx::genericValue result;
    EXPECT_TRUE(script::codeManager::instance()->executeFunction(directory.name(), L"$finished$f", context,
                                                                 arguments, result));
    for (const wchar_t* signal : raised)
        EXPECT_EQ(bool(context.scriptSignal(nameOf(signal))), signal == raised[2]);
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
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 200; ++i) {
                const qx::string text = std::to_wstring(t * 1000 + i);
                std::string returned;
                failureOf([&] { returned = runCall(directory.name(), call, {text}); });
                if (returned != text.utf8())
                    ++wrong;
                if (t == 0 && i % 20 == 19)
                    setAge(directory, fileName, i - 1000); // loads again during the others' runs
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
