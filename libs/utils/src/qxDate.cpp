// The calendar: a date is the number of its day, and year, month and day are worked out of
// that by whole cycles of the Gregorian calendar.
#include "qxDate.h"

#include "qxDateText.h"
#include "qxSystem.h"
#include "qxTimestamp.h"

#include <algorithm>

namespace qx
{

namespace
{

constexpr int lastYear = 9999;

constexpr bool isLeapYear(int year)
{
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

// Days from 0001-01-01 to the first of January of `year`.
constexpr int daysBeforeYear(int year)
{
    const int past = year - 1;
    return past * 365 + past / 4 - past / 100 + past / 400;
}

constexpr int lastDayNumber = daysBeforeYear(lastYear + 1) - 1;

// Days from the first of January to the first of month 1 to 13.
constexpr int daysBeforeMonth(int year, int month)
{
    constexpr int days[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};
    return days[month - 1] + (month > 2 && isLeapYear(year) ? 1 : 0);
}

constexpr int daysOfMonth(int year, int month)
{
    return daysBeforeMonth(year, month + 1) - daysBeforeMonth(year, month);
}

// A day by its month counted from January of year 1, and its place in that month from 1.
struct monthAndDay
{
    explicit monthAndDay(const date& day)
        : month((day.year() - 1) * 12LL + day.month() - 1), dayOfMonth(day.dayOfMonth())
    {}

    long long month;
    int dayOfMonth;
};

bool moveMonths(date& target, long long count)
{
    const monthAndDay from(target);
    const long long month = from.month + count;
    if (month < 0 || month >= lastYear * 12LL)
        return false;
    const int newYear = static_cast<int>(month / 12) + 1;
    const int newMonth = static_cast<int>(month % 12) + 1;
    return date::make(newYear, newMonth, std::min(from.dayOfMonth, daysOfMonth(newYear, newMonth)), target);
}

bool moveDays(date& target, long long count)
{
    return date::fromDayNumber(target.dayNumber() + count, target);
}

} // namespace

date::date(int year, int month, int dayOfMonth)
{
    if (!make(year, month, dayOfMonth, *this))
        throw false;
}

bool date::make(int year, int month, int dayOfMonth, date& out)
{
    if (year < 1 || year > lastYear || month < 1 || month > 12 || dayOfMonth < 1 ||
        dayOfMonth > daysOfMonth(year, month))
        return false;
    out.mDayNumber = daysBeforeYear(year) + daysBeforeMonth(year, month) + dayOfMonth - 1;
    return true;
}

bool date::fromDayNumber(long long dayNumber, date& out)
{
    if (dayNumber < 0 || dayNumber > lastDayNumber)
        return false;
    out.mDayNumber = static_cast<int>(dayNumber);
    return true;
}

bool date::parse(std::wstring_view text, date& out)
{
    int first = 0;
    int month = 0;
    int last = 0;
    textScanner iso(trimmed(text));
    if (iso.number(4, 4, first) && iso.character(L'-') && iso.number(2, 2, month) && iso.character(L'-') &&
        iso.number(2, 2, last) && iso.atEnd())
        return make(first, month, last, out);
    textScanner pointed(trimmed(text));
    return pointed.number(1, 2, first) && pointed.character(L'.') && pointed.number(1, 2, month) &&
           pointed.character(L'.') && pointed.number(4, 4, last) && pointed.atEnd() &&
           make(last, month, first, out);
}

date date::today()
{
    return timestamp::fromTimer(system::current().localNow()).datePart();
}

int date::thisYear()
{
    return today().year();
}

date date::brelvixIniDate()
{
    return date(1900, 1, 1);
}

int date::year() const
{
    // 400 years have 146,097 days; the estimate is off by one year at most.
    const int estimate = static_cast<int>(mDayNumber * 400LL / 146097) + 1;
    if (daysBeforeYear(estimate) > mDayNumber)
        return estimate - 1;
    return daysBeforeYear(estimate + 1) <= mDayNumber ? estimate + 1 : estimate;
}

int date::month() const
{
    const int inYear = year();
    const int day = dayOfYear() - 1;
    int month = day / 31 + 1; // no month is longer, so never too late and at most one too early
    if (daysBeforeMonth(inYear, month + 1) <= day)
        ++month;
    return month;
}

int date::dayOfMonth() const
{
    return dayOfYear() - daysBeforeMonth(year(), month());
}

int date::dayOfYear() const
{
    return mDayNumber - daysBeforeYear(year()) + 1;
}

eWeekday date::dayOfWeek() const
{
    return static_cast<eWeekday>(mDayNumber % 7); // 0001-01-01 is a Monday
}

int date::weekOfYear() const
{
    // A week belongs to the year of its Thursday; the calendar's first and last weeks hold theirs.
    date thursdayOfWeek;
    thursdayOfWeek.mDayNumber = mDayNumber - dayOfWeek() + thursday;
    return (thursdayOfWeek.dayOfYear() - 1) / 7 + 1;
}

string date::toText() const
{
    string text;
    appendPadded(text, year(), 4);
    text += L'-';
    appendPadded(text, month(), 2);
    text += L'-';
    appendPadded(text, dayOfMonth(), 2);
    return text;
}

date& date::operator+=(const date_duration& duration)
{
    if (!duration.addToDate(*this))
        throw false;
    return *this;
}

date& date::operator-=(const date_duration& duration)
{
    if (!duration.subtractFromDate(*this))
        throw false;
    return *this;
}

date_duration::~date_duration() = default;

bool years::addToDate(date& target) const
{
    return moveMonths(target, quantity() * 12LL);
}

bool years::subtractFromDate(date& target) const
{
    return moveMonths(target, quantity() * -12LL);
}

bool months::addToDate(date& target) const
{
    return moveMonths(target, quantity());
}

bool months::subtractFromDate(date& target) const
{
    return moveMonths(target, -static_cast<long long>(quantity()));
}

bool weeks::addToDate(date& target) const
{
    return moveDays(target, quantity() * 7LL);
}

bool weeks::subtractFromDate(date& target) const
{
    return moveDays(target, quantity() * -7LL);
}

bool days::addToDate(date& target) const
{
    return moveDays(target, quantity());
}

bool days::subtractFromDate(date& target) const
{
    return moveDays(target, -static_cast<long long>(quantity()));
}

} // namespace qx
