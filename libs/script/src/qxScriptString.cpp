// Text functions. Positions and lengths count UTF-16 code units, from 0.
#include "qxScriptBase.h"
#include "qxScriptModules.h"

#include "qxHeldTypes.h"

#include <limits>

namespace qx::script
{

namespace
{

// Base of the functions with named parameters: each works on the text `this`.
class textFunction : public scriptbasesinglefunction
{
protected:
    string requireText(codecontext& context) const
    {
        return require<string>(L"this", context, L"error retrieving string");
    }
};

class scr_strlower final : public textFunction
{
public:
    static constexpr const wchar_t* messageName = L"strlower";
    static constexpr declaredParameter declared[] = {{L"this", true}};

    statement* clone() const override { return new scr_strlower(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        replaceResult(result, requireText(context).toLower());
    }
};

class scr_strupper final : public textFunction
{
public:
    static constexpr const wchar_t* messageName = L"strupper";
    static constexpr declaredParameter declared[] = {{L"this", true}};

    statement* clone() const override { return new scr_strupper(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        replaceResult(result, requireText(context).toUpper());
    }
};

class scr_strreplace final : public textFunction
{
public:
    static constexpr const wchar_t* messageName = L"strreplace";
    static constexpr declaredParameter declared[] = {{L"this", true}, {L"what", true}, {L"with", true}};

    statement* clone() const override { return new scr_strreplace(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        string text = requireText(context);
        const auto what = require<string>(L"what", context, L"error retrieving string to exchange");
        const auto with = require<string>(L"with", context, L"error retrieving exchange string");
        replaceResult(result, text.replace(what, with));
    }
};

class scr_strdelspaces final : public textFunction
{
public:
    static constexpr const wchar_t* messageName = L"strdelspaces";
    static constexpr declaredParameter declared[] = {{L"this", true}, {L"where", true}};

    statement* clone() const override { return new scr_strdelspaces(*this); }
    // A word other than these leaves the text as it is.
    void execute(codecontext& context, genericValue& result) const override
    {
        const wchar_t* const spaces = L" \t";
        string text = requireText(context);
        auto where = require<string>(L"where", context, L"error retrieving where-identification");
        where.toLower();
        if (where == L"leading")
            text.deleteLeading(spaces);
        else if (where == L"trailing")
            text.deleteTrailing(spaces);
        else if (where == L"all")
            text.deleteAll(spaces);
        replaceResult(result, text);
    }
};

class scr_strsplit final : public textFunction
{
public:
    static constexpr const wchar_t* messageName = L"strsplit";
    static constexpr declaredParameter declared[] = {{L"this", true}, {L"where", true}};

    statement* clone() const override { return new scr_strsplit(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const string text = requireText(context);
        const auto where = require<string>(L"where", context, L"error retrieving where-identification");
        std::vector<string> parts;
        text.splitAt(where, parts, false);
        replaceResult(result, valueArray(parts.begin(), parts.end()));
    }
};

class scr_strfind final : public textFunction
{
public:
    static constexpr const wchar_t* messageName = L"strfind";
    static constexpr declaredParameter declared[] = {{L"this", true}, {L"what", true}};

    statement* clone() const override { return new scr_strfind(*this); }
    // -1 where the text does not occur.
    void execute(codecontext& context, genericValue& result) const override
    {
        const string text = requireText(context);
        const auto what = require<string>(L"what", context, L"error retrieving what");
        const std::size_t found = text.find(what);
        replaceResult(result, long32(found == string::npos ? -1 : static_cast<int>(found)));
    }
};

class scr_substr final : public textFunction
{
public:
    static constexpr const wchar_t* messageName = L"substr";
    static constexpr declaredParameter declared[] = {{L"this", true}, {L"sidx", true}, {L"len", false}};

    statement* clone() const override { return new scr_substr(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const string text = requireText(context);
        const int start = require<int>(L"sidx", context, L"error retrieving start index");
        int length = -1;
        read(L"len", context, length);
        if (length < 0)
            length = std::numeric_limits<int>::max();
        // REQUIRED: the last index of an empty text wraps, so that every start passes, and the piece itself
        // throws std::out_of_range for all but 0.
        if (static_cast<uint64>(start) > static_cast<uint64>(text.size()) - 1)
            execError(this, L"start index out of range");
        replaceResult(result,
                      string(text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(length))));
    }
};

class scr_strlen final : public scriptbasestatement
{
public:
    explicit scr_strlen(ownedProvider value) : mpValue(std::move(value)) {}

