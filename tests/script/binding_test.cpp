// Named parameters: the positional texts of a call bound to declared names.
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

// Gives `value` for each of three names, `-` for one that the call did not give.
void showThree(const bound& self, codecontext& context, qx::genericValue& result)
{
    qx::string shown;
    for (const wchar_t* name : {L"one", L"two", L"three"}) {
        qx::genericValue value = textValue(L"-");
        const bool given = self.getParamValue(name, context, value);
        EXPECT_EQ(given, valueText(value) != "string \"-\"");
        qx::string text;
        value.getValue(text);
        shown += text;
    }
    result = qx::genericValue(shown);
}

} // namespace

TEST(binding, goes_by_position)
{
    const hostModule::answer usual =
        boundModule(showThree, L"one", true, L"two", true, L"three", false, nullptr);
    const hostModule::answer lastTwo =
        boundModule(showThree, L"one", false, L"two", true, L"three", true, nullptr);
    const hostModule::answer twice = boundModule(showThree, L"one", false, L"one", false, nullptr);
    const struct
    {
        hostModule::answer declared;
        const wchar_t* call;
        const char* values;
        texts reasons; // behind the two links for the call
    } rows[] = {
        {usual, L"f(\"1\", \"2\")", "string \"12-\"", {}},
        // What is beyond the declared names is not looked at.
        {usual, L"f(\"1\", \"2\", \"3\", nobody(), , {a;;b})", "string \"123\"", {}},
        {usual, L"f(\"1\")", nullptr, {L"F: Number of parameters < 2"}},
        {usual, L"f(\"1\", , \"3\")", nullptr, {L"Error parsing "}},
        {usual, L"f(\"1\", nobody(x))", nullptr, {L"Error parsing nobody(x)"}},
        // A name declared twice fails once both are given.
        {twice, L"f(\"1\")", "string \"1--\"", {}},
        {twice, L"f(\"1\", \"2\")", nullptr, {L"singlefunction::parse: Error inserting parameter one"}},
        // Required ones are counted, whichever they are.
        {lastTwo, L"f(\"1\", \"2\")", "string \"12-\"", {}},
        {boundModule(showThree, nullptr), L"f(nobody())", "string \"---\"", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(qx::string(row.call).utf8());
        const hostModule host(row.declared);
        if (row.values) {
            EXPECT_EQ(valueText(evaluated(row.call)), row.values);
            continue;
        }
        texts chain = {L"Error parsing " + qx::string(row.call), L"Error parsing F(...)"};
        chain.insert(chain.end(), row.reasons.begin(), row.reasons.end());
        EXPECT_EQ(failureOf([&] { parsed(row.call); }), chain);
    }
}

TEST(binding, names_are_exact_and_each_request_evaluates_anew)
{
    const auto work = [](const bound& self, codecontext& context, qx::genericValue& result) {
        EXPECT_FALSE(self.getParamValue(L"One", context, result));
        EXPECT_FALSE(self.getParamValue(L"one ", context, result));
        EXPECT_TRUE(result.isNull());
        for (const wchar_t* name : {L"two", L"one", L"two"})
            EXPECT_TRUE(self.getParamValue(name, context, result));
        EXPECT_TRUE(self.getParamValue(nullptr, context, result)); // the empty name
    };
    const hostModule host(
        boundModule(work, L"one", true, L"two", true, L"skipped", true, L"", true, nullptr));
    const auto append = [](const wchar_t* mark) {
        return L"setvar(log, strcat(log, \"" + qx::string(mark) + L"\"))";
    };
    const ownedStatement call = parsed(L"f(" + append(L"1") + L", " + append(L"2") + L", " + append(L"3") +
                                       L", " + append(L"4") + L")");
    scriptcontext context;
    context.createVariable(nameOf(L"log"), textValue(L""));
    call->exec(context);
    EXPECT_EQ(valueText(context.variable(nameOf(L"log"))), "string \"2124\"");
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
