// Small helpers of the Windows sources.
#pragma once

#include "qxString.h"
#include "qxTypes.h"

#include <windows.h>

namespace qx::platform
{

// A name that is empty or holds a zero character names nothing.
inline bool isName(const string& name)
{
    return !name.empty() && name.find(L'\0') == name.npos;
}

// 100 ns since 1601 as milliseconds since 1970.
inline long long fromWindowsTicks(uint64 ticks)
{
    return static_cast<long long>(ticks / 10000) - 11644473600000LL;
}

// Owns a handle of the kernel; null and INVALID_HANDLE_VALUE are none.
class handle
{
public:
    explicit handle(HANDLE value) : mValue(value == INVALID_HANDLE_VALUE ? nullptr : value) {}
    handle(const handle&) = delete;
    handle& operator=(const handle&) = delete;
    ~handle()
    {
        if (mValue)
            CloseHandle(mValue);
    }

    explicit operator bool() const { return mValue != nullptr; }
    HANDLE get() const { return mValue; }
    HANDLE release()
    {
        const HANDLE value = mValue;
        mValue = nullptr;
        return value;
    }

private:
    HANDLE mValue;
};

// The text that a function of the form `length = call(buffer, size)` writes. Such functions tell a short
// buffer by a length of at least its size. Empty when the call fails with 0.
template <class Call>
string textOfCall(Call call)
{
    string text(MAX_PATH, L'\0');
    for (;;) {
        const DWORD size = static_cast<DWORD>(text.size());
        const DWORD length = call(text.data(), size);
        if (length < size) {
            text.resize(length);
            return text;
        }
        text.resize(length == size ? size * std::size_t(2) : length);
    }
}

} // namespace qx::platform
