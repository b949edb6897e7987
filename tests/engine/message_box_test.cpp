// The question that stands for a message box on a terminal.
#include "../../tools/qxscript/messageBox.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

std::vector<std::string> typed; // what is still to be read

bool readTyped(std::string& line)
{
    if (typed.empty())
        return false;
    line = typed.front();
    typed.erase(typed.begin());
    return true;
}

} // namespace

TEST(messageBox, answers_name_buttons)
{
    constexpr int unread = 1; // lines that must be left
    const struct
    {
        qx::uint flags;
        std::vector<std::string> lines;
        int button;
        std::size_t left;
    } rows[] = {
        {0 + 16, {" O\t\r"}, 1, 0},
        {0, {"what", " ", "o"}, 1, unread}, // an empty line is enough for one button
        {1, {"Cancel"}, 2, 0},
        {3 + 32, {"n", "y"}, 7, unread},
        {3, {"", "maybe", "ye", "ok", "C"}, 2, 0},
        {5, {"r"}, 4, 0},
        {2, {"ignore"}, 5, 0},
        {6, {"c"}, 2, 0}, // the first of two
        {6, {"continue"}, 11, 0},
        // The end of the input.
        {0, {}, 1, 0},
        {1, {"what"}, 2, 0},
        {2, {}, 3, 0},
        {3, {}, 2, 0},
        {4, {}, 6, 0},
        {5, {}, 2, 0},
    };
    for (const auto& row : rows) {
        typed = row.lines;
        EXPECT_EQ(askForButton(L"text", L"title", row.flags, readTyped), row.button) << row.flags;
        EXPECT_EQ(typed.size(), row.left);
    }
}
