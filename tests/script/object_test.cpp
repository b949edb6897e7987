// The statements on host objects: what they ask of the object, and that they leave it with the references
// that it had, whatever happens.
#include "host.h"
#include "recordingObject.h"

#include <qxNumberText.h>

#include <gtest/gtest.h>

#include <thread>

using qx::genericValue;
using qx::string;
using qx::conditions::condition;
using qx::intrface::interfaceName;

namespace
{

// An object of which scripts know as `o`, and another as `other`. At its end nothing refers to either.
class objectWorld
{
public:
    objectWorld()
    {
        object->content = textValue(L"7");
        object->restriction = recordingObject::condition(condition::parse(L"= 7"));
        object->handedOut = other->root();
    }
    objectWorld(const objectWorld&) = delete;
    objectWorld& operator=(const objectWorld&) = delete;
    ~objectWorld()
    {
        EXPECT_EQ(object->references, 1u);
        object->release();
        EXPECT_EQ(other->references, 1u);
        other->release();
        EXPECT_EQ(recordingObject::living, 0);
    }

    void fill(scriptcontext& context) const
    {
        context.createVariable(nameOf(L"o"), object->value());
        context.createVariable(nameOf(L"other"), other->value());
    }

    // Runs in a context of its own and shows the result, or the failure.
    std::string run(const string& text, genericValue result = genericValue()) const
    {
        scriptcontext context;
        fill(context);
        const texts chain = failureOf([&] { parsed(text)->exec(context, result); });
        if (chain == texts{L"nothing thrown"})
            return valueText(result);
        string shown;
        for (const string& link : chain)
            shown += (shown.empty() ? L"" : L" / ") + link;
        shown.replace(L"Error executing script \"" + text + L"\"", L"failed");
        return shown.utf8();
    }

    // What the object was asked since the last call.
    std::string operations() const
    {
        std::string all;
        for (const std::string& one : object->take())
            all.append(all.empty() ? "" : "; ").append(one);
        string shown = string::fromUtf8(all);
        return shown.replace(L"qx::intrface::", L"?").utf8();
    }

