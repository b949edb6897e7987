// Calendar dates and the spans by which they move.
//
// The calendar is the Gregorian one, also for the time before it was in use, with the years
// 1 to 9999. Months and years keep the day of the month where they can and otherwise take
// the month's last day. A date is a small value of four bytes, 0001-01-01 to begin with,
// and knows no time zone.
//
//     qx::date day(2024, 1, 31);
//     day += qx::months(1);                                  // 2024-02-29
//     qx::date(2023, 2, 29);                                 // throws false
//     if (qx::date::parse(L"3.10.2024", day))                // data: no exception
//         left = day.dayNumber() - qx::date::today().dayNumber();
//
// What can be wrong in a program throws the bool value false; what can be wrong in data (a
// text, a number) has a checked way that gives false. Nothing else is thrown but
// std::bad_alloc where texts are made.
#pragma once

#include "qxExport.h"
#include "qxString.h"
#include "qxTypes.h"

#include <compare>
#include <string_view>

namespace qx
{

// A span, below.
class date_duration;

// The days of the week as numbers from 0.
enum eWeekday
{
    monday,
    tuesday,
    wednesday,
    thursday,
    friday,
    saturday,
    sunday
};

// A day. Trivially copyable: values keep it in their word.
class QXUTILS_API date
{
public:
    // 0001-01-01.
    constexpr date() = default;

    // Throws false when there is no such day.
    date(int year, int month, int dayOfMonth);

    // Checked ways to a date: true when `out` has been set; false, with `out` unchanged,
    // when there is no such day. Day number 0 is 0001-01-01, the last one 9999-12-31.
    static bool make(int year, int month, int dayOfMonth, date& out);
    static bool fromDayNumber(long long dayNumber, date& out);

    // Reads `YYYY-MM-DD`, or `DD.MM.YYYY` where day and month may have one digit. Blanks,
    // tabs and line ends around it are skipped. False, with `out` unchanged, for anything
    // else: another form, signs, a day that does not exist.
    static bool parse(std::wstring_view text, date& out);

    // The local day and year, by the clock of the system in force (qxSystem.h).
    static date today();
    static int thisYear();

    // 1900-01-01.
    static date brelvixIniDate();

    // 1 to 9999. The parts are worked out of the day number at each call.
    int year() const;
    int month() const; // 1 to 12
    int dayOfMonth() const;
    int dayOfYear() const; // 1 to 366
    eWeekday dayOfWeek() const;
    // The last days of December may lie in week 1 of the next year, the first of January in
    // week 52 or 53 of the year before.
    int weekOfYear() const; // 1 to 53 by ISO 8601: week 1 has the year's first Thursday
    // The days since 0001-01-01: differences of days are differences of these.
    int dayNumber() const { return mDayNumber; }

    // `YYYY-MM-DD`, which parse() reads back.
    string toText() const;

    // Move the date. They throw the bool value false, with the date unchanged, when the
    // result lies outside the calendar.
    date& operator+=(const date_duration& duration);
    date& operator-=(const date_duration& duration);

    // By time: the earlier date is less.
    auto operator<=>(const date&) const = default;

private:
    // Days since 0001-01-01.
    int mDayNumber = 0;
};

// A span of the calendar: so many of a unit, which is the derived class. A span has no
// direction; it is added or subtracted. Immutable, so several threads may use one.
class QXUTILS_API date_duration
{
public:
    virtual ~date_duration();

    // Move `target`. False, with `target` unchanged, when the result lies outside the
    // calendar. Throw nothing.
    virtual bool addToDate(date& target) const = 0;
    virtual bool subtractFromDate(date& target) const = 0;

    // How many of the unit.
    uint quantity() const { return mQuantity; }

protected:
    explicit date_duration(uint quantity) : mQuantity(quantity) {}
    date_duration(const date_duration&) = default;
    date_duration& operator=(const date_duration&) = default;

private:
    uint mQuantity;
};

// Twelve months each: 2024-02-29 and one year make 2025-02-28.
class QXUTILS_API years : public date_duration
{
public:
    explicit years(uint quantity) : date_duration(quantity) {}
    // Counts in years of the calendar.
    bool addToDate(date& target) const override;
    bool subtractFromDate(date& target) const override;
};

// The day of the month is kept, or becomes the last one of a shorter month. So adding and
// subtracting a span need not lead back.
class QXUTILS_API months : public date_duration
{
public:
    explicit months(uint quantity) : date_duration(quantity) {}
    bool addToDate(date& target) const override;
    bool subtractFromDate(date& target) const override;
};

// Seven days each.
class QXUTILS_API weeks : public date_duration
{
public:
    explicit weeks(uint quantity) : date_duration(quantity) {}
    bool addToDate(date& target) const override;
    bool subtractFromDate(date& target) const override;
};

// Days of the calendar, which have no hours: no change to summer time shortens one.
class QXUTILS_API days : public date_duration
{
public:
    explicit days(uint quantity) : date_duration(quantity) {}
    bool addToDate(date& target) const override;
    bool subtractFromDate(date& target) const override;
};

} // namespace qx
