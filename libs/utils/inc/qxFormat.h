// printf-style formats with typed arguments.
//
// The variadic functions of the system (string::sformat, assertMsg, statement::execError, ...) pack their
// arguments into formatArguments and hand them to one interpreter. Directives: %d %i %u %x %X %o %c %s %f %e
// %g %p %%, with the flags "-+ #0", width and precision (also *). Length modifiers are accepted and mean
// nothing, since an argument knows its own type. %s takes wide text; a null text is empty. A directive
// without an argument yields nothing; an argument of another kind than its directive is shown in its own way.
// Nothing that is formatted can read foreign memory.
#pragma once

#include "qxTypes.h"

#include <string>
#include <string_view>

namespace qx
{

class string;
class scString;

// One packed argument. Borrows the text that it was made from: valid for the call that it is packed for.
class formatArgument
{
public:
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

    formatArgument() : mSigned(0) {}
    formatArgument(bool value) : mKind(kind::signedInteger), mSigned(value) {}
    formatArgument(short value) : mKind(kind::signedInteger), mSigned(value) {}
    formatArgument(int value) : mKind(kind::signedInteger), mSigned(value) {}
    formatArgument(long value) : mKind(kind::signedInteger), mSigned(value) {}
    formatArgument(long long value) : mKind(kind::signedInteger), mSigned(value) {}
    formatArgument(unsigned char value) : mKind(kind::unsignedInteger), mUnsigned(value) {}
    formatArgument(unsigned short value) : mKind(kind::unsignedInteger), mUnsigned(value) {}
    formatArgument(unsigned int value) : mKind(kind::unsignedInteger), mUnsigned(value) {}
    formatArgument(unsigned long value) : mKind(kind::unsignedInteger), mUnsigned(value) {}
    formatArgument(unsigned long long value) : mKind(kind::unsignedInteger), mUnsigned(value) {}
    formatArgument(detail::distinctInteger<int> value) : formatArgument(static_cast<int>(value)) {}
    formatArgument(detail::distinctInteger<uint> value) : formatArgument(static_cast<uint>(value)) {}
    formatArgument(double value) : mKind(kind::floating), mFloating(value) {}
    formatArgument(wchar_t value) : mKind(kind::character), mCharacter(value) {}
    formatArgument(const wchar_t* value)
        : mKind(kind::text), mText(value ? std::wstring_view(value) : std::wstring_view())
    {}
    formatArgument(std::wstring_view value) : mKind(kind::text), mText(value) {}
    formatArgument(const std::wstring& value) : mKind(kind::text), mText(value) {}
    formatArgument(const void* value) : mKind(kind::pointer), mPointer(value) {}

    kind type() const { return mKind; }
    long long signedValue() const { return mSigned; }
    unsigned long long unsignedValue() const { return mUnsigned; }
    double floatingValue() const { return mFloating; }
    wchar_t characterValue() const { return mCharacter; }
    std::wstring_view textValue() const { return mText; }
    const void* pointerValue() const { return mPointer; }

private:
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
