// The bases of the statements on host objects.
#pragma once

#include "modules/askedObject.h"
#include "modules/refusals.h"
#include "statements/qxScriptHeld.h"

namespace qx::script
{

// Failures that statements of several sources share.
constexpr const wchar_t* noObject = L"unable to retrieve object";
constexpr const wchar_t* noFieldName = L"Error retrieving fieldname";

// Keeps a holder on the heap for the length of a scope, by one more count.
class holderPin
{
public:
    explicit holderPin(genericValue::holderbase& holder) noexcept : mHolder(holder)
    {
        interlockedIncrement(counterPlace<genericValue::holderbase>::obtain(&mHolder));
    }
    holderPin(const holderPin&) = delete;
    holderPin& operator=(const holderPin&) = delete;
    ~holderPin()
    {
        if (interlockedDecrement(counterPlace<genericValue::holderbase>::obtain(&mHolder)) == 0u)
            deleteObj<genericValue::holderbase>::destroy(&mHolder);
    }

private:
    genericValue::holderbase& mHolder;
};

// Base of the statements with named parameters of which one is the object.
class objectfunction : public scriptbasesinglefunction
{
protected:
    // The interface T of the object; `noInterface` is the failure of one that does not offer it.
    template <class T>
    askedObject<T> requireObject(const declaredParameter& asked, codecontext& context,
                                 const wchar_t* noInterface) const
    {
        auto object = require<objectRef>(asked, context);
        return requireInterface<T>(this, object, noInterface);
    }
};

// Base of the statements whose parameters stand by place: the first one is the object.
class methodstatement : public scriptbasestatement
{
protected:
    methodstatement(const callText& call, const refusals& texts);

    // The interface T of the object.
    template <class T>
    askedObject<T> requireObject(codecontext& context) const
    {
        genericValue::holderbase* const holder = holderInPlace(context);
        objectRef* const object = holder ? valueOf<objectRef>(*holder) : nullptr;
        if (!object)
            return requireGiven<T>(context);
        const holderPin kept(*holder); // who is asked may end the variable, but not the object that is asked
        return requireInterface<T>(this, *object, noObject);
    }

private:
    // Not inline, so that the fast path saves fewer registers (W7).
    template <class T>
    [[gnu::noinline]] askedObject<T> requireGiven(codecontext& context) const
    {
        objectRef object = getObject(context);
        return requireInterface<T>(this, object, noObject);
    }
    // What the object's variable holds where nobody else can reach it; null where it is not just that.
    genericValue::holderbase* holderInPlace(codecontext& context) const
    {
        if (!shortCutsAllowed())
            return nullptr;
        const genericValue* const variable = mpObject.shortCut().valueInPlace(context);
        return variable ? cell::access::holder(*variable) : nullptr;
    }
    // Null where the value holds anything but an object: nothing is converted.
    objectRef getObject(codecontext& context) const;

    operand mpObject;
};

// The name of a field or relation: that of the statement itself where the script gives it as a literal.
class memberName
{
public:
    explicit memberName(const string& literal) noexcept : mpLiteral(&literal) {}
    explicit memberName(string&& text) noexcept : mOwn(std::move(text)) {}

    const string& text() const noexcept { return mpLiteral ? *mpLiteral : mOwn; }
    const wchar_t* c_str() const noexcept { return text().c_str(); }

private:
    const string* mpLiteral = nullptr;
    string mOwn;
};

// Base of those whose second parameter is the name of a field or relation.
class fieldstatement : public methodstatement
{
protected:
    fieldstatement(const callText& call, const refusals& texts);

    // REQUIRED: empty where the value has no text.
    memberName getFieldName(codecontext& context) const
    {
        const string* const literal = mpFieldName.shortCut().literal();
        return literal ? memberName(*literal) : evaluateFieldName(context);
    }

private:
    memberName evaluateFieldName(codecontext& context) const;

    operand mpFieldName;
};

} // namespace qx::script
