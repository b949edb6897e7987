// One tree, many threads: each with a context of its own.
#include "host.h"
#include "programs.h"
#include "scriptSupport.h"

#include <gtest/gtest.h>

#include <barrier>

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

// Whoever comes first makes the text, and all get the same object.
TEST(threads, ask_a_statement_for_its_text_at_once)
{
    const qx::string text = L"{ isnull(a); " + std::wstring(150, L' ') + L"isnull(b); }";
    for (int i = 0; i < rounds; ++i) {
        const ownedStatement one = parsed(i % 2 ? text : qx::string(L"isnull(a)"));
        std::atomic<const qx::string*> first = nullptr;
        onManyThreads([&](int number) {
            if (number % 4 == 3) {
                EXPECT_EQ(ownedStatement(one->clone())->text(), one->text());
                return;
            }
            const qx::string& mine = one->text();
            const qx::string* others = nullptr;
            EXPECT_TRUE(first.compare_exchange_strong(others, &mine) || others == &mine);
            EXPECT_EQ(mine.size(), i % 2 ? 126u : 9u);
        });
    }
}

namespace
{

// What fills the variables of programs.
ownedStatement preparation()
{
    qx::string steps;
    for (const programVariable& each : programVariables())
        if (!each.preparation.empty())
            steps += each.preparation + L";";
    return parsed(L"{" + steps + L"}");
}

// What a program gives in a context of its own, and what it leaves in the variables.
std::string outcomeOf(const statement& preparation, const statement& program)
{
    scriptcontext context;
    for (const programVariable& each : programVariables())
        context.createVariable(qx::scString::createFrom(each.name), each.value);
    preparation.exec(context);
    qx::genericValue result;
    std::string outcome = chainText([&] { program.exec(context, result); }) + "\n" + valueText(result);
    for (const programVariable& each : programVariables()) {
        qx::genericValue& variable = context.variable(qx::scString::createFrom(each.name));
        outcome += "\n" + valueText(variable);
        variable.clear(); // references may go in circles
    }
    return outcome;
}

} // namespace

TEST(threads, run_every_kind_of_statement_in_one_tree)
{
    const quietMachine machine;
    const auto before = qx::setAssertHandler([](const qx::string&) {});
    const ownedStatement prepared = preparation();
    std::vector<ownedStatement> programs;
    for (const qx::string& shape : listedShapes())
        for (const wchar_t* operand : {L"vdecimal", L"varr", L"\"1\"", L"vmaps", L"vlongtext"})
            failureOf([&] {
                programs.push_back(
                    parsed(filled(shape, [&](wchar_t sign) { return sign == L'~' ? L"varr" : operand; })));
            });
    std::barrier together(2);
    const auto runAll = [&](std::vector<std::string>& outcomes) {
        for (const ownedStatement& program : programs) {
            together.arrive_and_wait();
            outcomes.push_back(outcomeOf(*prepared, *program));
        }
    };
    std::vector<std::string> mine;
    std::vector<std::string> others;
    std::thread other(runAll, std::ref(others));
    runAll(mine);
    other.join();
    EXPECT_EQ(mine, others);
    for (std::size_t i = 0; i < programs.size(); ++i)
        EXPECT_EQ(outcomeOf(*prepared, *programs[i]), mine[i]);
    qx::setAssertHandler(before);
}

// All wait for each other between two calls. Meanwhile the file changes, within one tick of the clock.
TEST(threads, call_a_function_while_its_file_changes)
{
    const stoppedClock clock(0);
    const scratchDirectory directory;
    const std::string name = unusedName();
    int version = 0;
    const auto change = [&]() noexcept {
        directory.write(name + ".qxscr", "scrdef f(){ return(\"" + std::to_string(++version) + "\"); }");
        setAge(directory, name + ".qxscr", version - 1000);
    };
    change();
    std::barrier together(8, change);
    ownedStatement program;
    {
        const hostModule module(L"meet", [&](auto&, auto&) { together.arrive_and_wait(); });
        const qx::string call = qx::string::fromUtf8("callfunction($" + name + "$f)");
        program = parsed(L"{ createvar(a, " + call + L"); meet(); return(strcat(a, " + call + L")); }");
    }
    onManyThreads([&](int) {
        for (int i = 1; i <= rounds; ++i) {
            scriptcontext context;
            context.setGlobalContextVariable(nameOf(L"scriptbasepath"), qx::genericValue(directory.name()));
            qx::genericValue result;
            program->exec(context, result);
            EXPECT_EQ(valueText(result), "string \"" + std::to_string(i) + std::to_string(i + 1) + "\"");
        }
    });
}
