// Branches and loops: signals through every nesting, walks over host objects, and clones.
#include "host.h"
#include "hostObject.h"
#include "peakMemory.h"
#include "valueText.h"

#include <gtest/gtest.h>

#include <map>

using namespace qx::script;

namespace
{

// Statements for scripts under test: t(c) appends c to the trace, t(a) also starts the count of the loop
// `inner` anew, more(loop) is true twice in a row, two() is an array of two, stop() raises the signal that
// ends all loops.
class tracer
{
public:
    tracer() : mHost([this](const moduleCall& call) { return made(call); }) {}

    std::string trace;

private:
    statement* made(const moduleCall& call)
    {
        const auto param = [&call] { return call.params.at(0); };
        if (call.name == L"t")
            return new hostStatement([this, mark = param().utf8()](codecontext&, qx::genericValue&) {
                trace += mark;
                if (mark == "a")
                    mRuns[L"inner"] = 0;
            });
        if (call.name == L"more")
            return new hostStatement([this, loop = param()](codecontext&, qx::genericValue& result) {
                result = qx::genericValue(++mRuns[loop] <= 2);
            });
        if (call.name == L"two")
            return new hostStatement([](codecontext&, qx::genericValue& result) {
                result = qx::genericValue(qx::valueArray{qx::genericValue(1), qx::genericValue(2)});
            });
        if (call.name == L"stop")
            return new hostStatement([](codecontext& context, qx::genericValue&) {
                context.setScriptSignal(nameOf(L"#breakallsignal#"), qx::genericValue());
            });
        return nullptr;
    }

    hostModule mHost;
    std::map<qx::string, int> mRuns;
};

enum layerKind
{
    passing, // leaves signals alone
    looping,
    ending // ends all signals
};

// `*` is the body, `@` the name of the layer.
const struct
{
    layerKind kind;
    const wchar_t* text;
} layers[] = {
    {passing, L"*"},
    {passing, L"if(\"1\", *)"},
    {passing, L"if(\"0\", {}, *)"},
    {looping, L"while(more(@), *)"},
    {looping, L"for_each(e@, two(), *)"},
    {ending, L"treatasfunction(*)"},
};

qx::string layered(qx::string layer, const wchar_t* name, const qx::string& body)
{
    return layer.replace(L"@", name).replace(L"*", body);
}

const wchar_t* const signalNames[] = {L"#breaksignal#", L"#continuesignal#", L"#breakallsignal#"};

// What stands raised: the names, and `return`.
std::vector<qx::string> standing(scriptcontext& context)
{
    std::vector<qx::string> names;
    for (const wchar_t* name : signalNames) {
        if (context.scriptSignal(nameOf(name)))
            names.emplace_back(name);
    }
    if (context.hasParameter(scriptcontext::returnparam()))
        names.emplace_back(L"return");
    return names;
}

} // namespace

TEST(control, signals_through_two_levels)
{
    // The outer layer runs { t(a); INNER; t(b); }, the inner one { t(c); SIGNAL; t(d); }, and t(z) stands
    // behind all. Without z the signal still stands.
    const struct
    {
        layerKind outer;
        layerKind inner;
        const char* traces[4]; // of break, continue, return, and the end of all loops
    } rows[] = {
        {passing, passing, {"ac", "ac", "ac", "ac"}},
        {passing, looping, {"acbz", "accbz", "ac", "ac"}},
        {passing, ending, {"acbz", "acbz", "acbz", "acbz"}},
        {looping, passing, {"acz", "acacz", "ac", "ac"}},
        {looping, looping, {"acbacbz", "accbaccbz", "ac", "ac"}},
        {looping, ending, {"acbacbz", "acbacbz", "acbacbz", "acbacbz"}},
        {ending, passing, {"acz", "acz", "acz", "acz"}},
        {ending, looping, {"acbz", "accbz", "acz", "acz"}},
        {ending, ending, {"acbz", "acbz", "acbz", "acbz"}},
    };
    const struct
    {
        const wchar_t* text;
        const wchar_t* name;
    } signals[] = {{L"break()", L"#breaksignal#"},
                   {L"continue()", L"#continuesignal#"},
                   {L"return(\"r\")", L"return"},
                   {L"stop()", L"#breakallsignal#"}};
    for (const auto& row : rows) {
        for (const auto& outer : layers) {
            for (const auto& inner : layers) {
                if (outer.kind != row.outer || inner.kind != row.inner)
                    continue;
                for (std::size_t i = 0; i < std::size(signals); ++i) {
                    const qx::string innerBody = qx::string(L"{ t(c); ") + signals[i].text + L"; t(d); }";
                    const qx::string outerBody =
                        L"{ t(a); " + layered(inner.text, L"inner", innerBody) + L"; t(b); }";
                    const qx::string text = L"{ " + layered(outer.text, L"outer", outerBody) + L"; t(z); }";
                    SCOPED_TRACE(text.utf8());
                    tracer host;
                    const ownedStatement script = parsed(text, continueAllowed | breakAllowed);
                    scriptcontext context;
                    qx::genericValue result;
                    script->exec(context, result);
                    const bool stands = host.trace.back() != 'z';
                    EXPECT_EQ(host.trace, row.traces[i]);
                    EXPECT_EQ(standing(context), stands ? texts{signals[i].name} : texts());
                    EXPECT_EQ(valueText(result),
                              stands && signals[i].name == qx::string(L"return") ? "string \"r\"" : "null");
                }
            }
        }
    }
}

