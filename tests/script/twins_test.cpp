// Statements run in two ways, see qxScriptSettings.h. Here the same programs run along both, and nothing may
// tell which it was: results with their held types, chains of failures, variables afterwards, the order of
// effects, what objects are asked. The long way in plain contexts is right by definition. Besides the short
// cuts, the other ways are variables whose address the host has, values that moved into a holder, contexts of
// a host's own class, and clones.
//
// The programs are made of the statements that the library lists, so that a new one takes part by itself.
// What fails is shown as text, for `compare` of the program in `given_programs`.
#include "assertRecorder.h"
#include "objectWorld.h"
#include "scriptSupport.h"
#include "settingsInForce.h"

#include <qxHeldTypes.h>

#include <bit>
#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <set>

namespace
{

using qx::genericValue;
using qx::string;
using qx::valueArray;

// Optimised builds run all of the grids, others a part.
#if defined(NDEBUG) && !QX_SANITIZED && defined(__OPTIMIZE__)
constexpr std::size_t everyOf = 1;
constexpr int programCount = 20000;
#else
constexpr std::size_t everyOf = 17;
constexpr int programCount = 2000;
#endif

// --- Operands ---

struct variable
{
    const wchar_t* name;
    genericValue value;
    const wchar_t* preparation = nullptr; // null, or a statement that completes the value
};

template <class T>
genericValue least()
{
    return genericValue(
        T(std::numeric_limits<std::conditional_t<std::is_arithmetic_v<T>, T, int>>::lowest()));
}

template <class T>
genericValue greatest()
{
    return genericValue(
        T(std::numeric_limits<
            std::conditional_t<std::is_arithmetic_v<T>, T,
                               std::conditional_t<std::is_same_v<T, qx::long32>, int, unsigned>>>::max()));
}

// A variable is made for a program in which its name occurs.
const std::vector<variable>& variables()
{
    using limits = std::numeric_limits<double>;
    static const std::vector<variable> all{
        {L"vnull", {}},
        {L"vtrue", genericValue(true)},
        {L"vfalse", genericValue(false)},
        {L"vint", genericValue(7)},
        {L"vzero", genericValue(0)},
        {L"vone", genericValue(1)},
        {L"vnegative", genericValue(-3)},
        {L"vintmin", least<int>()},
        {L"vintmax", greatest<int>()},
        {L"vshortmin", least<short>()},
        {L"vshortmax", greatest<short>()},
        {L"vushortmax", greatest<qx::ushort>()},
        {L"vlongmin", least<qx::long32>()},
        {L"vlongmax", greatest<qx::long32>()},
        {L"vuint", genericValue(qx::uint(3))},
        {L"vuintmax", greatest<qx::uint>()},
        {L"vulongmax", greatest<qx::ulong32>()},
        {L"vulong2to31", genericValue(qx::ulong32(1u << 31))},
        {L"vuint64", genericValue(qx::uint64(9))},
        {L"vuint64max", greatest<qx::uint64>()},
        {L"vfloat", genericValue(2.5f)},
        {L"vfloatmax", greatest<float>()},
        {L"vdouble", genericValue(1.5)},
        {L"vwhole", genericValue(3.0)},
        {L"v2to31", genericValue(2147483648.0)},
        {L"vdoublemax", greatest<double>()},
        {L"vnegativezero", genericValue(-0.0)},
        {L"vinf", genericValue(-limits::infinity())},
        {L"vnan", genericValue(limits::quiet_NaN())},
        {L"vnannegative", genericValue(-limits::quiet_NaN())},
        {L"vnanpayload", genericValue(std::bit_cast<double>(0xfff8000000000123))},
        {L"vdecimal", genericValue(string(L"12"))},
        {L"vdecimalmin", genericValue(string(L"-2147483648"))},
        {L"vdecimalpast", genericValue(string(L"2147483648"))},
        {L"vempty", genericValue(string())},
        {L"vtext", genericValue(string(L" Text "))},
        {L"vlongtext", genericValue(string(std::wstring(300, L'a')))},
        {L"vcut", genericValue(string(L"a\0b", 3))},
        {L"vspaced", genericValue(string(L" 1 "))},
        {L"vplus", genericValue(string(L"+1"))},
        {L"vleading", genericValue(string(L"007"))},
        {L"vminuszero", genericValue(string(L"-0"))},
        {L"vfraction", genericValue(string(L"1.5"))},
        {L"vyes", genericValue(string(L"true"))},
        {L"vdate", genericValue(qx::date(2024, 2, 29))},
        {L"vtime", genericValue(qx::time(23, 59, 58))},
        {L"vstamp", genericValue(qx::timestamp(qx::date(2024, 2, 29), qx::time(1, 2, 3)))},
        {L"vloc", genericValue(qx::locString(L"id", L"shown"))},
        {L"varr",
         genericValue(valueArray{genericValue(1), genericValue(string(L"two")), genericValue(string(L"3")),
                                 genericValue(), genericValue(valueArray{genericValue(4.5)})})},
        {L"vnone", genericValue(valueArray())},
        {L"vmaps",
         {},
         L"setvar(vmaps, createmap<string>()); insertintomap<string>(vmaps, \"1\", \"one\"); "
         L"insertintomap<string>(vmaps, \"k\", \"5\")"},
        {L"vmapi",
         {},
         L"setvar(vmapi, createmap<int>()); insertintomap<int>(vmapi, \"1\", vmapi); "
         L"insertintomap<int>(vmapi, \"7\", \"seven\")"},
        {L"vmaph", {}, L"setvar(vmaph, createmap<short>()); insertintomap<short>(vmaph, \"1\", \"2\")"},
        {L"vmapl", {}, L"setvar(vmapl, createmap<long>()); insertintomap<long>(vmapl, \"1\", nullref())"},
        {L"vobject", {}}, // of the world
        {L"vnothing", {}, L"setvar(vnothing, nullref())"},
        {L"vref", {}, L"setvar(vref, getvarptr<int>(vint))"},
        {L"vreftext", {}, L"setvar(vreftext, getvarptr<int>(vtext))"},
        {L"vrefarr", {}, L"setvar(vrefarr, &getvar<int>(varr))"},
        {L"vchain", {}, L"setvar(vchain, getvarptr<int>(vref))"},
        {L"vself", {}, L"setvar(vself, getvarptr<int>(vself))"},
    };
    return all;
}

constexpr const wchar_t* literals[] = {
    L"\"\"",
    L"\"0\"",
    L"\"1\"",
    L"\"-1\"",
    L"\"12\"",
    L"\"2147483647\"",
    L"\"-2147483648\"",
    L"\"2147483648\"",
    L"\"-2147483649\"",
    L"\"4294967295\"",
    L"\"65535\"",
    L"\"-0\"",
    L"\"+1\"",
    L"\"007\"",
    L"\" 1 \"",
    L"\"1.5\"",
    L"\"1e3\"",
    L"\"1e400\"",
    L"\"true\"",
    L"\"No\"",
    L"\"-inf\"",
    L"\"nan\"",
    L"\"2024-02-29\"",
    L"\"12:34:56\"",
    L"\"all\"",
    L"\"Some text\"",
    L"\"= 7\"",
    L"\"0123456789012345678901234567890123456789012345678901234567890123\"",
};

// Operands that have an effect, fail, or never come about.
constexpr const wchar_t* effects[] = {
    L"vmissing",
    L"mark(\"5\")",
    L"mark(vdecimal)",
    L"mark(vtext)",
    L"mark()",
    L"keep(vint)",
    L"letgo()",
    L"become(vint)",
    L"fail(exception)",
    L"fail(text)",
    L"fail(false)",
    L"setvar(vint, \"5\")",
    L"setvar(vdecimal, add<int>(vdecimal, \"1\"))",
    L"setvar(vtext, strcat(vtext, \"!\"))",
    L"setvar(varr, createarray())",
    L"setvar(vref, vtrue)",
    L"setglobalvar(vdouble, \"0.5\")",
    L"createvar(fresh, vtext)",
    L"return(vint)",
    L"return()",
    L"addtoarray(varr, vdecimal)",
    L"insertintomap<string>(vmaps, \"k\", \"6\")",
    L"findinmap<string>(vmaps, \"nowhere\")",
    L"treatasfunction({ setvar(vint, add<int>(vint, \"1\")); return(vint); })",
    L"treatasfunction({ createvar(inner, vtext); return(strlen(inner)); })",
    L"treatasfunction({ })",
    L"callfunction($twins$same, vtext)",
    L"callfunction($twins$same, vobject)",
    L"callfunction($twins$count)",
    L"callfunction($twins$nothing)",
    L"callfunction($twins$typed, vint)",
    L"callfunction($twins$through, getvarptr<int>(vint))",
    L"callfunction($twins$fails, vtext)",
    L"callfunction($twins$sum, vuint)",
};

constexpr const char* functions = R"(
scrdef same(in x) { return(x); }
scrdef nothing() { createvar(x, "1"); setvar(x, "2"); }
scrdef typed(in<int> a, in<string> b = "d") { setvar(a, strcat(a, b)); return(a); }
scrdef count() {
    if(globalvarexists(calls), setglobalvar(calls, add<int>(getglobalvar(calls), "1")), createglobalvar(calls, "1"));
    return(getglobalvar(calls));
}
scrdef through(in r) { setvar(r, "9"); return(r); }
scrdef fails(in x) { createvar(y, x); { createvar(z, y); throwerror(z); }; }
scrdef sum(in<int> n) {
    if(issmaller<int>(n, "1"), return("0"));
    return(add<int>(n, callfunction($twins$sum, subtract<int>(n, "1"))));
}
)";

