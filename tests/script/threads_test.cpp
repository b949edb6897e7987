// One tree, many threads: each with a context of its own.
#include "host.h"
#include "scriptSupport.h"

#include <gtest/gtest.h>

constexpr int rounds = 200;

TEST(threads, first_parse_of_the_process_may_be_on_several_at_once)
{
    onManyThreads([](int) {
        for (int i = 0; i < rounds; ++i)
            EXPECT_EQ(valueText(evaluated(L"{ createvar(a, \"1\"); return(isoftype<int>(a)); }")),
                      "bool true");
    });
}

TEST(threads, share_trees_and_failures)
{
    const ownedStatement good =
        parsed(L"{ createvar(r, getparameter(p)); { createvar(x, r); setvar(r, \"0\"); "
               L"createglobalvar(g, x); }; return(getglobalvar(g)); }");
    const ownedStatement failing = parsed(L"{ createvar(a); { isnull(a); setvar(missing, \"1\"); }; }");
    const qx::script::variableNotFoundException reason(L"v");
    onManyThreads([&](int number) {
        for (int i = 0; i < rounds; ++i) {
            const ownedStatement mine = i % 2 ? ownedStatement(good->clone()) : good;
            scriptcontext context;
            context.setParameter(nameOf(L"p"), qx::genericValue(number));
            qx::genericValue result;
            mine->exec(context, result);
            EXPECT_EQ(valueText(result), "int " + std::to_string(number));

            scriptcontext other;
            EXPECT_EQ(failureOf([&] { failing->exec(other); }).size(), 3u);
            EXPECT_EQ(failureOf([] { parsed(L"isnull(nobody(x))"); }).size(), 2u);
            EXPECT_EQ(chainOf(qx::script::scriptExecException(L"s", nullptr, &reason)).back(),
                      L"Variable \"v\" not found");
        }
    });
}
