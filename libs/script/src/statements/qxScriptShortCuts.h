// What the short cuts of statements work with: small words, and texts that need not be copied.
#pragma once

#include "qxCell.h"
#include "qxGenericSet.h"
#include "qxHolder.h"
#include "qxNumberText.h"
#include "qxScriptStatement.h"
#include "statements/qxScriptLongWay.h"

#include <algorithm>
#include <optional>

namespace qx::script
{

// Asks a short cut that may take memory. Without memory it has had no effect and declines: the long way tells
// the failure, with a link for each statement that it leaves.
template <class Ask>
[[gnu::always_inline]] inline bool declinesWithoutMemory(const Ask& ask) noexcept
{
    try {
        return ask();
    } catch (...) {
        return false;
    }
}

// A text in place where there is one, otherwise a text of its own. What is borrowed holds until something has
// an effect.
class textScratch
{
public:
    // Not defaulted in here: otherwise some forms of initialisation would fill the room with zeros.
    textScratch() noexcept;
    textScratch(const textScratch&) = delete;
    textScratch& operator=(const textScratch&) = delete;

    std::wstring_view view() const noexcept { return mView; }

    void borrow(std::wstring_view text) noexcept { mView = text; }
    void own(string&& text)
    {
        mOwn = std::move(text);
        mView = mOwn;
    }
    // The text of what a small word holds. False for null and for what is no small value.
    bool show(cell::word w)
    {
        switch (cell::kindIn(w)) {
        case cell::intKind:
        case cell::decimalKind:
        case cell::longKind:
        case cell::shortKind:
        case cell::ushortKind:
            mView = mNumber.emplace(static_cast<int>(cell::payloadIn(w))).view();
            return true;
        case cell::uintKind:
        case cell::ulongKind:
        case cell::uint64Kind:
            mView = mNumber.emplace(static_cast<uint>(cell::payloadIn(w))).view();
            return true;
        default:
            if (!cell::convert(w, mOwn))
                return false;
            mView = mOwn;
            return true;
        }
    }
    // show for a value that nobody else can reach; a text of its own is borrowed in place.
    inline bool showInPlace(const genericValue& value);
    // A text of so many characters, for the caller to write. Short ones lie in here, without an allocation.
    wchar_t* room(std::size_t size)
    {
        wchar_t* const place = size <= std::size(mRoom) ? mRoom : (mOwn.resize(size), mOwn.data());
        mView = std::wstring_view(place, size);
        return place;
    }
    // Changes the text in place: `work` gets it as a text of this object.
    template <class Work>
    void change(const Work& work)
    {
        if (mView.data() != mOwn.data() || mView.size() != mOwn.size())
            mOwn.assign(mView);
        work(mOwn);
        mView = mOwn;
    }
    // Adds to the text, which is empty or one of this object's own.
    void append(std::wstring_view more)
    {
        const std::size_t size = mView.size() + more.size();
        if (mView.data() != mOwn.data() && size <= std::size(mRoom)) {
            std::copy(more.begin(), more.end(), mRoom + mView.size());
            mView = std::wstring_view(mRoom, size);
        } else
            change([more](string& all) { all.append(more); });
    }
    // Leaves a piece of the text. `from` must lie within it.
    void narrow(std::size_t from, std::size_t size = std::wstring_view::npos)
    {
        mView = mView.substr(from, size);
    }

