// Calls: functions of other script files, returning a value, and statements run as functions.
#include "code/qxScriptBasePath.h"
#include "code/qxScriptCallMemory.h"
#include "compiled/qxScriptCompiler.h"
#include "compiled/qxScriptProgram.h"
#include "compiled/qxScriptReplay.h"
#include "contexts/qxScriptEpoch.h"
#include "contexts/qxScriptSignals.h"
#include "modules/qxScriptModules.h"
#include "qxScriptSettings.h"
#include "statements/qxScriptBase.h"

#include "qxDirectory.h"
#include "qxHeldTypes.h"

#include <memory>
#include <span>

namespace qx::script
{

namespace
{

const scString& localScriptBasePath()
{
    static const scString name = scString::createFrom(L"localscriptbasepath");
    return name;
}

// A buffer of null values, without an allocation where they are few.
class valueRow
{
public:
    explicit valueRow(std::size_t count) : mCount(count), mpFirst(reinterpret_cast<genericValue*>(mFew))
    {
        if (count > fewAtMost) {
            mMany.resize(count);
            mpFirst = mMany.data();
        } else
            std::uninitialized_default_construct_n(mpFirst, count);
    }
    valueRow(const valueRow&) = delete;
    valueRow& operator=(const valueRow&) = delete;
    ~valueRow()
    {
        if (mCount <= fewAtMost)
            std::destroy_n(mpFirst, mCount);
    }

    std::span<genericValue> all() { return {mpFirst, mCount}; }

private:
    static constexpr std::size_t fewAtMost = 8;

    std::size_t mCount;
    genericValue* mpFirst;
    alignas(genericValue) std::byte mFew[fewAtMost * sizeof(genericValue)];
    std::vector<genericValue> mMany;
};

// The base path of the run where it is a text that nobody else can reach; null otherwise.
const string* basePathInPlace(scriptcontext& root)
{
    genericSet::entry* const base = scope::global(root, scriptBasePath());
    return base && !base->isShared() ? heldInPlace<string>(base->value()) : nullptr;
}

// A call among the operands of a statement, or all of one. A function that is compiled runs in the same
// frame.
class calling final : public preparation
{
public:
    calling(const place* where, const settledCall& self, const codeCall& call,
            std::span<const value* const> arguments) noexcept
        : preparation(where), mSelf(self), mCall(call), mArguments(arguments)
    {}
    const operation* run(frame& f) const override
    {
        const string* const base = f.basePath() ? f.basePath() : basePathOf(f);
        if (!shortCutsAllowed() || !stack::isFar() || !base || (writesVariable() && f.isEndSeen(written())))
            return leave(f);
        nestedFrame nested(f, static_cast<unsigned>(mArguments.size()));
        if (!nested.cells() || !evaluateArguments(f, nested.cells()))
            return leave(f);
        try {
            if (f.isSystemLookedInto())
                f.giveToHost();
            const pinnedFunction called = pinnedFunction::find(*base, mCall);
            const bool mayBeFast =
                called.isAtHome() && settings::compiled() && (!f.isSystemLookedInto() || f.takeFromHost());
            const program* const compiled = mayBeFast ? (*called).compiled() : nullptr;
            return compiled && takesArguments(*compiled, nested.cells())
                       ? inFrame(f, nested, *called, *compiled)
                       : inContext(f, nested, *called, called.isAtHome());
        } catch (...) {
            epoch::move();
            return f.leaveAt(*this, &mSelf, std::current_exception());
        }
    }

private:
    // Not inline: once for many calls.
    [[gnu::noinline]] static const string* basePathOf(frame& f)
    {
        if (scope::global(f.root(), localScriptBasePath()))
            return nullptr;
        f.setBasePath(basePathInPlace(f.root()));
        return f.basePath();
    }

