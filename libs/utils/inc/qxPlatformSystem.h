// The platform's own system as a class: the base for a host that wants to change a few operations and keep
// the rest. It has no state of its own, so any number of objects may exist. What the operations do is told in
// qxSystem.h.
#pragma once

#include "qxSystem.h"

namespace qx
{

class QXUTILS_API platformSystem : public system
{
public:
    platformSystem() = default;
    ~platformSystem() override;

    bool status(const string& name, fileStatus& status) override;
    bool readFile(const string& name, byteSink& sink) override;
    appendResult appendToFile(const string& name, std::string_view bytes) override;
    bool copyFile(const string& from, const string& to, bool overwrite) override;
    bool removeFile(const string& name) override;
    bool listDirectory(const string& name, std::vector<directoryEntry>& entries) override;
    string currentDirectory() override;
    bool setCurrentDirectory(const string& name) override;
    bool modulePath(const string& moduleName, string& directoryName) override;

    long long utcNow() override;
    long long localNow() override;

    bool widenByte(unsigned char byte, wchar_t& unit) override;
    string widen(std::string_view bytes) override;
    std::string narrow(std::wstring_view text) override;

    bool startProcess(const string& exe, const string& params, int flags, ulong32* idOut,
                      void** firstHandleOut, void** processHandleOut,
                      const string& workingDirectory) override;
    bool getExitCodeProcess(void* process, long32* code) override;
    void closeProcess(void* handle) override;

    void* loadLibrary(const string& name) override;
    bool unloadLibrary(void* library) override;

    bool environmentVariable(const string& name, string& value) override;
    void* mainHWND() override;
    int messageBox(void* window, const string& text, const string& caption, uint flags) override;

    [[noreturn]] void divisionFault() override;
    uint64 tick() override;
};

} // namespace qx
