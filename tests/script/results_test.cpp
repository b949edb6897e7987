// How statements write their results, and what their clones do: one table over all statements.
#include "host.h"
#include "recordingObject.h"
#include "utils/fakeSystem.h"
#include "valueText.h"

#include <gtest/gtest.h>

#include <set>

using qx::genericValue;
using qx::string;

namespace
{

enum way
{
    nothing,   // the statement has no value
    slotted,   // what the result holds keeps its type
    replacing, // the result becomes a fresh value
};

const struct row
{
    const wchar_t* text;
    way writes;
    const char* fresh;  // into a null result
    const char* inText; // into a result that holds a text
} rows[] = {
    {L"varexists(v)", replacing, "bool true", "bool true"},
    {L"globalvarexists(v)", replacing, "bool false", "bool false"},
    {L"createvar(x, \"1\")", slotted, "string \"1\"", "string \"1\""},
    {L"createglobalvar(g, \"1\")", slotted, "string \"1\"", "string \"1\""},
    {L"isnull(v)", replacing, "bool false", "bool false"},
    {L"isoftype<int>(v)", replacing, "bool true", "bool true"},
    {L"setvar(v, \"2\")", replacing, "string \"2\"", "string \"2\""},
    {L"setparameter(p, \"2\")", replacing, "string \"2\"", "string \"2\""},
    {L"setglobalvar(g, \"2\")", replacing, "string \"2\"", "string \"2\""},
    {L"getvar(v)", replacing, "string \"1\"", "string \"1\""},
    {L"getparameter(p)", replacing, "string \"p\"", "string \"p\""},
    {L"getglobalvar(g)", replacing, "string \"g\"", "string \"g\""},
    {L"getvarptr<int>(v)", slotted, "reference to string \"1\"", "string \"1\""},
    {L"&getvar<int>(v)", slotted, "reference to string \"1\"", "string \"1\""},
    {L"getparameterptr<int>(p)", slotted, "reference to string \"p\"", "string \"p\""},
    {L"&getparameter<int>(p)", slotted, "reference to string \"p\"", "string \"p\""},
    {L"getglobalvarptr<int>(g)", slotted, "reference to string \"g\"", "string \"g\""},
    {L"if(v, isnull(v))", nothing, "null", "string \"old\""},
    {L"while(isnull(v), isnull(v))", nothing, "null", "string \"old\""},
    {L"for_each(i, arr, isnull(v))", nothing, "null", "string \"old\""},
    {L"nullref()", replacing, "unknownptr to nothing", "unknownptr to nothing"},
    {L"callfunction(dll$library$function)", nothing, "null", "string \"old\""},
    {L"treatasfunction(return(v))", replacing, "string \"1\"", "string \"1\""},
    {L"return(v)", replacing, "string \"1\"", "string \"1\""},
    {L"locstring(\"id\", \"text\")", replacing, "locString text", "locString text"},
    {L"locstringfromid(\"id\")", replacing, "locString id", "locString id"},
    {L"locstring_insertparam(\"[a]\", \"a\", v)", replacing, "locString [a]", "locString [a]"},
    {L"locstring_getstring(\"id\")", replacing, "string \"id\"", "string \"id\""},
    {L"createarray()", replacing, "array []", "array []"},
    {L"createarray(arr)", replacing, "array [string \"a\"]", "array [string \"a\"]"},
    {L"sizeofarray(arr)", slotted, "ulong 1", "string \"1\""},
    {L"addtoarray(arr, \"b\")", nothing, "null", "string \"old\""},
    {L"arrayelement(arr, \"0\")", replacing, "string \"a\"", "string \"a\""},
    {L"createmap<int>()", replacing, "map<int> {}", "map<int> {}"},
    {L"createmap<string>()", replacing, "map<string> {}", "map<string> {}"},
    {L"insertintomap<string>(m, \"k\", \"v\")", nothing, "null", "string \"old\""},
    {L"findinmap<string>(m, \"size\")", replacing, "ulong 0", "ulong 0"},
    {L"findinmap<string>(m, \"absent\")", nothing, "null", "string \"old\""},
    {L"strlen(\"abc\")", slotted, "uint64 3", "string \"3\""},
    {L"strcat(\"1\", \"2\", \"3\")", slotted, "string \"123\"", "string \"123\""},
    {L"strlower(\"A\")", replacing, "string \"a\"", "string \"a\""},
    {L"strupper(\"a\")", replacing, "string \"A\"", "string \"A\""},
    {L"strreplace(\"12\", \"2\", \"3\")", replacing, "string \"13\"", "string \"13\""},
    {L"strdelspaces(\" 1\", \"all\")", replacing, "string \"1\"", "string \"1\""},
    {L"strsplit(\"1\", \",\")", replacing, "array [string \"1\"]", "array [string \"1\"]"},
    {L"strfind(\"abc\", \"c\")", replacing, "long 2", "long 2"},
    {L"substr(\"123\", \"1\", \"1\")", replacing, "string \"2\"", "string \"2\""},
    {L"sin<deg>(\"0\")", replacing, "double 0", "double 0"},
    {L"tan<rad>(\"0\")", replacing, "double 0", "double 0"},
    {L"asin<deg>(\"0\")", replacing, "double 0", "double 0"},
    {L"atan<rad>(\"0\")", replacing, "double 0", "double 0"},
    {L"cos<deg>(\"0\")", replacing, "double 1", "double 1"},
    {L"acos<deg>(\"1\")", replacing, "double 0", "double 0"},
    {L"dbleq(\"1\", \"1.5\", \"1\")", replacing, "bool true", "bool true"},
    {L"mod(\"7\", \"3\")", replacing, "double 1", "double 1"},
    {L"sqrt(\"4\")", replacing, "double 2", "double 2"},
    {L"today()", slotted, "date 2024-03-09", "string \"2024-03-09\""},
    {L"brelvixinidate()", slotted, "date 1900-01-01", "string \"1900-01-01\""},
    {L"date_year(\"2024-03-09\")", slotted, "int 2024", "string \"2024\""},
    {L"date_month(\"2024-03-09\")", slotted, "int 3", "string \"3\""},
    {L"date_dayofmonth(\"2024-03-09\")", slotted, "int 9", "string \"9\""},
    {L"date_weekofyear(\"2024-03-09\")", slotted, "int 10", "string \"10\""},
    {L"date_dayofyear(\"2024-03-09\")", slotted, "int 69", "string \"69\""},
    {L"date_dayofweek(\"2024-03-09\")", slotted, "int 6", "string \"6\""},
    {L"date_assybasedate(\"2024-03-09\")", replacing, "string \"'2024-03-09'\"", "string \"'2024-03-09'\""},
    {L"date_aslocalestring(\"2024-03-09\")", replacing, "string \"09.03.2024\"", "string \"09.03.2024\""},
    {L"daystart()", slotted, "time 00:00:00", "string \"00:00:00\""},
    {L"lunchtime()", slotted, "time 12:00:00", "string \"12:00:00\""},
    {L"midnight()", slotted, "time 00:00:00", "string \"00:00:00\""},
    {L"time_hour(\"13:05:09\")", slotted, "int 13", "string \"13\""},
    {L"time_minute(\"13:05:09\")", slotted, "int 5", "string \"5\""},
    {L"time_second(\"13:05:09\")", slotted, "int 9", "string \"9\""},
    {L"time_minuteofday(\"13:05:09\")", slotted, "int 785", "string \"785\""},
    {L"time_secondofday(\"13:05:09\")", slotted, "int 47109", "string \"47109\""},
    {L"red()", slotted, "ulong 255", "string \"255\""},
    {L"green()", slotted, "ulong 65280", "string \"65280\""},
    {L"blue()", slotted, "ulong 16711680", "string \"16711680\""},
    {L"yellow()", slotted, "ulong 65535", "string \"65535\""},
    {L"magenta()", slotted, "ulong 16711935", "string \"16711935\""},
    {L"cyan()", slotted, "ulong 16776960", "string \"16776960\""},
    {L"white()", slotted, "ulong 16777215", "string \"16777215\""},
    {L"black()", slotted, "ulong 0", "string \"0\""},
    {L"rgb_make(\"1\", \"2\", \"3\")", slotted, "ulong 197121", "string \"197121\""},
    {L"calccrc_create()", replacing, "checksum (no text)", "checksum (no text)"},
    {L"calccrc_add(calccrc_create(), \"\")", replacing, "checksum (no text)", "checksum (no text)"},
    {L"calccrc_result(calccrc_create())", replacing, "ulong 0", "ulong 0"},
    {L"add<int>(\"1\", \"2\")", slotted, "int 3", "string \"3\""},
    {L"divide<double>(\"1\", \"2\")", slotted, "double 0.5", "string \"0.5\""},
    {L"maxof<ushort>(\"1\", \"2\")", slotted, "ushort 2", "string \"2\""},
    {L"bitor<short>(\"1\", \"2\")", slotted, "short 3", "string \"3\""},
    {L"round<float>(\"1.26\", \"1\")", slotted, "float 1.3", "string \"1.3\""},
    {L"==<string>(\"1\", \"1\")", slotted, "bool true", "string \"true\""},
    {L"isbigger<date>(\"2024-03-09\", \"2024-03-09\")", slotted, "bool false", "string \"false\""},
    {L"add<date, days>(\"2024-02-29\", \"1\")", replacing, "date 2024-03-01", "date 2024-03-01"},
    {L"subtract<date, days>(\"2024-03-01\", \"1\")", replacing, "date 2024-02-29", "date 2024-02-29"},
    {L"-<int>(\"1\")", slotted, "int -1", "string \"-1\""},
    {L"abs<int>(\"-1\")", slotted, "long 1", "string \"1\""},
    {L"not(\"1\")", slotted, "bool false", "string \"false\""},
    {L"and(\"1\", \"1\")", replacing, "bool true", "bool true"},
    {L"or(\"0\", \"0\")", replacing, "bool false", "bool false"},
    {L"file_make(\"/a\", \"b\")", replacing, "string \"/a/b\"", "string \"/a/b\""},
    {L"file_delete(\"/no/such\")", nothing, "null", "string \"old\""},
    {L"file_makeabs(\"/a\")", replacing, "string \"/a\"", "string \"/a\""},
    {L"file_makerelative(\"/a\", \"/\")", replacing, "string \"a\"", "string \"a\""},
    {L"file_exchangeextension(\"a.b\", \"c\")", replacing, "string \"a.c\"", "string \"a.c\""},
    {L"file_exists(\"/\")", replacing, "bool false", "bool false"},
    {L"file_path(\"a/b\")", replacing, "string \"a/\"", "string \"a/\""},
    {L"file_name(\"a/b\")", replacing, "string \"b\"", "string \"b\""},
    {L"file_appendtextline(\"/dev/null\", \"a\")", nothing, "null", "string \"old\""},
    {L"fsname_replaceinvalidchars(\"a*\")", replacing, "string \"a \"", "string \"a \""},
    {L"file_loadini(\"/no/such\", \"a\", \"b\")", replacing, "string \"\"", "string \"\""},
    {L"file_loadcfg(\"/no/such\", \"a\")", replacing, "string \"\"", "string \"\""},
    {L"directory_getallfiles(\"/no/such\")", replacing, "array []", "array []"},
    {L"directory_setcurrent(\"/no/such\")", replacing, "bool false", "bool false"},
    {L"runexe(\"/no/such\")", nothing, "null", "string \"old\""},
    {L"directory_getcurrent()", replacing, "string \"/current\"", "string \"/current\""},
    {L"executablepath()", replacing, "string \"/program\"", "string \"/program\""},
    {L"messagebox(\"Go on?\")", replacing, "string \"ok\"", "string \"ok\""},
    {L"condition_create(\"= 1\")", replacing, "condition (no text)", "condition (no text)"},
    {L"condition_istrue(condition_create(\"= 1\"), v)", replacing, "bool true", "bool true"},
    {L"obj_has(o, \"f\")", replacing, "bool true", "bool true"},
    {L"ctxt_has(o, \"f\")", replacing, "bool true", "bool true"},
    {L"obj_get<int>(o, \"f\")", replacing, "int 7", "int 7"},
    {L"obj_get<generic>(o, \"f\")", replacing, "string \"7\"", "string \"7\""},
    {L"ctxt_get<bool>(o, \"f\")", replacing, "bool false", "bool false"},
    {L"ctxt_getarray(o, \"f\")", replacing, "array []", "array []"},
    {L"obj_set<double>(o, \"f\", \"1\")", nothing, "null", "string \"old\""},
    {L"ctxt_set<ref>(o, \"f\", o, \"1\")", nothing, "null", "string \"old\""},
    {L"obj_setrestriction(o, \"f\", \"= 1\")", nothing, "null", "string \"old\""},
    {L"obj_isfieldvalid(o, \"f\")", slotted, "bool true", "string \"true\""},
    {L"obj_setenabled(o, \"f\")", nothing, "null", "string \"old\""},
    {L"obj_isenabled(o, \"f\")", replacing, "bool false", "bool false"},
    {L"obj_setdisabled(o, \"f\")", nothing, "null", "string \"old\""},
    {L"obj_isdisabled(o, \"f\")", replacing, "bool true", "bool true"},
    {L"obj_setconstant(o, \"f\")", nothing, "null", "string \"old\""},
    {L"obj_isconstant(o, \"f\")", replacing, "bool true", "bool true"},
    {L"obj_setlabel(o, \"f\", \"l\")", nothing, "null", "string \"old\""},
    {L"obj_setlabelswitch(o, \"f\", \"a\", \"b\", \"1\")", nothing, "null", "string \"old\""},
    {L"obj_label(o, \"f\")", replacing, "string \"7\"", "string \"7\""},
    {L"obj_triggerfieldchange(o, \"f\")", nothing, "null", "string \"old\""},
    {L"obj_triggerfieldinfochange(o, \"f\")", nothing, "null", "string \"old\""},
    {L"obj_getrelation(o, \"r\", v, v, v)", replacing, "unknownptr to nothing", "unknownptr to nothing"},
    {L"obj_getrelations(o, \"r\")", replacing, "unknownptr to nothing", "unknownptr to nothing"},
    {L"obj_setrelation(o, \"r\", o)", nothing, "null", "string \"old\""},
    {L"obj_hastransientdata(o, \"k\")", replacing, "bool true", "bool true"},
    {L"ctxt_hastransientdata(o, \"k\")", replacing, "bool true", "bool true"},
    {L"obj_gettransientdata(o, \"k\")", replacing, "string \"1\"", "string \"1\""},
    {L"ctxt_gettransientdata(o, \"k\")", replacing, "string \"1\"", "string \"1\""},
    {L"obj_settransientdata(o, \"k\", v)", nothing, "null", "string \"old\""},
    {L"ctxt_settransientdata(o, \"k\", v)", nothing, "null", "string \"old\""},
};

// Statements that end what they stand in, or need a file or an object of another kind.
const std::set<string> testedByThemselves = {L"assert",        L"break",        L"continue",
                                             L"file_copy",     L"loaddll",      L"objmsg_add",
                                             L"objmsg_remove", L"throwmessage", L"throwerror"};

// Says the same on every machine, on 2024-03-09.
class fixedMachine final : public stoppedClock
{
public:
    fixedMachine() : stoppedClock(1709942400000) {}
    string currentDirectory() override { return L"/current"; }
    bool modulePath(const string&, string& directory) override
    {
        directory = L"/program";
        return true;
    }
    int messageBox(void*, const string&, const string&, qx::uint) override { return 1; }
};

// Runs in a context with an array `arr`, a map `m`, an object `o`, a variable `v`, a parameter `p` and a
// global `g`, and shows the result, the reason of a failure, and a signal.
std::string resultIn(const genericValue& before, const statement& run)
{
    const fixedMachine machine;
    const objectRef object = objectRef::adopt((new recordingObject)->root());
    scriptcontext context;
    context.setParameter(nameOf(L"p"), textValue(L"p"));
    context.createVariable(nameOf(L"o"), genericValue(object));
    for (const wchar_t* preparation :
         {L"createvar(v, \"1\")", L"createglobalvar(g, \"g\")", L"createglobalvar(scriptbasepath, \"\")",
          L"createvar(arr, strsplit(\"a\", \",\"))", L"createvar(none, createarray())",
          L"createvar(m, createmap<string>())", L"insertintomap<string>(m, \"size\", sizeofarray(none))",
          L"obj_settransientdata(o, \"k\", v)"})
        parsed(preparation)->exec(context);
    genericValue result(before);
    const texts chain = failureOf([&] { run.exec(context, result); });
    std::string shown = valueText(result);
    if (chain[0] != L"nothing thrown")
        shown += ", refused: " + chain.back().utf8();
    for (const wchar_t* signal : {L"#breaksignal#", L"#continuesignal#"}) {
        if (context.scriptSignal(nameOf(signal)))
            shown += ", " + string(signal).utf8();
    }
    return shown;
}

} // namespace

