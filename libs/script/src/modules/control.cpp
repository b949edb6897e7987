// Branches and loops, the signals that leave them, and the null reference. The table of the control module
// stands here; calls and messages have sources of their own.
#include "contexts/qxScriptEpoch.h"
#include "contexts/qxScriptSignals.h"
#include "modules/controlStatements.h"
#include "modules/qxScriptModules.h"
#include "parser/qxScriptParsing.h"
#include "qxScriptInterfaces.h"
#include "qxScriptReference.h"
#include "statements/qxScriptBase.h"
#include "statements/qxScriptSteps.h"

#include "qxHeldTypes.h"

namespace qx::script
{

namespace
{

using intrface::forwardIterator;
using intrface::unknown;
using objectRef = intrface::interfaceptr<unknown>;
using sharedStatement = sharedPtr<statement>;

// The statement of a text; null where the text holds none.
sharedStatement statementFrom(const textPiece& text, int flags)
{
    return sharedStatement(parsing::statementFrom(text, flags));
}

// The body of a loop, which may be left and cut short. Null for an empty one.
sharedStatement bodyFrom(const callText& call, std::size_t place)
{
    return statementFrom(call.params[place], call.flags | continueAllowed | breakAllowed);
}

// --- Branches ---

class _if final : public scriptbasestatement
{
public:
    _if(ownedProvider condition, const sharedStatement& thenDo, const sharedStatement& elseDo)
        : mpCondition(std::move(condition)), mThen(thenDo), mElse(elseDo)
    {
        stayInside(this);
    }

    statement* clone() const override { return new _if(*this); }
    // What the branch gives is dropped. A signal raised in it is for whoever encloses this statement.
    void execute(codecontext& context, genericValue&) const override { run(context); }
    void run(codecontext& context) const
    {
        const sharedStatement& branch = holds(context) ? mThen : mElse;
        if (!branch)
            return;
        blockcontext block(context);
        inside::execInBlock(*branch, block);
    }

    static statement* create(const callText& call);

private:
    bool holds(codecontext& context) const
    {
        const cell::word w =
            cell::shortCutsAllowed() ? mpCondition.shortCut().smallValue(context) : cell::refused;
        if (cell::holds<bool>(w))
            return cell::get<bool>(w);
        genericValue condition;
        if (!mpCondition.evaluate(context, condition))
            execError(this, L"error retrieving condition-result");
        return isTrue(condition);
    }
    bool isTrue(const genericValue& condition) const
    {
        if (condition.isNull())
            return false;
        bool truth = false;
        if (condition.getValue(truth))
            return truth;
        string shown;
        if (condition.getValue(shown))
            execError(this, L"error converting \"%s\" to bool", shown);
        execError(this, L"error converting variable to bool");
    }

    ownedProvider mpCondition;
    sharedStatement mThen; // null: nothing to do
    sharedStatement mElse; // null: nothing to do
};

constexpr const wchar_t* ifFailure = L"_if::createFrom: error parsing \"%s\"";

// The branch at `place`; null where it is missing or empty.
sharedStatement branchFrom(const callText& call, std::size_t place)
{
    if (place >= call.params.size() || call.params[place].empty())
        return sharedStatement();
    const textPiece& text = call.params[place];
    sharedStatement branch = statementFrom(text, call.flags);
    if (!branch && text.view() != L"{}")
        refuse(ifFailure, text.view());
    return branch;
}

statement* _if::create(const callText& call)
{
    if (call.params.size() < 2)
        refuse(L"_if::createFrom: number of parameters < 2");
    ownedProvider condition = requireProvider(call, 0, ifFailure);
    const sharedStatement thenDo = branchFrom(call, 1);
    return new _if(std::move(condition), thenDo, branchFrom(call, 2));
}

// --- Loops ---

// Looks at what a run of the body has raised, ends the signals that are this loop's, and tells whether the
// loop goes on. A returned value becomes the loop's.
bool goesOn(codecontext& context, genericValue& result)
{
    switch (raisedIn(context)) {
    case raised::returned:
        copyReturned(context, result);
        return false;
    case raised::broken:
        context.clearScriptSignal(breakSignal());
        return false;
    case raised::continued:
        context.clearScriptSignal(continueSignal());
        break;
    default:
        break;
    }
    if (!context.scriptSignal(breakAllSignal())) // which may be raised besides
        return true;
    // It stays raised for the loops around this one; what concerns this loop alone ends.
    context.clearScriptSignal(breakSignal());
    context.clearScriptSignal(continueSignal());
    return false;
}

// Runs the body of `loop` once, in a block of its own that `prepare` may fill. True when the loop goes on.
template <class Prepare>
bool iterate(const statement* loop, const sharedStatement& body, codecontext& context, genericValue& result,
             const Prepare& prepare)
{
    try {
        blockcontext block(context);
        prepare(block);
        if (body)
            inside::execInBlock(*body, block);
        else
            checkRun();
        return !isAnythingRaised(block) || goesOn(context, result);
    } catch (const exception& caught) {
        statement::execError(loop, &caught, nullptr);
    } catch (...) {
        statement::execError(loop, nullptr);
    }
}

class _while final : public scriptbasestatement
{
public:
    _while(ownedProvider condition, const sharedStatement& body)
        : mpCondition(std::move(condition)), mBody(body)
    {
        stayInside(this);
    }

