// Statements: what script text becomes, and what runs.
//
// A tree of statements is immutable once it is parsed: all state of a run lies in the context and in the
// result. One tree may run many times, recursively, and on several threads, each with a context of its own.
//
//     using qx::script::statement;
//     const qx::sharedPtr<statement> block(statement::createFrom(L"{ createvar(a, \"1\"); return(a); }", 0));
//     qx::script::scriptcontext context;
//     qx::genericValue result;
//     block->exec(context, result);
#pragma once

#include "qxAutoPtr.h"
#include "qxGenericValue.h"
#include "qxScriptException.h"
#include "qxScriptExport.h"
#include "qxSharedPtr.h"

#include <cstdint>
#include <span>
#include <type_traits>
#include <vector>

namespace qx::script
{

class codecontext;
class inside;
class statementText;
class valueProvider;
struct callText;
struct shortCuts;

// A host brings statements of its own by deriving from singlefunction below, or from this class where it
// reads its parameters by itself, and gives them to the parser through a scriptModule (qxScriptParser.h);
// most are made shorter by qx::host::addStatement. It overrides clone, destroy and execute, and calls
// execError.
//
// Counted: sharedPtr<statement> keeps a tree, and trees may share their parts.
class QXSCRIPT_API statement
{
public:
    virtual ~statement();

    // A new statement of the same class and state, owned by the caller.
    virtual statement* clone() const = 0;
    // Ends the statement, in the library that made it.
    virtual void destroy() = 0;
    // The statement's own work, for exec alone to call. A statement without a value leaves `result` as it is;
    // one with a value replaces what is there, or converts into the type that is there, as it documents. May
    // run on several threads at once, so it changes no member. Reports failures by execError; whatever else
    // it throws becomes a failure of the statement too.
    virtual void execute(codecontext& context, genericValue& result) const = 0;

    // Parses `text`, see statementParser::createStatementFrom: owned by the caller, null for a text without a
    // statement. `flags` are 0 outside a loop.
    static statement* createFrom(const string& text, int flags);

    // The guarded run, the one way to run a statement: from a host, and from the execute of a host's
    // statement for those inside it. `context` is borrowed for the run. Whatever the statement throws leaves
    // as a scriptExecException that names it, with what was caught as its reason; a qx::string thrown by the
    // script passes as it is. `result` is this run's alone while it lasts.
    void exec(codecontext& context, genericValue& result) const;
    // The guarded run for a caller that drops the value, which saves making it.
    void exec(codecontext& context) const;

    // What the statement is called in messages: its text, at most 126 characters of it. The reference stays
    // valid as long as the statement.
    const string& text() const;
    void setText(const string& source);

    // For execute: reports a failure of the statement that runs, with a text of its own, and does not return.
    // The first argument tells who fails, for those who read the code. Formats are printf-style (qxFormat.h);
    // a null format gives no text.
    template <class... Args>
    [[noreturn]] static void execError(const statement*, const wchar_t* format, const Args&... arguments)
    {
        raiseDetail(string::sformat(format, arguments...));
    }
    template <class... Args>
    [[noreturn]] static void execErrorDetail(const statement*, const wchar_t* format,
                                             const Args&... arguments)
    {
        raiseDetail(string::sformat(format, arguments...));
    }
    // For a catch handler inside execute: hands on `cause`, which may be null, as the reason of this
    // statement's failure. The detail text of an exceptionDetail takes the place of `format`. A null
    // statement is shown as "***unknown***".
    template <class... Args>
    [[noreturn]] static void execError(const statement* failed, const exception* cause, const wchar_t* format,
                                       const Args&... arguments)
    {
        raiseCaused(failed, cause, string::sformat(format, arguments...));
    }

protected:
    statement() = default;
    statement(const statement& other);
    statement& operator=(const statement&) = delete;

private:
    [[noreturn]] static void raiseDetail(const string& detail);
    [[noreturn]] static void raiseCaused(const statement* failed, const exception* cause,
                                         const string& detail);

    friend class inside; // the engine's own access
    friend class statementText;
    friend struct qx::counterPlace<statement>;

    // A piece of the text that the statement was parsed from, or the text that was made of it; for the
    // engine.
    struct storedText
    {
        mutable std::uintptr_t word = 0;
        std::uint32_t start = 0;
        std::uint8_t length = 0;
        std::uint8_t form = 0;
    };

    // For the engine, which sets these for statements of its own.
    static constexpr unsigned char noShortCut = 255;
    static const shortCuts noShortCuts;