TEST(results, keep_or_replace_what_is_there)
{
    const genericValue mapBefore = evaluated(L"createmap<short>()");
    for (const row& tried : rows) {
        SCOPED_TRACE(string(tried.text).utf8());
        const ownedStatement original = parsed(tried.text);
        EXPECT_EQ(resultIn(genericValue(), *original), tried.fresh);
        EXPECT_EQ(resultIn(textValue(L"old"), *original), tried.inText);
        // Nothing converts into a map.
        const std::string inMap = resultIn(mapBefore, *original);
        if (tried.writes == slotted)
            EXPECT_EQ(inMap.find("map<short> {}, refused: Error executing script"), 0u) << inMap;
        else
            EXPECT_EQ(inMap, tried.writes == replacing ? tried.fresh : "map<short> {}");
    }
}

TEST(results, of_clones_are_those_of_the_original)
{
    std::vector<const wchar_t*> all = {
        L"if(\"1\", return(\"then\"), return(\"else\"))",
        L"if(\"0\", return(\"then\"), return(\"else\"))",
        L"while(\"1\", return(\"body\"))",
        L"while(word, {})",
        L"for_each(e, arr, return(e))",
        L"for_each(e, \"text\", {})",
        L"break()",
        L"continue()",
        L"nullref(nosuchstatement())",
        L"callfunction(dll$lib$func, \"1\", word)",
        L"treatasfunction({ return(\"value\"); isnull(\"1\"); })",
        L"return(\"value\")",
        L"return()",
        L"throwerror(\"text\")",
        L"throwmessage(\"text\")",
        L"assert(word)",
        L"messagebox(word)",
        L"locstring(\"id\", \"[A]\", \"\", \"A\", \"1\")",
        L"locstringfromid(\"id\")",
        L"locstring_insertparam(\"id\", \"A\", \"1\")",
        L"locstring_getstring(\"id\")",
        L"objmsg_add(nullref(), \"id\", \"e\", \"text\")",
        L"objmsg_remove(nullref(), \"id\")",
        L"add<int>()", // what is missing stays missing
        L"add<int>(\"1\")",
        L"abs<int>()",
        L"file_copy(\"/no/such\", \"/\")",
        L"loaddll(\"/no/such\")",
    };
    for (const row& tried : rows)
        all.push_back(tried.text);
    for (const wchar_t* text : all) {
        SCOPED_TRACE(string(text).utf8());
        ownedStatement original = parsed(text, qx::script::continueAllowed | qx::script::breakAllowed);
        const std::string fresh = resultIn(genericValue(), *original);
        const std::string inText = resultIn(textValue(L"old"), *original);
        const ownedStatement clone(original->clone());
        EXPECT_EQ(clone->text(), text);
        const statement& first = *original;
        const statement& second = *clone;
        EXPECT_EQ(typeid(second), typeid(first));
        original = ownedStatement(); // a clone needs nothing of it
        EXPECT_EQ(resultIn(genericValue(), *clone), fresh);
        EXPECT_EQ(resultIn(textValue(L"old"), *clone), inText);
    }
}

