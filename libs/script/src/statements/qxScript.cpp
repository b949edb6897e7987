// Statements: their text, the guarded run, and how failures are reported.
#include "qxScriptStatement.h"

#include "contexts/qxScriptEpoch.h"
#include "contexts/qxScriptScope.h"
#include "qxLog.h"
#include "qxScriptContext.h"
#include "qxScriptParser.h"
#include "statements/qxScriptShortCuts.h"
#include "statements/qxScriptSteps.h"

namespace qx::script
{

namespace
{

const wchar_t* const loggerName = L"qx::script::statement::exec";

} // namespace

statement::~statement() = default;

statement* statement::createFrom(const string& text, int flags)
{
    return statementParser::instance()->createStatementFrom(text, flags);
}

// The guarded run of `work`, with all that may go with it.
template <class Work>
[[gnu::noinline]] void statement::guarded(const Work& work) const
{
    try {
        checkRun();
        const bool traced = cell::isTraced();
        if (traced)
            trace(L"trying to exec (%s)");
        if (mStaysInside)
            work();
        else {
            const epoch::outside leaving;
            work();
        }
        if (traced)
            trace(L"exec (%s) OK");
    } catch (...) {
        raiseCaught();
    }
}

// Nothing goes with the work but what this can do without a call: the usual case.
inline bool statement::isPlainRun() noexcept
{
    return cell::shortCutsAllowed() && stack::isFar();
}

// The guarded run of `work` in the usual case.
template <class Work>
[[gnu::always_inline]] inline void statement::plainly(const Work& work) const
{
    const unsigned leaves = mStaysInside ? 0 : 1;
    try {
        epoch::current += leaves;
        work();
        epoch::current += leaves;
    } catch (...) {
        epoch::move();
        raiseCaught();
    }
}

void statement::exec(codecontext& context, genericValue& result) const
{
    epoch::move();
    scope::knowPlainRoot(context); // once, for all look-ups of the run
    const cell::word w = shortCut(context, result);
    if (w != cell::refused)
        cell::access::store(result, w);
    else if (!mGivesText || !takeTextShortCut(context, result))
        guarded([&] { execute(context, result); });
}

void statement::exec(codecontext& context) const
{
    epoch::move();
    execNested(context);
}

void statement::execNested(codecontext& context, genericValue& result) const
{
    // The result may be a variable that others can reach.
    const cell::word before = cell::access::load(result);
    const cell::word w = shortCut(context, result);
    if (w != cell::refused && !cell::isHolder(before) && cell::access::storeIf(result, before, w))
        return;
    if (mGivesText && takeTextShortCut(context, result))
        return;
    if (!isPlainRun())
        return guarded([&] { execute(context, result); });
    plainly([&] { execute(context, result); });
}

void statement::execNested(codecontext& context) const
{
    if (!isPlainRun())
        return runGuarded(context);
    plainly([&] { run(context); });
}

void statement::execInside(codecontext& fresh) const
{
    if (!isPlainRun())
        return runGuarded(fresh);
    plainly([&] { runInside(fresh); });
}

void statement::runGuarded(codecontext& context) const
{
    guarded([&] {
        if (cell::shortCutsAllowed())
            return run(context);
        genericValue dropped;
        execute(context, dropped);
    });
}

void statement::runInside(codecontext& fresh) const
{
    run(fresh);
}

void statement::run(codecontext& context) const
{
    genericValue dropped;
    execute(context, dropped);
}

std::uint64_t statement::smallValue(codecontext&) const
{
    return cell::refused;
}

bool statement::textValue(codecontext& context, textScratch& text) const
{
    return text.show(smallValue(context));
}

const genericValue* statement::valueInPlace(codecontext&) const
{
    return nullptr;
}

// The word that is in `result` once the value is written into it; `refused` where the long way has to tell.
std::uint64_t statement::shortCut(codecontext& context, const genericValue& result) const
{
    if (mShortCutDepth == noShortCut || mGivesText || !cell::shortCutsAllowed())
        return cell::refused;
    const cell::word value = smallValue(context);
    return value == cell::refused ? value : writtenOver(cell::access::load(result), value, mKeepsType);
}

// The same for a text, written at once. Not inline, so that statements without a text do not have the room
// for one on the stack.
bool statement::takeTextShortCut(codecontext& context, genericValue& result) const
{
    const cell::word before = cell::access::load(result);
    const bool isText = before == cell::null || cell::kindIn(before) == cell::decimalKind;
    if (mShortCutDepth == noShortCut || cell::isHolder(before) || (mKeepsType && !isText) ||
        !cell::shortCutsAllowed())
        return false;
    textScratch text;
    return declinesWithoutMemory([&] {
        if (!textValue(context, text))
            return false;
        genericValue made = text.takeValue();
        return cell::access::moveIf(result, before, made);
    });
}

void statement::trace(const wchar_t* format) const
{
    qxlog::logManager::getLogger(loggerName)->log_trace(format, text());
    epoch::move(); // whoever listens may have run anything
}

// Turns the exception that is being handled into this statement's failure.
void statement::raiseCaught() const
{
    try {
        throw;
    } catch (const exceptionDetail& caught) {
        throw scriptExecException(text().c_str(), caught.detail().c_str());
    } catch (const exception& caught) {
        throw scriptExecException(text().c_str(), nullptr, &caught);
    } catch (const string&) {
        throw;
    } catch (...) {
        throw scriptExecException(text().c_str(), nullptr);
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
