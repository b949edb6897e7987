// Messages to the user: the message box, and the host's switch for it.
#include "assertRecorder.h"
#include "host.h"
#include "utils/fakeSystem.h"
#include "valueText.h"

#include <gtest/gtest.h>

namespace
{

int window = 0;

// Notes what a message box shows, and answers with `answer`.
class recordingSystem final : public fakeSystem
{
public:
    void* mainHWND() override { return &window; }
    int messageBox(void* owner, const qx::string& text, const qx::string&, qx::uint) override
    {
        EXPECT_EQ(owner, &window);
        EXPECT_EQ(text, L"t");
        ++shown;
        return answer;
    }

    int answer = 1;
    unsigned shown = 0;
};

} // namespace

TEST(messagebox, answers)
{
    recordingSystem system;
    std::string words;
    for (system.answer = -1; system.answer < 12; ++system.answer)
        words += valueText(evaluated(L"messagebox(\"t\")")).substr(7);
    EXPECT_EQ(words, R"("""""ok""cancel""""retry""""yes""no""""""""")");
}

TEST(messagebox, host_switches_messages_off)
{
    const std::pair<qx::genericValue, bool> rows[] = {
        {qx::genericValue(false), false}, {qx::genericValue(true), true},
        {textValue(L"No"), false},        {textValue(L"maybe"), true},
        {qx::genericValue(), true},       {qx::genericValue(qx::valueArray()), true},
    };
    recordingSystem system;
    const assertRecorder recorder;
    for (const auto& [value, isAllowed] : rows) {
        SCOPED_TRACE(valueText(value));
        scriptcontext context;
        context.setGlobalContextVariable(nameOf(L"scriptMessagebox"), value);
        qx::genericValue result(5);
        // Parameters are evaluated only where something is shown.
        parsed(L"{ messagebox(treatasfunction({ createglobalvar(asked); return(\"t\"); })); assert(\"t\"); }")
            ->exec(context);
        parsed(L"messagebox(\"t\")")->exec(context, result);
        EXPECT_EQ(std::exchange(system.shown, 0u), isAllowed ? 2u : 0u);
        EXPECT_EQ(assertRecorder::take().size(), isAllowed ? 1u : 0u);
        EXPECT_EQ(context.hasVariable(nameOf(L"asked")), isAllowed);
        EXPECT_EQ(valueText(result), isAllowed ? "string \"ok\"" : "int 5");
        EXPECT_EQ(failureOf([&] { parsed(L"throwmessage(\"t\")")->exec(context); }), texts{L"string t"});
    }
    // A script cannot reach the switch: it lower-cases its names.
    evaluated(L"{ createglobalvar(scriptMessagebox, \"false\"); messagebox(\"t\"); }");
    EXPECT_EQ(std::exchange(system.shown, 0u), 1u);
}
