// How a command line is split into words, by the published rules.
#include "support/expectations.h"

#include <qxCommandLine.h>

TEST(commandline, splits_as_expected)
{
    expectOutcomes("utils/commandlines", [](const qx::string& line) {
        std::vector<qx::string> words = qx::splitCommandLine(line);
        for (qx::string& word : words)
            word = L"<" + word + L">";
        return words;
    });
}
