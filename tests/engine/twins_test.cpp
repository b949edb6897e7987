// Statements run in two ways, see qxScriptSettings.h. Here the same programs run along both, and nothing may
// tell which it was: results with their held types, chains of failures, variables afterwards, the order of
// effects, what objects are asked. The long way in plain contexts is right by definition. Besides the short
// cuts, the other ways are variables whose address the host has, values that moved into a holder, contexts of
// a host's own class, and clones.
//
// A program that differs is shown as a line for the section `given` of twins.txt.
#include "assertRecorder.h"
#include "documents.h"
#include "objectWorld.h"
#include "programHost.h"
#include "programs.h"
#include "scriptSupport.h"
#include "settingsInForce.h"
#include "statements/qxScriptRunning.h"

#include "support/failingMemory.h"

#include <memory>

namespace
{

using qx::genericValue;
using qx::string;

// Of the programs of a grid, one of so many is run: nearly all where that is quick.
#if defined(__OPTIMIZE__) && !QX_SANITIZED
constexpr unsigned perOperand = 5;
constexpr unsigned perResult = 1;
constexpr unsigned programCount = 10000;
#else
constexpr unsigned perOperand = 29;
constexpr unsigned perResult = 29;
constexpr unsigned programCount = 2000;
#endif

// --- The world of a run ---

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

class world
{
public:
    // The seed tells where variables live and what the result holds before.
    world(const way& taken, const string& program, unsigned seed) : mSeed(seed)
    {
        running = &mHost;
        if (taken.hostsContexts)
            makeContexts<hostsOwn<scriptcontext>, hostsOwn<codecontext>>();
        else
            makeContexts<scriptcontext, codecontext>();
        mpRoot->setGlobalContextVariable(nameOf(L"scriptbasepath"),
                                         genericValue(string((treeRoot() / "tests/engine").wstring())));
        for (const programVariable& each : programVariables())
            if (occurs(each, program))
                make(each);
        // Sets of many names are looked into in another way.
        for (unsigned i = 0; i < 80 && seed % 8 == 0; ++i)
            makeAt(i, qx::scString::createFrom(string::sformat(L"filler%u", i)), genericValue(1));
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
    ~world()
    {
        for (const qx::scString& name : mNames)
            mpInner->variable(name).clear(); // references may go in circles
        running = nullptr;
    }

    // All that can be told of a run.
    std::string outcomeOf(const statement& run, std::size_t largestAllocation = SIZE_MAX)
    {
        const quietMachine machine;
        genericValue result(programVariables()[mSeed % programVariables().size()].value);
        std::string text = chainText([&] {
            const memoryLimit limit(largestAllocation);
            run.exec(*mpInner, result);
        });
        text += "\nresult: " + shown(result);
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
                text += "\n" + name.string().utf8() + ": " + shown(mpInner->variable(name));
        for (const wchar_t* signal : {L"#breaksignal#", L"#continuesignal#", L"#breakallsignal#"})
            if (mpInner->scriptSignal(nameOf(signal)))
                text += "\nraised: " + string(signal).utf8();
        return text;
    }

private:
    template <class Root, class Block>
    void makeContexts()
    {
        mpRoot.reset(new Root);
        mpOuter.reset(new Block(mpRoot.get()));
        mpInner.reset(new Block(mpOuter.get()));
    }

    // In the program, or where another variable of it refers to this one.
    static bool occurs(const programVariable& asked, const string& program)
    {
        return program.find(asked.name) != string::npos ||
               std::any_of(
                   programVariables().begin(), programVariables().end(), [&](const programVariable& other) {
                       return &other != &asked && other.preparation.find(asked.name) != string::npos &&
                              occurs(other, program);
                   });
    }

    void make(const programVariable& made)
    {
        const qx::scString name = qx::scString::createFrom(made.name);
        const bool isObject = made.name == L"vobject";
        makeAt(mSeed / 8 + mNames.size(), name,
               isObject ? mObjects.object->value() : genericValue(made.value));
        std::vector<string> steps;
        made.preparation.splitAt(L";", steps, false);
        for (const string& step : steps)
            if (!step.empty())
                parsed(step)->exec(*mpInner);
        mNames.push_back(name);
    }
    // In the block, in the one around it, among the parameters or the globals.
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

    unsigned mSeed;
    hostsSide mHost;
    objectWorld mObjects;
    std::unique_ptr<scriptcontext> mpRoot;
    std::unique_ptr<codecontext> mpOuter;
    std::unique_ptr<codecontext> mpInner;
    std::vector<qx::scString> mNames;
};

// --- Comparison ---

// Null for a text that does not parse; `refusal` takes why.
ownedStatement parsedIf(const string& program, std::string& refusal)
{
    ownedStatement made;
    refusal = chainText([&] { made = parsed(program); });
    return made;
}

// Runs programs along all ways.
class comparison
{
public:
    explicit comparison(unsigned runOneOf = 1) : mModule(hostStatementFor), mRunOneOf(runOneOf) {}
    comparison(const comparison&) = delete;
    comparison& operator=(const comparison&) = delete;
    ~comparison()
    {
        EXPECT_LE(mRefused * 20, mCompared) << "too many that do not parse";
        if (mLargestAllocation == SIZE_MAX)
            EXPECT_LE(mFailing * 6, mCompared * 5) << "too many that fail";
        else
            EXPECT_EQ(mFailing, mCompared);
        testing::Test::RecordProperty("programs", mCompared);
        testing::Test::RecordProperty("failing", mFailing);
    }

