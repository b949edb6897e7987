// What a statement is called in messages: a piece of the text that it was parsed from.
//
// Most statements are never named, so the piece becomes a text of its own only when somebody asks. Until then
// the statement keeps the whole parsed text, which all statements of one text share.
#pragma once

#include "qxScriptStatement.h"

#include "qxCompiler.h"
#include "qxTextSlice.h"

#include <cstdint>

namespace qx::script
{

// Access to the text of one statement, which is borrowed.
class statementText
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

    explicit statementText(statement& named) noexcept : mStored(named.mText) {}

    // The text, or of one with 128 characters or more the first 122 and " ...". The reference stays valid as
    // long as the statement and follows what is set later. May be called from several threads at once.
    static const string& shown(const statement& named);

    // Not while another thread uses the statement.
    void set(std::wstring_view text);
    void set(std::wstring_view piece, form how);

    // True for a text that was not set and can keep a piece from there on in place of a text of its own.
    bool canKeep(std::size_t start) const noexcept { return mStored.word == 0 && start <= UINT32_MAX; }
    // A piece of `whole`, one count of which becomes the statement's. Only where it can be kept.
    void keep(const sharedText& whole, std::size_t start, std::size_t size, form how) noexcept
    {
        mStored.start = static_cast<std::uint32_t>(start);
        mStored.length = static_cast<std::uint8_t>(size < shownWhole ? size : shownWhole);
        mStored.form = static_cast<std::uint8_t>(how);
        mStored.word = reinterpret_cast<std::uintptr_t>(&whole);
    }

    // For the copy and the end of a statement. The copy has a text of its own.
    void copy(const statement& other);
    void drop() noexcept;

private:
    using storedText = statement::storedText;
    struct shownText;

    // Where keep() has a piece: nowhere, in the text that it lies in, or in a shownText, which then keeps
    // that text. One word, so that threads agree on it; the lowest bit marks a shownText.
    static constexpr std::uintptr_t shownMark = 1;

    static shownText* shownIn(std::uintptr_t word) noexcept;
    static const sharedText* wholeIn(std::uintptr_t word) noexcept;
    void assign(string text);

    storedText& mStored;
};

} // namespace qx::script
