// The default ANSI code page of Windows, by the system's own conversions.
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

constexpr UINT codePageGb18030 = 54936;

// Writes up to `size` bytes, or counts them when that is 0.
int narrowed(std::wstring_view text, char* bytes, int size)
{
    // Without this flag the system picks characters that look alike. Code pages that lack no character take
    // neither the flag nor a substitute.
    const UINT codePage = GetACP();
    const bool lacksNothing = codePage == CP_UTF8 || codePage == codePageGb18030;
    return WideCharToMultiByte(codePage, lacksNothing ? 0 : WC_NO_BEST_FIT_CHARS, text.data(),
                               static_cast<int>(text.size()), bytes, size, lacksNothing ? nullptr : "?",
                               nullptr);
}

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
        const std::wstring_view piece = text.substr(0, pieceLength);
        const std::size_t before = bytes.size();
        const int length = narrowed(piece, nullptr, 0);
        bytes.resize(before + static_cast<std::size_t>(length));
        narrowed(piece, bytes.data() + before, length);
    }
    return bytes;
}

} // namespace qx
