// The parser: cuts text into blocks, calls and parameters, and offers each call to the modules.
//
// It only cuts, by views into one counted buffer; what a parameter means is decided by whoever receives it.
// Receivers come back here for nested calls, so a whole tree exists when the outermost call returns.
#include "modules/qxScriptBlock.h"
#include "parser/qxScriptParsing.h"
#include "parser/qxScriptSplitter.h"
#include "qxStack.h"
#include "statements/qxScriptStatementText.h"

#include <algorithm>
#include <functional>
#include <optional>

namespace qx::script
{

namespace
{

// The modules of hosts, by address, which is the order of asking: in front of the built-in ones and behind
// them.
struct moduleSet
{
    std::vector<scriptModule*> before;
    std::vector<scriptModule*> behind;
};

// The one of the process; never destroyed.
moduleSet& hostModules()
{
    static moduleSet* const set = new moduleSet;
    return *set;
}

string withoutLineEnds(std::wstring_view text)
{
    string joined{std::wstring(text)};
    joined.deleteAll(L"\r\n");
    return joined;
}

// The name of a call and its data type arguments, cut from what stands before the first bracket.
class callHead
{
public:
    // Borrows `text`, whose head that is.
    callHead(std::wstring_view text, const marks::head& head) : mName(text.substr(0, head.size))
    {
        std::size_t open = head.angle;
        if (head.marks & marks::unplain) {
            mWritten.assign(mName);
            mWritten.deleteAll(L"\r\n \t").toLower();
            mName = mWritten;
            open = mName.find(L'<');
        }
        if (open >= mName.size())
            return;
        const std::size_t close = mName.rfind(L'>');
        if (close == mName.npos)
            return;
        cutTypes(mName.substr(open + 1, close > open ? close - open - 1 : mName.npos));
        mName.remove_suffix(mName.size() - open);
    }

    std::wstring_view name() const noexcept { return mName; }
    std::span<const typeWord> types() const noexcept { return mTypes.items(); }

private:
    void cutTypes(std::wstring_view text)
    {
        std::size_t start = 0;
        for (std::size_t i = 0; i < text.size(); ++i) // a search would cost more for these few characters
            if (text[i] == L',') {
                mTypes.push(typeWord(text.substr(start, i - start)));
                start = i + 1;
            }
        mTypes.push(typeWord(text.substr(start)));
    }

    string mWritten; // what is left of a text that does not stay
    std::wstring_view mName;
    smallList<typeWord, 2> mTypes;
};

void checkBalance(const parameterSplitter& splitter, const textPiece& text)
{
    if (splitter.depth() != 0)
        throw missingBracketException(L')', text.counted());
    if (splitter.angle() != 0)
        throw missingBracketException(L'>', text.counted());
    if (splitter.inString())
        throw missingStringEndException(text.counted());
}

// A call for the modules of hosts.
struct hostCall
{
    explicit hostCall(const callText& call)
        : name(std::wstring(call.name)), types(call.types.begin(), call.types.end())
    {
        params.reserve(call.params.size());
        for (const textPiece& param : call.params)
            params.push_back(param.text());
    }

