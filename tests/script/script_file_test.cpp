// How script files are found and cut into definitions.
#include "scriptSupport.h"
#include "utils/fakeSystem.h"

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
    if (info.end == script::scriptFileEnd::blankInName)
        text += L"blank in line " + std::to_wstring(info.endLine) + L"\n";
    else if (info.end == script::scriptFileEnd::withoutText)
        text += L"nothing in line " + std::to_wstring(info.endLine) + L"\n";
    return text.utf8();
}

TEST(scriptFile, cutsTextIntoDefinitions)
{
    const struct
    {
        const char* what;
        std::string content;
        const char* expected;
    } cases[] = {
        {"the usual file",
         "// small tools\n\n"
         "scrdef pick(in<int> first, in<int> other = \"1\")\n{\n"
         "    createvar(r, getparameter(first));   // start value\n"
         "    return(getvar(r));\n}\n"
         "SCRDEF hello(in<string> text)\n{ messagebox(getparameter(text)); }",
         "3 pick [in<int> first][ in<int> other = \"1\"] {createvar(r, getparameter(first));   "
         "return(getvar(r));}\n"
         "8 hello [in<string> text] { messagebox(getparameter(text)); }\n"},
        {"line ends in any mix", "scrdef a()\r\n{\r}\n\r\rscrdef b()x\r\n\r\nscrdef c()y",
         "1 a  {}\n6 b  x\n8 c  y\n"},
        {"text before the first definition", "junk();\n{ code() }\nscrdef a()x", "3 a  x\n"},
        {"the word inside a line, and before a tab", " \t ScrDef a()x scrdef\nscrdef\tb()y",
         "1 a  x scrdefscrdef\tb()y\n"},
        {"a comment in a string", "scrdef a(){ f(\"http://x\"); }\n}", "1 a  { f(\"http:}\n"},
        {"trailing blanks stay inside, not at the end", "scrdef   a() x \n y \t\n", "1 a   x y\n"},
        {"no parameters", "scrdef a()x\nscrdef b( \t )y", "1 a  x\n2 b  y\n"},
        {"blank declarations among several stay", "scrdef a(, , p=\"x,)\",)x", "1 a [ ][ p=\"x,)\"] x\n"},
        {"a backslash in a string ends the counting of quotation marks", R"(scrdef a(p="\"",q)x)",
         "1 a [p=\"\"\",q)x] \n"},
        {"a backslash outside a string", R"(scrdef a(p\,q)x)", "1 a [p\\][q] x\n"},
        {"the first closing bracket ends the list", "scrdef a(p = f(), q)x", "1 a [p = f(] , q)x\n"},
        {"text that ends early", "scrdef a\nscrdef b(p", "1 a  \n2 b [p] \n"},
        {"a blank before the bracket ends the file", "scrdef a()x\nscrdef b ()y\nscrdef c()z",
         "1 a  x\nblank in line 2\n"},
        {"a blank in a name without a bracket", "scrdef a b", "blank in line 1\n"},
        {"a definition without text ends the file", "scrdef a()x\nscrdef // b\nscrdef c()z",
         "1 a  x\nnothing in line 2\n"},
        {"a byte is a character of the code page", "scrdef a()\x80\xc3\xa4", "1 a  €Ã¤\n"},
        {"a byte order mark hides the first definition", "\xef\xbb\xbfscrdef a()x\nscrdef b()y", "2 b  y\n"},
        {"a zero byte", std::string("scrdef a()x\0y", 13), nullptr},
        {"an empty file", "", ""},
    };
    const scratchDirectory directory;
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        directory.write("f.qxscr", row.content);
        const std::string expected = row.expected ? row.expected : std::string("1 a  x\0y\n", 9);
        EXPECT_EQ(outline(qx::file(directory.name("f.qxscr"))), expected);
    }
}

