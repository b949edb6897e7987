// Conditions: small expressions tested against a value.
#include "modules/qxScriptModules.h"
#include "statements/qxScriptBase.h"

#include "qxHeldTypes.h"

namespace qx::script
{

namespace
{

using sharedCondition = sharedPtr<conditions::condition>;

class condition_create final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"condition_create";
    static constexpr declaredParameter declared[] = {{L"string", true}};

    statement* clone() const override { return new condition_create(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const auto text = require<string>(L"string", context, L"Error retrieving conditionstring");
        const sharedCondition made(conditions::condition::parse(text));
        if (!made)
            execError(this, L"Error parsing conditionstring");
        replaceResult(result, made);
    }
};

class condition_istrue final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"condition_istrue";
    static constexpr declaredParameter declared[] = {{L"this", true}, {L"value", true}};

    statement* clone() const override { return new condition_istrue(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        sharedCondition asked;
        if (!read(L"this", context, asked) || !asked)
            execError(this, L"Error retrieving condition");
        genericValue value;
        if (!getParamValue(L"value", context, value))
            execError(this, L"Error retrieving value");
        replaceResult(result, asked->isTrue(value));
    }
};

// --- Table ---

const builtin rows[] = {
    {.name = L"condition_create",
     .create = createNamed<condition_create>,
     .parameters = L"(string)",
     .summary = L"Gives the condition that a text tells: tests like `> 5`, `between 1 and 9`, `in (1, 2)`, "
                L"`like \"a*\"` and `empty`, joined by `and`, `or`, `not` and parentheses.",
     .failures = {L"Error retrieving conditionstring\n"
                  L"Error parsing conditionstring"}},
    {.name = L"condition_istrue",
     .create = createNamed<condition_istrue>,
     .parameters = L"(this, value)",
     .summary = L"Tells whether the value meets the condition.",
     .failures = {L"Error retrieving condition\n"
                  L"Error retrieving value"}},
};

} // namespace

constinit const builtinModule conditionModule{L"condition", rows};

} // namespace qx::script
