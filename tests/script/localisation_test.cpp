// Localised messages in scripts: with language files, and on the host's objects.
#include "host.h"
#include "hostObject.h"
#include "utils/scratchDirectory.h"
#include "valueText.h"

#include <gtest/gtest.h>

namespace
{

// Two language files, and the host's settings back at their start afterwards.
class localisation : public testing::Test
{
public:
    ~localisation() override
    {
        qx::locString::setLanguageDirectories(qx::searchPath());
        qx::locString::setLanguage(L"");
    }

protected:
    localisation()
    {
        mDirectory.write("messages.de.ini", "greeting=Hallo [Name]\ntitle=Titel\n");
        mDirectory.write("messages.fr.ini", "greeting=Bonjour [Name]\n");
        mDirectory.write("other.de.ini", "greeting=Servus [Name]\n");
        qx::searchPath path;
        path.add(mDirectory.name());
        qx::locString::setLanguageDirectories(path);
        qx::locString::setLanguage(L"de");
    }

    static qx::string resolved(const wchar_t* message)
    {
        qx::string text;
        evaluated(qx::string(L"locstring_getstring(") + message + L")").getValue(text);
        return text;
    }

    scratchDirectory mDirectory;
};

// Notes the calls.
class messageKeeper final : public hostObject<qx::intrface::messagesaccess>
{
public:
    bool addMessage(const wchar_t* id, int severity, const qx::locString& message) override
    {
        const bool isEmpty = !message.string(nullptr, qx::searchPath());
        calls.push_back(
            qx::string::sformat(L"add %s %d %s", id, severity, isEmpty ? qx::string(L"-") : message.text()));
        return false;
    }
    bool removeMessage(const wchar_t* id) override
    {
        calls.push_back(L"remove " + qx::string(id));
        return false;
    }

    texts calls;
};

} // namespace

TEST_F(localisation, statements_resolve_in_the_language_of_the_host)
{
    EXPECT_EQ(resolved(L"locstring(\"greeting\", \"Hello [Name]\", \"\", \"Name\", \"A\")"), L"Hallo A");
    EXPECT_EQ(resolved(L"locstring(\"greeting\", \"Hello [Name]\", \"other\", \"Name\", \"A\")"),
              L"Servus A");
    EXPECT_EQ(resolved(L"locstring_insertparam(\"greeting\", \"Name\", locstringfromid(\"title\"))"),
              L"Hallo Titel");
    EXPECT_EQ(resolved(L"\"title\""), L"Titel");
}

TEST_F(localisation, nested_message_follows_the_language_and_an_inserted_one_does_not)
{
    scriptcontext context;
    qx::genericValue nested;
    qx::genericValue inserted;
    const qx::string inner = L"locstring(\"greeting\", \"\", \"\", \"Name\", \"A\")";
    parsed(L"locstring(\"\", \"<[M]>\", \"\", \"M\", " + inner + L")")->exec(context, nested);
    parsed(L"locstring_insertparam(locstring(\"\", \"<[M]>\"), \"M\", " + inner + L")")
        ->exec(context, inserted);
    qx::locString::setLanguage(L"fr");
    qx::locString message;
    EXPECT_TRUE(nested.getValue(message));
    EXPECT_EQ(message.text(), L"<Bonjour A>");
    EXPECT_TRUE(inserted.getValue(message));
    EXPECT_EQ(message.text(), L"<Hallo A>");
}

TEST_F(localisation, messages_of_objects)
{
    messageKeeper object;
    scriptcontext context;
    context.createVariable(nameOf(L"o"), object.value());
    for (const wchar_t* severity : {L"error", L"Extra", L"warning", L"W", L"info", L" error"}) {
        qx::genericValue result(5);
        parsed(qx::string::sformat(L"objmsg_add(o, \"id\", \"%s\", locstringfromid(\"title\"))", severity))
            ->exec(context, result);
        EXPECT_EQ(valueText(result), "int 5");
    }
    parsed(L"objmsg_add(o, \"id\", \"e\", \"plain text\")")->exec(context);
    parsed(L"objmsg_remove(o, \"id\")")->exec(context);
    EXPECT_EQ(object.calls, (texts{L"add id 2 Titel", L"add id 2 Titel", L"add id 1 Titel", L"add id 1 Titel",
                                   L"add id 0 Titel", L"add id 0 Titel", L"add id 2 -", L"remove id"}));
    object.calls.clear();

    const struct
    {
        const wchar_t* call;
        const wchar_t* failure;
    } failures[] = {
        {L"objmsg_add(o, createarray(), \"e\", \"m\")", L"Error retrieving message-id"},
        {L"objmsg_add(o, \"id\", \"\", \"m\")", L"Error retrieving message-severity"},
        {L"objmsg_add(o, \"id\", createarray(), \"m\")", L"Error retrieving message-severity"},
        {L"objmsg_add(o, \"id\", \"e\", createarray())", L"Error retrieving message-text"},
        {L"objmsg_remove(o, createarray())", L"Error retrieving message-id"},
    };
    for (const auto& row : failures) {
        EXPECT_EQ(failureOf([&] { parsed(row.call)->exec(context); }),
                  texts{qx::string::sformat(L"Error executing script \"%s\" (%s)", row.call, row.failure)});
    }
    EXPECT_EQ(object.calls, texts());
}