// --- Shapes of programs ---
// @ stands for an expression, ~ for the name of a variable, ^ for a statement.

// Where an expression stands, whose way to its value differs.
constexpr const wchar_t* positions[] = {
    L"@",
    L"return(@)",
    L"createvar(fresh, @)",
    L"createglobalvar(fresh, @)",
    L"setvar(~, @)",
    L"setvar(~, @)",
    L"setvar(~, @)",
    L"{ keep(vint); setvar(vint, @); }",
    L"{ { setvar(~, @); }; return(~); }",
    L"setparameter(~, @)",
    L"setglobalvar(~, @)",
    L"if(@, mark(\"then\"), mark(\"else\"))",
    L"while(@, { mark(); break(); })",
    L"for_each(each, @, { mark(each); setvar(each, \"1\"); })",
    L"mark(@)",
    L"isnull(@)",
    L"isoftype<short>(@)",
    L"add<int>(@, vint)",
    L"add<int>(vdecimal, @)",
    L"add<int>(mark(\"first\"), @)",
    L"add<int>(@, setvar(vint, \"5\"))",
    L"strcat(vtext, @, vint)",
    L"and(vtrue, @)",
    L"callfunction($twins$same, @)",
    L"callfunction($twins$typed, @, @)",
    L"addtoarray(varr, @)",
    L"arrayelement(varr, @)",
    L"insertintomap<string>(vmaps, @, @)",
    L"findinmap<int>(vmapi, @)",
    L"treatasfunction(return(@))",
    L"obj_set<int>(vobject, @, @)",
};

