// A date and a time of day in one value; 0001-01-01 0:00 to begin with.
//
//     qx::timestamp noon(qx::date(2024, 2, 29), qx::time::lunchtime());
//     noon.toText(); // 2024-02-29 12:00:00
//
// It knows no time zone: whether it is UTC or local time is for whoever made it to say. A
// small value of eight bytes, compared by time. Nothing is thrown but std::bad_alloc where
// a text is made.
#pragma once

#include "qxDate.h"
#include "qxTime.h"

namespace qx
{

class QXUTILS_API timestamp
{
public:
    constexpr timestamp() = default;

    // Midnight of the day.
    explicit timestamp(const date& day) : timestamp(day, time()) {}
    timestamp(const date& day, const time& timeOfDay);

    // The moment so many milliseconds after 1970-01-01 0:00, in the zone that these count
    // in: UTC for the times of files. What lies outside the calendar becomes its first or
    // last moment.
    static timestamp fromTimer(long long milliseconds);

    // Reads a date, or a date and a time with one blank or `T` between them, in the forms
    // of date::parse and time::parse. Blanks, tabs and line ends around it are skipped.
    // False, with `out` unchanged, for anything else.
    static bool parse(std::wstring_view text, timestamp& out);

    // The two halves; a timestamp of them is this one again.
    date datePart() const;
    time timePart() const;

    // `YYYY-MM-DD HH:MM:SS`, followed by `.mmm` when that is not zero.
    string toText() const;

    auto operator<=>(const timestamp&) const = default;

private:
    long long mMilliseconds = 0; // since 0001-01-01 0:00
};

} // namespace qx
