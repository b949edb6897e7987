// The bases of the statements on host objects.
#pragma once

#include "contexts/qxScriptEpoch.h"
#include "qxScriptReference.h"
#include "statements/qxScriptBase.h"
#include "statements/qxScriptHeld.h"

namespace qx::script
{

using intrface::objectRef;

// Failures that statements of several sources share.
constexpr const wchar_t* noObject = L"unable to retrieve object";
constexpr const wchar_t* noFieldName = L"Error retrieving fieldname";

// How the factories of one statement refuse a call.
struct objectRefusals
{
    std::size_t required; // parameters
    const wchar_t* tooFew;
    const wchar_t* unusable; // with the text of the parameter
};

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

// Base of the statements whose parameters stand by place: the first one is the object.
class methodstatement : public scriptbasestatement
{
protected:
    methodstatement(const callText& call, const objectRefusals& texts);

    // The interface T of the object.
    template <class T>
    intrface::interfaceptr<T> requireObject(codecontext& context) const
    {
        genericValue::holderbase* const holder = holderInPlace(context);
        objectRef* const object = holder ? valueOf<objectRef>(*holder) : nullptr;
        if (!object)
            return requireGiven<T>(context);
        const holderPin kept(*holder); // who is asked may end the variable, but not the object that is asked
        return requireInterface<T>(*object);
    }

private:
    // Not inline, so that what occurs most saves fewer registers.
    template <class T>
    [[gnu::noinline]] intrface::interfaceptr<T> requireGiven(codecontext& context) const
    {
        objectRef object = getObject(context);
        return requireInterface<T>(object);
    }
    template <class T>
    intrface::interfaceptr<T> requireInterface(objectRef& object) const
    {
        intrface::interfaceptr<T> found(object);
        epoch::move(); // the object has been asked, and an operand that comes yet may call a function
        if (!found.isValid())
            execError(this, noObject);
        return found;
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

    ownedProvider mpObject;
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

// ... and the second one the name of a field or relation.
class fieldstatement : public methodstatement
{
protected:
    fieldstatement(const callText& call, const objectRefusals& texts);

    // REQUIRED: empty where the value has no text.
    memberName getFieldName(codecontext& context) const
    {
        const string* const literal = mpFieldName.shortCut().literal();
        return literal ? memberName(*literal) : evaluateFieldName(context);
    }

private:
    memberName evaluateFieldName(codecontext& context) const;

    ownedProvider mpFieldName;
};

} // namespace qx::script
