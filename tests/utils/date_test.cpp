#include "fakeSystem.h"

#include <qxDate.h>
#include <qxTimestamp.h>

#include <gtest/gtest.h>

#include <type_traits>

using qx::date;

static_assert(std::is_trivially_copyable_v<date> && sizeof(date) == 4);
static_assert(std::is_trivially_copyable_v<qx::timestamp> && sizeof(qx::timestamp) == 8);

namespace
{

date dateOf(const wchar_t* text)
{
    date result;
    EXPECT_TRUE(date::parse(text, result)) << qx::string(text).utf8();
    return result;
}

// Counts the days one by one, with nothing but the lengths of the months and the rule of the first Thursday.
struct slowCalendar
{
    int year = 1;
    int month = 1;
    int day = 1;
    int dayOfYear = 1;
    int weekday = 0;
    int week = 1;

    int daysOfMonth() const
    {
        if (month == 2)
            return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0 ? 29 : 28;
        return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
    }

    void next()
    {
        ++dayOfYear;
        if (++day > daysOfMonth()) {
            day = 1;
            if (++month > 12) {
                month = 1;
                dayOfYear = 1;
                ++year;
            }
        }
        weekday = (weekday + 1) % 7;
        if (weekday == 0) {
            const bool firstWeek = (month == 12 && day >= 29) || (month == 1 && day <= 4);
            week = firstWeek ? 1 : week + 1;
        }
    }
};

} // namespace

TEST(date, whole_calendar_agrees_with_counting)
{
#ifdef NDEBUG
    constexpr int step = 1;
#else
    constexpr int step = 89;
#endif
    slowCalendar slow;
    int number = 0;
    for (; slow.year <= 9999; slow.next(), ++number) {
        if (number % step != 0)
            continue;
        date day;
        ASSERT_TRUE(date::fromDayNumber(number, day));
        const bool same = day.year() == slow.year && day.month() == slow.month &&
                          day.dayOfMonth() == slow.day && day.dayOfYear() == slow.dayOfYear &&
                          day.dayOfWeek() == slow.weekday && day.weekOfYear() == slow.week &&
                          date(slow.year, slow.month, slow.day) == day;
        ASSERT_TRUE(same) << slow.year << "-" << slow.month << "-" << slow.day;
    }
    date day;
    EXPECT_FALSE(date::fromDayNumber(number, day));
    EXPECT_FALSE(date::fromDayNumber(-1, day));
    EXPECT_EQ(day, date());
}

TEST(date, weeks_and_weekdays_at_turns_of_the_year)
{
    const struct
    {
        const wchar_t* day;
        int week;
        qx::eWeekday weekday;
    } cases[] = {
        {L"2024-03-09", 10, qx::saturday}, {L"2021-01-03", 53, qx::sunday},   {L"2021-01-04", 1, qx::monday},
        {L"2018-12-31", 1, qx::monday},    {L"2020-12-31", 53, qx::thursday}, {L"9999-12-31", 52, qx::friday},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(dateOf(row.day).weekOfYear(), row.week) << qx::string(row.day).utf8();
        EXPECT_EQ(dateOf(row.day).dayOfWeek(), row.weekday) << qx::string(row.day).utf8();
    }
}

TEST(date, impossible_days_throw_false)
{
    const int cases[][3] = {{2023, 2, 29}, {1900, 2, 29}, {0, 1, 1},     {10000, 1, 1},
                            {2024, 13, 1}, {2024, 0, 1},  {2024, 4, 31}, {2024, 1, 0}};
    for (const auto& row : cases)
        EXPECT_THROW(date(row[0], row[1], row[2]), bool) << row[0] << "-" << row[1] << "-" << row[2];
}

TEST(date, durations_clamp_to_the_month)
{
    const struct
    {
        const wchar_t* from;
        const qx::date_duration& duration;
        const wchar_t* later;
        const wchar_t* earlier;
    } cases[] = {
        {L"2024-02-29", qx::years(1), L"2025-02-28", L"2023-02-28"},
        {L"2024-02-29", qx::years(4), L"2028-02-29", L"2020-02-29"},
        {L"2024-03-31", qx::months(1), L"2024-04-30", L"2024-02-29"},
        {L"2023-12-31", qx::months(14), L"2025-02-28", L"2022-10-31"},
        {L"2024-02-26", qx::weeks(1), L"2024-03-04", L"2024-02-19"},
        {L"2024-12-31", qx::days(1), L"2025-01-01", L"2024-12-30"},
        {L"2024-12-31", qx::days(0), L"2024-12-31", L"2024-12-31"},
    };
    for (const auto& row : cases) {
        date later = dateOf(row.from);
        later += row.duration;
        date earlier = dateOf(row.from);
        earlier -= row.duration;
        EXPECT_EQ(later, dateOf(row.later)) << qx::string(row.from).utf8();
        EXPECT_EQ(earlier, dateOf(row.earlier)) << qx::string(row.from).utf8();
    }
}