constexpr const wchar_t* programs[] = {
    L"setvar(~, @)",
    L"setvar(~, @)",
    L"setvar(~, ~)",
    L"setvar(~, strcat(~, ~))",
    L"setvar(~, arrayelement(varr, @))",
    L"setvar(~)",
    L"createvar(~, @)",
    L"createvar(fresh, @)",
    L"setvar(fresh, @)",
    L"mark(fresh)",
    L"createglobalvar(fresh, @)",
    L"setvar(~, getvarptr<int>(~))",
    L"addtoarray(varr, arrayelement(varr, @))",
    L"insertintomap<string>(vmaps, @, findinmap<string>(vmaps, @))",
    L"mark(~)",
    L"mark(@)",
    L"keep(~)",
    L"letgo()",
    L"become(~)",
    L"{ ^; ^ }",
    L"{ createvar(inner, @); ^; setvar(inner, @); mark(inner); }",
    L"if(@, ^)",
    L"if(isequal<int>(@, vone), { ^; ^ }, ^)",
    L"if(issmaller<double>(vdouble, @), ^, ^)",
    L"for_each(each, @, { ^; mark(each) })",
    L"for_each(each, varr, { ^; if(isnull(@), break()); ^ })",
    L"{ createvar(times, \"0\"); while(issmaller<int>(times, \"3\"), { setvar(times, add<int>(times, "
    L"\"1\")); ^ }); }",
    L"{ createvar(rounds, \"0\"); while(not(isequal<int>(rounds, \"4\")), { setvar(rounds, add<int>(rounds, "
    L"\"1\")); "
    L"if(strfind(@, vtext), continue(), mark(rounds)); ^ }); }",
    L"setvar(~, treatasfunction({ ^; return(@); }))",
    L"if(not(isnull(@)), return(@))",
    L"callfunction($twins$through, getvarptr<int>(~))",
};

