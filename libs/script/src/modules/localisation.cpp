// Localised messages: made, added to and resolved by scripts, and hung on the host's objects.
#include "modules/qxScriptModules.h"
#include "modules/qxScriptObject.h"
#include "modules/qxScriptRows.h"

#include "qxHeldTypes.h"

namespace qx::script
{

namespace
{

using intrface::messagesaccess;
using intrface::objectRef;

constexpr declaredParameter idParam{L"id", true, L"Error retrieving message-id"};

// --- Localised strings ---

class locstring final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"locstring";
    static constexpr declaredParameter textParam{L"default", true, L"Error retrieving message-default"};
    static constexpr declaredParameter fileParam{L"file", false};
    static constexpr declaredParameter declared[] = {
        idParam,          textParam,         fileParam,        {L"p1id", false}, {L"p1p", false},
        {L"p2id", false}, {L"p2p", false},   {L"p3id", false}, {L"p3p", false},  {L"p4id", false},
        {L"p4p", false},  {L"p5id", false},  {L"p5p", false},  {L"p6id", false}, {L"p6p", false},
        {L"p7id", false}, {L"p7p", false},   {L"p8id", false}, {L"p8p", false},  {L"p9id", false},
        {L"p9p", false},  {L"p10id", false}, {L"p10p", false},
    };
    static constexpr const wchar_t* parameters = L"(id, default, [file], [p1id], [p1p], ... [p10id], [p10p])";

    statement* clone() const override { return new locstring(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const string id = require<string>(idParam, context);
        const string text = require<string>(textParam, context);
        string file;
        read(fileParam, context, file);
        locString message(id.c_str(), text.c_str(), file.empty() ? nullptr : file.c_str());
        for (std::size_t place = firstPair; place < std::size(declared); place += 2)
            if (!addParameter(declared[place], declared[place + 1], context, message.params()))
                break;
        replaceResult(result, message);
    }

private:
    static constexpr std::size_t firstPair = 3; // of a name and a value

    // Adds a parameter of the message. False, without a failure, when it is not there in full: the list ends
    // with it. REQUIRED: the value is evaluated anew for each type that it is tried as, and a text of digits
    // is a number.
    bool addParameter(const declaredParameter& nameParam, const declaredParameter& valueParam,
                      codecontext& context, locStringParams& params) const
    {
        string name;
        locString message;
        double floating = 0;
        string text;
        if (!read(nameParam, context, name))
            return false;
        if (read(valueParam, context, message))
            params.set(&message, name.c_str());
        else if (read(valueParam, context, floating))
            params.set(floating, name.c_str());
        else if (read(valueParam, context, text))
            params.set(text, name.c_str());
        else
            return false;
        return true;
    }
};

class locstringfromid final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"locstringfromid";
    static constexpr declaredParameter declared[] = {idParam};

    statement* clone() const override { return new locstringfromid(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const string id = require<string>(idParam, context);
        replaceResult(result, locString(id.c_str()));
    }
};

// Statements that work on a message, or on a text that is the id of one.
class onMessage : public scriptbasesinglefunction
{
protected:
    static constexpr declaredParameter messageParam{L"this", true, L"Error retrieving string"};

    locString requireMessage(codecontext& context) const
    {
        locString message;
        if (read(messageParam, context, message))
            return message;
        string id;
        if (!read(messageParam, context, id) || id.empty())
            execError(this, messageParam.failure);
        return locString(id.c_str());
    }
};

class locstring_insertparam final : public onMessage
{
public:
    static constexpr const wchar_t* messageName = L"locstring_insertparam";
    static constexpr declaredParameter nameParam{L"id", true, L"Error retrieving parameter id"};
    static constexpr declaredParameter valueParam{L"v", true, L"Error retrieving parameter value"};
    static constexpr declaredParameter declared[] = {messageParam, nameParam, valueParam};

