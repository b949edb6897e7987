// Localised messages: made, added to and resolved by scripts, and hung on the host's objects.
#include "modules/qxScriptModules.h"
#include "qxScriptInterfaces.h"
#include "qxScriptReference.h"
#include "statements/qxScriptBase.h"

#include "qxHeldTypes.h"

namespace qx::script
{

namespace
{

using intrface::messagesaccess;
using intrface::unknown;
using objectRef = intrface::interfaceptr<unknown>;

// --- Localised strings ---

class locstring final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"locstring";
    static constexpr declaredParameter declared[] = {
        {L"id", true},    {L"default", true}, {L"file", false}, {L"p1id", false}, {L"p1p", false},
        {L"p2id", false}, {L"p2p", false},    {L"p3id", false}, {L"p3p", false},  {L"p4id", false},
        {L"p4p", false},  {L"p5id", false},   {L"p5p", false},  {L"p6id", false}, {L"p6p", false},
        {L"p7id", false}, {L"p7p", false},    {L"p8id", false}, {L"p8p", false},  {L"p9id", false},
        {L"p9p", false},  {L"p10id", false},  {L"p10p", false},
    };

    statement* clone() const override { return new locstring(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const string id = require<string>(L"id", context, L"Error retrieving message-id");
        const string text = require<string>(L"default", context, L"Error retrieving message-default");
        string file;
        read(L"file", context, file);
        locString message(id.c_str(), text.c_str(), file.empty() ? nullptr : file.c_str());
        int number = 1;
        while (number <= mostParameters && addParameter(number, context, message.params()))
            ++number;
        replaceResult(result, message);
    }

private:
    static constexpr int mostParameters = 10;

    // Adds the parameter of this number. False, without a failure, when it is not there in full: the list
    // ends with it. REQUIRED: the value is evaluated anew for each type that it is tried as, and a text of
    // digits is a number.
    bool addParameter(int number, codecontext& context, locStringParams& params) const
    {
        const string prefix = L"p" + std::to_wstring(number);
        const string valueName = prefix + L"p";
        string name;
        locString message;
        double floating = 0;
        string text;
        if (!read((prefix + L"id").c_str(), context, name))
            return false;
        if (read(valueName.c_str(), context, message))
            params.set(&message, name.c_str());
        else if (read(valueName.c_str(), context, floating))
            params.set(floating, name.c_str());
        else if (read(valueName.c_str(), context, text))
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
    static constexpr declaredParameter declared[] = {{L"id", true}};

    statement* clone() const override { return new locstringfromid(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const string id = require<string>(L"id", context, L"Error retrieving message-id");
        replaceResult(result, locString(id.c_str()));
    }
};

// Statements that work on a message, or on a text that is the id of one.
class onMessage : public scriptbasesinglefunction
{
protected:
    locString requireMessage(codecontext& context) const
    {
        locString message;
        if (read(L"this", context, message))
            return message;
        string id;
        if (!read(L"this", context, id) || id.empty())
            execError(this, L"Error retrieving string");
        return locString(id.c_str());
    }
};

class locstring_insertparam final : public onMessage
{
public:
    static constexpr const wchar_t* messageName = L"locstring_insertparam";
    static constexpr declaredParameter declared[] = {{L"this", true}, {L"id", true}, {L"v", true}};

    statement* clone() const override { return new locstring_insertparam(*this); }
    // The message that was given stays as it is; the result is a copy.
    void execute(codecontext& context, genericValue& result) const override
    {
        locString message = requireMessage(context);
        const string id = require<string>(L"id", context, L"Error retrieving parameter id");
        message.params().set(valueText(context), id.c_str());
        replaceResult(result, message);
    }

private:
    // REQUIRED: a message is resolved at once and does not follow a later change of language.
    string valueText(codecontext& context) const
    {
        locString nested;
        if (read(L"v", context, nested))
            return nested.text();
        return require<string>(L"v", context, L"Error retrieving parameter value");
    }
};

class locstring_getstring final : public onMessage
{
public:
    static constexpr const wchar_t* messageName = L"locstring_getstring";
    static constexpr declaredParameter declared[] = {{L"this", true}};

    statement* clone() const override { return new locstring_getstring(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        replaceResult(result, requireMessage(context).text());
    }
};

// --- Messages of objects ---

class onObject : public scriptbasesinglefunction
{
protected:
    intrface::interfaceptr<messagesaccess> requireMessages(codecontext& context, const wchar_t* failure) const
    {
        objectRef object = require<objectRef>(L"this", context, failure);
        const intrface::interfaceptr<messagesaccess> messages(object);
        if (!messages.isValid())
            execError(this, L"Given object does not provide a messages-interface");
        return messages;
    }
};

class objmsg_add final : public onObject
{
public:
    static constexpr const wchar_t* messageName = L"objmsg_add";
    static constexpr declaredParameter declared[] = {
        {L"this", true}, {L"id", true}, {L"severity", true}, {L"msg", true}};

    statement* clone() const override { return new objmsg_add(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        const auto messages = requireMessages(context, L"Error retrieving object (1)");
        const string id = require<string>(L"id", context, L"Error retrieving message-id");
        const int severity = requireSeverity(context);
        messages->addMessage(id.c_str(), severity, requireMessage(context));
    }

private:
    int requireSeverity(codecontext& context) const
    {
        string word;
        if (!read(L"severity", context, word) || word.empty())
            execError(this, L"Error retrieving message-severity");
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
        if (!read(L"msg", context, message))
            require<string>(L"msg", context, L"Error retrieving message-text");
        return message;
    }
};

class objmsg_remove final : public onObject
{
public:
    static constexpr const wchar_t* messageName = L"objmsg_remove";
    static constexpr declaredParameter declared[] = {{L"this", true}, {L"id", true}};

    statement* clone() const override { return new objmsg_remove(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        const auto messages = requireMessages(context, L"Error retrieving object");
        const string id = require<string>(L"id", context, L"Error retrieving message-id");
        messages->removeMessage(id.c_str());
    }
};

// --- Table ---

constexpr const wchar_t* objectFailures = L"Given object does not provide a messages-interface";

const builtin rows[] = {
    {.name = L"locstring",
     .create = createNamed<locstring>,
     .parameters = L"(id, default, [file], [p1id], [p1p], ... [p10id], [p10p])",
     .summary = L"Gives a message: its id, the text for a language without one, the name of its "
                L"file, and parameters by name and value.",
     .failures = {L"Error retrieving message-id\n"
                  L"Error retrieving message-default"}},
    {.name = L"locstringfromid",
     .create = createNamed<locstringfromid>,
     .parameters = L"(id)",
     .summary = L"Gives the message with this id.",
     .failures = {L"Error retrieving message-id"}},
    {.name = L"locstring_insertparam",
     .create = createNamed<locstring_insertparam>,
     .parameters = L"(this, id, v)",
     .summary = L"Gives a copy of a message, or of the message with this id, with one more "
                L"parameter.",
     .failures = {L"Error retrieving string\n"
                  L"Error retrieving parameter id\n"
                  L"Error retrieving parameter value"}},
    {.name = L"locstring_getstring",
     .create = createNamed<locstring_getstring>,
     .parameters = L"(this)",
     .summary = L"Gives the text of a message, or of the message with this id, in the language of "
                L"the program.",
     .failures = {L"Error retrieving string"}},
    {.name = L"objmsg_add",
     .create = createNamed<objmsg_add>,
     .parameters = L"(this, id, severity, msg)",
     .result = resultRule::none,
     .summary = L"Hangs a message on an object: an `error`, a `warning` or an `information`.",
     .failures = {objectFailures, L"Error retrieving object (1)\n"
                                  L"Error retrieving message-id\n"
                                  L"Error retrieving message-severity\n"
                                  L"Error retrieving message-text"}},
    {.name = L"objmsg_remove",
     .create = createNamed<objmsg_remove>,
     .parameters = L"(this, id)",
     .result = resultRule::none,
     .summary = L"Takes the message with this id from an object.",
     .failures = {objectFailures, L"Error retrieving object\n"
                                  L"Error retrieving message-id"}},
};

} // namespace

constinit const builtinModule localisationModule{L"localisation", rows};

} // namespace qx::script