// Those that do not end, leave the machine, or tell its state.
const std::set<string>& leftOut()
{
    static const std::set<string> names{L"while",
                                        L"continue",
                                        L"break",
                                        L"callfunction",
                                        L"loaddll",
                                        L"runexe",
                                        L"file_delete",
                                        L"file_copy",
                                        L"file_appendtextline",
                                        L"file_loadini",
                                        L"file_loadcfg",
                                        L"directory_getallfiles",
                                        L"directory_getcurrent",
                                        L"directory_setcurrent"};
    return names;
}

bool movesDates(const string& name)
{
    return name == L"add" || name == L"subtract";
}

// A shape for each statement, type and number of parameters, from how the library tells them.
std::vector<string> listedShapes()
{
    std::vector<string> shapes;
    for (const qx::script::statementInfo& built : qx::script::listStatements()) {
        const bool isSecondName =
            !std::iswalpha(static_cast<wint_t>(built.name[0])) || built.name.starts_with(L"ctxt_");
        if (leftOut().contains(built.name) || isSecondName)
            continue;
        std::wstring_view words = built.parameters;
        words.remove_prefix(words.find(L'(') + 1);
        const bool isTyped = built.parameters.find(L'<') != string::npos;
        std::vector<string> types;
        (built.types == L"any" ? string(L"int, deg") : built.types).splitAt(L", ", types, false);

        // Each number of parameters, as text.
        std::vector<string> lists{L""};
        std::size_t required = 0;
        std::vector<string> names;
        string(words.substr(0, words.size() - 1)).splitAt(L", ", names, false);
        for (const string& name : names) {
            if (name.empty())
                continue;
            const bool isObject =
                lists.size() == 1 && (built.module == L"object" || built.name.starts_with(L"objmsg"));
            const bool isName =
                name == L"name" &&
                (built.module == L"variable" || built.module == L"collection" || built.name == L"for_each");
            const wchar_t* const filled = isObject                                      ? L"vobject"
                                          : isName                                      ? L"~"
                                          : built.name == L"if" && name != L"condition" ? L"mark(@)"
                                          : name == L"body"                             ? L"{ mark(@) }"
                                                                                        : L"@";
            lists.push_back(lists.back() + (lists.size() == 1 ? L"" : L", ") + filled);
            if (name[0] != L'[' && name != L"...")
                required = lists.size() - 1;
        }
        for (std::size_t count = required; count < lists.size(); ++count)
            for (const string& type : isTyped ? types : std::vector<string>{L""}) {
                const bool moves = type == L"date" && movesDates(built.name);
                shapes.push_back(built.name + (isTyped ? L"<" + type + (moves ? L", months>" : L">") : L"") +
                                 L"(" + lists[count] + L")");
            }
    }
    return shapes;
}

const std::vector<string>& listed()
{
    static const std::vector<string> shapes = listedShapes();
    return shapes;
}

// Those of them that do not fail with operands that suit most statements. For comparisons that are under way.
const std::vector<string>& suitable();

// Replaces each sign of a shape by what `make` gives for it.
template <class Make>
string filled(std::wstring_view shape, const Make& make)
{
    string text;
    for (const wchar_t c : shape) {
        if (c == L'@' || c == L'~' || c == L'^')
            text += make(c);
        else
            text += c;
    }
    return text;
}

// Programs by chance; the same for the same seed.
class generator
{
public:
    explicit generator(unsigned seed) : mRandom(seed) {}

    std::size_t below(std::size_t count) { return mRandom() % count; }

    string operand()
    {
        static constexpr const wchar_t* plain[] = {L"vint",  L"vone",  L"vdecimal", L"vdouble",
                                                   L"\"1\"", L"\"0\"", L"\"12\"",   L"vuint",
                                                   L"vtext", L"vtrue", L"vwhole"};
        const std::size_t chance = below(20);
        return chance < 14   ? oneOf(plain)
               : chance < 16 ? name()
               : chance < 18 ? oneOf(literals)
                             : oneOf(effects);
    }
    string name()
    {
        static constexpr const wchar_t* plain[] = {L"vint", L"vdecimal", L"vtext",  L"vdouble",
                                                   L"vone", L"vuint",    L"vwhole", L"vnull"};
        return below(3) == 0 ? string(variables()[below(variables().size())].name) : oneOf(plain);
    }
    string expression(int depth)
    {
        if (depth == 0 || below(4) == 0)
            return operand();
        const std::vector<string>& shapes = below(4) == 0 ? listed() : suitable();
        return filled(shapes[below(shapes.size())],
                      [&](wchar_t sign) { return sign == L'~' ? name() : expression(depth - 1); });
    }
    string program(int depth)
    {
        const string shape = depth == 0 ? string(L"mark(@)") : oneOf(programs);
        return filled(shape, [&](wchar_t sign) {
            return sign == L'~'   ? name()
                   : sign == L'^' ? program(depth - 1)
                                  : expression(static_cast<int>(below(4)));
        });
    }

private:
    template <std::size_t N>
    string oneOf(const wchar_t* const (&texts)[N])
    {
        return texts[below(N)];
    }

