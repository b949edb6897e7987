// The guarded run: what is done with failures, results and signals, and what is logged.
#include "host.h"
#include "scriptSupport.h"

#include <qxLog.h>

#include <gtest/gtest.h>

#include <stdexcept>

using namespace qx::script;

TEST(running, what_a_statement_throws_is_wrapped_once_for_each_enclosing_statement)
{
    const qx::string block = L"Error executing script \"act(); return();\" ";
    const qx::string act = L"Error executing script \"act()\" ";
    const struct
    {
        void (*work)();
        texts chain;
    } rows[] = {
        {[] { statement::execError(nullptr, L"%d of %s", 1, L"two"); }, {block, act + L"(1 of two)"}},
        {[] { statement::execErrorDetail(nullptr, L"detail"); }, {block, act + L"(detail)"}},
        {[] { statement::execError(nullptr, nullptr); }, {block, act + L"()"}},
        {[] { throw variableNotFoundException(L"v"); }, {block, act, L"Variable \"v\" not found"}},
        {[] { throw qx::outOfMemoryException(); }, {block, act, L"Out of memory"}},
        // What is neither an exception of ours nor a text leaves no reason.
        {[] { throw false; }, {block, act}},
        {[] { throw std::out_of_range("foreign"); }, {block, act}},
        // A text passes every statement as it is.
        {[] { throw qx::string(L"said"); }, {L"string said"}},
    };
    for (const auto& row : rows) {
        const hostModule host(L"act", [&](codecontext&, qx::genericValue&) { row.work(); });
        EXPECT_EQ(failureOf([] { evaluated(L"{ act(); return(); }"); }), row.chain);
    }
}

TEST(running, exec_error_with_a_cause)
{
    const ownedStatement named = parsed(L"return( )");
    const exceptionDetail detail(L"the detail");
    const variableNotFoundException cause(L"v");
    const qx::exception& generalDetail = detail; // told by its dynamic type
    const qx::string returning = L"Error executing script \"return( )\" ";
    const qx::string unknown = L"Error executing script \"***unknown***\" ";
    const struct
    {
        const statement* failed;
        const qx::exception* cause;
        const wchar_t* text;
        texts chain;
    } rows[] = {
        {named.get(), &cause, L"more", {returning + L"(more)", L"Variable \"v\" not found"}},
        {named.get(), &cause, nullptr, {returning + L"()", L"Variable \"v\" not found"}},
        {named.get(), &generalDetail, L"ignored", {returning + L"(the detail)"}},
        {named.get(), nullptr, L"alone", {returning + L"(alone)"}},
        {nullptr, nullptr, nullptr, {unknown + L"()"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(failureOf([&] { statement::execError(row.failed, row.cause, row.text); }), row.chain);
}

TEST(running, children_of_a_block_share_its_scope_and_start_with_no_result)
{
    const hostModule host(L"act", [](codecontext& context, qx::genericValue& result) {
        EXPECT_TRUE(result.isNull());
        result = qx::genericValue(1);
        EXPECT_TRUE(context.hasVariable(nameOf(L"a")));
    });
    scriptcontext context;
    qx::genericValue result = textValue(L"before");
    const ownedStatement tree = parsed(L"{ createvar(a); act(); act(); }");
    tree->exec(context, result);
    tree->exec(context); // each run has a fresh scope
    EXPECT_EQ(valueText(result), "string \"before\"");
    // The scope also ends when a failure passes.
    EXPECT_EQ(failureOf([&] { parsed(L"{ createvar(a); getvar(missing); }")->exec(context); }).size(), 3u);
    EXPECT_FALSE(context.hasVariable(nameOf(L"a")));
}

TEST(running, block_takes_over_what_was_returned_before_and_stops)
{
    scriptcontext context;
    parsed(L"return(\"1\")")->exec(context);
    qx::genericValue& returned = context.parameter(nameOf(L"#return#"));
    const ownedStatement tree = parsed(L"{ createglobalvar(a, \"1\"); createglobalvar(b, \"1\"); }");
    tree->exec(context, returned); // the result itself
    EXPECT_EQ(valueText(returned), "string \"1\"");
    qx::genericValue result(5);
    tree->exec(context, result);
    EXPECT_EQ(valueText(result), "string \"1\"");
    returned.clear();
    tree->exec(context, result);
    EXPECT_TRUE(result.isNull());
    EXPECT_TRUE(context.hasVariable(nameOf(L"a")) && !context.hasVariable(nameOf(L"b")));
    context.deleteParameter(scriptcontext::returnparam());
    tree->exec(context);
    EXPECT_TRUE(context.hasVariable(nameOf(L"b")));
}

TEST(running, what_the_context_refuses_fails)
{
    class deafContext final : public scriptcontext
    {
    public:
        bool setParameter(const qx::scString&, const qx::genericValue&) override { return false; }
        bool setScriptSignal(const qx::scString&, const qx::genericValue&) override { return false; }
    };
    for (const auto& [text, detail] : {std::pair(L"return(\"1\")", L"error setting returnvalue to context"),
                                       std::pair(L"break()", L""), std::pair(L"continue()", L"")}) {
        deafContext context;
        const ownedStatement refused = parsed(text, continueAllowed | breakAllowed);
        EXPECT_EQ(failureOf([&] { refused->exec(context); }),
                  texts{qx::string::sformat(L"Error executing script \"%s\" (%s)", text, detail)});
    }
}

namespace
{

// Writing of one line fails.
class failingSink final : public qxlog::sink
{
public:
    explicit failingSink(std::size_t line) : mLeft(line), mBefore(qxlog::logManager::setSink(this))
    {
        qxlog::logManager::setLevel(qxlog::level::trace);
    }
    ~failingSink() override
    {
        qxlog::logManager::setLevel(qxlog::level::off);
        qxlog::logManager::setSink(mBefore);
    }
    void write(qxlog::level, const qx::string&, const qx::string&) override
    {
        if (--mLeft == 0)
            throw qx::unexpectedErrorException(L"disk full");
    }

private:
    std::size_t mLeft;
    qxlog::sink* mBefore;
};

} // namespace

TEST(running, failing_sink_is_the_statement_s_failure)
{
    for (const std::size_t line : {1, 2}) {
        const ownedStatement good = parsed(L"return()");
        const failingSink sink(line);
        scriptcontext context;
        EXPECT_EQ(failureOf([&] { good->exec(context); }),
                  (texts{L"Error executing script \"return()\" ", L"disk full"}));
        EXPECT_EQ(context.hasParameter(scriptcontext::returnparam()), line == 2);
    }
}

TEST(running, failing_sink_at_the_end_of_a_function_leaves_its_value)
{
    const scratchDirectory directory;
    const std::string name = unusedName();
    directory.write(name + ".qxscr", "scrdef one(){ return(\"1\"); }\n"
                                     "scrdef block(){ createvar(x); return(\"1\"); }\n");
    const std::pair<const wchar_t*, std::size_t> rows[] = {{L"one", 2}, {L"block", 6}};
    for (const auto& row : rows) {
        const failingSink sink(row.second);
        scriptcontext context;
        qx::genericValue result(5);
        std::vector<qx::genericValue> arguments;
        const qx::string call = L"$" + qx::string::fromUtf8(name) + L"$" + row.first;
        const texts chain = failureOf([&] {
            codeManager::instance()->executeFunction(directory.name(), call, context, arguments, result);
        });
        EXPECT_EQ(chain.back(), L"disk full");
        EXPECT_EQ(valueText(result), "string \"1\"");
    }
}
