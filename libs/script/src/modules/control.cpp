// Branches and loops, the signals that leave them, and the null reference.
#include "compiled/qxScriptCompiler.h"
#include "compiled/qxScriptResumption.h"
#include "contexts/qxScriptSignals.h"
#include "modules/askedObject.h"
#include "modules/qxScriptCollections.h"
#include "modules/qxScriptModules.h"
#include "modules/refusals.h"
#include "parser/qxScriptParsing.h"
#include "statements/qxScriptSteps.h"

#include "qxHeldTypes.h"

namespace qx::script
{

namespace
{

using intrface::forwardIterator;
using intrface::unknown;
using sharedStatement = sharedPtr<statement>;

// The statement of a text; null where the text holds none.
sharedStatement statementFrom(const textPiece& text, int flags)
{
    return sharedStatement(parsing::statementFrom(text, flags));
}

constexpr const wchar_t* noCondition = L"error retrieving condition-result";

// The body of a loop, which may be left and cut short. Null for an empty one.
sharedStatement bodyFrom(const callText& call, std::size_t place)
{
    return statementFrom(call.params[place], call.flags | continueAllowed | breakAllowed);
}

// --- Branches ---

// An `if`.
class branch final : public operation
{
public:
    branch(const place* where, const value& condition, const operation* thenDo,
           const operation* elseDo) noexcept
        : operation(where), mCondition(condition), mpThen(thenDo), mpElse(elseDo)
    {}
    const operation* run(frame& f) const override
    {
        const cell::word w = mCondition.small(f);
        bool holds = false;
        if (readShortly(w, holds)) [[likely]]
            return holds ? mpThen : mpElse;
        return w == cell::null ? mpElse : leave(f);
    }

private:
    const value& mCondition;
    const operation* mpThen;
    const operation* mpElse;
};

class _if final : public scriptbasestatement
{
public:
    static constexpr const wchar_t* tooFew = L"_if::createFrom: number of parameters < 2";
    static constexpr const wchar_t* unusable = L"_if::createFrom: error parsing \"%s\"";
    static constexpr const wchar_t* noTruth = L"error converting \"%s\" to bool";
    static constexpr const wchar_t* notShown = L"error converting variable to bool";
    static constexpr const wchar_t* failures[] = {tooFew, unusable, noCondition, noTruth, notShown};

    _if(operand condition, const sharedStatement& thenDo, const sharedStatement& elseDo)
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

    const operation* compile(compiler& c, const operation* next) const
    {
        const value* const condition = c.valueOf(mpCondition);
        if (!condition)
            return c.handOver();
        const operation* const thenDo = mThen ? c.pieceInBlock(*mThen, thenPiece, next) : next;
        const operation* const elseDo = mElse ? c.pieceInBlock(*mElse, elsePiece, next) : next;
        return c.makeHere<branch>(*condition, thenDo, elseDo);
    }
    void resume(codecontext& context, resumption& rest) const
    {
        const sharedStatement& branch = rest.piece() == thenPiece ? mThen : mElse;
        blockcontext block(context);
        rest.fill(block);
        rest.goInside(*branch, block);
    }
    bool repeats() const { return (mThen && inside::repeats(*mThen)) || (mElse && inside::repeats(*mElse)); }

    static statement* create(const callText& call);

private:
    static constexpr unsigned thenPiece = 0;
    static constexpr unsigned elsePiece = 1;

    bool holds(codecontext& context) const
    {
        const cell::word w = shortCutsAllowed() ? mpCondition.shortCut().smallValue(context) : cell::refused;
        if (cell::holds<bool>(w))
            return cell::get<bool>(w);
        genericValue condition;
        if (!mpCondition.evaluate(context, condition))
            execError(this, noCondition);
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
            execError(this, noTruth, shown);
        execError(this, notShown);
    }

