// The conversions between held types: every pair, then the rules of each.
#include "heldValues.h"
#include "qxCell.h"
#include "qxNumberText.h"
#include "support/expectations.h"

#include <limits>
#include <map>
#include <random>

using qx::genericValue;
using qx::long32;
using qx::string;
using qx::uint64;
using qx::ulong32;
using qx::ushort;
using qx::typeconvert::dtconvert;
using qx::typeconvert::typeConversionManager;

namespace
{

using reference = qx::sharedPtr<genericValue>;

// What becomes of a value as a To, as text; "refused" when it does not convert. Proves that a refusal changes
// nothing.
template <class To, class From>
string converted(const From& from)
{
    if constexpr (std::is_convertible_v<const From&, std::wstring> && !std::is_same_v<From, string>)
        return converted<To>(string(from));
    To to = To();
    string text = L"refused";
    if (typeConversionManager::instance().convert(typeid(To), &to, typeid(From), &from, 0, nullptr))
        genericValue(to).getValue(text);
    else
        EXPECT_EQ(to, To());
    return text;
}

// What becomes of each value, with a bar in between.
template <class To, class... From>
string as(const From&... from)
{
    string all;
    ((all += (all.empty() ? L"" : L"|") + converted<To>(from)), ...);
    return all;
}

} // namespace

TEST(conversion, pairs_as_expected)
{
    std::map<string, const std::type_info*> types;
#define QX_NAME(...) types[string::fromUtf8(#__VA_ARGS__).replace(L"qx::", L"")] = &typeid(__VA_ARGS__);
#define QX_NAME_MAP(Key) QX_NAME(std::map<Key, genericValue>)
    QX_EVERY_HELD_TYPE(QX_NAME)
    QX_READ_HELD_TYPE(QX_NAME)
    QX_WRITTEN_HELD_TYPE(QX_NAME)
    QX_KEPT_HELD_TYPE(QX_NAME)
    QX_MAP_KEY_TYPES(QX_NAME_MAP)
    QX_NAME(qx::directory)
    QX_NAME(long long) // which no value holds
    expectOutcomes("utils/conversion_pairs", [&](const string& from) {
        string all;
        for (const auto& [name, to] : types)
            if (typeConversionManager::instance().exists(*to, *types.at(from)))
                all += (all.empty() ? L"" : L"; ") + name;
        return all.empty() ? std::vector<string>() : std::vector<string>{all};
    });
    qx::directory target;
    EXPECT_TRUE(genericValue(string(L"some/where")).getValue(target));
    EXPECT_EQ(target, qx::directory(L"some/where"));
}

// Values keep a text that is an int as a number. A blank in front of it makes it a text like any other.
TEST(conversion, texts_read_as_expected)
{
    expectOutcomes("utils/texts", [](const string& text) {
        const bool isInt = qx::cell::makeText(text) != qx::cell::refused;
        std::vector<string> lines = readings(genericValue(text));
        if (isInt) {
            EXPECT_EQ(qx::cell::textIn(qx::cell::makeText(text)), text);
            EXPECT_EQ(lines, readings(genericValue(string(L" " + text)))) << text.utf8();
            lines.emplace_back(L"kept as an int");
        }
        return lines;
    });
    const string longOne = string(L"1") + std::wstring(5000, L'0');
    const string tiny = L"0." + std::wstring(5000, L'0') + L"1";
    for (const string& text : {longOne, tiny})
        EXPECT_EQ(readings(genericValue(text)), std::vector<string>());
    EXPECT_EQ(as<double>(longOne + L"e-5000", tiny + L"e5001"), L"1|1");
    EXPECT_EQ(as<uint64>(L"18446744073709551615", L"18446744073709551616", L"99999999999999999999", -1,
                         short(-1), ~0u, 18446744073709549568.0, 18446744073709551616.0),
              L"18446744073709551615|refused|refused|18446744073709551615|18446744073709551615|4294967295|"
              L"18446744073709549568|refused");
    // Halfway between two doubles but for the last of a thousand digits.
    const string middle = L"9007199254740993." + std::wstring(1000, L'0');
    EXPECT_EQ(as<double>(middle, middle + L"1"), L"9007199254740992|9007199254740994");
}

