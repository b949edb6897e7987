// Small helpers of the posix sources.
#pragma once

#include "qxString.h"

#include <cerrno>
#include <string>

#include <unistd.h>

namespace qx::platform
{

// A file name as the system takes it. One that is empty or holds a zero character names nothing.
class nativeName
{
public:
    explicit nativeName(const string& name)
        : mBytes(name.utf8()), mValid(!name.empty() && mBytes.find('\0') == mBytes.npos)
    {}

    bool valid() const { return mValid; }
    const char* c_str() const { return mBytes.c_str(); }

private:
    std::string mBytes;
    bool mValid;
};

// Owns a file descriptor; -1 is none.
class descriptor
{
public:
    explicit descriptor(int number) : mNumber(number) {}
    descriptor(const descriptor&) = delete;
    descriptor& operator=(const descriptor&) = delete;
    ~descriptor() { close(); }

    explicit operator bool() const { return mNumber >= 0; }
    int number() const { return mNumber; }

    // Hands the descriptor over to the caller.
    int release()
    {
        const int number = mNumber;
        mNumber = -1;
        return number;
    }

    // False when the system reports late that what was written is not there.
    bool close()
    {
        const int number = release();
        return number < 0 || ::close(number) == 0;
    }

private:
    int mNumber;
};

// Calls a system function again for as long as a signal interrupts it.
template <class Call>
auto retry(Call call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

} // namespace qx::platform
