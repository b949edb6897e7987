// Calendar dates and the spans by which they move.
//
// The calendar is the Gregorian one, also for the time before it was in use, with the years 1 to 9999. Months
// and years keep the day of the month where they can and otherwise take the month's last day. A date is a
// small value, 0001-01-01 to begin with.
//
//     qx::date day(2024, 1, 31);
//     day += qx::months(1); // 2024-02-29
//     qx::date(2023, 2, 29); // throws false
#pragma once

#include "qxExport.h"
#include "qxString.h"
#include "qxTypes.h"

#include <compare>
#include <string_view>

namespace qx
{

class date_duration;

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

class QXUTILS_API date
{
public:
    constexpr date() = default;

    // Throws false when there is no such day.
    date(int year, int month, int dayOfMonth);

    // Checked ways to a date: false, with `out` unchanged, when there is no such day. Day number 0 is
    // 0001-01-01.
    static bool make(int year, int month, int dayOfMonth, date& out);
    static bool fromDayNumber(long long dayNumber, date& out);

    // Reads `YYYY-MM-DD`, or `DD.MM.YYYY` where day and month may have one digit. Blanks, tabs and line ends
    // around it are skipped. False, with `out` unchanged, for anything else.
    static bool parse(std::wstring_view text, date& out);

    // The local day and year.
    static date today();
    static int thisYear();

    // 1900-01-01.
    static date brelvixIniDate();

    int year() const;
    int month() const; // 1 to 12
    int dayOfMonth() const;
    int dayOfYear() const; // 1 to 366
    eWeekday dayOfWeek() const;
    int weekOfYear() const; // 1 to 53 by ISO 8601: week 1 has the year's first Thursday
    int dayNumber() const { return mDayNumber; }

    // `YYYY-MM-DD`.
    string toText() const;

    // Move the date. They throw false, with the date unchanged, when the result lies outside the calendar.
    date& operator+=(const date_duration& duration);
    date& operator-=(const date_duration& duration);

    auto operator<=>(const date&) const = default;

private:
    int mDayNumber = 0;
};

// A span of the calendar.
class QXUTILS_API date_duration
{
public:
    virtual ~date_duration();

    // False, with `target` unchanged, when the result lies outside the calendar.
    virtual bool addToDate(date& target) const = 0;
    virtual bool subtractFromDate(date& target) const = 0;

    uint quantity() const { return mQuantity; }

protected:
    explicit date_duration(uint quantity) : mQuantity(quantity) {}
    date_duration(const date_duration&) = default;
    date_duration& operator=(const date_duration&) = default;

private:
    uint mQuantity;
};

class QXUTILS_API years : public date_duration
{
public:
    explicit years(uint quantity) : date_duration(quantity) {}
    bool addToDate(date& target) const override;
    bool subtractFromDate(date& target) const override;
};

class QXUTILS_API months : public date_duration
{
public:
    explicit months(uint quantity) : date_duration(quantity) {}
    bool addToDate(date& target) const override;
    bool subtractFromDate(date& target) const override;
};

class QXUTILS_API weeks : public date_duration
{
public:
    explicit weeks(uint quantity) : date_duration(quantity) {}
    bool addToDate(date& target) const override;
    bool subtractFromDate(date& target) const override;
};

class QXUTILS_API days : public date_duration
{
public:
    explicit days(uint quantity) : date_duration(quantity) {}
    bool addToDate(date& target) const override;
    bool subtractFromDate(date& target) const override;
};

} // namespace qx
