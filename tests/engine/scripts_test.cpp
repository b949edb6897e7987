// The cases that scripts can show. Each row of a table in tests/cases is a statement that is run by itself:
// into a result that is null, into a text and into a map, and so is its clone. Where a script lies beside its
// table, the rows are its functions, each called without arguments.
//
//     function_name or statement
//         report: what was reported through assertMsg
//         asks: what the object `o` was asked
//         int 5
//         over a text: where it is another, what becomes of a result that holds "old"
//         over a map: the same for an empty map, into which nothing converts
//
// What statements refuse is in refusals.expected: each is called without its type, and with each parameter
// missing, empty and null.
//
// A failure shows its whole chain of messages instead of a value, outermost first, each a step further in.
#include "assertRecorder.h"
#include "documents.h"
#include "objectWorld.h"
#include "programs.h"

#include "modules/qxScriptCalculation.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>

namespace
{

namespace fs = std::filesystem;
using qx::genericValue;
using qx::string;

// Named from the directory of the cases, as `MODULE/TABLE`, and in order.
std::set<std::string> tables()
{
    std::set<std::string> names;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(scriptsDirectory()))
        if (entry.path().extension() == ".expected" || entry.path().extension() == ".qxscr")
            names.insert(fs::relative(entry.path(), scriptsDirectory()).replace_extension().generic_string());
    return names;
}

fs::path scriptOf(const std::string& table)
{
    return scriptsDirectory() / (table + ".qxscr");
}

string wide(const std::string& text)
{
    return string::fromUtf8(text);
}

string longName()
{
    return L"/" + std::wstring(4095, L'a');
}

// Paths of this machine and the long name stand as names.
string shownLine(string text)
{
    text.replace(wide(scriptsDirectory().string()), L"SCRIPTS");
    text.replace(wide(fs::current_path().string()), L"CURRENT");
    return text.replace(longName(), L"LONG");
}

string shownValue(const genericValue& value)
{
    return shownLine(wide(valueText(value)));
}

// What was reported and asked, then the chain of a failure or what is given in its place.
texts outcomesOf(const texts& chain, const texts& otherwise, const std::string& asked = "")
{
    texts lines;
    for (const string& report : assertRecorder::take())
        lines.push_back(L"report: " + shownLine(report));
    if (!asked.empty())
        lines.push_back(L"asks: " + wide(asked));
    if (chain[0] == L"nothing thrown")
        lines.insert(lines.end(), otherwise.begin(), otherwise.end());
    else
        for (std::size_t depth = 0; depth < chain.size(); ++depth)
            lines.push_back(std::wstring(2 * depth, L' ') + shownLine(chain[depth]));
    return lines;
}

// --- Functions ---

texts outcomeOf(const std::string& script, const string& function)
{
    const assertRecorder recorder;
    genericValue result;
    const texts chain = failureOf([&] {
        scriptcontext context;
        std::vector<genericValue> none;
        qx::script::codeManager::instance()->executeFunction(wide(scriptsDirectory().string()),
                                                             L"script$" + wide(script) + L"$" + function,
                                                             context, none, result);
    });
    return outcomesOf(chain, {shownValue(result)});
}

std::vector<std::string> functionsOf(const std::string& script)
{
    std::vector<std::string> names;
    for (const auto& function :
         qx::script::listFunctions(qx::file(wide(scriptOf(script).string()))).functions)
        names.push_back(function.name.utf8());
    return names;
}

// --- Statements ---

// Says the same on every machine, and reports the processes started.
class fixedMachine final : public quietMachine
{
public:
    bool modulePath(const string&, string& directory) override
    {
        directory = L"program";
        return true;
    }
    bool startProcess(const string& exe, const string& params, int flags, qx::ulong32* id, void** first,
                      void** process, const string& place) override
    {
        EXPECT_TRUE(!id && !first && place == currentDirectory());
        qx::assertMsg(L"start %s|%s|%x", exe, params, flags);
        *process = this;
        return exe == L"known";
    }
    bool getExitCodeProcess(void* process, qx::long32*) override
    {
        qx::assertMsg(L"code of %d", process == this ? 1 : 0);
        return false;
    }
    void closeProcess(void* process) override { qx::assertMsg(L"close %d", process == this ? 1 : 0); }
};

recordingObject* asked = nullptr; // the object of the statement that runs

// What `let` makes of the object.
void change(recordingObject& object, const string& how)
{
    object.succeeds = how != L"failing";
    object.hasIt = how != L"denying";
    object.refused = how == L"withoutfields"       ? qx::intrface::interfaceName<qx::intrface::fieldaccess>
                     : how == L"withoutproperties" ? qx::intrface::interfaceName<qx::intrface::propertyaccess>
                                                   : L"";
    if (how == L"unrestricted")
        object.restriction = recordingObject::condition();
    if (how == L"valueless")
        object.content = genericValue();
    if (how == L"emptyhanded")
        object.handedOut = nullptr;
    object.data = objectRef();
}