    statement* clone() const override { return new _while(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        while (holds(context) && iterate(this, mBody, context, result, [](codecontext&) {})) {
        }
    }

    static statement* create(const callText& call)
    {
        if (call.params.size() < 2)
            refuse(L"_while::createFrom: number of parameters < 2");
        ownedProvider condition = requireProvider(call, 0, L"_while::createFrom: error parsing \"%s\"");
        return new _while(std::move(condition), bodyFrom(call, 1));
    }

private:
    // REQUIRED: a null value is a failure here, and only false in `if`.
    bool holds(codecontext& context) const
    {
        bool isTrue = false;
        if (!mpCondition.read(context, isTrue))
            execError(this, L"error retrieving condition-result");
        return isTrue;
    }

    ownedProvider mpCondition;
    sharedStatement mBody; // null: empty
};

class for_each final : public scriptbasestatement
{
public:
    for_each(const scString& name, ownedProvider collection, const sharedStatement& body)
        : mName(name), mpCollection(std::move(collection)), mBody(body)
    {}

    statement* clone() const override { return new for_each(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        genericValue collection;
        if (!mpCollection.evaluate(context, collection))
            execError(this, L"error retrieving condition-result");
        objectRef object;
        valueArray elements;
        if (collection.getValue(object))
            walk(object, context, result);
        else if (collection.getValue(elements))
            visit(elements, context, result);
        else
            refuseCollection(collection);
    }

    static statement* create(const callText& call);

private:
    using step = void (forwardIterator::*)(unknown** out);

    [[noreturn]] void refuseCollection(const genericValue& collection) const
    {
        string shown;
        if (collection.getValue(shown))
            execError(this, L"error converting \"%s\" to an iterator - object", shown);
        execError(this, L"error converting variable to an iterator - object");
    }

    // The elements are a copy: what the body does to the array changes nothing of what is visited.
    void visit(const valueArray& elements, codecontext& context, genericValue& result) const
    {
        if (!mBody)
            return;
        for (const genericValue& element : elements) {
            if (!runWith(element, context, result))
                return;
        }
    }

    // An object that is no iterator has no elements.
    void walk(objectRef& object, codecontext& context, genericValue& result) const
    {
        intrface::interfaceptr<forwardIterator> iterator(object);
        if (!iterator.isValid())
            return;
        for (step move = &forwardIterator::first;; move = &forwardIterator::next) {
            objectRef element;
            (iterator.get()->*move)(element.receive());
            epoch::move(); // the object may have run anything
            if (iterator->isEnd() || !runWith(genericValue(element), context, result))
                return;
        }
    }

    // A name that is visible already keeps its value, and the body sees that one.
    bool runWith(const genericValue& element, codecontext& context, genericValue& result) const
    {
        return iterate(this, mBody, context, result,
                       [&](codecontext& block) { block.createVariable(mName, element); });
    }

    scString mName;
    ownedProvider mpCollection;
    sharedStatement mBody; // null: empty
};

statement* for_each::create(const callText& call)
{
    constexpr const wchar_t* failure = L"for_each::createFrom: error parsing \"%s\"";
    if (call.params.size() < 3)
        refuse(L"for_each::createFrom: number of parameters < 3");
    // REQUIRED: the name keeps its case and its blanks, unlike those of all other variables.
    const scString name = scString::createFrom(call.params[0].text());
    if (name.string().empty())
        refuse(failure, call.params[0].view());
    ownedProvider collection = requireProvider(call, 1, failure);
    return new for_each(name, std::move(collection), bodyFrom(call, 2));
}

// --- Signals ---

// Raises a signal: the blocks around it stop, and the innermost loop or `treatasfunction` ends it. Outside a
// loop the parser is told that there is no such statement.
template <statementFlags Allowed, const scString& (*Signal)()>
class raising final : public scriptbasestatement
{
public:
    raising() { stayInside(this); }

    statement* clone() const override { return new raising(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        if (!context.setScriptSignal(Signal(), genericValue()))
            execError(this, nullptr);
    }

    static statement* create(const callText& call) { return call.flags & Allowed ? new raising : nullptr; }
};

using _continue = raising<continueAllowed, continueSignal>;
using _break = raising<breakAllowed, breakSignal>;

// --- The null reference ---

class nullRef final : public scriptbasestatement
{
public:
    statement* clone() const override { return new nullRef(*this); }
    void execute(codecontext&, genericValue& result) const override { replaceResult(result, objectRef()); }

