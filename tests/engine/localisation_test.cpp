// Localised messages in scripts, where the language changes. The command line shows the rest.
#include "host.h"
#include "utils/scratchDirectory.h"
#include "valueText.h"

#include <gtest/gtest.h>

TEST(localisation, nested_message_follows_the_language_and_an_inserted_one_does_not)
{
    const scratchDirectory directory;
    directory.write("messages.de.ini", "greeting=Hallo [Name]\n");
    directory.write("messages.fr.ini", "greeting=Bonjour [Name]\n");
    qx::searchPath path;
    path.add(directory.name());
    qx::locString::setLanguageDirectories(path);
    qx::locString::setLanguage(L"de");
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
    qx::locString::setLanguageDirectories(qx::searchPath());
    qx::locString::setLanguage(L"");
}