// Makes what no keyword of the library leads to: `let`, and the calculation of times of `later` and
// `earlier`.
statement* statementFor(const moduleCall& call)
{
    if (call.name == L"let")
        return new hostStatement([how = call.params.at(0)](auto&, auto&) { change(*asked, how); });
    if (call.name != L"later" && call.name != L"earlier")
        return nullptr;
    using namespace qx::script;
    return timeCalculation::createFrom(callOfTexts(call.name, call.types, call.params, call.flags).text(),
                                       call.name == L"later" ? calculationMode::add
                                                             : calculationMode::subtract);
}

struct outcome
{
    string value; // what was returned, if anything, else the result
    std::string result;
    texts chain;
    std::string asked;

    bool isFailure() const { return chain[0] != L"nothing thrown"; }
    string shown() const { return value + (isFailure() ? L", refused: " + shownLine(chain.back()) : L""); }
};

// Runs in a context of its own, in which the variables of the tables are.
outcome resultIn(const genericValue& before, const statement& run)
{
    const fixedMachine machine;
    const objectWorld world;
    scriptcontext context;
    world.fill(context);
    context.setParameter(nameOf(L"p"), textValue(L"p"));
    context.createVariable(nameOf(L"long"), genericValue(longName()));
    context.createVariable(nameOf(L"zero"), genericValue(string(L"ab\0cd", 5)));
    context.setGlobalContextVariable(nameOf(L"scriptbasepath"),
                                     genericValue(wide(scriptsDirectory().string() + "/")));
    for (const wchar_t* preparation :
         {L"createvar(v, \"1\")", L"createvar(n)", L"createglobalvar(g, \"g\")",
          L"createvar(arr, strsplit(\"a,b\", \",\"))", L"createvar(all, createarray())",
          L"createvar(m, createmap<string>())", L"insertintomap<string>(m, \"size\", sizeofarray(all))",
          L"obj_settransientdata(o, \"k\", v)"})
        parsed(preparation)->exec(context);
    world.operations();
    asked = world.object;
    genericValue result(before);
    const texts chain = failureOf([&] { run.exec(context, result); });
    const auto returned = context.parameterAddress(scriptcontext::returnparam());
    return {shownValue(returned ? *returned : result), valueText(result), chain, world.operations()};
}

const genericValue& emptyMap()
{
    static const genericValue map = evaluated(L"createmap<short>()");
    return map;
}

texts outcomeOf(const string& row)
{
    const assertRecorder recorder;
    ownedStatement original;
    const texts refusal = failureOf([&] { original = parsed(row); });
    if (!original) // a null statement has thrown nothing
        return outcomesOf(refusal, refusal);

    const outcome fresh = resultIn(genericValue(), *original);
    texts lines = outcomesOf(fresh.chain, {fresh.value}, fresh.asked);
    const string overText = resultIn(textValue(L"old"), *original).shown();
    const string overMap = resultIn(emptyMap(), *original).shown();
    if (!fresh.isFailure() && overText != fresh.value)
        lines.push_back(L"over a text: " + overText);
    if (!fresh.isFailure() && overMap != fresh.value)
        lines.push_back(L"over a map: " + overMap);

    const ownedStatement clone(original->clone());
    const statement& first = *original;
    const statement& second = *clone;
    EXPECT_EQ(typeid(second), typeid(first));
    EXPECT_EQ(clone->text(), original->text());
    original = ownedStatement(); // a clone needs nothing of it
    EXPECT_EQ(resultIn(genericValue(), *clone).shown(), fresh.shown());
    EXPECT_EQ(resultIn(textValue(L"old"), *clone).shown(), overText);
    EXPECT_EQ(resultIn(emptyMap(), *clone).shown(), overMap);
    return lines;
}

std::string joined(const std::vector<std::string>& words)
{
    std::string all;
    for (std::size_t i = 0; i < words.size(); ++i)
        all.append(i == 0 ? "" : ", ").append(words[i]);
    return all;
}

// Calls that are refused, for the most part. Statements of control, which might not end, and those on files
// are called in no way that would run.
std::vector<std::string> refusedCalls()
{
    const std::set<string> notRun = {L"control", L"directory", L"file", L"library"};
    std::set<string> shown; // a statement under another name refuses the same
    std::vector<std::string> rows;
    for (const qx::script::statementInfo& built : builtInStatements()) {
        if (!shown.insert(built.summary).second)
            continue;
        const std::string name = built.name.utf8();
        const std::string parameters = built.parameters.utf8();
        const std::size_t open = parameters.find('(');
        const bool isMap = parameters.starts_with("<key");
        const std::vector<std::string> types = wordsOf(built.types.utf8());
        const std::string type = isMap ? "string" : types.empty() || types[0] == "any" ? "int" : types[0];
        const std::string start =
            open == 0 ? name + "(" : string::sformat(L"%s<%s>(", built.name, wide(type)).utf8();

        std::vector<std::string> all = wordsOf(parameters.substr(open + 1, parameters.size() - open - 2));
        std::erase_if(all, [](const std::string& word) { return word.find("...") != word.npos; });
        if (notRun.contains(built.module)) {
            if (!all.empty())
                rows.push_back(start + (all[0][0] == '[' ? "nobody())" : ")"));
            continue;
        }
        for (std::string& word : all)
            word = word == "name" ? isMap ? "m" : "arr" : "\"1\"";
        if (built.module == L"object" || name.starts_with("objmsg"))
            all[0] = "o";

        if (open != 0)
            rows.push_back(name + "(" + joined(all) + ")");
        for (std::size_t i = 0; i < all.size(); ++i) {
            rows.push_back(start + joined({all.begin(), all.begin() + static_cast<std::ptrdiff_t>(i)}) + ")");
            for (const char* refused : {all.size() == 1 ? "nobody()" : "", "n"}) {
                std::vector<std::string> given = all;
                given[i] = refused;
                rows.push_back(start + joined(given) + ")");
            }
        }
    }
    return rows;
}

