// The command line, as a shell sees it: output, errors and exit status.
#ifdef QX_SCRIPT_PROGRAM

#include "documents.h"
#include "scriptSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace
{

// Runs `qxscript ARGUMENTS` through the shell in a directory of scripts. The shell is a posix one.
class commandLine : public testing::Test
{
protected:
    void SetUp() override
    {
        if (std::string(QX_SCRIPT_PROGRAM).ends_with(".exe"))
            GTEST_SKIP() << "needs a posix shell";
        std::filesystem::create_directory(mDirectory.path("sub"));
        mDirectory.write("tools.qxscr", "// small tools\n"
                                        "scrdef echo(in<string> text, in<string> other = \"-\")\n"
                                        "{\n"
                                        "    return(text);\n"
                                        "}\n"
                                        "scrdef other(in a, in b) { return(b); }\n"
                                        "scrdef fail() { createvar(a, getvar(missing)); }\n"
                                        "scrdef near() { return(callfunction($sub/deep$f, \"x\")); }\n");
        mDirectory.write("sub/deep.qxscr", "scrdef f(in a) { return(a); }\n");
        mDirectory.write("bad.qxscr", "scrdef good() { return(\"1\"); }\n"
                                      "scrdef kind(out<int> a) { return(a); }\n"
                                      "scrdef GOOD(in a) { return(a); }\n"
                                      "scrdef blank (in a) { return(a); }\n");
        mDirectory.write("both.qxscr", "scrdef f() { return(\"plain\"); }\n");
        mDirectory.write("both.qxsscr", "");
    }

    struct outcome
    {
        std::string output;
        std::string errors;
        int status;
    };

    // Runs a command of the shell in the directory.
    void shell(const std::string& command) const
    {
        const std::string inDirectory = "cd '" + mDirectory.path("").string() + "' && { " + command + "; }";
        EXPECT_EQ(std::system(inDirectory.c_str()), 0) << inDirectory;
    }

    outcome run(const std::string& arguments, const std::string& input = "") const
    {
        mDirectory.write("in", input);
        shell("'" QX_SCRIPT_PROGRAM "' " + arguments + " >out 2>err <in; echo $? >status");
        return {mDirectory.read("out"), mDirectory.read("err"), std::stoi(mDirectory.read("status"))};
    }

    // `%` in expected texts stands for the directory of the scripts.
    std::string filledIn(std::string text) const
    {
        const std::string in = mDirectory.path("").parent_path().string();
        for (std::size_t at = text.find('%'); at != std::string::npos; at = text.find('%', at + in.size()))
            text.replace(at, 1, in);
        return text;
    }

    struct expectation
    {
        const char* arguments;
        int status;
        const char* output;
        const char* errors;
        const char* input = "";
    };

    template <std::size_t N>
    void expectAll(const expectation (&cases)[N]) const
    {
        for (const expectation& row : cases) {
            SCOPED_TRACE(row.arguments);
            const outcome result = run(row.arguments, row.input);
            EXPECT_EQ(result.status, row.status);
            EXPECT_EQ(result.output, filledIn(row.output));
            EXPECT_EQ(result.errors, filledIn(row.errors));
        }
    }

    scratchDirectory mDirectory;
};

TEST_F(commandLine, runsFunctionsCallsAndTexts)
{
    const expectation cases[] = {
        {"run tools.qxscr echo hello", 0, "hello\n", ""},
        {"run tools near", 0, "x\n", ""},
        {"run sub/deep f \"\xc3\xa4 \xf0\x9d\x84\x9e \xff\"", 0, "\xc3\xa4 \xf0\x9d\x84\x9e \xff\n", ""},
        {"run tools other --base --help", 0, "--help\n", ""},
        {"run tools other -- --log", 0, "--log\n", ""},
        {"run --base sub deep f x", 0, "x\n", ""},
        {"run both f", 0, "plain\n", ""},
        {"run both.qxsscr f", 1, "", "qxscript: the search finds %/both.qxscr and not both.qxsscr\n"},
        {"run missing.qxscr f", 1, "", "File %/missing.qxsscr not found!\n"},
        {"run 'a$b.qxscr' f", 1, "", "qxscript: a file with \"$\" in its name cannot be called: a$b.qxscr\n"},
        {"run tools echo", 1, "",
         "Error preparing parameter for function \"echo\" ()\n  Input parameter \"text\" not found\n"},
        {"run tools fail", 1, "",
         "Error executing script \"fail\" \n"
         "  Error executing script \"createvar(a, getvar(missing));\" \n"
         "    Error executing script \"getvar(missing)\" \n"
         "      Variable \"missing\" not found\n"},
        {"call 'script$tools$echo' a b c", 0, "a\n", ""},
        {"call --base sub '$deep$f' --x", 0, "--x\n", ""},
        {"call 'dll$lib$func'", 1, "", "qxscript: the engine does not carry out \"dll$lib$func\"\n"},
        {"call 'exe$a$b'", 1, "", "assert: parseCodeCall: invalid codetype exe\nFile %/.qxsscr not found!\n"},
        {"eval '{ createvar(a, \"1\"); return(a); setvar(a, \"2\"); }'", 0, "1\n", ""},
        {"eval '{ createvar(a, \"1\"); createvar(p, getvarptr<int>(a)); setvar(a, \"2\"); return(p); }'", 0,
         "2\n", ""},
        {"eval '{ }'", 0, "", ""},
        {"eval today", 1, "", "qxscript: cannot be read as a statement: today\n"},
        {"eval '{ isnull(\"1\"); today }'", 1, "",
         "assert: statement::createFrom: error parsing \" today\"\n"
         "qxscript: cannot be read as a statement: { isnull(\"1\"); today }\n"},
        {"eval -", 0, "\xC3\xA4\n", "", "\xEF\xBB\xBF\n { createvar(a, \"\xC3\xA4\");\r\n  return(a); } \n"},
        {"run - f -- y", 0, "--yg%/\n", "",
         "scrdef f(in a, in b) // of two\n"
         "{ return(strcat(a, b, callfunction($-$g), getglobalvar(scriptbasepath))); }\n"
         "scrdef g() { return(\"g\"); }\n"},
        {"run --base sub - f", 0, "x\n", "", "scrdef f() { return(callfunction($deep$f, \"x\")); }"},
        {"run - f", 1, "", "Function \"f\" not found in file \"%/-.qxscr\"\n"},
        {"eval 'messagebox(\"Go on?\", \"YesNoCancel\", \"question\", \"Copy\")'", 0, "yes\n",
         "Copy: Go on?\n"},
        {"--log trace eval 'isnull(\"1\")'", 0, "false\n",
         "trace qx::script::statement::exec: trying to exec (isnull(\"1\"))\n"
         "trace qx::script::statement::exec: exec (isnull(\"1\")) OK\n"},
        {"eval --log=error 'isnull(\"1\")'", 0, "false\n", ""},
    };
    expectAll(cases);
}

TEST_F(commandLine, checksAndListsFiles)
{
    const std::string takesThePlace = "bad.qxscr:3: GOOD takes the place of the definition in line 1\n";
    const std::string end =
        "bad.qxscr:4: a blank before the opening bracket ends the file: nothing from here on exists\n";
    const std::string failures =
        "bad.qxscr:2: kind\n  Error parsing parametertype \"out\"\n" + takesThePlace + end;
    const std::string outline = takesThePlace + end;
    const expectation cases[] = {
        {"check tools.qxscr sub/deep.qxscr", 0, "", ""},
        {"check bad.qxscr tools.qxscr", 1, "", failures.c_str()},
        {"check missing.qxscr tools.qxscr", 1, "", "File %/missing.qxscr not found!\n"},
        {"functions tools.qxscr", 0,
         "echo(in<string> text, in<string> other = \"-\")\nother(in a, in b)\nfail()\nnear()\n", ""},
        {"functions bad.qxscr", 0, "good()\nkind(out<int> a)\nGOOD(in a)\n", outline.c_str()},
        {"statements IsOfType", 0,
         "isoftype<type>(value)\n"
         "Tells whether the value reads as this type, by itself or by conversion.\n"
         "module: variable\n"
         "types: bool, short, int, long, ushort, uint, ulong, float, double, date, time, timestamp, array\n"
         "result: replaces\n"
         "failures:\n"
         "  isoftype::createFrom: number of parameters < 1\n"
         "  isoftype: missing datatype for \"isoftype\"\n",
         ""},
        {"statements nosuch", 1, "", "qxscript: there is no statement \"nosuch\"\n"},
    };
    expectAll(cases);
    EXPECT_NE(run("statements").output.find("\nsetvar(name, [value])\n"), std::string::npos);
}

TEST_F(commandLine, scramblesAndRestores)
{
    const expectation cases[] = {
        {"scramble tools.qxscr secret.qxsscr", 0, "", ""},
        {"run secret echo x", 0, "x\n", ""},
        {"scramble secret.qxsscr again.qxscr", 0, "", ""},
        {"scramble missing.qxscr x", 1, "", "Error reading file %/missing.qxscr\n"},
        {"scramble tools.qxscr nowhere/x", 1, "", "qxscript: cannot write %/nowhere/x\n"},
    };
    expectAll(cases);
    EXPECT_EQ(mDirectory.read("again.qxscr"), mDirectory.read("tools.qxscr"));
    EXPECT_NE(mDirectory.read("secret.qxsscr"), mDirectory.read("tools.qxscr"));
}

TEST_F(commandLine, wrongUsageIsStatusTwo)
{
    for (const char* arguments :
         {"", "nosuch", "run", "run tools.qxscr", "call", "check", "functions", "scramble a", "eval",
          "eval a b", "run --base", "--log loud eval a", "functions --base a b"}) {
        SCOPED_TRACE(arguments);
        const outcome result = run(arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_TRUE(result.output.empty() && !result.errors.empty());
    }
    EXPECT_NE(run("--help").output.find("scramble"), std::string::npos);
    EXPECT_TRUE(run("--version").output.starts_with("qxscript 0."));
}

TEST_F(commandLine, theMiddleOfALongChainIsLeftOut)
{
    std::string text = "getvar(missing)";
    for (int i = 0; i < 60; ++i)
        text.insert(0, "isnull(").append(")");
    const outcome result = run(text.insert(0, "eval '").append("'"));
    EXPECT_EQ(result.status, 1);
    const std::vector<std::string> lines = linesOf(result.errors);
    // 61 statements and the reason.
    ASSERT_EQ(lines.size(), 41u);
    EXPECT_EQ(lines[19].find_first_not_of(' '), 38u);
    EXPECT_EQ(lines[20], std::string(40, ' ') + "... 22 more");
    EXPECT_EQ(lines[40], std::string(40, ' ') + "Variable \"missing\" not found");
}

TEST_F(commandLine, whatCannotBePrintedIsAFailure)
{
    const outcome result = run("eval 'isnull(\"1\")' >/dev/full 2>reason; test $? = 1 && cat reason");
    EXPECT_EQ(result.output, "qxscript: standard output cannot be written\n");
}

TEST_F(commandLine, messageBoxesOnATerminal)
{
    if (std::system("script -qec true /dev/null >/dev/null 2>&1 </dev/null") != 0)
        GTEST_SKIP() << "needs a pseudo-terminal";
    const auto shown = [this](const std::string& typed) {
        mDirectory.write("typed", typed);
        shell("script -qec \"'" QX_SCRIPT_PROGRAM
              "' eval 'messagebox(\\\"Go on?\\\", \\\"YesNoCancel\\\")'\" /dev/null <typed >shown");
        return mDirectory.read("shown");
    };
    // What is typed is echoed when it arrives, before the question or after it.
    const struct
    {
        const char* typed;
        std::size_t questions;
        const char* answer;
    } cases[] = {{"N\n", 1, "no\r\n"}, {"maybe\nY\n", 2, "yes\r\n"}, {"", 1, "cancel\r\n"}};
    for (const auto& tried : cases) {
        const std::string text = shown(tried.typed);
        std::size_t questions = 0;
        for (std::size_t at = 0;
             (at = text.find("Orbelan: Go on? (yes/no/cancel) ", at)) != std::string::npos; ++at)
            ++questions;
        EXPECT_EQ(questions, tried.questions) << text;
        EXPECT_TRUE(text.ends_with(tried.answer)) << text;
    }
}

TEST_F(commandLine, speaksTheLanguageOfTheEnvironment)
{
    // A program of its own, since language files are looked for beside it.
    std::filesystem::copy_file(QX_SCRIPT_PROGRAM, mDirectory.path("program"));
    std::filesystem::create_directory(mDirectory.path("lang"));
    mDirectory.write("lang/messages.de.ini", "title=\xC3\x84rger\n");
    const auto said = [this](const std::string& environment) {
        shell("env -u LC_ALL -u LC_MESSAGES -u LANG " + environment +
              " ./program eval 'locstring_getstring(\"title\")' >said");
        return mDirectory.read("said");
    };
    EXPECT_EQ(said("LANG=de_DE.UTF-8"), "\xC3\x84rger\n");
    EXPECT_EQ(said("LC_MESSAGES=de@euro LANG=fr"), "\xC3\x84rger\n");
    EXPECT_EQ(said("LC_ALL=C LC_MESSAGES=de"), "title\n");
    EXPECT_EQ(said("LC_ALL= LANG=de"), "\xC3\x84rger\n");
}

TEST_F(commandLine, examplesShowWhatTheySay)
{
    for (const char* name : {"tour", "batch"}) {
        const std::filesystem::path example = treeRoot() / "examples" / name;
        shell("'" + (example / "run.sh").string() + "' '" QX_SCRIPT_PROGRAM "' >shown 2>&1");
        EXPECT_EQ(mDirectory.read("shown"), contentOf(example / "output.txt"));
    }
}

} // namespace

#endif
