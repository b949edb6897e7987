// Branches and loops: signals through every nesting, walks over host objects, and clones.
#include "host.h"
#include "hostObject.h"
#include "peakMemory.h"
#include "support/expectations.h"
#include "valueText.h"

#include <map>

using namespace qx::script;

namespace
{

// `*` is the body, `@` the name of the layer. Loops run twice.
const std::map<qx::string, qx::string> layers = {
    {L"block", L"*"},
    {L"if", L"if(\"1\", *)"},
    {L"else", L"if(\"0\", {}, *)"},
    {L"while",
     L"{ createvar(@, \"\"); while(isnotequal<string>(@, \"xx\"), { setvar(@, strcat(@, \"x\")); *; }); }"},
    {L"for_each", L"for_each(@, two, *)"},
    {L"function", L"treatasfunction(*)"},
};

qx::string layered(qx::string layer, const wchar_t* name, const qx::string& body)
{
    return layer.replace(L"@", name).replace(L"*", body);
}

// What stands raised, as break, continue, the end of all loops, and return.
texts standing(scriptcontext& context)
{
    texts names;
    for (const wchar_t* name : {L"#breaksignal#", L"#continuesignal#", L"#breakallsignal#"})
        if (context.scriptSignal(nameOf(name)))
            names.emplace_back(name);
    if (context.hasParameter(scriptcontext::returnparam()))
        names.emplace_back(L"return");
    return names;
}

} // namespace

// The outer layer runs { t(a); INNER; t(b); }, the inner one { t(c); SIGNAL; t(d); }, and t(z) stands behind
// all, where t(c) appends c to the trace. Without z the signal still stands.
TEST(control, signals_go_through_two_levels_as_expected)
{
    const hostModule host([](const moduleCall& call) -> statement* {
        if (call.name == L"t")
            return new hostStatement([mark = call.params.at(0)](codecontext& context, auto&) {
                qx::string trace;
                context.variable(nameOf(L"trace")).getValue(trace);
                context.setVariable(nameOf(L"trace"), qx::genericValue(qx::string(trace + mark)));
            });
        if (call.name == L"stop")
            return new hostStatement([](codecontext& context, auto&) {
                context.setScriptSignal(nameOf(L"#breakallsignal#"), qx::genericValue());
            });
        return nullptr;
    });
    expectOutcomes("engine/signals", [](const qx::string& row) {
        texts names;
        row.splitAt(L" in ", names, false);
        texts outcomes;
        for (const wchar_t* signal : {L"break()", L"continue()", L"return(\"r\")", L"stop()"}) {
            const qx::string inner =
                layered(layers.at(names.at(0)), L"inner", qx::string(L"{ t(c); ") + signal + L"; t(d); }");
            const qx::string outer =
                layered(layers.at(names.at(1)), L"outer", L"{ t(a); " + inner + L"; t(b); }");
            scriptcontext context;
            context.createVariable(nameOf(L"trace"), textValue(L""));
            context.createVariable(nameOf(L"two"), qx::genericValue(qx::valueArray(2, qx::genericValue(1))));
            context.setScriptSignal(nameOf(L"#othersignal#"), qx::genericValue()); // means nothing
            qx::genericValue result = textValue(L"before");
            parsed(L"{ " + outer + L"; t(z); }", continueAllowed | breakAllowed)->exec(context, result);
            qx::string trace;
            context.variable(nameOf(L"trace")).getValue(trace);
            qx::string& outcome = outcomes.emplace_back(signal + (L": " + trace));
            for (const qx::string& name : standing(context))
                outcome += L", " + name + L" stands";
            const bool isReturned = context.hasParameter(scriptcontext::returnparam());
            EXPECT_EQ(valueText(result), isReturned ? "string \"r\"" : "string \"before\"") << row.utf8();
        }
        return outcomes;
    });
    EXPECT_EQ(failureOf([] { parsed(L"break()", continueAllowed); }), texts{L"Error parsing break()"});
    EXPECT_EQ(failureOf([] { parsed(L"continue()", breakAllowed); }), texts{L"Error parsing continue()"});
}

