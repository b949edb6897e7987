// How script files are found and cut into definitions.
#include "scriptSupport.h"
#include "support/expectations.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <map>
#include <random>
#include <set>

namespace
{

namespace script = qx::script;

// Each definition as `line name [declaration][declaration] body`, then why the reading ended.
std::string outline(const qx::file& source)
{
    const script::scriptFileInfo info = script::listFunctions(source);
    qx::string text;
    for (const script::functionInfo& function : info.functions) {
        text += std::to_wstring(function.line) + L" " + function.name + L" ";
        for (const qx::string& parameter : function.parameters)
            text += L"[" + parameter + L"]";
        text += L" " + function.body + L"\n";
    }
    if (info.end != script::scriptFileEnd::complete)
        text += (info.end == script::scriptFileEnd::blankInName ? L"blank in line " : L"nothing in line ") +
                std::to_wstring(info.endLine) + L"\n";
    return text.utf8();
}

TEST(scriptFile, is_cut_into_definitions_as_expected)
{
    const scratchDirectory directory;
    expectOutcomes("engine/scriptfiles", [&](const qx::string& content) {
        directory.write("f.qxscr", qx::system::current().narrow(content));
        texts lines;
        qx::string::fromUtf8(outline(qx::file(directory.name("f.qxscr")))).splitAt(L"\n", lines, false);
        lines.pop_back();
        return lines;
    });
}

// Short lines of ASCII are read in another way than others.
TEST(scriptFile, lines_of_any_length)
{
    const scratchDirectory directory;
    for (const std::size_t size : {1, 15, 16, 17, 254, 255, 256, 257, 511, 512, 513})
        for (const auto& [last, shown] : {std::pair("x", "x"), std::pair("\xe4", "ä")})
            for (const std::string behind : {"", "\r", "// \xe4", "// a"}) {
                const std::string start(size - 1, 'a');
                std::string content = "scrdef a()\n \t    ";
                content.append(start).append(last).append(behind).append("\nscrdef b()y");
                directory.write("f.qxscr", content);
                EXPECT_EQ(outline(qx::file(directory.name("f.qxscr"))),
                          "1 a  " + start + shown + "\n3 b  y\n")
                    << size << behind;
            }
}

TEST(scriptFile, extension_alone_tells_whether_a_file_is_scrambled)
{
    const scratchDirectory directory;
    directory.write("plain.qxscr", "scrdef a()x");
    const qx::file scrambled(directory.name("scrambled.QXSSCR"));
    ASSERT_TRUE(script::scrambleFile(qx::file(directory.name("plain.qxscr")), scrambled));
    EXPECT_EQ(outline(scrambled), "1 a  x\n");
    // Pins the key and the transform: byte i is exclusive-ored with byte i of the key.
    std::string bytes = directory.read("scrambled.QXSSCR");
    directory.write("mistaken.qxscr", bytes);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(bytes[i] ^ "k2#Vq9!xLm4$Zt7&Rb1~Yw6*Hs3%Pn8^Jd5(Cg0)Fu_+Ea=?"[i]);
    EXPECT_EQ(bytes, "scrdef a()x");
    directory.write("mistaken.qxsscr", bytes);
    for (const char* mistaken : {"mistaken.qxscr", "mistaken.qxsscr"})
        EXPECT_EQ(outline(qx::file(directory.name(mistaken))), "");
}

TEST(scriptFile, is_searched_in_one_order)
{
    const scratchDirectory directory;
    for (const char* name : {"current", "base", "program"})
        std::filesystem::create_directory(directory.path(name));
    const programIn system(directory.name("program"));
    const currentDirectory current(directory.path("current"));
    const auto find = [&](const qx::string& base) { return script::locateScriptFile(base, L"tools"); };
    const char* const candidates[] = {"current/tools",       "base/tools.qxscr",     "base/tools.qxsscr",
                                      "program/tools.qxscr", "program/tools.qxsscr", "current/tools.qxscr",
                                      "current/tools.qxsscr"};
    // The bare name and names that carry their extension twice are no candidates elsewhere.
    for (const char* other : {"base/tools", "program/tools", "base/tools.qxscr.qxscr"})
        directory.write(other, "");
    for (const char* candidate : candidates)
        directory.write(candidate, "");
    for (const char* candidate : candidates) {
        EXPECT_EQ(find(directory.name("base")), qx::file(directory.name(candidate)));
        std::filesystem::remove(directory.path(candidate));
    }
    EXPECT_EQ(chainText([&] { find(directory.name("base")); }),
              "File " + directory.name("current/tools.qxsscr").utf8() + " not found!");
    directory.write("base/tools.qxscr", "");
    EXPECT_THROW(find(qx::string()), qx::fileNotFoundException);
    std::filesystem::create_directory(directory.path("current/tools")); // a directory is no script file
    EXPECT_EQ(find(L"../base"), qx::file(directory.name("base/tools.qxscr")));
}

TEST(scriptFile, is_found_without_regard_to_case)
{
    if (qx::file(L"/a") == qx::file(L"/A"))
        GTEST_SKIP() << "the file system does this itself";
    const scratchDirectory directory;
    for (const char* name : {"Base/Sub", "Base/SUB", "Base/Lib/TOOLS.qxscr"})
        std::filesystem::create_directories(directory.path(name));
    const auto find = [&](const wchar_t* name) {
        try {
            return script::locateScriptFile(directory.name("Base"), name)
                .relativeNameTo(qx::fsEntryName(directory.name("Base")));
        } catch (const qx::fileNotFoundException&) {
            return qx::string(L"none");
        }
    };
    EXPECT_EQ(find(L"sub/tools"), L"none");
    EXPECT_EQ(find(L"lib/tools"), L"none"); // a directory
    directory.write("Base/Sub/tOOLS.QxsScr", "");
    EXPECT_EQ(find(L"lib\\..\\sub/./tools"), L"Sub/tOOLS.QxsScr");
    // .qxscr comes before .qxsscr in whatever case; of several the first in code-unit order; the exact name
    // wins.
    std::filesystem::create_directory(directory.path("Base/sub"));
    for (const char* better : {"Sub/Tools.qxscr", "SUB/Tools.qxscr", "SUB/TOOLS.qxscr", "sub/tools.qxscr"}) {
        directory.write(std::string("Base/") + better, "");
        EXPECT_EQ(find(L"sub/tools"), qx::string::fromUtf8(better));
    }
    // Out of the base path, and the bare name in the current directory.
    directory.write("Other.qxscr", "");
    EXPECT_EQ(find(L"../other"), L"../Other.qxscr");
    const currentDirectory current(directory.path("Base/Sub"));
    EXPECT_EQ(find(L"tools.QXSCR"), L"Sub/Tools.qxscr");
    EXPECT_EQ(find(directory.name("base/suB/tools.QXSCR").c_str()), L"SUB/TOOLS.qxscr");
    // The base path itself is taken as written.
    EXPECT_THROW(script::locateScriptFile(directory.name("base"), L"sub/tools"), qx::fileNotFoundException);
}

TEST(scriptFile, listings_are_trusted_once_a_directory_has_been_still)
{
    if (qx::file(L"/a") == qx::file(L"/A"))
        GTEST_SKIP() << "nothing is listed on such a file system";
    // Directories that changed at one time, and a clock.
    class stillDisk final : public watchedDisk
    {
    public:
        bool status(const qx::string& name, qx::fileStatus& status) override
        {
            const bool isThere = platformSystem::status(name, status);
            status.lastModification = changed;
            return isThere;
        }
        long long utcNow() override { return changed + age; }
        long long changed = 0;
        long long age = 0;
    };
    const scratchDirectory directory;
    stillDisk disk;
    for (const char* name : {"empty", "base"})
        std::filesystem::create_directory(directory.path(name));
    const currentDirectory current(directory.path("empty"));
    const char* const names[] = {"base/Tools.qxscr", "base/TOOLS.qxscr"};
    directory.write(names[0], "");
    const auto listingsOfASearch = [&] {
        disk.listings = 0;
        EXPECT_TRUE(script::locateScriptFile(directory.name("base"), L"tools").exists());
        return disk.listings;
    };
    const struct
    {
        long long changed;
        long long age;
        bool isTrusted;
    } rows[] = {
        {1'000'500, 30, false}, {1'000'500, 40, true},    {1'000'501, -500, false},
        {1'001'000, 40, false}, {1'001'000, 1999, false}, {1'001'000, 2001, true},
    };
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        disk.changed = rows[i].changed;
        disk.age = rows[i].age;
        EXPECT_EQ(listingsOfASearch(), 2) << i;
        EXPECT_EQ(listingsOfASearch(), rows[i].isTrusted ? 0 : 2) << i;
    }
    std::filesystem::rename(directory.path(names[0]), directory.path(names[1]));
    disk.changed += 5;
    EXPECT_EQ(listingsOfASearch(), 2);
}