    std::mt19937 mRandom;
};

// --- The world of a run ---

// Says the same in every run, and has division faults thrown.
class quietMachine final : public stoppedClock
{
public:
    quietMachine() : stoppedClock(1710028799999) {}
    int messageBox(void*, const string& text, const string& caption, qx::uint) override
    {
        qx::assertMsg(L"box %s|%s", caption, text);
        return 1;
    }
    [[noreturn]] void divisionFault() override { throw qx::unexpectedErrorException(L"fault of the host"); }
};

// The bits of a floating value besides its text, which tells no NaN from another.
std::string shown(const genericValue& value)
{
    double number = 0;
    const std::string text = valueText(value);
    if (!text.starts_with("double nan") || !value.getValue(number))
        return text;
    return text + (std::signbit(number) ? " negative" : "");
}

// Contexts with an operation of the host's own: then all are called as they are described.
template <class Context>
class hostsOwn final : public Context
{
public:
    using Context::Context;
    bool hasVariable(const qx::scString& name) const override { return Context::hasVariable(name); }
};

struct way
{
    const char* name;
    bool shortCuts = false;
    bool hostsContexts = false;
    bool addressesKept = false;
    bool promoted = false;
    bool cloned = false;
};

constexpr way ways[] = {
    {.name = "the long way"},
    {.name = "short cuts", .shortCuts = true},
    {.name = "short cuts, clone", .shortCuts = true, .cloned = true},
    {.name = "short cuts, addresses kept", .shortCuts = true, .addressesKept = true},
    {.name = "short cuts, promoted values", .shortCuts = true, .promoted = true},
    {.name = "long way, host's contexts", .hostsContexts = true},
    {.name = "short cuts, host's contexts", .shortCuts = true, .hostsContexts = true},
};

using address = qx::sharedPtr<genericValue>;

// What host statements of the run that is under way work on.
struct hostsSide
{
    std::vector<std::string> noted;
    std::vector<address> kept;
};
hostsSide* running = nullptr;

[[noreturn]] void failAs(const string& kind)
{
    if (kind == L"exception")
        throw qx::unexpectedErrorException(L"of the host");
    if (kind == L"text")
        throw string(L"said");
    throw false;
}

// The statements of the host: what they do is seen, and they run anything in between.
statement* hostStatementFor(const moduleCall& call)
{
    if (call.name == L"mark") {
        std::shared_ptr<qx::script::valueProvider> operand;
        if (!call.params.empty())
            operand.reset(qx::script::valueProvider::createFrom(call.params[0], call.flags));
        return new hostStatement([operand](codecontext& context, genericValue& result) {
            if (operand)
                operand->getValue(context, result);
            running->noted.push_back("mark " + shown(result));
        });
    }
    if (call.name == L"letgo")
        return new hostStatement([](auto&, auto&) { running->kept.clear(); });
    if (call.params.size() != 1)
        return nullptr;
    const qx::scString name = qx::scString::createFrom(call.params[0]);
    if (call.name == L"fail")
        return new hostStatement([name](auto&, auto&) { failAs(name.string()); });
    if (call.name == L"keep")
        return new hostStatement(
            [name](codecontext& context, auto&) { running->kept.push_back(context.variableAddress(name)); });
    if (call.name == L"become") // another type each time, and then a part of itself
        return new hostStatement([name](codecontext& context, auto&) {
            if (const address variable = context.variableAddress(name))
                *variable = genericValue(valueArray{*variable, genericValue(2)});
        });
    return nullptr;
}