std::string testName(const testing::TestParamInfo<std::string>& info)
{
    std::string name = info.param;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
    return name;
}

// The rows of all tables, and calls of each operator with each of its types.
std::vector<std::string> allRows()
{
    std::vector<std::string> all;
    for (const std::string& table : tables())
        if (table != "refusals" && !fs::exists(scriptOf(table)))
            for (const std::string& row : rowsOf(table))
                all.push_back(row);
    for (const qx::script::statementInfo& built : builtInStatements())
        if (built.module == L"operator")
            for (const std::string& type : wordsOf(built.types.utf8()))
                all.push_back(built.name.utf8() + (type == "date" ? "<date, days>(\"2024-03-09\", \"1\")"
                                                                  : "<" + type + ">(\"1\", \"1\")"));
    return all;
}

class scripts : public testing::TestWithParam<std::string>
{};

} // namespace

TEST_P(scripts, give_what_is_expected)
{
    const std::string table = "cases/" + GetParam();
    const hostModule module(statementFor);
    const auto ofStatement = [](const string& row) { return outcomeOf(row); };
    if (GetParam() == "refusals")
        expectOutcomes(table, refusedCalls(), ofStatement);
    else if (fs::exists(scriptOf(GetParam())))
        expectOutcomes(table, functionsOf(GetParam()),
                       [](const string& function) { return outcomeOf(GetParam(), function); });
    else
        expectOutcomes(table, ofStatement);
}

INSTANTIATE_TEST_SUITE_P(all, scripts, testing::ValuesIn(tables()), testName);

TEST(scriptRows, clones_of_signals_raise_them)
{
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {{L"break()", L"#breaksignal#"},
                                                              {L"continue()", L"#continuesignal#"}};
    for (const auto& [text, signal] : rows) {
        scriptcontext context;
        const auto original = parsed(text, qx::script::continueAllowed | qx::script::breakAllowed);
        ownedStatement(original->clone())->exec(context);
        EXPECT_TRUE(context.scriptSignal(nameOf(signal))) << string(signal).utf8();
    }
}

// What a statement does to the value that it is written into, as the table of its module tells: seen over a
// map, into which nothing converts.
TEST(scriptRows, every_statement_has_rows_that_show_what_its_result_does)
{
    const std::map<string, std::set<string>> seenOf = {
        {L"replaces", {L"replaces"}},
        {L"replaces, where there is one", {L"replaces", L"none"}},
        {L"keeps the type", {L"keeps"}},
        {L"keeps the type, but a date replaces", {L"keeps", L"replaces"}},
        {L"that of the value", {L"keeps", L"replaces", L"none"}},
        {L"none", {L"none"}},
    };
    std::map<string, std::set<string>> seen;
    seen[L"messagebox"].insert(L"none"); // where the host has switched it off
    const assertRecorder recorder;
    for (const std::string& row : allRows()) {
        failureOf([&] {
            const ownedStatement statement = parsed(wide(row));
            if (!statement)
                return;
            const outcome fresh = resultIn(genericValue(), *statement);
            const outcome over = resultIn(emptyMap(), *statement);
            if (fresh.isFailure())
                return;
            const bool isUntouched = fresh.result == "null" && over.result == valueText(emptyMap());
            EXPECT_TRUE(over.isFailure() || isUntouched || over.result == fresh.result) << row;
            seen[wide(row.substr(0, row.find_first_of("<(", 1)))].insert(over.isFailure() ? L"keeps"
                                                                         : isUntouched    ? L"none"
                                                                                          : L"replaces");
        });
    }
    // Those that end what they stand in, need a file, or cannot be called with a type.
    const std::set<string> unseen = {L"break",        L"continue",   L"file_copy", L"loaddll",
                                     L"throwmessage", L"throwerror", L"<",         L"<="};
    for (const qx::script::statementInfo& built : builtInStatements())
        EXPECT_TRUE(unseen.contains(built.name) || seen[built.name] == seenOf.at(built.result))
            << built.name.utf8() << testing::PrintToString(seen[built.name]);
}
