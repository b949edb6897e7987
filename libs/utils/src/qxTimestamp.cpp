// Timestamps: milliseconds since 0001-01-01, of which date and time are quotient and
// remainder.
#include "qxTimestamp.h"

#include "qxDateText.h"

#include <algorithm>

namespace qx
{

namespace
{

constexpr long long perDay = time::millisecondsPerDay;
constexpr long long dayNumberOf1970 = 719162;
constexpr long long dayNumberOf10000 = 3652059;

} // namespace

timestamp::timestamp(const date& day, const time& timeOfDay)
    : mMilliseconds(day.dayNumber() * perDay + timeOfDay.millisecondOfDay())
{}

timestamp timestamp::fromTimer(long long milliseconds)
{
    constexpr long long epoch = dayNumberOf1970 * perDay;
    constexpr long long last = dayNumberOf10000 * perDay - 1;
    timestamp result;
    result.mMilliseconds = std::clamp(milliseconds, -epoch, last - epoch) + epoch;
    return result;
}

bool timestamp::parse(std::wstring_view text, timestamp& out)
{
    // Blanks are skipped around the whole only, not around the separator.
    const std::wstring_view all = trimmed(text);
    const std::size_t separator = all.find_first_of(L" T");
    const std::wstring_view dayText = all.substr(0, separator);
    date day;
    if (dayText != trimmed(dayText) || !date::parse(dayText, day))
        return false;
    time timeOfDay;
    if (separator != all.npos) {
        const std::wstring_view timeText = all.substr(separator + 1);
        if (timeText != trimmed(timeText) || !time::parse(timeText, timeOfDay))
            return false;
    }
    out = timestamp(day, timeOfDay);
    return true;
}

date timestamp::datePart() const
{
    date day;
    date::fromDayNumber(mMilliseconds / perDay, day);
    return day;
}

time timestamp::timePart() const
{
    time timeOfDay;
    time::fromMillisecondOfDay(mMilliseconds % perDay, timeOfDay);
    return timeOfDay;
}

string timestamp::toText() const
{
    return string(datePart().toText() + L' ' + timePart().toText());
}

} // namespace qx
