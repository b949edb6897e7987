// Times of day, to the millisecond, and the spans by which they move.
//
// A time moves round the clock: 23:30 and one hour make 0:30. A time is a small value, 0:00 to begin with.
#pragma once

#include "qxExport.h"
#include "qxString.h"
#include "qxTypes.h"

#include <compare>
#include <string_view>

namespace qx
{

class time_duration;

class QXUTILS_API time
{
public:
    static constexpr int millisecondsPerDay = 24 * 60 * 60 * 1000;

    constexpr time() = default;

    // Throws false when there is no such time.
    time(int hour, int minute, int second, int msecond = 0);

    // Checked ways to a time: false, with `out` unchanged, when there is no such time.
    static bool make(int hour, int minute, int second, int msecond, time& out);
    static bool fromMillisecondOfDay(long long milliseconds, time& out);

    // Reads `HH:MM`, `HH:MM:SS` or `HH:MM:SS.mmm`. Blanks, tabs and line ends around it are skipped. False,
    // with `out` unchanged, for anything else.
    static bool parse(std::wstring_view text, time& out);

    static time daystart() { return time(); }          // 0:00
    static time midnight() { return time(); }          // 0:00
    static time lunchtime() { return time(12, 0, 0); } // 12:00

    int hour() const { return minuteOfDay() / 60; }
    int minute() const { return minuteOfDay() % 60; }
    int second() const { return secondOfDay() % 60; }
    int msecond() const { return mMilliseconds % 1000; }
    int minuteOfDay() const { return secondOfDay() / 60; }
    int secondOfDay() const { return mMilliseconds / 1000; }
    int millisecondOfDay() const { return mMilliseconds; }

    // `HH:MM:SS`, followed by `.mmm` when that is not zero.
    string toText() const;

    // Move the time round the clock.
    time& operator+=(const time_duration& duration);
    time& operator-=(const time_duration& duration);

    auto operator<=>(const time&) const = default;

private:
    int mMilliseconds = 0; // since 0:00
};

// A span of time.
class QXUTILS_API time_duration
{
public:
    virtual ~time_duration();

    // `days`, which may be null, receives how often the time passed midnight on its way.
    virtual void addToTime(time& target, uint* days) const = 0;
    virtual void subtractFromTime(time& target, uint* days) const = 0;

    uint quantity() const { return mQuantity; }

protected:
    explicit time_duration(uint quantity) : mQuantity(quantity) {}
    time_duration(const time_duration&) = default;
    time_duration& operator=(const time_duration&) = default;

private:
    uint mQuantity;
};

class QXUTILS_API hours : public time_duration
{
public:
    explicit hours(uint quantity) : time_duration(quantity) {}
    void addToTime(time& target, uint* days) const override;
    void subtractFromTime(time& target, uint* days) const override;
};

class QXUTILS_API minutes : public time_duration
{
public:
    explicit minutes(uint quantity) : time_duration(quantity) {}
    void addToTime(time& target, uint* days) const override;
    void subtractFromTime(time& target, uint* days) const override;
};

class QXUTILS_API seconds : public time_duration
{
public:
    explicit seconds(uint quantity) : time_duration(quantity) {}
    void addToTime(time& target, uint* days) const override;
    void subtractFromTime(time& target, uint* days) const override;
};

class QXUTILS_API mseconds : public time_duration
{
public:
    explicit mseconds(uint quantity) : time_duration(quantity) {}
    void addToTime(time& target, uint* days) const override;
    void subtractFromTime(time& target, uint* days) const override;
};

} // namespace qx
