// Logging: named loggers that write to the one sink the host has set.
//
// Off by default. The host sets a level and a sink; a message is formatted only when
// somebody listens at its level.
//
//     static mySink sink;                       // derives from qxlog::sink
//     qxlog::logManager::setSink(&sink);
//     qxlog::logManager::setLevel(qxlog::level::trace);
//
// All functions may be called at any time from any thread. No lock is held while a sink
// writes, so it may log itself; one that wants the lines of several threads in order has to
// lock by itself.
//
// A sink, and a logger that a program keeps for as long as it likes:
//
//     class mySink : public qxlog::sink
//     {
//     public:
//         void write(qxlog::level, const qx::string& logger, const qx::string& text) override
//         {
//             std::fprintf(stderr, "%s: %s\n", logger.utf8().c_str(), text.utf8().c_str());
//         }
//     };
//     const qx::refPtr<qxlog::logger> log = qxlog::logManager::getLogger(L"orders");
//     log->log_debug(L"%d orders in %s", count, folder.c_str());
#pragma once

#include "qxRefPtr.h"
#include "qxString.h"

namespace qxlog
{

// From the least to the most lines: setting one lets all before it through too.
enum class level : int
{
    off,
    error,
    warning,
    info,
    debug,
    trace
};

// Where log lines go. May be called from several threads at once. What it throws reaches
// the code that logged.
class QXUTILS_API sink
{
public:
    virtual ~sink();
    // One line, complete and without a line end. Both texts are borrowed for the call.
    virtual void write(level severity, const qx::string& logger, const qx::string& text) = 0;
};

// A named source of log lines. Held through a refPtr, and shared by as many threads as
// like; it ends with the last reference.
class QXUTILS_API logger
{
public:
    // `name` may not be null. Nobody owns the new logger yet: it goes straight into a
    // refPtr, as getLogger does.
    explicit logger(const wchar_t* name) : mName(name) {}

    // Formats and writes a line of its level (qxFormat.h). Where nobody listens this costs
    // two loads, and the arguments are evaluated but not looked at.
    template <class... Args>
    void log_trace(const wchar_t* format, const Args&... arguments)
    {
        if (listens(level::trace))
            write(level::trace, qx::string::sformat(format, arguments...));
    }
    // As log_trace, one level up.
    template <class... Args>
    void log_debug(const wchar_t* format, const Args&... arguments)
    {
        if (listens(level::debug))
            write(level::debug, qx::string::sformat(format, arguments...));
    }

    static bool listens(level severity) noexcept;
    // For refPtr.
    void addRef() noexcept;
    void release() noexcept;

private:
    // Ends by release() alone.
    ~logger() = default;
    void write(level severity, const qx::string& text) const;

    // What the sink is told with each line.
    qx::string mName;
    // Counted from any thread.
    qx::uint mReferences = 0;
};

// What the whole process logs to, and how much. Everything is static; nothing is allocated
// but the loggers.
class QXUTILS_API logManager
{
public:
    // A new logger of this name, which may not be null. Several of one name may exist.
    static qx::refPtr<logger> getLogger(const wchar_t* name);

    // True when a line of this level would reach a sink: relaxed reads, no lock.
    static bool listens(level severity) noexcept;

    // Lines up to `most` are written; currentLevel gives it back. `off` by default.
    static void setLevel(level most) noexcept;
    static level currentLevel() noexcept;

    // The sink is borrowed until another is set and no thread writes to it any more; null,
    // the default, writes nowhere. Gives the sink before.
    static sink* setSink(sink* receiver) noexcept;
};

} // namespace qxlog
