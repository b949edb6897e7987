// The command line, as a shell sees it: output, errors and exit status.
#ifdef QX_SCRIPT_PROGRAM

#include "documents.h"
#include "scriptSupport.h"

#include <gtest/gtest.h>

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
