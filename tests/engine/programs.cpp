// Programs for tests that run them in several ways, made of tables and of what the library lists.
#include "programs.h"

#include "documents.h"

#include <qxHeldTypes.h>

#include <algorithm>
#include <bit>
#include <limits>
#include <map>

using qx::genericValue;
using qx::string;

const std::vector<string>& programTable(const std::string& section)
{
    static const auto sections = [] {
        std::map<std::string, std::vector<string>> all;
        std::vector<string>* current = nullptr;
        for (const std::string& line : linesOf(contentOf(treeRoot() / "tests/engine/twins.txt"))) {
            if (line.starts_with('['))
                current = &all[line.substr(1, line.find(']') - 1)];
            else if (current && !line.empty())
                current->push_back(string::fromUtf8(line));
        }
        return all;
    }();
    return sections.at(section);
}

// --- Variables ---

namespace
{

programVariable variableOf(const string& row)
{
    static const std::map<string, genericValue> types = {
        {L"bool", genericValue(false)},          {L"short", genericValue(short())},
        {L"ushort", genericValue(qx::ushort())}, {L"int", genericValue(0)},
        {L"uint", genericValue(qx::uint())},     {L"long", genericValue(qx::long32())},
        {L"ulong", genericValue(qx::ulong32())}, {L"uint64", genericValue(qx::uint64())},
        {L"float", genericValue(0.f)},           {L"double", genericValue(0.0)},
        {L"string", genericValue(string())},     {L"date", genericValue(qx::date())},
        {L"time", genericValue(qx::time())},     {L"timestamp", genericValue(qx::timestamp())}};
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    static const std::map<string, genericValue> madeHere = {
        {L"vnone", genericValue(qx::valueArray())},
        {L"vloc", genericValue(qx::locString(L"id", L"shown"))},
        {L"vcut", genericValue(string(L"a\0b", 3))},
        {L"vnannegative", genericValue(-nan)},
        {L"vnanpayload", genericValue(std::bit_cast<double>(0xfff8000000000123))}};
    const std::size_t name = std::min(row.find(L' '), row.size());
    const string rest = row.substr(std::min(name + 1, row.size()));
    const std::size_t word = std::min(rest.find(L' '), rest.size());
    const auto type = types.find(string(rest.substr(0, word)));
    programVariable made{row.substr(0, name), {}, {}};
    if (const auto here = madeHere.find(made.name); here != madeHere.end()) {
        made.value = here->second;
    } else if (type == types.end()) {
        made.preparation = rest;
    } else {
        const string text = exchanged(rest.substr(word + 1), false);
        made.value = type->second;
        made.value.setValue(text);
        if (type->first == L"string")
            made.value = genericValue(text); // which may keep it as a number
    }
    return made;
}

} // namespace

const std::vector<programVariable>& programVariables()
{
    static const std::vector<programVariable> all = [] {
        std::vector<programVariable> made;
        for (const string& row : programTable("variables"))
            made.push_back(variableOf(row));
        return made;
    }();
    return all;
}

// --- Shapes ---

namespace
{

// The second names of statements: symbols, and those of contexts.
bool isSecondName(const string& name)
{
    return !(name[0] >= L'a' && name[0] <= L'z') || name.starts_with(L"ctxt_");
}

// What stands for a parameter of this name at this place.
const wchar_t* shapeOf(const qx::script::statementInfo& built, const string& parameter, std::size_t place)
{
    if (place == 0 && (built.module == L"object" || built.name.starts_with(L"objmsg")))
        return L"vobject";
    if (place == 0 && parameter == L"name")
        return L"~";
    if (parameter == L"body" || (built.name == L"if" && place > 0))
        return L"{ mark(@) }";
    return L"@";
}

// The parameters as text, for each number of them that the statement takes.
std::vector<string> parameterLists(const qx::script::statementInfo& built)
{
    const std::size_t open = built.parameters.find(L'(');
    std::vector<string> names;
    string(built.parameters.substr(open + 1, built.parameters.size() - open - 2))
        .splitAt(L", ", names, false);
    std::vector<string> lists{L""};
    std::size_t required = 0;
    for (const string& name : names) {
        if (name.empty())
            continue;
        const std::size_t place = lists.size() - 1;
        lists.emplace_back(lists.back() + (place == 0 ? L"" : L", ") + shapeOf(built, name, place));
        if (name[0] != L'[' && name != L"...")
            required = place + 1;
    }
    return {lists.begin() + static_cast<std::ptrdiff_t>(required), lists.end()};
}

// The types that the statement takes, in brackets.
std::vector<string> typeLists(const qx::script::statementInfo& built)
{
    if (built.types.empty())
        return {L""};
    std::vector<string> types;
    (built.types == L"any" ? string(L"int, deg") : built.types).splitAt(L", ", types, false);
    const bool movesDates = built.name == L"add" || built.name == L"subtract";
    for (string& type : types)
        type = L"<" + type + (movesDates && type == L"date" ? L", months>" : L">");
    return types;
}

} // namespace

const std::vector<string>& listedShapes()
{
    static const std::vector<string> shapes = [] {
        std::vector<string> all;
        const std::vector<string>& leftOut = programTable("left out");
        for (const qx::script::statementInfo& built : builtInStatements()) {
            if (std::count(leftOut.begin(), leftOut.end(), built.name) || isSecondName(built.name))
                continue;
            for (const string& parameters : parameterLists(built))
                for (const string& types : typeLists(built))
                    all.emplace_back(built.name + types + L"(" + parameters + L")");
        }
        return all;
    }();
    return shapes;
}

// --- Chance ---

string programsByChance::name()
{
    static const std::vector<string> plain{L"vint", L"vdecimal", L"vtext",  L"vdouble",
                                           L"vone", L"vuint",    L"vwhole", L"vnull"};
    return below(3) == 0 ? string(programVariables()[below(programVariables().size())].name) : oneOf(plain);
}

string programsByChance::operand()
{
    static const std::vector<string> plain{L"vint",   L"vone",  L"vdecimal", L"vdouble", L"\"1\"", L"\"0\"",
                                           L"\"12\"", L"vuint", L"vtext",    L"vtrue",   L"vwhole"};
    const std::size_t chance = below(20);
    return chance < 14   ? oneOf(plain)
           : chance < 16 ? name()
                         : oneOf(programTable(chance < 18 ? "literals" : "effects"));
}

string programsByChance::expression(int depth)
{
    if (depth == 0 || below(4) == 0)
        return operand();
    return filled(oneOf(below(4) == 0 ? listedShapes() : mSuitable),
                  [&](wchar_t sign) { return sign == L'~' ? name() : expression(depth - 1); });
}

string programsByChance::program(int depth)
{
    return filled(depth == 0 ? string(L"mark(@)") : oneOf(programTable("programs")), [&](wchar_t sign) {
        return sign == L'~'   ? name()
               : sign == L'^' ? program(depth - 1)
                              : expression(static_cast<int>(below(4)));
    });
}
