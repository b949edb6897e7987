// The conversions between held types: every pair, then the rules of each.
#include "qxHeldTypes.h"
#include "qxNumberText.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
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

string shown(const string& text)
{
    return text;
}
template <qx::heldNumber T>
string shown(T number)
{
    return std::wstring(qx::numberText(number).view());
}
template <class T>
requires requires(const T& value)
{
    value.toText();
}
string shown(const T& value)
{
    return value.toText();
}

// What becomes of a value as a To, as text; "refused" when it does not convert. Proves that a refusal changes
// nothing.
template <class To, class From>
string as(const From& from)
{
    To to = To();
    const To before = to;
    if (typeConversionManager::instance().convert(typeid(To), &to, typeid(From), &from, 0, nullptr))
        return shown(to);
    EXPECT_EQ(shown(to), shown(before));
    return L"refused";
}
template <class To>
string as(const wchar_t* from)
{
    return as<To>(string(from));
}
template <class To>
string as(const std::wstring& from)
{
    return as<To>(string(from));
}

struct row
{
    row(const string& became, const wchar_t* wanted, int at = __builtin_LINE())
        : actual(became.utf8()), expected(string(wanted).utf8()), line(at)
    {}

    std::string actual;
    std::string expected;
    int line;
};

template <std::size_t N>
void expectAll(const row (&rows)[N])
{
    for (const row& r : rows)
        EXPECT_EQ(r.actual, r.expected) << "row in line " << r.line;
}

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

} // namespace

TEST(conversion, pairs)
{
    const struct
    {
        const std::type_info& type;
        const char* convertsTo; // in the order of these rows
    } types[] = {
        {typeid(bool), "++++++++++ +     &"},
        {typeid(short), "++++++++++ +     &"},
        {typeid(ushort), "++++++++++ +     &"},
        {typeid(int), "++++++++++ +     &"},
        {typeid(qx::uint), "++++++++++ +     &"},
        {typeid(long32), "++++++++++ +     &"},
        {typeid(ulong32), "++++++++++ +     &"},
        {typeid(uint64), "++++++++++ +     &"},
        {typeid(float), "++++++++++ +     &"},
        {typeid(double), "++++++++++ +     &"},
        {typeid(qx::locString), "           +     &"},
        {typeid(string), "++++++++++  +++  &"}, // and to directory, below
        {typeid(qx::date), "           +  +  &"},
        {typeid(qx::time), "           +     &"},
        {typeid(qx::timestamp), "           +++   &"},
        {typeid(qx::calcCrc32), "                 &"},
        {typeid(qx::valueArray), "                 &"},
        {typeid(reference), "+++++++++++++++++ "},
    };
    const typeConversionManager& conversions = typeConversionManager::instance();
    for (const auto& from : types) {
        for (std::size_t to = 0; to < std::size(types); ++to) {
            EXPECT_EQ(conversions.exists(types[to].type, from.type), from.convertsTo[to] != ' ')
                << from.type.name() << " to " << types[to].type.name();
        }
    }
    for (const std::type_info* opaque :
         {&typeid(std::map<short, genericValue>), &typeid(std::map<int, genericValue>),
          &typeid(std::map<long32, genericValue>), &typeid(std::map<string, genericValue>),
          &typeid(qx::sharedPtr<qx::conditions::condition>), &typeid(void*)}) {
        EXPECT_TRUE(conversions.exists(*opaque, typeid(reference)));
        EXPECT_TRUE(conversions.exists(typeid(reference), *opaque));
        EXPECT_FALSE(conversions.exists(*opaque, typeid(string)));
        EXPECT_FALSE(conversions.exists(typeid(string), *opaque));
    }
    EXPECT_TRUE(conversions.exists(typeid(qx::directory), typeid(string)));
    EXPECT_TRUE(conversions.exists(typeid(qx::directory), typeid(reference)));
    EXPECT_FALSE(conversions.exists(typeid(string), typeid(qx::directory)));
    EXPECT_FALSE(conversions.exists(typeid(long long), typeid(string))); // no held type
}

