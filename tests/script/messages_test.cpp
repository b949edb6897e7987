// Messages to the user: the message box, and the host's switch for it.
#include "assertRecorder.h"
#include "host.h"
#include "scriptSupport.h"
#include "utils/fakeSystem.h"
#include "valueText.h"

#include <qxDirectory.h>

#include <gtest/gtest.h>

namespace
{

int window = 0;

// Notes what a message box shows, and answers with `answer`.
class recordingSystem final : public fakeSystem
{
public:
    void* mainHWND() override { return &window; }
    int messageBox(void* owner, const qx::string& text, const qx::string& caption, qx::uint flags) override
    {
        EXPECT_EQ(owner, &window);
        shown.push_back(qx::string::sformat(L"%s|%s|%u", caption, text, flags));
        return answer;
    }

    int answer = 1;
    texts shown;
};

} // namespace

TEST(messagebox, flags_and_texts)
{
    const struct
    {
        const wchar_t* parameters;
        const wchar_t* shown;
    } rows[] = {
        {L"\"t\"", L"Orbelan|t|0"},
        {L"\"t\", \"YesNo\", \"Question\"", L"Orbelan|t|36"},
        {L"\"t\", \"ok\", \"warning\", \"Title\"", L"Title|t|48"},
        {L"\"t\", \"OKCANCEL\", \"exclamation\", \"\"", L"|t|49"},
        {L"\"t\", \"retrycancel\", \"information\"", L"Orbelan|t|69"},
        {L"\"t\", \"yesnocancel\", \"asterisk\"", L"Orbelan|t|67"},
        {L"\"t\", \"cancel\", \"stop\"", L"Orbelan|t|16"},
        {L"\"t\", \" ok\", \"hand\"", L"Orbelan|t|16"},
        {L"\"t\", \"yesno\", \"unknown\"", L"Orbelan|t|4"},
        {L"\"t\", createarray(), createarray(), createarray()", L"Orbelan|t|0"}, // no texts: the defaults
        {L"locstring(\"Msg_Unknown\", \"[A]\", \"\", \"A\", \"a\")", L"Orbelan|a|0"},
    };
    recordingSystem system;
    for (const auto& row : rows) {
        EXPECT_EQ(valueText(evaluated(qx::string(L"messagebox(") + row.parameters + L")")), "string \"ok\"");
        EXPECT_EQ(system.shown.back(), row.shown);
    }
}

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
    const struct
    {
        qx::genericValue value;
        bool isAllowed;
    } rows[] = {
        {qx::genericValue(false), false},
        {qx::genericValue(true), true},
        {qx::genericValue(0), false},
        {textValue(L"No"), false},
        {textValue(L"maybe"), true},
        {qx::genericValue(), true},
        {qx::genericValue(qx::valueArray()), true},
    };
    recordingSystem system;
    const assertRecorder recorder;
    for (const auto& row : rows) {
        SCOPED_TRACE(valueText(row.value));
        scriptcontext context;
        context.setGlobalContextVariable(nameOf(L"scriptMessagebox"), row.value);
        qx::genericValue result(5);
        // Parameters are evaluated only where something is shown.
        parsed(L"{ messagebox(treatasfunction({ createglobalvar(asked); return(\"t\"); })); assert(\"t\"); }")
            ->exec(context);
        parsed(L"messagebox(\"t\")")->exec(context, result);
        EXPECT_EQ(system.shown.size(), row.isAllowed ? 2u : 0u);
        EXPECT_EQ(assertRecorder::take().size(), row.isAllowed ? 1u : 0u);
        EXPECT_EQ(context.hasVariable(nameOf(L"asked")), row.isAllowed);
        EXPECT_EQ(valueText(result), row.isAllowed ? "string \"ok\"" : "int 5");
        system.shown.clear();
        EXPECT_EQ(failureOf([&] { parsed(L"throwmessage(\"t\")")->exec(context); }), texts{L"string t"});
        EXPECT_EQ(failureOf([&] { parsed(L"throwerror(\"t\")")->exec(context); }).back(), L"t");
    }
    // A script cannot reach the switch: it lower-cases its names.
    evaluated(L"{ createglobalvar(scriptMessagebox, \"false\"); messagebox(\"t\"); }");
    EXPECT_EQ(system.shown.size(), 1u);
}

TEST(messages, executablepath_asks_for_the_program)
{
    const programIn system(L"program");
    EXPECT_EQ(valueText(evaluated(L"executablepath()")),
              "string " + quotedText(qx::directory(L"program").fullName()));
}
