// The dictionary from names to values, small and large.
#include "qxCell.h"
#include "qxGenericSet.h"
#include "qxHolder.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <thread>

using qx::genericSet;
using qx::genericValue;
using qx::scString;

namespace
{

scString name(int n)
{
    return scString::createFrom(qx::string::sformat(L"n%d", n));
}

int numberIn(const genericSet& set, int n)
{
    int number = -1;
    if (const auto value = set.genericValue(name(n)))
        value->getValue(number);
    return number;
}

} // namespace

// Operations by chance, with a plain list as a second opinion. An address that was handed out goes on seeing
// what is written under the name, until that is erased. The number of names stays about where the set changes
// its form.
TEST(genericSet, agrees_with_a_plain_list)
{
    std::mt19937 random(1);
    const auto upTo = [&](std::size_t end) { return static_cast<int>(random() % end); };
    for (const std::size_t names : {6, 32, 60}) {
        genericSet set;
        std::vector<std::shared_ptr<int>> expected(names); // null where there is no such name
        std::vector<std::pair<qx::sharedPtr<genericValue>, std::shared_ptr<int>>> handedOut;
        for (int step = 0; step < 20000; ++step) {
            const int n = upTo(names);
            std::shared_ptr<int>& known = expected[static_cast<std::size_t>(n)];
            genericSet::entry* const found = set.find(name(n));
            ASSERT_EQ(found != nullptr, known != nullptr);
            ASSERT_EQ(numberIn(set, n), known ? *known : -1);
            ASSERT_EQ(found && found->isShared(), known.use_count() > 1);
            const int operation = upTo(8);
            if (operation < 3) {
                if (operation == 0)
                    set.take(name(n), genericValue(step));
                else
                    set.setGenericValue(name(n), genericValue(step), operation == 1);
                if (!known)
                    known = std::make_shared<int>();
                *known = step;
            } else if (operation < 6) {
                set.erase(name(n));
                known.reset();
            } else if (found) {
                const genericSet::hold held(*found);
                ASSERT_EQ(found->isShared(), known.use_count() > 1) << "holding is not sharing";
                held.value() = genericValue(*known = step);
                handedOut.emplace_back(set.genericValue(name(n)), known);
                ASSERT_EQ(std::as_const(set).genericValue(name(n)).get(), handedOut.back().first.get());
            }
            for (const auto& [address, number] : handedOut) {
                int read = -1;
                ASSERT_TRUE(address->getValue(read));
                ASSERT_EQ(read, *number);
            }
            if (handedOut.size() > names / 2)
                handedOut.erase(handedOut.begin() + upTo(handedOut.size()));
        }
    }
}

// A set is for one thread, but whoever has the address of a variable may use it from another.
TEST(genericSet, another_thread_uses_addresses)
{
    for (int round = 0; round < 200; ++round) {
        genericSet set;
        std::vector<qx::sharedPtr<genericValue>> handedOut;
        for (int n = 0; n < 4; ++n) {
            set.take(name(n), genericValue(n));
            handedOut.push_back(set.genericValue(name(n)));
        }
        std::thread other([given = std::move(handedOut)]() mutable {
            for (int i = 0; !given.empty(); ++i) {
                for (const qx::sharedPtr<genericValue>& address : given)
                    address->setValue(i % 4);
                if (i % 8 == 7)
                    given.pop_back();
            }
        });
        for (int i = 0; i < 64; ++i) {
            const int n = i % 4;
            if (genericSet::entry* const found = set.find(name(n))) {
                const genericSet::hold held(*found);
                EXPECT_LT(numberIn(set, n), 4);
                if (found->isShared())
                    held.value() = genericValue(n);
                else // nobody else can reach it any more
                    qx::cell::access::store(held.value(), qx::cell::make(n));
            }
            set.take(name(4 + i), genericValue(i));
            if (i > 40)
                set.erase(name(n));
        }
        other.join();
    }
}
