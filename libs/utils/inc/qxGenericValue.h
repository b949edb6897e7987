// genericValue: the one value type of the language.
//
// Every variable, parameter, signal, result, array element and map value is a genericValue: null, or one
// value of a held type. Copies are deep; only object references and references to variables stay shared after
// a copy.
//
//     qx::genericValue value(qx::string(L"12"));
//     int number = 0;
//     if (value.getValue(number))        // converts: number is 12
//         value.setValue(number + 1);    // keeps the held type: the text "13"
//
// Constructor, getValue and setValue take exactly the held types listed below; anything else does not
// compile. A value may be read, copied and written from several threads at once.
#pragma once

#include "qxCompiler.h"
#include "qxExport.h"
#include "qxSharedPtr.h"
#include "qxString.h"
#include "qxTypes.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qx
{

class date;
class time;
class timestamp;
class locString;
class directory;
class calcCrc32;
class genericValue;

namespace conditions
{
class condition;
}
namespace cell
{
class access;
}

// How a type may be held: in a value, as the target of getValue, as the source of setValue.
enum heldForms : unsigned
{
    heldInValue = 1,
    heldByPointer = 2,
    heldByConstPointer = 4,
    heldEveryWay = heldInValue | heldByPointer | heldByConstPointer
};

// The held types. A type that is not named here or specialised by the library that owns it cannot be held.
// Maps from short, int, long32 and string to values are held too, by qxGenericMap.h.
template <class T>
inline constexpr unsigned heldAs = 0;

template <>
inline constexpr unsigned heldAs<bool> = heldEveryWay;
template <>
inline constexpr unsigned heldAs<short> = heldEveryWay;
template <>
inline constexpr unsigned heldAs<ushort> = heldEveryWay;
template <>
inline constexpr unsigned heldAs<int> = heldEveryWay;
template <>
inline constexpr unsigned heldAs<uint> = heldEveryWay;
template <>
inline constexpr unsigned heldAs<long32> = heldEveryWay;
template <>
inline constexpr unsigned heldAs<ulong32> = heldEveryWay;
template <>
inline constexpr unsigned heldAs<uint64> = heldInValue | heldByConstPointer;
template <>
inline constexpr unsigned heldAs<float> = heldEveryWay;
template <>
inline constexpr unsigned heldAs<double> = heldEveryWay;
template <>
inline constexpr unsigned heldAs<string> = heldEveryWay;
template <>
inline constexpr unsigned heldAs<date> = heldEveryWay;
template <>
inline constexpr unsigned heldAs<time> = heldEveryWay;
template <>
inline constexpr unsigned heldAs<timestamp> = heldEveryWay;
template <>
inline constexpr unsigned heldAs<locString> = heldInValue | heldByPointer;
template <>
inline constexpr unsigned heldAs<directory> = heldByPointer;
template <>
inline constexpr unsigned heldAs<calcCrc32> = heldInValue | heldByPointer;
template <>
inline constexpr unsigned heldAs<sharedPtr<conditions::condition>> = heldInValue | heldByPointer;
template <>
inline constexpr unsigned heldAs<sharedPtr<genericValue>> = heldInValue | heldByConstPointer;
template <>
inline constexpr unsigned heldAs<std::vector<genericValue>> = heldEveryWay;
template <>
inline constexpr unsigned heldAs<void*> = heldInValue;

template <class T>
concept holdable = (heldAs<T> & heldInValue) != 0;
template <class T>
concept readable = (heldAs<T> & heldByPointer) != 0;
template <class T>
concept writable = holdable<T> &&(heldAs<T>& heldByConstPointer) != 0;

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

    // A value that holds a copy of `value`. Without memory it is null.
    template <holdable T>
    explicit genericValue(const T& value);

    // Deep copies. Copying what is nested beyond the machine stack throws unexpectedErrorException.
    genericValue(const genericValue& other) : mWord(atomics::loadRelaxed(other.mWord))
    {
        if (hasHolder())
            copyHolder(other);
    }
    genericValue& operator=(const genericValue& other);
    // Leave `other` null.
    genericValue(genericValue&& other) noexcept : mWord(other.mWord) { other.mWord = 0; }
    genericValue& operator=(genericValue&& other) noexcept;
    ~genericValue()
    {
        if (hasHolder())
            end(mWord);
    }

    bool isNull() const noexcept { return atomics::loadRelaxed(mWord) == 0; }
    // Null and small values, which lie in this object, have none.
    bool hasHolder() const noexcept { return mWord - 1 < (std::uint64_t(1) << 48) - 1; }
    // The value becomes null.
    void clear() noexcept;

    // Reads the value as a T, converting where the types differ. False when the value is null or does not
    // convert; `out` is untouched then.
    template <readable T>
    bool getValue(T& out) const;

    // Writes `value`. Without `replace`, a value that is not null keeps its held type: `value` is converted
    // into it, and when that is refused the result is false and nothing has changed. With `replace`, and in a
    // null value, the held type becomes T.
    template <writable T>
    bool setValue(const T& value, bool replace = false);

    // Shares the holder for the length of one operation; a null pointer for a null value. A small value,
    // which lies in this object, moves into a holder for that, and stays there until it is replaced.
    sharedPtr<holderbase> holderCopy() const noexcept;
    // Puts `other` in place and leaves the previous holder in the argument.
    void swapHolder(sharedPtr<holderbase>& other) noexcept;

private:
    friend class cell::access;

    // For the constructor that has copied the word of a holder.
    void copyHolder(const genericValue& other);
    // For constructors: takes over the first holder without a lock, as nobody else can see this value yet.
    void adopt(sharedPtr<holderbase> first) noexcept;
    // Puts a word, with the count of the holder that it may name, in place of this one; what was here ends.
    void exchange(std::uint64_t word) noexcept;
    std::uint64_t exchanged(std::uint64_t word) noexcept;
    // Lets go of the holder that a word names which nobody can read any more.
    static void end(std::uint64_t word) noexcept;

    mutable std::uint64_t mWord = 0; // null, a small value or the address of a holder
};

using valueArray = std::vector<genericValue>;

// The counter stands at the head of the holder's block, in front of it.
template <>
struct counterPlace<genericValue::holderbase>
{
    static constexpr std::size_t headSize = 16;

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

// Ends a holder that nobody shares any more. Deeply nested values end through a work list and do not
// use up the stack.
template <>
struct QXUTILS_API deleteObj<genericValue::holderbase>
{
    static void destroy(genericValue::holderbase* holder) noexcept;
};

// A value with its counter, in one block. Of the shares that are counted, `held` are those of the thread that
// owns the variable, see genericSet::hold.
struct sharedVariable
{
    ulong32 counter;
    uint held;
    genericValue value;
};

// Ends a variable in whichever form it is: such a block, or a value and a counter of their own.
template <>
struct QXUTILS_API counterPlace<genericValue>
{
    static ulong32* obtain(genericValue*) { return shptr::allocCounter(); }
    template <class Delete>
    static void end(genericValue* value, ulong32* counter) noexcept
    {
        // Two blocks of their own are too far from each other for this.
        if (reinterpret_cast<char*>(value) ==
            reinterpret_cast<char*>(counter) + offsetof(sharedVariable, value))
            return endShared(value, counter);
        Delete::destroy(value);
        shptr::releaseCounter(counter);
    }

private:
    static void endShared(genericValue* value, ulong32* counter) noexcept;
};

} // namespace qx
