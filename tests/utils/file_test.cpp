#include "fakeSystem.h"
#include "scratchDirectory.h"

#include <qxDirectory.h>

#include <gtest/gtest.h>

#include <chrono>

using qx::directory;
using qx::file;
using qx::fsEntryName;
using qx::string;

namespace
{

// Names are written with `/` below and compared in the platform's form.
string native(const wchar_t* name)
{
    const wchar_t separator = fsEntryName(L"a/b").path(0)[1];
    return string(name).replace(L"/", std::wstring(1, separator));
}

// The names in their order, each with a blank behind it.
string namesOf(qx::fileIterator it)
{
    string names;
    for (; it; it.next())
        names += it->entryName().name(0) + L" ";
    return names;
}

} // namespace

TEST(fsEntryName, parts_of_a_name)
{
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"/a/b.txt", L"/a/|b.txt|b|txt"},
        {L"a\\b/c.tar.gz", L"a/b/|c.tar.gz|c.tar|gz"},
        {L".hidden", L"|.hidden|.hidden|"},
        {L"x/.hidden.txt", L"x/|.hidden.txt|.hidden|txt"},
        {L"dir.d/file", L"dir.d/|file|file|"},
        {L"dir/", L"dir/|||"},
        {L"dir/..", L"dir/|..|..|"},
        {L"end.", L"|end.|end|"},
        {L"/", L"/|||"},
        {L"", L"|||"},
    };
    for (const auto& [text, parts] : cases) {
        fsEntryName name;
        name.setName(text, false);
        EXPECT_EQ(name.text(), text);
        EXPECT_EQ(name.path(0) + L"|" + name.name(0) + L"|" + name.name(2) + L"|" + name.extension(0),
                  native(parts));
        EXPECT_EQ(name.name(26), name.path(0) + name.name(2));
    }
}

TEST(fsEntryName, invalid_characters_are_replaced)
{
    EXPECT_EQ(fsEntryName::replaceInvalidChars(L"a<b>c:d\"e/f\\g|h?i*j\x1fk\tl", L' '),
              L"a b c d e f g h i j k l");
    EXPECT_EQ(fsEntryName::replaceInvalidChars(L"\x20AC.(ok) ", L'_'), L"\x20AC.(ok) ");
}

