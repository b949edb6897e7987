// genericValue: the one value type of the system.
//
// Every variable, parameter, result, array element and map value is a genericValue: null,
// or one value of a held type. Copies are deep; only object references and references to
// variables stay shared after a copy.
//
//     qx::genericValue value(qx::string(L"12"));
//     int number = 0;
//     if (value.getValue(number))        // converts: number is 12
//         value.setValue(number + 1);    // keeps the held type: the text "13"
//     value.setValue(1.5, true);         // replaces: a double from here on
//
// Constructor, getValue and setValue take exactly the held types listed below; anything
// else does not compile. The types themselves are declared here only, so that this header
// stays cheap: whoever uses one of them includes its header, and qxHeldTypes.h has them
// all.
//
// A value is one word. It may be read, copied and written from several threads at once:
// each operation takes place as a whole. Small values lie in the word and cost no memory;
// all others lie in a holder (qxHolder.h), a counted block. Failures are results: a value
// that finds no memory becomes null, and a conversion that is refused is false. Copying
// values that are nested beyond the machine stack throws unexpectedErrorException; reading
// what allocates (a text, an array) may throw std::bad_alloc.
#pragma once

#include "qxCompiler.h"
#include "qxExport.h"
#include "qxSharedPtr.h"
#include "qxString.h"
#include "qxTypeLists.h"
#include "qxTypes.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qx
{

namespace cell
{
class access;
}

// How a type may be held: in a value, as the target of getValue, as the source of setValue.
// To be or-ed.
enum heldForms : unsigned
{
    heldInValue = 1,
    heldByPointer = 2,
    heldByConstPointer = 4,
    heldEveryWay = heldInValue | heldByPointer | heldByConstPointer
};

// The held types:
//
//     bool short ushort int uint long32 ulong32    every way
//     float double string date time timestamp      every way
//     valueArray                                   every way
//     uint64, a reference to a variable            constructor and setValue
//     locString calcCrc32, a condition             constructor and getValue
//     directory                                    getValue, out of a text
//     void*, the maps of qxGenericMap.h            constructor
//
// The lists are those of qxTypeLists.h. Small values, numbers and truth values, dates and times, lie in the
// word of the value, but for a uint64 past 32 bits and NaNs with a payload; the others in a counted block.
//
// A library above may add types of its own. A type that is not listed there or specialised by
// the library that owns it cannot be held. The list is closed for everybody else: a library
// that holds a type has to instantiate its holders for all others.
template <class T>
inline constexpr unsigned heldAs = oneOf<T, everyHeldTypes>     ? heldEveryWay
                                   : oneOf<T, readHeldTypes>    ? heldInValue | heldByPointer
                                   : oneOf<T, writtenHeldTypes> ? heldInValue | heldByConstPointer
                                   : oneOf<T, keptHeldTypes>    ? heldInValue
                                                                : 0u;
// Only read out of a value that holds a text: no value holds a directory.
template <>
inline constexpr unsigned heldAs<directory> = heldByPointer;

// What the constructor takes, getValue reads and setValue writes.
template <class T>
concept holdable = (heldAs<T> & heldInValue) != 0;
template <class T>
concept readable = (heldAs<T> & heldByPointer) != 0;
template <class T>
concept writable = holdable<T> &&(heldAs<T>& heldByConstPointer) != 0;

// One value: null, or of a held type that it keeps until it is replaced.
class QXUTILS_API genericValue
{
public:
    // The polymorphic carriers of held values; their definitions stand in qxHolder.h.
    class holderbase;
    template <class T>
    class holder;
    template <class T>
    class valueholder;
    template <class T>
    class ptrholder;
    template <class T>
    class constptrholder;

    // A null value: no held type.
    genericValue() noexcept = default;

    // A value that holds a copy of `value`. Without memory it is null. A text that is just
    // the decimal form of an int becomes small, and is the same text for everybody who
    // asks.
    template <holdable T>
    explicit genericValue(const T& value);

    // Deep copies, of what `other` holds at one moment. Without memory the copy is null.
    // Copying what is nested beyond the machine stack throws unexpectedErrorException.
    genericValue(const genericValue& other) : mWord(atomics::loadRelaxed(other.mWord))
    {
        if (hasHolder())
            copyHolder(other);
    }
    // A deep copy in place of what was here, which ends afterwards. Fails as the copy
    // constructor does; this value is null without memory, and unchanged when it throws.
    genericValue& operator=(const genericValue& other);
    // Leave `other` null. Nobody else may use `other` meanwhile.
    genericValue(genericValue&& other) noexcept : mWord(other.mWord) { other.mWord = 0; }
    genericValue& operator=(genericValue&& other) noexcept;
    // Ends what it holds, unless that is shared; nested values without recursion beyond a
    // few levels.
    ~genericValue()
    {
        if (hasHolder())
            end(mWord);
    }

    // True where nothing is held. Another thread may change that at any time.
    bool isNull() const noexcept { return atomics::loadRelaxed(mWord) == 0; }
    // True where the value lies in a holder. Null and small values, which lie in this
    // object, have none.
    bool hasHolder() const noexcept { return mWord - 1 < (std::uint64_t(1) << 48) - 1; }
    // The value becomes null.
    void clear() noexcept;

    // Reads the value as a T, converting where the types differ (qxTypeConversion.h). A
    // reference to a variable is followed. False when the value is null or does not
    // convert; `out` is untouched then.
    template <readable T>
    bool getValue(T& out) const;

    // Writes `value`. Without `replace`, a value that is not null keeps its held type:
    // `value` is converted into it, and when that is refused the result is false and
    // nothing has changed; a reference to a variable is followed, and the variable written.
    // With `replace`, and in a null value, the held type becomes T and the result is true.
    template <writable T>
    bool setValue(const T& value, bool replace = false);

    // Shares the holder for the length of one operation; a null pointer for a null value. A
    // small value, which lies in this object, moves into a holder for that, and stays there
    // until it is replaced.
    sharedPtr<holderbase> holderCopy() const noexcept;
    // Puts `other`, which may be null, in place and leaves the previous holder in the
    // argument: how a value of whatever type is exchanged without a copy.
    void swapHolder(sharedPtr<holderbase>& other) noexcept;

private:
    friend class cell::access;

    // The rest of the copy constructor, for a value in a holder.
    void copyHolder(const genericValue& other);
    // For constructors: takes over the first holder without a lock, as nobody else can see
    // this value yet.
    void adopt(sharedPtr<holderbase> first) noexcept;
    // exchanged, where what was here ends.
    void exchange(std::uint64_t word) noexcept;
    // Puts a word, with the count of the holder that it may name, in place of this one, and
    // gives the one before with its count.
    std::uint64_t exchanged(std::uint64_t word) noexcept;
    // Gives back the count of the holder that a word names. Nobody may read that word any
    // more. The block ends with the holder.
    static void end(std::uint64_t word) noexcept;

    // Null, a small value with its type, or the address of a holder; accessed atomically.
    // Mutable, since holderCopy may move a small value into a holder.
    mutable std::uint64_t mWord = 0; // null, a small value or the address of a holder
};

// An array: itself a held type, so arrays nest.
using valueArray = std::vector<genericValue>;

// The counter stands at the head of the holder's block, in front of it: a shared pointer to
// a holder allocates nothing.
template <>
struct counterPlace<genericValue::holderbase>
{
    // The bytes between the start of the block and the holder.
    static constexpr std::size_t headSize = 16;

    // The counter exists already: a holder that is shared is made by `new` alone.
    static ulong32* obtain(genericValue::holderbase* holder) noexcept
    {
        return reinterpret_cast<ulong32*>(reinterpret_cast<char*>(holder) - headSize);
    }
    template <class Delete>
    static void end(genericValue::holderbase* holder, ulong32*) noexcept
    {
        Delete::destroy(holder);
    }
};

// Ends a holder that nobody shares any more, on the thread that let go last. Deeply nested
// values end through a work list and do not use up the stack.
template <>
struct QXUTILS_API deleteObj<genericValue::holderbase>
{
    static void destroy(genericValue::holderbase* holder) noexcept;
};

// What is counted of a variable, at the start of a block.
struct variableCount
{
    // In place of `held`: the value lies elsewhere.
    static constexpr uint apart = static_cast<uint>(-1);

    // All shares.
    ulong32 counter;
    // Those among them of the thread that owns the variable, which alone changes this; see
    // genericSet::hold.
    uint held;
};

// A variable in one block: the count, and the value that everybody with an address reads
// and writes.
struct sharedVariable : variableCount
{
    genericValue value;
};

// Variables that a set hands out are such blocks. Where somebody makes a shared pointer of
// a value of his own, the count stands apart.
template <>
struct QXUTILS_API counterPlace<genericValue>
{
    // A new count for `value`; throws std::bad_alloc.
    static ulong32* obtain(genericValue* value);

    template <class Delete>
    static void end(genericValue* value, ulong32* counter) noexcept
    {
        // The counter is the first member of its count, so both have one address.
        if (reinterpret_cast<const variableCount*>(counter)->held != variableCount::apart)
            return endShared(value, counter);
        endApart<Delete>(value, counter);
    }

private:
    // Not inline: rare, and g++ 12 takes the delete for one of a sharedVariable's value.
    template <class Delete>
    QX_NOINLINE static void endApart(genericValue* value, ulong32* counter) noexcept
    {
        Delete::destroy(value);
        endCount(counter);
    }
    // Ends a sharedVariable: the value, then its block.
    static void endShared(genericValue* value, ulong32* counter) noexcept;
    // Ends a count that stands apart.
    static void endCount(ulong32* counter) noexcept;
};

} // namespace qx