    statement* clone() const override { return new locstring_insertparam(*this); }
    // The message that was given stays as it is; the result is a copy.
    void execute(codecontext& context, genericValue& result) const override
    {
        locString message = requireMessage(context);
        const string id = require<string>(nameParam, context);
        message.params().set(valueText(context), id.c_str());
        replaceResult(result, message);
    }

private:
    // REQUIRED: a message is resolved at once and does not follow a later change of language.
    string valueText(codecontext& context) const
    {
        locString nested;
        if (read(valueParam, context, nested))
            return nested.text();
        return require<string>(valueParam, context);
    }
};

class locstring_getstring final : public onMessage
{
public:
    static constexpr const wchar_t* messageName = L"locstring_getstring";
    static constexpr declaredParameter declared[] = {messageParam};

    statement* clone() const override { return new locstring_getstring(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        replaceResult(result, requireMessage(context).text());
    }
};

// --- Messages of objects ---

constexpr const wchar_t* noMessages = L"Given object does not provide a messages-interface";

class objmsg_add final : public objectfunction
{
public:
    static constexpr const wchar_t* messageName = L"objmsg_add";
    static constexpr declaredParameter objectParam{L"this", true, L"Error retrieving object (1)"};
    static constexpr declaredParameter severityParam{L"severity", true, L"Error retrieving message-severity"};
    static constexpr declaredParameter messageParam{L"msg", true, L"Error retrieving message-text"};
    static constexpr declaredParameter declared[] = {objectParam, idParam, severityParam, messageParam};
    static constexpr const wchar_t* failures[] = {noMessages, objectParam.failure, idParam.failure,
                                                  severityParam.failure, messageParam.failure};

    statement* clone() const override { return new objmsg_add(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        const auto messages = requireObject<messagesaccess>(objectParam, context, noMessages);
        const string id = require<string>(idParam, context);
        const int severity = requireSeverity(context);
        messages->addMessage(id.c_str(), severity, requireMessage(context));
    }

private:
    int requireSeverity(codecontext& context) const
    {
        string word;
        if (!read(severityParam, context, word) || word.empty())
            execError(this, severityParam.failure);
        switch (word.toLower().front()) {
        case L'e':
            return 2; // error
        case L'w':
            return 1; // warning
        default:
            return 0; // information
        }
    }

    // REQUIRED: a plain text is dropped, and the object gets a message without id and text.
    locString requireMessage(codecontext& context) const
    {
        locString message;
        if (!read(messageParam, context, message))
            require<string>(messageParam, context);
        return message;
    }
};

class objmsg_remove final : public objectfunction
{
public:
    static constexpr const wchar_t* messageName = L"objmsg_remove";
    static constexpr declaredParameter objectParam{L"this", true, L"Error retrieving object"};
    static constexpr declaredParameter declared[] = {objectParam, idParam};
    static constexpr const wchar_t* failures[] = {noMessages, objectParam.failure, idParam.failure};

    statement* clone() const override { return new objmsg_remove(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        const auto messages = requireObject<messagesaccess>(objectParam, context, noMessages);
        const string id = require<string>(idParam, context);
        messages->removeMessage(id.c_str());
    }
};

// --- Table ---

constexpr builtin rows[] = {
    namedRow<locstring>(
        L"Gives a message: its id, the text for a language without one, the name of its file, and "
        L"parameters by name and value."),
    namedRow<locstringfromid>(L"Gives the message with this id."),
    namedRow<locstring_insertparam>(
        L"Gives a copy of a message, or of the message with this id, with one more parameter."),
    namedRow<locstring_getstring>(
        L"Gives the text of a message, or of the message with this id, in the language of the program."),
    namedRow<objmsg_add>(L"Hangs a message on an object: an `error`, a `warning` or an `information`.",
                         resultRule::none),
    namedRow<objmsg_remove>(L"Takes the message with this id from an object.", resultRule::none),
};

} // namespace

constinit const builtinTable localisationRows = rows;

} // namespace qx::script
