// Dates, times of the day, and both together.
#include <qxDate.h>
#include <qxTimestamp.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <type_traits>

using qx::date;

static_assert(std::is_trivially_copyable_v<date> && sizeof(date) == 4);
static_assert(std::is_trivially_copyable_v<qx::time> && sizeof(qx::time) == 4);
static_assert(std::is_trivially_copyable_v<qx::timestamp> && sizeof(qx::timestamp) == 8);

namespace
{

// What the texts are read as, with a bar behind each; those that are refused are left out. Proves that a
// refusal changes nothing.
template <class T>
qx::string parsed(std::initializer_list<const wchar_t*> texts)
{
    qx::string all;
    T result;
    for (const wchar_t* text : texts) {
        const T before = result;
        const bool isRead = T::parse(text, result);
        EXPECT_TRUE(isRead || result == before) << qx::string(text).utf8();
        if (isRead)
            all += result.toText() + L"|";
    }
    return all;
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

    bool isDate(const date& other) const
    {
        return other.year() == year && other.month() == month && other.dayOfMonth() == day;
    }

    // The day so many months later or earlier: the same day of the month, or the month's last.
    slowCalendar monthsAway(int months) const
    {
        slowCalendar moved = *this;
        moved.year = (year * 12 + month - 1 + months) / 12;
        moved.month = (year * 12 + month - 1 + months) % 12 + 1;
        moved.day = std::min(day, moved.daysOfMonth());
        return moved;
    }

    int daysOfMonth() const
    {
        if (month == 2)
            return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0 ? 29 : 28;
        return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
    }

    void next()
    {
        const bool endsMonth = day == daysOfMonth();
        const bool endsYear = endsMonth && month == 12;
        day = endsMonth ? 1 : day + 1;
        month = endsMonth ? month % 12 + 1 : month;
        dayOfYear = endsYear ? 1 : dayOfYear + 1;
        year += endsYear ? 1 : 0;
        weekday = (weekday + 1) % 7;
        if (weekday == 0) {
            const bool firstWeek = (month == 12 && day >= 29) || (month == 1 && day <= 4);
            week = firstWeek ? 1 : week + 1;
        }
    }
};

// Proves what becomes of `from` when it moves.
void expectMoved(const slowCalendar& from, const qx::date_duration& duration, int months)
{
    const date before(from.year, from.month, from.day);
    for (const int direction : {1, -1}) {
        const slowCalendar moved = from.monthsAway(months * direction);
        date day = before;
        const bool isMoved = direction > 0 ? duration.addToDate(day) : duration.subtractFromDate(day);
        const bool isInCalendar = moved.year >= 1 && moved.year <= 9999;
        ASSERT_EQ(isMoved, isInCalendar) << before.toText().utf8();
        ASSERT_TRUE(isInCalendar ? moved.isDate(day) : day == before)
            << before.toText().utf8() << " by " << months * direction << ": " << day.toText().utf8();
    }
}

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
        const bool same = slow.isDate(day) && day.dayNumber() == number &&
                          day.dayOfYear() == slow.dayOfYear && day.dayOfWeek() == slow.weekday &&
                          day.weekOfYear() == slow.week && date(slow.year, slow.month, slow.day) == day;
        ASSERT_TRUE(same) << slow.year << "-" << slow.month << "-" << slow.day;
        ASSERT_NO_FATAL_FAILURE(expectMoved(slow, qx::months(1), 1));
        ASSERT_NO_FATAL_FAILURE(expectMoved(slow, qx::months(23), 23));
        ASSERT_NO_FATAL_FAILURE(expectMoved(slow, qx::years(1), 12));
        date moved = day;
        const bool isMoved = qx::weeks(5).addToDate(moved) && qx::days(1).addToDate(moved);
        ASSERT_TRUE(!isMoved || moved.dayNumber() == number + 36);
    }
    date day;
    EXPECT_FALSE(date::fromDayNumber(number, day));
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

TEST(date, text_forms)
{
    EXPECT_EQ(parsed<date>({L"2024-03-09", L" \t9.3.2024\r\n", L"09.03.2024", L"0001-01-01", L"31.12.9999"}),
              L"2024-03-09|2024-03-09|2024-03-09|0001-01-01|9999-12-31|");
    EXPECT_EQ(parsed<date>({L"", L"2024-3-9", L"24-03-09", L"2024-03-09x", L"2024-02-30", L"0000-01-01",
                            L"10000-01-01", L"1.1.24", L"001.1.2024", L"2024/03/09", L"-024-03-09",
                            L"2024-03-09 13:05"}),
              L"");
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

TEST(time, parts_and_text_forms)
{
    const qx::time moment(13, 5, 9, 7);
    const int parts[] = {moment.hour(),    moment.minute(),      moment.second(),
                         moment.msecond(), moment.minuteOfDay(), moment.secondOfDay()};
    EXPECT_THAT(parts, testing::ElementsAre(13, 5, 9, 7, 785, 47109));
    EXPECT_EQ(qx::time::midnight().toText(), L"00:00:00");
    EXPECT_EQ(parsed<qx::time>({L"13:05", L" 13:05:09\n", L"00:00:00.001", L"23:59:59.999", L"13:05:09.000"}),
              L"13:05:00|13:05:09|00:00:00.001|23:59:59.999|13:05:09|");
    EXPECT_EQ(parsed<qx::time>({L"", L"13", L"1:05", L"24:00", L"13:60", L"13:05:60", L"13:05:09.1",
                                L"13:05:09.1234", L"13:05.120", L"13:05:", L"13:05:09.", L"13:05 x"}),
              L"");
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

TEST(timestamp, text_forms_and_the_count_from_1970)
{
    EXPECT_EQ(parsed<qx::timestamp>({L"2024-03-09", L"2024-03-09 13:05", L" 9.3.2024T13:05:09.120 "}),
              L"2024-03-09 00:00:00|2024-03-09 13:05:00|2024-03-09 13:05:09.120|");
    EXPECT_EQ(parsed<qx::timestamp>({L"2024-03-09  13:05", L"2024-03-09\t 13:05", L"2024-03-09t13:05",
                                     L"2024-03-09T", L"13:05", L"2024-03-09 24:00"}),
              L"");
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