    statement* clone() const override { return new scr_strlen(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        if (!mpValue)
            execError(this, L"error retrieving string (1)");
        string text;
        if (!mpValue.read(context, text))
            execError(this, L"error retrieving string (2)");
        writeToSlot(result, uint64(text.size()));
    }

    static statement* create(const callText& call)
    {
        if (call.params.empty())
            refuse(L"strlen::createFrom: number of parameters < 1");
        return new scr_strlen(requireProvider(call, 0, L"strlen::createFrom: error parsing \"%s\""));
    }

private:
    ownedProvider mpValue;
};

class scr_strcat final : public scriptbasestatement
{
public:
    explicit scr_strcat(std::vector<ownedProvider> values) : mValues(std::move(values)) {}

    statement* clone() const override { return new scr_strcat(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        string joined;
        for (const ownedProvider& value : mValues) {
            string text;
            if (!value.read(context, text))
                execError(this, L"error retrieving string");
            joined += text;
        }
        writeToSlot(result, joined);
    }

    static statement* create(const callText& call)
    {
        if (call.params.size() < 2)
            refuse(L"strcat::createFrom: number of parameters < 2");
        std::vector<ownedProvider> values;
        values.reserve(call.params.size());
        for (std::size_t i = 0; i < call.params.size(); ++i)
            values.push_back(requireProvider(call, i, L"strcat::createFrom: error parsing \"%s\""));
        return new scr_strcat(std::move(values));
    }

private:
    std::vector<ownedProvider> mValues;
};

// --- Table ---

const builtin rows[] = {
    {.name = L"strlen",
     .create = scr_strlen::create,
     .parameters = L"(text)",
     .summary = L"Gives the length of a text.",
     .failures = {L"strlen::createFrom: number of parameters < 1\n"
                  L"strlen::createFrom: error parsing \"%s\"\n"
                  L"error retrieving string (1)\n"
                  L"error retrieving string (2)"}},
    {.name = L"strcat",
     .create = scr_strcat::create,
     .parameters = L"(text, text, ...)",
     .summary = L"Joins two or more texts.",
     .failures = {L"strcat::createFrom: number of parameters < 2\n"
                  L"strcat::createFrom: error parsing \"%s\"\n"
                  L"error retrieving string"}},
    {.name = L"strlower",
     .create = createNamed<scr_strlower>,
     .parameters = L"(this)",
     .summary = L"Gives the text in lower case.",
     .failures = {L"error retrieving string"}},
    {.name = L"strupper",
     .create = createNamed<scr_strupper>,
     .parameters = L"(this)",
     .summary = L"Gives the text in upper case.",
     .failures = {L"error retrieving string"}},
    {.name = L"strreplace",
     .create = createNamed<scr_strreplace>,
     .parameters = L"(this, what, with)",
     .summary = L"Gives the text with each `what` replaced by `with`.",
     .failures = {L"error retrieving string\n"
                  L"error retrieving string to exchange\n"
                  L"error retrieving exchange string"}},
    {.name = L"strdelspaces",
     .create = createNamed<scr_strdelspaces>,
     .parameters = L"(this, where)",
     .summary = L"Gives the text without its blanks and tabulators: `leading`, `trailing` or `all`.",
     .failures = {L"error retrieving string\n"
                  L"error retrieving where-identification"}},
    {.name = L"strsplit",
     .create = createNamed<scr_strsplit>,
     .parameters = L"(this, where)",
     .summary = L"Gives an array of the pieces between the places where `where` occurs.",
     .failures = {L"error retrieving string\n"
                  L"error retrieving where-identification"}},
    {.name = L"strfind",
     .create = createNamed<scr_strfind>,
     .parameters = L"(this, what)",
     .summary = L"Gives the position of the first `what`, from 0, or -1.",
     .failures = {L"error retrieving string\n"
                  L"error retrieving what"}},
    {.name = L"substr",
     .create = createNamed<scr_substr>,
     .parameters = L"(this, sidx, [len])",
     .summary = L"Gives `len` characters from `sidx` on, or all that follow.",
     .failures = {L"error retrieving string\n"
                  L"error retrieving start index\n"
                  L"start index out of range"}},
};

} // namespace

constinit const builtinModule stringModule{L"string", rows};

} // namespace qx::script