TEST(fsEntry, full_names_are_absolute_and_normal)
{
    const scratchDirectory scratch;
    const string here = scratch.name();
    const string before = directory().fullName();
    ASSERT_TRUE(directory(here).makeCurrent());
    const struct
    {
        const wchar_t* path;
        const wchar_t* name;
        const wchar_t* expected; // behind the current directory
    } cases[] = {
        {L"", L"a.txt", L"/a.txt"},
        {L"", L"./x/../a.txt", L"/a.txt"},
        {L"x//y\\z", L"a", L"/x/y/z/a"},
        {L"x/", L"/a", L"/x/a"},
        {L"x", L"", L"/x"},
        {L"x/..", L"", L""},
        {L"...", L".a", L"/.../.a"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(file(row.path, row.name).fullName(), here + native(row.expected));
        EXPECT_EQ(directory(row.path, row.name).fullName(), here + native(row.expected));
    }
    EXPECT_EQ(directory(L".").fullName(), here);
    EXPECT_EQ(file().fullName(), L"");
    EXPECT_FALSE(file().exists());
    EXPECT_EQ(qx::fsEntry(fsEntryName(L"a"), here + L"/b", false).fullName(), here + native(L"/b/a"));
    EXPECT_EQ(qx::fsEntry(fsEntryName(here), L"b", true).fullName(), here);

    const string root = directory(L"/").fullName();
    EXPECT_EQ(directory(L"/a/../../..").fullName(), root);
    EXPECT_EQ(file(L"/", L"a").fullName(), root + L"a");
    directory(before).makeCurrent();
}

TEST(fsEntry, names_stay_relative_where_there_is_no_current_directory)
{
    class nowhere : public fakeSystem
    {
        string currentDirectory() override { return string(); }
    };
    const nowhere system;
    EXPECT_EQ(file(L"../../a/../b").fullName(), native(L"../../b"));
    EXPECT_EQ(file(L"./a").fullName(), L"a");
    EXPECT_FALSE(file(L"a").exists());
}

TEST(fsEntry, relative_names_and_comparison)
{
    const struct
    {
        const wchar_t* file;
        const wchar_t* base;
        const wchar_t* expected;
    } cases[] = {
        {L"/a/b/c.txt", L"/a", L"b/c.txt"},
        {L"/a/c.txt", L"/a/b/d", L"../../c.txt"},
        {L"/a/bc/d", L"/a/b", L"../bc/d"},
        {L"/a/b", L"/a/b/", L"."},
        {L"/a", L"/", L"a"},
        {L"/", L"/a", L".."},
        {L"", L"/a", L""},
    };
    for (const auto& row : cases)
        EXPECT_EQ(file(row.file).relativeNameTo(fsEntryName(row.base)), native(row.expected));
    // Names compare by what they stand for.
    EXPECT_EQ(file(L"/a/x"), file(L"/a/./b/../x"));
    EXPECT_LT(file(L"/a/x"), file(L"/a/y"));
}

TEST(file, knows_files_from_directories)
{
    const scratchDirectory scratch;
    scratch.write("a.txt", "12345");
    const file present(scratch.name("a.txt"));
    EXPECT_TRUE(present.exists());
    EXPECT_EQ(present.size(), 5u);
    EXPECT_FALSE(file(scratch.name()).exists());
    EXPECT_TRUE(qx::fsEntry(string(), scratch.name(), false).exists());
    EXPECT_TRUE(directory(scratch.name()).exists());
    EXPECT_FALSE(directory(scratch.name("a.txt")).exists());
    EXPECT_FALSE(directory(scratch.name("a.txt")).makeCurrent());
    EXPECT_FALSE(directory(scratch.name("none")).makeCurrent());
    EXPECT_FALSE(file(scratch.name(), string(L"a.txt") + L'\0').exists());

    EXPECT_FALSE(file(scratch.name()).remove());
    EXPECT_TRUE(present.remove());
    EXPECT_FALSE(present.exists());
    EXPECT_FALSE(present.remove());
    EXPECT_EQ(present.lastModificationTime(), 0);
}

TEST(file, modification_time_is_utc_to_the_millisecond)
{
    const scratchDirectory scratch;
    scratch.write("a", "x");
    const std::chrono::milliseconds wanted(1709989509120);
    std::filesystem::last_write_time(
        scratch.path("a"),
        std::chrono::file_clock::from_sys(std::chrono::sys_time<std::chrono::milliseconds>(wanted)));
    EXPECT_EQ(file(scratch.name("a")).lastModificationTime(), wanted.count());
}

TEST(file, copies_all_or_nothing)
{
    const scratchDirectory scratch;
    const std::string content(50000, 'c');
    scratch.write("from", content);
    scratch.write("old", "old");
    const file from(scratch.name("from"));
    const file old(scratch.name("old"));

    EXPECT_TRUE(from.copy(file(scratch.name("new")), false));
    EXPECT_EQ(scratch.read("new"), content);
    EXPECT_FALSE(from.copy(old, false));
    EXPECT_EQ(scratch.read("old"), "old");
    EXPECT_TRUE(from.copy(old, true));
    EXPECT_EQ(scratch.read("old"), content);

    EXPECT_FALSE(from.copy(from, false));
    EXPECT_FALSE(from.copy(from, true));
    EXPECT_EQ(scratch.read("from"), content);
    EXPECT_FALSE(from.copy(file(scratch.name("none"), L"x"), false));
    EXPECT_FALSE(file(scratch.name("missing")).copy(file(scratch.name("x")), false));
    EXPECT_FALSE(file(scratch.name()).copy(file(scratch.name("x")), true));
    EXPECT_FALSE(from.copy(file(), true));
    EXPECT_EQ(namesOf(directory(scratch.name()).fileIt(nullptr, 0)), L"from new old ");
}

TEST(file, appends_lines_in_the_code_page)
{
    const scratchDirectory scratch;
    const file target(scratch.name("lines"));
    EXPECT_TRUE(target.appendTextLine(L"one"));
    const std::string lineEnd = scratch.read("lines").substr(3);
    EXPECT_TRUE(target.appendTextLine(L"\x4E2D"));
    EXPECT_TRUE(target.appendTextLine(L"\n"));
    EXPECT_EQ(scratch.read("lines"), "one" + lineEnd + "?" + lineEnd + lineEnd + lineEnd);
    EXPECT_FALSE(file(scratch.name("none"), L"x").appendTextLine(L"x"));
    EXPECT_FALSE(file(scratch.name()).appendTextLine(L"x"));
    const failingDisk disk;
    EXPECT_TRUE(target.appendTextLine(L"x")) << "a write that fails goes unnoticed";
}

TEST(fileIterator, filters_and_orders)
{
    const scratchDirectory scratch;
    for (const char* name : {"b.txt", "a.TXT", "c.csv", "plain", "B.log"})
        scratch.write(name, "");
    std::filesystem::create_directory(scratch.path("dir.txt"));
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {nullptr, L"B.log a.TXT b.txt c.csv plain "},
        {L"", L"B.log a.TXT b.txt c.csv plain "},
        {L"*.txt", L"a.TXT b.txt "},
        {L"?.TXT; *.Csv", L"a.TXT b.txt c.csv "},
        {L"*.*", L"B.log a.TXT b.txt c.csv "},
        {L"p*a*n", L"plain "},
        {L"p*a*x;plai;plain?;dir.txt", L""},
    };
    for (const auto& [filter, expected] : cases)
        EXPECT_EQ(namesOf(directory(scratch.name()).fileIt(filter, qx::DI_HIDDEN | qx::DI_SYSTEM)), expected);
    qx::fileIterator it = directory(scratch.name()).fileIt(L"plain", 0);
    const qx::fsEntry entry = *it;
    EXPECT_EQ(entry.fullName(), scratch.name("plain"));
    it.next();
    it.next();
    EXPECT_FALSE(it.valid());
    EXPECT_THROW(*it, bool);
    EXPECT_FALSE(directory(scratch.name("none")).fileIt(nullptr, 0));
    const failingDisk disk;
    EXPECT_FALSE(directory(scratch.name()).fileIt(nullptr, 0));
}

TEST(fileIterator, attributes_let_hidden_and_system_files_in)
{
    class attributedDisk : public fakeSystem
    {
        bool listDirectory(const string&, std::vector<qx::directoryEntry>& entries) override
        {
            entries = {{L"h", false, true, false},
                       {L"n", false, false, false},
                       {L"s", false, false, true},
                       {L"no\\name", false, false, false}};
            return true;
        }
    };
    const attributedDisk disk;
    EXPECT_EQ(namesOf(directory().fileIt(nullptr, 0)), L"n ");
    EXPECT_EQ(namesOf(directory().fileIt(nullptr, qx::DI_HIDDEN)), L"h n ");
    EXPECT_EQ(namesOf(directory().fileIt(nullptr, qx::DI_SYSTEM)), L"n s ");
}