    recordingObject* const object = new recordingObject;
    recordingObject* const other = new recordingObject;
};

std::string thisYear(const char* text)
{
    return string::fromUtf8(text)
        .replace(L"YEAR", string(std::wstring(qx::numberText(qx::date::thisYear()).view())))
        .utf8();
}

const struct row
{
    const wchar_t* text;
    const char* operations;
} rows[] = {
    {L"obj_has(o, \"f\")", "?fieldaccess; hasField f"},
    {L"ctxt_has(getvarptr<unknownptr>(o), \"f\")", "?fieldaccess; hasField f"},
    {L"obj_get(o, \"f\")", "?fieldaccess; getValue f over string \"\""},
    {L"obj_get<String, int>(o, \"f\")", "?fieldaccess; getValue f over string \"\""},
    {L"ctxt_get<bool>(o, \"f\")", "?fieldaccess; getValue f over bool false"},
    {L"obj_get<short>(o, \"f\")", "?fieldaccess; getValue f over short 0"},
    {L"obj_get<int>(o, \"f\")", "?fieldaccess; getValue f over int 0"},
    {L"obj_get<long>(o, \"f\")", "?fieldaccess; getValue f over long 0"},
    {L"obj_get<ushort>(o, \"f\")", "?fieldaccess; getValue f over ushort 0"},
    {L"obj_get<uint>(o, \"f\")", "?fieldaccess; getValue f over uint 0"},
    {L"obj_get<ulong>(o, \"f\")", "?fieldaccess; getValue f over ulong 0"},
    {L"obj_get<float>(o, \"f\")", "?fieldaccess; getValue f over float 0"},
    {L"obj_get<double>(o, \"f\")", "?fieldaccess; getValue f over double 0"},
    {L"obj_get<date>(o, \"f\")", "?fieldaccess; getValue f over date YEAR-01-01"},
    {L"obj_get<time>(o, \"f\")", "?fieldaccess; getValue f over time 00:00:00"},
    {L"obj_get<timestamp>(o, \"f\")", "?fieldaccess; getValue f over timestamp YEAR-01-01 00:00:00"},
    {L"obj_get<generic>(o, add<int>(\"1\", \"2\"))", "?fieldaccess; getValue<generic> 3"},
    {L"obj_get<generic>(o, createarray())", "?fieldaccess; getValue<generic> "},
    {L"obj_get<array>(o, \"f\")", "?arrayfieldaccess; getValue f over array []"},
    {L"ctxt_getarray<int>(o, \"f\")", "?arrayfieldaccess; getValue f over array []"},
    {L"obj_set(o, \"f\", add<int>(\"1\", \"2\"))", "?fieldaccess; hasField f; setValue f string \"3\""},
    {L"ctxt_set<bool>(o, \"f\", \"yes\")", "?fieldaccess; hasField f; setValue f bool true"},
    {L"obj_set<short>(o, \"f\", \"-1\")", "?fieldaccess; hasField f; setValue f short -1"},
    {L"obj_set<INT>(o, \"f\", \"12\")", "?fieldaccess; hasField f; setValue f long 12"},
    {L"obj_set<long>(o, \"f\", \"12\")", "?fieldaccess; hasField f; setValue f long 12"},
    {L"obj_set<ushort>(o, \"f\", \"12\")", "?fieldaccess; hasField f; setValue f ushort 12"},
    {L"obj_set<uint>(o, \"f\", \"12\")", "?fieldaccess; hasField f; setValue f uint 12"},
    {L"obj_set<ulong>(o, \"f\", \"12\")", "?fieldaccess; hasField f; setValue f ulong 12"},
    {L"obj_set<float>(o, \"f\", \"1.5\")", "?fieldaccess; hasField f; setValue f float 1.5"},
    {L"obj_set<double>(o, \"f\", \"1.5\")", "?fieldaccess; hasField f; setValue f double 1.5"},
    {L"obj_set<date>(o, \"f\", \"9.3.2024\")", "?fieldaccess; hasField f; setValue f date 2024-03-09"},
    {L"obj_set<time>(o, \"f\", \"01:05\")", "?fieldaccess; hasField f; setValue f time 01:05:00"},
    {L"obj_set<timestamp>(o, \"f\", \"9.3.2024\")",
     "?fieldaccess; hasField f; setValue f timestamp 2024-03-09 00:00:00"},
    {L"obj_set<ref>(o, \"f\", other)", "?fieldaccess; hasField f; setValue f bool true"},
    {L"obj_set<ref>(o, \"f\", nullref())", "?fieldaccess; hasField f; setValue f bool false"},
    {L"obj_setrestriction(o, \"f\", \"= 1\")", "?restrictionsaccess; setRestriction f condition"},
    {L"obj_setrestriction(o, \"f\", \"no\")", "?restrictionsaccess; setRestriction f null"},
    {L"obj_isfieldvalid(o, \"f\")",
     "?restrictionsaccess; ?fieldaccess; getRestriction f; getValue<generic> f"},
    {L"obj_setenabled(o, \"f\")", "?propertyaccess; setDisabled f false"},
    {L"obj_setenabled(o, \"f\", \"0\")", "?propertyaccess; setDisabled f true"},
    {L"obj_setenabled(o, \"f\", \"maybe\")", "?propertyaccess; setDisabled f false"},
    {L"obj_isenabled(o, \"f\")", "?propertyaccess; isDisabled f"},
    {L"obj_setdisabled(o, \"f\")", "?propertyaccess; setDisabled f true"},
    {L"obj_setdisabled(o, \"f\", \"0\")", "?propertyaccess; setDisabled f false"},
    {L"obj_isdisabled(o, \"f\")", "?propertyaccess; isDisabled f"},
    {L"obj_setconstant(o, \"f\")", "?propertyaccess; setConstant f true"},
    {L"obj_setconstant(o, \"f\", \"no\")", "?propertyaccess; setConstant f false"},
    {L"obj_isconstant(o, \"f\")", "?propertyaccess; isConstant f"},
    {L"obj_setlabel(o, \"f\", \"l\")", "?propertyaccess; setLabel f \"l\""},
    {L"obj_setlabel(o, \"f\", createarray())", "?propertyaccess; setLabel f \"\""},
    {L"obj_setlabelswitch(o, \"f\", \"on\", getvar(missing), \"1\")", "?propertyaccess; setLabel f \"on\""},
    {L"obj_setlabelswitch(o, \"f\", getvar(missing), \"off\", createarray())",
     "?propertyaccess; setLabel f \"off\""},
    {L"obj_label(o, \"f\")", "?propertyaccess; getLabel f"},
    {L"obj_triggerfieldchange(o, \"f\")", "?triggerEvents; triggerFieldChange f"},
    {L"obj_triggerfieldinfochange(o, \"f\")", "?triggerEvents; triggerFieldInfoChange f"},
    {L"obj_getrelation(o, \"r\")", "?relationaccess; hasRelation r; getRelation r"},
    {L"obj_getrelation(o, \"r\", getvar(missing))", "?relationaccess; hasRelation r; getRelation r"},
    {L"obj_getrelation(o, \"r\", \"\", \"\", \"status\")", "?relationaccess; hasRelation r; getRelation r"},
    {L"obj_getrelations(o, \"r\")", "?relationaccess; hasRelation r; getRelations r"},
    {L"obj_setrelation(o, \"r\")", "?relationaccess; hasRelation r; setRelation r null"},
    {L"obj_setrelation(o, \"r\", nullref())", "?relationaccess; hasRelation r; setRelation r null"},
    {L"obj_setrelation(o, \"r\", other)", "?relationaccess; hasRelation r; setRelation r object"},
    {L"obj_hastransientdata(o, \"k\")", "?transientdataaccess; hasTransientData k"},
    {L"ctxt_settransientdata(o, \"k\", other)", "?transientdataaccess; setTransientData k object"},
    {L"obj_settransientdata(o, \"k\")", "?transientdataaccess; setTransientData k null"},
};

} // namespace

