// Statements: their text, the guarded run, and how failures are reported.
#include "qxScriptStatement.h"

#include "contexts/qxScriptEpoch.h"
#include "contexts/qxScriptScope.h"
#include "qxLog.h"
#include "qxScriptContext.h"
#include "qxScriptParser.h"
#include "statements/qxScriptRunning.h"
#include "statements/qxScriptShortCuts.h"
#include "statements/qxScriptSteps.h"

namespace qx::script
{

namespace
{

const wchar_t* const loggerName = L"qx::script::statement::exec";

} // namespace

constinit const shortCuts statement::noShortCuts = shortCutsOf<statement>();

statement* statement::createFrom(const string& text, int flags)
{
    return statementParser::instance()->createStatementFrom(text, flags);
}

// --- The guarded run ---
//
// | who runs a statement                | by                  | what else has run before            |
// |-------------------------------------|---------------------|-------------------------------------|
// | a host, a provider                  | statement::exec     | anything: the epoch moves           |
// | a statement of the engine           | inside::exec        | nothing but the engine              |
// | one that has opened a block for it  | inside::execInBlock | the same; a block needs no own one  |
//
// Each takes a short cut where the statement offers one, and has its long way guarded otherwise. The guard
// moves the epoch around statements that may leave the engine, looks at the stack and at what else may end a
// run, tells those who listen, and makes a link of the chain of whatever is thrown. A short cut needs none of
// that: it throws nothing, and declines where it cannot do its work.

// The run of `work`, which is told what short cuts it may take, where that takes more than a plain one:
// somebody listens, has switched the short cuts off or has limited the steps, or the end of the stack is
// near.
template <class Work>
[[gnu::noinline]] void inside::watched(const statement& run, const Work& work)
{
    checkRun();
    const shortCuts& allowed = shortCutsAllowed() ? *run.mpShortCuts : statement::noShortCuts;
    const bool traced = isTraced();
    if (traced)
        trace(run, L"trying to exec (%s)");
    if (run.mStaysInside)
        work(allowed);
    else {
        const epoch::outside leaving;
        work(allowed);
    }
    if (traced)
        trace(run, L"exec (%s) OK");
}

template <class Work>
[[gnu::always_inline]] inline void inside::guarded(const statement& run, const Work& work)
{
    try {
        if (!shortCutsAllowed() || !stack::isFar())
            return watched(run, work);
        const unsigned leaves = run.mStaysInside ? 0 : 1;
        epoch::current += leaves;
        work(*run.mpShortCuts);
        epoch::current += leaves;
    } catch (...) {
        epoch::move();
        raiseCaught(run);
    }
}

// Not inline, so that a run by a short cut saves fewer registers.
[[gnu::noinline]] void inside::execLong(const statement& run, codecontext& context, genericValue& result)
{
    guarded(run, [&](const shortCuts&) { run.execute(context, result); });
}

void statement::exec(codecontext& context, genericValue& result) const
{
    epoch::move();
    scope::knowPlainRoot(context); // once, for all look-ups of the run
    if (!inside::takeSmall(*this, context, result, true) &&
        !(mGivesText && inside::takeText(*this, context, result)))
        inside::execLong(*this, context, result);
}

void statement::exec(codecontext& context) const
{
    epoch::move();
    inside::exec(*this, context);
}

void inside::exec(const statement& run, codecontext& context, genericValue& result)
{
    // The result may be a variable that others can reach.
    if (!takeSmall(run, context, result, false) && !(run.mGivesText && takeText(run, context, result)))
        guarded(run, [&](const shortCuts&) { run.execute(context, result); });
}

void inside::exec(const statement& run, codecontext& context)
{
    guarded(run, [&](const shortCuts& allowed) { allowed.run(run, context); });
}

void inside::execInBlock(const statement& run, codecontext& fresh)
{
    guarded(run, [&](const shortCuts& allowed) { allowed.runInside(run, fresh); });
}

void inside::resume(const statement& left, codecontext& context, resumption& rest)
{
    resumed(left, [&] { left.mpShortCuts->form->resume(left, context, rest); });
}

void inside::resumeInside(const statement& left, codecontext& fresh, resumption& rest)
{
    resumed(left, [&] { left.mpShortCuts->form->resumeInside(left, fresh, rest); });
}

// The end of the guard around a statement that stays within the engine.
template <class Work>
void inside::resumed(const statement& run, const Work& work)
{
    try {
        work();
    } catch (...) {
        epoch::move();
        raiseCaught(run);
    }
}

// Writes a small value that comes by a short cut. False, with nothing changed, where the long way has to.
// What nobody else can reach is written without looking at what is there.
[[gnu::always_inline]] inline bool inside::takeSmall(const statement& run, codecontext& context,
                                                     genericValue& result, bool isOwn)
{
    if (run.mShortCutDepth == noShortCut || run.mGivesText || !shortCutsAllowed())
        return false;
    const cell::word before = isOwn ? cell::null : cell::access::load(result);
    const cell::word value = smallValue(run, context);
    if (value == cell::refused)
        return false;
    const cell::word written =
        writtenOver(isOwn ? cell::access::load(result) : before, value, run.mKeepsType);
    if (written == cell::refused)
        return false;
    if (isOwn) {
        cell::access::store(result, written);
        return true;
    }
    return !cell::isHolder(before) && cell::access::storeIf(result, before, written);
}

// Writes a text that comes by a short cut. Not inline, so that statements without a text do not have the room
// for one on the stack.
[[gnu::noinline]] bool inside::takeText(const statement& run, codecontext& context, genericValue& result)
{
    const cell::word before = cell::access::load(result);
    const bool isText = before == cell::null || cell::kindIn(before) == cell::decimalKind;
    if (run.mShortCutDepth == noShortCut || cell::isHolder(before) || (run.mKeepsType && !isText) ||
        !shortCutsAllowed())
        return false;
    textScratch text;
    return declinesWithoutMemory([&] {
        if (!textValue(run, context, text))
            return false;
        genericValue made = text.takeValue();
        return cell::access::moveIf(result, before, made);
    });
}

bool inside::showSmallValue(const statement& self, codecontext& context, textScratch& text)
{
    return text.show(inside::smallValue(self, context));
}

// --- Failures ---

void inside::trace(const statement& run, const wchar_t* format)
{
    qxlog::logManager::getLogger(loggerName)->log_trace(format, run.text());
    epoch::move(); // whoever listens may have run anything
}

// Turns the exception that is being handled into the failure of a statement.
void inside::raiseCaught(const statement& run)
{
    try {
        throw;
    } catch (const exceptionDetail& caught) {
        throw scriptExecException(run.text().c_str(), caught.detail().c_str());
    } catch (const exception& caught) {
        throw scriptExecException(run.text().c_str(), nullptr, &caught);
    } catch (const string&) {
        throw;
    } catch (...) {
        throw scriptExecException(run.text().c_str(), nullptr);
    }
}

void statement::raiseDetail(const string& detail)
{
    throw exceptionDetail(detail);
}

void statement::raiseCaused(const statement* failed, const exception* cause, const string& detail)
{
    const wchar_t* const name = failed ? failed->text().c_str() : L"***unknown***";
    if (const auto* carrier = dynamic_cast<const exceptionDetail*>(cause))
        throw scriptExecException(name, carrier->detail().c_str());
    throw scriptExecException(name, detail.c_str(), cause);
}

} // namespace qx::script
