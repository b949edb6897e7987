// What tools ask about script files and statements.
#include "scriptSupport.h"

#include <gtest/gtest.h>

namespace script = qx::script;

TEST(inspect, checksADefinitionAsItsFirstCallWould)
{
    const scratchDirectory directory;
    directory.write("f.qxscr", "scrdef good(in<int> a = \"1\") { return(a); }\n"
                               "scrdef nothing(ref<int> a)\n"
                               "scrdef GOOD() { nosuchstatement(); }\n\n"
                               "scrdef good(ref<int> a) { return(a); }\n");
    const qx::file source(directory.name("f.qxscr"));
    std::string told; // of each: the definition whose place it takes, and what its loading throws
    for (const script::functionInfo& function : script::listFunctions(source).functions)
        told += std::to_string(function.redefines) + ": " +
                chainText([&] { script::checkFunction(source, function); }) + "\n";
    EXPECT_EQ(told, "0: nothing thrown\n"
                    "0: Function \"nothing\" not found in file \"" +
                        source.fullName().utf8() +
                        "\"\n"
                        "1: Error parsing  { nosuchstatement(); }\n"
                        "3: Error parsing parametertype \"ref\"\n");

    std::string ofAll;
    script::checkFunctions(source, [&](const script::functionInfo& function, const qx::exception* failure) {
        ofAll += std::to_string(function.redefines) + ": ";
        ofAll += failure ? chainText([&] { throw qx::exception(*failure); }) : "nothing thrown";
        ofAll += "\n";
    });
    EXPECT_EQ(ofAll, told);
}

TEST(inspect, scramblingReplacesItsTargetOrLeavesItAlone)
{
    const scratchDirectory directory;
    const auto scramble = [&](const char* from, const char* to) {
        return script::scrambleFile(qx::file(directory.name(from)), qx::file(directory.name(to)));
    };
    const std::string content = "scrdef f() { return(\"1\"); } // more than one round of the key\n";
    directory.write("f.qxscr", content);
    ASSERT_TRUE(scramble("f.qxscr", "f.qxscr")) << "in place";
    EXPECT_NE(directory.read("f.qxscr"), content);
    directory.write("target", "before");
    ASSERT_TRUE(scramble("f.qxscr", "target"));

    EXPECT_FALSE(scramble("f.qxscr", "nowhere/target"));
    EXPECT_THROW(scramble("missing", "target"), qx::readFileException);
    {
        const failingDisk disk;
        EXPECT_THROW(scramble("f.qxscr", "target"), qx::readFileException);
    }
    EXPECT_EQ(directory.read("target"), content);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory.path("")), {}), 2)
        << "nothing is left over";
}
