// The parser: cuts text into blocks, calls and parameters, and offers each call to the modules.
//
// It only cuts, by views into one counted buffer; what a parameter means is decided by whoever receives it.
// Receivers come back here for nested calls, so a whole tree exists when the outermost call returns.
#include "qxScriptParser.h"

#include "qxScriptBase.h"
#include "qxScriptSplitter.h"
#include "qxStack.h"
#include "qxTextView.h"

#include <algorithm>
#include <functional>
#include <set>

namespace qx::script
{

struct statementParser::moduleSet
{
    // Ordered by address, which is the order of asking.
    std::set<scriptModule*, std::less<scriptModule*>> modules;
};

namespace
{

constexpr std::wstring_view blanks = L" \t";
constexpr std::wstring_view lineEnds = L"\r\n";

// The text without blanks at its ends and without line ends anywhere. In this order: blanks behind a leading
// line end stay.
textSlice normalised(const textSlice& text)
{
    const std::wstring_view inner = trimmed(text.view(), blanks);
    // Every level of nesting asks this of all the text below it: one fast search for each of the two.
    if (inner.find(L'\r') == inner.npos && inner.find(L'\n') == inner.npos)
        return text.slice(inner);
    string joined{std::wstring(inner)};
    joined.deleteAll(lineEnds);
    return textSlice(std::move(joined));
}

// The parts between semicolons outside braces; none where no semicolon cuts. Quotation marks mean nothing
// here. A trailing semicolon adds no part.
std::vector<textSlice> partsOf(const textSlice& text)
{
    std::vector<textSlice> parts;
    const std::wstring_view view = text.view();
    if (view.find(L';') == view.npos)
        return parts;
    long depth = 0;
    std::size_t start = 0;
    for (std::size_t i = 0; i < view.size(); ++i) {
        const wchar_t c = view[i];
        if (c == L'{')
            ++depth;
        else if (c == L'}')
            --depth;
        else if (c == L';' && depth == 0) {
            parts.push_back(text.slice(view.substr(start, i - start)));
            start = i + 1;
        }
    }
    if (start != 0 && start < view.size())
        parts.push_back(text.slice(view.substr(start)));
    return parts;
}

statement* makeBlock(const textSlice& text, const std::vector<textSlice>& parts, int flags)
{
    autoPtr<compoundstatement> block(new compoundstatement);
    for (const textSlice& part : parts) {
        if (!block->add(statementParser::instance()->createStatementFrom(part, flags))) {
            assertMsg(L"statement::createFrom: error parsing \"%s\"", part.view());
            return nullptr;
        }
    }
    block->setText(text.view());
    return block.release();
}

// The name of a call and its data type arguments, cut from what stands before the first bracket.
struct callHead
{
    explicit callHead(std::wstring_view text) : name(std::wstring(text))
    {
        name.deleteAll(L"\r\n \t").toLower();
        const std::size_t open = name.find(L'<');
        const std::size_t close = name.rfind(L'>');
        if (open == name.npos || close == name.npos)
            return;
        const std::size_t length = close > open ? close - open - 1 : name.npos;
        string(name.substr(open + 1, length)).splitAt(L",", types, false);
        name.erase(open);
    }

    string name;
    std::vector<string> types;
};

// What stands between the first bracket and the last closing one; up to the end where none closes.
std::wstring_view parameterText(std::wstring_view text, std::size_t open)
{
    const std::size_t close = text.rfind(L')');
    const std::size_t start = open + 1;
    return close == text.npos || close < start ? text.substr(start) : text.substr(start, close - start);
}

void checkBalance(const parameterSplitter& splitter, const textSlice& text)
{
    if (splitter.depth() != 0)
        throw missingBracketException(L')', text);
    if (splitter.angle() != 0)
        throw missingBracketException(L'>', text);
    if (splitter.inString())
        throw missingStringEndException(text);
}

statement* makeBuiltin(const callText& call)
{
    const builtin* const row = findBuiltin(call.name);
    return row ? row->create(call) : nullptr;
}

statement* askModule(const scriptModule& module, const callText& call)
{
    std::vector<string> params;
    params.reserve(call.params.size());
    for (const textSlice& param : call.params)
        params.push_back(param.text());
    return module.factory()(call.name, call.types, params, call.flags);
}

// Asks each module in turn; the first statement wins. One hashed look-up stands for the built-in modules, at
// their place.
statement* askModules(const std::set<scriptModule*, std::less<scriptModule*>>& modules, const callText& call)
{
    const std::span<scriptModule> builtins = builtinModuleObjects();
    const scriptModule* const first = builtins.data();
    const scriptModule* const last = first + builtins.size() - 1;
    const std::less<const scriptModule*> before;
    for (const scriptModule* module : modules) {
        const bool isBuiltin = !before(module, first) && !before(last, module);
        if (isBuiltin && module != first)
            continue;
        if (statement* const made = isBuiltin ? makeBuiltin(call) : askModule(*module, call))
            return made;
    }
    return nullptr;
}

} // namespace

void scriptModule::registerModule()
{
    statementParser::instance()->add(this);
}

statementParser::statementParser() : mpModules(new moduleSet)
{
    for (scriptModule& module : builtinModuleObjects())
        add(&module);
}

statementParser* statementParser::instance()
{
    static statementParser* const parser = new statementParser;
    return parser;
}

void statementParser::add(scriptModule* module)
{
    mpModules->modules.insert(module);
}

statement* statementParser::createStatementFrom(const string& text, int flags) const
{
    return createStatementFrom(textSlice(text), flags);
}

statement* statementParser::createStatementFrom(const textSlice& text, int flags) const
{
    stack::check();
    textSlice body = normalised(text);
    if (body.empty())
        return nullptr;

    if (body.view().front() == L'{') {
        if (body.view().back() != L'}')
            throw errParsingException(text);
        body = body.slice(trimmed(body.view().substr(1, body.size() - 2), blanks));
    }

    if (const std::vector<textSlice> parts = partsOf(body); parts.size() > 1)
        return makeBlock(body, parts, flags);

    const std::size_t open = body.view().find(L'(');
    if (open == std::wstring_view::npos)
        return nullptr;

    try {
        const callHead head(body.view().substr(0, open));
        const parameterSplitter splitter(body, parameterText(body.view(), open));
        checkBalance(splitter, body);
        statement* const made =
            askModules(mpModules->modules, {head.name, head.types, splitter.params(), flags});
        if (made) {
            made->setText(body.view());
            return made;
        }
    } catch (const exception& caught) {
        throw errParsingException(text, &caught);
    } catch (...) {
        throw errParsingException(text);
    }
    throw errParsingException(text); // no module knows the call
}

} // namespace qx::script
