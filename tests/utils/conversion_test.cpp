// The conversions between held types: every pair, then the rules of each.
#include "qxHeldTypes.h"
#include "qxNumberText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <iterator>
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

// Those of the texts that convert.
template <class To>
std::vector<string> readable(const std::vector<string>& texts)
{
    std::vector<string> found;
    std::copy_if(texts.begin(), texts.end(), std::back_inserter(found),
                 [](const string& text) { return converted<To>(text) != L"refused"; });
    return found;
}

const std::vector<string> none;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
const string longOne = string(L"1") + std::wstring(5000, L'0');

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
    EXPECT_TRUE(conversions.exists(typeid(qx::directory), typeid(reference)));
    EXPECT_FALSE(conversions.exists(typeid(string), typeid(qx::directory)));
    EXPECT_FALSE(conversions.exists(typeid(long long), typeid(string))); // no held type
    qx::directory target;
    EXPECT_TRUE(genericValue(string(L"some/where")).getValue(target));
    EXPECT_EQ(target, qx::directory(L"some/where"));
}

TEST(conversion, textToWholeNumber)
{
    EXPECT_EQ(as<bool>(L"TRUE", L" yes\r\n", L"1", L"False", L"nO", L"0"),
              L"true|true|true|false|false|false");
    EXPECT_EQ(readable<bool>({L"", L"2", L"01", L"truely", L"tru"}), none);
    EXPECT_EQ(
        as<int>(L" \t\r\n+007\n", L"-0", L"00000000000000000000000000000001", L"2147483647", L"-2147483648"),
        L"7|0|1|2147483647|-2147483648");
    EXPECT_EQ(readable<int>({L"2147483648", L"-2147483649", L"", L" ", L"-", L"+-1", L"- 1", L"1 2", L"1.0",
                             L"0x1", L"1e2", L"\u00A01", L"\u0661", longOne}),
              none);
    EXPECT_EQ(as<short>(L"32767", L"-32768", L"32768"), L"32767|-32768|refused");
    EXPECT_EQ(as<ushort>(L"65535", L"65536", L"-1"), L"65535|refused|refused");
    EXPECT_EQ(as<qx::uint>(L"4294967295", L"4294967296", L"-0"), L"4294967295|refused|refused");
    EXPECT_EQ(as<long32>(L"-2147483648", L"2147483648"), L"-2147483648|refused");
    EXPECT_EQ(as<ulong32>(L"4294967295", L"4294967296"), L"4294967295|refused");
    EXPECT_EQ(as<uint64>(L"18446744073709551615", L"18446744073709551616", L"99999999999999999999"),
              L"18446744073709551615|refused|refused");
}

TEST(conversion, textToFloatingPoint)
{
    const string tiny = L"0." + std::wstring(5000, L'0') + L"1";
    EXPECT_EQ(
        as<double>(L".5", L"5.", L"-1.5E+2 ", L"-0", L"0e999999999999999999999", L"INF", L"-inf", L"+NaN"),
        L"0.5|5|-150|-0|0|inf|-inf|nan");
    EXPECT_EQ(as<double>(L"5e-324", L"1.7976931348623157e308", longOne + L"e-5000", tiny + L"e5001"),
              L"5e-324|1.7976931348623157e+308|1|1");
    // Halfway between two doubles but for the last of a thousand digits.
    const string middle = L"9007199254740993." + std::wstring(1000, L'0');
    EXPECT_EQ(as<double>(middle, middle + L"1"), L"9007199254740992|9007199254740994");
    EXPECT_EQ(readable<double>({L"1e309", L"1e-400", longOne, tiny, L"1e99999999999999999999", L"", L".",
                                L"e5", L"1e", L"1e+", L"1e 5", L"1.2.3", L"1,5", L"0x1p3", L"infinity",
                                L"nan(1)", L"--1", L"1f"}),
              none);
    // The last lies a hair above the middle of two floats: by way of a double it would fall on it, and then
    // down.
    EXPECT_EQ(as<float>(L"3.4028235e38", L"1e39", L"1e-45", L"1e-46", L"1.00000005960464477539062500001"),
              L"3.4028235e+38|refused|1e-45|refused|1.0000001");
}

TEST(conversion, numberToText)
{
    EXPECT_EQ(as<string>(true, short(-32768), ushort(65535), std::numeric_limits<int>::min(), ~0u, long32(-1),
                         ulong32(~0u), ~uint64(0)),
              L"true|-32768|65535|-2147483648|4294967295|-1|4294967295|18446744073709551615");
    EXPECT_EQ(as<string>(-0.0, 1.0, 100000.0, -1234.5678, -1.25e30, 1.5e-8),
              L"-0|1|100000|-1234.5678|-1.25e+30|1.5e-8");
    // Where digits end and exponents begin.
    EXPECT_EQ(as<string>(9.9e-8, 1e-7, -1.2345678901234567e-5, 999999999999999900000.0, 1e21),
              L"9.9e-8|0.0000001|-0.000012345678901234568|999999999999999900000|1e+21");
    EXPECT_EQ(as<string>(5e-324, infinity, -infinity, notANumber, -notANumber), L"5e-324|inf|-inf|nan|nan");
    EXPECT_EQ(as<string>(0.1f, 1e20f, std::numeric_limits<float>::max(), 1e-45f),
              L"0.1|100000000000000000000|3.4028235e+38|1e-45");
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

TEST(conversion, shortestDigitsReadBack)
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

TEST(conversion, shortDecimalsReadAsLongOnes)
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 100000; ++i) {
        const std::uint64_t bits = random();
        ASSERT_NO_FATAL_FAILURE(expectReadsAsWithZeros<double>(bits));
        ASSERT_NO_FATAL_FAILURE(expectReadsAsWithZeros<float>(bits));
    }
}

