// textSlice: a piece of a counted text.
//
// Slices of one text share its buffer, so that a long text which is cut again and again, level by level,
// exists once.
#pragma once

#include "qxFreeLists.h"
#include "qxLocks.h"
#include "qxRefPtr.h"
#include "qxString.h"

#include <string_view>

namespace qx
{

// A text that its users count: it ends with the last of them. Immutable, so several threads may read it.
class sharedText : public fromFreeLists
{
public:
    explicit sharedText(string&& text) noexcept : mText(std::move(text)) {}

    std::wstring_view view() const noexcept { return mText; }

    void addRef(uint count = 1) const noexcept { interlockedAdd(&mUsers, count); }
    void release(uint count = 1) const noexcept
    {
        if (interlockedSubtract(&mUsers, count) == 0)
            delete this;
    }

private:
    ~sharedText() = default;

    const string mText;
    mutable uint mUsers = 0;
};

class textSlice
{
public:
    textSlice() = default;
    // Copies `text` into a buffer of its own.
    explicit textSlice(const string& text) : textSlice(string(text)) {}
    explicit textSlice(string&& text) : mBuffer(new sharedText(std::move(text))), mView(mBuffer->view()) {}

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

    // The whole text that this is a piece of; null in a slice that was made of nothing.
    const sharedText* buffer() const noexcept { return mBuffer.get(); }

private:
    refPtr<const sharedText> mBuffer;
    std::wstring_view mView;
};

} // namespace qx
