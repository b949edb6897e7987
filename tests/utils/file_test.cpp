// Files and directories: full names, what is known of them, copies, and lists. Scripts show the parts of
// names.
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

// A system without a current directory, whose directories all hold the same entries.
class fixedDisk : public fakeSystem
{
    string currentDirectory() override { return string(); }
    bool listDirectory(const string&, std::vector<qx::directoryEntry>& entries) override
    {
        for (const wchar_t* name : {L"b.txt", L"a.TXT", L"c.csv", L"plain", L"B.log", L"no\\name"})
            entries.push_back({name, false, false, false});
        entries.push_back({L"dir.txt", true, false, false});
        entries.push_back({L"hidden", false, true, false});
        entries.push_back({L"system", false, false, true});
        entries.push_back({L"link.txt", false, false, false, true});
        return true;
    }
};

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
        {L"", L"./x/../a.txt", L"/a.txt"}, {L"x//y\\z", L"a", L"/x/y/z/a"},
        {L"x/", L"/a", L"/x/a"},           {L"x/..", L"", L""},
        {L"...", L".a", L"/.../.a"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(file(row.path, row.name).fullName(), here + native(row.expected));
        EXPECT_EQ(directory(row.path, row.name).fullName(), here + native(row.expected));
    }
    EXPECT_EQ(file().fullName(), L"");
    EXPECT_EQ(qx::fsEntry(fsEntryName(L"a"), here + L"/b", false).fullName(), here + native(L"/b/a"));
    EXPECT_EQ(qx::fsEntry(fsEntryName(here), L"b", true).fullName(), here);
    const string root = directory(L"/").fullName();
    EXPECT_EQ(directory(L"/a/../../..").fullName(), root);
    EXPECT_EQ(file(L"/", L"a").fullName(), root + L"a");
    directory(before).makeCurrent();
}

TEST(fsEntry, names_compare_by_what_they_stand_for)
{
    EXPECT_EQ(file(L"/a/x"), file(L"/a/./b/../x"));
    EXPECT_LT(file(L"/a/x"), file(L"/a/y"));
    EXPECT_EQ(file(L"").relativeNameTo(fsEntryName(L"/a/")), L"");
    fsEntryName name;
    name.setName(L"a\\b/c.tar.gz", false);
    EXPECT_EQ(name.text(), L"a\\b/c.tar.gz");
    EXPECT_EQ(name.name(26), name.path(0) + name.name(2));
    EXPECT_EQ(fsEntryName::replaceInvalidChars(L"a?b\x1f\x20AC.", L' '), L"a b \x20AC.");
}

TEST(file, knows_files_from_directories_and_when_they_were_written)
{
    const scratchDirectory scratch;
    scratch.write("a.txt", "12345");
    const file present(scratch.name("a.txt"));
    EXPECT_EQ(present.size(), 5u);
    EXPECT_FALSE(file().exists());
    EXPECT_FALSE(file(scratch.name()).exists());
    EXPECT_TRUE(qx::fsEntry(string(), scratch.name(), false).exists());
    for (const char* name : {"a.txt", "none"}) {
        EXPECT_FALSE(directory(scratch.name(name)).exists());
        EXPECT_FALSE(directory(scratch.name(name)).makeCurrent());
    }
    EXPECT_FALSE(file(scratch.name(), string(L"a.txt") + L'\0').exists());

    const std::chrono::milliseconds wanted(1709989509120);
    std::filesystem::last_write_time(
        scratch.path("a.txt"),
        std::chrono::file_clock::from_sys(std::chrono::sys_time<std::chrono::milliseconds>(wanted)));
    EXPECT_EQ(present.lastModificationTime(), wanted.count()); // in UTC
    EXPECT_FALSE(file(scratch.name()).remove());
    EXPECT_TRUE(present.remove());
    EXPECT_FALSE(present.exists());
    EXPECT_FALSE(present.remove());
    EXPECT_EQ(present.lastModificationTime(), 0);
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
    EXPECT_FALSE(from.copy(old, false));
    EXPECT_EQ(scratch.read("old"), "old");
    EXPECT_TRUE(from.copy(old, true));
    for (const file& impossible : {from, file(scratch.name("none"), L"x"), file()})
        EXPECT_FALSE(from.copy(impossible, true));
    for (const char* missing : {"missing", ""})
        EXPECT_FALSE(file(scratch.name(missing)).copy(file(scratch.name("x")), true));
    for (const char* copy : {"from", "new", "old"})
        EXPECT_EQ(scratch.read(copy), content);
    EXPECT_FALSE(file(scratch.name("x")).exists());
}

TEST(fileIterator, filters_and_orders)
{
    const struct
    {
        const wchar_t* filter;
        int attributes;
        const wchar_t* expected;
    } cases[] = {
        {nullptr, 0, L"B.log a.TXT b.txt c.csv plain "},
        {L"", qx::DI_HIDDEN, L"B.log a.TXT b.txt c.csv hidden plain "},
        {nullptr, qx::DI_SYSTEM, L"B.log a.TXT b.txt c.csv plain system "},
        {L"?.TXT; *.Csv", 0, L"a.TXT b.txt c.csv "},
        {L"*.*", 0, L"B.log a.TXT b.txt c.csv "},
        {L"p*a*n", 0, L"plain "},
        {L"p*a*x;plai;plain?;dir.txt", 0, L""},
    };
    const directory place(L"/d");
    {
        const fixedDisk disk;
        for (const auto& row : cases)
            EXPECT_EQ(namesOf(place.fileIt(row.filter, row.attributes)), row.expected);
        qx::fileIterator it = place.fileIt(L"plain", 0);
        EXPECT_EQ(it->fullName(), file(L"/d/plain").fullName());
        it.next();
        it.next();
        EXPECT_FALSE(it.valid());
        EXPECT_THROW(*it, bool);
        EXPECT_EQ(file(L"./../../a/../b").fullName(), native(L"../../b"));
    }
    const failingDisk disk;
    EXPECT_FALSE(place.fileIt(nullptr, 0));
}
