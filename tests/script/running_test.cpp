// The guarded run: what is done with failures, results and signals, and what is logged.
#include "host.h"
#include "valueText.h"

#include <qxLog.h>

#include <gtest/gtest.h>

#include <stdexcept>

using namespace qx::script;

namespace
{

const qx::exception* const noCause = nullptr;

// The failure of a block whose statement `act()` does `work`.
texts failureOfAct(hostStatement::action work)
{
    const hostModule host(hostModule::statementNamed(L"act", std::move(work)));
    return failureOf([] { evaluated(L"{ act(); return(); }"); });
}

const qx::string block = L"Error executing script \"act(); return();\" ";
const qx::string act = L"Error executing script \"act()\" ";

} // namespace

TEST(running, what_a_statement_throws_is_wrapped_once_for_each_enclosing_statement)
{
    using context = codecontext;
    using value = qx::genericValue;
    EXPECT_EQ(failureOfAct([](context&, value&) { statement::execError(nullptr, L"%d of %s", 1, L"two"); }),
              (texts{block, act + L"(1 of two)"}));
    EXPECT_EQ(failureOfAct([](context&, value&) { statement::execErrorDetail(nullptr, L"detail"); }),
              (texts{block, act + L"(detail)"}));
    EXPECT_EQ(failureOfAct([](context&, value&) { statement::execError(nullptr, nullptr); }),
              (texts{block, act + L"()"}));
    EXPECT_EQ(failureOfAct([](context&, value&) { throw variableNotFoundException(L"v"); }),
              (texts{block, act, L"Variable \"v\" not found"}));
    EXPECT_EQ(failureOfAct([](context&, value&) { throw qx::outOfMemoryException(); }),
              (texts{block, act, L"Out of memory"}));
    // What is neither an exception of ours nor a text leaves no reason.
    EXPECT_EQ(failureOfAct([](context&, value&) { throw false; }), (texts{block, act}));
    EXPECT_EQ(failureOfAct([](context&, value&) { throw 5; }), (texts{block, act}));
    EXPECT_EQ(failureOfAct([](context&, value&) { throw std::out_of_range("foreign"); }),
              (texts{block, act}));
    EXPECT_EQ(failureOfAct([](context&, value&) { throw std::bad_alloc(); }), (texts{block, act}));
    // A text passes every statement as it is.
    EXPECT_EQ(failureOfAct([](context&, value&) { throw qx::string(L"said"); }), texts{L"string said"});
}

TEST(running, execError_with_a_cause)
{
    const ownedStatement named = parsed(L"return( )");
    const exceptionDetail detail(L"the detail");
    const variableNotFoundException cause(L"v");
    const qx::string returning = L"Error executing script \"return( )\" ";
    const qx::string unknown = L"Error executing script \"***unknown***\" ";
    const auto failed = [](const auto&... arguments) {
        return failureOf([&] { statement::execError(arguments...); });
    };
    EXPECT_EQ(failed(named.get(), &cause, L"%s", L"more"),
              (texts{returning + L"(more)", L"Variable \"v\" not found"}));
    EXPECT_EQ(failed(named.get(), &cause, static_cast<const wchar_t*>(nullptr)),
              (texts{returning + L"()", L"Variable \"v\" not found"}));
    EXPECT_EQ(failed(named.get(), &detail, L"ignored"), texts{returning + L"(the detail)"});
    EXPECT_EQ(failed(named.get(), noCause, L"alone"), texts{returning + L"(alone)"});
    EXPECT_EQ(failed(static_cast<const statement*>(nullptr), &cause, L"x"),
              (texts{unknown + L"(x)", L"Variable \"v\" not found"}));
    EXPECT_EQ(failed(static_cast<const statement*>(nullptr), noCause, static_cast<const wchar_t*>(nullptr)),
              texts{unknown + L"()"});
    // The cause is told by its dynamic type.
    EXPECT_EQ(failed(named.get(), static_cast<const qx::exception*>(&detail), L"ignored"),
              texts{returning + L"(the detail)"});
}