    operand mpCondition;
    sharedStatement mThen; // null: nothing to do
    sharedStatement mElse; // null: nothing to do
};

// The branch at `place`; null where it is missing or empty.
sharedStatement branchFrom(const callText& call, std::size_t place)
{
    if (place >= call.params.size() || call.params[place].empty())
        return sharedStatement();
    const textPiece& text = call.params[place];
    sharedStatement branch = statementFrom(text, call.flags);
    if (!branch && text.view() != L"{}")
        refuse(_if::unusable, text.view());
    return branch;
}

statement* _if::create(const callText& call)
{
    if (call.params.size() < 2)
        refuse(tooFew);
    operand condition = requireOperand(call, 0, unusable);
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

// Runs the body of `loop` once, in a block of its own. True when the loop goes on.
template <class Run>
bool iterate(const statement* loop, codecontext& context, genericValue& result, const Run& runBody)
{
    try {
        blockcontext block(context);
        runBody(block);
        return !isAnythingRaised(block) || goesOn(context, result);
    } catch (const exception& caught) {
        statement::execError(loop, &caught, nullptr);
    } catch (...) {
        statement::execError(loop, nullptr);
    }
}

// The run of a body that may be empty.
void runBody(const sharedStatement& body, codecontext& block)
{
    if (body)
        inside::execInBlock(*body, block);
    else
        checkRun();
}

// The head of a `while`: decides about the next turn. Whoever has come to listen or to limit the run since
// the last one is noticed here.
class turn final : public operation
{
public:
    turn(const place* where, const value& condition, const operation* exit) noexcept
        : operation(where), mCondition(condition), mpExit(exit)
    {}
    void setBody(const operation* body) noexcept { mpBody = body; }
    const operation* run(frame& f) const override
    {
        bool holds = false;
        if (!shortCutsAllowed() || !stack::isFar() || !readShortly(mCondition.small(f), holds)) [[unlikely]]
            return leave(f);
        return holds ? mpBody : mpExit;
    }

private:
    const value& mCondition;
    const operation* mpBody = nullptr;
    const operation* mpExit;
};

class _while final : public scriptbasestatement
{
public:
    static constexpr refusals texts{2, L"_while::createFrom: number of parameters < 2",
                                    L"_while::createFrom: error parsing \"%s\""};
    static constexpr const wchar_t* failures[] = {texts.tooFew, texts.unusable, noCondition};

    _while(operand condition, const sharedStatement& body) : mpCondition(std::move(condition)), mBody(body)
    {
        stayInside(this);
    }

    statement* clone() const override { return new _while(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        while (holds(context) &&
               iterate(this, context, result, [this](codecontext& block) { runBody(mBody, block); })) {
        }
    }
    const operation* compile(compiler& c, const operation* next) const
    {
        const value* const condition = c.valueOf(mpCondition);
        if (!condition)
            return c.handOver();
        auto* const head = c.makeHere<turn>(*condition, next);
        const operation* const first = c.behindPreparations(head);
        head->setBody(mBody ? c.bodyInBlock(*mBody, first, next) : first);
        return first;
    }
    void resume(codecontext& context, resumption& rest) const
    {
        genericValue dropped;
        const auto restOfBody = [&](codecontext& block) {
            rest.fill(block);
            rest.goInside(*mBody, block);
        };
        if (iterate(this, context, dropped, restOfBody))
            execute(context, dropped);
    }
    static bool repeats() { return true; }

    static statement* create(const callText& call)
    {
        operand condition = requireOperand(call, 0, texts);
        return new _while(std::move(condition), bodyFrom(call, 1));
    }

private:
    // REQUIRED: a null value is a failure here, and only false in `if`.
    bool holds(codecontext& context) const
    {
        bool isTrue = false;
        if (!mpCondition.read(context, isTrue))
            execError(this, noCondition);
        return isTrue;
    }

    operand mpCondition;
    sharedStatement mBody; // null: empty
};

class for_each final : public scriptbasestatement
{
public:
    static constexpr refusals texts{3, L"for_each::createFrom: number of parameters < 3",
                                    L"for_each::createFrom: error parsing \"%s\""};
    static constexpr const wchar_t* failures[] = {texts.tooFew, texts.unusable, noCondition, noCollection,
                                                  noCollectionWithoutText};

    for_each(const scString& name, operand collection, const sharedStatement& body)
        : mName(name), mpCollection(std::move(collection)), mBody(body)
    {}

    statement* clone() const override { return new for_each(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        genericValue collection;
        if (!mpCollection.evaluate(context, collection))
            execError(this, noCondition);
        objectRef object;
        valueArray elements;
        if (collection.getValue(object))
            walk(object, context, result);
        else if (collection.getValue(elements))
            visit(elements, context, result);
        else
            refuseCollection(this, collection);
    }

    static statement* create(const callText& call);

private:
    using step = void (forwardIterator::*)(unknown** out);

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
        const askedObject<forwardIterator> iterator(object);
        if (!iterator.isValid())
            return;
        for (step move = &forwardIterator::first;; move = &forwardIterator::next) {
            objectRef element;
            iterator.ask([&](forwardIterator& asked) { (asked.*move)(element.receive()); });
            if (iterator->isEnd() || !runWith(genericValue(element), context, result))
                return;
        }
    }

    // A name that is visible already keeps its value, and the body sees that one.
    bool runWith(const genericValue& element, codecontext& context, genericValue& result) const
    {
        return iterate(this, context, result, [&](codecontext& block) {
            block.createVariable(mName, element);
            runBody(mBody, block);
        });
    }

    scString mName;
    operand mpCollection;
    sharedStatement mBody; // null: empty
};

statement* for_each::create(const callText& call)
{
    // REQUIRED: the name keeps its case and its blanks, unlike those of all other variables.
    const scString name = requireWrittenName(call, texts);
    operand collection = requireOperand(call, 1, texts);
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
    const operation* compile(compiler& c, const operation*) const
    {
        return !c.isInLoop() ? c.handOver() : Allowed == breakAllowed ? c.toExit() : c.toNextTurn();
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

constexpr builtin rows[] = {
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
     .failures = _if::failures},
    {.name = L"for_each",
     .create = for_each::create,
     .parameters = L"(name, collection, body)",
     .result = resultRule::replacesIfAny,
     .summary = L"Runs the body for each element of an array, or of an object that can be walked "
                L"over, with the element as a variable; its value is what the body returns.",
     .failures = for_each::failures},
    {.name = L"while",
     .create = _while::create,
     .parameters = L"(condition, body)",
     .result = resultRule::replacesIfAny,
     .summary = L"Runs the body as long as the condition is true; its value is what the body "
                L"returns.",
     .failures = _while::failures},
    {.name = L"nullref",
     .create = nullRef::create,
     .parameters = L"()",
     .summary = L"Gives a reference to no object."},
};

} // namespace

constinit const builtinTable controlRows = rows;

} // namespace qx::script