    // False where one declines; then those that were emptied have got their values back.
    bool evaluateArguments(frame& f, genericValue* cells) const
    {
        for (std::size_t i = 0; i < mArguments.size(); ++i) {
            const cell::word w = mArguments[i]->small(f);
            cell::access::storeSmall(cells[i], w == cell::refused ? cell::null : w);
            if (w == cell::refused && (!take(*mArguments[i], f, cells[i]) || f.isLookedInto(cells[i]))) {
                giveBack(f, cells, i + 1);
                return false;
            }
        }
        return true;
    }
    // Puts the first values back where they are read once.
    void giveBack(frame& f, genericValue* cells, std::size_t count) const
    {
        for (std::size_t i = 0; i < count; ++i)
            if (mArguments[i]->isTemporary())
                f.replace(mArguments[i]->cell(), std::move(cells[i]));
    }
    // A null one gives way to a default.
    bool takesArguments(const program& compiled, const genericValue* cells) const
    {
        return compiled.parameters().size() == mArguments.size() &&
               std::none_of(cells, cells + mArguments.size(),
                            [](const genericValue& argument) { return argument.isNull(); });
    }

    const operation* inFrame(frame& f, nestedFrame& nested, const function& called,
                             const program& compiled) const
    {
        nested.enter(compiled, compiled.cellCount());
        if (!compiled.runIn(f))
            return rest(f, nested, called, compiled);
        nested.leave();
        f.takeReturned(mSelf.cell);
        return next();
    }

    // The function was left.
    [[gnu::noinline]] const operation* rest(frame& f, nestedFrame& nested, const function& called,
                                            const program& compiled) const
    {
        if (writesVariable() && called.ends() == ending::returned)
            nested.ofCaller(written()).clear(); // which it began with
        genericValue result = nothing();
        return byTree(f, nested, result, [&](scriptcontext& root) {
            for (unsigned i = 0; i < compiled.parameters().size(); ++i)
                if (f.isBound(i))
                    scope::takeParameter(root, compiled.parameters()[i], std::move(f.at(i)));
            called.callRest(mCall.function(), f, root, result);
        });
    }

    // The function has no compiled form. Not inline, like the rest, so that a call in the frame takes less of
    // the stack.
    [[gnu::noinline]] const operation* inContext(frame& f, nestedFrame& nested, const function& called,
                                                 bool atHome) const
    {
        const bool writesInPlace = writesVariable() && called.ends() != ending::block;
        if (writesInPlace && f.isSeen(written())) {
            giveBack(f, nested.cells(), mArguments.size());
            return leave(f);
        }
        genericValue fresh = called.ends() == ending::any ? genericValue() : nothing();
        genericValue& result = writesInPlace ? f.at(written()) : fresh;
        return byTree(f, nested, result, [&](scriptcontext& root) {
            called.call(mCall.function(), {nested.cells(), mArguments.size()}, root,
                        atHome ? function::callee::ofCallAtHome : function::callee::ofCall, result);
        });
    }

    // Until the function returns something.
    static genericValue nothing() { return cell::access::made(cell::refused); }

    // Runs `work` in a root for the call. It may run a host's code, which may look at what the host gave.
    template <class Work>
    const operation* byTree(frame& f, nestedFrame& nested, genericValue& result, const Work& work) const
    {
        f.giveToHost();
        f.setBasePath(nullptr);
        std::exception_ptr failure;
        try {
            scriptcontext root;
            scope::shareGlobals(f.root(), root);
            work(root);
        } catch (...) {
            epoch::move();
            failure = std::current_exception();
        }
        nested.leave();
        if (!failure)
            f.replace(mSelf.cell, std::move(result));
        if (!f.takeFromHost() || failure)
            return f.leaveAt(*this, &mSelf, std::move(failure));
        return next();
    }

    const settledCall& mSelf;
    const codeCall& mCall;
    std::span<const value* const> mArguments;
};

class callFunction final : public scriptbasestatement
{
public:
    static constexpr const wchar_t* tooFew = L"callFunction::createFrom: number of parameters < 1";
    static constexpr const wchar_t* unusable = L"callFunction::createFrom: error parsing \"%s\"";
    static constexpr const wchar_t* noCode = L"callFunction::createFrom: error setting codeId";
    static constexpr const wchar_t* noArgument = L"Error retrieving script-parameter";
    static constexpr const wchar_t* failures[] = {tooFew, unusable, noCode, noArgument};

    callFunction(const sharedPtr<const codeCall>& call, std::vector<operand> arguments)
        : mpCall(call), mArguments(std::move(arguments))
    {
        stayInside(this);
    }