    string name;
    std::vector<string> types;
    std::vector<string> params;
};

// Calls `use` with each module until it gives true. It may register modules, so that these move: the next is
// looked for by address.
template <class Use>
void walk(const std::vector<scriptModule*>& modules, const Use& use)
{
    for (auto next = modules.begin(); next != modules.end();) {
        const scriptModule* const module = *next;
        if (use(*module))
            return;
        next = std::upper_bound(modules.begin(), modules.end(), module, std::less<const scriptModule*>());
    }
}

statement* askEach(const std::vector<scriptModule*>& modules, const callText& call)
{
    const hostCall copied(call);
    statement* made = nullptr;
    walk(modules, [&](const scriptModule& module) {
        made = module.factory()(copied.name, copied.types, copied.params, call.flags);
        return made != nullptr;
    });
    return made;
}

// Asks each of these modules in turn; the first statement wins.
inline statement* askModules(const std::vector<scriptModule*>& modules, const callText& call)
{
    return modules.empty() ? nullptr : askEach(modules, call);
}

// Asks each module in turn; the first statement wins. The row stands for the built-in modules, at their
// place; null where they do not know the call.
statement* ask(const callText& call, const builtin* row)
{
    const moduleSet& modules = hostModules();
    if (statement* const made = askModules(modules.before, call))
        return made;
    statement* const made = row ? row->create(call) : nullptr;
    return made ? made : askModules(modules.behind, call);
}

// Not inline: next to no statement comes here.
[[gnu::noinline]] void nameByText(statement& made, const textPiece& piece, statementText::form how)
{
    statementText(made).set(piece.view(), how);
}

void nameAfter(statement& made, const textPiece& piece, statementText::form how)
{
    if (!statementText(made).canKeep(piece.start())) [[unlikely]]
        return nameByText(made, piece, how);
    statementText(made).keep(piece.source().takeCount(), piece.start(), piece.size(), how);
}

statement* createSingle(const textPiece& text, const textPiece& body, const marks::head& start, int flags)
{
    if (start.size == body.size())
        return nullptr;
    try {
        const callHead head(body.view(), start);
        const parameterSplitter splitter(body, start.size);
        checkBalance(splitter, body);
        const callText call{head.name(), head.types(), splitter.params(), flags};
        if (statement* const made = ask(call, findBuiltin(call.name))) {
            nameAfter(*made, body, statementText::form::asWritten);
            return made;
        }
    } catch (const exception& caught) {
        throw errParsingException(text.counted(), &caught);
    } catch (...) {
        throw errParsingException(text.counted());
    }
    throw errParsingException(text.counted()); // no module knows the call
}

statement* createNormalised(const textPiece& text, textPiece body, int flags);

// A part of a block. No semicolon cuts it, unless it is a block itself.
statement* createPart(const textPiece& part, int flags)
{
    stack::check();
    const textPiece body = part.piece(withoutBlanks(part.view()));
    return body.view().starts_with(L'{') ? createNormalised(part, body, flags)
                                         : createSingle(part, body, marks::head(body.view()), flags);
}

// `semicolon` is the place of the first one.
statement* createBlock(const textPiece& body, partCutter& parts, std::size_t semicolon, int flags)
{
    autoPtr<compoundstatement> block(new compoundstatement);
    block->reserve(1 + parts.left() + (body.view().back() != L';'));
    for (std::size_t start = 0; start < body.size();) {
        const textPiece part = body.piece(body.view().substr(start, semicolon - start));
        if (!block->add(createPart(part, flags))) {
            assertMsg(L"statement::createFrom: error parsing \"%s\"", part.view());
            return nullptr;
        }
        start += part.size() + 1;
        semicolon = parts.next(start);
    }
    nameAfter(*block, body, statementText::form::asWritten);
    return block.release();
}

// `text` is what failures show.
statement* createNormalised(const textPiece& text, textPiece body, int flags)
{
    if (body.empty())
        return nullptr;
    std::size_t open = 0;
    std::size_t close = 0;
    if (body.view().front() == L'{') {
        if (body.view().back() != L'}')
            throw errParsingException(text.counted());
        open = body.start();
        close = open + body.size() - 1;
        body = body.piece(withoutBlanks(body.view().substr(1, body.size() - 2)));
    }

    // A trailing semicolon adds no part.
    partCutter parts(body, open, close);
    const std::size_t semicolon = parts.next(0);
    if (semicolon != std::wstring_view::npos && semicolon + 1 < body.size())
        return createBlock(body, parts, semicolon, flags);

    return createSingle(text, body, marks::head(body.view()), flags);
}

// In a function of its own: only the outermost level has line ends, and the stack is for depth.
statement* createJoined(const textPiece& text, string&& joined, int flags)
{
    sourceText source(std::move(joined));
    return createNormalised(text, textPiece(source), flags);
}

} // namespace

// --- Within the engine ---

statement* parsing::statementFrom(const textPiece& text, int flags)
{
    stack::check();
    // In this order: blanks behind a leading line end stay.
    const std::wstring_view body = withoutBlanks(text.view());
    return text.source().hasLineEnds() ? createJoined(text, withoutLineEnds(body), flags)
                                       : createNormalised(text, text.piece(body), flags);
}

statement* parsing::callFrom(const textPiece& text, const marks::head& start, int flags)
{
    const bracketIndex& brackets = text.source().brackets();
    // No semicolon can cut it.
    if (!text.source().hasLineEnds() && !(start.marks & (marks::statementMark | marks::blank)) &&
        brackets.isKept() &&
        brackets.closingOfPlain(text.start() + start.size) + 1 == text.start() + text.size()) {
        stack::check();
        return createSingle(text, text, start, flags);
    }
    return statementFrom(text, flags);
}

statement* parsing::variableFrom(const textPiece& name, int flags)
{
    stack::check();
    const auto text = [&] { return textSlice(L"getvar(" + name.text() + L")"); };
    try {
        static const builtin* const row = findBuiltin(variableStatement);
        if (statement* const made = ask({variableStatement, {}, {&name, 1}, flags}, row)) {
            nameAfter(*made, name, statementText::form::variable);
            return made;
        }
    } catch (const exception& caught) {
        throw errParsingException(text(), &caught);
    } catch (...) {
        throw errParsingException(text());
    }
    throw errParsingException(text());
}

void parsing::listOfHosts(std::vector<statementInfo>& all)
{
    const moduleSet& set = hostModules();
    for (const std::vector<scriptModule*>* modules : {&set.before, &set.behind})
        walk(*modules, [&](const scriptModule& module) {
            if (module.lister())
                module.lister()(all);
            return false;
        });
}

// --- For hosts ---

void scriptModule::registerModule()
{
    const std::span<scriptModule> builtins = builtinModuleObjects();
    const std::less<const scriptModule*> isBefore;
    const bool before = isBefore(this, &builtins.front());
    if (!before && !isBefore(&builtins.back(), this))
        return; // is there already
    std::vector<scriptModule*>& modules = before ? hostModules().before : hostModules().behind;
    const auto place = std::lower_bound(modules.begin(), modules.end(), this, isBefore);
    if (place == modules.end() || *place != this)
        modules.insert(place, this);
}

statementParser* statementParser::instance()
{
    static constinit statementParser parser;
    return &parser;
}

statement* statementParser::createStatementFrom(const string& text, int flags) const
{
    sourceText source(text);
    return parsing::statementFrom(textPiece(source), flags);
}

statement* statementParser::createStatementFrom(string&& text, int flags) const
{
    sourceText source(std::move(text));
    return parsing::statementFrom(textPiece(source), flags);
}

} // namespace qx::script
