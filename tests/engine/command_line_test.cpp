// The command line, as a shell sees it: output, errors and exit status.
#ifdef QX_SCRIPT_PROGRAM

#include "documents.h"
#include "scriptSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace
{

namespace fs = std::filesystem;
using qx::string;

// Runs commands of the posix shell in a directory of scripts; `qxscript` is the program.
class commandLine : public testing::Test
{
protected:
    void SetUp() override
    {
        if (std::string(QX_SCRIPT_PROGRAM).ends_with(".exe"))
            GTEST_SKIP() << "needs a posix shell";
        fs::copy(fs::path(QX_TESTS_DIR) / "engine/commandline", mDirectory.path(""),
                 fs::copy_options::recursive);
    }

    // The status.
    int shell(const std::string& command) const
    {
        mDirectory.write("command", "QXSCRIPT='" QX_SCRIPT_PROGRAM "'; qxscript() { \"$QXSCRIPT\" \"$@\"; }\n"
                                    "unset LC_ALL LC_MESSAGES LANG\n" +
                                        command);
        const std::string run = "cd '" + mDirectory.path("").string() + "' && sh command; echo $? >status";
        EXPECT_EQ(std::system(run.c_str()), 0);
        return std::stoi(mDirectory.read("status"));
    }

    texts outcomeOf(const string& command) const
    {
        const int status = shell("{ " + command.utf8() + "\n} >out 2>err");
        texts lines;
        for (const std::string& line : linesOf(mDirectory.read("out")))
            lines.push_back(string::fromUtf8(line));
        for (const std::string& line : linesOf(mDirectory.read("err")))
            lines.push_back(L"2> " + string::fromUtf8(line));
        if (status != 0)
            lines.push_back(L"status " + std::to_wstring(status));
        for (string& line : lines)
            line.replace(mDirectory.name(), L"%");
        return lines;
    }

    scratchDirectory mDirectory;
};

TEST_F(commandLine, goes_as_expected)
{
    expectOutcomes("engine/commandline", [this](const string& command) { return outcomeOf(command); });
}

// What the man page says behind the name of a command in its synopsis, without its macros.
std::string synopsisOf(const std::string& manual, const std::string& name)
{
    const std::string start = ".B qxscript " + name + "\n";
    std::string synopsis;
    std::istringstream lines(manual.substr(std::min(manual.find(start), manual.size())));
    std::string line;
    for (std::getline(lines, line); std::getline(lines, line) && line != ".br" && !line.starts_with(".SH");) {
        const std::size_t macro = line.find(' ');
        line.erase(0, macro + 1);
        if (macro == 3) // two fonts in turn: what stands apart belongs together
            std::erase(line, ' ');
        synopsis += line + ' ';
    }
    return synopsis;
}

TEST_F(commandLine, is_told_by_readme_and_man_page)
{
    const std::string readme = contentOf(treeRoot() / "README.md");
    const std::string manual = contentOf(treeRoot() / "docs/qxscript.1");
    const auto printed = [this](const std::string& arguments) {
        shell("qxscript " + arguments + " >printed");
        return mDirectory.read("printed");
    };
    std::string told; // in the order of the README
    for (const std::string& line : linesOf(readme))
        if (line.starts_with("qxscript "))
            told += line.substr(9, line.find(' ', 9) - 9) + ' ';
    std::string offered;
    const std::string help = printed("--help");
    for (const std::string& listed : linesOf(help.substr(help.find("Subcommands:\n") + 13))) {
        if (!listed.starts_with("  "))
            continue;
        const std::string name = listed.substr(2, listed.find(' ', 2) - 2);
        SCOPED_TRACE(name);
        const std::string usage = printed(name + " --help");
        const std::size_t from = usage.find("[OPTIONS] ") + 10;
        const std::string parameters = usage.substr(from, usage.find('\n', from) - from);
        const std::string line =
            std::string("\nqxscript ").append(name).append(" ").append(parameters).append(" ");
        EXPECT_NE(readme.find(line), std::string::npos);
        EXPECT_NE(synopsisOf(manual, name).find(parameters + ' '), std::string::npos);
        EXPECT_NE(manual.find("\n.BI \"" + name + ' '), std::string::npos);
        offered += name + ' ';
    }
    EXPECT_EQ(told, offered + "--version ");
}

TEST_F(commandLine, asks_on_a_terminal)
{
    if (std::system("script -qec true /dev/null >/dev/null 2>&1 </dev/null") != 0)
        GTEST_SKIP() << "needs a pseudo-terminal";
    const auto shown = [this](const std::string& typed) {
        mDirectory.write("typed", typed);
        shell("script -qec \"$QXSCRIPT eval 'messagebox(\\\"Go on?\\\", \\\"YesNoCancel\\\")'\" /dev/null "
              "<typed >shown");
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

TEST_F(commandLine, shows_what_the_examples_say)
{
    for (const char* name : {"tour", "batch"}) {
        const fs::path example = treeRoot() / "examples" / name;
        shell("'" + (example / "run.sh").string() + "' \"$QXSCRIPT\" >shown 2>&1");
        EXPECT_EQ(mDirectory.read("shown"), contentOf(example / "output.txt"));
    }
}

} // namespace

#endif
