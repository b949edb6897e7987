// What scripts alone do not show of maths, dates, times, colours and checksums: the clock, results that are
// refused, and the calculation of times, to which no keyword leads.
#include "assertRecorder.h"
#include "host.h"
#include "utils/fakeSystem.h"
#include "valueText.h"

#include <qxHeldTypes.h>
#include <qxScriptCalculation.h>

#include <gtest/gtest.h>

using qx::genericValue;
using qx::script::calculationMode;
using qx::script::timeCalculation;

TEST(plainData, today_is_the_day_of_the_local_clock)
{
    const stoppedClock clock(1709942400000 - 1); // the last moment of 2024-03-08
    EXPECT_EQ(valueText(evaluated(L"today()")), "date 2024-03-08");
}

TEST(plainData, constants_tell_of_a_result_that_takes_no_such_value)
{
    const struct
    {
        const wchar_t* text;
        const wchar_t* failure;
    } rows[] = {
        {L"brelvixinidate()", L"Error executing script \"brelvixinidate()\" ()"},
        {L"lunchtime()", L"Error executing script \"lunchtime()\" "},
        {L"white()", L"Error executing script \"white()\" (Error executing function call)"},
        {L"rgb_make(\"1\", \"2\", \"3\")",
         L"Error executing script \"rgb_make(\"1\", \"2\", \"3\")\" (Error executing qx::rgbColor)"},
    };
    for (const auto& row : rows) {
        scriptcontext context;
        genericValue result{qx::valueArray()};
        EXPECT_EQ(failureOf([&] { parsed(row.text)->exec(context, result); }), texts{row.failure});
    }
}

TEST(plainData, checksum_of_a_text_ends_at_its_first_zero)
{
    scriptcontext context;
    context.createVariable(nameOf(L"t"), genericValue(qx::string(L"ab\0cd", 5)));
    genericValue result;
    parsed(L"calccrc_result(calccrc_add(calccrc_create(), t))")->exec(context, result);
    EXPECT_EQ(valueText(result), "ulong 3812967124"); // that of "ab"
}

TEST(plainData, times_move_round_the_clock)
{
    const hostModule module([](const moduleCall& call) -> statement* {
        if (call.name != L"later" && call.name != L"earlier")
            return nullptr;
        const std::vector<qx::textSlice> params(call.params.begin(), call.params.end());
        return timeCalculation::createFrom({call.name, call.types, params, call.flags},
                                           call.name == L"later" ? calculationMode::add
                                                                 : calculationMode::subtract);
    });
    const struct
    {
        const wchar_t* text;
        const char* outcome; // the value, what was reported, or the reason of the failure
    } rows[] = {
        {L"later<time, hours>(\"23:30\", \"1\")", "time 00:30:00"},
        {L"later<time, Minutes>(\"23:30\", \"1441\")", "time 23:31:00"},
        {L"earlier<time, seconds>(\"00:00\", \"1\")", "time 23:59:59"},
        {L"earlier<time, mseconds>(\"12:00\", \"1\")", "time 11:59:59.999"},
        {L"later<time, hours>(missing, \"-1\")", "(unable to retrieve quantity)"},
        {L"later<time, hours>(\"24:00\", \"1\")", "(unable to retrieve time)"},
        {L"later<time>(\"12:00\")", "timeCalculation::createFrom: number of parameters < 2"},
        {L"later<time>(\"12:00\", \"1\")", "timeCalculation::createFrom: missing second datatype"},
        {L"later<time, days>(\"12:00\", \"1\")", "timeCalculation::createFrom: error parsing \"days\""},
    };
    const assertRecorder recorder;
    for (const auto& row : rows) {
        std::string outcome;
        const texts chain = failureOf([&] { outcome = valueText(evaluated(row.text)); });
        const texts reports = assertRecorder::take();
        if (outcome.empty())
            outcome = (reports.empty() ? chain.back() : reports.back()).utf8();
        EXPECT_TRUE(outcome.ends_with(row.outcome)) << outcome;
    }
    // A copy needs nothing of the original.
    ownedStatement original = parsed(L"later<time, hours>(\"12:00\", \"1\")");
    const ownedStatement clone(original->clone());
    original = ownedStatement();
    scriptcontext context;
    genericValue result = textValue(L"old");
    clone->exec(context, result);
    EXPECT_EQ(valueText(result), "time 13:00:00");
}
