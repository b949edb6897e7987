// What keeps a fuzz target to itself: a system without disk, processes and user, and an end to every run.
#pragma once

#include <qxAssert.h>
#include <qxLog.h>
#include <qxPlatformSystem.h>

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

// Counts the statements that begin and end, through the trace, and lets each one fail when the run has had
// its share.
class stepLimit final : public qxlog::sink
{
public:
    void start() { mSteps = 0; }
    void write(qxlog::level severity, const qx::string&, const qx::string&) override
    {
        constexpr int most = 128; // a text that is doubled by every few statements still fits into memory
        if (severity == qxlog::level::trace && ++mSteps > most)
            throw false;
    }

private:
    int mSteps = 0;
};

struct sandbox
{
    sandbox()
    {
        qx::system::setCurrent(&system);
        qx::setAssertHandler([](const qx::string&) {});
        qxlog::logManager::setSink(&steps);
        qxlog::logManager::setLevel(qxlog::level::trace);
    }

    sealedSystem system;
    stepLimit steps;

    // The one of the process, never destroyed.
    static sandbox& enter()
    {
        static sandbox* const entered = new sandbox;
        entered->steps.start();
        return *entered;
    }
};

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
