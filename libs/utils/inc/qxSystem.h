// Everything that is wanted from the operating system, behind one class.
//
// system::current() is the system in force: the platform's, until a host puts its own in
// its place. Nothing else in the libraries reaches the operating system, so one object can
// govern what runs within it may do, and a test can stand in for a failing disk or a clock.
//
//     class quietSystem : public qx::platformSystem          // qxPlatformSystem.h
//     {
//     public:
//         int messageBox(void*, const qx::string&, const qx::string&, qx::uint flags) override
//         {
//             return qx::messageBoxButtons(flags).front();
//         }
//     };
//     static quietSystem quiet;
//     qx::system::setCurrent(&quiet);
//
// Names of files are texts with the platform's separator; a relative one is taken from the
// current directory. A name that is empty or holds a zero character names nothing. The
// platform's system may be used from several threads, and one that replaces it has to allow
// the same. The operations throw nothing but std::bad_alloc unless they say so.
#pragma once

#include "qxExport.h"
#include "qxString.h"
#include "qxTypes.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qx
{

class directory;

// What is known of an entry of the file system.
struct fileStatus
{
    bool isDirectory = false;
    uint64 size = 0;                // bytes
    long long lastModification = 0; // milliseconds since 1970-01-01 00:00 UTC
    // Which entry it is: no two that exist at a time have both in common. Both are 0 where the system does
    // not tell, as on Windows; then scripts that are called by name are searched in full each time.
    uint64 device = 0;
    uint64 node = 0;
};

// One entry of a directory; the name has no path. A link has the kind of what it points to.
struct directoryEntry
{
    string name;
    bool isDirectory = false;
    bool isHidden = false;     // on posix: the name begins with a dot
    bool isSystem = false;     // never on posix
    bool leadsNowhere = false; // on posix: a link to nothing, of which `status` knows no entry
};

// Takes the bytes of a file in the order in which they are read.
class QXUTILS_API byteSink
{
public:
    virtual ~byteSink();

    // Takes the next `size` bytes; false ends the reading. What it throws passes on to
    // whoever reads.
    virtual bool take(const char* bytes, std::size_t size) = 0;
};

// What came of appending to a file.
enum class appendResult
{
    written,
    notOpened,
    notWritten // opened, and created if it was missing, but the bytes did not all arrive
};

// Flags of startProcess. Other bits mean nothing.
inline constexpr int processWait = 0x2; // return only when the program has ended
inline constexpr int processHidden =
    0x2008; // both bits: no window; on posix no terminal, in- and output are empty

// The buttons of a message box, by the number that stands for each of them.
enum eMessageBoxButton
{
    buttonOk = 1,
    buttonCancel = 2,
    buttonAbort = 3,
    buttonRetry = 4,
    buttonIgnore = 5,
    buttonYes = 6,
    buttonNo = 7,
    buttonTryAgain = 10,
    buttonContinue = 11
};

// The buttons that the low four bits of a message box's flags ask for, from left to right;
// never empty. An unknown set is that of 0, the single button ok.
QXUTILS_API std::vector<eMessageBoxButton> messageBoxButtons(uint flags);

class QXUTILS_API system
{
public:
    virtual ~system();

    // The system in force.
    static system& current();

    // Puts `replacement` in force for the whole process; null restores the platform's.
    // Borrows the object until another takes its place and no thread uses it any more.
    static void setCurrent(system* replacement);

    // The platform's own system, whatever is in force. Never destroyed.
    static system& platform();

    // --- Files and directories ---

    // Follows links. False when there is no such entry; `status` is then unchanged.
    virtual bool status(const string& name, fileStatus& status) = 0;

    // Hands the content of a file to `sink`, piece by piece. False when the file cannot be
    // opened, a read fails or the sink ended it; what the sink took by then stays taken.
    // Only regular files can be read: no directory, and no pipe or device, for which nobody
    // waits.
    virtual bool readFile(const string& name, byteSink& sink) = 0;

    // Adds the bytes to the end of the file in one write, and creates a missing file.
    virtual appendResult appendToFile(const string& name, std::string_view bytes) = 0;

    // Copies a file. Without `overwrite` an existing `to` of any kind makes it fail. On
    // failure no partial copy is left, and what stood under `to` before is unchanged.
    virtual bool copyFile(const string& from, const string& to, bool overwrite) = 0;

    // Deletes a file; false for a directory.
    virtual bool removeFile(const string& name) = 0;

    // Puts the entries of a directory into `entries`, in no particular order and without
    // "." and "..". False when it cannot be read; `entries` is then empty.
    virtual bool listDirectory(const string& name, std::vector<directoryEntry>& entries) = 0;

    // The full name of the process's current directory; empty when there is none (it was
    // deleted, say).
    virtual string currentDirectory() = 0;
    virtual bool setCurrentDirectory(const string& name) = 0;

    // The full name of the directory in which the module of this name lies: a library that
    // is loaded, or with an empty name the running program. False, with `directoryName`
    // unchanged, when there is no such module.
    virtual bool modulePath(const string& moduleName, string& directoryName) = 0;

    // --- Clock ---

    // Milliseconds since 1970-01-01 00:00: in UTC, and as the local wall clock shows it.
    virtual long long utcNow() = 0;
    virtual long long localNow() = 0;

    // --- Default ANSI code page ---

    // The character of one byte that stands alone. False, with `unit` unchanged, when it
    // has none.
    virtual bool widenByte(unsigned char byte, wchar_t& unit) = 0;

    // Whole texts. A byte without a character becomes '?', and so does what the code page
    // lacks.
    virtual string widen(std::string_view bytes) = 0;
    virtual std::string narrow(std::wstring_view text) = 0;

    // --- Processes ---

    // Starts a program without a shell. `exe` is searched for as the system does unless it
    // holds a separator; `params` is split at blanks outside quotation marks, as programs
    // of Windows split theirs. An empty `workingDirectory` is the current one. True when
    // the program was started, with processWait when it has also ended. The outputs may be
    // null and are unchanged on failure: the process id; a handle of the first thread (null
    // where there is none); a handle of the process. Handles that were asked for stay valid
    // until closeProcess.
    virtual bool startProcess(const string& exe, const string& params, int flags, ulong32* idOut,
                              void** firstHandleOut, void** processHandleOut,
                              const string& workingDirectory) = 0;

    // The exit code of a process from startProcess; on posix 128 + signal for one that a
    // signal ended. False, with `code` unchanged, while it runs, for a null or unknown
    // handle, and when somebody else collected the code.
    virtual bool getExitCodeProcess(void* process, long32* code) = 0;

    // Gives a handle from startProcess back; the process goes on. Null is allowed.
    virtual void closeProcess(void* handle) = 0;

    // --- Libraries ---

    // Loads a shared library; null on failure. Each success is undone by one unloadLibrary.
    virtual void* loadLibrary(const string& name) = 0;
    virtual bool unloadLibrary(void* library) = 0;

    // --- Environment and user ---

    // False, with `value` unchanged, when the variable is not set.
    virtual bool environmentVariable(const string& name, string& value) = 0;

    // The main window of the program, as owner of message boxes; null when there is none.
    virtual void* mainHWND() = 0;

    // Shows a modal message box, waits for the answer and returns the number of the button.
    // Flags are a set of buttons (low four bits) plus an icon: 16 stop, 32 question, 48
    // warning, 64 information. On a platform without boxes the text goes to standard error
    // and the answer is the first button.
    virtual int messageBox(void* window, const string& text, const string& caption, uint flags) = 0;

    // --- Faults ---

    // Called for an integer division that has no result. Does not return. The platform's
    // raises the processor's fault, which ends the process unless somebody handles it; a
    // host's may throw what shall reach whoever asked for the division.
    [[noreturn]] virtual void divisionFault() = 0;

    // --- Ticks ---

    // A count that moves on every few milliseconds, and is quick to ask: whoever wants to
    // know whether time has passed at all. Unless a system says otherwise, the milliseconds
    // of utcNow.
    virtual uint64 tick();

protected:
    system() = default;
    system(const system&) = default;
    system& operator=(const system&) = default;
};

// Short ways to the system in force. A `directory` that was not found is unchanged.
QXUTILS_API bool getModulePath(const string& name, directory& out);
QXUTILS_API bool startProcess(const string& exe, const string& params, int flags, ulong32* idOut,
                              void** firstHandleOut, void** processHandleOut,
                              const directory& workingDirectory);
QXUTILS_API bool getExitCodeProcess(void* process, long32* code);
QXUTILS_API void* mainHWND();

} // namespace qx
