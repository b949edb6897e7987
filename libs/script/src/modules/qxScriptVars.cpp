// Variables: the statements that create, read, write and test variables, parameters and globals.
//
// A name is the literal text of the first parameter, without its blanks and lower-cased, fixed when the text
// is parsed. The context looks up which variable a name means; here is only what a statement does with its
// storage.
#include "compiled/qxScriptValues.h"
#include "contexts/qxScriptEpoch.h"
#include "modules/qxScriptModules.h"
#include "modules/qxScriptRows.h"
#include "modules/refusals.h"
#include "qxScriptTypes.h"
#include "statements/qxScriptVariable.h"

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

// The value of a variable that nobody else can reach, found without a call: the fast path (W1). Null where
// entryOf has to look.
template <eVarScope Scope>
genericValue* ownVariable(codecontext& context, const scString& name) noexcept
{
    return Scope == scopeVariable ? scope::ownVariable(context, name) : nullptr;
}

// The same, in a frame too.
template <eVarScope Scope>
genericValue* ownVariable(codecontext& context, const namedVariable& variable) noexcept
{
    if constexpr (Scope == scopeVariable)
        return variable.own(context);
    genericValue* const cells = scope::cells(context);
    return cells ? variable.inFrame(cells) : nullptr;
}

// Writes a text that comes by a short cut into a variable. Not inline: it has room for a text (W4).
[[gnu::noinline]] bool writeText(codecontext& context, genericSet::entry& variable,
                                 const operandShortCut& value)
{
    textScratch text;
    return value.textValue(context, text) && declinesWithoutMemory([&] {
               cell::access::fill(variable.value(), text.takeValue());
               return true;
           });
}

// Writes a value that comes by a short cut into a variable. It comes about without an effect, so nothing can
// tell when it was found out. False, with nothing changed, where it has to be evaluated. Inline, since most
// assignments try it in vain (W2).
[[gnu::always_inline]] inline bool writeShort(codecontext& context, genericSet::entry& variable,
                                              const operandShortCut& value)
{
    const cell::word w = value.smallValue(context);
    if (w != cell::refused)
        return writeSmall(variable, w, value.keepsType());
    return value.givesText() && mayTakeText(variable, value.keepsType()) &&
           writeText(context, variable, value);
}

class variableExists final : public scriptbasestatement
{
public:
    static constexpr refusals texts{1, L"variableExists::createFrom: number of parameters < 1",
                                    L"variableExists::createFrom: error setting variablename \"%s\""};
    static constexpr const wchar_t* failures[] = {texts.tooFew, texts.unusable};

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
    static bool resolve(compiler&) { return false; }

    template <eVarScope Scope>
    static constexpr builtin row(const wchar_t* name, const wchar_t* summary)
    {
        return {.name = name,
                .create = create<Scope>,
                .parameters = L"(name)",
                .summary = summary,
                .failures = failures};
    }

private:
    template <eVarScope Scope>
    static statement* create(const callText& call)
    {
        return new variableExists(Scope, requireVariableName(call, texts));
    }

    eVarScope mScope;
    scString mName;
};

// --- In frames ---

// The cell of a name that the statements of this scope see.
template <eVarScope Scope>
unsigned cellFor(const compiler& c, const scString& name)
{
    return Scope == scopeVariable    ? c.cellOf(name)
           : Scope == scopeParameter ? c.parameterCell(name)
                                     : compiler::noCell;
}

// Makes a variable. A name that is visible keeps its variable, once the value is evaluated: the tree knows.
class creation final : public operation
{
public:
    creation(const place* where, unsigned cell, const scString& name, const value* initial,
             const operation* next) noexcept
        : operation(where), mCell(cell), mName(name), mpInitial(initial), mpNext(next)
    {}
    const operation* run(frame& f) const override
    {
        genericValue initial;
        if (f.isBound(mCell) || scope::global(f.root(), mName) ||
            (mpInitial && !take(*mpInitial, f, initial)))
            return leave(f);
        f.replace(mCell, std::move(initial));
        return mpNext;
    }

private:
    unsigned mCell;
    const scString& mName;
    const value* mpInitial; // null for none
    const operation* mpNext;
};