TEST(running, failures_show_the_cut_text)
{
    qx::string call = L"getvar(";
    call.append(200, L'x');
    call += L")";
    EXPECT_EQ(failureOf([&] { evaluated(call); })[0],
              L"Error executing script \"" + call.substr(0, 122) + L" ...\" ");
}

TEST(running, statement_without_a_value_leaves_the_result)
{
    const hostModule host(hostModule::statementNamed(L"act", [](codecontext&, qx::genericValue&) {}));
    for (const wchar_t* text : {L"act()", L"{ createvar(a, \"1\"); setvar(a, \"2\"); }"}) {
        scriptcontext context;
        qx::genericValue result(5);
        parsed(text)->exec(context, result);
        EXPECT_EQ(valueText(result), "int 5");
    }
    scriptcontext context;
    EXPECT_EQ(failureOf([&] { parsed(L"act()")->exec(context); }), texts{L"nothing thrown"});
}

TEST(running, children_of_a_block_share_its_scope_and_start_with_no_result)
{
    const hostModule host(
        hostModule::statementNamed(L"act", [](codecontext& context, qx::genericValue& result) {
            EXPECT_TRUE(result.isNull());
            result = qx::genericValue(1);
            EXPECT_TRUE(context.hasVariable(nameOf(L"a")));
        }));
    scriptcontext context;
    qx::genericValue result = textValue(L"before");
    const ownedStatement tree = parsed(L"{ createvar(a); act(); act(); }");
    tree->exec(context, result);
    tree->exec(context, result); // each run has a fresh scope
    EXPECT_EQ(valueText(result), "string \"before\"");
    EXPECT_FALSE(context.hasVariable(nameOf(L"a")));
}

TEST(running, signals_end_blocks_and_stay)
{
    for (const wchar_t* signal : {L"#breaksignal#", L"#continuesignal#", L"#breakallsignal#"}) {
        const hostModule host(
            hostModule::statementNamed(L"act", [&](codecontext& context, qx::genericValue&) {
                context.setScriptSignal(nameOf(signal), qx::genericValue());
            }));
        scriptcontext context;
        qx::genericValue result = textValue(L"before");
        parsed(L"{ { act(); createglobalvar(inner); }; createglobalvar(outer); }")->exec(context, result);
        EXPECT_FALSE(context.hasVariable(nameOf(L"inner")) || context.hasVariable(nameOf(L"outer")));
        EXPECT_TRUE(context.scriptSignal(nameOf(signal)));
        EXPECT_EQ(valueText(result), "string \"before\"");

        parsed(L"treatasfunction({ act(); createglobalvar(inner); })")->exec(context, result);
        EXPECT_FALSE(context.scriptSignal(nameOf(signal)));
        EXPECT_TRUE(result.isNull());
    }
    scriptcontext context;
    context.setScriptSignal(nameOf(L"#othersignal#"), qx::genericValue());
    parsed(L"{ createglobalvar(a); createglobalvar(b); }")->exec(context);
    EXPECT_TRUE(context.hasVariable(nameOf(L"b")));
}

TEST(running, returned_value_is_copied_unless_it_is_the_result_itself)
{
    scriptcontext context;
    context.setParameter(scriptcontext::returnparam(), textValue(L"1"));
    const ownedStatement tree = parsed(L"{ isnull(\"x\"); isnull(\"y\"); }");
    tree->exec(context, context.parameter(scriptcontext::returnparam()));
    EXPECT_EQ(valueText(context.parameter(scriptcontext::returnparam())), "string \"1\"");

    qx::genericValue result(5);
    tree->exec(context, result);
    result.setValue(qx::string(L"2"));
    EXPECT_EQ(valueText(context.parameter(scriptcontext::returnparam())), "string \"1\"");
    context.parameter(scriptcontext::returnparam()).clear();
    tree->exec(context, result);
    EXPECT_TRUE(result.isNull());
}

