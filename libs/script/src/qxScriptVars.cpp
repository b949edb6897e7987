// Variables: the statements that create, read, write and test variables, parameters and globals.
//
// A name is the literal text of the first parameter, without its blanks and lower-cased, fixed when the text
// is parsed. Where a statement can see which name is a lookup of the context; here is only what it does with
// the storage.
#include "qxScriptBase.h"
#include "qxScriptModules.h"
#include "qxScriptTypes.h"

#include "qxHeldTypes.h"

namespace qx::script
{

namespace
{

enum eVarScope
{
    scopeVariable = 0,  // the chain of block variables
    scopeParameter = 1, // the parameters of the call
    scopeGlobal = 2     // the global variables
};

scString nameFrom(const textSlice& text)
{
    string name = text.text();
    name.deleteAll(L" \t").toLower();
    return scString::createFrom(name);
}

// The name that the first parameter gives. `failure` names the statement in the report of an empty one.
scString requiredName(const callText& call, const wchar_t* tooFew, const wchar_t* failure)
{
    if (call.params.empty())
        refuse(tooFew);
    const scString name = nameFrom(call.params[0]);
    if (name.string().empty())
        refuse(failure, call.params[0].view());
    return name;
}

// The value that the second parameter gives, if there is one.
ownedProvider optionalValue(const callText& call)
{
    return call.params.size() < 2 ? ownedProvider()
                                  : ownedProvider(valueProvider::createFrom(call.params[1], call.flags));
}

sharedPtr<genericValue> storageOf(codecontext& context, eVarScope scope, const scString& name)
{
    switch (scope) {
    case scopeParameter:
        return context.parameterAddress(name);
    case scopeGlobal:
        return context.globalContextVariableAddress(name);
    default:
        return context.variableAddress(name);
    }
}

class variableExists final : public scriptbasestatement
{
public:
    variableExists(eVarScope scope, const scString& name) : mScope(scope), mName(name) {}

    statement* clone() const override { return new variableExists(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        replaceResult(result, mScope == scopeGlobal ? context.hasGlobalContextVariable(mName)
                                                    : context.hasVariable(mName));
    }

    template <eVarScope Scope>
    static statement* create(const callText& call)
    {
        return new variableExists(
            Scope, requiredName(call, L"variableExists::createFrom: number of parameters < 1",
                                L"variableExists::createFrom: error setting variablename \"%s\""));
    }

private:
    eVarScope mScope;
    scString mName;
};

class createVariable final : public scriptbasestatement
{
public:
    createVariable(eVarScope scope, const scString& name, ownedProvider value)
        : mScope(scope), mName(name), mpValue(std::move(value))
    {}

    statement* clone() const override { return new createVariable(*this); }
    // A name that is visible already stays as it is, without a failure. A global is overwritten.
    void execute(codecontext& context, genericValue& result) const override
    {
        if (mpValue && !mpValue->getValue(context, result))
            execError(this, L"error retrieving value");
        if (mScope == scopeGlobal)
            context.setGlobalContextVariable(mName, result);
        else
            context.createVariable(mName, result);
    }

    template <eVarScope Scope>
    static statement* create(const callText& call)
    {
        const scString name = requiredName(call, L"createVariable::createFrom: number of parameters < 1",
                                           L"createVariable::createFrom: error setting variablename \"%s\"");
        return new createVariable(Scope, name, optionalValue(call));
    }

private:
    eVarScope mScope;
    scString mName;
    ownedProvider mpValue;
};

class setVariable final : public scriptbasestatement
{
public:
    setVariable(eVarScope scope, const scString& name, ownedProvider value)
        : mScope(scope), mName(name), mpValue(std::move(value))
    {}

    statement* clone() const override { return new setVariable(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const sharedPtr<genericValue> storage = storageOf(context, mScope, mName);
        if (!storage)
            execError(this, L"Error retrieving variable %s", mName.string());
        if (mpValue && !mpValue->getValue(context, *storage))
            execError(this, L"Error retrieving value for variable \"%s\"", mName.string());
        result = *storage;
    }

    template <eVarScope Scope>
    static statement* create(const callText& call)
    {
        const scString name = requiredName(call, L"setVariable::createFrom: number of parameters < 1",
                                           L"setVariable::createFrom: error setting variablename \"%s\"");
        return new setVariable(Scope, name, optionalValue(call));
    }

private:
    eVarScope mScope;
    scString mName;
    ownedProvider mpValue;
};

class getVariable final : public scriptbasestatement
{
public:
    getVariable(eVarScope scope, const scString& name) : mName(name), mScope(scope) {}

    statement* clone() const override { return new getVariable(*this); }
    void execute(codecontext& context, genericValue& result) const override { result = read(context); }

    template <eVarScope Scope>
    static statement* create(const callText& call)
    {
        return new getVariable(Scope, requiredName(call, L"getVariable::createFrom: number of parameters < 1",
                                                   L"getVariable::parse: error setting variablename %s"));
    }

private:
    const genericValue& read(codecontext& context) const
    {
        switch (mScope) {
        case scopeParameter:
            return context.parameter(mName);
        case scopeGlobal:
            return context.globalContextVariable(mName);
        default:
            return context.variable(mName);
        }
    }

