// The shells of the typed operators. A shell evaluates, reads and writes; what is done with the operands is
// its functor's.
#pragma once

#include "qxScriptBase.h"

#include "qxHeldTypes.h"
#include "qxSystem.h"

namespace qx::script
{

// Reads an operand. Throws the bool value false for a null value and one that does not convert.
template <readable T>
T operandOf(const genericValue& value)
{
    T operand{};
    if (!value.getValue(operand))
        throw false;
    return operand;
}

// What the statements with two operands have in common. Operands that the call does not give are no failure
// before the run.
class binaryoperands : public scriptbasestatement
{
protected:
    explicit binaryoperands(const callText& call);

    void evaluate(codecontext& context, genericValue& first, genericValue& second) const;

private:
    ownedProvider mpFirst;
    ownedProvider mpSecond;
};

class unaryoperand : public scriptbasestatement
{
protected:
    explicit unaryoperand(const callText& call);

    void evaluate(codecontext& context, genericValue& operand) const;

private:
    ownedProvider mpOperand;
};

template <class F>
class binaryoperation final : public binaryoperands
{
public:
    static statement* createFrom(const callText& call) { return new binaryoperation(call); }

    statement* clone() const override { return new binaryoperation(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        genericValue first;
        genericValue second;
        evaluate(context, first, second);
        try {
            const auto a = operandOf<typename F::first>(first);
            const auto b = operandOf<typename F::second>(second);
            if (!F::faults(a, b)) {
                writeToSlot(result, F()(a, b));
                return;
            }
        } catch (...) {
            execError(this, nullptr);
        }
        system::current().divisionFault(); // out here, so that what a host's system throws passes on
    }

private:
    using binaryoperands::binaryoperands;
};

template <class F>
class unaryoperation final : public unaryoperand
{
public:
    static statement* createFrom(const callText& call) { return new unaryoperation(call); }

    statement* clone() const override { return new unaryoperation(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        genericValue operand;
        evaluate(context, operand);
        try {
            writeToSlot(result, F()(operandOf<typename F::first>(operand)));
        } catch (...) {
            execError(this, nullptr);
        }
    }

private:
    using unaryoperand::unaryoperand;
};

// The logical operators, see qxScriptLogic.cpp.
statement* createAnd(const callText& call);
statement* createOr(const callText& call);

} // namespace qx::script