    // False when enough has been found. The seed is that of the world.
    bool operator()(const string& program, unsigned seed)
    {
        mModule.asked.clear();
        ++mCompared;
        const std::string expected = outcomeOf(ways[0], program, seed);
        mRefused += expected.starts_with("refused");
        mFailing += !expected.starts_with("nothing thrown");
        for (const way& taken : ways) {
            const std::string outcome = outcomeOf(taken, program, seed);
            EXPECT_EQ(outcome, expected) << taken.name << "\n" << seed << ": " << program.utf8();
            if (outcome != expected)
                return ++mDifferent < 5;
        }
        return true;
    }
    // From now on while a program runs.
    void limitMemory(std::size_t largestAllocation) { mLargestAllocation = largestAllocation; }
    bool inTurn(const string& program)
    {
        const unsigned number = mNumber++;
        return number % mRunOneOf != 0 || (*this)(program, number);
    }

    unsigned number() const { return mNumber; }

private:
    std::string outcomeOf(const way& taken, const string& program, unsigned seed) const
    {
        const shortCutsSet shortCuts(taken.shortCuts);
        const assertRecorder recorder;
        std::string refusal;
        ownedStatement run = parsedIf(program, refusal);
        if (!run)
            return "refused: " + refusal;
        if (taken.cloned)
            run = ownedStatement(run->clone());
        return world(taken, program, seed).outcomeOf(*run, mLargestAllocation);
    }

