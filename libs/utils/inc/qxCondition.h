// A condition: a small expression that can be tested against a value.
//
//     qx::sharedPtr<qx::conditions::condition> range(qx::conditions::condition::parse(L"between 1 and 10"));
//     if (range && range->isTrue(value))
//
// The tested value is the unnamed left side of every test:
//
//     = x    != x    < x    <= x    > x    >= x    between x and y    in (x, y, ...)    like "a*?"    empty
//
// Tests are joined by `not`, `and`, `or` (which bind in this order, `not` first) and
// parentheses. An operand is a number, a text in quotation marks (two in a row stand for
// one), `true` or `false`. Words in any case.
//
// A value that holds a date, a time or a timestamp is compared with a text of that form as
// what it holds; a value that reads as a number is compared with a number as one;
// everything else is compared as text, exactly, with `true` and `false` as their words.
// `like` asks for the whole text, where * stands for any characters and ? for one. `empty`
// holds for null and for the empty text. A null value, and one that has no text, satisfies
// `!=`, a null value `empty` too, and both no other test. A reference stands for its
// variable.
#pragma once

#include "qxExport.h"
#include "qxGenericValue.h"

namespace qx::conditions
{

class QXUTILS_API condition
{
public:
    virtual ~condition();
    // True when `value` fulfils the condition. May be asked from several threads at once.
    virtual bool isTrue(const genericValue& value) const = 0;

    // A new condition, owned by the caller. Null for a text that is no condition, has more
    // than 65,536 characters, or nests parentheses and `not` more than 200 deep.
    static condition* parse(const string& text);
};

} // namespace qx::conditions
