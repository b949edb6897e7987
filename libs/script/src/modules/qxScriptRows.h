// Rows of the modules' tables that are derived from the classes of the statements, so that each name,
// parameter and failure is told once: by the class, which uses it.
//
// Of a statement with named parameters everything but its summary is derived:
//
//     class file_copy final : public onFile
//     {
//     public:
//         static constexpr const wchar_t* messageName = L"file_copy";
//         static constexpr declaredParameter toPath{L"topath", true, L"Error retrieving destination path"};
//         static constexpr declaredParameter toFile{L"tofile", false};
//         static constexpr declaredParameter declared[] = {fileParam, toPath, toFile};
//         static constexpr const wchar_t* notCopied = L"Error copying file";
//         static constexpr const wchar_t* failures[] = {notCopied};
//         ...
//     namedRow<file_copy>(L"Copies a file into a directory."),
//
// Its name is `scriptName` where messages call it by another name, else `messageName` in lower case. Its
// parameters are told by `parameters` where that is there, else by what is declared. `failures` holds what it
// fails with besides; those of parameters stand in front of them, unless the list gives them their place.
//
// Everything is computed when the library is compiled: a table is constant-initialised.
#pragma once

#include "statements/qxScriptBase.h"
#include "statements/qxScriptDataTypes.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace qx::script
{

namespace rowtext
{

// Writes texts one after the other, or only counts their characters where there is nowhere to write.
class textWriter
{
public:
    constexpr explicit textWriter(wchar_t* out) : mOut(out) {}

    constexpr void add(std::wstring_view text)
    {
        for (const wchar_t character : text) {
            if (mOut)
                mOut[mSize] = character;
            ++mSize;
        }
    }
    constexpr std::size_t size() const { return mSize; }

private:
    wchar_t* mOut;
    std::size_t mSize = 0;
};

constexpr wchar_t lowered(wchar_t character)
{
    return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character - L'A' + L'a') : character;
}

template <class Statement>
constexpr std::size_t writeName(wchar_t* out)
{
    textWriter text(out);
    for (const wchar_t character : std::wstring_view(Statement::messageName)) {
        const wchar_t small = lowered(character);
        text.add({&small, 1});
    }
    return text.size();
}

template <class Statement>
constexpr std::size_t writeParameters(wchar_t* out)
{
    textWriter text(out);
    text.add(L"(");
    std::wstring_view between;
    for (const declaredParameter& parameter : Statement::declared) {
        if (*parameter.name == L'\0') // stands for none
            continue;
        text.add(between);
        text.add(parameter.required ? L"" : L"[");
        text.add(parameter.name);
        text.add(parameter.required ? L"" : L"]");
        between = L", ";
    }
    text.add(L")");
    return text.size();
}

// The text that a function writes, with a zero behind it.
template <std::size_t (*Write)(wchar_t*)>
inline constexpr auto written = [] {
    std::array<wchar_t, Write(nullptr) + 1> text{};
    Write(text.data());
    return text;
}();

template <class Statement>
constexpr const wchar_t* nameOf()
{
    if constexpr (requires { Statement::scriptName; })
        return Statement::scriptName;
    else
        return written<writeName<Statement>>.data();
}

template <class Statement>
constexpr const wchar_t* parametersOf()
{
    if constexpr (requires { Statement::parameters; })
        return Statement::parameters;
    else
        return written<writeParameters<Statement>>.data();
}

constexpr bool has(failureList list, const wchar_t* text)
{
    for (const wchar_t* const other : list)
        if (std::wstring_view(other) == text)
            return true;
    return false;
}

// What a statement fails with beyond its parameters.
template <class Statement>
constexpr failureList ownFailures()
{
    if constexpr (requires { Statement::failures; })
        return Statement::failures;
    else
        return {};
}

// Writes all failures of a statement, each once, or only counts them where `out` is null.
template <class Statement>
constexpr std::size_t writeFailures(const wchar_t** out)
{
    const failureList own = ownFailures<Statement>();
    std::array<const wchar_t*, std::size(Statement::declared) + 1> ofParameters{};
    std::size_t count = 0;
    for (const declaredParameter& parameter : Statement::declared)
        if (parameter.failure && !has(own, parameter.failure) &&
            !has({ofParameters.data(), count}, parameter.failure))
            ofParameters[count++] = parameter.failure;
    if (out) {
        std::copy_n(ofParameters.begin(), count, out);
        std::copy(own.begin(), own.end(), out + count);
    }
    return count + own.size();
}

template <class Statement>
inline constexpr auto allFailures = [] {
    std::array<const wchar_t*, writeFailures<Statement>(nullptr)> texts{};
    writeFailures<Statement>(texts.data());
    return texts;
}();

} // namespace rowtext

template <class Statement>
constexpr builtin namedRow(const wchar_t* summary, resultRule result = resultRule::replaces)
{
    return {.name = rowtext::nameOf<Statement>(),
            .create = createNamed<Statement>,
            .parameters = rowtext::parametersOf<Statement>(),
            .result = result,
            .summary = summary,
            .failures = rowtext::allFailures<Statement>};
}

// What a row tells of its data types: the words of a list.

template <class T>
struct keywordOf
{
    static constexpr const wchar_t* word = dataTypeOf<T>.word;
};

namespace rowtext
{

template <class Types, template <class> class Word>
struct typeWords;
template <class... T, template <class> class Word>
struct typeWords<typeList<T...>, Word>
{
    static constexpr std::size_t write(wchar_t* out)
    {
        textWriter text(out);
        std::wstring_view between;
        ((text.add(between), text.add(Word<T>::word), between = L", "), ...);
        return text.size();
    }
};

} // namespace rowtext

template <class Types, template <class> class Word = keywordOf>
inline constexpr const wchar_t* wordsOf = rowtext::written<rowtext::typeWords<Types, Word>::write>.data();

// The row of the same statement under another name.
constexpr builtin renamed(builtin row, const wchar_t* name)
{
    row.name = name;
    return row;
}

// Several lists as one, for families of statements that share some of their failures.
template <std::size_t... Size>
constexpr auto joined(const std::array<const wchar_t*, Size>&... lists)
{
    std::array<const wchar_t*, (Size + ...)> all{};
    auto out = all.begin();
    ((out = std::copy(lists.begin(), lists.end(), out)), ...);
    return all;
}

} // namespace qx::script