    static statement* create(const callText&) { return new nullRef; }
};

// --- Table ---

const builtin rows[] = {
    {.name = L"continue",
     .create = _continue::create,
     .parameters = L"()",
     .result = resultRule::none,
     .summary = L"Ends this run of the body of the innermost loop. Exists only inside a loop."},
    {.name = L"break",
     .create = _break::create,
     .parameters = L"()",
     .result = resultRule::none,
     .summary = L"Ends the innermost loop. Exists only inside a loop."},
    {.name = L"if",
     .create = _if::create,
     .parameters = L"(condition, then, [else])",
     .result = resultRule::none,
     .summary = L"Runs `then` where the condition is true, and `else` where it is false or null.",
     .failures = {L"_if::createFrom: number of parameters < 2\n"
                  L"_if::createFrom: error parsing \"%s\"\n"
                  L"error retrieving condition-result\n"
                  L"error converting \"%s\" to bool\n"
                  L"error converting variable to bool"}},
    {.name = L"for_each",
     .create = for_each::create,
     .parameters = L"(name, collection, body)",
     .result = resultRule::replacesIfAny,
     .summary = L"Runs the body for each element of an array, or of an object that can be walked "
                L"over, with the element as a variable; its value is what the body returns.",
     .failures = {L"for_each::createFrom: number of parameters < 3\n"
                  L"for_each::createFrom: error parsing \"%s\"\n"
                  L"error retrieving condition-result\n"
                  L"error converting \"%s\" to an iterator - object\n"
                  L"error converting variable to an iterator - object"}},
    {.name = L"while",
     .create = _while::create,
     .parameters = L"(condition, body)",
     .result = resultRule::replacesIfAny,
     .summary = L"Runs the body as long as the condition is true; its value is what the body "
                L"returns.",
     .failures = {L"_while::createFrom: number of parameters < 2\n"
                  L"_while::createFrom: error parsing \"%s\"\n"
                  L"error retrieving condition-result"}},
    {.name = L"nullref",
     .create = nullRef::create,
     .parameters = L"()",
     .summary = L"Gives a reference to no object."},
    {.name = L"callfunction",
     .create = createCallfunction,
     .parameters = L"(type$file$function, [argument], ...)",
     .result = resultRule::replacesIfAny,
     .summary = L"Runs a function of a script file with these arguments; its value is what the "
                L"function returns.",
     .failures = {L"callFunction::createFrom: number of parameters < 1\n"
                  L"callFunction::createFrom: error parsing \"%s\"\n"
                  L"callFunction::createFrom: error setting codeId\n"
                  L"Error retrieving script-parameter"}},
    {.name = L"treatasfunction",
     .create = createTreatasfunction,
     .parameters = L"(statement)",
     .summary = L"Runs a statement as if it were the body of a function: what it returns is the "
                L"value, and its signals end here.",
     .failures = {L"error retrieving returnvalue"}},
    {.name = L"return",
     .create = createReturn,
     .parameters = L"([value])",
     .summary = L"Ends the function, which gives the value or null.",
     .failures = {L"error retrieving returnvalue\n"
                  L"error setting returnvalue to context"}},
    {.name = L"throwerror",
     .create = createThrowerror,
     .parameters = L"(string)",
     .result = resultRule::none,
     .summary = L"Fails with this text.",
     .failures = {L"Error retrieving throwerror-Message"}},
    {.name = L"throwmessage",
     .create = createThrowmessage,
     .parameters = L"(string)",
     .result = resultRule::none,
     .summary = L"Fails with this text alone: no statement on the way out adds its own, loops and "
                L"treatasfunction excepted.",
     .failures = {L"Error retrieving throwerror-Message"}},
    {.name = L"assert",
     .create = createAssert,
     .parameters = L"(string)",
     .result = resultRule::none,
     .summary = L"Reports a text to the host, and goes on.",
     .failures = {L"Error retrieving assert-Message"}},
    {.name = L"executablepath",
     .create = createExecutablepath,
     .parameters = L"()",
     .summary = L"Gives the directory of the program."},
    {.name = L"messagebox",
     .create = createMessagebox,
     .parameters = L"(string, [buttons], [icon], [title])",
     .result = resultRule::replacesIfAny,
     .summary = L"Shows a text, or the message with this id, and waits; gives the button: `ok`, "
                L"`cancel`, `retry`, `yes` or `no`.",
     .failures = {L"Error retrieving messagebox-Message"}},
};

} // namespace

constinit const builtinModule controlModule{L"control", rows};

} // namespace qx::script
