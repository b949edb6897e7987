#include <qxTime.h>

#include <gtest/gtest.h>

#include <type_traits>

static_assert(std::is_trivially_copyable_v<qx::time> && sizeof(qx::time) == 4);

TEST(time, parts_and_text)
{
    const qx::time moment(13, 5, 9, 7);
    EXPECT_EQ(moment.hour(), 13);
    EXPECT_EQ(moment.minute(), 5);
    EXPECT_EQ(moment.second(), 9);
    EXPECT_EQ(moment.msecond(), 7);
    EXPECT_EQ(moment.minuteOfDay(), 785);
    EXPECT_EQ(moment.secondOfDay(), 47109);
    EXPECT_EQ(qx::time::daystart().toText(), L"00:00:00");
    EXPECT_EQ(qx::time::midnight().toText(), L"00:00:00");
    EXPECT_EQ(qx::time::lunchtime().toText(), L"12:00:00");
}

TEST(time, text_forms)
{
    const struct
    {
        const wchar_t* text;
        const wchar_t* expected; // null where it is refused
    } cases[] = {
        {L"13:05", L"13:05:00"},
        {L" 13:05:09\n", L"13:05:09"},
        {L"00:00:00.001", L"00:00:00.001"},
        {L"23:59:59.999", L"23:59:59.999"},
        {L"13:05:09.000", L"13:05:09"},
        {L"", nullptr},
        {L"13", nullptr},
        {L"1:05", nullptr},
        {L"24:00", nullptr},
        {L"13:60", nullptr},
        {L"13:05:60", nullptr},
        {L"13:05:09.1", nullptr},
        {L"13:05:09.1234", nullptr},
        {L"13:05.120", nullptr},
        {L"13:05:", nullptr},
        {L"13:05:09.", nullptr},
        {L"13:05 x", nullptr},
    };
    for (const auto& row : cases) {
        qx::time result(1, 2, 3);
        EXPECT_EQ(qx::time::parse(row.text, result), row.expected != nullptr) << qx::string(row.text).utf8();
        EXPECT_EQ(result.toText(), row.expected ? row.expected : L"01:02:03") << qx::string(row.text).utf8();
    }
}

TEST(time, impossible_times_throw_false)
{
    const int cases[][4] = {{24, 0, 0, 0}, {-1, 0, 0, 0}, {0, 60, 0, 0}, {0, 0, 60, 0}, {0, 0, 0, 1000}};
    for (const auto& row : cases)
        EXPECT_THROW(qx::time(row[0], row[1], row[2], row[3]), bool);
}

TEST(time, durations_go_round_the_clock_and_count_the_days)
{
    const struct
    {
        const qx::time_duration& duration;
        const wchar_t* later;
        qx::uint daysLater;
        const wchar_t* earlier;
        qx::uint daysEarlier;
    } cases[] = {
        // All from 12:00.
        {qx::hours(11), L"23:00:00", 0, L"01:00:00", 0},
        {qx::hours(12), L"00:00:00", 1, L"00:00:00", 0},
        {qx::hours(36), L"00:00:00", 2, L"00:00:00", 1},
        {qx::hours(61), L"01:00:00", 3, L"23:00:00", 3},
        {qx::minutes(721), L"00:01:00", 1, L"23:59:00", 1},
        {qx::seconds(1), L"12:00:01", 0, L"11:59:59", 0},
        {qx::mseconds(43200000), L"00:00:00", 1, L"00:00:00", 0},
        {qx::hours(4294967295u), L"03:00:00", 178956971, L"21:00:00", 178956971},
    };
    for (const auto& row : cases) {
        qx::uint days = 99;
        qx::time moved = qx::time::lunchtime();
        row.duration.addToTime(moved, &days);
        EXPECT_EQ(moved.toText(), row.later) << row.duration.quantity();
        EXPECT_EQ(days, row.daysLater) << row.duration.quantity();
        moved = qx::time::lunchtime();
        row.duration.subtractFromTime(moved, &days);
        EXPECT_EQ(moved.toText(), row.earlier) << row.duration.quantity();
        EXPECT_EQ(days, row.daysEarlier) << row.duration.quantity();
    }
    qx::time moment;
    moment -= qx::mseconds(1);
    EXPECT_EQ(moment.toText(), L"23:59:59.999");
    moment += qx::mseconds(1);
    EXPECT_EQ(moment, qx::time());
}
