// The shells of the functions with named parameters that take short cuts: they read the operands, by place,
// and write the result; what is done with the operands is their functor's.
//
// A functor tells what is declared, and the types as which the operands are read:
//
//     struct mod
//     {
//         static constexpr const wchar_t* messageName = L"mod";
//         static constexpr declaredParameter declared[] = {{L"val1", true, L"Error retrieving value1"},
//                                                          {L"val2", true, L"Error retrieving value2"}};
//         using operands = operandTypes<double, double>;
//         static double of(double dividend, double divisor);
//     };
#pragma once

#include "modules/qxScriptOps.h"

#include <iterator>
#include <tuple>

namespace qx::script
{

template <class... T>
struct operandTypes
{};

template <class F>
class namedoperands : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = F::messageName;
    static constexpr auto& declared = F::declared;

    // Those that were not given need none.
    bool resolve(compiler& names) const
    {
        return std::all_of(std::begin(mOperands), std::end(mOperands),
                           [&names](const operand& one) { return !one || one.resolve(names); });
    }

protected:
    namedoperands() = default;
    // The copy has providers of its own.
    namedoperands(const namedoperands& other) : scriptbasesinglefunction(other)
    {
        bind();
        for (std::size_t i = 0; i < std::size(mOperands); ++i)
            mOperands[i].foldAs(other.mOperands[i]);
    }

    // Reads the operand at a place in the long way.
    template <readable T>
    T require(std::size_t place, codecontext& context) const
    {
        T out{};
        if (!mOperands[place].read(context, out))
            execError(this, F::declared[place].failure);
        return out;
    }

    void parsed() override { bind(); }

    // What else is to be done then where there are short cuts, with the types of the first operands.
    template <class Shell, class... T>
    void offer(Shell* shell, writing written, operandTypes<T...>)
    {
        bind();
        std::size_t place = 0;
        (foldAt<T>(place++), ...);
        unsigned depth = 0;
        for (const operand& one : mOperands)
            if (one)
                depth = std::max(depth, one.shortCut().depth());
        offerShortCuts(shell, depth, written);
    }

    operand mOperands[std::size(F::declared)];

private:
    void bind()
    {
        for (std::size_t i = 0; i < std::size(mOperands); ++i)
            mOperands[i] = operand::borrowing(boundProvider(i));
    }
    template <class T>
    void foldAt(std::size_t place)
    {
        if constexpr (cell::small<T>)
            mOperands[place].template fold<T>();
    }
};

// A function whose result is a small value.
template <class F, class Operands = typename F::operands>
class namedoperation;

template <class F, class... T>
class namedoperation<F, operandTypes<T...>> final : public namedoperands<F>
{
public:
    statement* clone() const override { return new namedoperation(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        executeWith(context, result, std::index_sequence_for<T...>());
    }
    std::uint64_t smallValue(codecontext& context) const
    {
        return smallValueOf(context, std::index_sequence_for<T...>());
    }
    const value* compileValue(const operandShortCut& asked, compiler& c) const
    {
        if constexpr (std::is_same_v<operandTypes<T...>, operandTypes<double, double>>)
            return compileBinary<functor>(asked, this->mOperands[0].shortCut(), this->mOperands[1].shortCut(),
                                          c);
        else
            return inside::compileByShortCuts(*this, asked, c);
    }

private:
    struct functor : qx::detail::operands<double, double>
    {
        auto operator()(double a, double b) const { return F::of(a, b); }
    };

    void parsed() override { this->offer(this, writing::replaces, operandTypes<T...>()); }

    template <std::size_t... I>
    void executeWith(codecontext& context, genericValue& result, std::index_sequence<I...>) const
    {
        const std::tuple<T...> operands{this->template require<T>(I, context)...}; // in this order
        replaceResult(result, std::apply(F::of, operands));
    }
    template <std::size_t... I>
    cell::word smallValueOf(codecontext& context, std::index_sequence<I...>) const
    {
        std::tuple<shortly<T>...> operands;
        if ((std::get<I>(operands).read(this->mOperands[I].shortCut(), context) && ...))
            return cell::make(F::of(std::get<I>(operands).get()...));
        return cell::refused;
    }
};

// A function that makes another text of its first operand.
template <class F, class Operands = typename F::operands>
class namedtextoperation;

template <class F, class... Rest>
class namedtextoperation<F, operandTypes<string, Rest...>> final : public namedoperands<F>
{
public:
    statement* clone() const override { return new namedtextoperation(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        executeWith(context, result, std::index_sequence_for<Rest...>());
    }
    bool textValue(codecontext& context, textScratch& text) const
    {
        return textValueOf(context, text, std::index_sequence_for<Rest...>());
    }

private:
    void parsed() override { this->offer(this, writing::textReplaces, operandTypes<string, Rest...>()); }

    template <std::size_t... I>
    void executeWith(codecontext& context, genericValue& result, std::index_sequence<I...>) const
    {
        textScratch text;
        text.own(this->template require<string>(0, context));
        const std::tuple<Rest...> rest{this->template require<Rest>(I + 1, context)...}; // in this order
        F::of(text, std::get<I>(rest)...);
        replaceResult(result, text.take());
    }
    template <std::size_t... I>
    bool textValueOf(codecontext& context, textScratch& text, std::index_sequence<I...>) const
    {
        std::tuple<shortly<Rest>...> rest;
        if (!this->mOperands[0].shortCut().textValue(context, text) ||
            !(std::get<I>(rest).read(this->mOperands[I + 1].shortCut(), context) && ...))
            return false;
        F::of(text, std::get<I>(rest).get()...);
        return true;
    }
};

} // namespace qx::script
