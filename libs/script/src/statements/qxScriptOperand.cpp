// Operands: how they are made from the texts of a call, and how a text is read the long way.
#include "statements/qxScriptOperand.h"

#include "statements/qxScriptBase.h"

namespace qx::script
{

bool operandShortCut::takeOtherwise(codecontext& context, genericValue& out) const
{
    return declinesWithoutMemory([&] {
        if (givesText()) {
            textScratch text;
            if (!textValue(context, text))
                return false;
            cell::access::fill(out, text.takeValue());
            return true;
        }
        if (!mpShort)
            return false;
        const genericValue* const variable = inside::valueInPlace(*mpShort, context);
        if (variable)
            out = *variable;
        return variable || inside::freshValue(*mpShort, out);
    });
}

bool operand::readLongText(codecontext& context, textScratch& text) const
{
    genericValue value;
    if (!write(context, value))
        return false;
    if (shortCutsAllowed() && text.show(cell::access::load(value)))
        return true;
    string read;
    if (string* const sole = soleText(value))
        read.swap(*sole);
    else if (!value.getValue(read))
        return false;
    text.own(std::move(read));
    return true;
}

operand operandAt(const callText& call, std::size_t place)
{
    if (place >= call.params.size())
        return operand();
    return operand(providerFrom(call.params[place], call.flags));
}

operand requireOperand(const callText& call, std::size_t place, const wchar_t* failure)
{
    operand made = operandAt(call, place);
    if (!made)
        refuse(failure, place < call.params.size() ? call.params[place].view() : std::wstring_view());
    return made;
}

} // namespace qx::script
