// The statements on host objects: what they ask of the object, and that they leave it with the references
// that it had, whatever happens.
#include "documents.h"
#include "objectWorld.h"

#include <thread>

using qx::genericValue;
using qx::string;

namespace
{

// Runs in a context of its own and shows the result, or the failure.
std::string run(const objectWorld& world, const string& text)
{
    scriptcontext context;
    world.fill(context);
    genericValue result;
    const texts chain = failureOf([&] { parsed(text)->exec(context, result); });
    if (chain == texts{L"nothing thrown"})
        return valueText(result);
    string shown;
    for (const string& link : chain)
        shown += (shown.empty() ? L"" : L" / ") + link;
    return shown.replace(L"Error executing script \"" + text + L"\"", L"failed").utf8();
}

} // namespace

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
    for (const std::string& row : rowsOf("object/asked"))
        for (const auto& kind : kinds)
            for (int good = 0;; ++good) {
                SCOPED_TRACE(row);
                const objectWorld world;
                int left = good;
                world.object->meanwhile = [&] {
                    if (left-- == 0)
                        kind.fails();
                };
                const std::string outcome = run(world, string::fromUtf8(row));
                if (left >= 0)
                    break;
                const bool isHas = row.find("_has(") != row.npos;
                EXPECT_EQ(outcome, isHas ? kind.shownByHas : kind.shown);
            }
}

TEST(objects, keep_copies_of_values_as_transient_data)
{
    const objectWorld world;
    world.object->handedOut = nullptr;
    EXPECT_EQ(run(world, L"{ createvar(v, add<int>(\"1\", \"2\")); obj_settransientdata(o, \"k\", v); "
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
    EXPECT_EQ(run(world, L"{ obj_settransientdata(o, \"k\", other); }"), "null");
    EXPECT_EQ(world.other->references, 2u); // by the value in the carrier
    EXPECT_EQ(run(world, L"obj_settransientdata(o, \"k\")"), "null");
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
        inner = run(world, L"{ obj_set<int>(o, \"g\", \"1\"); return(obj_getrelation(o, \"r\")); }");
        run(world, L"obj_get(nullref(), \"g\")");
    };
    EXPECT_EQ(run(world, L"obj_get<int>(o, \"f\")"), "int 7");
    EXPECT_EQ(inner, "unknownptr to an object");
    EXPECT_EQ(world.operations(), "?fieldaccess; getValue f over int 0; ?fieldaccess; hasField g; setValue g "
                                  "long 1; ?relationaccess; hasRelation r; getRelation r");
}

// The variable that a script asks for its object may end meanwhile, and with it the last reference.
TEST(objects, live_while_they_are_asked)
{
    for (const std::string& row : rowsOf("object/asked")) {
        SCOPED_TRACE(row);
        scriptcontext context;
        bool wasThere = false;
        auto* const object = new recordingObject;
        object->whenAsked = [&] {
            context.deleteParameter(nameOf(L"o"));
            wasThere = recordingObject::living == 1;
        };
        context.setParameter(nameOf(L"o"), genericValue(objectRef::adopt(object->root())));
        failureOf([&] { parsed(string::fromUtf8(row))->exec(context); });
        EXPECT_TRUE(wasThere);
        EXPECT_EQ(recordingObject::living, 0);
    }
}

TEST(objects, may_be_used_from_two_threads)
{
    const objectWorld world;
    world.object->isQuiet = true;
    run(world, L"obj_settransientdata(o, \"k\", other)");
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
}