    scString mName;
    eVarScope mScope;
};

// Gives the variable itself: a write through the value is a write to the variable.
class getVariableAddress final : public scriptbasestatement
{
public:
    getVariableAddress(eVarScope scope, const scString& name) : mName(name), mScope(scope) {}

    statement* clone() const override { return new getVariableAddress(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        writeToSlot(result, storageOf(context, mScope, mName));
    }

    template <eVarScope Scope>
    static statement* create(const callText& call)
    {
        if (call.types.size() != 1)
            refuse(L"getVariableAddress::createFrom: number of types != 1");
        return new getVariableAddress(
            Scope, requiredName(call, L"getVariableAddress::createFrom: number of parameters < 1",
                                L"getVariablePointer::parse: error setting variablename %s"));
    }

private:
    scString mName;
    eVarScope mScope;
};

class isnull final : public scriptbasestatement
{
public:
    explicit isnull(ownedProvider value) : mpValue(std::move(value)) {}

    statement* clone() const override { return new isnull(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        genericValue value;
        const bool given = mpValue.evaluate(context, value);
        replaceResult(result, !given || value.isNull());
    }

    static statement* create(const callText& call)
    {
        if (call.params.empty())
            refuse(L"isnull::createFrom: number of parameters < 1");
        return new isnull(ownedProvider(valueProvider::createFrom(call.params[0], call.flags)));
    }

private:
    ownedProvider mpValue;
};

// Tells whether a value reads as a T, by itself or by conversion.
template <class T>
class isoftype final : public scriptbasestatement
{
public:
    explicit isoftype(ownedProvider value) : mpValue(std::move(value)) {}

    statement* clone() const override { return new isoftype(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        T converted{};
        replaceResult(result, mpValue.read(context, converted));
    }

private:
    ownedProvider mpValue;
};

template <class T>
statement* makeIsoftype(ownedProvider value)
{
    return new isoftype<T>(std::move(value));
}

statement* createIsoftype(const callText& call)
{
    static const struct
    {
        ePrimitiveScriptType type;
        statement* (*make)(ownedProvider value);
    } members[] = {
        {scriptTypeBool, makeIsoftype<bool>},        {scriptTypeShort, makeIsoftype<short>},
        {scriptTypeInt, makeIsoftype<int>},          {scriptTypeLong, makeIsoftype<long32>},
        {scriptTypeUshort, makeIsoftype<ushort>},    {scriptTypeUint, makeIsoftype<uint>},
        {scriptTypeUlong, makeIsoftype<ulong32>},    {scriptTypeFloat, makeIsoftype<float>},
        {scriptTypeDouble, makeIsoftype<double>},    {scriptTypeDate, makeIsoftype<date>},
        {scriptTypeTime, makeIsoftype<time>},        {scriptTypeTimestamp, makeIsoftype<timestamp>},
        {scriptTypeArray, makeIsoftype<valueArray>},
    };
    if (call.params.empty())
        refuse(L"isoftype::createFrom: number of parameters < 1");
    if (call.types.empty())
        refuse(L"isoftype: missing datatype for \"isoftype\"");
    const ePrimitiveScriptType type = parseScriptType(call.types[0]);
    for (const auto& member : members)
        if (member.type == type)
            return member.make(ownedProvider(valueProvider::createFrom(call.params[0], call.flags)));
    return nullptr;
}

const builtin rows[] = {
    {L"varexists", variableExists::create<scopeVariable>, L"(name)"},
    {L"globalvarexists", variableExists::create<scopeGlobal>, L"(name)"},
    {L"createvar", createVariable::create<scopeVariable>, L"(name, [value])"},
    {L"isnull", isnull::create, L"(value)"},
    {L"isoftype", createIsoftype, L"<type>(value)"},
    {L"createglobalvar", createVariable::create<scopeGlobal>, L"(name, [value])"},
    {L"setvar", setVariable::create<scopeVariable>, L"(name, [value])"},
    {L"setparameter", setVariable::create<scopeParameter>, L"(name, [value])"},
    {L"setglobalvar", setVariable::create<scopeGlobal>, L"(name, [value])"},
    {L"getvar", getVariable::create<scopeVariable>, L"(name)"},
    {L"getvarptr", getVariableAddress::create<scopeVariable>, L"<type>(name)"},
    {L"&getvar", getVariableAddress::create<scopeVariable>, L"<type>(name)"},
    {L"getparameter", getVariable::create<scopeParameter>, L"(name)"},
    {L"getparameterptr", getVariableAddress::create<scopeParameter>, L"<type>(name)"},
    {L"&getparameter", getVariableAddress::create<scopeParameter>, L"<type>(name)"},
    {L"getglobalvar", getVariable::create<scopeGlobal>, L"(name)"},
    {L"getglobalvarptr", getVariableAddress::create<scopeGlobal>, L"<type>(name)"},
};

} // namespace

constinit const builtinModule variableModule{L"variable", rows};

} // namespace qx::script
