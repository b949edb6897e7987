// Objects of the host: what the statements on them have in common.
#include "modules/qxScriptObject.h"

namespace qx::script
{

methodstatement::methodstatement(const callText& call, const refusals& texts)
    : mpObject(requireOperand(call, 0, texts))
{}

objectRef methodstatement::getObject(codecontext& context) const
{
    genericValue value;
    if (!mpObject.evaluate(context, value))
        execError(this, nullptr);
    const heldIn<objectRef> object(&value);
    return object ? *object : objectRef();
}

fieldstatement::fieldstatement(const callText& call, const refusals& texts)
    : methodstatement(call, texts), mpFieldName(requireOperand(call, 1, texts.unusable))
{}

memberName fieldstatement::evaluateFieldName(codecontext& context) const
{
    genericValue value;
    if (!mpFieldName.evaluate(context, value))
        execError(this, nullptr);
    string name;
    value.getValue(name);
    return memberName(std::move(name));
}

} // namespace qx::script