    // The text for the caller to keep, as a text and as a value.
    string take()
    {
        return mView.data() == mOwn.data() && mView.size() == mOwn.size() ? std::move(mOwn) : string(mView);
    }
    genericValue takeValue()
    {
        const cell::word w = cell::makeText(mView);
        return w != cell::refused ? cell::access::made(w) : cell::made(take());
    }

private:
    std::wstring_view mView;
    std::optional<numberText> mNumber;
    string mOwn;
    wchar_t mRoom[64];
};

inline textScratch::textScratch() noexcept = default;

// The value in a holder on the heap, if that holds exactly a T; nothing is converted.
template <class T>
[[gnu::always_inline]] inline T* valueOf(genericValue::holderbase& holder) noexcept
{
    if (typeid(holder) != typeid(genericValue::valueholder<T>))
        return nullptr;
    using exactly = genericValue::valueholder<T>;
    return static_cast<T*>(static_cast<exactly&>(holder).exactly::heldAddress()); // no virtual call
}

// What a value holds, if that is exactly a T; null for one without a holder. For values that nobody else can
// reach at this moment, or whose holder somebody keeps.
template <class T>
[[gnu::always_inline]] inline T* heldInPlace(const genericValue& value) noexcept
{
    genericValue::holderbase* const holder = cell::access::holder(value);
    return holder ? valueOf<T>(*holder) : nullptr;
}

// The word of a value that is small or null; `refused` for one with a holder.
inline cell::word smallIn(const genericValue& value) noexcept
{
    const cell::word w = cell::access::load(value);
    return cell::isHolder(w) ? cell::refused : w;
}

inline bool textScratch::showInPlace(const genericValue& value)
{
    if (const string* const held = heldInPlace<string>(value)) {
        borrow(*held);
        return true;
    }
    return show(smallIn(value));
}

// The text in a value that nobody else can reach at this moment, if that is a text and nobody shares its
// holder: then it may be emptied. Null otherwise.
inline string* soleText(const genericValue& value) noexcept
{
    string* const held = heldInPlace<string>(value);
    if (!held ||
        interlockedRead(counterPlace<genericValue::holderbase>::obtain(cell::access::holder(value))) != 1u)
        return nullptr;
    return held;
}

// The part of readShortly without a call: integers as int and double, and double as int, which occur most.
template <class T>
[[gnu::always_inline]] inline bool readInPlace(cell::word w, T& out) noexcept
{
    if constexpr (std::is_same_v<T, int>) {
        if (cell::isIntegral(w)) { // of any width, cut to that of an int
            out = static_cast<int>(cell::payloadIn(w));
            return true;
        }
        if (cell::isDouble(w)) {
            const auto value = cell::get<double>(w);
            if (!(value > -2147483649.0 && value < 2147483648.0))
                return false;
            out = static_cast<int>(value);
            return true;
        }
    } else if constexpr (cell::small<T>) {
        if (cell::holds<T>(w)) {
            out = cell::get<T>(w);
            return true;
        }
        if constexpr (std::is_same_v<T, double>)
            if (cell::kindIn(w) == cell::intKind || cell::kindIn(w) == cell::decimalKind) {
                out = static_cast<int>(cell::payloadIn(w));
                return true;
            }
    }
    return false;
}

// Reads a word as cell::read does, for short cuts: they are not taken where others have added conversions.
template <class T>
[[gnu::always_inline]] inline bool readShortly(cell::word w, T& out)
{
    return readInPlace(w, out) || declinesWithoutMemory([&] { return cell::read(w, out); });
}

inline bool isSameKind(cell::word a, cell::word b)
{
    return cell::isDouble(a) ? cell::isDouble(b) : cell::kindIn(a) == cell::kindIn(b);
}

// The word that is in a value of `before` once `w` is written into it; `refused` where the long way has to
// tell.
inline cell::word writtenOver(cell::word before, cell::word w, bool keepsType)
{
    if (!keepsType || before == cell::null || isSameKind(before, w))
        return w;
    if (cell::kindIn(before) == cell::decimalKind && cell::kindIn(w) == cell::intKind)
        return cell::pack(cell::decimalKind, cell::payloadIn(w));
    return cell::isHolder(before) ? cell::refused : cell::convertedLike(before, w);
}

// Writes a small word into a value that others may reach, as a statement that keeps the type of its result.
// False, with nothing changed, where the long way has to.
inline bool writeTyped(genericValue& result, cell::word w)
{
    const cell::word before = cell::access::load(result);
    const cell::word written = cell::isHolder(before) ? cell::refused : writtenOver(before, w, true);
    return written != cell::refused && cell::access::storeIf(result, before, written);
}

// Reads a value that has been evaluated, in place where it is small.
template <class T>
bool readValue(const genericValue& value, T& out)
{
    if constexpr (cell::small<T>)
        if (shortCutsAllowed() && cell::read(cell::access::load(value), out))
            return true;
    return value.getValue(out);
}

// Writes a small word, or null, into a variable. False, with nothing changed, where the long way has to.
inline bool writeSmall(genericSet::entry& variable, cell::word w, bool keepsType)
{
    genericValue& value = variable.value();
    const cell::word before = cell::access::load(value);
    const cell::word written = writtenOver(before, w, keepsType);
    if (written == cell::refused)
        return false;
    if (variable.isShared())
        return !cell::isHolder(before) && cell::access::storeIf(value, before, written);
    cell::access::store(value, written);
    return true;
}

// True when a text takes the place of what a variable holds, which is then a text or gives way.
inline bool mayTakeText(genericSet::entry& variable, bool keepsType)
{
    if (variable.isShared())
        return false;
    const cell::word before = cell::access::load(variable.value());
    return !keepsType || before == cell::null || cell::kindIn(before) == cell::decimalKind ||
           heldInPlace<string>(variable.value());
}

} // namespace qx::script
