// What tools ask about script files and statements.
#include "scriptSupport.h"

#include <gtest/gtest.h>

namespace script = qx::script;

TEST(inspect, checks_a_definition_as_its_first_call_would)
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

TEST(inspect, scrambling_leaves_its_target_alone_where_the_disk_fails)
{
    const scratchDirectory directory;
    directory.write("f.qxscr", "scrdef f() { return(\"1\"); }");
    directory.write("target", "before");
    const failingDisk disk;
    EXPECT_THROW(
        script::scrambleFile(qx::file(directory.name("f.qxscr")), qx::file(directory.name("target"))),
        qx::readFileException);
    EXPECT_EQ(directory.read("target"), "before");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory.path("")), {}), 2)
        << "nothing is left over";
}
