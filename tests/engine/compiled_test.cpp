// Functions run compiled or as trees (qxScriptSettings.h), and nothing may tell which it was: results with
// their held types, chains of failures, parameters afterwards, the order of effects and of ends. Here the
// same functions run as a tree and compiled, and are left before each of their operations in turn, so that
// the tree goes on from every place. The tree is right by definition.
//
// A function that differs is shown as a line for the section `given functions` of twins.txt.
#include "assertRecorder.h"
#include "documents.h"
#include "objectWorld.h"
#include "peakMemory.h"
#include "programHost.h"
#include "programs.h"
#include "scriptSupport.h"
#include "settingsInForce.h"

#include "code/qxScriptFunction.h"
#include "compiled/qxScriptTrial.h"

#include <qxScriptHost.h>

namespace
{

using qx::genericValue;
using qx::string;
using qx::script::function;
namespace trial = qx::script::trial;

#if defined(__OPTIMIZE__) && !QX_SANITIZED
constexpr unsigned programCount = 6000;
#else
constexpr unsigned programCount = 600;
#endif

const std::vector<string> names{L"vint",  L"vdecimal", L"vtext", L"vdouble", L"vnull", L"vtrue",
                                L"vzero", L"varr",     L"vmaps", L"vended",  L"vother"};

// That of the functions which are called.
string directory()
{
    return (treeRoot() / "tests/engine").wstring();
}

// The root of the run that is under way, for objects of the host that look into it; null where it is not
// theirs.
scriptcontext* rootOfRun = nullptr;

// The same, for one whose end writes anew where functions are looked for; null where none does.
scriptcontext* redirectedRoot = nullptr;
bool endsRedirect = false;

std::string seenParameters()
{
    std::string seen;
    for (const string& name : rootOfRun ? names : std::vector<string>())
        if (const auto held = rootOfRun->parameterAddress(qx::scString::createFrom(name)))
            seen += ' ' + name.utf8() + '=' + shown(*held);
    return seen;
}

// Notes its end, and which parameters are there at that moment.
class witness final : public qx::host::fieldObject<witness>
{
public:
    explicit witness(string name) : mName(std::move(name)) {}
    ~witness() override
    {
        if (running)
            running->noted.push_back("ended: " + mName.utf8() + seenParameters());
        if (!redirectedRoot || mName != L"vother")
            return;
        for (const genericValue& base : {genericValue(5), genericValue(directory())})
            redirectedRoot->setGlobalContextVariable(nameOf(L"scriptbasepath"), base);
    }
    static const qx::host::fieldTable<witness>& fields()
    {
        static const qx::host::fieldTable<witness> table = {{L"name", &witness::mName}};
        return table;
    }

private:
    string mName;
};

// Is asked for the time whenever a function is called, and notes the same if it looks at all: what has been
// looked at is not taken into a frame again. A call may ask more than once.
class lookingMachine final : public quietMachine
{
public:
    explicit lookingMachine(bool looks) : mLooks(looks) {}
    qx::uint64 tick() override
    {
        if (!mLooks)
            return quietMachine::tick();
        const std::string seen = "asked:" + seenParameters();
        if (running && (running->noted.empty() || running->noted.back() != seen))
            running->noted.push_back(seen);
        return quietMachine::tick();
    }

private:
    bool mLooks; // the host, into the root, at each call
};

bool isWitness(const string& name)
{
    return name == L"vended" || name == L"vother";
}

// A witness is made for the parameter alone, so that it may end within the run.
statement* statementFor(const moduleCall& call)
{
    if (call.name != L"witness")
        return hostStatementFor(call);
    return new hostStatement([name = call.params[0]](codecontext&, genericValue& result) {
        result = qx::host::valueOf(qx::refPtr<witness>(new witness(name)));
    });
}

// Functions by chance, the same for the same seed.
class functionsByChance
{
public:
    explicit functionsByChance(unsigned seed) : mRandom(seed) {}

    string body()
    {
        return L"{ " + statement(3) + L"; " + loop() + L"; " + statement(3) + L"; " + statement(2) + L"; }";
    }

private:
    string loop()
    {
        string text;
        do
            text = statement(3);
        while (text.find(L"while") == string::npos);
        return text;
    }
    string statement(int depth)
    {
        const string number = std::to_wstring(mBlocks++);
        string shape = depth == 0 ? string(L"setvar(~, @)") : oneOf(programTable("functions"));
        for (std::size_t at = 0; (at = shape.find(L'#', at)) != string::npos;)
            shape.replace(at, 1, number);
        return filled(shape, [&](wchar_t sign) {
            return sign == L'~' ? name() : sign == L'^' ? statement(depth - 1) : value(2);
        });
    }
    string value(int depth)
    {
        return filled(depth == 0 ? string(L"~") : oneOf(programTable("values")),
                      [&](wchar_t sign) { return sign == L'~' ? name() : value(depth - 1); });
    }
    const string& name() { return below(2) == 0 ? names[below(3)] : oneOf(names); }
    const string& oneOf(const std::vector<string>& all) { return all[below(all.size())]; }
    std::size_t below(std::size_t count) { return mRandom() % count; }