// Writes a variable that has been made.
class assigning final : public operation
{
public:
    assigning(const place* where, unsigned cell, const value& assigned, const operation* next) noexcept
        : operation(where), mCell(cell), mKeepsType(assigned.keepsType()), mAssigned(assigned), mpNext(next)
    {}
    const operation* run(frame& f) const override // W1
    {
        const cell::word w = mAssigned.small(f);
        if (!isSameKind(f.word(mCell), w) || w == cell::refused) [[unlikely]]
            return otherwise(f, w);
        cell::access::storeSmall(f.at(mCell), w);
        return mpNext;
    }

private:
    // Not inline, so that writing a value like the one before saves fewer registers.
    [[gnu::noinline]] const operation* otherwise(frame& f, cell::word w) const
    {
        if (w != cell::refused && f.isBound(mCell)) {
            const cell::word written = writtenOver(f.word(mCell), w, mKeepsType);
            if (written == cell::refused)
                return leave(f);
            f.replace(mCell, written);
            return mpNext;
        }
        genericValue taken;
        if (!f.isBound(mCell) || !take(mAssigned, f, taken) || (mKeepsType && !takesText(f.at(mCell), taken)))
            return leave(f);
        f.replace(mCell, std::move(taken));
        return mpNext;
    }
    // True where a text is written over a text, or over null.
    static bool takesText(const genericValue& before, const genericValue& taken)
    {
        const auto isText = [](const genericValue& asked) {
            return asked.isNull() || cell::kindIn(cell::access::load(asked)) == cell::decimalKind ||
                   heldInPlace<string>(asked);
        };
        return isText(before) && isText(taken);
    }

    unsigned mCell;
    bool mKeepsType;
    const value& mAssigned;
    const operation* mpNext;
};

// What the statements that put a value into a variable share. Without a second parameter there is none.
class assignment : public scriptbasestatement
{
protected:
    assignment(eVarScope where, const callText& call, const refusals& texts)
        : mScope(where), mName(requireVariableName(call, texts)), mpValue(operandAt(call, 1))
    {}

    eVarScope mScope;
    scString mName;
    operand mpValue;
};

class createVariable final : public assignment
{
public:
    static constexpr refusals texts{1, L"createVariable::createFrom: number of parameters < 1",
                                    L"createVariable::createFrom: error setting variablename \"%s\""};
    static constexpr const wchar_t* noValue = L"error retrieving value";
    static constexpr const wchar_t* failures[] = {texts.tooFew, texts.unusable, noValue};

    createVariable(eVarScope where, const callText& call) : assignment(where, call, texts)
    {
        stayInside(this);
    }

    statement* clone() const override { return new createVariable(*this); }
    // A name that is visible already stays as it is, without a failure. A global is overwritten.
    void execute(codecontext& context, genericValue& result) const override
    {
        if (mpValue && !mpValue.write(context, result))
            execError(this, noValue);
        store(context, result);
    }
    void run(codecontext& context) const
    {
        genericValue value;
        if (mpValue && !mpValue.evaluate(context, value))
            execError(this, noValue);
        scriptcontext* const root = scope::plainRoot(context);
        if (!root || mScope == scopeGlobal)
            store(context, value);
        else if (!scope::variable(context, *root, mName))
            scope::create(context, mName, std::move(value));
    }
    void declare(compiler& names) const
    {
        if (mScope == scopeVariable)
            names.declare(mName);
    }
    const operation* compile(compiler& c, const operation* next) const
    {
        const unsigned cell = c.ownCell(mName);
        const value* const initial = mpValue ? c.valueOf(mpValue) : nullptr;
        if (mScope != scopeVariable || cell == compiler::noCell || (mpValue && !initial))
            return c.handOver();
        return c.makeHere<creation>(cell, mName, initial, next);
    }

