// The nesting of a text: where its brackets and braces close, and where what stands in them is cut.
//
// Each level of nesting is parsed as a text of its own. So that not each level walks over all that is nested
// in it, one walk indexes the whole text first: parsing costs the length of the text, not its length times
// its depth.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <string_view>

namespace qx::script
{

// Places are offsets into the text. A cut is a comma that separates the parameters in a bracket, or a
// semicolon that separates the parts of a block in a brace.
class bracketIndex
{
public:
    // Indexes all brackets that are met outside of strings, and all braces. What opens in a string is unknown
    // until a walk for which no string is there adds it. Nothing at all is kept of a text that is too short
    // to be worth it, or too long.
    explicit bracketIndex(std::wstring_view text);

    bool isKept() const noexcept { return mEntries != nullptr; }
    // Whether strings in the text may hold escapes.
    bool hasBackslashes() const noexcept { return mHasBackslashes; }

    // True when the bracket or brace at `open` is known to close at `close`; its cuts are known then, too.
    bool closesAt(std::size_t open, std::size_t close) const noexcept
    {
        return isKept() && closing(open) == close;
    }

    // The following only where it is kept.

    // Where the bracket or brace at `open` closes; 0 for one that never does, for one with unbalanced angle
    // brackets in it, and while it is unknown.
    std::size_t closing(std::size_t open) const noexcept { return mEntries[open].closing & placeBits; }
    // Where a bracket closes with neither semicolons nor braces in it; 0 for others.
    std::size_t closingOfPlain(std::size_t open) const noexcept
    {
        const std::uint32_t closing = mEntries[open].closing;
        return closing & isPlain ? closing & placeBits : 0;
    }
    // The first cut in the bracket or brace at `place`, which has to be known to close, or the cut behind the
    // one at `place`; 0 where there is none.
    std::size_t nextCut(std::size_t place) const noexcept { return mEntries[place].nextCut; }

private:
    friend class openLevels;

    // By the place of its character. All 0 for what is neither an opening bracket nor a cut.
    struct entry
    {
        std::uint32_t closing; // of an opening bracket or brace, perhaps with isPlain; 0 while unknown
        std::uint32_t nextCut; // 0 for none
    };

    static constexpr std::uint32_t isPlain = 0x8000'0000u;
    static constexpr std::uint32_t placeBits = isPlain - 1;
    static constexpr std::size_t shortest = 64;

    std::unique_ptr<entry[]> mEntries;
    bool mHasBackslashes;
};

// Room for the levels that are open at a time. It lies beside the walk that uses it, not in it: nothing then
// has the address of the walk, and its members stay in registers.
class levelRoom
{
public:
    struct level
    {
        std::uint32_t place;
        std::uint32_t lastCut;        // `place` while there is none
        std::int32_t angle;           // open angle brackets in front of it; negative when more were closed
        std::uint32_t statementMarks; // semicolons and braces in front of it
    };

    levelRoom() noexcept = default;
    levelRoom(const levelRoom&) = delete;
    levelRoom& operator=(const levelRoom&) = delete;

    level* begin() noexcept { return mpLevels; }
    // The one above that, which lies in here.
    level* above(level* top)
    {
        ++top;
        return top != mpEnd ? top : grow();
    }

private:
    level* grow();

    static constexpr std::size_t inside = 32;

    std::array<level, inside> mInside;
    std::unique_ptr<level[]> mOutside;
    level* mpLevels = mInside.data();
    level* mpEnd = mInside.data() + inside;
};

// The brackets, or the braces, that a walk is inside of. They go into the index as they close.
class openLevels
{
public:
    // Borrows both. The index has to be kept if a level is opened.
    openLevels(bracketIndex& index, levelRoom& room) noexcept
        : mRoom(room), mpTop(room.begin()), mpEntries(index.mEntries.get())
    {
        // More angle brackets than there are: outside of all levels nothing is cut.
        mpTop->angle = std::numeric_limits<std::int32_t>::max();
    }

    bool isEmpty() const noexcept { return mpTop == mRoom.begin(); }

    // All of these get the numbers that the walk has counted so far: open angle brackets, and semicolons and
    // braces. They cut and close what was opened last.
    void open(std::size_t place, std::int32_t angle, std::uint32_t statementMarks)
    {
        mpTop = mRoom.above(mpTop);
        const auto at = static_cast<std::uint32_t>(place);
        *mpTop = {at, at, angle, statementMarks};
    }
    // A comma in angle brackets cuts nothing.
    void cut(std::size_t place, std::int32_t angle) noexcept
    {
        if (mpTop->angle != angle)
            return;
        mpEntries[mpTop->lastCut].nextCut = static_cast<std::uint32_t>(place);
        mpTop->lastCut = static_cast<std::uint32_t>(place);
    }
    // Nothing happens where none is open.
    void close(std::size_t place, std::int32_t angle, std::uint32_t statementMarks) noexcept
    {
        if (isEmpty())
            return;
        const levelRoom::level& closed = *mpTop--;
        if (closed.angle == angle)
            mpEntries[closed.place].closing =
                static_cast<std::uint32_t>(place) |
                (closed.statementMarks == statementMarks ? bracketIndex::isPlain : 0);
    }

private:
    levelRoom& mRoom;
    levelRoom::level* mpTop; // the first of the room is outside of all levels
    bracketIndex::entry* mpEntries;
};

} // namespace qx::script
