// Failures on purpose, messages for the user, and where the program lies.
#include "modules/qxScriptModules.h"
#include "modules/qxScriptRows.h"

#include "qxDirectory.h"
#include "qxHeldTypes.h"
#include "qxSystem.h"

namespace qx::script
{

namespace
{

// The host's switch for what scripts show to the user. Statements of the language cannot reach the name,
// since they lower-case theirs. Anything that does not read as a truth value leaves the output on.
bool messagesAllowed(const codecontext& context)
{
    static const scString messageSwitch = scString::createFrom(L"scriptMessagebox");
    bool allowed = true;
    if (context.hasGlobalContextVariable(messageSwitch))
        context.globalContextVariable(messageSwitch).getValue(allowed);
    return allowed;
}

// Statements that throw the text of their parameter.
class throwing : public scriptbasesinglefunction
{
public:
    static constexpr declaredParameter textParam{L"string", true, L"Error retrieving throwerror-Message"};
    static constexpr declaredParameter declared[] = {textParam};

protected:
    // A text that is there and not empty.
    string thrownText(codecontext& context) const
    {
        string text;
        if (!read(textParam, context, text) || text.empty())
            execError(this, textParam.failure);
        return text;
    }
};

class throwerror final : public throwing
{
public:
    static constexpr const wchar_t* messageName = L"throwerror";

    statement* clone() const override { return new throwerror(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        throw unexpectedErrorException(L"%s", thrownText(context));
    }
};

// Throws a plain text, which passes every statement but loops and `treatasfunction` as it is.
class throwmessage final : public throwing
{
public:
    static constexpr const wchar_t* messageName = L"throwmessage";

    statement* clone() const override { return new throwmessage(*this); }
    void execute(codecontext& context, genericValue&) const override { throw string(thrownText(context)); }
};

// Reports a text. There is no condition, and the script goes on.
class _assert final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"assert";
    static constexpr declaredParameter textParam{L"string", true, L"Error retrieving assert-Message"};
    static constexpr declaredParameter declared[] = {textParam};

    statement* clone() const override { return new _assert(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        if (!messagesAllowed(context))
            return;
        const string text = require<string>(textParam, context);
        // REQUIRED: the text is the format. Without arguments its directives yield nothing.
        assertMsg(text.c_str());
    }
};

class executablepath final : public scriptbasestatement
{
public:
    static statement* create(const callText&) { return new executablepath; }
    statement* clone() const override { return new executablepath(*this); }
    void execute(codecontext&, genericValue& result) const override
    {
        directory folder;
        getModulePath(string(), folder);
        replaceResult(result, folder.fullName());
    }
};

// A word of the script, and what it adds to the flags of a message box.
struct flagWord
{
    std::wstring_view word;
    uint flags;
};

constexpr flagWord iconWords[] = {
    {L"exclamation", 48}, {L"warning", 48}, {L"information", 64}, {L"asterisk", 64},
    {L"question", 32},    {L"stop", 16},    {L"error", 16},       {L"hand", 16},
};

constexpr flagWord buttonWords[] = {
    {L"ok", 0}, {L"okcancel", 1}, {L"retrycancel", 5}, {L"yesno", 4}, {L"yesnocancel", 3},
};

// 0 for a word that is unknown.
uint flagsOf(std::span<const flagWord> words, std::wstring_view word)
{
    for (const flagWord& known : words) {
        if (known.word == word)
            return known.flags;
    }
    return 0;
}

// Empty for an answer that the language has no word for.
const wchar_t* answerWord(int button)
{
    switch (button) {
    case buttonOk:
        return L"ok";
    case buttonCancel:
        return L"cancel";
    case buttonRetry:
        return L"retry";
    case buttonYes:
        return L"yes";
    case buttonNo:
        return L"no";
    default:
        return L"";
    }
}

// Text and title may be ids of localised messages.
string localised(const string& idOrText)
{
    return locString(idOrText.c_str()).text();
}

class messagebox final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"messagebox";
    static constexpr declaredParameter textParam{L"string", true, L"Error retrieving messagebox-Message"};
    static constexpr declaredParameter buttonsParam{L"buttons", false};
    static constexpr declaredParameter iconParam{L"icon", false};
    static constexpr declaredParameter titleParam{L"title", false};
    static constexpr declaredParameter declared[] = {textParam, buttonsParam, iconParam, titleParam};

    statement* clone() const override { return new messagebox(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        if (!messagesAllowed(context))
            return;
        const string text = require<string>(textParam, context);
        const string buttons = optional(buttonsParam, context, L"ok").toLower();
        const string icon = optional(iconParam, context, L"").toLower();
        const string title = optional(titleParam, context, L"Orbelan");
        const uint flags = flagsOf(iconWords, icon) | flagsOf(buttonWords, buttons);
        const string shownTitle = localised(title);
        const string shownText = localised(text);
        const int answer = system::current().messageBox(mainHWND(), shownText, shownTitle, flags);
        replaceResult(result, string(answerWord(answer)));
    }

private:
    // A parameter that is missing, or does not read as text, is its default.
    string optional(const declaredParameter& asked, codecontext& context, const wchar_t* otherwise) const
    {
        string text = otherwise;
        read(asked, context, text);
        return text;
    }
};

// --- Table ---

constexpr builtin rows[] = {
    namedRow<throwerror>(L"Fails with this text.", resultRule::none),
    namedRow<throwmessage>(
        L"Fails with this text alone: no statement on the way out adds its own, loops and treatasfunction "
        L"excepted.",
        resultRule::none),
    namedRow<_assert>(L"Reports a text to the host, and goes on.", resultRule::none),
    {.name = L"executablepath",
     .create = executablepath::create,
     .parameters = L"()",
     .summary = L"Gives the directory of the program."},
    namedRow<messagebox>(
        L"Shows a text, or the message with this id, and waits; gives the button: `ok`, `cancel`, `retry`, "
        L"`yes` or `no`.",
        resultRule::replacesIfAny),
};

} // namespace

constinit const builtinTable messageRows = rows;

} // namespace qx::script