TEST(conversion, values_read_as_expected)
{
    std::map<string, std::vector<string>> all;
    withEachValue([&](const auto& value) {
        const genericValue made(value);
        all[heldIn(made)] = readings(made);
    });
    std::vector<std::string> values;
    values.reserve(all.size());
    for (const auto& [value, lines] : all)
        values.emplace_back(value.utf8());
    expectOutcomes("utils/conversions", values, [&all](const string& value) { return all.at(value); });
}

// Proves that the digits of a number read back as the same bits.
template <class Number, class Bits>
void expectReadBack(Bits bits)
{
    const auto number = std::bit_cast<Number>(bits);
    Number back = 0;
    if (std::isfinite(number)) {
        ASSERT_TRUE(qx::readNumber(qx::numberText(number).view(), back)) << number;
        ASSERT_EQ(std::bit_cast<Bits>(back), bits) << number;
    }
}

TEST(conversion, shortest_digits_read_back)
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 100000; ++i) {
        const std::uint64_t bits = random();
        ASSERT_NO_FATAL_FAILURE(expectReadBack<double>(bits));
        ASSERT_NO_FATAL_FAILURE(expectReadBack<float>(static_cast<std::uint32_t>(bits)));
    }
}

// A number of few digits reads as with so many zeros behind it that all digits have to be looked at.
template <class Number>
void expectReadsAsWithZeros(std::uint64_t random)
{
    const std::size_t size = 1 + random % std::numeric_limits<Number>::digits10;
    string digits = std::to_wstring(random).substr(0, size);
    digits.insert(random / 32 % (size + 1), L".");
    Number number = -1;
    Number padded = -2;
    ASSERT_TRUE(qx::readNumber(digits, number) && qx::readNumber(digits + std::wstring(30, L'0'), padded));
    ASSERT_EQ(number, padded) << digits.utf8();
}

TEST(conversion, short_decimals_read_as_long_ones)
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 100000; ++i) {
        const std::uint64_t bits = random();
        ASSERT_NO_FATAL_FAILURE(expectReadsAsWithZeros<double>(bits));
        ASSERT_NO_FATAL_FAILURE(expectReadsAsWithZeros<float>(bits));
    }
}

TEST(conversion, integers_of_every_length_to_text)
{
    for (uint64 power = 1; power < uint64(1) << 63; power *= 10)
        for (const uint64 number : {power - 1, power, power + 1}) {
            EXPECT_EQ(as<string>(number), std::to_wstring(number));
            const auto negative = static_cast<int>(0 - number);
            EXPECT_EQ(as<string>(negative), std::to_wstring(negative));
            if (number <= uint64(1) << 53) {
                EXPECT_EQ(as<string>(static_cast<double>(number)), std::to_wstring(number));
            }
        }
    EXPECT_EQ(as<string>(9007199254740991.0, -9007199254740992.0, 16777215.0f, -16777216.0f, -0.0f),
              L"9007199254740991|-9007199254740992|16777215|-16777216|-0");
}

TEST(conversion, references_are_followed)
{
    reference last(new genericValue(string(L"12")));
    const auto chain = [&](int length) {
        reference front = last;
        for (int i = 1; i < length; ++i)
            front = reference(new genericValue(front));
        return genericValue(front);
    };
    int number = 0;
    string text;
    EXPECT_TRUE(chain(64).getValue(number));
    EXPECT_EQ(number, 12);
    EXPECT_FALSE(chain(65).getValue(number));
    EXPECT_TRUE(chain(64).setValue(2.5));
    EXPECT_TRUE(last->getValue(text));
    EXPECT_EQ(text, L"2.5");
    EXPECT_FALSE(chain(65).setValue(3));

    last->clear();
    EXPECT_FALSE(chain(2).getValue(text));
    EXPECT_TRUE(chain(2).setValue(qx::valueArray{genericValue(1)})); // a null variable takes the type
    EXPECT_FALSE(chain(2).setValue(1));

    genericValue null((reference()));
    EXPECT_FALSE(null.getValue(text));
    EXPECT_FALSE(null.setValue(1));
    last->setValue(last, true); // a variable that refers to itself
    EXPECT_FALSE(chain(1).getValue(text));
    EXPECT_FALSE(chain(1).setValue(1));
    last->clear();
}

