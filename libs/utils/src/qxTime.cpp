// Times of day: a number of milliseconds that moves round the clock.
#include "qxTime.h"

#include "qxDateText.h"

namespace qx
{

namespace
{

constexpr long long perSecond = 1000;
constexpr long long perMinute = 60 * perSecond;
constexpr long long perHour = 60 * perMinute;

// `milliseconds` may be negative. The days passed are counted as a positive number either way.
void move(time& target, long long milliseconds, uint* days)
{
    constexpr long long perDay = time::millisecondsPerDay;
    const long long moved = target.millisecondOfDay() + milliseconds;
    long long passed = moved / perDay;
    if (moved % perDay < 0)
        --passed;
    time::fromMillisecondOfDay(moved - passed * perDay, target);
    if (days)
        *days = static_cast<uint>(passed < 0 ? -passed : passed);
}

} // namespace

time::time(int hour, int minute, int second, int msecond)
{
    if (!make(hour, minute, second, msecond, *this))
        throw false;
}

bool time::make(int hour, int minute, int second, int msecond, time& out)
{
    const auto within = [](int value, int end) { return value >= 0 && value < end; };
    if (!within(hour, 24) || !within(minute, 60) || !within(second, 60) || !within(msecond, 1000))
        return false;
    out.mMilliseconds = ((hour * 60 + minute) * 60 + second) * 1000 + msecond;
    return true;
}

bool time::fromMillisecondOfDay(long long milliseconds, time& out)
{
    if (milliseconds < 0 || milliseconds >= millisecondsPerDay)
        return false;
    out.mMilliseconds = static_cast<int>(milliseconds);
    return true;
}

bool time::parse(std::wstring_view text, time& out)
{
    int hour = 0;
    int minute = 0;
    int second = 0;
    int msecond = 0;
    textScanner scanner(trimmed(text));
    if (!scanner.number(2, 2, hour) || !scanner.character(L':') || !scanner.number(2, 2, minute))
        return false;
    if (!scanner.atEnd() && (!scanner.character(L':') || !scanner.number(2, 2, second)))
        return false;
    if (!scanner.atEnd() && (!scanner.character(L'.') || !scanner.number(3, 3, msecond)))
        return false;
    return scanner.atEnd() && make(hour, minute, second, msecond, out);
}

string time::toText() const
{
    string text;
    appendPadded(text, hour(), 2);
    text += L':';
    appendPadded(text, minute(), 2);
    text += L':';
    appendPadded(text, second(), 2);
    if (msecond() != 0) {
        text += L'.';
        appendPadded(text, msecond(), 3);
    }
    return text;
}

time& time::operator+=(const time_duration& duration)
{
    duration.addToTime(*this, nullptr);
    return *this;
}

time& time::operator-=(const time_duration& duration)
{
    duration.subtractFromTime(*this, nullptr);
    return *this;
}

time_duration::~time_duration() = default;

void hours::addToTime(time& target, uint* days) const
{
    move(target, quantity() * perHour, days);
}

void hours::subtractFromTime(time& target, uint* days) const
{
    move(target, quantity() * -perHour, days);
}

void minutes::addToTime(time& target, uint* days) const
{
    move(target, quantity() * perMinute, days);
}

void minutes::subtractFromTime(time& target, uint* days) const
{
    move(target, quantity() * -perMinute, days);
}

void seconds::addToTime(time& target, uint* days) const
{
    move(target, quantity() * perSecond, days);
}

void seconds::subtractFromTime(time& target, uint* days) const
{
    move(target, quantity() * -perSecond, days);
}

void mseconds::addToTime(time& target, uint* days) const
{
    move(target, quantity(), days);
}

void mseconds::subtractFromTime(time& target, uint* days) const
{
    move(target, -static_cast<long long>(quantity()), days);
}

} // namespace qx