TEST(scriptFile, theExtensionAloneTellsWhetherAFileIsScrambled)
{
    const scratchDirectory directory;
    directory.write("plain.qxscr", "scrdef a()x");
    const qx::file plain(directory.name("plain.qxscr"));
    const qx::file scrambled(directory.name("scrambled.QXSSCR"));
    ASSERT_TRUE(script::scrambleFile(plain, scrambled));
    // Pins the key and the transform: byte i is exclusive-ored with byte i of the key.
    const std::string key = "k2#Vq9!xLm4$Zt7&Rb1~Yw6*Hs3%Pn8^Jd5(Cg0)Fu_+Ea=?";
    const std::string bytes = directory.read("scrambled.QXSSCR");
    ASSERT_EQ(bytes.size(), 11u);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        EXPECT_EQ(static_cast<char>(bytes[i] ^ key[i]), "scrdef a()x"[i]);
    EXPECT_EQ(outline(scrambled), "1 a  x\n");
    directory.write("mistaken.qxsscr", "scrdef a()x");
    EXPECT_EQ(outline(qx::file(directory.name("mistaken.qxsscr"))), "");
    directory.write("mistaken.qxscr", bytes);
    EXPECT_EQ(outline(qx::file(directory.name("mistaken.qxscr"))), "");
}

TEST(scriptFile, isSearchedInOneOrder)
{
    const scratchDirectory directory;
    for (const char* name : {"current", "base", "program"})
        std::filesystem::create_directory(directory.path(name));
    const programIn system(directory.name("program"));
    const currentDirectory current(directory.path("current"));
    const char* const candidates[] = {"current/tools",       "base/tools.qxscr",     "base/tools.qxsscr",
                                      "program/tools.qxscr", "program/tools.qxsscr", "current/tools.qxscr",
                                      "current/tools.qxsscr"};
    // The bare name and names that carry their extension twice are no candidates elsewhere.
    for (const char* other : {"base/tools", "program/tools", "base/tools.qxscr.qxscr"})
        directory.write(other, "");
    for (const char* candidate : candidates)
        directory.write(candidate, "");
    for (const char* candidate : candidates) {
        EXPECT_EQ(script::locateScriptFile(directory.name("base"), L"tools"),
                  qx::file(directory.name(candidate)));
        std::filesystem::remove(directory.path(candidate));
    }
    EXPECT_EQ(
        chainOfFailure([&] { script::locateScriptFile(directory.name("base"), L"tools"); }),
        std::vector<std::string>{"File " + directory.name("current/tools.qxsscr").utf8() + " not found!"});
    directory.write("base/tools.qxscr", "");
    EXPECT_THROW(script::locateScriptFile(qx::string(), L"tools"), qx::fileNotFoundException);
    EXPECT_EQ(script::locateScriptFile(L"../base", L"tools"), qx::file(directory.name("base/tools.qxscr")));
    // A directory is no script file.
    std::filesystem::create_directory(directory.path("current/tools"));
    EXPECT_EQ(script::locateScriptFile(directory.name("base"), L"tools"),
              qx::file(directory.name("base/tools.qxscr")));
}