TEST(date, durations_out_of_the_calendar_throw_false_and_change_nothing)
{
    for (const qx::uint quantity : {1u, 4294967295u}) {
        const qx::years years(quantity);
        const qx::months months(quantity);
        const qx::weeks weeks(quantity);
        const qx::days days(quantity);
        for (const qx::date_duration* duration :
             std::initializer_list<const qx::date_duration*>{&years, &months, &weeks, &days}) {
            date last(9999, 12, 31);
            EXPECT_THROW(last += *duration, bool);
            EXPECT_EQ(last, date(9999, 12, 31));
            date first(1, 1, 1);
            EXPECT_THROW(first -= *duration, bool);
            EXPECT_EQ(first, date(1, 1, 1));
        }
    }
}

TEST(date, text_forms)
{
    const struct
    {
        const wchar_t* text;
        const wchar_t* expected; // null where it is refused
    } cases[] = {
        {L"2024-03-09", L"2024-03-09"},
        {L" \t2024-03-09\r\n", L"2024-03-09"},
        {L"9.3.2024", L"2024-03-09"},
        {L"09.03.2024", L"2024-03-09"},
        {L"0001-01-01", L"0001-01-01"},
        {L"31.12.9999", L"9999-12-31"},
        {L"", nullptr},
        {L"2024-3-9", nullptr},
        {L"24-03-09", nullptr},
        {L"2024-03-09x", nullptr},
        {L"2024-02-30", nullptr},
        {L"0000-01-01", nullptr},
        {L"10000-01-01", nullptr},
        {L"1.1.24", nullptr},
        {L"001.1.2024", nullptr},
        {L"2024/03/09", nullptr},
        {L"2024 -03-09", nullptr},
        {L"-024-03-09", nullptr},
    };
    for (const auto& row : cases) {
        date result(1999, 9, 9);
        EXPECT_EQ(date::parse(row.text, result), row.expected != nullptr) << qx::string(row.text).utf8();
        EXPECT_EQ(result.toText(), row.expected ? row.expected : L"1999-09-09")
            << qx::string(row.text).utf8();
    }
}

TEST(date, today_is_the_day_of_the_local_clock)
{
    const stoppedClock clock(1709942400000 - 1); // the last moment of 2024-03-08
    EXPECT_EQ(date::today(), date(2024, 3, 8));
    EXPECT_EQ(date::thisYear(), 2024);
    EXPECT_EQ(date::brelvixIniDate(), date(1900, 1, 1));
}

TEST(timestamp, text_forms)
{
    const struct
    {
        const wchar_t* text;
        const wchar_t* expected;
    } cases[] = {
        {L"2024-03-09", L"2024-03-09 00:00:00"},
        {L"2024-03-09 13:05", L"2024-03-09 13:05:00"},
        {L" 9.3.2024T13:05:09.120 ", L"2024-03-09 13:05:09.120"},
        {L"9999-12-31 23:59:59.999", L"9999-12-31 23:59:59.999"},
        {L"2024-03-09  13:05", nullptr},
        {L"2024-03-09\t 13:05", nullptr},
        {L"2024-03-09t13:05", nullptr},
        {L"2024-03-09T", nullptr},
        {L"13:05", nullptr},
        {L"2024-03-09 24:00", nullptr},
    };
    for (const auto& row : cases) {
        qx::timestamp result;
        EXPECT_EQ(qx::timestamp::parse(row.text, result), row.expected != nullptr)
            << qx::string(row.text).utf8();
        EXPECT_EQ(result.toText(), row.expected ? row.expected : L"0001-01-01 00:00:00")
            << qx::string(row.text).utf8();
    }
}

TEST(timestamp, timer_counts_from_1970_and_is_kept_within_the_calendar)
{
    const struct
    {
        long long milliseconds;
        const wchar_t* expected;
    } cases[] = {
        {0, L"1970-01-01 00:00:00"},
        {-1, L"1969-12-31 23:59:59.999"},
        {1709989509120, L"2024-03-09 13:05:09.120"},
        {9223372036854775807, L"9999-12-31 23:59:59.999"},
        {-9223372036854775807, L"0001-01-01 00:00:00"},
    };
    for (const auto& row : cases)
        EXPECT_EQ(qx::timestamp::fromTimer(row.milliseconds).toText(), row.expected);
    EXPECT_LT(qx::timestamp::fromTimer(1), qx::timestamp::fromTimer(2));
}
