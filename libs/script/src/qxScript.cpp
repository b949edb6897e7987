// Statements: their text, the guarded run, and how failures are reported.
#include "qxScriptStatement.h"

#include "qxLog.h"
#include "qxScriptContext.h"
#include "qxScriptParser.h"
#include "qxStack.h"

namespace qx::script
{

namespace
{

constexpr std::size_t textShownWhole = 128; // texts of fewer characters
constexpr std::size_t textShownOtherwise = 122;
const wchar_t* const loggerName = L"qx::script::statement::exec";

} // namespace

statement::~statement() = default;

statement* statement::createFrom(const string& text, int flags)
{
    return statementParser::instance()->createStatementFrom(text, flags);
}

void statement::setText(const string& source)
{
    setText(std::wstring_view(source));
}

void statement::setText(std::wstring_view source)
{
    if (source.size() < textShownWhole) {
        mText.assign(source);
        return;
    }
    mText.reserve(textShownWhole);
    mText.assign(source.substr(0, textShownOtherwise)).append(L" ...");
}

void statement::exec(codecontext& context) const
{
    genericValue dropped;
    exec(context, dropped);
}

void statement::exec(codecontext& context, genericValue& result) const
{
    try {
        stack::check();
        const bool traced = qxlog::logManager::listens(qxlog::level::trace);
        if (traced)
            trace(L"trying to exec (%s)");
        execute(context, result);
        if (traced)
            trace(L"exec (%s) OK");
    } catch (...) {
        raiseCaught();
    }
}

void statement::trace(const wchar_t* format) const
{
    qxlog::logManager::getLogger(loggerName)->log_trace(format, mText);
}

// Turns the exception that is being handled into this statement's failure.
void statement::raiseCaught() const
{
    try {
        throw;
    } catch (const exceptionDetail& caught) {
        throw scriptExecException(mText.c_str(), caught.detail().c_str());
    } catch (const exception& caught) {
        throw scriptExecException(mText.c_str(), nullptr, &caught);
    } catch (const string&) {
        throw;
    } catch (...) {
        throw scriptExecException(mText.c_str(), nullptr);
    }
}

void statement::raiseDetail(const string& detail)
{
    throw exceptionDetail(detail);
}

void statement::raiseCaused(const statement* failed, const exception* cause, const string& detail)
{
    const wchar_t* const name = failed ? failed->mText.c_str() : L"***unknown***";
    if (const auto* carrier = dynamic_cast<const exceptionDetail*>(cause))
        throw scriptExecException(name, carrier->detail().c_str());
    throw scriptExecException(name, detail.c_str(), cause);
}

} // namespace qx::script