    template <eVarScope Scope>
    static constexpr builtin row(const wchar_t* name, const wchar_t* summary)
    {
        return {.name = name,
                .create = create<Scope>,
                .parameters = L"(name, [value])",
                .result = resultRule::asValue,
                .summary = summary,
                .failures = failures};
    }

private:
    template <eVarScope Scope>
    static statement* create(const callText& call)
    {
        return new createVariable(Scope, call);
    }

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
    static constexpr refusals texts{1, L"setVariable::createFrom: number of parameters < 1",
                                    L"setVariable::createFrom: error setting variablename \"%s\""};
    static constexpr const wchar_t* noVariable = L"Error retrieving variable %s";
    static constexpr const wchar_t* noValue = L"Error retrieving value for variable \"%s\"";
    static constexpr const wchar_t* failures[] = {texts.tooFew, texts.unusable, noVariable, noValue};

    explicit setVariable(const callText& call) : assignment(Scope, call, texts) { stayInside(this); }

    statement* clone() const override { return new setVariable(*this); }
    void execute(codecontext& context, genericValue& result) const override { assign(context, &result); }
    void run(codecontext& context) const
    {
        genericValue* const own = ownVariable<Scope>(context, mName);
        if (!own || !assignSmall(*own, context))
            assign(context, nullptr);
    }
    const operation* compile(compiler& c, const operation* next) const
    {
        const unsigned cell = cellFor<Scope>(c, mName);
        const value* const assigned = mpValue ? c.valueInto(cell, mpValue) : nullptr;
        return cell == compiler::noCell || !assigned ? c.handOver()
                                                     : c.makeHere<assigning>(cell, *assigned, next);
    }

    static constexpr builtin row(const wchar_t* name, const wchar_t* summary)
    {
        return {.name = name,
                .create = create,
                .parameters = L"(name, [value])",
                .summary = summary,
                .failures = failures};
    }

private:
    static statement* create(const callText& call) { return new setVariable(call); }

    // The fast path (W1): a small value into a variable that nobody else can reach.
    [[gnu::always_inline]] bool assignSmall(genericValue& own, codecontext& context) const
    {
        const operandShortCut& value = mpValue.shortCut();
        const cell::word w = value.smallValue(context);
        const cell::word written =
            w == cell::refused ? cell::refused : writtenOver(cell::access::load(own), w, value.keepsType());
        if (written == cell::refused)
            return false;
        cell::access::store(own, written);
        return true;
    }

    // Finds the storage, holds it, evaluates the value into it, and copies that where the caller wants it.
    // Not inline, so that the fast path saves fewer registers (W1).
    [[gnu::noinline]] void assign(codecontext& context, genericValue* result) const
    {
        if (genericSet::entry* const variable = entryOf(context, Scope, mName)) {
            if (!result && writeShort(context, *variable, mpValue.shortCut()))
                return;
            const genericSet::hold held(*variable);
            write(context, held.value());
            if (result && held.isShared())
                epoch::move(); // others may have written it since
            if (result)
                *result = held.value();
        } else {
            const sharedPtr<genericValue> storage = storageOf(context, Scope, mName);
            if (!storage)
                execError(this, noVariable, mName.string());
            write(context, *storage);
            if (result)
                *result = *storage;
        }
    }
    void write(codecontext& context, genericValue& storage) const
    {
        if (mpValue && !mpValue.write(context, storage))
            execError(this, noValue, mName.string());
    }
};

template <eVarScope Scope>
class getVariable final : public scriptbasestatement
{
public:
    static constexpr refusals texts{1, L"getVariable::createFrom: number of parameters < 1",
                                    L"getVariable::parse: error setting variablename %s"};
    // The last one is what the context throws.
    static constexpr const wchar_t* failures[] = {texts.tooFew, texts.unusable,
                                                  Scope == scopeVariable ? L"Variable \"%s\" not found"
                                                  : Scope == scopeParameter
                                                      ? L"Parameter \"%s\" not found"
                                                      : L"Global variable \"%s\" not found"};

    explicit getVariable(const scString& name) : mVariable(name)
    {
        offerShortCuts(this, 0, writing::replaces);
    }

