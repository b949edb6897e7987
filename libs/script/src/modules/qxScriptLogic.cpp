// Logic on any number of operands: `and` and `or` run them in order and stop at the first that decides.
#include "modules/qxScriptOps.h"

namespace qx::script
{

namespace
{

// The operand that reads as `Decisive` is the result; without one it is the opposite.
template <bool Decisive>
class logicoperation final : public scriptbasestatement
{
public:
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
        for (const ownedProvider& operand : mOperands) {
            bool truth = false;
            if (!operand.shortCut().read(context, truth))
                return cell::refused;
            if (truth == Decisive)
                return cell::make(Decisive);
        }
        return cell::make(!Decisive);
    }

    // REQUIRED: `or` reports with the words of `and`. Held by the script test operator/refused.
    static statement* createFrom(const callText& call)
    {
        autoPtr<logicoperation> made(new logicoperation);
        made->mOperands.reserve(call.params.size());
        for (std::size_t i = 0; i < call.params.size(); ++i)
            made->mOperands.push_back(requireProvider(call, i, L"and::createFrom: error parsing %s"));
        if (made->mOperands.size() < 2)
            refuse(L"and::createFrom: invalid number of parameters");
        unsigned depth = 0;
        for (ownedProvider& operand : made->mOperands) {
            operand.fold<bool>();
            depth = std::max(depth, depthOf(operand));
        }
        offerShortCuts(made.get(), depth, writing::replaces);
        return made.release();
    }

private:
    bool truthOf(const ownedProvider& operand, codecontext& context) const
    {
        genericValue value;
        if (!operand)
            execError(this, L"error retrieving operand (1)");
        if (!operand.evaluate(context, value))
            execError(this, L"error retrieving operand (2)");
        bool truth = false;
        if (!value.getValue(truth)) // a null value too
            execError(this, L"unable to convert condition to bool");
        return truth;
    }

    std::vector<ownedProvider> mOperands;
};

using _and = logicoperation<false>;
using _or = logicoperation<true>;

} // namespace

statement* createAnd(const callText& call)
{
    return _and::createFrom(call);
}

statement* createOr(const callText& call)
{
    return _or::createFrom(call);
}

} // namespace qx::script
