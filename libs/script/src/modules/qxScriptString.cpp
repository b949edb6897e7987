// Text functions. Positions and lengths count UTF-16 code units, from 0.
#include "modules/qxScriptModules.h"
#include "modules/qxScriptNamed.h"
#include "modules/qxScriptRows.h"

#include "qxHeldTypes.h"

#include <algorithm>
#include <limits>

namespace qx::script
{

namespace
{

constexpr const wchar_t* noText = L"error retrieving string";
constexpr declaredParameter textParam{L"this", true, noText};
constexpr declaredParameter whereParam{L"where", true, L"error retrieving where-identification"};

struct scr_strlower
{
    static constexpr const wchar_t* messageName = L"strlower";
    static constexpr declaredParameter declared[] = {textParam};
    using operands = operandTypes<string>;

    static void of(textScratch& text)
    {
        text.change([](string& all) { all.toLower(); });
    }
};

struct scr_strupper
{
    static constexpr const wchar_t* messageName = L"strupper";
    static constexpr declaredParameter declared[] = {textParam};
    using operands = operandTypes<string>;

    static void of(textScratch& text)
    {
        text.change([](string& all) { all.toUpper(); });
    }
};

struct scr_strreplace
{
    static constexpr const wchar_t* messageName = L"strreplace";
    static constexpr declaredParameter declared[] = {textParam,
                                                     {L"what", true, L"error retrieving string to exchange"},
                                                     {L"with", true, L"error retrieving exchange string"}};
    using operands = operandTypes<string, string, string>;

    static void of(textScratch& text, std::wstring_view what, std::wstring_view with)
    {
        if (text.view().find(what) != std::wstring_view::npos)
            text.change([&](string& all) { all.replace(what, with); });
    }
};

struct scr_strdelspaces
{
    static constexpr const wchar_t* messageName = L"strdelspaces";
    static constexpr declaredParameter declared[] = {textParam, whereParam};
    using operands = operandTypes<string, string>;

    // A word other than these leaves the text as it is.
    static void of(textScratch& text, std::wstring_view where)
    {
        constexpr std::wstring_view spaces = L" \t";
        const string word = string(where).toLower();
        if (word == L"leading")
            text.narrow(std::min(text.view().find_first_not_of(spaces), text.view().size()));
        else if (word == L"trailing")
            text.narrow(0, text.view().find_last_not_of(spaces) + 1);
        else if (word == L"all")
            text.change([&](string& all) { all.deleteAll(spaces); });
    }
};

struct scr_strfind
{
    static constexpr const wchar_t* messageName = L"strfind";
    static constexpr declaredParameter declared[] = {textParam, {L"what", true, L"error retrieving what"}};
    using operands = operandTypes<string, string>;

    // -1 where the text does not occur.
    static long32 of(std::wstring_view text, std::wstring_view what)
    {
        const std::size_t found = text.find(what);
        return found == std::wstring_view::npos ? -1 : static_cast<int>(found);
    }
};

struct pieces
{
    static constexpr const wchar_t* messageName = L"strsplit";
    static constexpr declaredParameter declared[] = {textParam, whereParam};
};

class scr_strsplit final : public namedoperands<pieces>
{
public:
    statement* clone() const override { return new scr_strsplit(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const auto text = require<string>(0, context);
        const auto where = require<string>(1, context);
        sharedPtr<genericValue::holderbase> parts(
            new genericValue::valueholder<valueArray>(cut(text, where)));
        result.swapHolder(parts);
    }

private:
    // One part more than there are separators; an empty one never occurs.
    static valueArray cut(std::wstring_view text, std::wstring_view separator)
    {
        valueArray parts;
        textScratch part;
        std::size_t hit = 0;
        while (!separator.empty() && (hit = text.find(separator)) != text.npos) {
            part.borrow(text.substr(0, hit));
            parts.push_back(part.takeValue());
            text.remove_prefix(hit + separator.size());
        }
        part.borrow(text);
        parts.push_back(part.takeValue());
        return parts;
    }
};

struct piece
{
    static constexpr const wchar_t* messageName = L"substr";
    static constexpr declaredParameter declared[] = {
        textParam, {L"sidx", true, L"error retrieving start index"}, {L"len", false}};
};

class scr_substr final : public namedoperands<piece>
{
public:
    static constexpr const wchar_t* beyond = L"start index out of range";
    static constexpr const wchar_t* failures[] = {beyond};