TEST(conversion, textToNumber)
{
    const string longOne = string(L"1") + std::wstring(5000, L'0');
    const string tiny = L"0." + std::wstring(5000, L'0') + L"1";
    expectAll({
        {as<bool>(L"TRUE"), L"true"},
        {as<bool>(L" yes\r\n"), L"true"},
        {as<bool>(L"1"), L"true"},
        {as<bool>(L"False"), L"false"},
        {as<bool>(L"nO"), L"false"},
        {as<bool>(L"0"), L"false"},
        {as<bool>(L""), L"refused"},
        {as<bool>(L"2"), L"refused"},
        {as<bool>(L"01"), L"refused"},
        {as<bool>(L"truely"), L"refused"},
        {as<bool>(L"tru"), L"refused"},

        {as<int>(L" \t\r\n+007\n"), L"7"},
        {as<int>(L"-0"), L"0"},
        {as<int>(L"2147483647"), L"2147483647"},
        {as<int>(L"-2147483648"), L"-2147483648"},
        {as<int>(L"2147483648"), L"refused"},
        {as<int>(L"-2147483649"), L"refused"},
        {as<int>(L""), L"refused"},
        {as<int>(L" "), L"refused"},
        {as<int>(L"-"), L"refused"},
        {as<int>(L"+-1"), L"refused"},
        {as<int>(L"- 1"), L"refused"},
        {as<int>(L"1 2"), L"refused"},
        {as<int>(L"1.0"), L"refused"},
        {as<int>(L"0x1"), L"refused"},
        {as<int>(L"1e2"), L"refused"},
        {as<int>(L"\u00A01"), L"refused"},
        {as<int>(L"\u0661"), L"refused"},
        {as<int>(longOne), L"refused"},
        {as<int>(L"00000000000000000000000000000001"), L"1"},
        {as<short>(L"32767"), L"32767"},
        {as<short>(L"-32768"), L"-32768"},
        {as<short>(L"32768"), L"refused"},
        {as<ushort>(L"65535"), L"65535"},
        {as<ushort>(L"65536"), L"refused"},
        {as<ushort>(L"-1"), L"refused"},
        {as<qx::uint>(L"4294967295"), L"4294967295"},
        {as<qx::uint>(L"-0"), L"refused"},
        {as<long32>(L"-2147483648"), L"-2147483648"},
        {as<long32>(L"2147483648"), L"refused"},
        {as<ulong32>(L"4294967295"), L"4294967295"},
        {as<ulong32>(L"4294967296"), L"refused"},
        {as<uint64>(L"18446744073709551615"), L"18446744073709551615"},
        {as<uint64>(L"18446744073709551616"), L"refused"},
        {as<uint64>(L"99999999999999999999"), L"refused"},

        {as<double>(L".5"), L"0.5"},
        {as<double>(L"5."), L"5"},
        {as<double>(L"-1.5E+2 "), L"-150"},
        {as<double>(L"+1e-2"), L"0.01"},
        {as<double>(L"-0"), L"-0"},
        {as<double>(L"0e999999999999999999999"), L"0"},
        {as<double>(L"INF"), L"inf"},
        {as<double>(L"-inf"), L"-inf"},
        {as<double>(L"+NaN"), L"nan"},
        {as<double>(L"1.7976931348623157e308"), L"1.7976931348623157e+308"},
        {as<double>(L"1e309"), L"refused"},
        {as<double>(L"5e-324"), L"5e-324"},
        {as<double>(L"1e-400"), L"refused"},
        {as<double>(longOne), L"refused"},
        {as<double>(longOne + L"e-5000"), L"1"},
        {as<double>(tiny), L"refused"},
        {as<double>(tiny + L"e5001"), L"1"},
        {as<double>(L"1e99999999999999999999"), L"refused"},
        {as<double>(L""), L"refused"},
        {as<double>(L"."), L"refused"},
        {as<double>(L"e5"), L"refused"},
        {as<double>(L"1e"), L"refused"},
        {as<double>(L"1e+"), L"refused"},
        {as<double>(L"1e 5"), L"refused"},
        {as<double>(L"1.2.3"), L"refused"},
        {as<double>(L"1,5"), L"refused"},
        {as<double>(L"0x1p3"), L"refused"},
        {as<double>(L"infinity"), L"refused"},
        {as<double>(L"nan(1)"), L"refused"},
        {as<double>(L"--1"), L"refused"},
        {as<double>(L"1f"), L"refused"},
        {as<float>(L"3.4028235e38"), L"3.4028235e+38"},
        {as<float>(L"1e39"), L"refused"},
        {as<float>(L"0.1"), L"0.1"},
        {as<float>(L"1e-45"), L"1e-45"},
        {as<float>(L"1e-46"), L"refused"},
        // A hair above the middle of two floats: rounding by way of a double would fall on the middle, and
        // then down.
        {as<float>(L"1.00000005960464477539062500001"), L"1.0000001"},
    });
    // Halfway between two doubles but for the last of a thousand digits.
    const string middle = L"9007199254740993." + std::wstring(1000, L'0');
    expectAll({{as<double>(middle), L"9007199254740992"}, {as<double>(middle + L"1"), L"9007199254740994"}});
}

