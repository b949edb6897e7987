// The word of a value: every kind where something ends, and that nothing tells a value in the word from the
// same one behind a holder.
#include "qxCell.h"
#include "qxHeldTypes.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <functional>
#include <limits>
#include <map>

using qx::genericValue;
using qx::string;
namespace cell = qx::cell;

namespace
{

template <class T>
string bitsOf(const T& value)
{
    if constexpr (std::is_same_v<T, string>)
        return value;
    else {
        qx::uint64 bits = 0;
        std::memcpy(&bits, &value, sizeof value);
        return string::sformat(L"%08x%08x", static_cast<qx::uint>(bits >> 32), static_cast<qx::uint>(bits));
    }
}

template <class... T>
struct typeList
{};
using integers = typeList<short, qx::ushort, int, qx::uint, qx::long32, qx::ulong32, qx::uint64>;
using readables = typeList<bool, short, qx::ushort, int, qx::uint, qx::long32, qx::ulong32, float, double,
                           string, qx::date, qx::time, qx::timestamp>;

// Calls `use` with values of all types, those where a type or a conversion ends.
template <class Use>
void withEachValue(const Use& use)
{
    const auto each = [&](const auto&... values) { (use(values), ...); };
    const auto eachInteger = [&]<class... T>(typeList<T...>, auto number) {
        each(qx::valueTraits<T>::wrap(number)...);
    };
    each(false, true);
    for (const long long bound : {0LL, 1LL << 15, 1LL << 16, 1LL << 31, 1LL << 32, LLONG_MIN, LLONG_MAX}) {
        const auto around = static_cast<unsigned long long>(bound);
        for (const unsigned long long number : {around - 1, around, around + 1, 0 - around, ~around})
            eachInteger(integers(), number);
        for (const double number : {static_cast<double>(bound), -static_cast<double>(bound)})
            for (const double part : {0.0, -0.5, 0.5, -1.0, 1.0})
                each(number + part, static_cast<float>(number + part));
    }
    for (const auto bits :
         std::initializer_list<qx::uint64>{0x7ff0000000000000, 0x7ff0000000000001, 0x7ff8000000000000,
                                           0x7fffffffffffffff, 0x0000000000000001, 0x0010000000000000, 0})
        for (const qx::uint64 sign : {qx::uint64(0), qx::uint64(1) << 63})
            each(std::bit_cast<double>(bits | sign));
    for (const qx::uint bits :
         {0x7f800000u, 0x7f800001u, 0x7fc00000u, 0xffffffffu, 0x80000001u, 0x7f7fffffu, 0x80000000u})
        each(std::bit_cast<float>(bits));
    each(1.7e308, 1e-310, 5e20, 0.1);
    each(qx::date(), qx::date(9999, 12, 31), qx::time(), qx::time(23, 59, 59, 999));
    each(qx::timestamp(), qx::timestamp(qx::date(9999, 12, 31), qx::time(23, 59, 59, 999)));
    for (const wchar_t* text : {L"",
                                L"0",
                                L"-0",
                                L"+1",
                                L"01",
                                L" 1",
                                L"1.0",
                                L"-1",
                                L"32767",
                                L"32768",
                                L"-32769",
                                L"65536",
                                L"2147483647",
                                L"2147483648",
                                L"-2147483648",
                                L"-2147483649",
                                L"true",
                                L"1e3",
                                L"nan",
                                L"2024-03-09",
                                L"9:07",
                                L"2024-03-09 09:07"})
        each(string(text));
}

// The held type and the value, bit by bit.
string heldIn(const genericValue& value)
{
    const auto shared = value.holderCopy();
    string found = L"?";
    const auto look = [&]<class T>() {
        if (auto* const holder = dynamic_cast<genericValue::holder<T>*>(shared.get()))
            found = string::fromUtf8(typeid(T).name()) + L" " + bitsOf(holder->value());
    };
    const auto lookForEach = [&]<class... T>(typeList<T...>) { (look.template operator()<T>(), ...); };
    lookForEach(readables());
    look.template operator()<qx::uint64>();
    return shared ? found : L"null";
}

// What a value reads as in every type. Proves that a refusal changes nothing.
string readings(const genericValue& value)
{
    string all;
    const auto read = [&]<class... T>(typeList<T...>) {
        (
            (void)[&] {
                T out{};
                const bool isRead = value.getValue(out);
                EXPECT_TRUE(isRead || out == T());
                all += (isRead ? bitsOf(out) : L"refused") + L"|";
            }(),
            ...);
    };
    read(readables());
    return all;
}

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

TEST(cell, wordsKeepEveryBit)
{
    std::map<cell::word, string> known;
    withEachValue([&]<class T>(const T& value) {
        const string shown = string::fromUtf8(typeid(T).name()) + L" " + bitsOf(value);
        const genericValue made(value);
        EXPECT_EQ(heldIn(promoted(made)), shown);
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
            EXPECT_EQ(bitsOf(cell::get<T>(w)), bitsOf(value));
            EXPECT_EQ(cell::visit(w,
                                  []<class V>(const V& visited) {
                                      return string::fromUtf8(typeid(V).name()) + L" " + bitsOf(visited);
                                  }),
                      shown);
        }
    });
    EXPECT_EQ(cell::make(qx::uint64(~0u) + 1), cell::refused);
    EXPECT_NE(cell::make(-std::numeric_limits<double>::quiet_NaN()), cell::refused);
}

TEST(cell, textsThatAreKeptAsIntsAreJustTheirDecimalForm)
{
    for (const wchar_t* text : {L"0", L"7", L"-7", L"10", L"2147483647", L"-2147483648", L"1000000000"}) {
        const cell::word w = cell::makeText(text);
        EXPECT_EQ(cell::kindIn(w), cell::decimalKind);
        EXPECT_EQ(cell::textIn(w), text);
    }
    for (const std::wstring_view text :
         {L"",           L"-",           L"-0",         L"00",          L"01",          L"-01",
          L"+1",         L" 1",          L"1 ",         L"1.",          L"--1",         L"1-",
          L"2147483648", L"-2147483649", L"9999999999", L"99999999999", L"-9999999999", L"-99999999999",
          L"1/",         L"1:",          L"\u0661",     L"\uff11"})
        EXPECT_EQ(cell::makeText(text), cell::refused) << string(std::wstring(text)).utf8();
    EXPECT_EQ(cell::makeText(std::wstring_view(L"1\0", 2)), cell::refused);
}

TEST(cell, holdersReadAsSmallValuesDo)
{
    for (const auto& [shown, each] : samples())
        EXPECT_EQ(readings(promoted(each.value)), readings(each.value)) << shown.utf8();
}

TEST(cell, holdersAreWrittenAsSmallValuesAre)
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