    statement* clone() const override { return new getVariable(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        if (genericSet::entry* const variable = entryOf(context, Scope, mVariable.name()))
            result = variable->value();
        else
            copyFrom(context, result);
    }
    std::uint64_t smallValue(codecontext& context) const
    {
        const genericValue* const own = ownVariable<Scope>(context, mVariable);
        return own ? smallIn(*own) : smallOtherwise(context);
    }
    bool textValue(codecontext& context, textScratch& text) const
    {
        if (genericValue* const cells = scope::cells(context)) {
            const genericValue* const own = mVariable.inFrame(cells);
            return own && text.showInPlace(*own);
        }
        genericSet::entry* const variable = entryOf(context, Scope, mVariable.name());
        return variable && (variable->isShared() ? text.show(smallIn(variable->value()))
                                                 : text.showInPlace(variable->value()));
    }
    const genericValue* valueInPlace(codecontext& context) const
    {
        const genericValue* const own = ownVariable<Scope>(context, mVariable);
        return own ? own : inPlaceOtherwise(context);
    }

    bool resolve(compiler& names) const
    {
        return Scope == scopeVariable    ? mVariable.resolve(names)
               : Scope == scopeParameter ? mVariable.resolveParameter(names)
                                         : false;
    }
    const value* compileValue(const operandShortCut& asked, compiler& c) const
    {
        return resolve(c) ? c.make<cellValue>(asked, cellFor<Scope>(c, mVariable.name())) : nullptr;
    }

    static constexpr builtin row(const wchar_t* name, const wchar_t* summary)
    {
        return {.name = name,
                .create = create,
                .parameters = L"(name)",
                .summary = summary,
                .failures = failures};
    }

private:
    static statement* create(const callText& call)
    {
        return new getVariable(requireVariableName(call, texts));
    }

    // Not inline, so that the fast path of both saves fewer registers (W1, W7).
    [[gnu::noinline]] cell::word smallOtherwise(codecontext& context) const
    {
        genericSet::entry* const variable = entryOf(context, Scope, mVariable.name());
        return variable ? smallIn(variable->value()) : cell::refused;
    }
    [[gnu::noinline]] const genericValue* inPlaceOtherwise(codecontext& context) const
    {
        genericSet::entry* const variable = entryOf(context, Scope, mVariable.name());
        return variable && !variable->isShared() ? &variable->value() : nullptr;
    }
    void copyFrom(codecontext& context, genericValue& result) const
    {
        if constexpr (Scope == scopeParameter)
            result = context.parameter(mVariable.name());
        else if constexpr (Scope == scopeGlobal)
            result = context.globalContextVariable(mVariable.name());
        else
            result = *requireVariable(context, mVariable.name());
    }

    namedVariable mVariable;
};

// Gives the variable itself: a write through the value is a write to the variable.
class getVariableAddress final : public scriptbasestatement
{
public:
    static constexpr const wchar_t* noType = L"getVariableAddress::createFrom: number of types != 1";
    static constexpr refusals texts{1, L"getVariableAddress::createFrom: number of parameters < 1",
                                    L"getVariablePointer::parse: error setting variablename %s"};
    static constexpr const wchar_t* failures[] = {noType, texts.tooFew, texts.unusable};

    getVariableAddress(eVarScope where, const scString& name) : mName(name), mScope(where) {}

    statement* clone() const override { return new getVariableAddress(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        writeToSlot(result, storageOf(context, mScope, mName));
    }

    template <eVarScope Scope>
    static constexpr builtin row(const wchar_t* name, const wchar_t* summary)
    {
        return {.name = name,
                .create = create<Scope>,
                .parameters = L"<type>(name)",
                .types = L"any",
                .result = resultRule::keepsType,
                .summary = summary,
                .failures = failures};
    }

private:
    template <eVarScope Scope>
    static statement* create(const callText& call)
    {
        if (call.types.size() != 1)
            refuse(noType);
        return new getVariableAddress(Scope, requireVariableName(call, texts));
    }

    scString mName;
    eVarScope mScope;
};

class isnull final : public scriptbasestatement
{
public:
    static constexpr const wchar_t* tooFew = L"isnull::createFrom: number of parameters < 1";
    static constexpr const wchar_t* failures[] = {tooFew};

