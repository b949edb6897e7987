// How script files are found and cut into definitions.
#include "scriptSupport.h"
#include "support/expectations.h"

#include <gtest/gtest.h>

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
