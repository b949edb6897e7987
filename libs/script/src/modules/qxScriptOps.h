// The shells of the typed operators. A shell evaluates, reads and writes; what is done with the operands is
// its functor's.
#pragma once

#include "compiled/qxScriptValues.h"
#include "modules/qxScriptFunctors.h"
#include "statements/qxScriptBase.h"

#include "qxHeldTypes.h"
#include "qxSystem.h"

#include <array>

namespace qx::script
{

// Reads an operand, which is nobody else's and may be emptied. Throws the bool value false for a null value
// and one that does not convert.
template <readable T>
T operandOf(const genericValue& value)
{
    if constexpr (std::is_same_v<T, string>)
        if (string* const sole = soleText(value))
            return std::move(*sole);
    T operand{};
    if (!readValue(value, operand))
        throw false;
    return operand;
}

// An operand by its short cut, as its functor wants it.
template <class T>
struct shortly
{
    static constexpr bool possible = false;
};

template <cell::small T>
struct shortly<T>
{
    static constexpr bool possible = true;

    // Inline, since it is most of what an operator does (W1).
    [[gnu::always_inline]] bool read(const operandShortCut& operand, codecontext& context)
    {
        return operand.read(context, value);
    }
    const T& get() const { return value; }

    T value{};
};

template <>
struct shortly<string>
{
    static constexpr bool possible = true;

    shortly() noexcept; // as that of the scratch

    bool read(const operandShortCut& operand, codecontext& context)
    {
        return operand.textValue(context, text);
    }
    std::wstring_view get() const { return text.view(); }

    textScratch text;
};

inline shortly<string>::shortly() noexcept = default;

// What the statements with two operands have in common. Operands that the call does not give are no failure
// before the run.
class binaryoperands : public scriptbasestatement
{
public:
    static constexpr const wchar_t* unusable = L"binaryoperation::createFrom: error parsing %s";
    static constexpr const wchar_t* noFirst = L"error retrieving first operand (1)";
    static constexpr const wchar_t* noSecond = L"error retrieving second operand (1)";
    static constexpr const wchar_t* firstWithoutValue = L"error retrieving first operand (2)";
    static constexpr const wchar_t* secondWithoutValue = L"error retrieving second operand (2)";
    static constexpr std::array failures = {unusable, noFirst, noSecond, firstWithoutValue,
                                            secondWithoutValue};

protected:
    explicit binaryoperands(const callText& call);

    void evaluate(codecontext& context, genericValue& first, genericValue& second) const;

    bool resolveBoth(compiler& names) const { return mpFirst.resolve(names) && mpSecond.resolve(names); }

    operand mpFirst;
    operand mpSecond;
};

class unaryoperand : public scriptbasestatement
{
public:
    static constexpr const wchar_t* unusable = L"unaryoperation::createFrom: error parsing %s";
    static constexpr const wchar_t* missing = L"error retrieving operand (1)";
    static constexpr const wchar_t* withoutValue = L"error retrieving operand (2)";
    static constexpr std::array failures = {unusable, missing, withoutValue};

protected:
    explicit unaryoperand(const callText& call);

    void evaluate(codecontext& context, genericValue& operand) const;

    operand mpOperand;
};

// What loops are made of has operations of its own.
template <class F, class T>
inline constexpr bool hotFunctor =
    oneOf<F, typeList<addfunc<T, T, T>, subtractfunc<T, T, T>, multiplyfunc<T, T, T>, eqfunc<T, T>,
                      neqfunc<T, T>, smfunc<T, T>, smeqfunc<T, T>, gtfunc<T, T>, gteqfunc<T, T>>>;

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
            const auto a = operandOf<firstType>(first);
            const auto b = operandOf<secondType>(second);
            if (!F::faults(a, b)) {
                writeToSlot(result, F()(a, b));
                return;
            }
        } catch (...) {
            execError(this, nullptr);
        }
        system::current().divisionFault(); // out here, so that what a host's system throws passes on
    }

    std::uint64_t smallValue(codecontext& context) const
    {
        if constexpr (isShort && cell::small<resultType>) {
            shortly<firstType> a;
            shortly<secondType> b;
            if (a.read(mpFirst.shortCut(), context) && b.read(mpSecond.shortCut(), context) &&
                !F::faults(a.get(), b.get()))
                return cell::make(F()(a.get(), b.get()));
        }
        return cell::refused;
    }
    bool textValue(codecontext& context, textScratch& text) const
    {
        if constexpr (isShort && std::is_same_v<resultType, string>) {
            shortly<firstType> a;
            shortly<secondType> b;
            if (!a.read(mpFirst.shortCut(), context) || !b.read(mpSecond.shortCut(), context))
                return false;
            text.own(F()(a.get(), b.get()));
            return true;
        } else
            return text.show(smallValue(context));
    }
    bool resolve(compiler& names) const { return resolveBoth(names); }
    const value* compileValue(const operandShortCut& asked, compiler& c) const
    {
        if constexpr (isHot)
            return compileBinary<F>(asked, mpFirst.shortCut(), mpSecond.shortCut(), c);
        else
            return inside::compileByShortCuts(*this, asked, c);
    }

private:
    using firstType = typename F::first;
    using secondType = typename F::second;
    using resultType = std::invoke_result_t<F, const firstType&, const secondType&>;
    static constexpr bool isShort = shortly<firstType>::possible && shortly<secondType>::possible;
    static constexpr bool isHot = hotFunctor<F, int> || hotFunctor<F, double>;

    explicit binaryoperation(const callText& call) : binaryoperands(call)
    {
        if constexpr (isShort) {
            if constexpr (cell::small<firstType>)
                mpFirst.fold<firstType>();
            if constexpr (cell::small<secondType>)
                mpSecond.fold<secondType>();
            offerShortCuts(this, depthOf(mpFirst, mpSecond),
                           cell::small<resultType> ? writing::keepsType : writing::textKeepsType);
        }
    }
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
            writeToSlot(result, F()(operandOf<operandType>(operand)));
        } catch (...) {
            execError(this, nullptr);
        }
    }
    std::uint64_t smallValue(codecontext& context) const
    {
        operandType operand{};
        if (!mpOperand.shortCut().read(context, operand))
            return cell::refused;
        return cell::make(F()(operand));
    }
    bool resolve(compiler& names) const { return mpOperand.resolve(names); }

private:
    using operandType = typename F::first;

    explicit unaryoperation(const callText& call) : unaryoperand(call)
    {
        mpOperand.fold<operandType>();
        offerShortCuts(this, depthOf(mpOperand), writing::keepsType);
    }
};

} // namespace qx::script
