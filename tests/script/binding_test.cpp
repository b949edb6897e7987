// Named parameters: the positional texts of a call bound to declared names.
#include "assertRecorder.h"
#include "host.h"
#include "valueText.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{

// A host's function whose declaration and work a test chooses.
class bound final : public qx::script::singlefunction
{
public:
    using action = std::function<void(const bound& self, codecontext& context, qx::genericValue& result)>;

    explicit bound(action work) : mWork(std::move(work)) {}
    bound(const bound& other) = default;

    statement* clone() const override { return new bound(*this); }
    void destroy() override { delete this; }
    void execute(codecontext& context, qx::genericValue& result) const override
    {
        mWork(*this, context, result);
    }

    using singlefunction::getParamValue;
    using singlefunction::parse;

private:
    action mWork;
};

// Answers calls of `f` with a function of these declared names.
template <class... Declared>
hostModule::answer boundModule(const bound::action& work, const Declared&... declared)
{
    return [=](const moduleCall& call) -> statement* {
        if (call.name != L"f")
            return nullptr;
        auto made = std::make_unique<bound>(work);
        made->parse(L"F", call.params, call.flags, declared...);
        return made.release();
    };
}

// Gives `name=value` for each of three names, `-` for one that the call did not give.
void showThree(const bound& self, codecontext& context, qx::genericValue& result)
{
    qx::string shown;
    for (const wchar_t* name : {L"one", L"two", L"three"}) {
        qx::genericValue value = textValue(L"-");
        const bool given = self.getParamValue(name, context, value);
        EXPECT_EQ(given, valueText(value) != "string \"-\"");
        qx::string text = L"null";
        value.getValue(text);
        shown += text + L" ";
    }
    result = qx::genericValue(shown);
}

texts parsingFailure(const qx::string& text)
{
    return failureOf([&] { parsed(text); });
}

} // namespace

TEST(binding, goes_by_position)
{
    const hostModule host(boundModule(showThree, L"one", true, L"two", true, L"three", false, nullptr));
    const struct
    {
        const wchar_t* call;
        const char* values;
    } rows[] = {
        {L"f(\"1\", \"2\")", "string \"1 2 - \""},
        {L"f(\"1\", \"2\", \"3\")", "string \"1 2 3 \""},
        // What is beyond the declared names is not looked at.
        {L"f(\"1\", \"2\", \"3\", nobody(), (\"), , x\"))", "string \"1 2 3 \""},
        {L"f(\"1\", \"2\", \"3\", , {a;;b})", "string \"1 2 3 \""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(valueText(evaluated(row.call)), row.values) << quotedText(row.call);
}

TEST(binding, failures_name_the_function_and_the_reason)
{
    const hostModule host(boundModule(showThree, L"one", true, L"two", true, L"three", false, nullptr));
    EXPECT_EQ(parsingFailure(L"f(\"1\")"),
              (texts{L"Error parsing f(\"1\")", L"Error parsing F(...)", L"F: Number of parameters < 2"}));
    EXPECT_EQ(parsingFailure(L"f(\"1\", , \"3\")"),
              (texts{L"Error parsing f(\"1\", , \"3\")", L"Error parsing F(...)", L"Error parsing "}));
    EXPECT_EQ(
        parsingFailure(L"f(\"1\", nobody(x))"),
        (texts{L"Error parsing f(\"1\", nobody(x))", L"Error parsing F(...)", L"Error parsing nobody(x)"}));
}

TEST(binding, name_declared_twice_fails_once_both_are_given)
{
    const hostModule host(boundModule(showThree, L"one", false, L"one", false, nullptr));
    EXPECT_EQ(valueText(evaluated(L"f(\"1\")")), "string \"1 - - \"");
    EXPECT_EQ(parsingFailure(L"f(\"1\", \"2\")"),
              (texts{L"Error parsing f(\"1\", \"2\")", L"Error parsing F(...)",
                     L"singlefunction::parse: Error inserting parameter one"}));
}

TEST(binding, names_are_exact_and_null_is_the_empty_one)
{
    const auto work = [](const bound& self, codecontext& context, qx::genericValue& result) {
        qx::genericValue dropped;
        EXPECT_FALSE(self.getParamValue(L"One", context, dropped));
        EXPECT_FALSE(self.getParamValue(L"one ", context, dropped));
        EXPECT_TRUE(dropped.isNull());
        EXPECT_TRUE(self.getParamValue(nullptr, context, result));
    };
    const hostModule host(boundModule(work, L"one", true, L"", true, nullptr));
    EXPECT_EQ(valueText(evaluated(L"f(\"1\", \"2\")")), "string \"2\"");
}

TEST(binding, each_request_evaluates_anew_in_the_order_of_the_requests)
{
    const auto work = [](const bound& self, codecontext& context, qx::genericValue& result) {
        qx::genericValue dropped;
        for (const wchar_t* name : {L"two", L"one", L"two"})
            self.getParamValue(name, context, dropped);
        result = context.variable(nameOf(L"log"));
    };
    const hostModule host([function = boundModule(work, L"one", true, L"two", true, L"skipped", true,
                                                  nullptr)](const moduleCall& call) -> statement* {
        if (call.name != L"say")
            return function(call);
        return new hostStatement([what = call.params[0]](codecontext& context, qx::genericValue&) {
            qx::string log;
            context.variable(nameOf(L"log")).getValue(log);
            context.setVariable(nameOf(L"log"), qx::genericValue(qx::string(log + what)));
        });
    });
    EXPECT_EQ(valueText(evaluated(L"{ createvar(log, \"\"); return(f(say(a), say(b), say(c))); }")),
              "string \"bab\"");
}

TEST(binding, prepared_type_is_kept_by_a_literal)
{
    const auto work = [](const bound& self, codecontext& context, qx::genericValue& result) {
        result = qx::genericValue(0);
        self.getParamValue(L"one", context, result);
    };
    const hostModule host(boundModule(work, L"one", true, nullptr));
    EXPECT_EQ(valueText(evaluated(L"f(\"12\")")), "int 12");
    EXPECT_EQ(failureOf([] { evaluated(L"f(\"twelve\")"); }),
              texts{L"Error executing script \"f(\"twelve\")\" "});
}

TEST(binding, copies_have_providers_of_their_own)
{
    const auto work = [](const bound& self, codecontext& context, qx::genericValue& result) {
        self.getParamValue(L"one", context, result);
    };
    const hostModule host(
        [function = boundModule(work, L"one", true, nullptr)](const moduleCall& call) -> statement* {
            if (call.name != L"give")
                return function(call);
            return new hostStatement(
                [](codecontext&, qx::genericValue& result) { result = textValue(L"given"); });
        });
    ownedStatement original = parsed(L"f(give())");
    const ownedStatement copy(original->clone());
    EXPECT_EQ(hostStatement::living, 2);
    original = ownedStatement();
    EXPECT_EQ(hostStatement::living, 1);
    scriptcontext context;
    qx::genericValue result;
    copy->exec(context, result);
    EXPECT_EQ(valueText(result), "string \"given\"");
}

TEST(binding, counts_what_is_required_and_does_not_look_which)
{
    const hostModule host(boundModule(showThree, L"one", false, L"two", true, L"three", true, nullptr));
    EXPECT_EQ(valueText(evaluated(L"f(\"1\", \"2\")")), "string \"1 2 - \"");
}

TEST(binding, function_without_parameters_takes_any)
{
    const hostModule host(boundModule(showThree, nullptr));
    EXPECT_EQ(valueText(evaluated(L"f(nobody())")), "string \"- - - \"");
}
