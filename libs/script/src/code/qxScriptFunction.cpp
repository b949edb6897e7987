// A call of a loaded function: arguments are bound to parameters, the body runs, and what was returned is
// handed on.
#include "code/qxScriptFunction.h"

#include "code/qxScriptBasePath.h"
#include "compiled/qxScriptResumption.h"
#include "contexts/qxScriptScope.h"
#include "contexts/qxScriptSignals.h"
#include "qxScriptContext.h"
#include "qxScriptException.h"
#include "qxScriptParser.h"
#include "qxScriptSettings.h"
#include "statements/qxScriptBase.h"
#include "statements/qxScriptShortCuts.h"

#include "qxStack.h"

#include <mutex>

namespace qx::script
{

namespace
{

// True when the base path of the run is this very text already, so that nobody can tell whether it is
// written.
bool isScriptBasePath(scriptcontext& context, const genericValue& directoryName)
{
    scriptcontext* const root = scope::plainRoot(context);
    genericSet::entry* const stored = root ? scope::global(*root, scriptBasePath()) : nullptr;
    if (!stored || stored->isShared())
        return false;
    const string* const present = heldInPlace<string>(stored->value());
    const string* const wanted = heldInPlace<string>(directoryName);
    return present && wanted && *present == *wanted;
}

} // namespace

sharedPtr<function> function::parse(const string& body, const std::vector<string>& declarations,
                                    const file& source, const timestamp& time)
{
    sharedPtr<function> made(new function);
    made->mpStatement = sharedPtr<statement>(statementParser::instance()->createStatementFrom(body, 0));
    if (!made->mpStatement)
        return sharedPtr<function>();
    for (const string& declaration : declarations)
        made->mParameters.emplace_back(declaration, 0);
    made->mFile = source;
    made->mDirectory = genericValue(source.entryName().path(0));
    made->mTimestamp = time;
    return made;
}

bool function::parses(string&& body, std::span<const string> declarations)
{
    const sharedPtr<statement> tree(statementParser::instance()->createStatementFrom(std::move(body), 0));
    if (tree)
        for (const string& declaration : declarations)
            inParameter(declaration, 0);
    return static_cast<bool>(tree);
}

void function::call(const string& name, std::span<genericValue> arguments, scriptcontext& context,
                    callee kind, genericValue& result) const
{
    scriptcontext* const root = scope::plainRoot(context);
    scriptcontext* const bareRoot = root && scope::isBare(*root) ? root : nullptr;
    bind(name, arguments, context, kind);
    named(name, [&] { run(context, bareRoot, kind, result); });
}

template <class Work>
void function::named(const string& name, const Work& work)
{
    try {
        work();
    } catch (const exception& caught) {
        throw scriptExecException(name.c_str(), nullptr, &caught);
    } catch (const string& text) {
        throw scriptExecException((text + L"\n\n" + name).c_str(), nullptr);
    } catch (...) {
        throw scriptExecException(name.c_str(), nullptr);
    }
}

void function::bind(const string& name, std::span<genericValue> arguments, scriptcontext& context,
                    callee kind) const
{
    try {
        scriptcontext* const root = scope::plainRoot(context);
        std::size_t next = 0;
        for (const inParameter& parameter : mParameters) {
            if (parameter.name().empty())
                continue;
            // Those of a host are copied here, where what fails is told as the parameter's failure.
            genericValue value(next == arguments.size() ? genericValue()
                               : kind == callee::ofHost ? genericValue(arguments[next])
                                                        : genericValue(std::move(arguments[next])));
            next += next < arguments.size();
            if (value.isNull())
                parameter.resolve(value);
            if (root)
                scope::takeParameter(*root, parameter.variable(), std::move(value));
            else
                context.setParameter(parameter.variable(), value);
        }
    } catch (const exception& caught) {
        throw prepareParameterException(name.c_str(), L"", &caught);
    } catch (const string& text) {
        throw prepareParameterException(name.c_str(), text.c_str());
    } catch (...) {
        throw prepareParameterException(name.c_str(), L"");
    }
}

std::unique_ptr<const program> function::compile() const
{
    std::vector<scString> names;
    for (const inParameter& parameter : mParameters)
        if (!parameter.name().empty())
            names.push_back(parameter.variable());
    return ends() == ending::any ? nullptr : program::compile(*mpStatement, std::move(names));
}

const program* function::compileIfWorth() const
{
    // What runs once or twice and holds no loop is quicker left a tree.
    constexpr unsigned fewRuns = 2;
    if (mRuns.fetch_add(1, std::memory_order_relaxed) < fewRuns && !inside::repeats(*mpStatement))
        return nullptr;
    static std::mutex compiling;
    const std::lock_guard lock(compiling);
    if (mForm.load(std::memory_order_relaxed) != form::unknown)
        return mProgram.get();
    try {
        mProgram = compile();
        mForm.store(mProgram ? form::compiled : form::tree, std::memory_order_release);
    } catch (const std::bad_alloc&) {
        return nullptr; // this run does without
    }
    return mProgram.get();
}

void function::run(scriptcontext& context, scriptcontext* bareRoot, callee kind, genericValue& result) const
{
    if (kind != callee::ofCallAtHome && !isScriptBasePath(context, mDirectory))
        context.setGlobalContextVariable(scriptBasePath(), mDirectory);
    // Where somebody listens to the end of each run, the body writes its value before that.
    if (ends() == ending::any || !shortCutsAllowed())
        inside::exec(*mpStatement, context, result);
    else {
        if (ends() == ending::returned)
            result.clear();
        const bool mayBeFast =
            bareRoot && scope::pending(*bareRoot) == 0 && settings::compiled() && stack::isFar();
        const program* const fast = mayBeFast ? compiled() : nullptr;
        if (fast)
            fast->run(*bareRoot, kind == callee::ofHost);
        else
            inside::exec(*mpStatement, context);
    }
    scriptcontext* const root = scope::plainRoot(context);
    if (kind != callee::ofHost && root)
        return moveReturned(*root, result);
    copyReturned(context, result);
    context.clearScriptSignal(breakSignal());
    context.clearScriptSignal(continueSignal());
}

void function::moveReturned(scriptcontext& root, genericValue& result)
{
    genericSet::entry* const returned = scope::returned(root);
    if (returned && !returned->isShared())
        result = std::move(returned->value());
    else
        copyReturned(root, result);
}

void function::callRest(const string& name, frame& f, scriptcontext& root, genericValue& result) const
{
    named(name, [&] {
        resumption(f).run(root);
        moveReturned(root, result);
    });
}

} // namespace qx::script