class world
{
public:
    world(const way& taken, const string& program, unsigned seed) : mSeed(seed)
    {
        running = &mHost;
        if (taken.hostsContexts) {
            mpRoot.reset(new hostsOwn<scriptcontext>);
            mpOuter.reset(new hostsOwn<codecontext>(mpRoot.get()));
            mpInner.reset(new hostsOwn<codecontext>(mpOuter.get()));
        } else {
            mpRoot.reset(new scriptcontext);
            mpOuter.reset(new codecontext(mpRoot.get()));
            mpInner.reset(new codecontext(mpOuter.get()));
        }
        mpRoot->setGlobalContextVariable(nameOf(L"scriptbasepath"),
                                         genericValue(functionsDirectory().name()));
        for (const variable& each : variables())
            if (occurs(each.name, program))
                make(each);
        // Sets of many names are looked into in another way.
        for (int i = 0; i < 80 && seed % 8 == 0; ++i)
            makeAt(i, qx::scString::createFrom(string::sformat(L"filler%d", i)), genericValue(i));
        const shortCutsSet way(taken.shortCuts);
        for (const qx::scString& name : mNames) {
            if (taken.addressesKept)
                mHost.kept.push_back(mpInner->variableAddress(name));
            if (taken.promoted)
                mpInner->variable(name).holderCopy();
        }
        mObjects.operations();
    }
    world(const world&) = delete;
    world& operator=(const world&) = delete;
    // References may go in circles.
    ~world()
    {
        for (const qx::scString& name : mNames)
            mpInner->variable(name).clear();
        running = nullptr;
    }

    // All that can be told of a run.
    std::string outcomeOf(const statement& run)
    {
        const quietMachine machine;
        genericValue result(variables()[mSeed % variables().size()].value);
        std::string text = chainText([&] { run.exec(*mpInner, result); }) + "\nresult: " + shown(result);
        for (const std::string& one : mHost.noted)
            text += "\n" + one;
        for (const string& report : assertRecorder::take())
            text += "\nreport: " + report.utf8();
        text += "\nasked: " + mObjects.operations();
        std::vector<qx::scString> names = mNames;
        for (const wchar_t* more : {L"fresh", L"inner", L"each", L"calls", L"#return#", L"scriptbasepath"})
            names.push_back(nameOf(more));
        for (const qx::scString& name : names)
            if (mpInner->hasVariable(name))
                text += "\n" + name.string().utf8() + ": " + shown(std::as_const(*mpInner).variable(name));
        for (const wchar_t* signal : {L"#breaksignal#", L"#continuesignal#", L"#breakallsignal#"})
            if (mpInner->scriptSignal(nameOf(signal)))
                text += "\nraised: " + string(signal).utf8();
        return text;
    }

    static bool occurs(const wchar_t* name, const string& program)
    {
        if (program.find(name) != string::npos)
            return true;
        // What references refer to.
        const auto needs = [&](std::initializer_list<const wchar_t*> names) {
            return std::any_of(names.begin(), names.end(),
                               [&](const wchar_t* n) { return program.find(n) != string::npos; });
        };
        const string wanted = name;
        return (wanted == L"vint" && needs({L"vref", L"vchain"})) ||
               (wanted == L"vtext" && needs({L"vreftext"})) || (wanted == L"varr" && needs({L"vrefarr"})) ||
               (wanted == L"vref" && needs({L"vchain"}));
    }

private:
    static const scratchDirectory& functionsDirectory()
    {
        static const scratchDirectory directory;
        static const bool written = (directory.write("twins.qxscr", functions), true);
        static_cast<void>(written);
        return directory;
    }

    void makeAt(std::size_t place, const qx::scString& name, const genericValue& value)
    {
        switch (place % 4) {
        case 0:
            mpInner->createVariable(name, value);
            break;
        case 1:
            mpOuter->createVariable(name, value);
            break;
        case 2:
            mpInner->setParameter(name, value);
            break;
        default:
            mpInner->setGlobalContextVariable(name, value);
        }
    }

    // In the block, in one around it, among the parameters or the globals, as the seed tells.
    void make(const variable& made)
    {
        const qx::scString name = nameOf(made.name);
        const genericValue value =
            string(made.name) == L"vobject" ? mObjects.object->value() : genericValue(made.value);
        makeAt(mSeed / 8 + mNames.size(), name, value);
        if (made.preparation) {
            std::vector<string> steps;
            string(made.preparation).splitAt(L"; ", steps, false);
            for (const string& step : steps)
                parsed(step)->exec(*mpInner);
        }
        mNames.push_back(name);
    }

    unsigned mSeed;
    hostsSide mHost;
    objectWorld mObjects;
    std::unique_ptr<scriptcontext> mpRoot;
    std::unique_ptr<codecontext> mpOuter;
    std::unique_ptr<codecontext> mpInner;
    std::vector<qx::scString> mNames;
};

