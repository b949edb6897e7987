// What a statement is called in messages: a piece of the text that it was parsed from.
//
// Most statements are never named, so the piece becomes a text of its own only when somebody asks. Until then
// it keeps the whole parsed text, which all statements of one text share.
#pragma once

#include "qxCompiler.h"
#include "qxScriptExport.h"
#include "qxTextSlice.h"

#include <cstdint>

namespace qx::script
{

class QXSCRIPT_API statementText
{
public:
    // How the shown text comes of the piece.
    enum class form : std::uint8_t
    {
        asWritten,
        variable // the piece is a name N: `getvar(N)`
    };

    // Texts of fewer characters are shown as a whole.
    static constexpr std::size_t shownWhole = 128;

    statementText() noexcept = default;
    // The copy is a text of its own.
    statementText(const statementText& other);
    statementText& operator=(const statementText&) = delete;
    ~statementText();

    // The text, or of one with 128 characters or more the first 122 and " ...". The reference stays valid as
    // long as this object and follows what is set later. May be called from several threads at once.
    const string& shown() const;

    // Not while another thread uses this object.
    void set(std::wstring_view text);
    // The same with a piece of a text.
    void set(std::wstring_view piece, form how);

    // True for an object that was not set and can keep a piece from there on in place of a text of its own.
    bool canKeep(std::size_t start) const noexcept { return mWord == 0 && start <= UINT32_MAX; }
    // A piece of `whole`, one count of which becomes this object's. Only where it can be kept.
    void keep(const sharedText& whole, std::size_t start, std::size_t size, form how) noexcept
    {
        mStart = static_cast<std::uint32_t>(start);
        mLength = static_cast<std::uint8_t>(size < shownWhole ? size : shownWhole);
        mForm = how;
        mWord = reinterpret_cast<std::uintptr_t>(&whole);
    }

private:
    struct shownText;

    // Where keep() has a piece: nowhere, in the text that it lies in, or in a shownText, which then keeps
    // that text. One word, so that threads agree on it; the lowest bit marks a shownText.
    static constexpr std::uintptr_t shownMark = 1;

    static shownText* shownIn(std::uintptr_t word) noexcept;
    static const sharedText* wholeIn(std::uintptr_t word) noexcept;
    void assign(string text);

    // Read and exchanged atomically by those that may not be alone.
    std::uintptr_t word() const noexcept { return atomics::loadAcquire(mWord); }

    mutable std::uintptr_t mWord = 0;
    std::uint32_t mStart = 0;
    std::uint8_t mLength = 0; // of the piece, no more than is ever shown
    form mForm = form::asWritten;
};

} // namespace qx::script
