// One tree, many threads: each with a context of its own.
#include "host.h"
#include "valueText.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace
{

constexpr int threadCount = 4;
constexpr int rounds = 200;

// Runs `work(thread number)` on all threads at once.
template <class Work>
void onAllThreads(const Work& work)
{
    std::atomic<int> waiting = threadCount;
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int number = 0; number < threadCount; ++number) {
        threads.emplace_back([&, number] {
            for (--waiting; waiting > 0;)
                std::this_thread::yield();
            work(number);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace

TEST(threads, first_parse_of_the_process_may_be_on_several_at_once)
{
    onAllThreads([](int) {
        for (int i = 0; i < rounds; ++i)
            EXPECT_EQ(valueText(evaluated(L"{ createvar(a, \"1\"); return(isoftype<int>(a)); }")),
                      "bool true");
    });
}

TEST(threads, shared_tree_runs_in_contexts_of_their_own)
{
    const ownedStatement shared =
        parsed(L"{ createvar(r, getparameter(p)); { createvar(x, r); setvar(r, \"0\"); "
               L"createglobalvar(g, x); }; return(getglobalvar(g)); }");
    onAllThreads([&](int number) {
        const std::string expected = "string \"" + std::to_string(number) + '"';
        const qx::string own = qx::string::fromUtf8(std::to_string(number));
        for (int i = 0; i < rounds; ++i) {
            const ownedStatement mine = i % 2 ? ownedStatement(shared->clone()) : shared;
            scriptcontext context;
            context.setParameter(nameOf(L"p"), qx::genericValue(own));
            qx::genericValue result;
            mine->exec(context, result);
            EXPECT_EQ(valueText(result), expected);
        }
    });
}

TEST(threads, failures_of_a_shared_tree_are_each_thread_s_own)
{
    const ownedStatement shared = parsed(L"{ createvar(a); { isnull(a); setvar(missing, \"1\"); }; }");
    onAllThreads([&](int) {
        for (int i = 0; i < rounds; ++i) {
            scriptcontext context;
            EXPECT_EQ(failureOf([&] { shared->exec(context); }).size(), 3u);
            EXPECT_EQ(failureOf([] { parsed(L"isnull(nobody(x))"); }).size(), 2u);
        }
    });
}

TEST(threads, one_reason_is_shared_by_failures_on_all)
{
    const qx::script::variableNotFoundException reason(L"v");
    onAllThreads([&](int) {
        for (int i = 0; i < rounds; ++i) {
            const qx::script::scriptExecException mine(L"s", nullptr, &reason);
            EXPECT_EQ(chainOf(mine).back(), L"Variable \"v\" not found");
        }
    });
}