// --- Comparison ---

class comparison
{
public:
    comparison() : mModule(hostStatementFor) {}
    ~comparison()
    {
        EXPECT_LT(refused, compared / 20 + 1) << "most programs should be ones";
        testing::Test::RecordProperty("programs", compared);
        testing::Test::RecordProperty("failing", failing);
    }

    // The seed tells where variables live and what the result holds before.
    void operator()(const string& program, unsigned seed)
    {
        mModule.asked.clear();
        ++compared;
        std::string expected;
        for (const way& taken : ways) {
            const std::string outcome = outcomeOf(taken, program, seed);
            if (&taken == ways) {
                expected = outcome;
                failing += !outcome.starts_with("nothing thrown");
            } else if (outcome != expected) {
                ++different;
                EXPECT_EQ(outcome, expected)
                    << taken.name << ", seed " << seed << "\n{L\""
                    << string(program).replace(L"\"", L"\\\"").utf8() << "\", " << seed << "},";
                break;
            }
        }
    }
    bool isEnough() const { return different >= 5; }

    int compared = 0;
    int refused = 0;
    int failing = 0;
    int different = 0;

private:
    std::string outcomeOf(const way& taken, const string& program, unsigned seed)
    {
        const assertRecorder recorder;
        ownedStatement run;
        const std::string refusal = chainText([&] { run = parsed(program); });
        if (!run) {
            refused += taken.name == ways[0].name;
            return "refused: " + refusal;
        }
        if (taken.cloned)
            run = ownedStatement(run->clone());
        world made(taken, program, seed);
        const shortCutsSet way(taken.shortCuts);
        return made.outcomeOf(*run);
    }

    hostModule mModule;
};

const std::vector<string>& suitable()
{
    static const std::vector<string> shapes = [] {
        const assertRecorder recorder;
        std::vector<string> found;
        for (const string& shape : listed()) {
            const string text = filled(shape, [](wchar_t sign) { return sign == L'~' ? L"varr" : L"vone"; });
            std::string outcome;
            failureOf([&] { outcome = world(ways[0], text, 0).outcomeOf(*parsed(text)); });
            if (outcome.starts_with("nothing thrown"))
                found.push_back(shape);
        }
        return found;
    }();
    return shapes;
}

bool hasShortCut(const string& shape)
{
    const assertRecorder recorder;
    ownedStatement made;
    failureOf([&] { made = parsed(filled(shape, [](wchar_t) { return L"vone"; })); });
    return made && made->shortCutDepth() != statement::noShortCut;
}

} // namespace

// Programs that went wrong once, or are likely to.
TEST(twins, given_programs)
{
    const struct
    {
        const wchar_t* program;
        unsigned seed;
    } rows[] = {
        {L"setvar(vint, vint)", 0},
        {L"setvar(vtext, strcat(vtext, vtext))", 0},
        {L"setvar(vtext, substr(vtext, \"1\", \"2\"))", 0},
        {L"setvar(varr, arrayelement(varr, \"4\"))", 0},
        {L"addtoarray(varr, arrayelement(varr, \"0\"))", 0},
        {L"addtoarray(varr, varr)", 0},
        {L"addtoarray(varr, setvar(varr, createarray()))", 0},
        {L"insertintomap<string>(vmaps, \"1\", findinmap<string>(vmaps, \"k\"))", 0},
        {L"insertintomap<string>(vmaps, \"1\", vmaps)", 0},
        {L"setvar(vmaps, findinmap<string>(vmaps, \"k\"))", 0},
        {L"setvar(vint, findinmap<string>(vmaps, \"nowhere\"))", 0},
        {L"add<int>(vint, treatasfunction({ setvar(vint, \"1\"); return(vint); }))", 0},
        {L"strcat(vtext, setvar(vtext, \"other\"), vtext)", 0},
        {L"strreplace(vtext, treatasfunction({ setvar(vtext, \"other\"); return(\"e\"); }), vtext)", 0},
        {L"setvar(#return#, treatasfunction(return(\"1\")))", 0},
    };
    comparison compare;
    for (const auto& row : rows)
        for (unsigned seed = row.seed; seed < row.seed + 32; seed += 5)
            compare(row.program, seed);
}