    statement* clone() const override { return new scr_substr(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        string text = require<string>(0, context);
        const int start = require<int>(1, context);
        int length = -1;
        mOperands[2].read(context, length);
        // REQUIRED: the last index of an empty text wraps, so that every start passes, and the piece itself
        // throws std::out_of_range for all but 0.
        if (static_cast<uint64>(start) > static_cast<uint64>(text.size()) - 1)
            execError(this, beyond);
        replaceResult(result, string(text.substr(static_cast<std::size_t>(start), sizeOf(length))));
    }
    bool textValue(codecontext& context, textScratch& text) const
    {
        int start = 0;
        int length = -1;
        if (!mOperands[0].shortCut().textValue(context, text) ||
            !mOperands[1].shortCut().read(context, start) ||
            (mOperands[2] && !mOperands[2].shortCut().read(context, length)))
            return false;
        const std::size_t from = static_cast<std::size_t>(start);
        if (from >= text.view().size() && (from != 0 || !text.view().empty()))
            return false;
        text.narrow(from, sizeOf(length));
        return true;
    }

private:
    void parsed() override { offer(this, writing::textReplaces, operandTypes<string, int, int>()); }

    // Less than nothing stands for all that follows.
    static std::size_t sizeOf(int length)
    {
        return static_cast<std::size_t>(length < 0 ? std::numeric_limits<int>::max() : length);
    }
};

class scr_strlen final : public scriptbasestatement
{
public:
    static constexpr const wchar_t* tooFew = L"strlen::createFrom: number of parameters < 1";
    static constexpr const wchar_t* unusable = L"strlen::createFrom: error parsing \"%s\"";
    static constexpr const wchar_t* missing = L"error retrieving string (1)";
    static constexpr const wchar_t* unreadable = L"error retrieving string (2)";
    static constexpr const wchar_t* failures[] = {tooFew, unusable, missing, unreadable};

    explicit scr_strlen(operand value) : mpValue(std::move(value))
    {
        offerShortCuts(this, depthOf(mpValue), writing::keepsType);
    }

    statement* clone() const override { return new scr_strlen(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        if (!mpValue)
            execError(this, missing);
        textScratch text;
        if (!mpValue.readText(context, text))
            execError(this, unreadable);
        writeToSlot(result, uint64(text.view().size()));
    }
    std::uint64_t smallValue(codecontext& context) const
    {
        textScratch text;
        return mpValue.shortCut().textValue(context, text) ? cell::make(uint64(text.view().size()))
                                                           : cell::refused;
    }
    bool resolve(compiler& names) const { return mpValue.resolve(names); }

    static statement* create(const callText& call)
    {
        if (call.params.empty())
            refuse(tooFew);
        return new scr_strlen(requireOperand(call, 0, unusable));
    }

private:
    operand mpValue;
};

class scr_strcat final : public scriptbasestatement
{
public:
    static constexpr const wchar_t* tooFew = L"strcat::createFrom: number of parameters < 2";
    static constexpr const wchar_t* unusable = L"strcat::createFrom: error parsing \"%s\"";
    static constexpr const wchar_t* failures[] = {tooFew, unusable, noText};

    using providers = std::vector<operand, freeListAllocator<operand>>;

    explicit scr_strcat(providers values) : mValues(std::move(values))
    {
        unsigned depth = 0;
        for (const operand& value : mValues)
            depth = std::max(depth, value.shortCut().depth());
        offerShortCuts(this, depth, writing::textKeepsType);
    }

    statement* clone() const override { return new scr_strcat(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        string joined;
        for (const operand& value : mValues) {
            textScratch text;
            if (!value.readText(context, text))
                execError(this, noText);
            joined += text.view();
        }
        writeToSlot(result, std::move(joined));
    }
    bool textValue(codecontext& context, textScratch& text) const
    {
        text.borrow({});
        for (const operand& value : mValues) {
            textScratch piece;
            if (!value.shortCut().textValue(context, piece))
                return false;
            text.append(piece.view());
        }
        return true;
    }
    bool resolve(compiler& names) const
    {
        return std::all_of(mValues.begin(), mValues.end(),
                           [&names](const operand& one) { return one.resolve(names); });
    }

    static statement* create(const callText& call)
    {
        if (call.params.size() < 2)
            refuse(tooFew);
        providers values;
        values.reserve(call.params.size());
        for (std::size_t i = 0; i < call.params.size(); ++i)
            values.push_back(requireOperand(call, i, unusable));
        return new scr_strcat(std::move(values));
    }

private:
    providers mValues;
};

// --- Table ---

constexpr builtin rows[] = {
    {.name = L"strlen",
     .create = scr_strlen::create,
     .parameters = L"(text)",
     .result = resultRule::keepsType,
     .summary = L"Gives the length of a text.",
     .failures = scr_strlen::failures},
    {.name = L"strcat",
     .create = scr_strcat::create,
     .parameters = L"(text, text, ...)",
     .result = resultRule::keepsType,
     .summary = L"Joins two or more texts.",
     .failures = scr_strcat::failures},
    namedRow<namedtextoperation<scr_strlower>>(L"Gives the text in lower case."),
    namedRow<namedtextoperation<scr_strupper>>(L"Gives the text in upper case."),
    namedRow<namedtextoperation<scr_strreplace>>(L"Gives the text with each `what` replaced by `with`."),
    namedRow<namedtextoperation<scr_strdelspaces>>(
        L"Gives the text without its blanks and tabulators: `leading`, `trailing` or `all`."),
    namedRow<scr_strsplit>(L"Gives an array of the pieces between the places where `where` occurs."),
    namedRow<namedoperation<scr_strfind>>(L"Gives the position of the first `what`, from 0, or -1."),
    namedRow<scr_substr>(L"Gives `len` characters from `sidx` on, or all that follow."),
};

} // namespace

constinit const builtinTable stringRows = rows;

} // namespace qx::script
