#include "fakeSystem.h"
#include "scratchDirectory.h"

#include <qxDirectory.h>
#include <qxTimestamp.h>

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

std::vector<string> namesOf(qx::fileIterator it)
{
    std::vector<string> names;
    for (; it; it.next())
        names.push_back(it->entryName().name(0));
    return names;
}

} // namespace

TEST(fsEntryName, parts_of_a_name)
{
    const struct
    {
        const wchar_t* name;
        const wchar_t* path;
        const wchar_t* last;
        const wchar_t* withoutExtension;
        const wchar_t* extension;
    } cases[] = {
        {L"/a/b.txt", L"/a/", L"b.txt", L"b", L"txt"},
        {L"a\\b/c.tar.gz", L"a/b/", L"c.tar.gz", L"c.tar", L"gz"},
        {L"b", L"", L"b", L"b", L""},
        {L".hidden", L"", L".hidden", L".hidden", L""},
        {L"x/.hidden.txt", L"x/", L".hidden.txt", L".hidden", L"txt"},
        {L"dir.d/file", L"dir.d/", L"file", L"file", L""},
        {L"dir/", L"dir/", L"", L"", L""},
        {L"dir/..", L"dir/", L"..", L"..", L""},
        {L"end.", L"", L"end.", L"end", L""},
        {L"/", L"/", L"", L"", L""},
        {L"", L"", L"", L"", L""},
    };
    for (const auto& row : cases) {
        fsEntryName name;
        name.setName(row.name, false);
        EXPECT_EQ(name.text(), row.name);
        EXPECT_EQ(name.path(0), native(row.path)) << string(row.name).utf8();
        EXPECT_EQ(name.name(0), row.last) << string(row.name).utf8();
        EXPECT_EQ(name.name(2), row.withoutExtension) << string(row.name).utf8();
        EXPECT_EQ(name.name(26), native(row.path) + row.withoutExtension) << string(row.name).utf8();
        EXPECT_EQ(name.extension(0), row.extension) << string(row.name).utf8();
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
        EXPECT_EQ(file(row.path, row.name).fullName(), here + native(row.expected))
            << string(row.path).utf8();
        EXPECT_EQ(directory(row.path, row.name).fullName(), here + native(row.expected))
            << string(row.path).utf8();
    }
    EXPECT_EQ(directory(L"").fullName(), here);
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

TEST(fsEntry, relative_names)
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
    for (const auto& row : cases) {
        EXPECT_EQ(file(row.file).relativeNameTo(fsEntryName(row.base)), native(row.expected))
            << string(row.file).utf8();
    }
}

TEST(fsEntry, comparison_goes_by_full_name)
{
    EXPECT_EQ(file(L"/a/x"), file(L"/a/./b/../x"));
    EXPECT_LT(file(L"/a/x"), file(L"/a/y"));
    EXPECT_FALSE(file(L"/a/x") == file(L"/a/y"));
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
    // 2024-03-09 13:05:09.120
    const auto wanted =
        std::chrono::sys_time<std::chrono::milliseconds>(std::chrono::milliseconds(1709989509120));
    std::filesystem::last_write_time(scratch.path("a"), std::chrono::file_clock::from_sys(wanted));
    const long long time = file(scratch.name("a")).lastModificationTime();
    EXPECT_EQ(qx::timestamp::fromTimer(time).toText(), L"2024-03-09 13:05:09.120");
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
    EXPECT_EQ(namesOf(directory(scratch.name()).fileIt(nullptr, 0)),
              (std::vector<string>{L"from", L"new", L"old"}));
}

TEST(file, appends_lines_in_the_code_page)
{
    const scratchDirectory scratch;
    const file target(scratch.name("lines"));
    EXPECT_TRUE(target.appendTextLine(L"one"));
    const std::size_t lineEnd = scratch.read("lines").size() - 3;
    EXPECT_TRUE(target.appendTextLine(L"\x4E2D"));
    EXPECT_TRUE(target.appendTextLine(L""));
    const std::string content = scratch.read("lines");
    EXPECT_EQ(content.substr(0, 3), "one");
    EXPECT_EQ(content.size(), 4 + 3 * lineEnd);
    EXPECT_EQ(content[3 + lineEnd], '?');
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
    const struct
    {
        const wchar_t* filter;
        std::vector<string> expected;
    } cases[] = {
        {nullptr, {L"B.log", L"a.TXT", L"b.txt", L"c.csv", L"plain"}},
        {L"", {L"B.log", L"a.TXT", L"b.txt", L"c.csv", L"plain"}},
        {L"*.txt", {L"a.TXT", L"b.txt"}},
        {L"?.TXT; *.Csv", {L"a.TXT", L"b.txt", L"c.csv"}},
        {L"*.*", {L"B.log", L"a.TXT", L"b.txt", L"c.csv"}},
        {L"p*a*n", {L"plain"}},
        {L"p*a*x;plai;plain?", {}},
        {L"dir.txt", {}},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(namesOf(directory(scratch.name()).fileIt(row.filter, qx::DI_HIDDEN | qx::DI_SYSTEM)),
                  row.expected)
            << (row.filter ? string(row.filter).utf8() : "null");
    }
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
    EXPECT_EQ(namesOf(directory().fileIt(nullptr, 0)), (std::vector<string>{L"n"}));
    EXPECT_EQ(namesOf(directory().fileIt(nullptr, qx::DI_HIDDEN)), (std::vector<string>{L"h", L"n"}));
    EXPECT_EQ(namesOf(directory().fileIt(nullptr, qx::DI_SYSTEM)), (std::vector<string>{L"n", L"s"}));
}