// Each operand at each place of each statement, the others being ones that suit most.
TEST(twins, every_operand_of_every_statement)
{
    std::vector<string> operands;
    for (const variable& each : variables())
        operands.emplace_back(each.name);
    operands.insert(operands.end(), std::begin(literals), std::end(literals));
    operands.insert(operands.end(), std::begin(effects), std::end(effects));

    comparison compare;
    std::size_t number = 0;
    for (const string& shape : listed()) {
        const auto places = static_cast<std::size_t>(std::count(shape.begin(), shape.end(), L'@') +
                                                     std::count(shape.begin(), shape.end(), L'~'));
        for (std::size_t place = 0; place < std::min<std::size_t>(places, 5); ++place) {
            for (const string& operand : operands) {
                if (++number % everyOf != 0)
                    continue;
                std::size_t at = 0;
                const string expression = filled(shape, [&](wchar_t sign) {
                    return at++ == place ? operand : sign == L'~' ? string(L"varr") : string(L"\"1\"");
                });
                const auto seed = static_cast<unsigned>(number);
                generator names(seed);
                compare(filled(positions[number / everyOf % std::size(positions)],
                               [&](wchar_t sign) { return sign == L'~' ? names.name() : expression; }),
                        seed);
                if (compare.isEnough())
                    return;
            }
        }
    }
}

// What statements with short cuts give, into a variable of each type: both where the address is kept and not.
TEST(twins, every_result_in_every_slot)
{
    static constexpr const wchar_t* slots[] = {
        L"vnull",     L"vtrue",   L"vint",   L"vshortmin", L"vushortmax", L"vlongmin", L"vuint",
        L"vulongmax", L"vuint64", L"vfloat", L"vdouble",   L"vdecimal",   L"vtext",    L"vdate",
        L"vtime",     L"vstamp",  L"varr",   L"vloc",      L"vref",       L"vreftext", L"vuint64max"};
    static constexpr const wchar_t* operands[] = {L"\"0\"",   L"\"1\"",     L"vnegative",    L"vuintmax",
                                                  L"\"2.5\"", L"vlongtext", L"vnannegative", L"vinf"};
    comparison compare;
    std::size_t number = 0;
    for (const string& shape : listed()) {
        if (!hasShortCut(shape))
            continue;
        for (const wchar_t* operand : operands) {
            for (const wchar_t* slot : slots) {
                if (++number % everyOf != 0)
                    continue;
                const string expression =
                    filled(shape, [&](wchar_t sign) { return sign == L'~' ? L"varr" : operand; });
                compare(number % 2
                            ? string::sformat(L"setvar(%s, %s)", slot, expression)
                            : string::sformat(L"{ keep(%s); setvar(%s, %s); }", slot, slot, expression),
                        static_cast<unsigned>(number));
                if (compare.isEnough())
                    return;
            }
        }
    }
}

// Short cuts nest so far and no further; each depth around that, at each place.
TEST(twins, statements_nested_beyond_the_short_cuts)
{
    comparison compare;
    std::size_t number = 0;
    for (const string& shape : listed()) {
        // Others may evaluate an operand twice, which takes long.
        if (!hasShortCut(shape))
            continue;
        const auto places = static_cast<std::size_t>(std::count(shape.begin(), shape.end(), L'@'));
        for (std::size_t place = 0; place < std::min<std::size_t>(places, 3); ++place) {
            for (const int depth : {31, 32, 33, 40}) {
                for (const wchar_t* innermost : {L"vint", L"\"1\"", L"vtext", L"mark(\"1\")", L"vmissing"}) {
                    if (++number % everyOf != 0)
                        continue;
                    string nested = innermost;
                    for (int i = 0; i < depth; ++i) {
                        std::size_t at = 0;
                        nested = filled(shape, [&](wchar_t sign) {
                            return sign == L'~' ? string(L"varr") : at++ == place ? nested : string(L"\"1\"");
                        });
                    }
                    compare(nested, static_cast<unsigned>(number));
                    if (compare.isEnough())
                        return;
                }
            }
        }
    }
}

TEST(twins, programs_by_chance)
{
    comparison compare;
    for (unsigned seed = 0; seed < programCount && !compare.isEnough(); ++seed) {
        generator chance(seed);
        const string program =
            seed % 3 == 0
                ? filled(positions[chance.below(std::size(positions))],
                         [&](wchar_t sign) { return sign == L'~' ? chance.name() : chance.expression(4); })
                : L"{ " + chance.program(3) + L"; " + chance.program(3) + L"; " + chance.program(2) + L"; }";
        compare(program, seed);
    }
}