TEST(conversion, numberToText)
{
    expectAll({
        {as<string>(true), L"true"},
        {as<string>(false), L"false"},
        {as<string>(short(-32768)), L"-32768"},
        {as<string>(ushort(65535)), L"65535"},
        {as<string>(std::numeric_limits<int>::min()), L"-2147483648"},
        {as<string>(~0u), L"4294967295"},
        {as<string>(long32(-1)), L"-1"},
        {as<string>(ulong32(~0u)), L"4294967295"},
        {as<string>(~uint64(0)), L"18446744073709551615"},

        {as<string>(0.0), L"0"},
        {as<string>(-0.0), L"-0"},
        {as<string>(1.0), L"1"},
        {as<string>(0.1), L"0.1"},
        {as<string>(100000.0), L"100000"},
        {as<string>(-1234.5678), L"-1234.5678"},
        {as<string>(1e30), L"1e+30"},
        {as<string>(-1.25e30), L"-1.25e+30"},
        {as<string>(1e-8), L"1e-8"},
        {as<string>(1.5e-8), L"1.5e-8"},
        {as<string>(1e-7), L"0.0000001"},
        {as<string>(9.9e-8), L"9.9e-8"},
        {as<string>(1.25e-7), L"0.000000125"},
        {as<string>(1e20), L"100000000000000000000"},
        {as<string>(123456789012345680000.0), L"123456789012345680000"},
        {as<string>(999999999999999900000.0), L"999999999999999900000"},
        {as<string>(1e21), L"1e+21"},
        {as<string>(1e300), L"1e+300"},
        {as<string>(5e-324), L"5e-324"},
        {as<string>(-1.2345678901234567e-5), L"-0.000012345678901234568"},
        {as<string>(infinity), L"inf"},
        {as<string>(-infinity), L"-inf"},
        {as<string>(notANumber), L"nan"},
        {as<string>(-notANumber), L"nan"},
        {as<string>(0.1f), L"0.1"},
        {as<string>(16777216.0f), L"16777216"},
        {as<string>(1e20f), L"100000000000000000000"},
        {as<string>(std::numeric_limits<float>::max()), L"3.4028235e+38"},
        {as<string>(1e-45f), L"1e-45"},
    });
}

TEST(conversion, shortestDigitsReadBack)
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 100000; ++i) {
        const std::uint64_t bits = random();
        const auto number = std::bit_cast<double>(bits);
        const auto small = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
        double numberBack = 0;
        float smallBack = 0;
        if (std::isfinite(number)) {
            ASSERT_TRUE(qx::readNumber(qx::numberText(number).view(), numberBack)) << number;
            ASSERT_EQ(std::bit_cast<std::uint64_t>(numberBack), bits) << number;
        }
        if (std::isfinite(small)) {
            ASSERT_TRUE(qx::readNumber(qx::numberText(small).view(), smallBack)) << small;
            ASSERT_EQ(std::bit_cast<std::uint32_t>(smallBack), static_cast<std::uint32_t>(bits)) << small;
        }
    }
}

