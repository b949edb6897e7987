// Variables: the statements that create, read, write and test variables, parameters and globals.
//
// A name is the literal text of the first parameter, without its blanks and lower-cased, fixed when the text
// is parsed. Where a statement can see which name is a lookup of the context; here is only what it does with
// the storage.
#include "contexts/qxScriptEpoch.h"
#include "modules/qxScriptModules.h"
#include "qxScriptTypes.h"
#include "statements/qxScriptBase.h"

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

// The name that the first parameter gives. `failure` names the statement in the report of an empty one.
scString requiredName(const callText& call, const wchar_t* tooFew, const wchar_t* failure)
{
    if (call.params.empty())
        refuse(tooFew);
    const scString name = call.params[0].name();
    if (name.string().empty())
        refuse(failure, call.params[0].view());
    return name;
}

sharedPtr<genericValue> storageOf(codecontext& context, eVarScope where, const scString& name)
{
    switch (where) {
    case scopeParameter:
        return context.parameterAddress(name);
    case scopeGlobal:
        return context.globalContextVariableAddress(name);
    default:
        return context.variableAddress(name);
    }
}

// The entry of a name that the statements of this scope see, in a chain that is plain; null for an unknown
// name and for other chains. A variable that others can reach may have been written by them, so the epoch
// moves.
inline genericSet::entry* entryOf(codecontext& context, eVarScope where, const scString& name)
{
    scriptcontext* const root = scope::plainRoot(context);
    if (!root) [[unlikely]]
        return nullptr;
    genericSet::entry* const found = where == scopeVariable    ? scope::variable(context, *root, name)
                                     : where == scopeParameter ? scope::parameter(*root, name)
                                                               : scope::global(*root, name);
    if (found && found->isShared()) [[unlikely]]
        epoch::move();
    return found;
}

// The same value where it can be had without a call; null where entryOf has to look. Such a variable nobody
// else can reach.
template <eVarScope Scope>
genericValue* ownVariable(codecontext& context, const scString& name) noexcept
{
    return Scope == scopeVariable ? scope::ownVariable(context, name) : nullptr;
}

class variableExists final : public scriptbasestatement
{
public:
    variableExists(eVarScope where, const scString& name) : mScope(where), mName(name)
    {
        offerShortCuts(this, 0, writing::replaces);
    }

