// Statements: their text, the guarded run, and how failures are reported.
#include "qxScriptStatement.h"

#include "qxLog.h"
#include "qxScriptContext.h"
#include "qxScriptEpoch.h"
#include "qxScriptParser.h"
#include "qxScriptShortCuts.h"
#include "qxStack.h"

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

// The guarded run of `work`.
template <class Work>
void statement::guarded(const Work& work) const
{
    try {
        stack::check();
        const bool traced = qxlog::logManager::listens(qxlog::level::trace);
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

void statement::exec(codecontext& context, genericValue& result) const
{
    if (!takeShortCut(context, result))
        guarded([&] { execute(context, result); });
}

void statement::exec(codecontext& context) const
{
    guarded([&] {
        if (cell::shortCutsAllowed())
            return run(context);
        genericValue dropped;
        execute(context, dropped);
    });
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

bool statement::takeShortCut(codecontext& context, genericValue& result) const
{
    if (mShortCutDepth == noShortCut || !cell::shortCutsAllowed())
        return false;
    const cell::word value = smallValue(context);
    if (value == cell::refused)
        return false;
    const cell::word before = cell::access::load(result);
    const cell::word written = writtenOver(before, value, mKeepsType);
    return written != cell::refused && !cell::isHolder(before) &&
           cell::access::storeIf(result, before, written);
}

void statement::trace(const wchar_t* format) const
{
    qxlog::logManager::getLogger(loggerName)->log_trace(format, text());
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
