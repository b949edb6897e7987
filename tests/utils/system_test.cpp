// The platform as the library sees it: code page, clock, environment, processes.
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
const string childParams = L"--gtest_also_run_disabled_tests --gtest_filter=systemChild.*";

string programFile()
{
    qx::directory home;
    EXPECT_TRUE(qx::getModulePath(string(), home));
    return qx::file(home.fullName(), program).fullName();
}

// Starts this program again as the child below.
void* startChild(int flags, const qx::directory& place)
{
    qx::ulong32 id = 0u;
    void* process = nullptr;
    EXPECT_TRUE(qx::startProcess(programFile(), childParams, flags, &id, nullptr, &process, place));
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
TEST(systemChild, DISABLED_waitsForGo)
{
    waitUntil([] { return qx::file(L"go").exists(); });
    std::_Exit(7);
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
    // What looks alike does not stand in.
    EXPECT_EQ(system.narrow(L"a\x4E2D\xD83D\xFF21\x0100\x2212"), "a?????");
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
    for (const wchar_t* missing : {L"QX_NO_SUCH_VARIABLE", L""})
        EXPECT_FALSE(system.environmentVariable(missing, value));
    EXPECT_FALSE(system.modulePath(L"no_such_module", value));
    EXPECT_EQ(value, L"before");
    qx::directory place(L"/before");
    EXPECT_FALSE(qx::getModulePath(L"no_such_module", place));
    EXPECT_EQ(place, qx::directory(L"/before"));
    EXPECT_TRUE(system.environmentVariable(L"PATH", value));
    EXPECT_NE(value, L"before");
    const scratchDirectory scratch;
    scratch.write("text.so", "no library");
    for (const string& name : {scratch.name("text.so"), string()})
        EXPECT_EQ(system.loadLibrary(name), nullptr);
    EXPECT_FALSE(system.unloadLibrary(nullptr));
}

TEST(process, runs_beside_the_caller_or_is_waited_for)
{
    const scratchDirectory scratch;
    const qx::directory place(scratch.name());
    void* beside = startChild(0, place);
    EXPECT_EQ(exitCode(beside), -1);
    scratch.write("go", "");
    waitUntil([&] { return exitCode(beside) != -1; });
    for (const int flags : {qx::processWait, qx::processWait | qx::processHidden}) {
        void* process = startChild(flags, place);
        EXPECT_EQ(exitCode(process), 7);
        qx::system::current().closeProcess(process);
    }
    EXPECT_EQ(exitCode(beside), 7) << "asking twice is allowed";
    qx::system::current().closeProcess(beside);
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