TEST(conversion, integersOfEveryLengthToText)
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

// What a value of this text reads as in every type of numbers, with a bar in between.
string readAsNumbers(const string& text)
{
    const genericValue value(text);
    string all;
    const auto read = [&]<class T>(T number) {
        const bool isRead = value.getValue(number);
        all += isRead ? converted<string>(number) + L"|" : string(L"refused|");
    };
    read(bool());
    read(short());
    read(ushort());
    read(int());
    read(qx::uint());
    read(long32());
    read(ulong32());
    read(float());
    read(double());
    return all;
}

// Values keep such a text as a number. A blank in front of it makes it a text like any other.
TEST(conversion, textsThatAreIntsReadAsOtherTexts)
{
    for (const wchar_t* number : {L"0", L"1", L"2", L"-1", L"32767", L"32768", L"-32768", L"-32769", L"65535",
                                  L"65536", L"16777217", L"2147483647", L"-2147483648"})
        EXPECT_EQ(readAsNumbers(number), readAsNumbers(string(L" ") + number));
}

TEST(conversion, numbersWrittenIntoTextsThatAreInts)
{
    const auto expectWritten = [](auto... numbers) {
        const auto written = [](auto number) {
            genericValue value(string(L"7"));
            string text;
            return value.setValue(number) && value.getValue(text) && value.setValue(string(L"a")) ? text
                                                                                                  : L"";
        };
        string all;
        ((all += (all.empty() ? L"" : L"|") + written(numbers)), ...);
        EXPECT_EQ(all, as<string>(numbers...));
    };
    expectWritten(true, short(-1), ushort(65535), -5, 0u, 2147483647u, 2147483648u, long32(-5), ulong32(~0u),
                  uint64(5), uint64(1) << 31, uint64(1) << 40, 1.5f);
    expectWritten(3.0, -3.0, 0.0, -0.0, 0.5, 2147483647.0, 2147483648.0, -2147483647.0, -2147483648.0, 1e300,
                  infinity, notANumber);
}

TEST(conversion, numberToNumber)
{
    EXPECT_EQ(as<short>(65535, 32768, 32767.5, 32768.0f), L"-1|-32768|32767|refused");
    EXPECT_EQ(as<ushort>(-1), L"65535");
    EXPECT_EQ(as<int>(4294967295u, uint64(1) << 32 | 5, true, 2147483647.9, -2147483648.9),
              L"-1|5|1|2147483647|-2147483648");
    EXPECT_EQ(as<int>(2147483648.0, -2147483649.0, 2147483648.0f, 1e300, notANumber, infinity, -infinity),
              L"refused|refused|refused|refused|refused|refused|refused");
    EXPECT_EQ(as<uint64>(-1, short(-1), ~0u, 18446744073709549568.0, 18446744073709551616.0),
              L"18446744073709551615|18446744073709551615|4294967295|18446744073709549568|refused");
    EXPECT_EQ(as<bool>(-3, ulong32(0u), uint64(1) << 40, 0.25, -0.0, notANumber),
              L"true|false|true|true|false|true");
    EXPECT_EQ(as<long32>(~0u, -1.5f), L"-1|-1");
    EXPECT_EQ(as<qx::uint>(long32(-2), -0.9, -1.0), L"4294967294|0|refused");
    EXPECT_EQ(as<ulong32>(-2, 4294967295.5), L"4294967294|4294967295");
    EXPECT_EQ(as<float>(false, 0.1, 16777217, 1e300, notANumber), L"0|0.1|16777216|inf|nan");
    EXPECT_EQ(as<double>(true, 0.1f, ~uint64(0), long32(-5)),
              L"1|0.10000000149011612|18446744073709552000|-5");
}

// What texts are dates and times is told by their own tests.
TEST(conversion, datesTimesAndMessages)
{
    const qx::date day(2024, 3, 9);
    const qx::timestamp moment(day, qx::time(13, 5, 9));
    EXPECT_EQ(as<qx::date>(L" 2024-03-09\n", L"2023-02-29", moment), L"2024-03-09|refused|2024-03-09");
    EXPECT_EQ(as<qx::time>(L"13:05:09.007", L"24:00", moment), L"13:05:09.007|refused|13:05:09");
    EXPECT_EQ(as<qx::timestamp>(L"09.03.2024T13:05:09", L"13:05", day, qx::time()),
              L"2024-03-09 13:05:09|refused|2024-03-09 00:00:00|refused");
    EXPECT_EQ(as<int>(moment), L"refused");
    EXPECT_EQ(as<string>(qx::locString(nullptr, L"message"), qx::locString()), L"message|");
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

TEST(conversion, addedConvertersComeFirst)
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

TEST(conversion, addedConvertersAreAskedForEveryValueAndOnce)
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

TEST(conversion, plainPairsOfHosts)
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