TEST(conversion, numberToNumber)
{
    expectAll({
        {as<short>(65535), L"-1"},
        {as<short>(32768), L"-32768"},
        {as<ushort>(-1), L"65535"},
        {as<int>(4294967295u), L"-1"},
        {as<int>(uint64(1) << 32 | 5), L"5"},
        {as<uint64>(-1), L"18446744073709551615"},
        {as<uint64>(short(-1)), L"18446744073709551615"},
        {as<uint64>(~0u), L"4294967295"},
        {as<qx::uint>(long32(-2)), L"4294967294"},
        {as<ulong32>(-2), L"4294967294"},
        {as<long32>(~0u), L"-1"},
        {as<int>(true), L"1"},
        {as<uint64>(false), L"0"},
        {as<double>(true), L"1"},
        {as<float>(false), L"0"},
        {as<bool>(-3), L"true"},
        {as<bool>(ulong32(0u)), L"false"},
        {as<bool>(uint64(1) << 40), L"true"},
        {as<bool>(0.25), L"true"},
        {as<bool>(-0.0), L"false"},
        {as<bool>(notANumber), L"true"},

        {as<int>(2.9), L"2"},
        {as<int>(-2.9), L"-2"},
        {as<int>(2147483647.9), L"2147483647"},
        {as<int>(2147483648.0), L"refused"},
        {as<int>(-2147483648.9), L"-2147483648"},
        {as<int>(-2147483649.0), L"refused"},
        {as<int>(2147483648.0f), L"refused"},
        {as<int>(1e300), L"refused"},
        {as<int>(notANumber), L"refused"},
        {as<int>(infinity), L"refused"},
        {as<int>(-infinity), L"refused"},
        {as<short>(32767.5), L"32767"},
        {as<short>(32768.0f), L"refused"},
        {as<long32>(-1.5f), L"-1"},
        {as<qx::uint>(-0.9), L"0"},
        {as<qx::uint>(-1.0), L"refused"},
        {as<ulong32>(4294967295.5), L"4294967295"},
        {as<uint64>(18446744073709549568.0), L"18446744073709549568"},
        {as<uint64>(18446744073709551616.0), L"refused"},

        {as<float>(0.1), L"0.1"},
        {as<double>(0.5f), L"0.5"},
        {as<double>(0.1f), L"0.10000000149011612"},
        {as<float>(16777217), L"16777216"},
        {as<float>(1e300), L"inf"},
        {as<float>(notANumber), L"nan"},
        {as<double>(~uint64(0)), L"18446744073709552000"},
        {as<double>(long32(-5)), L"-5"},
    });
}

TEST(conversion, datesAndTimes)
{
    const qx::timestamp moment(qx::date(2024, 3, 9), qx::time(13, 5, 9));
    expectAll({
        {as<qx::date>(L" 2024-03-09\n"), L"2024-03-09"},
        {as<qx::date>(L"9.3.2024"), L"2024-03-09"},
        {as<qx::date>(L"2023-02-29"), L"refused"},
        {as<qx::date>(L"0000-01-01"), L"refused"},
        {as<qx::date>(L"2024-3-9"), L"refused"},
        {as<qx::date>(L""), L"refused"},
        {as<qx::date>(L"2024-03-09 13:05"), L"refused"},
        {as<qx::time>(L"13:05"), L"13:05:00"},
        {as<qx::time>(L"13:05:09.007"), L"13:05:09.007"},
        {as<qx::time>(L"24:00"), L"refused"},
        {as<qx::time>(L"1:5"), L"refused"},
        {as<qx::timestamp>(L"2024-03-09"), L"2024-03-09 00:00:00"},
        {as<qx::timestamp>(L"09.03.2024T13:05:09"), L"2024-03-09 13:05:09"},
        {as<qx::timestamp>(L"13:05"), L"refused"},
        {as<string>(qx::date(2024, 3, 9)), L"2024-03-09"},
        {as<string>(qx::time(1, 2, 3, 4)), L"01:02:03.004"},
        {as<string>(moment), L"2024-03-09 13:05:09"},
        {as<qx::date>(moment), L"2024-03-09"},
        {as<qx::time>(moment), L"13:05:09"},
        {as<qx::timestamp>(qx::date(2024, 3, 9)), L"2024-03-09 00:00:00"},
        {as<qx::timestamp>(qx::time()), L"refused"},
        {as<int>(moment), L"refused"},
    });
}