    statement* clone() const override { return new callFunction(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        scriptcontext* const root = scope::plainRoot(context);
        if (root && replay::gives(*root, *this, result))
            return;
        valueRow arguments(mArguments.size());
        evaluateArguments(context, arguments.all());
        scriptcontext callee;
        context.initScriptContext(callee);
        if (const string* const base = basePathOfRun(context))
            call(*base, true, arguments.all(), callee, result);
        else
            call(basePath(context), false, arguments.all(), callee, result);
    }

    const operation* compile(compiler& c, const operation* next) const
    {
        static const operandShortCut nothing;
        const value* const dropped = compileValue(nothing, c);
        return dropped ? c.endCells(dropped->cell(), 1, next) : c.handOver();
    }
    const value* compileValue(const operandShortCut& asked, compiler& c) const
    {
        const std::span<const value*> arguments = c.makeRow<const value*>(mArguments.size());
        if (mpCall->type() != codeTypeScript || mArguments.size() > frame::mostCells ||
            c.cellOf(localScriptBasePath()) != compiler::noCell || !c.valuesOf(mArguments, arguments))
            return nullptr;
        return c.prepareCall<calling>(*this, asked, *mpCall, arguments);
    }

    static statement* create(const callText& call);

private:
    void evaluateArguments(codecontext& context, std::span<genericValue> values) const
    {
        try {
            for (std::size_t i = 0; i < values.size(); ++i)
                mArguments[i].evaluate(context, values[i]);
        } catch (const exception& caught) {
            execError(this, &caught, noArgument);
        } catch (...) {
            execError(this, noArgument);
        }
    }

    void call(const string& base, bool isOfRun, std::span<genericValue> arguments, scriptcontext& callee,
              genericValue& result) const
    {
        if (mpCall->type() != codeTypeScript)
            return;
        if (!isOfRun)
            epoch::move(); // contexts of a host's own class may have run anything
        const pinnedFunction called = pinnedFunction::find(base, *mpCall);
        const bool atHome = isOfRun && called.isAtHome();
        (*called).call(mpCall->function(), arguments, callee,
                       atHome ? function::callee::ofCallAtHome : function::callee::ofCall, result);
    }

    // The base path of the run where it is a text that nobody else can reach and no visible variable
    // redirects the search. Null otherwise.
    static const string* basePathOfRun(codecontext& context)
    {
        scriptcontext* const root = scope::plainRoot(context);
        return root && !scope::variable(context, *root, localScriptBasePath()) ? basePathInPlace(*root)
                                                                               : nullptr;
    }

    // Where the search for the file begins: the base path of the run, unless a visible variable redirects it.
    // A value that is neither text nor a directory leaves it empty.
    static string basePath(codecontext& context)
    {
        genericValue base = context.globalContextVariable(scriptBasePath());
        if (context.hasVariable(localScriptBasePath()))
            base = *requireVariable(context, localScriptBasePath());
        string path;
        if (!base.getValue(path) && !base.isNull()) {
            directory folder;
            if (base.getValue(folder))
                path = folder.fullName();
        }
        return path;
    }

    sharedPtr<const codeCall> mpCall; // shared by clones
    std::vector<operand> mArguments;
};

statement* callFunction::create(const callText& call)
{
    if (call.params.empty())
        refuse(tooFew);
    const string codeId = call.params[0].text();
    eCodeType type = codeTypeScript;
    string file;
    string function;
    if (!codeManager::instance()->parseCodeCall(codeId, type, file, function))
        refuse(unusable, codeId);
    if (codeId.empty())
        refuse(noCode);
    std::vector<operand> arguments;
    arguments.reserve(call.params.size());
    for (std::size_t i = 1; i < call.params.size(); ++i)
        arguments.push_back(requireOperand(call, i, unusable));
    return new callFunction(sharedPtr<const codeCall>(new codeCall(codeId)), std::move(arguments));
}

constexpr const wchar_t* noReturnValue = L"error retrieving returnvalue";

// A `return`: the value is that of the function before its blocks end.
class returning final : public operation
{
public:
    returning(const place* where, const value* returned, const operation* next) noexcept
        : operation(where), mpReturned(returned), mpNext(next)
    {}
    const operation* run(frame& f) const override
    {
        const cell::word w = mpReturned ? mpReturned->small(f) : cell::null;
        if (w != cell::refused && f.setReturnedSmall(w))
            return mpNext;
        return otherwise(f);
    }

private:
    // Not inline, so that a small value saves fewer registers.
    [[gnu::noinline]] const operation* otherwise(frame& f) const
    {
        genericValue returned;
        if (mpReturned && !take(*mpReturned, f, returned))
            return leave(f);
        if (f.setReturned(std::move(returned)))
            return mpNext;
        if (mpReturned && mpReturned->isTemporary())
            f.replace(mpReturned->cell(), std::move(returned)); // NOLINT(bugprone-use-after-move): not moved
        return leave(f);
    }

