// Language files: where they are looked for, and when they are read again. The command line shows what their
// lines mean and how a language names them.
#include "fakeSystem.h"
#include "scratchDirectory.h"

#include <qxDirectory.h>
#include <qxException.h>
#include <qxLocString.h>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

using qx::locString;
using qx::string;

namespace
{

class catalogue : public testing::Test
{
protected:
    ~catalogue() override
    {
        locString::setLanguageDirectories(qx::searchPath());
        locString::setLanguage(L"");
    }

    static qx::searchPath pathOf(const scratchDirectory& directory)
    {
        qx::searchPath path;
        path.add(directory.name());
        return path;
    }

    // The text of an id whose default is `-`.
    string textOf(const wchar_t* id, const wchar_t* language = L"de", const wchar_t* file = nullptr) const
    {
        return locString(id, L"-", file).string(language, pathOf(mDirectory));
    }

    scratchDirectory mDirectory;
};

} // namespace

TEST_F(catalogue, directories_are_asked_in_order)
{
    const scratchDirectory registered;
    const scratchDirectory program;
    const programIn system(program.name());
    std::filesystem::create_directory(program.path("lang"));
    program.write("lang/messages.de.ini", "a=program\nb=program\nc=program\n; d=comment\n");
    registered.write("messages.de.ini", "a=registered\nb=registered\n");
    mDirectory.write("messages.de.ini", "a=path\n");
    EXPECT_EQ(textOf(L"b"), L"program");
    locString::setLanguageDirectories(pathOf(registered));
    EXPECT_EQ(textOf(L"a"), L"path");
    EXPECT_EQ(textOf(L"b"), L"registered");
    EXPECT_EQ(textOf(L"c"), L"program");
    EXPECT_EQ(textOf(L"; d"), L"-");
    // A language with its region comes before the one without, wherever they stand.
    program.write("lang/messages.de_CH.ini", "a=region\n");
    EXPECT_EQ(textOf(L"a", L"de_CH"), L"region");
    // What is asked for without a language is asked for in the host's.
    EXPECT_EQ(textOf(L"a", nullptr), L"-");
    locString::setLanguage(L"de_CH");
    EXPECT_EQ(textOf(L"a", nullptr), L"region");
    EXPECT_TRUE(locString(L"c").stringIdExists(nullptr, pathOf(mDirectory)));
    EXPECT_FALSE(locString(L"C").stringIdExists(nullptr, pathOf(mDirectory)));
}

TEST_F(catalogue, changed_files_are_read_again)
{
    watchedDisk disk;
    const std::filesystem::path file = mDirectory.path("messages.de.ini");
    const auto writeAt = [&](const char* content, std::chrono::seconds age) {
        mDirectory.write("messages.de.ini", content);
        std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() - age);
    };
    writeAt("id=one\n", std::chrono::seconds(20));
    EXPECT_EQ(textOf(L"id") + textOf(L"id"), L"oneone");
    EXPECT_EQ(disk.reads, 1);
    disk.failsToRead = true;
    writeAt("id=two\n", std::chrono::seconds(10));
    EXPECT_EQ(textOf(L"id"), L"-");
    disk.failsToRead = false;
    EXPECT_EQ(textOf(L"id"), L"two");
    std::filesystem::remove(file);
    EXPECT_EQ(textOf(L"id"), L"-");
    writeAt("id=older\n", std::chrono::seconds(30));
    EXPECT_EQ(textOf(L"id") + textOf(L"id"), L"olderolder");
    EXPECT_EQ(disk.reads, 4);
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    EXPECT_EQ(textOf(L"id"), L"-");
}

TEST_F(catalogue, messages_nested_beyond_the_stack_fail_and_end)
{
    locString message(nullptr, L"[M]");
    for (int i = 0; i < 200000; ++i) {
        locString around(nullptr, L"[M]");
        around.params().set(&message, L"M");
        message = around;
    }
    EXPECT_THROW(message.text(), qx::unexpectedErrorException);
}

TEST_F(catalogue, threads_may_resolve_and_change_the_language)
{
    mDirectory.write("messages.de.ini", "id=Deutsch\n");
    mDirectory.write("messages.fr.ini", "id=Fran\xC3\xA7\n");
    locString::setLanguageDirectories(pathOf(mDirectory));
    locString::setLanguage(L"de");
    const locString message(L"id", L"-");
    const auto work = [&message](const wchar_t* language) {
        for (int round = 0; round < 400; ++round) {
            locString::setLanguage(language);
            const string text = locString(message).text();
            EXPECT_TRUE(text == L"Deutsch" || text == L"Fran\u00E7");
        }
    };
    std::thread other(work, L"fr");
    work(L"de");
    other.join();
}
