// The documents keep their word: each block of script in README.md and docs is run, and each block of C++ or
// CMake is a part of an example.
//
// A block of ```qxscr is run as it stands: one with definitions as a script file whose first function is
// called without arguments, any other one as `qxscript eval` runs it. A file that calls itself is named in
// the mark: ```qxscr words.qxscr. The line behind the block says what comes of it:
//
//     Gives `VALUE` ...       shown as qxscript shows it
//     Gives nothing ...       a null value
//     Fails with `TEXT` ...   the innermost cause
#include "../tools/qxscript/outputText.h"
#include "assertRecorder.h"
#include "documents.h"
#include "scriptSupport.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

namespace fs = std::filesystem;
namespace script = qx::script;

struct codeBlock
{
    std::string place; // FILE:LINE
    std::string kind;
    std::string file; // the name that the script file has to have; empty for any
    std::string text;
    std::string outcome; // the line behind the block
};

std::vector<codeBlock> blocksOf(const fs::path& document)
{
    const std::vector<std::string> lines = linesOf(contentOf(document));
    std::vector<codeBlock> blocks;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!lines[i].starts_with("```"))
            continue;
        codeBlock block;
        block.place = document.filename().string() + ":" + std::to_string(i + 1);
        std::istringstream(lines[i].substr(3)) >> block.kind >> block.file;
        for (++i; i < lines.size() && lines[i] != "```"; ++i)
            block.text += lines[i] + "\n";
        for (std::size_t next = i + 1; next < lines.size() && block.outcome.empty(); ++next)
            block.outcome = lines[next];
        blocks.push_back(block);
    }
    return blocks;
}

std::vector<codeBlock> allBlocks()
{
    std::vector<codeBlock> all = blocksOf(treeRoot() / "README.md");
    for (const fs::directory_entry& entry : fs::directory_iterator(treeRoot() / "docs"))
        for (const codeBlock& block : blocksOf(entry.path()))
            all.push_back(block);
    return all;
}

qx::genericValue runBlock(const codeBlock& block)
{
    script::scriptcontext context;
    qx::genericValue result;
    const qx::string wide = qx::string::fromUtf8(block.text);
    if (block.text.find("scrdef ") == std::string::npos) {
        const qx::sharedPtr<script::statement> parsed(script::statement::createFrom(wide, 0));
        if (parsed)
            parsed->exec(context, result);
        const auto returned = context.parameterAddress(script::scriptcontext::returnparam());
        return returned ? *returned : result;
    }
    const scratchDirectory directory;
    const std::string name = block.file.empty() ? unusedName() + ".qxscr" : block.file;
    directory.write(name, block.text);
    const qx::string function = script::listFunctions(qx::file(directory.name(name))).functions.at(0).name;
    const qx::string call = L"$" + qx::string::fromUtf8(name.substr(0, name.find('.'))) + L"$" + function;
    std::vector<qx::genericValue> none;
    script::codeManager::instance()->executeFunction(directory.name(""), call, context, none, result);
    return result;
}

// What comes of a block, in the words of the documents.
std::string outcomeOf(const codeBlock& block)
{
    const assertRecorder recorder;
    qx::string shown;
    std::vector<std::string> chain = chainOfFailure([&] {
        if (!outputText(runBlock(block), shown))
            throw true;
    });
    if (chain.back() == "true")
        return "Gives nothing";
    return chain.back() == "nothing thrown" ? "Gives `" + shown.utf8() + "`"
                                            : "Fails with `" + chain.back() + "`";
}

TEST(documents, scripts_give_what_they_say)
{
    std::size_t count = 0;
    for (const codeBlock& block : allBlocks()) {
        if (block.kind != "qxscr") {
            EXPECT_EQ(block.text.find("scrdef "), std::string::npos) << block.place << " is not run";
            continue;
        }
        ++count;
        const std::string outcome = outcomeOf(block);
        EXPECT_TRUE(block.outcome.starts_with(outcome))
            << block.place << " says: " << block.outcome << "\n    " << outcome;
    }
    EXPECT_GT(count, 20u);
}

TEST(documents, sources_are_those_of_examples)
{
    std::string sources = contentOf(fs::path(QX_TESTS_DIR) / "embedding/CMakeLists.txt");
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(treeRoot() / "examples"))
        if (entry.is_regular_file())
            sources += contentOf(entry.path());
    for (const codeBlock& block : allBlocks()) {
        const bool isShown = block.kind == "cpp" || block.kind == "cmake" ||
                             (block.kind == "qxscr" && block.place.starts_with("README"));
        EXPECT_TRUE(!isShown || sources.find(block.text) != std::string::npos) << block.place;
    }
}

} // namespace
