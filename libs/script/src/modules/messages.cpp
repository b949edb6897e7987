// Failures on purpose, messages for the user, and where the program lies.
#include "modules/controlStatements.h"
#include "statements/qxScriptBase.h"

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
    static constexpr declaredParameter declared[] = {{L"string", true}};

protected:
    // A text that is there and not empty.
    string thrownText(codecontext& context) const
    {
        string text;
        if (!read(L"string", context, text) || text.empty())
            execError(this, L"Error retrieving throwerror-Message");
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
    static constexpr declaredParameter declared[] = {{L"string", true}};

    statement* clone() const override { return new _assert(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        if (!messagesAllowed(context))
            return;
        const string text = require<string>(L"string", context, L"Error retrieving assert-Message");
        // REQUIRED: the text is the format. Without arguments its directives yield nothing.
        assertMsg(text.c_str());
    }
};

class executablepath final : public scriptbasesinglefunction
{
public:
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
    static constexpr declaredParameter declared[] = {
        {L"string", true}, {L"buttons", false}, {L"icon", false}, {L"title", false}};

    statement* clone() const override { return new messagebox(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        if (!messagesAllowed(context))
            return;
        const string text = require<string>(L"string", context, L"Error retrieving messagebox-Message");
        const string buttons = optional(L"buttons", context, L"ok").toLower();
        const string icon = optional(L"icon", context, L"").toLower();
        const string title = optional(L"title", context, L"Orbelan");
        const uint flags = flagsOf(iconWords, icon) | flagsOf(buttonWords, buttons);
        const string shownTitle = localised(title);
        const string shownText = localised(text);
        const int answer = system::current().messageBox(mainHWND(), shownText, shownTitle, flags);
        replaceResult(result, string(answerWord(answer)));
    }

private:
    // A parameter that is missing, or does not read as text, is its default.
    string optional(const wchar_t* name, codecontext& context, const wchar_t* otherwise) const
    {
        string text = otherwise;
        read(name, context, text);
        return text;
    }
};

} // namespace

statement* createThrowerror(const callText& call)
{
    return createNamed<throwerror>(call);
}

statement* createThrowmessage(const callText& call)
{
    return createNamed<throwmessage>(call);
}

statement* createAssert(const callText& call)
{
    return createNamed<_assert>(call);
}

statement* createExecutablepath(const callText&)
{
    return new executablepath;
}

statement* createMessagebox(const callText& call)
{
    return createNamed<messagebox>(call);
}

} // namespace qx::script