    hostModule mModule;
    unsigned mRunOneOf;
    std::size_t mLargestAllocation = SIZE_MAX;
    int mCompared = 0;
    int mRefused = 0;
    int mFailing = 0;
    int mDifferent = 0;
    unsigned mNumber = 0;
};

string withOperand(const string& shape, const string& operand)
{
    return filled(shape, [&](wchar_t sign) { return sign == L'~' ? L"varr" : operand; });
}

// The shapes that, with an operand that suits most, make a statement of which `holds` is true.
template <class Condition>
std::vector<string> shapesWhere(const Condition& holds)
{
    std::vector<string> found = listedShapes();
    std::erase_if(found, [&](const string& shape) {
        const assertRecorder recorder;
        const string program = withOperand(shape, L"vone");
        std::string refusal;
        const ownedStatement made = parsedIf(program, refusal);
        return !made || !holds(*made, program);
    });
    return found;
}

std::vector<string> shapesWithShortCut()
{
    return shapesWhere([](const statement& made, const string&) {
        return qx::script::inside::depth(made) != qx::script::inside::noShortCut;
    });
}

// Those that do not fail. For comparisons that are under way.
std::vector<string> suitableShapes()
{
    return shapesWhere([](const statement& made, const string& program) {
        return world(ways[0], program, 0).outcomeOf(made).starts_with("nothing thrown");
    });
}

// How many operands the shape has, and the shape with one of them and the others given.
std::size_t placesIn(const string& shape)
{
    return static_cast<std::size_t>(
        std::count_if(shape.begin(), shape.end(), [](wchar_t c) { return c == L'@' || c == L'~'; }));
}
string withOperandAt(std::size_t place, const string& shape, const string& operand)
{
    std::size_t at = 0;
    return filled(shape, [&](wchar_t sign) {
        return at++ == place ? operand : sign == L'~' ? L"varr" : L"\"1\"";
    });
}

} // namespace

TEST(twins, given_programs)
{
    comparison compare;
    for (const string& row : programTable("given")) {
        const bool hasSeed = row[0] >= L'0' && row[0] <= L'9';
        if (hasSeed)
            compare(string(row.substr(row.find(L' ') + 1)), static_cast<unsigned>(std::stoul(row)));
        for (unsigned seed = 0; seed < 32 && !hasSeed; seed += 5)
            compare(row, seed);
    }
}

// Each operand at each place of each statement, the others being ones that suit most.
TEST(twins, every_operand_of_every_statement)
{
    std::vector<string> operands = programTable("literals");
    for (const programVariable& each : programVariables())
        operands.emplace_back(each.name);
    for (const string& effect : programTable("effects"))
        operands.push_back(effect);

    comparison compare(perOperand);
    const std::vector<string>& positions = programTable("positions");
    for (const string& shape : listedShapes()) {
        for (std::size_t place = 0; place < std::min<std::size_t>(placesIn(shape), 5); ++place) {
            for (const string& operand : operands) {
                const string expression = withOperandAt(place, shape, operand);
                programsByChance chance(compare.number(), positions);
                if (!compare.inTurn(filled(chance.oneOf(positions), [&](wchar_t sign) {
                        return sign == L'~' ? chance.name() : expression;
                    })))
                    return;
            }
        }
    }
}

// What statements with short cuts give, into a variable of each type.
TEST(twins, every_result_in_every_slot)
{
    comparison compare(perResult);
    for (const string& shape : shapesWithShortCut()) {
        for (const wchar_t* operand : {L"\"0\"", L"\"1\"", L"vnegative", L"vuintmax", L"\"2.5\"",
                                       L"vlongtext", L"vnannegative", L"vinf"}) {
            for (const string& slot : programTable("slots")) {
                const string written = string::sformat(L"setvar(%s, %s)", slot, withOperand(shape, operand));
                const bool isKept = compare.number() % 2 != 0;
                if (!compare.inTurn(isKept ? string::sformat(L"{ keep(%s); %s; }", slot, written) : written))
                    return;
            }
        }
    }
}

// Without memory a short cut declines, and the long way tells which statement failed.
TEST(twins, memory_that_runs_out)
{
    comparison compare;
    compare.limitMemory(1 << 18);
    const string big = L"strreplace(vlongtext, \"a\", vlongtext)"; // 90,000 characters
    for (string program : programTable("memory"))
        if (!compare(program.replace(L"BIG", big), 3))
            return;
}

// Whoever adds conversions is asked for every value, wherever it lies.
TEST(twins, conversions_of_a_host)
{
    using qx::typeconvert::typeConverter;
    using qx::typeconvert::typeConverterBase;
    typeConverter<string, int> reading([](void* to, const void* from, int, char*) {
        *static_cast<int*>(to) = 99;
        return static_cast<const string*>(from)->size() != 1; // shorter ones are the library's own
    });
    typeConverter<int, string> writing([](void* to, const void*, int, char*) {
        *static_cast<string*>(to) = L"a number";
        return true;
    });
    typeConverter<double, int> cutting([](void*, const void*, int, char*) { return false; });
    typeConverter<int, double> widening([](void* to, const void* from, int, char*) {
        *static_cast<double*>(to) = *static_cast<const int*>(from) + 0.5;
        return true;
    });
    auto& conversions = qx::typeconvert::typeConversionManager::instance();
    const std::initializer_list<typeConverterBase*> all{&reading, &writing, &cutting, &widening};
    for (typeConverterBase* const added : all)
        conversions.add(added);
    comparison compare(perOperand / 5 + 1);
    for (const string& shape : shapesWithShortCut())
        for (std::size_t place = 0; place < std::min<std::size_t>(placesIn(shape), 3); ++place)
            for (const wchar_t* operand : {L"vint", L"vdecimal", L"vdouble", L"vtext", L"\"12\"", L"\"7\""})
                compare.inTurn(L"setvar(vdecimal, " + withOperandAt(place, shape, operand) + L")");
    for (typeConverterBase* const added : all)
        conversions.remove(added);
}

// Short cuts nest so far and no further.
TEST(twins, statements_nested_beyond_the_short_cuts)
{
    comparison compare(perOperand);
    for (const string& shape : shapesWithShortCut()) {
        for (std::size_t place = 0; place < std::min<std::size_t>(placesIn(shape), 3); ++place) {
            for (const int depth : {31, 32, 33, 40}) {
                for (const wchar_t* innermost : {L"vint", L"\"1\"", L"vtext", L"mark(\"1\")", L"vmissing"}) {
                    string nested = innermost;
                    for (int i = 0; i < depth; ++i)
                        nested = withOperandAt(place, shape, nested);
                    if (!compare.inTurn(nested))
                        return;
                }
            }
        }
    }
}

TEST(twins, programs_by_chance)
{
    comparison compare;
    const std::vector<string> suitable = suitableShapes();
    for (unsigned seed = 0; seed < programCount; ++seed) {
        programsByChance chance(seed, suitable);
        const auto expressions = [&](wchar_t sign) {
            return sign == L'~' ? chance.name() : chance.expression(4);
        };
        const auto steps = [&](wchar_t) { return chance.program(3); };
        if (!compare(seed % 3 == 0 ? filled(chance.oneOf(programTable("positions")), expressions)
                                   : filled(L"{ ^; ^; ^; }", steps),
                     seed))
            return;
    }
}
