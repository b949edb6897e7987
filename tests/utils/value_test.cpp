// Values: copies, typed slots, references, nesting, threads.
#include "qxException.h"
#include "qxHeldTypes.h"

#include "support/sanitizers.h"

#include <gtest/gtest.h>

#include <atomic>
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

TEST(genericValue, slot_keeps_its_type_unless_it_is_null)
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

TEST(genericValue, copies_are_deep)
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

TEST(genericValue, pointer_holders)
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

TEST(genericValue, is_copied_as_deep_as_the_stack_goes_and_ends_at_any_depth)
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

// What is read is one of the values that were written: a 7 in whichever type, "word", or three elements.
TEST(genericValue, each_pair_of_operations_on_one_value_from_two_threads)
{
    using change = void (*)(genericValue & value);
    using integer = genericValue::holder<int>;
    static const valueArray three(3, genericValue(1));
    static const int seven = 7;
    const change changes[] = {
        [](genericValue& value) {
            const auto text = read<string>(value, L"7");
            EXPECT_TRUE(text == L"7" || text == L"word") << text.utf8();
        },
        [](genericValue& value) { EXPECT_EQ(read<double>(value, 7), 7); },
        [](genericValue& value) { EXPECT_EQ(read<valueArray>(value, three).size(), 3u); },
        [](genericValue& value) { EXPECT_EQ(read<int>(genericValue(value), 7), 7); },
        [](genericValue& value) { value.holderCopy(); },
        [](genericValue& value) { value.clear(); },
        [](genericValue& value) { value = genericValue(7); },
        [](genericValue& value) { value = genericValue(7.0); },
        [](genericValue& value) { value = genericValue(string(L"7")); },
        [](genericValue& value) { value = genericValue(string(L"word")); },
        [](genericValue& value) { value = genericValue(three); },
        [](genericValue& value) { value = genericValue(value); },
        [](genericValue& value) { value.setValue(7); },
        [](genericValue& value) { value.setValue(7.0); },
        [](genericValue& value) { value.setValue(string(L"7")); },
        [](genericValue& value) { value.setValue(string(L"word")); },
        [](genericValue& value) { value.setValue(three); },
        [](genericValue& value) { value.setValue(7, true); },
        [](genericValue& value) {
            auto other = genericValue(7).holderCopy();
            value.swapHolder(other);
        },
        [](genericValue& value) {
            if (const auto shared = value.holderCopy())
                shared->copyFrom(genericValue::constptrholder<int>(&seven));
        },
        [](genericValue& value) {
            const auto shared = value.holderCopy();
            if (auto* const held = dynamic_cast<integer*>(shared.get()))
                held->assign(7);
        },
    };
    for (const change first : changes) {
        for (const change second : changes) {
            genericValue value(string(L"word"));
            std::atomic<int> waiting = 2;
            const auto work = [&](change mine, change others) {
                for (--waiting; waiting > 0;)
                    std::this_thread::yield();
                for (int i = 0; i < 300; ++i) {
                    mine(value);
                    if (i % 16 == 0) // so that pairs which only read meet a small value now and then
                        value = genericValue(7);
                    if (i % 64 == 0)
                        others(value);
                }
            };
            std::thread other(work, first, second);
            work(second, first);
            other.join();
        }
    }
}