TEST(control, end_of_all_loops_ends_the_signals_of_each)
{
    class noting final : public scriptcontext
    {
    public:
        void clearScriptSignal(const qx::scString& name) override
        {
            cleared.push_back(name.string());
            scriptcontext::clearScriptSignal(name);
        }
        texts cleared;
    };
    int runs = 0;
    const hostModule host(L"act", [&runs](codecontext& context, qx::genericValue&) {
        ++runs;
        context.setScriptSignal(nameOf(L"#continuesignal#"), qx::genericValue());
        context.setScriptSignal(nameOf(L"#breakallsignal#"), qx::genericValue());
    });
    noting context;
    parsed(L"while(\"1\", while(\"1\", act()))")->exec(context);
    EXPECT_EQ(standing(context), texts{L"#breakallsignal#"});
    const texts ofTheLoop{L"#continuesignal#", L"#breaksignal#", L"#continuesignal#"};
    EXPECT_EQ(texts(context.cleared.begin(), context.cleared.begin() + 3), ofTheLoop);
    EXPECT_EQ(runs, 1);
}

namespace
{

// Runs `for_each(e, SOURCE, BODY)`, where act() notes `part` or `null` for e, and gives what happened in one
// line; references and queries are left out.
std::string walked(hostIterator& object, const wchar_t* body, const wchar_t* source = L"walk")
{
    const hostModule host(L"act", [&object](codecontext& context, qx::genericValue&) {
        objectRef element;
        EXPECT_TRUE(context.variable(nameOf(L"e")).getValue(element));
        object.note(element.isValid() ? "part" : "null");
    });
    const texts failure = failureOf([&] {
        scriptcontext context;
        context.createVariable(nameOf(L"walk"), object.value());
        parsed(qx::string::sformat(L"for_each(e, %s, %s)", source, body))->exec(context);
    });
    std::string happened;
    for (const std::string& what : object.take())
        if (what == "first" || what == "next" || what == "part" || what == "null")
            happened.append(what).append(" ");
    EXPECT_EQ(object.references, 1u);
    return happened + failure.back().utf8();
}

} // namespace

TEST(control, for_each_and_createarray_walk_an_iterator)
{
    hostObject<unknown> part;
    hostIterator three({&part, nullptr, &part});
    const char* const whole = "first part next null next part next nothing thrown";
    EXPECT_EQ(walked(three, L"{ act(); }"), whole);
    EXPECT_EQ(walked(three, L"{ act(); continue(); act(); }"), whole);
    EXPECT_EQ(walked(three, L"{ act(); break(); }"), "first part nothing thrown");
    EXPECT_EQ(walked(three, L"{ act(); return(e); }"), "first part nothing thrown");
    EXPECT_EQ(walked(three, L"{}"), "first next next next nothing thrown");
    EXPECT_EQ(walked(three, L"{ act(); getvar(missing); }"), "first part Variable \"missing\" not found");
    three.movesLeft = 1;
    EXPECT_EQ(walked(three, L"{ act(); }"), "first part next iterator broken");
    // An array counts the objects first, then keeps them; what is given before a failure is released too.
    EXPECT_EQ(walked(three, L"{ act(); }", L"createarray(walk)"),
              "first next next next first next next next part null part nothing thrown");
    three.movesLeft = 1;
    EXPECT_EQ(walked(three, L"{}", L"createarray(walk)"), "first next iterator broken");
    three.movesLeft = 4;
    EXPECT_EQ(walked(three, L"{}", L"createarray(walk)"), "first next next next first next iterator broken");
    hostIterator none({});
    EXPECT_EQ(walked(none, L"{ act(); }"), "first nothing thrown");
    EXPECT_EQ(part.references, 1u);
}

#ifdef NDEBUG

// Ten million iterations are for the optimised build alone.
TEST(control, long_loops_need_no_memory)
{
    constexpr int iterations = 10'000'000;
    int runs = 0;
    const hostModule host(L"more", [&runs](codecontext&, qx::genericValue& result) {
        result = qx::genericValue(++runs <= iterations);
    });
    const ownedStatement loop = parsed(L"while(more(), { createvar(x, \"1\"); continue(); })");
    scriptcontext context;
    runs = iterations - 1000; // whatever is made once is made by now
    loop->exec(context);
    runs = 0;
    const peakMemory peak;
    loop->exec(context);
    EXPECT_EQ(runs, iterations + 1);
    EXPECT_LE(peak.growth(), 256u * 1024);
}

#endif
