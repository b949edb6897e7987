// Values: copies, typed slots, references, nesting, threads.
#include "qxException.h"
#include "qxHeldTypes.h"

#include "support/sanitizers.h"

#include <gtest/gtest.h>

#include <thread>

using qx::genericValue;
using qx::string;
using qx::valueArray;

namespace
{

using reference = qx::sharedPtr<genericValue>;

template <class T>
T* heldIn(const genericValue& value)
{
    const auto shared = value.holderCopy();
    auto* holder = dynamic_cast<genericValue::holder<T>*>(shared.get());
    return holder ? &holder->value() : nullptr;
}

template <class T>
T read(const genericValue& value, T otherwise = T())
{
    value.getValue(otherwise);
    return otherwise;
}

// An array in an array in an array ...
genericValue nested(int depth)
{
    genericValue outermost((valueArray()));
    valueArray* inner = heldIn<valueArray>(outermost);
    for (int i = 1; i < depth; ++i) {
        inner->push_back(genericValue(valueArray()));
        inner = heldIn<valueArray>(inner->back());
    }
    return outermost;
}

} // namespace

TEST(genericValue, slotKeepsItsTypeUnlessItIsNull)
{
    genericValue value;
    EXPECT_EQ(read<int>(value, 7), 7);
    EXPECT_TRUE(value.setValue(1));
    EXPECT_TRUE(value.setValue(2.5));
    EXPECT_FALSE(value.setValue(string(L"two")));
    EXPECT_EQ(*heldIn<int>(value), 2);
    EXPECT_TRUE(value.setValue(qx::long32(-7), true));
    EXPECT_FALSE(heldIn<int>(value)); // `long` and `int` are two types
    EXPECT_EQ(read<int>(value), -7);
    value = genericValue();
    EXPECT_TRUE(value.isNull());
}

TEST(genericValue, copiesAreDeep)
{
    using map = std::map<string, genericValue>;
    const valueArray elements{genericValue(1), genericValue(string(L"two"))};
    genericValue first(map{{L"key", genericValue(elements)}});
    const genericValue second(first);
    heldIn<valueArray>(heldIn<map>(first)->at(L"key"))->front().setValue(9);
    EXPECT_EQ(read<int>(heldIn<valueArray>(heldIn<map>(second)->at(L"key"))->front()), 1);

    genericValue moved(elements);
    const genericValue& self = moved;
    moved = self;
    moved = heldIn<valueArray>(moved)->back(); // assigned from a part of itself
    EXPECT_EQ(read<string>(moved), L"two");
    moved = std::move(first);
    EXPECT_TRUE(first.isNull()); // NOLINT(bugprone-use-after-move)
}

TEST(genericValue, pointerHolders)
{
    int target = 1;
    const int source = 2;
    genericValue::ptrholder<int> writer(&target);
    genericValue::constptrholder<int> reader(&source);
    EXPECT_TRUE(reader.copyTo(writer));
    EXPECT_EQ(target, 2);
    EXPECT_THROW(reader.value(), bool);
    EXPECT_EQ(reader.heldAddress(), nullptr);
    reader.assign(3);
    EXPECT_EQ(source, 2);
    genericValue::ptrholder<int>(nullptr).assign(3);
    const double half = 2.5;
    const genericValue::constptrholder<double> other(&half);
    EXPECT_FALSE(genericValue::ptrholder<int>(nullptr).copyFrom(other));
    EXPECT_FALSE(genericValue::constptrholder<int>(&source).copyFrom(other));
    const qx::sharedPtr<genericValue::holderbase> clone(writer.clone());
    EXPECT_TRUE(clone->isPointerHolder());
    EXPECT_EQ(clone->heldConstAddress(), &target);
}

TEST(genericValue, isCopiedAsDeepAsTheStackGoesAndEndsAtAnyDepth)
{
    reference variable(new genericValue(1));
    for (int i = 0; i < 100000; ++i)
        variable = reference(new genericValue(variable));
    variable = reference();
    const genericValue deep = nested(500000);
    QX_SKIP_DEEP_STACK;
    EXPECT_FALSE(genericValue(nested(100)).isNull());
    genericValue kept(5);
    EXPECT_THROW(kept = deep, qx::unexpectedErrorException);
    EXPECT_EQ(read<int>(kept), 5);
}

TEST(genericValue, threadsShareOneValue)
{
    genericValue value(1);
    genericValue array((valueArray(3, genericValue(1))));
    const reference variable(new genericValue(0));
    // Runs in two threads at once.
    const auto work = [&](int thread) {
        genericValue own(valueArray(100, genericValue(thread)));
        genericValue shared(variable);
        for (int i = 0; i < 3000; ++i) {
            genericValue copy(value);
            value = copy;
            value.setValue(i);
            value.setValue(string(L"12"));
            read<int>(value);
            read<string>(value);
            if (i % 100 == 0)
                value.setValue(thread ? 2.5 : 1.5, true);

            array.setValue(valueArray(read<valueArray>(array).size(), genericValue(i)));
            array = genericValue(array);
            own = genericValue(own);
            shared.setValue(i);
            EXPECT_EQ(read<int>(heldIn<valueArray>(own)->back()), thread);
        }
    };
    std::thread other(work, 1);
    work(0);
    other.join();
    EXPECT_EQ(read<valueArray>(array).size(), 3u);
    EXPECT_EQ(read<int>(*variable), 2999);
}
