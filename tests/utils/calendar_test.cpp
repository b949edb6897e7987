// Dates, times of the day, and both together. What texts they read is in texts.expected,
// and scripts show their parts.
#include <qxDate.h>
#include <qxTimestamp.h>

#include <gmock/gmock.h>

#include <chrono>
#include <type_traits>

using qx::date;

static_assert(std::is_trivially_copyable_v<date> && sizeof(date) == 4);
static_assert(std::is_trivially_copyable_v<qx::time> && sizeof(qx::time) == 4);
static_assert(std::is_trivially_copyable_v<qx::timestamp> && sizeof(qx::timestamp) == 8);

namespace
{

// The standard library as a second opinion: day 0 is the first of the calendar.
using std::chrono::sys_days;
using std::chrono::year_month_day;
constexpr sys_days firstDay{std::chrono::year(1) / 1 / 1};

date same(const year_month_day& day)
{
    return date(static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
                static_cast<int>(static_cast<unsigned>(day.day())));
}

// A week belongs to the year of its Thursday, in which it is counted.
int weekOf(sys_days day)
{
    const sys_days thursday =
        day + std::chrono::days(4 - static_cast<int>(std::chrono::weekday(day).iso_encoding()));
    const sys_days newYear(year_month_day(thursday).year() / 1 / 1);
    return static_cast<int>((thursday - newYear).count()) / 7 + 1;
}

// Proves what becomes of `from` when it moves: the same day of another month, or the last of that.
void expectMoved(const year_month_day& from, const qx::date_duration& duration, int months)
{
    for (const int direction : {1, -1}) {
        const year_month_day wanted = from + std::chrono::months(months * direction);
        const int year = static_cast<int>(wanted.year());
        const bool isInCalendar = year >= 1 && year <= 9999;
        date day = same(from);
        ASSERT_EQ(direction > 0 ? duration.addToDate(day) : duration.subtractFromDate(day), isInCalendar);
        const year_month_day last = wanted.year() / wanted.month() / std::chrono::last;
        ASSERT_EQ(day, same(!isInCalendar ? from
                            : wanted.ok() ? wanted
                                          : last))
            << same(from).toText().utf8() << " by " << months * direction;
    }
}

} // namespace

TEST(date, whole_calendar_agrees_with_a_second_opinion)
{
#ifdef NDEBUG
    constexpr int step = 1;
#else
    constexpr int step = 89;
#endif
    constexpr int count = (sys_days(std::chrono::year(10000) / 1 / 1) - firstDay).count();
    for (int number = 0; number < count; number += step) {
        const sys_days known = firstDay + std::chrono::days(number);
        const year_month_day parts(known);
        date day;
        ASSERT_TRUE(date::fromDayNumber(number, day));
        ASSERT_EQ(day, same(parts));
        const int numbers[] = {day.year(),      day.month(),     day.dayOfMonth(), day.dayNumber(),
                               day.dayOfYear(), day.dayOfWeek(), day.weekOfYear()};
        const auto dayOfYear = static_cast<int>((known - sys_days(parts.year() / 1 / 1)).count()) + 1;
        const auto dayOfWeek = static_cast<int>(std::chrono::weekday(known).iso_encoding()) - 1;
        ASSERT_THAT(numbers,
                    testing::ElementsAre(static_cast<int>(parts.year()), static_cast<unsigned>(parts.month()),
                                         static_cast<unsigned>(parts.day()), number, dayOfYear, dayOfWeek,
                                         weekOf(known)));
        ASSERT_NO_FATAL_FAILURE(expectMoved(parts, qx::months(1), 1));
        ASSERT_NO_FATAL_FAILURE(expectMoved(parts, qx::months(23), 23));
        ASSERT_NO_FATAL_FAILURE(expectMoved(parts, qx::years(1), 12));
        date moved = day;
        const bool isMoved = qx::weeks(5).addToDate(moved) && qx::days(1).addToDate(moved);
        ASSERT_TRUE(!isMoved || moved.dayNumber() == number + 36);
    }
    date day;
    EXPECT_FALSE(date::fromDayNumber(count, day));
    EXPECT_FALSE(date::fromDayNumber(-1, day));
    EXPECT_EQ(day, date());
}

TEST(date, durations_end_with_the_calendar)
{
    for (const qx::uint quantity : {1u, 4294967295u}) {
        const qx::years years(quantity);
        const qx::months months(quantity);
        const qx::weeks weeks(quantity);
        const qx::days days(quantity);
        for (const auto* duration :
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

TEST(calendar, impossible_days_and_times_throw_false)
{
    const int days[][3] = {{2023, 2, 29}, {1900, 2, 29}, {0, 1, 1},     {10000, 1, 1},
                           {2024, 13, 1}, {2024, 0, 1},  {2024, 4, 31}, {2024, 1, 0}};
    for (const auto& row : days)
        EXPECT_THROW(date(row[0], row[1], row[2]), bool) << row[0] << "-" << row[1] << "-" << row[2];
    const int times[][4] = {{24, 0, 0, 0}, {-1, 0, 0, 0}, {0, 60, 0, 0}, {0, 0, 60, 0}, {0, 0, 0, 1000}};
    for (const auto& row : times)
        EXPECT_THROW(qx::time(row[0], row[1], row[2], row[3]), bool);
}

TEST(time, durations_go_round_the_clock_and_count_the_days)
{
    const struct
    {
        const qx::time_duration& duration;
        const wchar_t* later; // from 12:00, and how many days
        const wchar_t* earlier;
    } cases[] = {
        {qx::hours(12), L"00:00:00 1", L"00:00:00 0"},
        {qx::hours(61), L"01:00:00 3", L"23:00:00 3"},
        {qx::minutes(721), L"00:01:00 1", L"23:59:00 1"},
        {qx::seconds(1), L"12:00:01 0", L"11:59:59 0"},
        {qx::mseconds(43200000), L"00:00:00 1", L"00:00:00 0"},
        {qx::hours(4294967295u), L"03:00:00 178956971", L"21:00:00 178956971"},
    };
    for (const auto& row : cases) {
        qx::uint days = 99;
        qx::time moved = qx::time::lunchtime();
        row.duration.addToTime(moved, &days);
        EXPECT_EQ(qx::string::sformat(L"%s %u", moved.toText(), days), row.later);
        moved = qx::time::lunchtime();
        row.duration.subtractFromTime(moved, &days);
        EXPECT_EQ(qx::string::sformat(L"%s %u", moved.toText(), days), row.earlier);
    }
    qx::time moment;
    moment -= qx::mseconds(1);
    moment += qx::minutes(1);
    EXPECT_EQ(moment.toText(), L"00:00:59.999");
}

TEST(timestamp, count_from_1970)
{
    const std::pair<long long, const wchar_t*> cases[] = {
        {-1, L"1969-12-31 23:59:59.999"},
        {1709989509120, L"2024-03-09 13:05:09.120"},
        {9223372036854775807, L"9999-12-31 23:59:59.999"}, // kept within the calendar
        {-9223372036854775807, L"0001-01-01 00:00:00"},
    };
    for (const auto& [milliseconds, expected] : cases)
        EXPECT_EQ(qx::timestamp::fromTimer(milliseconds).toText(), expected);
    EXPECT_LT(qx::timestamp::fromTimer(1), qx::timestamp::fromTimer(2));
}
