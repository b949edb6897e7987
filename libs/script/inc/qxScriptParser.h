// The parser and the modules that it asks.
//
// The grammar knows no keywords: a program is a sequence of calls `name<types>(parameters)`, joined by `;`
// and grouped by `{ }`. Every name is offered to the modules in turn, and the first that makes a statement of
// it wins. A module of a host is one function and one object; it may know any number of names. Most hosts
// need none, as qx::host::addStatement (qxScriptHostFunction.h) brings statements by name.
//
//     static qx::script::statement* makeMine(const qx::string& name, const std::vector<qx::string>& types,
//                                            const std::vector<qx::string>& params, int flags)
//     {
//         return name == L"shout" ? shout::create(params, flags) : nullptr; // null: not mine
//     }
//     static qx::script::scriptModule mine(makeMine);
//     mine.registerModule();
#pragma once

#include "qxScriptExport.h"
#include "qxScriptStatement.h"

#include <type_traits>

namespace qx::script
{

struct statementInfo;

// Statement flags travel with every parse and tell what is allowed at a place of the text.
enum statementFlags
{
    continueAllowed = 1, // within the body of a loop
    breakAllowed = 2     // likewise
};

// Makes a statement for a call that it knows, owned by the caller, or gives null for one that it declines.
// `name` and `types` come lower-cased and without blanks, `params` as written. May throw: an exception
// becomes the reason of an errParsingException, anything else an errParsingException without one.
using statementFactory = statement* (*)(const string& name, const std::vector<string>& types,
                                        const std::vector<string>& params, int flags);

// Adds an entry for each statement of a module, for listStatements (qxScriptInspect.h).
using statementLister = void (*)(std::vector<statementInfo>& all);

// A statement factory with an identity. The place of a module among the others is its address: the built-in
// modules stand in one array, modules below it are asked before them, modules above it behind.
class QXSCRIPT_API scriptModule
{
public:
    // A null factory throws the bool value false. Without a lister nothing is told of the module's
    // statements.
    constexpr explicit scriptModule(statementFactory maker, statementLister teller = nullptr)
        : mFactory(maker), mLister(teller)
    {
        // A compiler that instruments pointers does not know a function's address while it compiles.
        if (!std::is_constant_evaluated() && !maker)
            throw false;
    }
    scriptModule(const scriptModule&) = delete;
    scriptModule& operator=(const scriptModule&) = delete;

    // Enters this module into the parser's set, for good: the module must live as long as the parser is used.
    // A second call changes nothing. Must not run while another thread parses or registers. A factory may
    // call it: one whose place is behind the module that is being asked is asked for the same call.
    void registerModule();

    statementFactory factory() const noexcept { return mFactory; }
    statementLister lister() const noexcept { return mLister; }

private:
    statementFactory mFactory;
    statementLister mLister;
};

class QXSCRIPT_API statementParser
{
public:
    // The one parser of the process, made at the first call; never destroyed.
    static statementParser* instance();

    // Makes the statement tree of `text`, owned by the caller. Null, and no failure, for text that holds no
    // statement: blank, or without any bracket. Throws errParsingException, with the reason as its previous
    // one, for text that cannot become a statement.
    statement* createStatementFrom(const string& text, int flags) const;
    // An overload for a text that may be emptied, which saves a copy.
    statement* createStatementFrom(string&& text, int flags) const;

private:
    constexpr statementParser() = default;
    ~statementParser() = default;
};

} // namespace qx::script
