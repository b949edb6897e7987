// Wide text, the text type of the whole system.
//
// A character is one UTF-16 code unit on every platform; where wchar_t has 32 bits each
// unit still takes a wchar_t of its own, so lengths and positions agree everywhere. UTF-8
// exists only at the edges: utf8() and fromUtf8().
//
//     qx::string text = qx::string::sformat(L"%s has %d lines", name.c_str(), count);
//
// Case mapping is the simple Unicode mapping of the Basic Multilingual Plane and knows no
// locale. Operations that work in place return *this. Memory exhaustion is std::bad_alloc,
// as for the standard text.
//
//     qx::string line = L"  Name = Value ";
//     line.deleteLeading(L" ").deleteTrailing(L" ").toLower(); // "name = value"
//     std::vector<qx::string> parts;
//     if (line.splitAt(L" = ", parts, false)) ...              // "name", "value"
//
// Nothing is locked: a text is for one thread while it is changed, and for any number
// otherwise.
#pragma once

#include "qxExport.h"
#include "qxFormat.h"

#include <cwchar>
#include <string>
#include <string_view>
#include <vector>

namespace qx
{

// A std::wstring with what the system needs of texts besides. No virtual member: it may be
// passed as either, and is never deleted through the standard's.
class QXUTILS_API string : public std::wstring
{
public:
    using std::wstring::wstring;
    string() = default;
    // The standard's text converts to this one implicitly, so that what the standard gives
    // can be returned as it is.
    string(const std::wstring& text) : std::wstring(text) {}
    string(std::wstring&& text) noexcept : std::wstring(std::move(text)) {}

    // A lower-case copy.
    string lower() const;
    // In place. A character whose mapping is longer than itself stays as it is.
    string& toLower();
    string& toUpper();

    // Remove every character that occurs in `characters` from the start, from the end, or
    // everywhere.
    string& deleteLeading(std::wstring_view characters);
    string& deleteTrailing(std::wstring_view characters);
    string& deleteAll(std::wstring_view characters);

    // Exchanges `what` for `with`, from left to right and without overlap. An empty `what`
    // changes nothing.
    string& replace(std::wstring_view what, std::wstring_view with);
    using std::wstring::replace;

    // Cuts this text at each `separator` into `parts`: one part more than there are
    // separators, empty ones included, so "a;b;" gives three. An empty separator never
    // matches. With `append` the parts join those that `parts` holds, otherwise they
    // replace them. True when the text held a separator.
    bool splitAt(std::wstring_view separator, std::vector<string>& parts, bool append) const;

    // printf-style formatting with wide text for %s, see qxFormat.h. A null format gives
    // empty text. The arguments may be pieces of this text, which is replaced at the end.
    template <class... Args>
    string& format(const wchar_t* format, const Args&... arguments)
    {
        const formatArgument packed[] = {formatArgument(arguments)..., formatArgument()};
        assignFormatted(format, packed, sizeof...(Args));
        return *this;
    }

    // format as a new text.
    template <class... Args>
    static string sformat(const wchar_t* format, const Args&... arguments)
    {
        string text;
        text.format(format, arguments...);
        return text;
    }

    // UTF-8 and back. A byte that is not part of valid UTF-8 becomes the unit 0xDC00 + byte
    // and is written back as that byte, so any byte sequence survives the way in and out.
    // Other unpaired units are written as three bytes. Neither fails but for memory.
    std::string utf8() const;
    static string fromUtf8(std::string_view bytes);

private:
    // The one interpreter of formats behind all of them. `count` leaves the closing
    // argument out.
    void assignFormatted(const wchar_t* format, const formatArgument* arguments, std::size_t count);
};

// In place, where the standard's may be a call: what a map of texts does at each step of a
// look-up.
inline bool operator<(const string& a, const string& b) noexcept
{
    const int order = std::wmemcmp(a.data(), b.data(), a.size() < b.size() ? a.size() : b.size());
    return order < 0 || (order == 0 && a.size() < b.size());
}

} // namespace qx

// As the standard hashes its own: equal texts have equal hashes, whichever of the two they
// are.
template <>
struct std::hash<qx::string>
{
    std::size_t operator()(const qx::string& text) const noexcept
    {
        return std::hash<std::wstring_view>()(text);
    }
};
