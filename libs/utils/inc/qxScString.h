// scString: an interned name, one pointer wide.
//
// Equal texts give equal names, so names compare by their pointer. The table behind the names is never
// emptied: a name stays valid for the life of the process. Comparison is exact; whoever wants names without
// regard to case lower-cases the text before.
#pragma once

#include "qxString.h"

namespace qx
{

class QXUTILS_API scString
{
public:
    // Interns `text`; a null text is the empty name. Safe from several threads; no lock is taken for a name
    // that exists. Throws std::bad_alloc.
    static scString createFrom(const qx::string& text);
    static scString createFrom(const wchar_t* text);
    static scString intern(std::wstring_view text);

    const wchar_t* c_str() const noexcept { return mpText->c_str(); }
    const qx::string& string() const noexcept { return *mpText; }

    friend bool operator==(const scString& a, const scString& b) noexcept { return a.mpText == b.mpText; }

private:
    explicit scString(const qx::string* text) noexcept : mpText(text) {}
    friend struct std::hash<scString>;

    const qx::string* mpText;
};

} // namespace qx

template <>
struct std::hash<qx::scString>
{
    std::size_t operator()(const qx::scString& name) const noexcept
    {
        return std::hash<const void*>()(name.mpText);
    }
};
