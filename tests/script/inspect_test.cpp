// What tools ask about script files and statements.
#include "scriptSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

namespace script = qx::script;
using testing::ElementsAre;

TEST(inspect, tellsOfDefinitionsThatTakeAnothersPlace)
{
    const scratchDirectory directory;
    directory.write("f.qxscr", "scrdef f()x\nscrdef g()x\nscrdef F()x\n\nscrdef f()x\n");
    std::vector<std::size_t> redefined;
    for (const script::functionInfo& function :
         script::listFunctions(qx::file(directory.name("f.qxscr"))).functions)
        redefined.push_back(function.redefines);
    EXPECT_THAT(redefined, ElementsAre(0u, 0u, 1u, 3u));
}

TEST(inspect, checksADefinitionAsItsFirstCallWould)
{
    const scratchDirectory directory;
    directory.write("f.qxscr", "scrdef good(in<int> a = \"1\") { return(a); }\n"
                               "scrdef kind(ref<int> a) { return(a); }\n"
                               "scrdef nothing(ref<int> a)\n"
                               "scrdef unknown() { nosuchstatement(); }\n");
    const qx::file source(directory.name("f.qxscr"));
    std::vector<std::vector<std::string>> chains;
    for (const script::functionInfo& function : script::listFunctions(source).functions)
        chains.push_back(chainOfFailure([&] { script::checkFunction(source, function); }));
    ASSERT_EQ(chains.size(), 4u);
    EXPECT_THAT(chains[0], ElementsAre("nothing thrown"));
    EXPECT_THAT(chains[1], ElementsAre("Error parsing parametertype \"ref\""));
    EXPECT_THAT(chains[2],
                ElementsAre("Function \"nothing\" not found in file \"" + source.fullName().utf8() + "\""));
    EXPECT_THAT(chains[3], ElementsAre("Error parsing  { nosuchstatement(); }"));
}

TEST(inspect, scramblingReplacesItsTargetOrLeavesItAlone)
{
    const scratchDirectory directory;
    const std::string content = "scrdef f() { return(\"1\"); } // more than one round of the key\n";
    directory.write("f.qxscr", content);
    const qx::file source(directory.name("f.qxscr"));
    ASSERT_TRUE(script::scrambleFile(source, source)) << "in place";
    EXPECT_NE(directory.read("f.qxscr"), content);
    directory.write("target", "before");
    ASSERT_TRUE(script::scrambleFile(source, qx::file(directory.name("target"))));
    EXPECT_EQ(directory.read("target"), content);

    EXPECT_FALSE(script::scrambleFile(source, qx::file(directory.name("nowhere/target"))));
    EXPECT_THROW(
        script::scrambleFile(qx::file(directory.name("missing")), qx::file(directory.name("target"))),
        qx::readFileException);
    {
        const failingDisk disk;
        EXPECT_THROW(script::scrambleFile(source, qx::file(directory.name("target"))), qx::readFileException);
    }
    EXPECT_EQ(directory.read("target"), content);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory.path("")), {}), 2)
        << "nothing is left over";
}

} // namespace