TEST(conversion, added_converters_come_first)
{
    using converter = qx::typeconvert::typeConverter<int, string>;
    converter spelling([](void* to, const void* from, int, char*) {
        if (*static_cast<const int*>(from) != 1)
            return false;
        *static_cast<string*>(to) = L"one";
        return true;
    });
    converter empty(nullptr);
    struct hostType
    {};
    qx::typeconvert::typeConverter<hostType, bool> foreign(
        [](void* to, const void*, int, char*) { return *static_cast<bool*>(to) = true; });

    typeConversionManager& conversions = typeConversionManager::instance();
    EXPECT_FALSE(conversions.exists(typeid(bool), typeid(hostType)));
    const std::initializer_list<qx::typeconvert::typeConverterBase*> all{&spelling, &empty, &foreign};
    for (qx::typeconvert::typeConverterBase* added : all)
        conversions.add(added);
    conversions.add(nullptr);
    EXPECT_TRUE(conversions.exists(typeid(bool), typeid(hostType)));
    EXPECT_EQ(as<bool>(hostType()), L"true");
    EXPECT_EQ(as<string>(1, 2), L"one|2"); // 2 is refused by all that were added
    for (qx::typeconvert::typeConverterBase* added : all)
        conversions.remove(added);
    EXPECT_EQ(as<string>(1), L"1");
    EXPECT_FALSE(conversions.exists(typeid(bool), typeid(hostType)));
}

namespace
{

// A converter that gives 99, or refuses, and counts how often it was asked.
template <class From, class To>
class hostsConverter
{
public:
    explicit hostsConverter(bool refuses = false)
    {
        asked = 0;
        mRefuses = refuses;
        typeConversionManager::instance().add(&mConverter);
    }
    hostsConverter(const hostsConverter&) = delete;
    hostsConverter& operator=(const hostsConverter&) = delete;
    ~hostsConverter() { typeConversionManager::instance().remove(&mConverter); }

    inline static int asked = 0;

private:
    static bool convert(void* to, const void*, int, char*)
    {
        ++asked;
        if (!mRefuses)
            *static_cast<To*>(to) = To(99);
        return !mRefuses;
    }

    inline static bool mRefuses = false;
    qx::typeconvert::typeConverter<From, To> mConverter{convert};
};

template <class To>
void expectAskedForEveryValue()
{
    const auto reads = [](const genericValue& value) {
        To read{};
        return value.getValue(read) && read == To(99);
    };
    const hostsConverter<string, To> ofText;
    for (const wchar_t* text : {L"12", L"012", L"x12", L"-1"})
        EXPECT_TRUE(reads(genericValue(string(text)))) << typeid(To).name() << string(text).utf8();
    const hostsConverter<short, To> ofNumber;
    EXPECT_TRUE(reads(genericValue(short(5)))) << typeid(To).name();
}

} // namespace

TEST(conversion, added_converters_are_asked_for_every_value_and_once)
{
    expectAskedForEveryValue<int>();
    expectAskedForEveryValue<qx::uint>();
    expectAskedForEveryValue<qx::long32>();
    expectAskedForEveryValue<double>();
    for (const wchar_t* text : {L"12", L"x12"}) { // the library's own conversion knows the first
        const hostsConverter<string, int> refusing(true);
        genericValue written(5);
        EXPECT_EQ(written.setValue(string(text)), text[0] == L'1');
        EXPECT_EQ(refusing.asked, 1) << string(text).utf8();
    }
}

TEST(conversion, plain_pairs_of_hosts)
{
    short small = 0;
    string text;
    EXPECT_TRUE(dtconvert(small, 70000, 0, nullptr));
    EXPECT_EQ(small, 4464);
    EXPECT_TRUE(dtconvert(text, std::wstring(L"wide"), 0, nullptr));
    EXPECT_EQ(text, L"wide");

    const auto padded = [&](auto number, int width) {
        EXPECT_TRUE(dtconvert(text, number, width, nullptr));
        return text;
    };
    EXPECT_EQ(padded(7, 2) + padded(123, 2) + padded(-7, 4), L"07123-007");
    EXPECT_EQ(padded(7u, 0) + padded(7u, 3) + padded(7, -3), L"70077");
}
