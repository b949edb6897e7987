// scString: an interned name, one pointer wide.
//
//     static const qx::scString total = qx::scString::createFrom(L"total");
//     if (name == total) ...             // compares two pointers
//
// Equal texts give equal names, so names compare by their pointer. The table behind the
// names is never emptied: a name stays valid for the life of the process, and what is
// interned without end fills memory. Comparison is exact; whoever wants names without
// regard to case lower-cases the text before.
#pragma once

#include "qxString.h"

namespace qx
{

// A value that is never null; names are handed from thread to thread freely.
class QXUTILS_API scString
{
public:
    // Interns `text`; a null text is the empty name. Safe from several threads; no lock is
    // taken for a name that exists. Throws std::bad_alloc.
    static scString createFrom(const qx::string& text);
    static scString createFrom(const wchar_t* text);
    static scString intern(std::wstring_view text);

    // The text, valid for the life of the process.
    const wchar_t* c_str() const noexcept { return mpText->c_str(); }
    const qx::string& string() const noexcept { return *mpText; }

    // One comparison of pointers, whatever the length of the texts.
    friend bool operator==(const scString& a, const scString& b) noexcept { return a.mpText == b.mpText; }

private:
    explicit scString(const qx::string* text) noexcept : mpText(text) {}
    friend struct std::hash<scString>;

    // In the table of names; never null.
    const qx::string* mpText;
};

} // namespace qx

// By the pointer: differs from run to run.
template <>
struct std::hash<qx::scString>
{
    std::size_t operator()(const qx::scString& name) const noexcept
    {
        return std::hash<const void*>()(name.mpText);
    }
};
