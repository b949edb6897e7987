// The cases that are written as scripts: every function of tests/scripts/MODULE/*.qxscr is called without
// arguments, and what comes of it is compared with the `.expected` file beside the script.
//
//     function_name
//         report: what was reported through assertMsg
//         int 5
//
// A failure shows its whole chain of messages instead of a value, outermost first, each a step further in.
// With QX_REWRITE_EXPECTATIONS set the files are written anew; the difference is read like code.
#include "assertRecorder.h"
#include "documents.h"
#include "valueText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace
{

namespace fs = std::filesystem;

fs::path scriptsDirectory()
{
    return fs::path(QX_TESTS_DIR) / "scripts";
}

// Named from the scripts' directory, as `MODULE/FILE` without extension.
std::vector<std::string> filesWith(const char* extension)
{
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(scriptsDirectory())) {
        if (entry.path().extension() == extension)
            names.push_back(
                fs::relative(entry.path(), scriptsDirectory()).replace_extension().generic_string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

qx::string wide(const std::string& text)
{
    return qx::string::fromUtf8(text);
}

// One line: paths of this machine stand as names, line ends as \n, a blank at the end as \s.
std::string shownLine(qx::string text)
{
    text.replace(wide(scriptsDirectory().string()), L"SCRIPTS");
    text.replace(wide(fs::current_path().string()), L"CURRENT");
    text.replace(L"\n", L"\\n");
    if (!text.empty() && text.back() == L' ')
        text.replace(text.size() - 1, 1, L"\\s");
    return text.utf8();
}

// What one call of the function gives, as lines.
std::string outcomeOf(const std::string& script, const qx::string& function)
{
    std::string lines = function.utf8() + "\n";
    const assertRecorder recorder;
    std::string outcome;
    try {
        qx::script::scriptcontext context;
        std::vector<qx::genericValue> none;
        qx::genericValue result;
        qx::script::codeManager::instance()->executeFunction(wide(scriptsDirectory().string()),
                                                             L"script$" + wide(script) + L"$" + function,
                                                             context, none, result);
        outcome.append("    ").append(valueText(result)).append("\n");
    } catch (const qx::exception& failure) {
        std::string indent = "    ";
        for (const qx::string& text : chainOf(failure)) {
            outcome += indent + shownLine(text) + "\n";
            indent += "  ";
        }
    }
    for (const qx::string& report : assertRecorder::take())
        lines.append("    report: ").append(shownLine(report)).append("\n");
    return lines + outcome;
}

std::string outcomesOf(const std::string& script)
{
    const qx::file source(wide((scriptsDirectory() / (script + ".qxscr")).string()));
    std::string all;
    for (const qx::script::functionInfo& function : qx::script::listFunctions(source).functions)
        all.append(all.empty() ? "" : "\n").append(outcomeOf(script, function.name));
    return all;
}

std::string testName(const testing::TestParamInfo<std::string>& info)
{
    std::string name = info.param;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
    return name;
}

class scripts : public testing::TestWithParam<std::string>
{};

} // namespace

TEST_P(scripts, give_what_is_expected)
{
    const fs::path expectation = scriptsDirectory() / (GetParam() + ".expected");
    const std::string outcomes = outcomesOf(GetParam());
    if (std::getenv("QX_REWRITE_EXPECTATIONS"))
        std::ofstream(expectation, std::ios::binary) << outcomes;
    EXPECT_EQ(outcomes, contentOf(expectation));
}

INSTANTIATE_TEST_SUITE_P(all, scripts, testing::ValuesIn(filesWith(".qxscr")), testName);

TEST(scriptFiles, no_expectation_is_left_without_its_script)
{
    EXPECT_EQ(filesWith(".expected"), filesWith(".qxscr"));
}
