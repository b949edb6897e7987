// The platform's own system as a class: the base for a host that wants to change a few
// operations and keep the rest.
//
//     class readOnlySystem : public qx::platformSystem
//     {
//     public:
//         bool removeFile(const qx::string&) override { return false; }
//         bool copyFile(const qx::string&, const qx::string&, bool) override { return false; }
//     };
//
// It has no state of its own, so any number of objects may exist, and they may be used from
// several threads. What the operations do, how they fail and who owns what is told in
// qxSystem.h; here stands only what is the platform's choice.
#pragma once

#include "qxSystem.h"

namespace qx
{

class QXUTILS_API platformSystem : public system
{
public:
    // Nothing is set up: the first operation that needs something of the system asks for
    // it.
    platformSystem() = default;
    ~platformSystem() override;

    // On posix names travel as UTF-8 (bytes that are none survive, see string::utf8), on
    // Windows as they are.
    bool status(const string& name, fileStatus& status) override;
    bool readFile(const string& name, byteSink& sink) override;
    appendResult appendToFile(const string& name, std::string_view bytes) override;
    bool copyFile(const string& from, const string& to, bool overwrite) override;
    bool removeFile(const string& name) override;
    bool listDirectory(const string& name, std::vector<directoryEntry>& entries) override;
    string currentDirectory() override;
    bool setCurrentDirectory(const string& name) override;
    bool modulePath(const string& moduleName, string& directoryName) override;

    // The clock of the system and the time zone of the process, which is read at each call.
    long long utcNow() override;
    long long localNow() override;

    // The ANSI code page of Windows; on posix always windows-1252, so that files look the
    // same everywhere.
    bool widenByte(unsigned char byte, wchar_t& unit) override;
    string widen(std::string_view bytes) override;
    std::string narrow(std::wstring_view text) override;

    // On posix each child is remembered until it has been collected: at a later start, when
    // its exit code is asked for, and at exit. Nobody else's children are waited for, and
    // no signal handler is set. On Windows the handles are the system's own.
    bool startProcess(const string& exe, const string& params, int flags, ulong32* idOut,
                      void** firstHandleOut, void** processHandleOut,
                      const string& workingDirectory) override;
    bool getExitCodeProcess(void* process, long32* code) override;
    void closeProcess(void* handle) override;

    void* loadLibrary(const string& name) override;
    bool unloadLibrary(void* library) override;

    // Names and values are UTF-8 on posix. There mainHWND is null, and messageBox writes
    // one line to standard error and answers with the first button.
    bool environmentVariable(const string& name, string& value) override;
    void* mainHWND() override;
    int messageBox(void* window, const string& text, const string& caption, uint flags) override;

    // Raises the signal SIGFPE on posix, the exception for an integer division by zero on
    // Windows.
    [[noreturn]] void divisionFault() override;
    // The system's coarse monotonic clock, in units of its own.
    uint64 tick() override;
};

} // namespace qx