// A second, plain reading of the order of candidates, for names of ASCII and a program that has none of them.
class plainSearch
{
public:
    explicit plainSearch(std::string name) : mName(std::move(name)) {}

    // "none" where there is none.
    std::string run(const std::string& base) const
    {
        const std::filesystem::path current = std::filesystem::current_path();
        std::string found = candidate(current, mName);
        for (const std::filesystem::path& folder : {current / base, current})
            for (const char* extension : {".qxscr", ".qxsscr"})
                if (found.empty() && !(base.empty() && folder != current))
                    found = candidate(folder.lexically_normal(), mName + extension);
        return found.empty() ? "none" : found;
    }

private:
    static bool isFile(const std::filesystem::path& path)
    {
        std::error_code ignored;
        return std::filesystem::exists(path, ignored) && !std::filesystem::is_directory(path, ignored);
    }
    static std::string candidate(const std::filesystem::path& folder, const std::string& name)
    {
        const std::filesystem::path exact = (folder / name).lexically_normal();
        const std::filesystem::path parts = exact.lexically_relative(folder);
        return isFile(exact) ? exact.string() : folded(folder, parts.begin(), parts.end());
    }
    static std::string folded(const std::filesystem::path& folder, std::filesystem::path::iterator part,
                              std::filesystem::path::iterator end)
    {
        if (part == end)
            return isFile(folder) ? folder.string() : "";
        if (*part == "..")
            return folded(folder.parent_path(), std::next(part), end);
        std::set<std::filesystem::path> same;
        std::error_code ignored;
        for (const auto& entry : std::filesystem::directory_iterator(folder, ignored))
            if (lowered(entry.path().filename()) == lowered(*part))
                same.insert(entry.path());
        std::string found;
        for (const std::filesystem::path& each : same)
            if (found.empty())
                found = folded(each, std::next(part), end);
        return found;
    }
    static qx::string lowered(const std::filesystem::path& name)
    {
        return qx::string::fromUtf8(name.string()).lower();
    }