    statement* clone() const override { return new variableExists(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        replaceResult(result, mScope == scopeGlobal ? context.hasGlobalContextVariable(mName)
                                                    : context.hasVariable(mName));
    }
    std::uint64_t smallValue(codecontext& context) const
    {
        scriptcontext* const root = scope::plainRoot(context);
        if (!root)
            return cell::refused;
        return cell::make((mScope == scopeGlobal ? scope::global(*root, mName)
                                                 : scope::variable(context, *root, mName)) != nullptr);
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

// What the statements that put a value into a variable share. Without a second parameter there is none.
class assignment : public scriptbasestatement
{
protected:
    assignment(eVarScope where, const callText& call, const wchar_t* tooFew, const wchar_t* unusable)
        : mScope(where), mName(requiredName(call, tooFew, unusable)), mpValue(providerOf(call, 1))
    {}

    eVarScope mScope;
    scString mName;
    ownedProvider mpValue;
};

class createVariable final : public assignment
{
public:
    createVariable(eVarScope where, const callText& call)
        : assignment(where, call, L"createVariable::createFrom: number of parameters < 1",
                     L"createVariable::createFrom: error setting variablename \"%s\"")
    {
        stayInside(this);
    }

    statement* clone() const override { return new createVariable(*this); }
    // A name that is visible already stays as it is, without a failure. A global is overwritten.
    void execute(codecontext& context, genericValue& result) const override
    {
        if (mpValue && !mpValue.write(context, result))
            execError(this, L"error retrieving value");
        store(context, result);
    }
    void run(codecontext& context) const
    {
        genericValue value;
        if (mpValue && !mpValue.evaluate(context, value))
            execError(this, L"error retrieving value");
        scriptcontext* const root = scope::plainRoot(context);
        if (!root || mScope == scopeGlobal)
            store(context, value);
        else if (!scope::variable(context, *root, mName))
            scope::create(context, mName, std::move(value));
    }

    template <eVarScope Scope>
    static statement* create(const callText& call)
    {
        return new createVariable(Scope, call);
    }

private:
    void store(codecontext& context, const genericValue& value) const
    {
        if (mScope == scopeGlobal)
            context.setGlobalContextVariable(mName, value);
        else
            context.createVariable(mName, value);
    }
};

template <eVarScope Scope>
class setVariable final : public assignment
{
public:
    explicit setVariable(const callText& call)
        : assignment(Scope, call, L"setVariable::createFrom: number of parameters < 1",
                     L"setVariable::createFrom: error setting variablename \"%s\"")
    {
        stayInside(this);
    }

    statement* clone() const override { return new setVariable(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        genericSet::entry* const variable = entryOf(context, Scope, mName);
        if (variable) {
            const genericSet::hold held(*variable);
            write(context, held.value());
            if (held.isShared())
                epoch::move(); // others may have written it since
            result = held.value();
        } else {
            const sharedPtr<genericValue> storage = requireStorage(context);
            write(context, *storage);
            result = *storage;
        }
    }
    void run(codecontext& context) const
    {
        genericValue* const own = ownVariable<Scope>(context, mName);
        const shortOperand& value = mpValue.shortCut();
        const cell::word w = own ? value.smallValue(context) : cell::refused;
        if (w != cell::refused) {
            const cell::word written = writtenOver(cell::access::load(*own), w, value.keepsType());
            if (written != cell::refused)
                return cell::access::store(*own, written);
        }
        runOtherwise(context);
    }

    static statement* create(const callText& call) { return new setVariable(call); }

private:
    sharedPtr<genericValue> requireStorage(codecontext& context) const
    {
        sharedPtr<genericValue> storage = storageOf(context, Scope, mName);
        if (!storage)
            execError(this, L"Error retrieving variable %s", mName.string());
        return storage;
    }

    // Not inline, so that what occurs most saves fewer registers.
    [[gnu::noinline]] void runOtherwise(codecontext& context) const
    {
        genericSet::entry* const variable = entryOf(context, Scope, mName);
        if (!variable)
            write(context, *requireStorage(context));
        else if (!writeShort(context, *variable))
            write(context, genericSet::hold(*variable).value());
    }

    // The storage has been found, and is held, before the value is evaluated.
    void write(codecontext& context, genericValue& storage) const
    {
        if (mpValue && !mpValue.write(context, storage))
            execError(this, L"Error retrieving value for variable \"%s\"", mName.string());
    }

    // A small value comes about without an effect, so nothing can tell when it was found out.
    bool writeShort(codecontext& context, genericSet::entry& variable) const
    {
        const shortOperand& value = mpValue.shortCut();
        const cell::word w = value.smallValue(context);
        if (w != cell::refused)
            return writeSmall(variable, w, value.keepsType());
        return value.givesText() && mayTakeText(variable, value.keepsType()) && writeText(context, variable);
    }
    // Not inline: it has room for a text.
    [[gnu::noinline]] bool writeText(codecontext& context, genericSet::entry& variable) const
    {
        textScratch text;
        return mpValue.shortCut().textValue(context, text) && declinesWithoutMemory([&] {
                   cell::access::fill(variable.value(), text.takeValue());
                   return true;
               });
    }
};

template <eVarScope Scope>
class getVariable final : public scriptbasestatement
{
public:
    explicit getVariable(const scString& name) : mName(name) { offerShortCuts(this, 0, writing::replaces); }

    statement* clone() const override { return new getVariable(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        if (genericSet::entry* const variable = entryOf(context, Scope, mName))
            result = variable->value();
        else
            copyFrom(context, result);
    }
    std::uint64_t smallValue(codecontext& context) const
    {
        const genericValue* const own = ownVariable<Scope>(context, mName);
        return own ? smallIn(*own) : smallOtherwise(context);
    }
    bool textValue(codecontext& context, textScratch& text) const
    {
        genericSet::entry* const variable = entryOf(context, Scope, mName);
        return variable && (variable->isShared() ? text.show(smallIn(variable->value()))
                                                 : text.showInPlace(variable->value()));
    }
    const genericValue* valueInPlace(codecontext& context) const
    {
        const genericValue* const own = ownVariable<Scope>(context, mName);
        return own ? own : inPlaceOtherwise(context);
    }

    static statement* create(const callText& call)
    {
        return new getVariable(requiredName(call, L"getVariable::createFrom: number of parameters < 1",
                                            L"getVariable::parse: error setting variablename %s"));
    }

private:
    [[gnu::noinline]] cell::word smallOtherwise(codecontext& context) const
    {
        genericSet::entry* const variable = entryOf(context, Scope, mName);
        return variable ? smallIn(variable->value()) : cell::refused;
    }
    [[gnu::noinline]] const genericValue* inPlaceOtherwise(codecontext& context) const
    {
        genericSet::entry* const variable = entryOf(context, Scope, mName);
        return variable && !variable->isShared() ? &variable->value() : nullptr;
    }
    void copyFrom(codecontext& context, genericValue& result) const
    {
        if constexpr (Scope == scopeParameter)
            result = context.parameter(mName);
        else if constexpr (Scope == scopeGlobal)
            result = context.globalContextVariable(mName);
        else
            result = *requireVariable(context, mName);
    }

    scString mName;
};

// Gives the variable itself: a write through the value is a write to the variable.
class getVariableAddress final : public scriptbasestatement
{
public:
    getVariableAddress(eVarScope where, const scString& name) : mName(name), mScope(where) {}

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
    explicit isnull(ownedProvider value) : mpValue(std::move(value))
    {
        offerShortCuts(this, depthOf(mpValue), writing::replaces);
    }

    statement* clone() const override { return new isnull(*this); }
    std::uint64_t smallValue(codecontext& context) const
    {
        const cell::word w = mpValue.shortCut().smallValue(context);
        return w == cell::refused ? w : cell::make(w == cell::null);
    }
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
        return new isnull(providerOf(call, 0));
    }

private:
    ownedProvider mpValue;
};

// Tells whether a value reads as a T, by itself or by conversion.
template <class T>
class isoftype final : public scriptbasestatement
{
public:
    explicit isoftype(ownedProvider value) : mpValue(std::move(value))
    {
        if constexpr (isShort)
            offerShortCuts(this, depthOf(mpValue), writing::replaces);
    }

    statement* clone() const override { return new isoftype(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        T converted{};
        replaceResult(result, mpValue.read(context, converted));
    }
    std::uint64_t smallValue(codecontext& context) const
    {
        if constexpr (isShort) {
            T converted{};
            const cell::word w = mpValue.shortCut().smallValue(context);
            if (w != cell::refused)
                return cell::make(cell::read(w, converted));
        }
        return cell::refused;
    }

private:
    // Small values become such a type by the library's own conversions alone.
    static constexpr bool isShort = cell::small<T> || std::is_same_v<T, timestamp>;

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
            return member.make(providerOf(call, 0));
    return nullptr;
}

// --- Table ---

constexpr const wchar_t* existsFailures = L"variableExists::createFrom: number of parameters < 1\n"
                                          L"variableExists::createFrom: error setting variablename \"%s\"";
constexpr const wchar_t* createFailures = L"createVariable::createFrom: number of parameters < 1\n"
                                          L"createVariable::createFrom: error setting variablename \"%s\"\n"
                                          L"error retrieving value";
constexpr const wchar_t* setFailures = L"setVariable::createFrom: number of parameters < 1\n"
                                       L"setVariable::createFrom: error setting variablename \"%s\"\n"
                                       L"Error retrieving variable %s\n"
                                       L"Error retrieving value for variable \"%s\"";
constexpr const wchar_t* getFailures = L"getVariable::createFrom: number of parameters < 1\n"
                                       L"getVariable::parse: error setting variablename %s";
constexpr const wchar_t* addressFailures = L"getVariableAddress::createFrom: number of types != 1\n"
                                           L"getVariableAddress::createFrom: number of parameters < 1\n"
                                           L"getVariablePointer::parse: error setting variablename %s";
constexpr const wchar_t* anyType = L"any";

const builtin rows[] = {
    {.name = L"varexists",
     .create = variableExists::create<scopeVariable>,
     .parameters = L"(name)",
     .summary = L"Tells whether a variable or a parameter of this name is visible.",
     .failures = {existsFailures}},
    {.name = L"globalvarexists",
     .create = variableExists::create<scopeGlobal>,
     .parameters = L"(name)",
     .summary = L"Tells whether there is a global variable of this name.",
     .failures = {existsFailures}},
    {.name = L"createvar",
     .create = createVariable::create<scopeVariable>,
     .parameters = L"(name, [value])",
     .result = resultRule::asValue,
     .summary = L"Makes a variable of the block, with the value or null, unless one of this name is "
                L"visible already; gives the value.",
     .failures = {createFailures}},
    {.name = L"isnull",
     .create = isnull::create,
     .parameters = L"(value)",
     .summary = L"Tells whether the value is null.",
     .failures = {L"isnull::createFrom: number of parameters < 1"}},
    {.name = L"isoftype",
     .create = createIsoftype,
     .parameters = L"<type>(value)",
     .types = L"bool, short, int, long, ushort, uint, ulong, float, double, date, time, timestamp, array",
     .summary = L"Tells whether the value reads as this type, by itself or by conversion.",
     .failures = {L"isoftype::createFrom: number of parameters < 1\n"
                  L"isoftype: missing datatype for \"isoftype\""}},
    {.name = L"createglobalvar",
     .create = createVariable::create<scopeGlobal>,
     .parameters = L"(name, [value])",
     .result = resultRule::asValue,
     .summary = L"Makes or overwrites a global variable; gives the value.",
     .failures = {createFailures}},
    {.name = L"setvar",
     .create = setVariable<scopeVariable>::create,
     .parameters = L"(name, [value])",
     .summary = L"Writes a visible variable or parameter; gives its value afterwards.",
     .failures = {setFailures}},
    {.name = L"setparameter",
     .create = setVariable<scopeParameter>::create,
     .parameters = L"(name, [value])",
     .summary = L"Writes a parameter of the function; gives its value afterwards.",
     .failures = {setFailures}},
    {.name = L"setglobalvar",
     .create = setVariable<scopeGlobal>::create,
     .parameters = L"(name, [value])",
     .summary = L"Writes a global variable; gives its value afterwards.",
     .failures = {setFailures}},
    {.name = L"getvar",
     .create = getVariable<scopeVariable>::create,
     .parameters = L"(name)",
     .summary = L"Gives the value of the innermost visible variable or parameter of this name.",
     .failures = {getFailures, L"Variable \"%s\" not found"}},
    {.name = L"getvarptr",
     .create = getVariableAddress::create<scopeVariable>,
     .parameters = L"<type>(name)",
     .types = anyType,
     .result = resultRule::keepsType,
     .summary = L"Gives a reference to a visible variable or parameter; the type is not looked at.",
     .failures = {addressFailures}},
    {.name = L"&getvar",
     .create = getVariableAddress::create<scopeVariable>,
     .parameters = L"<type>(name)",
     .types = anyType,
     .result = resultRule::keepsType,
     .summary = L"Gives a reference to a visible variable or parameter; the type "
                L"is not looked at.",
     .failures = {addressFailures}},
    {.name = L"getparameter",
     .create = getVariable<scopeParameter>::create,
     .parameters = L"(name)",
     .summary = L"Gives the value of a parameter of the function.",
     .failures = {getFailures, L"Parameter \"%s\" not found"}},
    {.name = L"getparameterptr",
     .create = getVariableAddress::create<scopeParameter>,
     .parameters = L"<type>(name)",
     .types = anyType,
     .result = resultRule::keepsType,
     .summary = L"Gives a reference to a parameter of the function; the type is not looked at.",
     .failures = {addressFailures}},
    {.name = L"&getparameter",
     .create = getVariableAddress::create<scopeParameter>,
     .parameters = L"<type>(name)",
     .types = anyType,
     .result = resultRule::keepsType,
     .summary = L"Gives a reference to a parameter of the function; the "
                L"type is not looked at.",
     .failures = {addressFailures}},
    {.name = L"getglobalvar",
     .create = getVariable<scopeGlobal>::create,
     .parameters = L"(name)",
     .summary = L"Gives the value of a global variable.",
     .failures = {getFailures, L"Global variable \"%s\" not found"}},
    {.name = L"getglobalvarptr",
     .create = getVariableAddress::create<scopeGlobal>,
     .parameters = L"<type>(name)",
     .types = anyType,
     .result = resultRule::keepsType,
     .summary = L"Gives a reference to a global variable; the type is not looked at.",
     .failures = {addressFailures}},
};

} // namespace

constinit const builtinModule variableModule{L"variable", rows};

} // namespace qx::script