    storedText mText;
    const shortCuts* mpShortCuts = &noShortCuts; // lasts for good
    ulong32 mUsers{0u};                          // where sharedPtr counts; a copy has users of its own
    unsigned char mShortCutDepth = noShortCut;
    bool mKeepsType = false;
    bool mGivesText = false;
    bool mStaysInside = false;
};

// A declared parameter of a function.
struct declaredParameter
{
    const wchar_t* name; // for getParamValue, help texts and messages; scripts give parameters by position
    bool required;       // a call without it does not parse
    const wchar_t* failure = nullptr; // of a run in which it does not read; null where that is none
};

// For the check below: true for what declares parameters: names, each with a flag behind it, and perhaps a
// null name at the end.
template <class... Words>
constexpr bool declaresParameters()
{
    bool isName = false;
    bool isText = false;
    bool alternate = true;
    ((isName = !isName, isText = std::is_array_v<Words>,
      alternate =
          alternate && (isName ? std::is_convertible_v<Words, const wchar_t*> : std::is_arithmetic_v<Words>)),
     ...);
    return alternate && !(isName && isText); // a name without its flag
}

// Base of functions with named parameters: declared at parse time, bound by position, asked for by name at
// run time.
//
//     class shout final : public qx::script::singlefunction
//     {
//     public:
//         static statement* create(const std::vector<qx::string>& params, int flags)
//         {
//             qx::autoPtr<shout> made(new shout);
//             made->parse(L"shout", params, flags, L"text", true, L"times", false, nullptr);
//             return made.release();
//         }
//         statement* clone() const override { return new shout(*this); }
//         void destroy() override { delete this; }
//         void execute(qx::script::codecontext& context, qx::genericValue& result) const override
//         {
//             qx::genericValue text;
//             if (!getParamValue(L"text", context, text))
//                 execError(this, L"no text");
//             ...
//         }
//     };
//
// `create` is what a module's factory gives for the name, see scriptModule (qxScriptParser.h).
class QXSCRIPT_API singlefunction : public statement
{
public:
    ~singlefunction() override;

protected:
    singlefunction();
    // The copy has providers of its own.
    singlefunction(const singlefunction& other);

    // Binds the texts of a call to the declared names: pairs of a name and whether it is required, ended by a
    // null name. A null first name declares no parameters. The texts beyond the declared names are not looked
    // at. Always true when it returns; every failure is an errParsingException of "FUNCTION(...)" with the
    // reason as its previous one. To be called once per object.
    template <class... Words>
    bool parse(const wchar_t* function, const std::vector<string>& params, int flags, const Words&... words)
    {
        static_assert(declaresParameters<Words...>(), "names, each with a flag behind it");
        // Two, since the last name may be a pointer that is not null and has no flag.
        const declarationItem items[] = {declarationItem(words)..., declarationItem(nullptr),
                                         declarationItem(nullptr)};
        return parseDeclared(function, params, flags, items);
    }
    // An overload with the declared names in a list.
    bool parse(const wchar_t* function, const std::vector<string>& params, int flags,
               const std::vector<declaredParameter>& declared);

    // Evaluates the parameter `name` (exactly as declared) into `value`, anew at each call. False, with
    // `value` untouched, when the call did not give it.
    bool getParamValue(const wchar_t* name, codecontext& context, genericValue& value) const;

    // What is bound to the declared parameter of this place, from 0. Borrowed; null when the call did not
    // give it.
    const valueProvider* boundProvider(std::size_t place) const;

private:
    // One word of a declaration: a name, a null name, or a required flag.
    struct declarationItem
    {
        explicit declarationItem(const wchar_t* text) : name(text) {}
        explicit declarationItem(std::nullptr_t) {}
        explicit declarationItem(bool required) : flag(required) {}

        const wchar_t* name = nullptr;
        bool flag = false;
    };
    // What a call has given for a declared name.
    struct parameter
    {
        const wchar_t* name; // lasts for good
        autoPtr<valueProvider> provider;
    };

    friend class inside; // the engine's own access

    bool parseDeclared(const wchar_t* function, const std::vector<string>& params, int flags,
                       const declarationItem* items);
    // Binds the texts of a call that is being parsed. The names last for good.
    void bind(const wchar_t* function, const callText& call, std::span<const declaredParameter> declared);
    const parameter* find(const wchar_t* name) const;

    std::vector<parameter> mParams;
};

} // namespace qx::script

// Statements carry their counter, and end where they were made.
template <>
struct qx::counterPlace<qx::script::statement>
{
    static ulong32* obtain(qx::script::statement* counted) noexcept { return &counted->mUsers; }
    template <class Delete>
    static void end(qx::script::statement* object, ulong32*) noexcept
    {
        Delete::destroy(object);
    }
};
template <>
struct qx::deleteObj<qx::script::statement>
{
    static void destroy(qx::script::statement* ended) noexcept { ended->destroy(); }
};
