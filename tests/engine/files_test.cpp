// Files, libraries and processes in scripts, as far as a disk, a system of the test's own or a second process
// is needed. What the command line can show is in commandline.expected.
#include "documents.h"
#include "host.h"
#include "scriptSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <thread>

namespace
{

namespace fs = std::filesystem;
using qx::string;

// A directory. Its name, with a separator behind it, is the parameter `d` of the texts.
class files : public testing::Test
{
protected:
    files() { set(L"d", mDirectory.name("")); }

    void set(const wchar_t* name, const string& text)
    {
        mContext.setParameter(nameOf(name), qx::genericValue(text));
    }

    // What a text gives, or the innermost reason of its failure; the directory is left out.
    std::string outcome(const string& text)
    {
        string shown = string::fromUtf8(outcomeIn(mContext, text));
        if (shown.starts_with(L"Error executing"))
            shown.erase(0, shown.rfind(L'(') + 1);
        return shown.replace(mDirectory.name(""), L"").replace(L")", L"").utf8();
    }

    scratchDirectory mDirectory;
    scriptcontext mContext;
};

// A disk on which every file is, but is gone when it is to be used.
class vanishingDisk final : public failingDisk
{
public:
    bool status(const string& name, qx::fileStatus& status) override
    {
        status.isDirectory = name == L"/";
        return true;
    }
    bool copyFile(const string&, const string&, bool) override { return false; }
    bool removeFile(const string&) override { return false; }
    void* loadLibrary(const string&) override { return nullptr; }
};

// Notes what is loaded.
class notingSystem final : public programIn
{
public:
    using programIn::programIn;
    void* loadLibrary(const string& name) override
    {
        noted = name;
        return this;
    }
    string noted;
};

// The children of this process that have ended (true) or run, as the system lists them.
std::ptrdiff_t countChildren(bool ended)
{
    std::string own;
    std::ifstream("/proc/self/stat") >> own;
    std::ptrdiff_t count = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc")) {
        std::ifstream stream(entry.path() / "stat");
        std::string stat;
        std::getline(stream, stat);
        const std::size_t name = stat.rfind(')'); // PID (NAME) STATE PARENT
        if (name != stat.npos && stat.substr(name + 4, own.size() + 1) == own + " ")
            count += (stat[name + 2] == 'Z') == ended ? 1 : 0;
    }
    return count;
}

} // namespace

TEST_F(files, names_and_contents_in_every_encoding)
{
    // "\xFF" is no UTF-8; the last character of the line is missing from the code page. A zero character ends
    // what is written.
    set(L"line", string(L"k=\x00E4\x20AC\x4E2D") + L'\0' + L"lost");
    for (const char* name : {"plain", "gr\xC3\xBC\xC3\x9F", "\xF0\x9F\x98\x80", "bad\xFF\xC3"}) {
        SCOPED_TRACE(name);
        set(L"n", string::fromUtf8(name));
        EXPECT_EQ(outcome(L"file_appendtextline(strcat(d, n), line)"), "null");
        EXPECT_EQ(mDirectory.read(name), "k=\xE4\x80?\n");
        EXPECT_EQ(outcome(L"directory_getallfiles(d)"), std::string("array [string \"") + name + "\"]");
        EXPECT_EQ(outcome(L"file_loadini(strcat(d, n), \"\", \"K\")"), "string \"\xC3\xA4\xE2\x82\xAC?\"");
        EXPECT_EQ(outcome(L"file_copy(strcat(d, n), d, strcat(n, \"2\"))"),
                  std::string("string \"") + name + "2\"");
        EXPECT_EQ(mDirectory.read(name + std::string("2")), mDirectory.read(name));
        EXPECT_EQ(outcome(L"{ file_delete(d, n); file_delete(strcat(d, n, \"2\")); }"), "null");
        EXPECT_TRUE(fs::is_empty(mDirectory.path("")));
    }
}

TEST_F(files, disks_that_fail_between_two_steps)
{
    const vanishingDisk disk;
    const std::pair<const wchar_t*, const char*> cases[] = {
        {L"file_copy(\"/a\", \"/\", \"b\")", "Error copying file"},
        {L"file_delete(\"/a\")", "null"},
        {L"file_loadini(\"/a\", \"\", \"part\")", "string \"\""},
        {L"file_loadcfg(\"/a\", \"part\")", "string \"\""},
        {L"file_appendtextline(\"/a\", \"line\")", "null"},
        {L"directory_getallfiles(\"/\")", "array []"},
        {L"loaddll(\"/a\")", "handle (no text"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(outcome(text), expected) << string(text).utf8();
}

TEST_F(files, library_is_looked_for_at_four_places)
{
    fs::create_directory(mDirectory.path("host"));
    notingSystem system(mDirectory.name("host"));
    // Each is found as long as those behind it are not there.
    for (const char* place : {"host/lib-d.so", "host/lib.so", "lib-d.so", "lib.so"}) {
        mDirectory.write(place, "");
        const currentDirectory back(mDirectory.path(""));
        EXPECT_EQ(outcome(L"loaddll(\"lib.so\")"), "handle (no text");
        EXPECT_EQ(system.noted, mDirectory.name(place));
    }
}

// What needs programs of a posix system.
class filesBesideOthers : public files
{
protected:
    void SetUp() override
    {
        if (!fs::exists("/proc/self/stat"))
            GTEST_SKIP() << "needs a posix shell";
    }
};

TEST_F(filesBesideOthers, parameters_arrive_untouched)
{
    mDirectory.write("show me",
                     "#!/bin/sh\nfor p; do printf '<%s>' \"$p\"; done >\"$(dirname \"$0\")/shown\"\n");
    fs::permissions(mDirectory.path("show me"), fs::perms::owner_all);
    set(L"p", L"\"two  words\" * ?.txt \\\"q\\\" $HOME `id` 'it;s' a\\b \"\" >x | & \x00E4");
    EXPECT_EQ(outcome(L"runexe(strcat(d, \"show me\"), p, \"w\")"), "null");
    EXPECT_EQ(mDirectory.read("shown"),
              "<two  words><*><?.txt><\"q\"><$HOME><`id`><'it;s'><a\\b><><>x><|><&><\xC3\xA4>");
}

TEST_F(filesBesideOthers, own_children_are_collected_and_no_others)
{
    std::atomic<bool> done = false;
    int lost = 0;
    std::thread host([&] {
        while (!done)
            lost += std::system("exit 7") == 7 << 8 ? 0 : 1;
    });
    const auto start = parsed(L"runexe(\"true\")");
    for (int i = 0; i < 999; ++i)
        EXPECT_NO_THROW(start->exec(mContext));
    done = true;
    host.join();
    EXPECT_EQ(lost, 0);
    while (countChildren(false) > 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    parsed(L"runexe(\"true\", \"\", \"w\")")->exec(mContext);
    EXPECT_LE(countChildren(true), 1);
}
