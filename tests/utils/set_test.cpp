// The dictionary from names to values, small and large.
#include "qxGenericSet.h"
#include "qxHolder.h"

#include <gtest/gtest.h>

using qx::genericSet;
using qx::genericValue;
using qx::scString;

namespace
{

scString name(int n)
{
    return scString::createFrom(qx::string::sformat(L"n%d", n));
}

int numberIn(genericSet& set, int n)
{
    int number = -1;
    if (const qx::sharedPtr<genericValue> value = set.genericValue(name(n)))
        value->getValue(number);
    return number;
}

} // namespace

TEST(genericSet, writesIntoTheStorageThatIsThere)
{
    for (const bool flag : {false, true}) {
        genericSet set;
        EXPECT_EQ(set.find(name(1)), nullptr);
        EXPECT_TRUE(set.setGenericValue(name(1), genericValue(1), flag));
        const qx::sharedPtr<genericValue> handedOut = set.genericValue(name(1));
        EXPECT_TRUE(set.setGenericValue(name(1), genericValue(qx::string(L"2")), flag));
        EXPECT_EQ(std::as_const(set).genericValue(name(1)).get(), handedOut.get());
        EXPECT_EQ(&set.find(name(1))->value(), handedOut.get());
        set.erase(name(1));
        set.erase(name(1));
        int number = 0;
        EXPECT_TRUE(handedOut->getValue(number)); // whoever has it keeps it
        EXPECT_EQ(number, 2);
    }
}

TEST(genericSet, findsEveryNameWhileItGrowsAndShrinks)
{
    constexpr int most = 40;
    genericSet set;
    for (int n = 0; n < most; ++n) {
        set.setGenericValue(name(n), genericValue(n), true);
        for (int known = 0; known < most; ++known)
            ASSERT_EQ(numberIn(set, known), known <= n ? known : -1);
    }
    for (int erased = 0; erased < most; ++erased) {
        const auto order = [](int i) { return i * 7 % most; }; // first, last and middle places
        set.erase(name(order(erased)));
        for (int i = 0; i < most; ++i)
            ASSERT_EQ(numberIn(set, order(i)), i > erased ? order(i) : -1);
    }
}
