// Conditions: small expressions tested against a value.
#include "modules/qxScriptModules.h"
#include "modules/qxScriptRows.h"

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
    static constexpr declaredParameter textParam{L"string", true, L"Error retrieving conditionstring"};
    static constexpr declaredParameter declared[] = {textParam};
    static constexpr const wchar_t* noCondition = L"Error parsing conditionstring";
    static constexpr const wchar_t* failures[] = {noCondition};

    statement* clone() const override { return new condition_create(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const auto text = require<string>(textParam, context);
        const sharedCondition made(conditions::condition::parse(text));
        if (!made)
            execError(this, noCondition);
        replaceResult(result, made);
    }
};

class condition_istrue final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"condition_istrue";
    static constexpr declaredParameter conditionParam{L"this", true, L"Error retrieving condition"};
    static constexpr declaredParameter valueParam{L"value", true, L"Error retrieving value"};
    static constexpr declaredParameter declared[] = {conditionParam, valueParam};

    statement* clone() const override { return new condition_istrue(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        sharedCondition asked;
        if (!read(conditionParam, context, asked) || !asked)
            execError(this, conditionParam.failure);
        genericValue value;
        if (!getParamValue(valueParam.name, context, value))
            execError(this, valueParam.failure);
        replaceResult(result, asked->isTrue(value));
    }
};

// --- Table ---

constexpr builtin rows[] = {
    namedRow<condition_create>(
        L"Gives the condition that a text tells: tests like `> 5`, `between 1 and 9`, `in (1, 2)`, "
        L"`like \"a*\"` and `empty`, joined by `and`, `or`, `not` and parentheses."),
    namedRow<condition_istrue>(L"Tells whether the value meets the condition."),
};

} // namespace

constinit const builtinTable conditionRows = rows;

} // namespace qx::script