    explicit isnull(operand value) : mpValue(std::move(value))
    {
        offerShortCuts(this, depthOf(mpValue), writing::replaces);
    }

    statement* clone() const override { return new isnull(*this); }
    bool resolve(compiler& names) const { return mpValue.resolve(names); }
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
            refuse(tooFew);
        return new isnull(operandAt(call, 0));
    }

private:
    operand mpValue;
};

// Tells whether a value reads as a T, by itself or by conversion.
template <class T>
class isoftype final : public scriptbasestatement
{
public:
    explicit isoftype(operand value) : mpValue(std::move(value))
    {
        if constexpr (isShort)
            offerShortCuts(this, depthOf(mpValue), writing::replaces);
    }

    statement* clone() const override { return new isoftype(*this); }
    bool resolve(compiler& names) const { return mpValue.resolve(names); }
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

    operand mpValue;
};

// Every value reads as a text.
using askedTypes = join<typeList<bool>, numberTypes, calendarTypes, typeList<valueArray>>;

constexpr const wchar_t* noOperand = L"isoftype::createFrom: number of parameters < 1";
constexpr const wchar_t* noType = L"isoftype: missing datatype for \"isoftype\"";
constexpr const wchar_t* typeFailures[] = {noOperand, noType};

statement* createIsoftype(const callText& call)
{
    if (call.params.empty())
        refuse(noOperand);
    if (call.types.empty())
        refuse(noType);
    return makeFor(parseScriptType(call.types[0]), askedTypes(),
                   [&call]<class T>() { return new isoftype<T>(operandAt(call, 0)); });
}

// --- Table ---

constexpr builtin variableAddress = getVariableAddress::row<scopeVariable>(
    L"getvarptr", L"Gives a reference to a visible variable or parameter; the type is not looked at.");
constexpr builtin parameterAddress = getVariableAddress::row<scopeParameter>(
    L"getparameterptr", L"Gives a reference to a parameter of the function; the type is not looked at.");

constexpr builtin rows[] = {
    variableExists::row<scopeVariable>(L"varexists",
                                       L"Tells whether a variable or a parameter of this name is visible."),
    variableExists::row<scopeGlobal>(L"globalvarexists",
                                     L"Tells whether there is a global variable of this name."),
    createVariable::row<scopeVariable>(
        L"createvar", L"Makes a variable of the block, with the value or null, unless one of this name "
                      L"is visible already; gives the value."),
    {.name = L"isnull",
     .create = isnull::create,
     .parameters = L"(value)",
     .summary = L"Tells whether the value is null.",
     .failures = isnull::failures},
    {.name = L"isoftype",
     .create = createIsoftype,
     .parameters = L"<type>(value)",
     .types = wordsOf<askedTypes>,
     .summary = L"Tells whether the value reads as this type, by itself or by conversion.",
     .failures = typeFailures},
    createVariable::row<scopeGlobal>(L"createglobalvar",
                                     L"Makes or overwrites a global variable; gives the value."),
    setVariable<scopeVariable>::row(L"setvar",
                                    L"Writes a visible variable or parameter; gives its value afterwards."),
    setVariable<scopeParameter>::row(L"setparameter",
                                     L"Writes a parameter of the function; gives its value afterwards."),
    setVariable<scopeGlobal>::row(L"setglobalvar", L"Writes a global variable; gives its value afterwards."),
    getVariable<scopeVariable>::row(
        variableStatement, L"Gives the value of the innermost visible variable or parameter of this name."),
    variableAddress,
    renamed(variableAddress, L"&getvar"),
    getVariable<scopeParameter>::row(L"getparameter", L"Gives the value of a parameter of the function."),
    parameterAddress,
    renamed(parameterAddress, L"&getparameter"),
    getVariable<scopeGlobal>::row(L"getglobalvar", L"Gives the value of a global variable."),
    getVariableAddress::row<scopeGlobal>(
        L"getglobalvarptr", L"Gives a reference to a global variable; the type is not looked at."),
};

} // namespace

constinit const builtinTable variableRows = rows;

} // namespace qx::script