TEST(objects, are_asked_for_what_the_statement_is_about)
{
    for (const row& asked : rows) {
        SCOPED_TRACE(string(asked.text).utf8());
        const objectWorld world;
        EXPECT_EQ(world.run(asked.text).find("failed"), std::string::npos);
        EXPECT_EQ(world.operations(), thisYear(asked.operations));
        world.object->data = objectRef();
    }
}

TEST(objects, keep_no_reference_when_an_operation_throws)
{
    const struct
    {
        std::function<void()> fails;
        const char* shown;
        const char* shownByHas; // which has a guard of its own
    } kinds[] = {
        {[] { throw qx::unexpectedErrorException(L"broken"); }, "failed  / broken",
         "failed  / failed () / broken"},
        {[] { throw string(L"broken"); }, "string broken", "failed ()"},
        {[] { throw 5; }, "failed ", "failed ()"},
    };
    for (const row& asked : rows)
        for (const auto& kind : kinds)
            for (int good = 0;; ++good) {
                SCOPED_TRACE(string(asked.text).utf8());
                const objectWorld world;
                int left = good;
                world.object->meanwhile = [&] {
                    if (left-- == 0)
                        kind.fails();
                };
                const std::string outcome = world.run(asked.text);
                world.object->data = objectRef();
                if (left >= 0)
                    break;
                const bool isHas = string(asked.text).find(L"_has(") != string::npos;
                EXPECT_EQ(outcome, isHas ? kind.shownByHas : kind.shown);
            }
}

