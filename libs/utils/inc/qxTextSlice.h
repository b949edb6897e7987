// textSlice: a piece of a counted text.
//
// Slices of one text share its buffer, so that a long text which is cut again and again, level by level,
// exists once.
#pragma once

#include "qxSharedPtr.h"
#include "qxString.h"

#include <string_view>

namespace qx
{

class textSlice
{
public:
    textSlice() = default;
    // Copies `text` into a buffer of its own.
    explicit textSlice(const string& text) : mBuffer(new string(text)), mView(*mBuffer) {}
    explicit textSlice(string&& text) : mBuffer(new string(std::move(text))), mView(*mBuffer) {}

    std::wstring_view view() const noexcept { return mView; }
    string text() const { return string(std::wstring(mView)); }
    std::size_t size() const noexcept { return mView.size(); }
    bool empty() const noexcept { return mView.empty(); }

    // `part` must lie within this slice.
    textSlice slice(std::wstring_view part) const
    {
        textSlice made(*this);
        made.mView = part;
        return made;
    }

private:
    sharedPtr<string> mBuffer;
    std::wstring_view mView;
};

} // namespace qx