TEST(running, return_into_a_context_that_takes_no_parameter_fails)
{
    class deafContext final : public scriptcontext
    {
    public:
        bool setParameter(const qx::scString&, const qx::genericValue&) override { return false; }
    };
    deafContext context;
    EXPECT_EQ(failureOf([&] { parsed(L"return(\"1\")")->exec(context); }),
              texts{L"Error executing script \"return(\"1\")\" (error setting returnvalue to context)"});
}

TEST(running, clones_of_a_block_share_their_children)
{
    int runs = 0;
    const hostModule host(
        hostModule::statementNamed(L"act", [&](codecontext&, qx::genericValue&) { ++runs; }));
    ownedStatement original = parsed(L"{ act(); act(); }");
    const ownedStatement copy(original->clone());
    EXPECT_EQ(hostStatement::living, 2);
    EXPECT_EQ(copy->text(), original->text());
    original = ownedStatement();
    EXPECT_EQ(hostStatement::living, 2);
    scriptcontext context;
    copy->exec(context);
    EXPECT_EQ(runs, 2);
}

namespace
{

class recordingSink final : public qxlog::sink
{
public:
    explicit recordingSink(qxlog::level most) : mBefore(qxlog::logManager::setSink(this))
    {
        qxlog::logManager::setLevel(most);
    }
    ~recordingSink() override
    {
        qxlog::logManager::setLevel(qxlog::level::off);
        qxlog::logManager::setSink(mBefore);
    }

    void write(qxlog::level, const qx::string& logger, const qx::string& text) override
    {
        lines.push_back(logger + L": " + text);
        if (lines.size() == failsAt)
            throw qx::unexpectedErrorException(L"disk full");
    }

    texts lines;
    std::size_t failsAt = 0;

private:
    qxlog::sink* mBefore;
};

qx::string traced(const wchar_t* text)
{
    return L"qx::script::statement::exec: " + qx::string(text);
}

} // namespace

TEST(running, trace_lines)
{
    const ownedStatement good = parsed(L"{ createvar(a); return(a); }");
    recordingSink sink(qxlog::level::trace);
    scriptcontext context;
    good->exec(context);
    EXPECT_EQ(sink.lines, (texts{traced(L"trying to exec (createvar(a); return(a);)"),
                                 traced(L"trying to exec (createvar(a))"), traced(L"exec (createvar(a)) OK"),
                                 traced(L"trying to exec (return(a))"), traced(L"trying to exec (getvar(a))"),
                                 traced(L"exec (getvar(a)) OK"), traced(L"exec (return(a)) OK"),
                                 traced(L"exec (createvar(a); return(a);) OK")}));
    sink.lines.clear();
    EXPECT_EQ(failureOf([&] { parsed(L"missing%s()"); }).size(), 1u);
    EXPECT_EQ(failureOf([&] { evaluated(L"getvar(%s)"); }).size(), 2u);
    EXPECT_EQ(sink.lines, texts{traced(L"trying to exec (getvar(%s))")}); // no second line for a failure
}

TEST(running, failing_sink_is_the_statement_s_failure)
{
    for (const std::size_t line : {1, 2}) {
        const ownedStatement good = parsed(L"return()");
        recordingSink sink(qxlog::level::trace);
        sink.failsAt = line;
        scriptcontext context;
        EXPECT_EQ(failureOf([&] { good->exec(context); }),
                  (texts{L"Error executing script \"return()\" ", L"disk full"}));
        EXPECT_EQ(context.hasParameter(scriptcontext::returnparam()), line == 2);
    }
}

TEST(running, type_keywords_are_logged_as_given)
{
    recordingSink sink(qxlog::level::debug);
    parsed(L"isoftype<Int>(a)");
    EXPECT_EQ(sink.lines,
              texts{L"qx::script::parseScriptType: qx::script::parseScriptType entered with typestring int"});
}

TEST(running, scope_ends_when_a_failure_passes)
{
    scriptcontext context;
    qx::genericValue result;
    EXPECT_EQ(failureOf([&] { parsed(L"{ createvar(a); getvar(missing); }")->exec(context, result); }).size(),
              3u);
    EXPECT_FALSE(context.hasVariable(nameOf(L"a")));
}
