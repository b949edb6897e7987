// The question that stands for a message box on a terminal.
#include "../../tools/qxscript/messageBox.h"

#include "support/expectations.h"

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

// A row is `FLAGS`, then what is typed, each line behind a bar.
TEST(messageBox, answers_name_buttons_as_expected)
{
    expectOutcomes("engine/message_box", [](const qx::string& row) {
        std::vector<qx::string> lines;
        row.splitAt(L"|", lines, false);
        typed.clear();
        for (std::size_t i = 1; i < lines.size(); ++i)
            typed.push_back(lines[i].utf8());
        const auto flags = static_cast<qx::uint>(std::stoul(lines[0]));
        const int button = askForButton(L"text", L"title", flags, readTyped);
        return std::vector<qx::string>{qx::string::sformat(L"button %d, %u unread", button, typed.size())};
    });
}
