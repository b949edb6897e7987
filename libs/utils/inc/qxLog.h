// Logging: named loggers that write to the one sink the host has set.
//
// Off by default. The host sets a level and a sink; a message is formatted only when somebody listens at its
// level.
//
//     static mySink sink;                       // derives from qxlog::sink
//     qxlog::logManager::setSink(&sink);
//     qxlog::logManager::setLevel(qxlog::level::trace);
#pragma once

#include "qxRefPtr.h"
#include "qxString.h"

namespace qxlog
{

enum class level : int
{
    off,
    error,
    warning,
    info,
    debug,
    trace
};

// Where log lines go. May be called from several threads at once. What it throws reaches the code that
// logged.
class QXUTILS_API sink
{
public:
    virtual ~sink();
    virtual void write(level severity, const qx::string& logger, const qx::string& text) = 0;
};

// A named source of log lines. Held through a refPtr.
class QXUTILS_API logger
{
public:
    explicit logger(const wchar_t* name) : mName(name) {}

    template <class... Args>
    void log_trace(const wchar_t* format, const Args&... arguments)
    {
        if (listens(level::trace))
            write(level::trace, qx::string::sformat(format, arguments...));
    }
    template <class... Args>
    void log_debug(const wchar_t* format, const Args&... arguments)
    {
        if (listens(level::debug))
            write(level::debug, qx::string::sformat(format, arguments...));
    }

    static bool listens(level severity) noexcept;
    void addRef() noexcept;
    void release() noexcept;

private:
    ~logger() = default;
    void write(level severity, const qx::string& text) const;

    qx::string mName;
    qx::uint mReferences = 0;
};

class QXUTILS_API logManager
{
public:
    // A logger of this name, which may not be null.
    static qx::refPtr<logger> getLogger(const wchar_t* name);

    // True when a line of this level would reach a sink: relaxed reads, no lock.
    static bool listens(level severity) noexcept;

    // Lines up to `most` are written. `off` by default.
    static void setLevel(level most) noexcept;
    static level currentLevel() noexcept;

    // The sink is borrowed until another is set; null, the default, writes nowhere. Gives the sink before.
    static sink* setSink(sink* receiver) noexcept;
};

} // namespace qxlog
