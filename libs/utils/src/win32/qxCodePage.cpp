// The default ANSI code page of Windows.
#include "qxPlatformSystem.h"

#include "qxWindows.h"

#include <algorithm>
#include <climits>

namespace qx
{

namespace
{

// The system counts in int; longer texts go in pieces. A character that a cut would split counts as lacking.
constexpr std::size_t pieceLength = INT_MAX / 8;

} // namespace

bool platformSystem::widenByte(unsigned char byte, wchar_t& unit)
{
    const char single = static_cast<char>(byte);
    wchar_t result = 0;
    if (MultiByteToWideChar(CP_ACP, 0, &single, 1, &result, 1) != 1)
        return false;
    unit = result;
    return true;
}

string platformSystem::widen(std::string_view bytes)
{
    string text;
    for (; !bytes.empty(); bytes.remove_prefix(std::min(bytes.size(), pieceLength))) {
        const int size = static_cast<int>(std::min(bytes.size(), pieceLength));
        const std::size_t before = text.size();
        const int length = MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, nullptr, 0);
        text.resize(before + static_cast<std::size_t>(length));
        MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, text.data() + before, length);
    }
    return text;
}

std::string platformSystem::narrow(std::wstring_view text)
{
    std::string bytes;
    for (; !text.empty(); text.remove_prefix(std::min(text.size(), pieceLength))) {
        const int size = static_cast<int>(std::min(text.size(), pieceLength));
        const std::size_t before = bytes.size();
        const int length = WideCharToMultiByte(CP_ACP, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
        bytes.resize(before + static_cast<std::size_t>(length));
        WideCharToMultiByte(CP_ACP, 0, text.data(), size, bytes.data() + before, length, nullptr, nullptr);
    }
    return bytes;
}

} // namespace qx
