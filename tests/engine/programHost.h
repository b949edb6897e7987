// The statements of a host in programs that are run in several ways, and what they note.
#pragma once

#include "host.h"
#include "valueText.h"

#include <cmath>
#include <memory>

// The bits of a floating value besides its text, which tells no NaN from another.
inline std::string shown(const qx::genericValue& value)
{
    double number = 0;
    std::string text = valueText(value);
    if (!text.starts_with("double nan") || !value.getValue(number))
        return text;
    return text + (std::signbit(number) ? " negative" : "");
}

using address = qx::sharedPtr<qx::genericValue>;

// What host statements of the run that is under way work on.
struct hostsSide
{
    std::vector<std::string> noted;
    std::vector<address> kept;
};
inline hostsSide* running = nullptr;

[[noreturn]] inline void failAs(const qx::string& kind)
{
    if (kind == L"exception")
        throw qx::unexpectedErrorException(L"of the host");
    if (kind == L"text")
        throw qx::string(L"said");
    throw false;
}

// The statements of the host: what they do is seen, and they run anything in between.
inline statement* hostStatementFor(const moduleCall& call)
{
    if (call.name == L"mark") {
        std::shared_ptr<qx::script::valueProvider> operand;
        if (!call.params.empty())
            operand.reset(qx::script::valueProvider::createFrom(call.params[0], call.flags));
        return new hostStatement([operand](codecontext& context, qx::genericValue& result) {
            if (operand)
                operand->getValue(context, result);
            running->noted.push_back("mark " + shown(result));
        });
    }
    if (call.name == L"letgo")
        return new hostStatement([](auto&, auto&) { running->kept.clear(); });
    if (call.params.size() != 1)
        return nullptr;
    const qx::scString name = qx::scString::createFrom(call.params[0]);
    if (call.name == L"fail")
        return new hostStatement([name](auto&, auto&) { failAs(name.string()); });
    if (call.name == L"keep")
        return new hostStatement(
            [name](codecontext& context, auto&) { running->kept.push_back(context.variableAddress(name)); });
    if (call.name == L"become") // another type each time, and then a part of itself
        return new hostStatement([name](codecontext& context, auto&) {
            if (const address variable = context.variableAddress(name))
                *variable = qx::genericValue(qx::valueArray{*variable, qx::genericValue(2)});
        });
    return nullptr;
}
