#include "fakeSystem.h"
#include "scratchDirectory.h"

#include <qxDirectory.h>
#include <qxSystem.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <thread>

using qx::string;

namespace
{

const string program = L"utils_tests";
const string childParams = L"--gtest_also_run_disabled_tests --gtest_filter=systemChild.";

string programFile()
{
    qx::directory home;
    EXPECT_TRUE(qx::getModulePath(string(), home));
    return qx::file(home.fullName(), program).fullName();
}

// Starts this program again for the one test of the given name.
void* startChild(const wchar_t* test, int flags, const qx::directory& place)
{
    qx::ulong32 id = 0u;
    void* process = nullptr;
    EXPECT_TRUE(qx::startProcess(programFile(), childParams + test, flags, &id, nullptr, &process, place));
    EXPECT_NE(static_cast<qx::uint>(id), 0u);
    return process;
}

bool exitCode(void* process, int& code)
{
    qx::long32 value = 0;
    const bool known = qx::getExitCodeProcess(process, &value);
    code = known ? static_cast<int>(value) : code;
    return known;
}

} // namespace

// What the children do; nothing in a normal run.
TEST(systemChild, DISABLED_exitsWith7)
{
    std::_Exit(7);
}

TEST(systemChild, DISABLED_waitsForGo)
{
    for (int i = 0; i < 3000 && !qx::file(L"go").exists(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    qx::file(L"gone").appendTextLine(L"x");
    std::_Exit(3);
}

TEST(system, a_host_replaces_it_and_the_free_functions_follow)
{
    class hostSystem : public fakeSystem
    {
    public:
        bool modulePath(const string& name, string& directoryName) override
        {
            directoryName = L"/host/" + name;
            return name != L"none";
        }
        bool startProcess(const string& exe, const string& params, int flags, qx::ulong32*, void**, void**,
                          const string& place) override
        {
            started = exe + L"|" + params + L"|" + std::to_wstring(flags) + L"|" + place;
            return true;
        }
        bool getExitCodeProcess(void*, qx::long32* code) override
        {
            *code = 42;
            return true;
        }
        void* mainHWND() override { return this; }
        string started;
    };
    qx::directory out(L"/before");
    const string before = out.fullName();
    {
        hostSystem host;
        EXPECT_EQ(&qx::system::current(), &host);
        EXPECT_NE(&qx::system::platform(), &host);
        EXPECT_FALSE(qx::getModulePath(L"none", out));
        EXPECT_EQ(out.fullName(), before);
        EXPECT_TRUE(qx::getModulePath(L"m", out));
        EXPECT_EQ(out, qx::directory(L"/host/m"));
        EXPECT_TRUE(qx::startProcess(L"exe", L"a b", 2, nullptr, nullptr, nullptr, out));
        EXPECT_EQ(host.started, L"exe|a b|2|" + out.fullName());
        qx::long32 code = 0;
        EXPECT_TRUE(qx::getExitCodeProcess(nullptr, &code));
        EXPECT_EQ(static_cast<int>(code), 42);
        EXPECT_EQ(qx::mainHWND(), &host);
    }
    EXPECT_EQ(&qx::system::current(), &qx::system::platform());
}

TEST(system, message_boxes_offer_the_asked_buttons)
{
    using enum qx::eMessageBoxButton;
    const struct
    {
        qx::uint flags;
        std::vector<qx::eMessageBoxButton> expected;
    } cases[] = {
        {0, {buttonOk}},
        {1, {buttonOk, buttonCancel}},
        {3 + 48, {buttonYes, buttonNo, buttonCancel}},
        {4 + 32, {buttonYes, buttonNo}},
        {5 + 16, {buttonRetry, buttonCancel}},
        {15, {buttonOk}},
    };
    for (const auto& row : cases)
        EXPECT_EQ(qx::messageBoxButtons(row.flags), row.expected) << row.flags;
}

TEST(system, code_page_goes_both_ways)
{
    qx::system& system = qx::system::current();
    std::string all;
    string single;
    for (int byte = 0; byte < 256; ++byte) {
        wchar_t unit = 0;
        ASSERT_TRUE(system.widenByte(static_cast<unsigned char>(byte), unit)) << byte;
        all += static_cast<char>(byte);
        single += unit;
    }
    EXPECT_EQ(system.widen(all), single);
    EXPECT_EQ(system.narrow(single), all);
    EXPECT_EQ(single[0x80], wchar_t(0x20AC));
    EXPECT_EQ(single[0x81], wchar_t(0x81));
    EXPECT_EQ(single[0x9F], wchar_t(0x178));
    EXPECT_EQ(single[0xE4], wchar_t(0xE4));
    EXPECT_EQ(system.narrow(L"a\x4E2D\xD83D"), "a??");
}

TEST(system, names_that_are_no_text_survive)
{
    const scratchDirectory scratch;
    for (const char* name : {"gr\xC3\xBC\xC3\x9F", "\xF0\x9F\x98\x80", "bad\xFF\xC3"}) {
        const qx::file target(scratch.name(), string::fromUtf8(name));
        ASSERT_TRUE(target.appendTextLine(L"x")) << name;
        EXPECT_TRUE(std::filesystem::exists(scratch.path(name))) << name;
        const qx::fileIterator it = qx::directory(scratch.name()).fileIt(nullptr, 0);
        ASSERT_TRUE(it.valid()) << name;
        EXPECT_EQ(*it, target) << name;
        EXPECT_TRUE(it->remove()) << name;
    }
}

TEST(system, clock_counts_from_1970)
{
    const auto reference = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::system_clock::now().time_since_epoch());
    EXPECT_NEAR(static_cast<double>(qx::system::platform().utcNow()), static_cast<double>(reference.count()),
                60000);
    const long long offset = qx::system::platform().localNow() - qx::system::platform().utcNow();
    EXPECT_LT(std::abs(offset), 15LL * 3600 * 1000);
}

TEST(system, environment_variables)
{
    string value = L"before";
    EXPECT_FALSE(qx::system::current().environmentVariable(L"QX_NO_SUCH_VARIABLE", value));
    EXPECT_FALSE(qx::system::current().environmentVariable(L"", value));
    EXPECT_EQ(value, L"before");
    EXPECT_TRUE(qx::system::current().environmentVariable(L"PATH", value));
    EXPECT_NE(value, L"before");
}

TEST(system, modules_and_libraries)
{
    string place = L"before";
    EXPECT_FALSE(qx::system::current().modulePath(L"no_such_module", place));
    EXPECT_EQ(place, L"before");
    EXPECT_TRUE(qx::system::current().modulePath(string(), place));
    EXPECT_TRUE(qx::directory(place).exists());

    const scratchDirectory scratch;
    scratch.write("text.so", "no library");
    EXPECT_EQ(qx::system::current().loadLibrary(scratch.name("text.so")), nullptr);
    EXPECT_EQ(qx::system::current().loadLibrary(string()), nullptr);
    EXPECT_FALSE(qx::system::current().unloadLibrary(nullptr));
}

TEST(process, waits_and_gives_the_exit_code)
{
    for (const int flags : {qx::processWait, qx::processWait | qx::processHidden}) {
        void* process = startChild(L"DISABLED_exitsWith7", flags, qx::directory());
        int code = 0;
        EXPECT_TRUE(exitCode(process, code));
        EXPECT_TRUE(exitCode(process, code)) << "asking twice is allowed";
        EXPECT_EQ(code, 7);
        qx::system::current().closeProcess(process);
    }
}

TEST(process, runs_beside_the_caller_in_the_given_directory)
{
    const scratchDirectory scratch;
    void* process = startChild(L"DISABLED_waitsForGo", 0, qx::directory(scratch.name()));
    int code = 0;
    EXPECT_FALSE(exitCode(process, code));
    scratch.write("go", "");
    for (int i = 0; i < 3000 && !exitCode(process, code); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(code, 3);
    EXPECT_TRUE(std::filesystem::exists(scratch.path("gone")));
    qx::system::current().closeProcess(process);
}

TEST(process, refuses_what_cannot_be_started)
{
    const scratchDirectory scratch;
    scratch.write("text", "no program");
    void* process = &process;
    const struct
    {
        string exe;
        string params;
        string place;
    } cases[] = {
        {L"", L"", L""},
        {L"qx_no_such_program", L"", L""},
        {scratch.name("none"), L"", L""},
        {scratch.name("text"), L"", L""},
        {programFile(), string(1, L'\0'), L""},
        {programFile(), L"", scratch.name("none")},
    };
    for (const auto& row : cases) {
        EXPECT_FALSE(qx::system::current().startProcess(row.exe, row.params, qx::processWait, nullptr,
                                                        nullptr, &process, row.place))
            << row.exe.utf8();
        EXPECT_EQ(process, &process);
    }
    qx::long32 code = 0;
    EXPECT_FALSE(qx::getExitCodeProcess(nullptr, &code));
}

TEST(systemDeathTest, division_fault_ends_the_process)
{
    EXPECT_DEATH(qx::system::platform().divisionFault(), "");
}
