// Localised messages in scripts, with language files.
#include "host.h"
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
