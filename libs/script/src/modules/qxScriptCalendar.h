// What the statements on dates and on times have in common. A kind is a structure that tells the type and the
// texts:
//
//     struct dateKind
//     {
//         using type = date;
//         static constexpr const wchar_t* noFunction = L"...";      // failures
//         static constexpr const wchar_t* tooFewParameters = L"...";
//         static constexpr const wchar_t* unreadableText = L"...";
//         static constexpr const wchar_t* noValue = L"...";
//         static constexpr const wchar_t* readOutFailures[] = {...};
//         static constexpr const wchar_t* parameters = L"(date)";   // of a read-out
//         static constexpr bool constantFailsWithoutText = true;    // whatever goes wrong with a constant
//         static constexpr int (*readOuts[])(const date&) = {...};  // null for a number that is free
//     };
#pragma once

#include "statements/qxScriptBase.h"

#include "qxHeldTypes.h"

#include <iterator>

namespace qx::script
{

constexpr const wchar_t* noReadOut = L"invalid infotype %d";

// A statement that gives the value of a function.
template <class Kind>
class constantOf final : public scriptbasestatement
{
public:
    using function = typename Kind::type (*)();
    static constexpr const wchar_t* failures[] = {Kind::noFunction};

    template <function Function>
    static constexpr builtin row(const wchar_t* name, const wchar_t* summary)
    {
        return {.name = name,
                .create = create<Function>,
                .parameters = L"()",
                .result = resultRule::keepsType,
                .summary = summary,
                .failures = failures};
    }

    statement* clone() const override { return new constantOf(*this); }
    void execute(codecontext&, genericValue& result) const override
    {
        if (!mFunction)
            execError(this, Kind::noFunction);
        try {
            writeToSlot(result, mFunction());
        } catch (...) {
            if (!Kind::constantFailsWithoutText)
                throw;
            execError(this, nullptr);
        }
    }

private:
    explicit constantOf(function called) : mFunction(called) {}

    template <function Function>
    static statement* create(const callText&)
    {
        return new constantOf(Function);
    }

    function mFunction;
};

// A statement that gives a number read out of a date or time: a year, an hour.
template <class Kind>
class infoOf final : public scriptbasestatement
{
public:
    // `Info` is a place among the kind's read-outs.
    template <int Info>
    static constexpr builtin row(const wchar_t* name, const wchar_t* summary)
    {
        return {.name = name,
                .create = create<Info>,
                .parameters = Kind::parameters,
                .result = resultRule::keepsType,
                .summary = summary,
                .failures = Kind::readOutFailures};
    }

    statement* clone() const override { return new infoOf(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        typename Kind::type value;
        if (!mpValue.read(context, value))
            execError(this, Kind::noValue);
        if (!isReadOut())
            execError(this, noReadOut, mInfo);
        writeToSlot(result, Kind::readOuts[mInfo](value));
    }
    std::uint64_t smallValue(codecontext& context) const
    {
        typename Kind::type value;
        return mpValue.shortCut().read(context, value) ? cell::make(Kind::readOuts[mInfo](value))
                                                       : cell::refused;
    }
    bool resolve(compiler& names) const { return mpValue.resolve(names); }

private:
    template <int Info>
    static statement* create(const callText& call)
    {
        if (call.params.empty())
            refuse(Kind::tooFewParameters);
        return new infoOf(Info, requireOperand(call, 0, Kind::unreadableText));
    }

    infoOf(int info, operand value) : mInfo(info), mpValue(std::move(value))
    {
        mpValue.template fold<typename Kind::type>();
        if (isReadOut())
            offerShortCuts(this, depthOf(mpValue), writing::keepsType);
    }

    bool isReadOut() const
    {
        return mInfo >= 0 && mInfo < static_cast<int>(std::size(Kind::readOuts)) && Kind::readOuts[mInfo];
    }

    int mInfo;
    operand mpValue;
};

} // namespace qx::script