TEST(results, of_every_operator_and_type_are_slots)
{
    const genericValue mapBefore = evaluated(L"createmap<short>()");
    const std::set<string> moves = {L"add", L"+", L"subtract", L"-"};
    int tried = 0;
    for (const qx::script::statementInfo& built : qx::script::listStatements()) {
        if (built.module != L"operator" || built.types.empty() || built.name.starts_with(L"<"))
            continue; // `<` cannot be called with a type
        std::vector<string> types;
        built.types.splitAt(L", ", types, false);
        for (const string& type : types) {
            const bool isMove = type == L"date" && moves.contains(built.name); // gives a new value
            const string operand = type == L"date" || type == L"timestamp" ? L"\"2024-03-09\""
                                   : type == L"time"                       ? L"\"01:00\""
                                   : type == L"unknownptr"                 ? L"nullref()"
                                                                           : L"\"1\"";
            const string text = built.name + L"<" + type + (isMove ? L", days" : L"") + L">(" + operand +
                                L", " + (isMove ? string(L"\"1\"") : operand) + L")";
            SCOPED_TRACE(text.utf8());
            const ownedStatement original = parsed(text);
            const ownedStatement clone(original->clone());
            const std::string fresh = resultIn(genericValue(), *original);
            EXPECT_EQ(fresh.find("refused"), std::string::npos) << fresh;
            EXPECT_EQ(resultIn(genericValue(), *clone), fresh);
            const std::string inMap = resultIn(mapBefore, *original);
            EXPECT_EQ(inMap.starts_with("map<short> {}, refused: "), !isMove) << inMap;
            ++tried;
        }
    }
    EXPECT_GT(tried, 200);
}

TEST(results, are_listed_for_every_statement)
{
    std::set<string> listed;
    for (const row& tried : rows) {
        const string text = tried.text;
        listed.insert(text.substr(0, text.find_first_of(L"<(")));
    }
    for (const qx::script::statementInfo& built : qx::script::listStatements()) {
        EXPECT_TRUE(built.module == L"operator" || listed.contains(built.name) ||
                    testedByThemselves.contains(built.name))
            << built.name.utf8();
    }
}