TEST(objects, fail_with_the_text_of_the_statement)
{
    const auto asItIs = [](recordingObject&) {};
    const auto failing = [](recordingObject& object) { object.succeeds = false; };
    const auto denying = [](recordingObject& object) { object.hasIt = false; };
    const auto handingNothing = [](recordingObject& object) { object.handedOut = nullptr; };
    const struct
    {
        const wchar_t* text;
        void (*prepare)(recordingObject& object);
        const char* outcome;
        const char* operations;
    } failures[] = {
        {L"obj_get<int>(o, \"f\")", failing, "failed (error calling the objects get-method for field f)",
         "?fieldaccess; getValue f over int 0"},
        {L"obj_get<array>(o, \"f\")", failing, "failed (error calling the objects get-method for field f)",
         "?arrayfieldaccess; getValue f over array []"},
        {L"obj_get<generic>(o, \"f\")", failing, "string \"7\"", "?fieldaccess; getValue<generic> f"},
        {L"obj_set<int>(o, \"f\", \"1\")", denying, "failed (field \"f\" not found within object)",
         "?fieldaccess; hasField f"},
        {L"obj_set<int>(o, \"f\", \"1\", \"0\")", denying, "failed (field \"f\" not found within object)",
         "?fieldaccess; hasField f"},
        {L"obj_set<int>(o, \"f\", \"1\", \"1\")", denying, "null",
         "?fieldaccess; hasField f; setValue f long 1"},
        {L"obj_set<int>(o, \"f\", \"abc\")", asItIs, "failed (unable to retrieve value for field \"f\" (2))",
         "?fieldaccess; hasField f"},
        {L"obj_set<ref>(o, \"f\", \"abc\")", asItIs, "failed (unable to retrieve value for field \"f\" (2))",
         "?fieldaccess; hasField f"},
        {L"obj_set(o, \"f\", \"abc\")", failing, "failed (error calling the objects set-method)",
         "?fieldaccess; hasField f; setValue f string \"abc\""},
        {L"obj_has(o, \"f\")", denying, "bool false", "?fieldaccess; hasField f"},
        {L"obj_has(o, createarray())", asItIs, "failed (Error retrieving fieldname)", "?fieldaccess"},
        {L"obj_setrestriction(o, \"f\", createarray())", asItIs, "failed (Error retrieving restriction)",
         "?restrictionsaccess"},
        {L"obj_isfieldvalid(o, \"f\")",
         [](recordingObject& object) { object.refused = interfaceName<qx::intrface::fieldaccess>; },
         "failed (Error retrieving this-pointer (3))", "?restrictionsaccess"},
        {L"obj_isfieldvalid(o, createarray())", asItIs, "failed (Error retrieving fieldname)",
         "?restrictionsaccess; ?fieldaccess"},
        {L"obj_isfieldvalid(o, \"f\")",
         [](recordingObject& object) { object.restriction = recordingObject::condition(); }, "bool true",
         "?restrictionsaccess; ?fieldaccess; getRestriction f"},
        {L"obj_isfieldvalid(o, \"f\")", [](recordingObject& object) { object.content = genericValue(); },
         "bool false", "?restrictionsaccess; ?fieldaccess; getRestriction f; getValue<generic> f"},
        {L"obj_label(o, \"f\")",
         [](recordingObject& object) { object.refused = interfaceName<qx::intrface::propertyaccess>; },
         "failed (Error retrieving this-pointer (2))", ""},
        {L"obj_label(o, createarray())", asItIs, "failed (Error retrieving fieldname)", "?propertyaccess"},
        {L"obj_getrelation(o, \"r\", \"\", \"\", createarray())", denying,
         "failed (relation \"r\" not found)", "?relationaccess; hasRelation r"},
        {L"obj_getrelation(o, \"r\", \"\", \"\", createarray())", asItIs,
         "failed (Unable to retrieve deletionstatus)", "?relationaccess; hasRelation r"},
        // Objects that answer one thing and hand out another.
        {L"obj_getrelation(o, \"r\")", failing, "failed (Error retrieving relation \"r\")",
         "?relationaccess; hasRelation r; getRelation r"},
        {L"obj_getrelation(o, \"r\")", handingNothing, "unknownptr to nothing",
         "?relationaccess; hasRelation r; getRelation r"},
        {L"obj_getrelations(o, \"r\")", failing, "failed (Error retrieving relation \"r\")",
         "?relationaccess; hasRelation r; getRelations r"},
        {L"obj_gettransientdata(o, \"k\")", failing, "failed (Error executing getTransientData)",
         "?transientdataaccess; getTransientData k"},
        {L"obj_gettransientdata(o, \"k\")", handingNothing, "failed ()",
         "?transientdataaccess; getTransientData k"},
        {L"obj_gettransientdata(o, \"k\")", asItIs, "failed ()", "?transientdataaccess; getTransientData k"},
        {L"obj_setrelation(o, \"r\", \"text\")", asItIs, "failed (unable to retrieve relation)",
         "?relationaccess; hasRelation r"},
        {L"obj_setrelation(o, \"r\", other)", failing, "failed (pObject->setRelation failed)",
         "?relationaccess; hasRelation r; setRelation r object"},
        {L"obj_hastransientdata(o, createarray())", asItIs, "failed (unable to retrieve name)",
         "?transientdataaccess"},
        {L"obj_settransientdata(o, \"k\", other)", failing, "failed (Error executing setTransientData)",
         "?transientdataaccess; setTransientData k object"},
    };
    for (const auto& row : failures) {
        SCOPED_TRACE(string(row.text).utf8());
        const objectWorld world;
        row.prepare(*world.object);
        EXPECT_EQ(world.run(row.text), row.outcome);
        EXPECT_EQ(world.operations(), row.operations);
        world.object->data = objectRef();
    }
}

