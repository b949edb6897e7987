// The word of a value: what genericValue keeps behind its one member.
//
//     null            0
//     a holder        its address: at most 48 bits
//     a small value   the kind in the upper half, 32 bits of payload in the lower one
//     a double        its bits, moved up so that they are greater than all of the above
//
// Small are truth values, integers, float, date, time, and a text that is just the decimal form of an int: it
// is kept as that int until somebody wants the text. What does not fit (a great uint64, a NaN with a payload)
// lies in a holder like everything else.
//
// For the two libraries; hosts use genericValue, which does the same. Words are values: who has one of a
// holder may use it only as long as the value that it was loaded from keeps it. Nothing here throws but
// std::bad_alloc from texts.
#pragma once

#include "qxCompiler.h"
#include "qxDate.h"
#include "qxGenericValue.h"
#include "qxTime.h"
#include "qxValueTraits.h"

#include <atomic>
#include <bit>
#include <string_view>

namespace qx::cell
{

using word = std::uint64_t;

inline constexpr word null = 0;
// No value has this word: the answer of those who cannot give a small value.
inline constexpr word refused = word(6) << 48;

// The kinds of small values but double. All integers stand together, so that one comparison finds them.
enum kind : std::uint32_t
{
    noKind = 0,
    intKind = 0x10000,
    decimalKind, // a text
    longKind,
    uintKind,
    ulongKind,
    shortKind,
    ushortKind,
    uint64Kind,
    boolKind,
    floatKind,
    dateKind,
    timeKind
};

template <class T>
inline constexpr kind kindOf = noKind;
template <>
inline constexpr kind kindOf<int> = intKind;
template <>
inline constexpr kind kindOf<long32> = longKind;
template <>
inline constexpr kind kindOf<uint> = uintKind;
template <>
inline constexpr kind kindOf<ulong32> = ulongKind;
template <>
inline constexpr kind kindOf<short> = shortKind;
template <>
inline constexpr kind kindOf<ushort> = ushortKind;
template <>
inline constexpr kind kindOf<uint64> = uint64Kind;
template <>
inline constexpr kind kindOf<bool> = boolKind;
template <>
inline constexpr kind kindOf<float> = floatKind;
template <>
inline constexpr kind kindOf<date> = dateKind;
template <>
inline constexpr kind kindOf<time> = timeKind;

// The types whose values lie in the word, nearly all of them.
template <class T>
concept small = kindOf<T>
!= noKind || std::is_same_v<T, double>;

inline constexpr word doubleOffset = word(7) << 48;
inline constexpr word greatestDouble = word(0xfff8) << 48; // the bits beyond are NaNs with a payload

inline constexpr word greatestHolder = (word(1) << 48) - 1;

constexpr bool isHolder(word w)
{
    return w - 1 < greatestHolder;
}
constexpr bool isSmall(word w)
{
    return w > greatestHolder && w != refused;
}
constexpr bool isDouble(word w)
{
    return w >= doubleOffset;
}
constexpr kind kindIn(word w)
{
    return static_cast<kind>(w >> 32);
}
// An integer of whichever width, or a text that is one.
constexpr bool isIntegral(word w)
{
    return kindIn(w) - intKind <= uint64Kind - intKind;
}
constexpr std::uint32_t payloadIn(word w)
{
    return static_cast<std::uint32_t>(w);
}
constexpr word pack(kind k, std::uint32_t payload)
{
    return word(k) << 32 | payload;
}

// The word of a value; `refused` for one that does not fit.
template <small T>
constexpr word make(T value)
{
    if constexpr (std::is_same_v<T, double>) {
        const auto bits = std::bit_cast<word>(value);
        return bits > greatestDouble ? refused : bits + doubleOffset;
    } else if constexpr (std::is_same_v<T, uint64>)
        return value >> 32 ? refused : pack(uint64Kind, static_cast<std::uint32_t>(value));
    else if constexpr (heldInteger<T>)
        return pack(kindOf<T>, static_cast<std::uint32_t>(static_cast<typename valueTraits<T>::wide>(
                                   static_cast<typename valueTraits<T>::plain>(value))));
    else if constexpr (std::is_same_v<T, bool>)
        return pack(boolKind, value);
    else
        return pack(kindOf<T>, std::bit_cast<std::uint32_t>(value));
}

template <small T>
constexpr bool holds(word w)
{
    if constexpr (std::is_same_v<T, double>)
        return isDouble(w);
    else
        return kindIn(w) == kindOf<T>;
}

// The value in a word that holds a T.
template <small T>
constexpr T get(word w)
{
    if constexpr (std::is_same_v<T, double>)
        return std::bit_cast<double>(w - doubleOffset);
    else if constexpr (heldInteger<T>)
        return valueTraits<T>::wrap(payloadIn(w));
    else if constexpr (std::is_same_v<T, bool>)
        return payloadIn(w) != 0;
    else
        return std::bit_cast<T>(payloadIn(w));
}

QXUTILS_API word makeDecimal(std::wstring_view text) noexcept;

// The word of a text that is just the decimal form of an int, without leading zeros, blanks or a plus;
// `refused` for others.
inline word makeText(std::wstring_view text) noexcept
{
    constexpr std::size_t longest = 11; // -2147483648
    return text.empty() || text.size() > longest || text[0] > L'9' ? refused : makeDecimal(text);
}
// The text of a word of that kind.
QXUTILS_API string textIn(word w);

// Calls `use` with the value of a small word, in its type.
template <class Use>
decltype(auto) visit(word w, const Use& use)
{
    if (isDouble(w))
        return use(get<double>(w));
    switch (kindIn(w)) {
    case decimalKind:
        return use(textIn(w));
    case longKind:
        return use(get<long32>(w));
    case uintKind:
        return use(get<uint>(w));
    case ulongKind:
        return use(get<ulong32>(w));
    case shortKind:
        return use(get<short>(w));
    case ushortKind:
        return use(get<ushort>(w));
    case uint64Kind:
        return use(get<uint64>(w));
    case boolKind:
        return use(get<bool>(w));
    case floatKind:
        return use(get<float>(w));
    case dateKind:
        return use(get<date>(w));
    case timeKind:
        return use(get<time>(w));
    default:
        return use(get<int>(w));
    }
}

// Reads a word as a T, as getValue does. False, with `out` untouched, for null, holders and `refused`, and
// where the value does not convert.
template <class T>
QXUTILS_API bool convert(word w, T& out);

constexpr bool isUnsigned(word w)
{
    return kindIn(w) == uintKind || kindIn(w) == ulongKind || kindIn(w) == uint64Kind;
}

// `convert`, in place for what occurs most. A fast path for where onlyOwnConversions: no other converter is
// asked.
template <class T>
inline bool read(word w, T& out)
{
    if constexpr (small<T>) {
        if (holds<T>(w)) {
            out = get<T>(w);
            return true;
        }
    }
    if constexpr (std::is_same_v<T, int> || std::is_same_v<T, long32>) {
        if (isIntegral(w)) {
            out = valueTraits<T>::wrap(payloadIn(w));
            return true;
        }
    } else if constexpr (std::is_same_v<T, uint>) {
        if (isIntegral(w) && (kindIn(w) != decimalKind || static_cast<int>(payloadIn(w)) >= 0)) {
            out = payloadIn(w);
            return true;
        }
    } else if constexpr (std::is_same_v<T, double>) {
        if (isIntegral(w)) {
            out = isUnsigned(w) ? static_cast<double>(payloadIn(w))
                                : static_cast<double>(static_cast<int>(payloadIn(w)));
            return true;
        }
    }
    return convert(w, out);
}

// The word of `w` converted into the type that `like` holds, as a write into a value does. `refused` where it
// does not convert, where the result is not small and where memory runs out; `like` is small.
QXUTILS_API word convertedLike(word like, word w) noexcept;

// --- The word of a value ---

// For whoever may see the member.
class access
{
public:
    // May be read while others write.
    static word load(const genericValue& value) noexcept { return atomics::loadRelaxed(value.mWord); }
    // Puts a word in place, where nobody else can reach; the holder before it ends. A holder's word comes
    // with its count.
    static void store(genericValue& value, word small) noexcept
    {
        const word before = load(value);
        atomics::storeRelaxed(value.mWord, small);
        if (isHolder(before))
            genericValue::end(before);
    }
    // store over a small word or null.
    static void storeSmall(genericValue& value, word small) noexcept
    {
        atomics::storeRelaxed(value.mWord, small);
    }
    // store for a value that others may write: `before` is what it had, and no holder. False, with nothing
    // changed, when the value has changed meanwhile.
    static bool storeIf(genericValue& value, word before, word small) noexcept
    {
        return atomics::replaceRelease(value.mWord, before, small);
    }
    // storeIf with all that `source` holds, which is null then.
    static bool moveIf(genericValue& value, word before, genericValue& source) noexcept
    {
        if (!storeIf(value, before, source.mWord))
            return false;
        source.mWord = null;
        return true;
    }
    // Moves what `source` holds to where nobody else can reach.
    static void fill(genericValue& value, genericValue&& source) noexcept
    {
        store(value, std::exchange(source.mWord, null));
    }
    // A value of a small word, or null.
    static genericValue made(word small) noexcept
    {
        genericValue value;
        value.mWord = small;
        return value;
    }
    // A value of that holder.
    static genericValue made(sharedPtr<genericValue::holderbase> holder) noexcept
    {
        genericValue value;
        value.mWord = reinterpret_cast<word>(holder.detach());
        return value;
    }
    // The holder of a value that nobody else can reach at this moment; null where it has none.
    static genericValue::holderbase* holder(const genericValue& value) noexcept
    {
        const word w = load(value);
        return isHolder(w)
                   ? reinterpret_cast<genericValue::holderbase*>(w) // NOLINT(performance-no-int-to-ptr)
                   : nullptr;
    }
};

// Writes what a value holds into `destination`, as its holder's copyTo does. False for null, and where it
// does not convert.
QXUTILS_API bool copyHeld(const genericValue& value, genericValue::holderbase& destination);

// A value that holds `text`, which is emptied.
QXUTILS_API genericValue made(string&& text);

// --- Conversions that others add ---

// True while some converter that was added to the conversion manager reads or writes a small value. Kept by
// the manager.
extern QXUTILS_API std::atomic<bool> hasAddedConversions;

// False where the conversion manager has to be asked, even between small values.
inline bool onlyOwnConversions() noexcept
{
    return !hasAddedConversions.load(std::memory_order_acquire);
}

} // namespace qx::cell
