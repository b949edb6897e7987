// Named parameters: the positional texts of a call bound to declared names.
#include "host.h"
#include "support/expectations.h"
#include "valueText.h"

#include <gtest/gtest.h>

#include <map>
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

// Names without their flags are refused when they are compiled.
using qx::script::declaresParameters;
static_assert(declaresParameters<std::nullptr_t>());
static_assert(declaresParameters<wchar_t[4], bool, wchar_t[4], bool, std::nullptr_t>());
static_assert(!declaresParameters<wchar_t[4]>());
static_assert(!declaresParameters<wchar_t[4], bool, wchar_t[4]>());
static_assert(!declaresParameters<wchar_t[4], wchar_t[4], bool, std::nullptr_t>());

} // namespace

TEST(binding, goes_by_position_as_expected)
{
    const std::map<qx::string, hostModule::answer> declared = {
        {L"usual", boundModule(showThree, L"one", true, L"two", true, L"three", false, nullptr)},
        {L"lasttwo", boundModule(showThree, L"one", false, L"two", true, L"three", true, nullptr)},
        {L"twice", boundModule(showThree, L"one", false, L"one", false, nullptr)},
        {L"nothing", boundModule(showThree, nullptr)},
    };
    const hostModule host([&](const moduleCall& call) -> statement* {
        const auto found = declared.find(call.name);
        return found == declared.end() ? nullptr : found->second({L"f", {}, call.params, call.flags});
    });
    expectOutcomes("engine/binding", [](const qx::string& call) {
        qx::genericValue result;
        const texts chain = failureOf([&] { result = evaluated(call); });
        return chain[0] == L"nothing thrown" ? texts{qx::string::fromUtf8(valueText(result))} : chain;
    });
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