TEST(objects, keep_copies_of_values_as_transient_data)
{
    const objectWorld world;
    world.object->handedOut = nullptr;
    EXPECT_EQ(world.run(L"{ createvar(v, add<int>(\"1\", \"2\")); obj_settransientdata(o, \"k\", v); "
                        L"setvar(v, \"9\"); createvar(w, obj_gettransientdata(o, \"k\")); "
                        L"setvar(w, \"9\"); return(ctxt_gettransientdata(o, \"k\")); }"),
              "int 3");
    // The object that carries the value is of no use for anything else.
    objectRef carrier = world.object->data;
    EXPECT_EQ(carrier->addRef(), 3u);
    EXPECT_EQ(carrier->release(), 2u);
    for (const wchar_t* name :
         {L"qx::intrface::fieldaccess", L"qx::intrface::unknown2", L"qx::intrface::u"}) {
        void* out = &carrier;
        EXPECT_FALSE(carrier->queryInterface(name, &out));
        EXPECT_EQ(out, nullptr);
    }
    const qx::intrface::const_interfaceptr<unknown> readOnly(carrier.get());
    EXPECT_EQ(readOnly.get(), carrier.get());
    EXPECT_EQ(world.run(L"{ obj_settransientdata(o, \"k\", other); }"), "null");
    EXPECT_EQ(world.other->references, 2u); // by the value in the carrier
    EXPECT_EQ(world.run(L"obj_settransientdata(o, \"k\")"), "null");
    EXPECT_EQ(world.other->references, 1u);
    EXPECT_EQ(carrier->addRef(), 3u); // `readOnly` and `carrier` still own it
    EXPECT_EQ(carrier->release(), 2u);
}

TEST(objects, may_run_scripts_while_they_are_asked)
{
    const objectWorld world;
    std::string inner;
    world.object->meanwhile = [&] {
        world.object->meanwhile = [] {};
        inner = world.run(L"{ obj_set<int>(o, \"g\", \"1\"); return(obj_getrelation(o, \"r\")); }");
        world.run(L"obj_get(nullref(), \"g\")");
    };
    EXPECT_EQ(world.run(L"obj_get<int>(o, \"f\")"), "int 7");
    EXPECT_EQ(inner, "unknownptr to an object");
    EXPECT_EQ(world.operations(), "?fieldaccess; getValue f over int 0; ?fieldaccess; hasField g; setValue g "
                                  "long 1; ?relationaccess; hasRelation r; getRelation r");
}

TEST(objects, may_be_used_from_two_threads)
{
    const objectWorld world;
    world.object->isQuiet = true;
    world.run(L"obj_settransientdata(o, \"k\", other)");
    const ownedStatement shared =
        parsed(L"{ createvar(d, ctxt_gettransientdata(o, \"k\")); createvar(r, obj_getrelation(o, \"r\")); "
               L"obj_setrelation(o, \"r\", d); obj_set<ref>(o, \"f\", r); "
               L"return(and(obj_isfieldvalid(o, \"f\"), obj_get<bool>(o, \"f\"))); }");
    world.object->handedOut = nullptr;
    world.object->content = genericValue(7);
    const auto use = [&] {
        for (int i = 0; i < 200; ++i) {
            scriptcontext context;
            world.fill(context);
            genericValue result;
            shared->exec(context, result);
            EXPECT_EQ(valueText(result), "bool true");
        }
    };
    std::thread second(use);
    use();
    second.join();
    world.object->data = objectRef();
}