    const value* mpReturned; // null for none
    const operation* mpNext;
};

// Ends the function: the value stands under a parameter name that every block and loop looks for.
class _return final : public scriptbasestatement
{
public:
    static constexpr const wchar_t* notSet = L"error setting returnvalue to context";
    static constexpr const wchar_t* failures[] = {noReturnValue, notSet};
    static constexpr ending ends = ending::returned;

    explicit _return(operand value) : mpValue(std::move(value)) { stayInside(this); }
    static statement* create(const callText& call) { return new _return(operandAt(call, 0)); }

    statement* clone() const override { return new _return(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        result.clear();
        if (mpValue && !mpValue.write(context, result))
            execError(this, noReturnValue);
        set(context, genericValue(result));
    }
    void run(codecontext& context) const
    {
        genericValue value;
        if (mpValue && !mpValue.evaluate(context, value))
            execError(this, noReturnValue);
        set(context, std::move(value));
    }
    const operation* compile(compiler& c, const operation*) const
    {
        const value* const returned = mpValue ? c.valueOf(mpValue) : nullptr;
        return returned || !mpValue ? c.makeHere<returning>(returned, c.toEnd()) : c.handOver();
    }

private:
    void set(codecontext& context, genericValue&& value) const
    {
        if (scriptcontext* const root = scope::plainRoot(context))
            scope::takeParameter(*root, scriptcontext::returnparam(), std::move(value));
        else if (!context.setParameter(scriptcontext::returnparam(), value))
            execError(this, notSet);
    }

    operand mpValue;
};

// Runs a statement as if it were a function body: what it returns is its value, and its signals end here.
class treatasfunction final : public scriptbasestatement
{
public:
    static constexpr const wchar_t* failures[] = {noReturnValue};

    explicit treatasfunction(operand value) : mpValue(std::move(value)) { stayInside(this); }
    static statement* create(const callText& call) { return new treatasfunction(operandAt(call, 0)); }

    statement* clone() const override { return new treatasfunction(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        try {
            result.clear();
            if (mpValue && !mpValue.write(context, result))
                execError(this, noReturnValue);
            if (copyReturned(context, result))
                context.deleteParameter(scriptcontext::returnparam());
            context.clearScriptSignal(breakSignal());
            context.clearScriptSignal(breakAllSignal());
            context.clearScriptSignal(continueSignal());
        } catch (const exception& caught) {
            execError(this, &caught, nullptr);
        } catch (...) {
            execError(this, nullptr);
        }
    }

private:
    operand mpValue;
};

// --- Table ---

constexpr builtin rows[] = {
    {.name = L"callfunction",
     .create = callFunction::create,
     .parameters = L"(type$file$function, [argument], ...)",
     .result = resultRule::replacesIfAny,
     .summary = L"Runs a function of a script file with these arguments; its value is what the "
                L"function returns.",
     .failures = callFunction::failures},
    {.name = L"treatasfunction",
     .create = treatasfunction::create,
     .parameters = L"(statement)",
     .summary = L"Runs a statement as if it were the body of a function: what it returns is the "
                L"value, and its signals end here.",
     .failures = treatasfunction::failures},
    {.name = L"return",
     .create = _return::create,
     .parameters = L"([value])",
     .summary = L"Ends the function, which gives the value or null.",
     .failures = _return::failures},
};

} // namespace

constinit const builtinTable callRows = rows;

} // namespace qx::script
