// What keeps a fuzz target to itself: a system without disk, processes and user, and limits for every run.
#pragma once

#include "support/failingMemory.h"

#include <qxAssert.h>
#include <qxLog.h>
#include <qxPlatformSystem.h>
#include <qxScript>
#include <qxScriptSettings.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace fuzzing
{

// Knows one file, `/script/<any name>`, and refuses everything that would reach beyond the process.
class sealedSystem final : public qx::platformSystem
{
public:
    void setContent(std::string_view bytes) { mContent = bytes; }

    bool status(const qx::string& name, qx::fileStatus& status) override
    {
        if (!name.starts_with(L"/script/"))
            return false;
        status = {false, mContent.size(), 0};
        return true;
    }
    bool readFile(const qx::string& name, qx::byteSink& sink) override
    {
        return name.starts_with(L"/script/") && sink.take(mContent.data(), mContent.size());
    }
    qx::appendResult appendToFile(const qx::string&, std::string_view) override
    {
        return qx::appendResult::notOpened;
    }
    bool copyFile(const qx::string&, const qx::string&, bool) override { return false; }
    bool removeFile(const qx::string&) override { return false; }
    bool listDirectory(const qx::string&, std::vector<qx::directoryEntry>& entries) override
    {
        entries.clear();
        return false;
    }
    qx::string currentDirectory() override { return L"/script"; }
    bool setCurrentDirectory(const qx::string&) override { return false; }
    bool modulePath(const qx::string&, qx::string&) override { return false; }
    bool startProcess(const qx::string&, const qx::string&, int, qx::ulong32*, void**, void**,
                      const qx::string&) override
    {
        return false;
    }
    bool getExitCodeProcess(void*, qx::long32*) override { return false; }
    void* loadLibrary(const qx::string&) override { return nullptr; }
    bool unloadLibrary(void*) override { return false; }
    bool environmentVariable(const qx::string&, qx::string&) override { return false; }
    int messageBox(void*, const qx::string&, const qx::string&, qx::uint flags) override
    {
        return qx::messageBoxButtons(flags).front();
    }
    [[noreturn]] void divisionFault() override { throw false; }

private:
    std::string_view mContent; // borrowed for one input
};

// Takes the trace lines, which are formatted for it.
class silentSink final : public qxlog::sink
{
public:
    void write(qxlog::level, const qx::string&, const qx::string&) override {}
};

struct sandbox
{
    sandbox()
    {
        qx::system::setCurrent(&system);
        qx::setAssertHandler([](const qx::string&) {});
        qxlog::logManager::setSink(&sink);
    }

    sealedSystem system;
    silentSink sink;

    // The one of the process, never destroyed.
    static sandbox& enter()
    {
        static sandbox* const entered = new sandbox;
        return *entered;
    }
};

// What a run gives: its failure, what the script threw, or the result.
struct outcome
{
    qx::string text;
    bool isWhole = false; // false where the run was ended by a limit of ours
};

template <class Run>
outcome outcomeOf(const Run& run)
{
    constexpr std::uint64_t mostSteps = 256;
    constexpr std::size_t largest = std::size_t(1) << 20;
    constexpr std::size_t inAll = std::size_t(1) << 26;

    outcome seen;
    qx::genericValue result;
    const memoryLimit memory(largest, inAll);
    qx::script::settings::setStepLimit(mostSteps);
    try {
        run(result);
        if (!result.getValue(seen.text))
            seen.text = result.isNull() ? L"null" : L"no text";
    } catch (const qx::exception& failure) {
        for (const qx::locString& message : failure.messages()) {
            const wchar_t* const text = message.string(nullptr, qx::searchPath());
            if (!text)
                std::abort(); // a failure has a text
            seen.text.append(text).append(L"\n");
        }
    } catch (const qx::string& said) {
        seen.text = said;
    }
    seen.isWhole = !memory.isReached() && qx::script::settings::stepLimit() > 0;
    return seen;
}

// Runs along the short cuts, and with somebody who listens to each statement, for whom there are none. Both
// give the same.
template <class Run>
void runBothWays(const Run& run)
{
    const outcome quick = outcomeOf(run);
    qxlog::logManager::setLevel(qxlog::level::trace);
    const outcome traced = outcomeOf(run);
    qxlog::logManager::setLevel(qxlog::level::off);
    if (!quick.isWhole || !traced.isWhole || quick.text == traced.text)
        return;
    std::fprintf(stderr, "by short cuts: %s\nthe long way: %s\n", quick.text.utf8().c_str(),
                 traced.text.utf8().c_str());
    std::abort();
}

// The input as text.
inline qx::string textOf(const std::uint8_t* data, std::size_t size)
{
    return qx::string::fromUtf8({reinterpret_cast<const char*>(data), size});
}

// A property that does not hold ends the program, which is how the fuzzer learns of it.
inline void require(bool holds, const char* property)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", property);
    std::abort();
}

} // namespace fuzzing