    std::string mName;
};

// What searches have found is given again without a search, but only while a search would find the same.
TEST(scriptFile, searches_that_are_known_find_what_others_find)
{
    if (qx::file(L"/a") == qx::file(L"/A"))
        GTEST_SKIP() << "no search is known on such a file system";
    class busyDisk final : public fakeSystem
    {
    public:
        bool status(const qx::string& name, qx::fileStatus& status) override
        {
            ++questions;
            return platformSystem::status(name, status);
        }
        long long utcNow() override { return platformSystem::utcNow() + 1'000'000'000; } // all are still
        int questions = 0;
    };
    const scratchDirectory directory;
    busyDisk disk;
    const char* const folders[] = {"base", "base/sub", "side", "side/sub", "current", "current/sub"};
    for (const char* folder : folders)
        std::filesystem::create_directories(directory.path(folder));
    const currentDirectory current(directory.path("current"));
    std::mt19937 random(1);
    const std::filesystem::path target = directory.path("target"); // of links
    const auto oneOf = [&random](const auto& all) { return all[random() % std::size(all)]; };
    std::map<std::string, std::filesystem::file_time_type> times; // the same ones in different folders
    const auto tick = [&](const std::string& folder) {
        std::error_code ignored;
        std::filesystem::last_write_time(directory.path(folder), times[folder] += std::chrono::seconds(1),
                                         ignored);
    };
    const auto now = std::filesystem::last_write_time(directory.path("base"));
    for (const char* folder : folders) {
        times[folder] = now;
        tick(folder);
    }
    // The current directory gets another name, and another directory its name, with the same entries.
    const auto exchange = [&] {
        const std::filesystem::path before = directory.path("current");
        const std::filesystem::path after = directory.path("moved" + std::to_string(random()));
        std::filesystem::copy(before, after,
                              std::filesystem::copy_options::recursive |
                                  std::filesystem::copy_options::copy_symlinks);
        std::filesystem::rename(before, directory.path("between"));
        std::filesystem::rename(after, before);
        std::filesystem::rename(directory.path("between"), after);
        for (const char* folder : {"current", "current/sub"})
            tick(folder);
    };
    const auto change = [&](const std::string& folder) {
        const char* const names[] = {"tools",        "tools.qxscr",  "Tools.qxscr",
                                     "tools.qxsscr", "TOOLS.qxsscr", "sub"};
        const std::filesystem::path path = directory.path(folder) / oneOf(names);
        std::error_code ignored;
        switch (random() % 6) {
        case 0:
            std::ofstream(path) << "";
            break;
        case 1:
            std::filesystem::create_directory(path, ignored);
            break;
        case 2:
            std::filesystem::create_symlink(target, path, ignored);
            break;
        case 3:
            std::filesystem::current_path(directory.path(oneOf(folders)), ignored);
            break;
        case 4:
            if (!std::filesystem::remove(target))
                std::ofstream(target) << "";
            return; // the folder of the link stays as it is
        default:
            std::filesystem::remove(path, ignored);
        }
        tick(folder);
    };
    int known = 0;
    for (int i = 0; i < 4000; ++i) {
        if (random() % 2 == 0)
            change(oneOf(folders));
        if (i % 300 == 0)
            exchange();
        const std::string bases[] = {directory.path("base").string(), directory.path("side").string(),
                                     "../base", ""};
        const char* const names[] = {"tools", "sub/tools", "../side/tools"};
        const std::string base = oneOf(bases);
        const char* const name = oneOf(names);
        std::string found = "none";
        disk.questions = 0;
        try {
            found = script::locateScriptFile(qx::string::fromUtf8(base), qx::string::fromUtf8(name))
                        .fullName()
                        .utf8();
        } catch (const qx::fileNotFoundException&) {
        }
        known += found != "none" && disk.questions <= 3;
        ASSERT_EQ(found, plainSearch(name).run(base)) << i << ' ' << base << ' ' << name;
    }
    EXPECT_GT(known, 300);
}

TEST(scriptFile, reading_fails_with_the_file)
{
    class gappyCodePage final : public fakeSystem // in which 0x81 stands for nothing
    {
        bool widenByte(unsigned char byte, wchar_t& unit) override
        {
            return byte != 0x81 && platformSystem::widenByte(byte, unit);
        }
    };
    const scratchDirectory directory;
    const gappyCodePage system;
    directory.write("gap.qxscr", "scrdef a(){ return(\"1\"); }\nscrdef b(){ \x81 }");
    for (const char* name : {"missing.qxscr", "gap.qxscr"})
        EXPECT_EQ(chainText([&] { script::listFunctions(qx::file(directory.name(name))); }),
                  "Error reading file " + directory.name(name).utf8());
    EXPECT_EQ(runCall(directory.name(), L"$gap$a"), "Error reading file "); // this reader knows no name
}

} // namespace
