// printf-style formats with typed arguments.
//
// The variadic functions of the system (string::sformat, assertMsg, ...) pack their
// arguments into formatArguments and hand them to one interpreter:
//
//     qx::string::sformat(L"%s: %5.1f %%, %08x", name.c_str(), share, code);
//
// Directives: %d %i %u %x %X %o %c %s %f %e %g %p %%, with the flags "-+ #0", width and
// precision (also *). Length modifiers are accepted and mean nothing, since an argument
// knows its own type. %s takes wide text; a null text is empty. A directive without an
// argument yields nothing; an argument of another kind than its directive is shown in its
// own way. Arguments without a directive are left out.
//
// So a format that does not fit its arguments gives an odd text and never reads foreign
// memory. Text that is not the program's own is passed as an argument all the same, lest
// its percent signs be taken for directives.
#pragma once

#include "qxTypes.h"

#include <string>
#include <string_view>

namespace qx
{

class string;
class scString;

// One packed argument, made implicitly of each type that a format can show; other types do
// not compile. Borrows the text that it was made from: valid for the call that it is packed
// for. Making one allocates nothing and throws nothing.
class formatArgument
{
public:
    // What is held, and which of the read-outs below may be asked.
    enum class kind
    {
        none,
        signedInteger,
        unsignedInteger,
        floating,
        character,
        text,
        pointer
    };

    // No argument: ends a list, which therefore is never an empty array.
    formatArgument() : mSigned(0) {}
    // Integers keep their sign and are widened. A bool is 1 or 0.
    formatArgument(bool value) : mKind(kind::signedInteger), mSigned(value) {}
    formatArgument(short value) : mKind(kind::signedInteger), mSigned(value) {}
    formatArgument(int value) : mKind(kind::signedInteger), mSigned(value) {}
    formatArgument(long value) : mKind(kind::signedInteger), mSigned(value) {}
    formatArgument(long long value) : mKind(kind::signedInteger), mSigned(value) {}
    // Unsigned ones, of any width.
    formatArgument(unsigned char value) : mKind(kind::unsignedInteger), mUnsigned(value) {}
    formatArgument(unsigned short value) : mKind(kind::unsignedInteger), mUnsigned(value) {}
    formatArgument(unsigned int value) : mKind(kind::unsignedInteger), mUnsigned(value) {}
    formatArgument(unsigned long value) : mKind(kind::unsignedInteger), mUnsigned(value) {}
    formatArgument(unsigned long long value) : mKind(kind::unsignedInteger), mUnsigned(value) {}
    // `long` and `ulong` of 32 bits, where they are classes (qxTypes.h).
    formatArgument(detail::distinctInteger<int> value) : formatArgument(static_cast<int>(value)) {}
    formatArgument(detail::distinctInteger<uint> value) : formatArgument(static_cast<uint>(value)) {}
    // A float arrives as a double.
    formatArgument(double value) : mKind(kind::floating), mFloating(value) {}
    // One UTF-16 code unit.
    formatArgument(wchar_t value) : mKind(kind::character), mCharacter(value) {}
    // Texts, up to their end or the first zero. A null pointer is an empty text.
    formatArgument(const wchar_t* value)
        : mKind(kind::text), mText(value ? std::wstring_view(value) : std::wstring_view())
    {}
    formatArgument(std::wstring_view value) : mKind(kind::text), mText(value) {}
    formatArgument(const std::wstring& value) : mKind(kind::text), mText(value) {}
    // An address, for %p. It is not looked at.
    formatArgument(const void* value) : mKind(kind::pointer), mPointer(value) {}

    // What was packed. Each of the following may be asked only of an argument of its kind.
    kind type() const { return mKind; }
    // Of signedInteger: the value, sign-extended.
    long long signedValue() const { return mSigned; }
    // Of unsignedInteger: the value, zero-extended.
    unsigned long long unsignedValue() const { return mUnsigned; }
    // Of floating. A float has been widened, which is exact.
    double floatingValue() const { return mFloating; }
    // Of character: one code unit.
    wchar_t characterValue() const { return mCharacter; }
    // Of text: borrowed from whoever packed it; never reaches beyond its end.
    std::wstring_view textValue() const { return mText; }
    // Of pointer: to be shown, not followed.
    const void* pointerValue() const { return mPointer; }

private:
    // Which member of the union is alive.
    kind mKind = kind::none;
    union
    {
        long long mSigned;
        unsigned long long mUnsigned;
        double mFloating;
        wchar_t mCharacter;
        const void* mPointer;
        std::wstring_view mText;
    };
};

} // namespace qx
