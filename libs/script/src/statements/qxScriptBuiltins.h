// The built-in statements as tables: what the modules give to the parser, to help texts and to the reference.
#pragma once

#include "parser/qxScriptSource.h"
#include "qxScriptParser.h"
#include "qxScriptTypes.h"

#include <deque>
#include <span>

namespace qx::script
{

// A data type argument of a call, which the call lends.
class typeWord : public std::wstring_view
{
public:
    using std::wstring_view::wstring_view;
    explicit typeWord(std::wstring_view word) noexcept : std::wstring_view(word) {}

    operator string() const { return string(std::wstring(*this)); }
    string lower() const { return string(*this).lower(); }
};

ePrimitiveScriptType parseScriptType(const typeWord& word);

// One call as the parser cut it. Borrowed for the length of the factory's work.
struct callText
{
    std::wstring_view name;
    std::span<const typeWord> types;
    std::span<const textPiece> params;
    int flags;
};

// A call that is given as texts, which are borrowed.
class callOfTexts
{
public:
    callOfTexts(const string& name, const std::vector<string>& types, const std::vector<string>& params,
                int flags);
    callOfTexts(const callOfTexts&) = delete;
    callOfTexts& operator=(const callOfTexts&) = delete;

    const callText& text() const noexcept { return mText; }

private:
    std::vector<typeWord> mTypes;
    std::deque<sourceText> mSources;
    std::vector<textPiece> mParams;
    callText mText;
};

// Texts with which a statement fails, or with which its text is refused, exactly as in the code. They last
// for good.
using failureList = std::span<const wchar_t* const>;

// What the result of a statement does to a value that it is written into.
enum class resultRule : unsigned char
{
    replaces,           // it, whatever that holds
    replacesIfAny,      // the same; a run may have no value, which leaves it as it is
    keepsType,          // of it, and is converted
    keepsTypeButOfDate, // the same, but a date replaces it
    asValue,            // what the value of the parameter does
    none                // the statement has no value
};

// One script name: how its statement is made, and what help texts and the reference tell of it.
struct builtin
{
    const wchar_t* name;
    statement* (*create)(const callText& call); // gives null where the module declines the call
    const wchar_t* parameters;                  // summary for people: `<type>(name, [value])`
    const wchar_t* types = nullptr;             // the data types that are taken: `short, int`; null for none
    resultRule result = resultRule::replaces;   // as its class writes it
    const wchar_t* summary = L"";               // a sentence: what it does, and its value
    failureList failures = {};
};

using builtinTable = std::span<const builtin>;

// Each source of a module ends with a table of its own.
struct builtinModule
{
    const wchar_t* name;           // `variable`, `control`, ...
    const builtinTable* tables[3]; // null for none

    template <class Use>
    void forEachRow(const Use& use) const
    {
        for (const builtinTable* const table : tables)
            if (table)
                for (const builtin& row : *table)
                    use(row);
    }
};

// The sixteen modules, in the order in which the parser asks them.
std::span<const builtinModule> builtinModules();

// The statement that a bare name stands for.
inline constexpr const wchar_t* variableStatement = L"getvar";

// The row of a lower-case name among all modules; null for an unknown name.
const builtin* findBuiltin(std::wstring_view name);

// The module objects: one array, in the same order.
std::span<scriptModule> builtinModuleObjects();

} // namespace qx::script