TEST(control, end_of_all_loops_takes_a_continue_along)
{
    int runs = 0;
    const hostModule host(
        hostModule::statementNamed(L"act", [&runs](codecontext& context, qx::genericValue&) {
            ++runs;
            context.setScriptSignal(nameOf(L"#continuesignal#"), qx::genericValue());
            context.setScriptSignal(nameOf(L"#breakallsignal#"), qx::genericValue());
        }));
    scriptcontext context;
    parsed(L"while(\"1\", while(\"1\", act()))")->exec(context);
    EXPECT_EQ(standing(context), texts{L"#breakallsignal#"});
    EXPECT_EQ(runs, 1);
}

TEST(control, loop_takes_over_what_was_returned)
{
    scriptcontext context;
    qx::genericValue result(5);
    parsed(L"while(\"0\", return(\"r\"))")->exec(context, result);
    EXPECT_EQ(valueText(result), "int 5");
    const ownedStatement returning = parsed(L"while(\"1\", return(a))");
    context.createVariable(nameOf(L"a"), textValue(L"r"));
    returning->exec(context, result);
    EXPECT_EQ(valueText(result), "string \"r\"");
    context.variable(nameOf(L"a")).clear();
    returning->exec(context, result);
    EXPECT_TRUE(result.isNull());
}

TEST(control, each_signal_needs_its_own_flag)
{
    EXPECT_EQ(failureOf([] { parsed(L"break()", continueAllowed); }), texts{L"Error parsing break()"});
    EXPECT_EQ(failureOf([] { parsed(L"continue()", breakAllowed); }), texts{L"Error parsing continue()"});
}

TEST(control, signal_that_the_context_refuses_fails)
{
    class deafContext final : public scriptcontext
    {
    public:
        bool setScriptSignal(const qx::scString&, const qx::genericValue&) override { return false; }
    };
    for (const wchar_t* text : {L"break()", L"continue()"}) {
        deafContext context;
        EXPECT_EQ(failureOf([&] { parsed(text, continueAllowed | breakAllowed)->exec(context); }),
                  texts{L"Error executing script \"" + qx::string(text) + L"\" ()"});
    }
}

namespace
{

// Runs `for_each(e, walk, BODY)`, where act() notes `part` or `null` for e, and gives what happened;
// references and queries are left out.
texts walked(hostIterator& object, const wchar_t* body)
{
    const hostModule host(
        hostModule::statementNamed(L"act", [&object](codecontext& context, qx::genericValue&) {
            objectRef element;
            EXPECT_TRUE(context.variable(nameOf(L"e")).getValue(element));
            object.note(element.isValid() ? "part" : "null");
        }));
    texts happened = failureOf([&] {
        scriptcontext context;
        context.createVariable(nameOf(L"walk"), object.value());
        parsed(qx::string(L"for_each(e, walk, ") + body + L")")->exec(context);
    });
    for (const std::string& what : object.take()) {
        if (what == "first" || what == "next" || what == "part" || what == "null")
            happened.push_back(qx::string::fromUtf8(what));
    }
    EXPECT_EQ(object.references, 1u);
    return happened;
}

} // namespace

TEST(control, for_each_walks_an_iterator)
{
    const qx::string fine = L"nothing thrown";
    hostObject<unknown> part;
    hostIterator three({&part, nullptr, &part});
    EXPECT_EQ(walked(three, L"{ act(); }"),
              (texts{fine, L"first", L"part", L"next", L"null", L"next", L"part", L"next"}));
    EXPECT_EQ(walked(three, L"{ act(); break(); }"), (texts{fine, L"first", L"part"}));
    EXPECT_EQ(walked(three, L"{ act(); return(e); }"), (texts{fine, L"first", L"part"}));
    EXPECT_EQ(walked(three, L"{}"), (texts{fine, L"first", L"next", L"next", L"next"}));
    EXPECT_EQ(walked(three, L"{ act(); continue(); act(); }"),
              (texts{fine, L"first", L"part", L"next", L"null", L"next", L"part", L"next"}));
    EXPECT_EQ(walked(three, L"{ act(); getvar(missing); }").size(), 5u + 2u);
    three.movesLeft = 1;
    EXPECT_EQ(walked(three, L"{ act(); }"),
              (texts{L"Error executing script \"for_each(e, walk, { act(); })\" ", L"iterator broken",
                     L"first", L"part", L"next"}));
    hostIterator none({});
    EXPECT_EQ(walked(none, L"{ act(); }"), (texts{fine, L"first"}));
    EXPECT_EQ(part.references, 1u);
}

TEST(control, object_that_is_no_iterator_has_no_elements)
{
    hostObject<unknown> object;
    scriptcontext context;
    context.createVariable(nameOf(L"o"), object.value());
    parsed(L"for_each(e, o, { getvar(missing); })")->exec(context);
    EXPECT_EQ(valueText(evaluated(L"createarray(nullref())")), "array []");
    qx::genericValue array(5);
    parsed(L"createarray(o)")->exec(context, array);
    EXPECT_EQ(valueText(array), "array []");
    EXPECT_EQ(object.references, 2u); // the variable's own
}

#ifdef NDEBUG

// Ten million iterations are for the optimised build alone.
TEST(control, long_loops_need_no_memory)
{
    constexpr int iterations = 10'000'000;
    int runs = 0;
    const hostModule host(
        hostModule::statementNamed(L"more", [&runs](codecontext&, qx::genericValue& result) {
            result = qx::genericValue(++runs <= iterations);
        }));
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
