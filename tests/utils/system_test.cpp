#include "fakeSystem.h"
#include "scratchDirectory.h"

#include <qxDirectory.h>
#include <qxSystem.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
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

// The exit code of a process; -1 while it runs.
int exitCode(void* process)
{
    qx::long32 value = 0;
    return qx::getExitCodeProcess(process, &value) ? static_cast<int>(value) : -1;
}

// Waits for at most half a minute; `condition` is asked again and again.
template <class Condition>
void waitUntil(Condition condition)
{
    for (int i = 0; i < 3000 && !condition(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

} // namespace

// What the children do; nothing in a normal run.
TEST(systemChild, DISABLED_exitsWith7)
{
    std::_Exit(7);
}

TEST(systemChild, DISABLED_waitsForGo)
{
    waitUntil([] { return qx::file(L"go").exists(); });
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
        EXPECT_FALSE(qx::getModulePath(L"none", out));
        EXPECT_EQ(out.fullName(), before);
        EXPECT_TRUE(qx::getModulePath(L"m", out));
        EXPECT_EQ(out, qx::directory(L"/host/m"));
        EXPECT_TRUE(qx::startProcess(L"exe", L"a b", 2, nullptr, nullptr, nullptr, out));
        EXPECT_EQ(host.started, L"exe|a b|2|" + out.fullName());
        EXPECT_EQ(exitCode(nullptr), 42);
        EXPECT_EQ(qx::mainHWND(), &host);
    }
    EXPECT_EQ(&qx::system::current(), &qx::system::platform());
}

TEST(system, message_boxes_offer_the_asked_buttons)
{
    using enum qx::eMessageBoxButton;
    const std::pair<qx::uint, std::vector<qx::eMessageBoxButton>> cases[] = {
        {0, {buttonOk}},
        {1, {buttonOk, buttonCancel}},
        {3 + 48, {buttonYes, buttonNo, buttonCancel}},
        {4 + 32, {buttonYes, buttonNo}},
        {5 + 16, {buttonRetry, buttonCancel}},
        {15, {buttonOk}},
    };
    for (const auto& [flags, expected] : cases)
        EXPECT_EQ(qx::messageBoxButtons(flags), expected) << flags;
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
    EXPECT_EQ((string{single[0x80], single[0x81], single[0x9F], single[0xE4]}), L"\u20AC\x81\u0178\u00E4");
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
    qx::system& clock = qx::system::platform();
    EXPECT_LT(std::abs(clock.utcNow() / 1000 - std::time(nullptr)), 60);
    EXPECT_LT(std::abs(clock.localNow() - clock.utcNow()), 15LL * 3600 * 1000);
}

TEST(system, environment_modules_and_libraries)
{
    qx::system& system = qx::system::current();
    string value = L"before";
    EXPECT_FALSE(system.environmentVariable(L"QX_NO_SUCH_VARIABLE", value));
    EXPECT_FALSE(system.environmentVariable(L"", value));
    EXPECT_FALSE(system.modulePath(L"no_such_module", value));
    EXPECT_EQ(value, L"before");
    EXPECT_TRUE(system.environmentVariable(L"PATH", value));
    EXPECT_NE(value, L"before");
    EXPECT_TRUE(system.modulePath(string(), value));
    EXPECT_TRUE(qx::directory(value).exists());

    const scratchDirectory scratch;
    scratch.write("text.so", "no library");
    EXPECT_EQ(system.loadLibrary(scratch.name("text.so")), nullptr);
    EXPECT_EQ(system.loadLibrary(string()), nullptr);
    EXPECT_FALSE(system.unloadLibrary(nullptr));
}

TEST(process, waits_and_gives_the_exit_code)
{
    for (const int flags : {qx::processWait, qx::processWait | qx::processHidden}) {
        void* process = startChild(L"DISABLED_exitsWith7", flags, qx::directory());
        EXPECT_EQ(exitCode(process), 7);
        EXPECT_EQ(exitCode(process), 7) << "asking twice is allowed";
        qx::system::current().closeProcess(process);
    }
}

TEST(process, runs_beside_the_caller_in_the_given_directory)
{
    const scratchDirectory scratch;
    void* process = startChild(L"DISABLED_waitsForGo", 0, qx::directory(scratch.name()));
    EXPECT_EQ(exitCode(process), -1);
    scratch.write("go", "");
    waitUntil([&] { return exitCode(process) != -1; });
    EXPECT_EQ(exitCode(process), 3);
    EXPECT_TRUE(std::filesystem::exists(scratch.path("gone")));
    qx::system::current().closeProcess(process);
}

TEST(process, refuses_what_cannot_be_started)
{
    const scratchDirectory scratch;
    scratch.write("text", "no program");
    void* process = &process;
    const auto starts = [&](const string& exe, const string& params = L"", const string& place = L"") {
        return qx::system::current().startProcess(exe, params, qx::processWait, nullptr, nullptr, &process,
                                                  place);
    };
    for (const string& exe :
         {string(), string(L"qx_no_such_program"), scratch.name("none"), scratch.name("text")})
        EXPECT_FALSE(starts(exe)) << exe.utf8();
    EXPECT_FALSE(starts(programFile(), string(1, L'\0')));
    EXPECT_FALSE(starts(programFile(), L"", scratch.name("none")));
    EXPECT_EQ(process, &process);
    EXPECT_EQ(exitCode(nullptr), -1);
}

TEST(systemDeathTest, division_fault_ends_the_process)
{
    EXPECT_DEATH(qx::system::platform().divisionFault(), "");
}