TEST(scriptFile, isFoundWithoutRegardToCase)
{
    if (qx::file(L"/a") == qx::file(L"/A"))
        GTEST_SKIP() << "the file system does this itself";
    const scratchDirectory directory;
    std::filesystem::create_directories(directory.path("Base/Sub"));
    std::filesystem::create_directories(directory.path("Base/SUB"));
    std::filesystem::create_directories(directory.path("Base/Lib/TOOLS.qxscr")); // a directory
    const auto find = [&](const wchar_t* name) {
        try {
            return script::locateScriptFile(directory.name("Base"), name)
                .relativeNameTo(qx::fsEntryName(directory.name("Base")));
        } catch (const qx::fileNotFoundException&) {
            return qx::string(L"none");
        }
    };
    EXPECT_EQ(find(L"sub/tools"), L"none");
    directory.write("Base/Sub/tOOLS.QxsScr", "");
    EXPECT_EQ(find(L"sub/tools"), L"Sub/tOOLS.QxsScr");
    EXPECT_EQ(find(L"lib\\..\\sub/./tools"), L"Sub/tOOLS.QxsScr");
    EXPECT_EQ(find(L"lib/tools"), L"none");
    // .qxscr comes before .qxsscr in whatever case; of several the first in code-unit order; the exact name
    // wins.
    directory.write("Base/Sub/Tools.qxscr", "");
    EXPECT_EQ(find(L"sub/tools"), L"Sub/Tools.qxscr");
    directory.write("Base/SUB/Tools.qxscr", "");
    EXPECT_EQ(find(L"sub/tools"), L"SUB/Tools.qxscr");
    directory.write("Base/SUB/TOOLS.qxscr", "");
    EXPECT_EQ(find(L"sub/tools"), L"SUB/TOOLS.qxscr");
    std::filesystem::create_directory(directory.path("Base/sub"));
    directory.write("Base/sub/tools.qxscr", "");
    EXPECT_EQ(find(L"sub/tools"), L"sub/tools.qxscr");
    // Out of the base path, and the bare name in the current directory.
    directory.write("Other.qxscr", "");
    EXPECT_EQ(find(L"../other"), L"../Other.qxscr");
    const currentDirectory current(directory.path("Base/Sub"));
    EXPECT_EQ(find(L"tools.QXSCR"), L"Sub/Tools.qxscr");
    EXPECT_EQ(find(directory.name("base/sub/tools.QXSCR").c_str()), L"SUB/TOOLS.qxscr");
    // The base path itself is taken as written.
    directory.write("Base/Lib/found.qxscr", "");
    EXPECT_EQ(find(L"lib/found"), L"Lib/found.qxscr");
    EXPECT_THROW(script::locateScriptFile(directory.name("base"), L"lib/found"), qx::fileNotFoundException);
}

// Counts listings of directories.
class countingDisk : public fakeSystem
{
public:
    bool listDirectory(const qx::string& name, std::vector<qx::directoryEntry>& entries) override
    {
        ++mListings;
        return platformSystem::listDirectory(name, entries);
    }

    int listings()
    {
        const int count = mListings;
        mListings = 0;
        return count;
    }

private:
    int mListings = 0;
};

TEST(scriptFile, listingsAreTrustedOnceADirectoryHasBeenStill)
{
    if (qx::file(L"/a") == qx::file(L"/A"))
        GTEST_SKIP() << "nothing is listed on such a file system";
    const scratchDirectory directory;
    countingDisk disk;
    for (const char* name : {"empty", "base"})
        std::filesystem::create_directory(directory.path(name));
    const currentDirectory current(directory.path("empty"));
    setAge(directory, "empty", -60);
    directory.write("base/Tools.qxscr", "");
    const auto found = [&] { return script::locateScriptFile(directory.name("base"), L"tools").exists(); };
    EXPECT_TRUE(found());
    EXPECT_EQ(disk.listings(), 2);
    EXPECT_TRUE(found());
    EXPECT_EQ(disk.listings(), 1) << "base was changed a moment ago";
    setAge(directory, "base", -60);
    EXPECT_TRUE(found());
    EXPECT_EQ(disk.listings(), 1);
    EXPECT_TRUE(found());
    EXPECT_EQ(disk.listings(), 0);
    std::filesystem::rename(directory.path("base/Tools.qxscr"), directory.path("base/TOOLS.qxscr"));
    EXPECT_TRUE(found());
    EXPECT_EQ(disk.listings(), 1);
}

// A code page in which 0x81 stands for nothing.
class gappyCodePage : public fakeSystem
{
public:
    bool widenByte(unsigned char byte, wchar_t& unit) override
    {
        return byte != 0x81 && platformSystem::widenByte(byte, unit);
    }
};

TEST(scriptFile, readingFailsWithTheFile)
{
    const scratchDirectory directory;
    const auto listed = [&](const char* name) {
        return failureOf([&] { script::listFunctions(qx::file(directory.name(name))); });
    };
    EXPECT_EQ(listed("missing.qxscr"), texts{L"Error reading file " + directory.name("missing.qxscr")});
    directory.write("gap.qxscr", "scrdef a(){ return(\"1\"); }\nscrdef b(){ \x81 }");
    const gappyCodePage system;
    EXPECT_EQ(listed("gap.qxscr"), texts{L"Error reading file " + directory.name("gap.qxscr")});
    // The engine's reader knows no name.
    EXPECT_EQ(failureOf([&] { runCall(directory.name(), L"$gap$a"); }), texts{L"Error reading file "});
}

} // namespace
