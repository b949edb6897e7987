#include "programs.h"

#include "documents.h"

#include <qxHeldTypes.h>

#include <bit>
#include <limits>
#include <map>
#include <set>

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

programVariable text(const wchar_t* name, const std::wstring& content)
{
    return {name, genericValue(string(content))};
}

} // namespace

const std::vector<programVariable>& programVariables()
{
    using limits = std::numeric_limits<double>;
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int most = std::numeric_limits<int>::max();
    constexpr unsigned mostUnsigned = std::numeric_limits<unsigned>::max();
    static const std::vector<programVariable> all{
        {L"vnull", {}},
        {L"vtrue", genericValue(true)},
        {L"vint", genericValue(7)},
        {L"vzero", genericValue(0)},
        {L"vone", genericValue(1)},
        {L"vnegative", genericValue(-3)},
        {L"vintmin", genericValue(least)},
        {L"vintmax", genericValue(most)},
        {L"vshortmin", genericValue(short(-32768))},
        {L"vushortmax", genericValue(qx::ushort(65535))},
        {L"vlongmin", genericValue(qx::long32(least))},
        {L"vlongmax", genericValue(qx::long32(most))},
        {L"vuint", genericValue(qx::uint(3))},
        {L"vuintmax", genericValue(qx::uint(mostUnsigned))},
        {L"vulongmax", genericValue(qx::ulong32(mostUnsigned))},
        {L"vulong2to31", genericValue(qx::ulong32(1u << 31))},
        {L"vuint64", genericValue(qx::uint64(9))},
        {L"vuint64max", genericValue(std::numeric_limits<qx::uint64>::max())},
        {L"vfloat", genericValue(2.5f)},
        {L"vfloatmax", genericValue(std::numeric_limits<float>::max())},
        {L"vdouble", genericValue(1.5)},
        {L"vwhole", genericValue(3.0)},
        {L"v2to31", genericValue(2147483648.0)},
        {L"vdoublemax", genericValue(limits::max())},
        {L"vnegativezero", genericValue(-0.0)},
        {L"vinf", genericValue(-limits::infinity())},
        {L"vnan", genericValue(limits::quiet_NaN())},
        {L"vnannegative", genericValue(-limits::quiet_NaN())},
        {L"vnanpayload", genericValue(std::bit_cast<double>(0xfff8000000000123))},
        text(L"vdecimal", L"12"),
        text(L"vdecimalmin", L"-2147483648"),
        text(L"vdecimalpast", L"2147483648"),
        text(L"vempty", L""),
        text(L"vtext", L" Text "),
        text(L"vlongtext", std::wstring(300, L'a')),
        text(L"vcut", std::wstring(L"a\0b", 3)),
        text(L"vspaced", L" 1 "),
        text(L"vplus", L"+1"),
        text(L"vleading", L"007"),
        text(L"vminuszero", L"-0"),
        text(L"vfraction", L"1.5"),
        text(L"vyes", L"true"),
        {L"vdate", genericValue(qx::date(2024, 2, 29))},
        {L"vtime", genericValue(qx::time(23, 59, 58))},
        {L"vstamp", genericValue(qx::timestamp(qx::date(2024, 2, 29), qx::time(1, 2, 3)))},
        {L"vloc", genericValue(qx::locString(L"id", L"shown"))},
        {L"vnone", genericValue(qx::valueArray())},
        {L"varr", {}, LR"(setvar(varr, createarray()); addtoarray(varr, "1"); addtoarray(varr, "two");
                          addtoarray(varr, add<int>("1", "2")); addtoarray(varr, treatasfunction()); addtoarray(varr, varr))"},
        {L"vmaps", {}, LR"(setvar(vmaps, createmap<string>()); insertintomap<string>(vmaps, "1", "one");
                           insertintomap<string>(vmaps, "k", "5"))"},
        {L"vmapi", {}, LR"(setvar(vmapi, createmap<int>()); insertintomap<int>(vmapi, "1", vmapi);
                           insertintomap<int>(vmapi, "7", "seven"))"},
        {L"vmaph", {}, LR"(setvar(vmaph, createmap<short>()); insertintomap<short>(vmaph, "1", "2"))"},
        {L"vmapl", {}, LR"(setvar(vmapl, createmap<long>()); insertintomap<long>(vmapl, "1", nullref()))"},
        {L"vobject", {}}, // that of the world
        {L"vnothing", {}, L"setvar(vnothing, nullref())"},
        {L"vref", {}, L"setvar(vref, getvarptr<int>(vint))"},
        {L"vreftext", {}, L"setvar(vreftext, getvarptr<int>(vtext))"},
        {L"vrefarr", {}, L"setvar(vrefarr, &getvar<int>(varr))"},
        {L"vchain", {}, L"setvar(vchain, getvarptr<int>(vref))"},
        {L"vself", {}, L"setvar(vself, getvarptr<int>(vself))"},
    };
    return all;
}

// --- Shapes ---

namespace
{

const std::set<string> leftOut{L"while",
                               L"continue",
                               L"break",
                               L"callfunction",
                               L"loaddll",
                               L"runexe",
                               L"file_copy",
                               L"file_loadini",
                               L"file_loadcfg",
                               L"file_appendtextline",
                               L"file_delete",
                               L"directory_getallfiles",
                               L"directory_getcurrent",
                               L"directory_setcurrent"};

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
        for (const qx::script::statementInfo& built : builtInStatements()) {
            if (leftOut.contains(built.name) || isSecondName(built.name))
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
