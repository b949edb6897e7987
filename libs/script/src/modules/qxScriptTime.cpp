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

constexpr failureLists ofConstant{L"no function-ptr given"};
constexpr failureLists ofReadOut{L"infoOfTime::createFrom: number of parameters < 1\n"
                                 L"infoOfTime::createFrom: error parsing \"%s\"\n"
                                 L"Missing or invalid time-provider\n"
                                 L"invalid infotype %d"};

constexpr builtin constantRow(const wchar_t* name, statement* (*create)(const callText&),
                              const wchar_t* summary)
{
    return {name, create, L"()", nullptr, resultRule::keepsType, summary, ofConstant};
}

constexpr builtin readOutRow(const wchar_t* name, statement* (*create)(const callText&),
                             const wchar_t* summary)
{
    return {name, create, L"(time)", nullptr, resultRule::keepsType, summary, ofReadOut};
}

const builtin rows[] = {
    constantRow(L"daystart", staticTime::create<time::daystart>, L"Gives 00:00."),
    constantRow(L"lunchtime", staticTime::create<time::lunchtime>, L"Gives 12:00."),
    constantRow(L"midnight", staticTime::create<time::midnight>, L"Gives 00:00."),
    readOutRow(L"time_hour", infoOfTime::create<0>, L"Gives the hour."),
    readOutRow(L"time_minute", infoOfTime::create<1>, L"Gives the minute of the hour."),
    readOutRow(L"time_second", infoOfTime::create<2>, L"Gives the second of the minute."),
    readOutRow(L"time_minuteofday", infoOfTime::create<4>, L"Gives the minutes since 00:00."),
    readOutRow(L"time_secondofday", infoOfTime::create<5>, L"Gives the seconds since 00:00."),
};

} // namespace

constinit const builtinModule timeModule{L"time", rows};

} // namespace qx::script
