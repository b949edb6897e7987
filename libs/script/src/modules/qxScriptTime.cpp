// Times of day: constants and read-outs.
#include "modules/qxScriptCalendar.h"
#include "modules/qxScriptModules.h"

namespace qx::script
{

namespace
{

struct timeKind
{
    using type = time;
    static constexpr const wchar_t* noFunction = L"no function-ptr given";
    static constexpr const wchar_t* tooFewParameters = L"infoOfTime::createFrom: number of parameters < 1";
    static constexpr const wchar_t* unreadableText = L"infoOfTime::createFrom: error parsing \"%s\"";
    static constexpr const wchar_t* noValue = L"Missing or invalid time-provider";
    static constexpr const wchar_t* readOutFailures[] = {tooFewParameters, unreadableText, noValue,
                                                         noReadOut};
    static constexpr const wchar_t* parameters = L"(time)";
    static constexpr bool constantFailsWithoutText = false;
    static constexpr int (*readOuts[])(const time&) = {
        [](const time& moment) { return moment.hour(); },
        [](const time& moment) { return moment.minute(); },
        [](const time& moment) { return moment.second(); },
        nullptr,
        [](const time& moment) { return moment.minuteOfDay(); },
        [](const time& moment) { return moment.secondOfDay(); },
    };
};

using staticTime = constantOf<timeKind>;
using infoOfTime = infoOf<timeKind>;

// --- Table ---

constexpr builtin rows[] = {
    staticTime::row<time::daystart>(L"daystart", L"Gives 00:00."),
    staticTime::row<time::lunchtime>(L"lunchtime", L"Gives 12:00."),
    staticTime::row<time::midnight>(L"midnight", L"Gives 00:00."),
    infoOfTime::row<0>(L"time_hour", L"Gives the hour."),
    infoOfTime::row<1>(L"time_minute", L"Gives the minute of the hour."),
    infoOfTime::row<2>(L"time_second", L"Gives the second of the minute."),
    infoOfTime::row<4>(L"time_minuteofday", L"Gives the minutes since 00:00."),
    infoOfTime::row<5>(L"time_secondofday", L"Gives the seconds since 00:00."),
};

} // namespace

constinit const builtinTable timeRows = rows;

} // namespace qx::script
