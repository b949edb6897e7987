// The word of a value: every kind where something ends, and that nothing tells a value in the word from the
// same one behind a holder.
#include "heldValues.h"
#include "qxCell.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <map>

using qx::genericValue;
using qx::string;
namespace cell = qx::cell;

namespace
{

struct sample
{
    genericValue value;
    std::function<bool(genericValue&)> write; // as setValue
};

// By what heldIn tells of them.
const std::map<string, sample>& samples()
{
    static const std::map<string, sample> all = [] {
        std::map<string, sample> made;
        withEachValue([&](const auto& value) {
            const genericValue held(value);
            made.insert({heldIn(held), {genericValue(value), [value](genericValue& slot) {
                                            return slot.setValue(value);
                                        }}});
        });
        return made;
    }();
    return all;
}

genericValue promoted(const genericValue& value)
{
    genericValue copy(value);
    copy.holderCopy();
    return copy;
}

} // namespace

TEST(cell, words_keep_every_bit)
{
    std::map<cell::word, string> known;
    withEachValue([&]<class T>(const T& value) {
        const genericValue made(value);
        const string shown = heldIn(made);
        EXPECT_TRUE(shown.ends_with(textOf(value)));
        if constexpr (cell::small<T>) {
            const cell::word w = cell::make(value);
            if (w == cell::refused) {
                EXPECT_TRUE((std::is_same_v<T, qx::uint64> || std::is_same_v<T, double>)) << shown.utf8();
                EXPECT_TRUE(cell::isHolder(cell::access::load(made)));
                return;
            }
            EXPECT_EQ(cell::access::load(made), w);
            EXPECT_EQ(known.emplace(w, shown).first->second, shown) << "one word for two values";
            EXPECT_TRUE(cell::isSmall(w) && !cell::isHolder(w) && cell::holds<T>(w)) << shown.utf8();
            EXPECT_EQ(cell::isDouble(w), (std::is_same_v<T, double>));
            EXPECT_EQ(cell::isIntegral(w), qx::heldInteger<T>);
            EXPECT_EQ(textOf(cell::get<T>(w)), textOf(value));
            EXPECT_EQ(cell::visit(w, [](const auto& visited) { return heldIn(genericValue(visited)); }),
                      shown);
        }
    });
    EXPECT_EQ(cell::make(qx::uint64(~0u) + 1), cell::refused);
    EXPECT_NE(cell::make(-std::numeric_limits<double>::quiet_NaN()), cell::refused);
}

TEST(cell, holders_read_as_small_values_do)
{
    for (const auto& [shown, each] : samples())
        EXPECT_EQ(readings(promoted(each.value)), readings(each.value)) << shown.utf8();
}

TEST(cell, holders_are_written_as_small_values_are)
{
    for (const auto& [before, slot] : samples()) {
        const string type = before.substr(0, before.find(L' ') + 1);
        for (const auto& [source, written] : samples()) {
            genericValue inWord(slot.value);
            genericValue inHolder(promoted(slot.value));
            const auto holder = inHolder.holderCopy();
            const bool isWritten = written.write(inWord);
            const string now = heldIn(inWord);
            ASSERT_EQ(written.write(inHolder), isWritten) << before.utf8() << " = " << source.utf8();
            ASSERT_EQ(heldIn(inHolder), now) << before.utf8() << " = " << source.utf8();
            ASSERT_TRUE(now.starts_with(type)) << "the type stays";
            ASSERT_TRUE(isWritten || now == before) << "a refusal changes nothing";
            ASSERT_EQ(inHolder.holderCopy().get(), holder.get()) << "whoever has the holder keeps it";
        }
    }
}
