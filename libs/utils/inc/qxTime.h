// Times of day, to the millisecond, and the spans by which they move.
//
// A time moves round the clock: 23:30 and one hour make 0:30. A time is a small value of
// four bytes, 0:00 to begin with, and knows no day and no time zone.
//
//     qx::time closing(23, 30, 0);
//     qx::uint days = 0;
//     qx::hours(1).addToTime(closing, &days); // 0:30, and days is 1
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
class time_duration;

// A time of day. Trivially copyable: values keep it in their word.
class QXUTILS_API time
{
public:
    // The length of every day: no leap seconds, and no change to summer time.
    static constexpr int millisecondsPerDay = 24 * 60 * 60 * 1000;

    // 0:00.
    constexpr time() = default;

    // Hours from 0 to 23, minutes and seconds to 59, milliseconds to 999. Throws the bool
    // value false when there is no such time: 24:00 is none, and no leap second.
    time(int hour, int minute, int second, int msecond = 0);

    // Checked ways to a time: true when `out` has been set; false, with `out` unchanged,
    // when there is no such time.
    static bool make(int hour, int minute, int second, int msecond, time& out);
    // The second takes milliseconds since 0:00, which are fewer than millisecondsPerDay.
    static bool fromMillisecondOfDay(long long milliseconds, time& out);

    // Reads `HH:MM`, `HH:MM:SS` or `HH:MM:SS.mmm`. Blanks, tabs and line ends around it are
    // skipped. False, with `out` unchanged, for anything else: another form, a time that
    // does not exist.
    static bool parse(std::wstring_view text, time& out);

    // Names for three times of day; the first two are the same.
    static time daystart() { return time(); }          // 0:00
    static time midnight() { return time(); }          // 0:00
    static time lunchtime() { return time(12, 0, 0); } // 12:00

    // The parts, as a clock shows them, and the whole counted from 0:00 in each unit,
    // rounded down.
    int hour() const { return minuteOfDay() / 60; }
    int minute() const { return minuteOfDay() % 60; }
    int second() const { return secondOfDay() % 60; }
    int msecond() const { return mMilliseconds % 1000; }
    int minuteOfDay() const { return secondOfDay() / 60; }
    int secondOfDay() const { return mMilliseconds / 1000; }
    int millisecondOfDay() const { return mMilliseconds; }

    // `HH:MM:SS`, followed by `.mmm` when that is not zero; parse() reads it back.
    string toText() const;

    // Move the time round the clock. They never fail; how often midnight was passed is told
    // by time_duration alone.
    time& operator+=(const time_duration& duration);
    time& operator-=(const time_duration& duration);

    // By time of day: the earlier is less.
    auto operator<=>(const time&) const = default;

private:
    int mMilliseconds = 0; // since 0:00
};

// A span of time: so many of a unit, which is the derived class. A span has no direction;
// it is added or subtracted, and may be longer than a day. Immutable, so several threads
// may use one.
class QXUTILS_API time_duration
{
public:
    virtual ~time_duration();

    // Move `target`. `days`, which may be null, receives how often the time passed midnight
    // on its way. Throw nothing.
    virtual void addToTime(time& target, uint* days) const = 0;
    virtual void subtractFromTime(time& target, uint* days) const = 0;

    // How many of the unit.
    uint quantity() const { return mQuantity; }

protected:
    explicit time_duration(uint quantity) : mQuantity(quantity) {}
    time_duration(const time_duration&) = default;
    time_duration& operator=(const time_duration&) = default;

private:
    uint mQuantity;
};

// Sixty minutes each. Sixty minutes each. All four add and subtract as time_duration tells.
class QXUTILS_API hours : public time_duration
{
public:
    explicit hours(uint quantity) : time_duration(quantity) {}
    void addToTime(time& target, uint* days) const override;
    void subtractFromTime(time& target, uint* days) const override;
};

// Sixty seconds each.
class QXUTILS_API minutes : public time_duration
{
public:
    explicit minutes(uint quantity) : time_duration(quantity) {}
    void addToTime(time& target, uint* days) const override;
    void subtractFromTime(time& target, uint* days) const override;
};

// A thousand milliseconds each.
class QXUTILS_API seconds : public time_duration
{
public:
    explicit seconds(uint quantity) : time_duration(quantity) {}
    void addToTime(time& target, uint* days) const override;
    void subtractFromTime(time& target, uint* days) const override;
};

// The smallest step that a time knows.
class QXUTILS_API mseconds : public time_duration
{
public:
    explicit mseconds(uint quantity) : time_duration(quantity) {}
    void addToTime(time& target, uint* days) const override;
    void subtractFromTime(time& target, uint* days) const override;
};

} // namespace qx
