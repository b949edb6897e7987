// Logic on any number of operands: `and` and `or` run them in order and stop at the first that decides.
#include "modules/qxScriptModules.h"
#include "modules/qxScriptOps.h"
#include "modules/qxScriptRows.h"

namespace qx::script
{

namespace
{

// The operand that reads as `Decisive` is the result; without one it is the opposite.
template <bool Decisive>
class logicoperation final : public scriptbasestatement
{
public:
    // REQUIRED: `or` reports with the words of `and`. Held by the script test operator/refused.
    static constexpr const wchar_t* unusable = L"and::createFrom: error parsing %s";
    static constexpr const wchar_t* tooFew = L"and::createFrom: invalid number of parameters";
    static constexpr const wchar_t* missing = unaryoperand::missing;
    static constexpr const wchar_t* withoutValue = unaryoperand::withoutValue;
    static constexpr const wchar_t* noTruth = L"unable to convert condition to bool";
    static constexpr const wchar_t* failures[] = {unusable, tooFew, missing, withoutValue, noTruth};

    statement* clone() const override { return new logicoperation(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        bool decided = false;
        for (std::size_t i = 0; i < mOperands.size() && !decided; ++i)
            decided = truthOf(mOperands[i], context) == Decisive;
        replaceResult(result, decided == Decisive);
    }
    std::uint64_t smallValue(codecontext& context) const
    {
        for (const operand& one : mOperands) {
            bool truth = false;
            if (!one.shortCut().read(context, truth))
                return cell::refused;
            if (truth == Decisive)
                return cell::make(Decisive);
        }
        return cell::make(!Decisive);
    }

    bool resolve(compiler& names) const
    {
        return std::all_of(mOperands.begin(), mOperands.end(),
                           [&names](const operand& one) { return one.resolve(names); });
    }

    static statement* createFrom(const callText& call)
    {
        autoPtr<logicoperation> made(new logicoperation);
        made->mOperands.reserve(call.params.size());
        for (std::size_t i = 0; i < call.params.size(); ++i)
            made->mOperands.push_back(requireOperand(call, i, unusable));
        if (made->mOperands.size() < 2)
            refuse(tooFew);
        unsigned depth = 0;
        for (operand& one : made->mOperands) {
            one.fold<bool>();
            depth = std::max(depth, depthOf(one));
        }
        offerShortCuts(made.get(), depth, writing::replaces);
        return made.release();
    }

private:
    bool truthOf(const operand& asked, codecontext& context) const
    {
        genericValue value;
        if (!asked)
            execError(this, missing);
        if (!asked.evaluate(context, value))
            execError(this, withoutValue);
        bool truth = false;
        if (!value.getValue(truth)) // a null value too
            execError(this, noTruth);
        return truth;
    }

    std::vector<operand> mOperands;
};

using _and = logicoperation<false>;
using _or = logicoperation<true>;

// --- Table ---

template <class Operation>
constexpr builtin logicRow(const wchar_t* name, const wchar_t* summary)
{
    return {.name = name,
            .create = Operation::createFrom,
            .parameters = L"(first, second, ...)",
            .summary = summary,
            .failures = Operation::failures};
}

constexpr builtin andRow =
    logicRow<_and>(L"and", L"Tells whether all are true; none is asked behind the first that is false.");
constexpr builtin orRow =
    logicRow<_or>(L"or", L"Tells whether one is true; none is asked behind the first that is.");

constexpr builtin rows[] = {
    andRow,
    renamed(andRow, L"&&"),
    orRow,
    renamed(orRow, L"||"),
};

} // namespace

constinit const builtinTable logicRows = rows;

} // namespace qx::script