TEST(conversion, messagesAndDirectories)
{
    qx::locString message(nullptr, L"[N] files");
    message.params().set(2.5, L"N");
    EXPECT_EQ(as<string>(message), L"2.5 files");
    EXPECT_EQ(as<string>(qx::locString()), L"");

    qx::directory target;
    EXPECT_TRUE(genericValue(string(L"some/where")).getValue(target));
    EXPECT_EQ(target, qx::directory(L"some/where"));
}

TEST(conversion, referencesAreFollowed)
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
    EXPECT_TRUE(chain(1).getValue(text));
    EXPECT_EQ(text, L"12");
    EXPECT_TRUE(chain(64).getValue(number));
    EXPECT_EQ(number, 12);
    number = 5;
    EXPECT_FALSE(chain(65).getValue(number));
    EXPECT_EQ(number, 5);
    EXPECT_TRUE(chain(64).setValue(2.5));
    EXPECT_TRUE(last->getValue(text));
    EXPECT_EQ(text, L"2.5");
    EXPECT_FALSE(chain(65).setValue(3));
    EXPECT_FALSE(chain(1).getValue(number)); // "2.5" is no int

    last->clear();
    EXPECT_FALSE(chain(2).getValue(text));
    EXPECT_TRUE(chain(2).setValue(qx::valueArray{genericValue(1)})); // a null variable takes the type
    qx::valueArray elements;
    EXPECT_TRUE(chain(2).getValue(elements));
    EXPECT_EQ(elements.size(), 1u);
    EXPECT_FALSE(chain(2).setValue(1));

    genericValue null((reference()));
    EXPECT_FALSE(null.getValue(text));
    EXPECT_FALSE(null.setValue(1));
    last->setValue(last, true); // a variable that refers to itself
    EXPECT_FALSE(chain(1).getValue(text));
    EXPECT_FALSE(chain(1).setValue(1));
    last->clear();
}

TEST(conversion, addedConvertersComeFirst)
{
    using converter = qx::typeconvert::typeConverter<int, string>;
    converter refusing([](void*, const void*, int, char*) { return false; });
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
    for (qx::typeconvert::typeConverterBase* added :
         std::initializer_list<qx::typeconvert::typeConverterBase*>{&spelling, &refusing, &empty, &foreign,
                                                                    nullptr})
        conversions.add(added);
    EXPECT_TRUE(conversions.exists(typeid(bool), typeid(hostType)));
    EXPECT_EQ(as<bool>(hostType()), L"true");
    EXPECT_EQ(as<string>(1), L"one");
    EXPECT_EQ(as<string>(2), L"2"); // refused by all that were added
    for (qx::typeconvert::typeConverterBase* added :
         std::initializer_list<qx::typeconvert::typeConverterBase*>{&spelling, &refusing, &empty, &foreign})
        conversions.remove(added);
    EXPECT_EQ(as<string>(1), L"1");
    EXPECT_FALSE(conversions.exists(typeid(bool), typeid(hostType)));
}

TEST(conversion, plainPairsOfHosts)
{
    short small = 0;
    ushort smallUnsigned = 0;
    float single = 0;
    string text;
    EXPECT_TRUE(dtconvert(small, 70000, 0, nullptr));
    EXPECT_EQ(small, 4464);
    EXPECT_TRUE(dtconvert(smallUnsigned, -1, 0, nullptr));
    EXPECT_EQ(smallUnsigned, 65535);
    EXPECT_TRUE(dtconvert(single, 0.1, 0, nullptr));
    EXPECT_EQ(single, 0.1f);
    EXPECT_TRUE(dtconvert(text, std::wstring(L"wide"), 0, nullptr));
    EXPECT_EQ(text, L"wide");

    const auto padded = [](auto number, int width) {
        string result;
        dtconvert(result, number, width, nullptr);
        return result;
    };
    expectAll({{padded(7, 2), L"07"},
               {padded(123, 2), L"123"},
               {padded(-7, 4), L"-007"},
               {padded(7u, 0), L"7"},
               {padded(7u, 3), L"007"},
               {padded(7, -3), L"7"}});
}