    std::mt19937 mRandom;
    int mBlocks = 0;
};

// What a function is called with: one of each of the names, in this order.
std::vector<genericValue> arguments()
{
    scriptcontext context;
    std::vector<genericValue> made;
    for (const string& name : names) {
        const qx::scString parameter = qx::scString::createFrom(name);
        for (const programVariable& each : programVariables()) {
            if (each.name != name)
                continue;
            context.setParameter(parameter, genericValue(each.value));
            std::vector<string> steps;
            each.preparation.splitAt(L";", steps, false);
            for (const string& step : steps)
                if (!step.empty())
                    parsed(step)->exec(context);
        }
        made.push_back(isWitness(name) ? genericValue() : context.parameter(parameter));
    }
    return made;
}

// A function in one of the ways in which it may run.
class trialFunction
{
public:
    trialFunction(const string& body, function::callee kind, bool isCompiled)
        : mIsCompiled(isCompiled), mLooks(body.size() % 2 == 0), mKind(kind)
    {
        std::vector<string> declarations;
        declarations.reserve(names.size());
        for (const string& name : names)
            declarations.emplace_back(L"in<int> " + name +
                                      (isWitness(name)    ? L"=witness(" + name + L")"
                                       : name == L"vnull" ? L"=treatasfunction()"
                                                          : L""));
        mFunction =
            function::parse(body, declarations, qx::file(directory() + L"/trial.qxscr"), qx::timestamp());
    }

    // All that can be told of a run that is left before the operation of this number; 0 for never.
    std::string outcome(unsigned leaveAfter)
    {
        const compiledSet compiles(mIsCompiled);
        trial::compilesAll = true;
        trial::leaveAfter = leaveAfter;
        const lookingMachine machine(mLooks);
        hostsSide host;
        running = &host;
        std::vector<genericValue> given = arguments();
        scriptcontext root;
        root.setGlobalContextVariable(nameOf(L"scriptbasepath"), genericValue(directory()));
        rootOfRun = mKind == function::callee::ofHost ? &root : nullptr;
        redirectedRoot = endsRedirect ? &root : nullptr;
        genericValue result(string(L"before"));
        std::string text = chainText([&] { mFunction->call(L"trial", given, root, mKind, result); });
        given.clear();
        text += "\nresult: " + shown(result);
        for (const string& name : names)
            text += '\n' + name.utf8() + ": " + shown(root.parameter(qx::scString::createFrom(name)));
        if (root.hasParameter(scriptcontext::returnparam()))
            text += "\nreturned: " + shown(root.parameter(scriptcontext::returnparam()));
        for (const wchar_t* signal : {L"#breaksignal#", L"#continuesignal#", L"#breakallsignal#"})
            if (root.scriptSignal(nameOf(signal)))
                text += "\nraised: " + string(signal).utf8();
        for (const std::string& one : host.noted)
            text += '\n' + one;
        for (const string& report : assertRecorder::take())
            text += "\nreport: " + report.utf8();
        rootOfRun = redirectedRoot = nullptr;
        for (const string& name : names)
            root.parameter(qx::scString::createFrom(name)).clear(); // references may go in circles
        result.clear();
        host.kept.clear();
        running = nullptr;
        trial::leaveAfter = 0;
        trial::compilesAll = false;
        return text;
    }

private:
    bool mIsCompiled;
    bool mLooks; // the host, into the root, at each call
    function::callee mKind;
    qx::sharedPtr<function> mFunction;
};

// Compares all ways of one function. Counts the operations before which it was left.
bool agree(const string& body, function::callee kind, unsigned& left)
{
    const hostModule module(statementFor);
    const assertRecorder recorder;
    const std::string expected = trialFunction(body, kind, false).outcome(0);
    trialFunction compiled(body, kind, true);
    const std::string whole = compiled.outcome(0);
    EXPECT_EQ(whole, expected) << "compiled\n" << body.utf8();
    if (whole != expected)
        return false;
    for (unsigned after = 1; after < 200; ++after) {
        const unsigned before = trial::timesLeft;
        const std::string outcome = compiled.outcome(after);
        EXPECT_EQ(outcome, expected) << "left before operation " << after << '\n' << body.utf8();
        if (outcome != expected)
            return false;
        if (trial::timesLeft == before)
            break; // it has fewer operations
        ++left;
    }
    return true;
}

} // namespace

TEST(compiled, given_functions)
{
    unsigned left = 0;
    endsRedirect = true;
    for (const string& body : programTable("given functions"))
        for (const function::callee kind : {function::callee::ofHost, function::callee::ofCall})
            EXPECT_TRUE(agree(body, kind, left));
    endsRedirect = false;
    EXPECT_GT(left, 20u);
}

TEST(compiled, nesting_without_end)
{
    unsigned left = 0;
    for (const std::size_t depth : {100u, 300u, 600u}) {
        string body = L"{ while(isnull(vnull), { setvar(vnull, vint); ";
        for (std::size_t i = 0; i < depth; ++i)
            body += L"if(vtrue, {";
        body += L"setvar(vint, \"5\")";
        for (std::size_t i = 0; i < depth; ++i)
            body += L"})";
        body += L" }); }";
        EXPECT_TRUE(agree(body, function::callee::ofHost, left)) << depth;
    }
}

// Calls that go deep take more room for their cells, all of them the same.
TEST(compiled, calls_need_no_memory_each)
{
    const ownedStatement calls = parsed(L"callfunction($twins$deep, \"100\")");
    scriptcontext root;
    root.setGlobalContextVariable(nameOf(L"scriptbasepath"), genericValue(directory()));
    const peakMemory peak;
    calls->exec(root);
    EXPECT_LE(peak.growth(), 1024u * 1024);
}

TEST(compiled, functions_by_chance)
{
    unsigned left = 0;
    int different = 0;
    for (unsigned seed = 0; seed < programCount && different < 3; ++seed)
        different += !agree(functionsByChance(seed).body(),
                            seed % 2 == 0 ? function::callee::ofHost : function::callee::ofCall, left);
    RecordProperty("left", static_cast<int>(left));
    EXPECT_GT(left, programCount * 5);
}
