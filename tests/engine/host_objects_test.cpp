// What qxScriptHost.h makes short: objects, fields by table, walks, and functions as statements.
#include "host.h"
#include "support/expectations.h"
#include "valueText.h"

#include <qxScriptHost.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

using qx::genericValue;
using qx::refPtr;
using qx::string;
namespace host = qx::host;
namespace intrface = qx::intrface;

namespace
{

class part final : public host::fieldObject<part, intrface::restrictionsaccess, intrface::triggerEvents>
{
public:
    explicit part(int* ended) : mEnded(ended) {}
    ~part() override { ++*mEnded; }

    static const host::fieldTable<part>& fields()
    {
        static const host::fieldTable<part> table = {{L"length", &part::mLength, L"Length"},
                                                     {L"name", &part::name, &part::setName},
                                                     {L"double", &part::twice},
                                                     {L"sizes", &part::mSizes},
                                                     {L"neighbour", &part::mNeighbour},
                                                     {L"made", &part::mMade},
                                                     {L"capped", &part::capped, &part::setCap},
                                                     {L"any", &part::mAny},
                                                     {L"serial", &part::mSerial},
                                                     {L"counts", &part::mCounts}};
        return table;
    }

    const string& name() const { return mName; }
    void setName(const string& name) { mName = name; }
    int twice() const { return mLength * 2; }
    short capped() const { return mCap; }
    bool setCap(short cap) { return cap < 10 && (mCap = cap, true); }

    bool setRestriction(const wchar_t*, const qx::sharedPtr<qx::conditions::condition>&) override
    {
        return false;
    }
    qx::sharedPtr<qx::conditions::condition> getRestriction(const wchar_t*) override { return {}; }
    bool triggerFieldChange(const wchar_t*) override { return true; }
    bool triggerFieldInfoChange(const wchar_t*) override { return true; }

    refPtr<part> mNeighbour;

private:
    int* mEnded;
    int mLength = 4;
    string mName = L"bolt";
    std::vector<double> mSizes = {1.5, 2};
    qx::date mMade{2024, 3, 9};
    short mCap = 1;
    genericValue mAny;
    qx::uint64 mSerial = 1;
    std::map<int, genericValue> mCounts;
};

// So many fields that they are searched by name.
struct wide
{
    int value = 0;
    static constexpr const wchar_t* names[] = {L"m", L"c", L"x", L"b", L"z", L"a", L"k",
                                               L"e", L"y", L"d", L"n", L"f", L"g", L"a"};
    template <std::size_t... Place>
    static host::fieldTable<wide> tableOf(std::index_sequence<Place...>)
    {
        return {{names[Place], &wide::value}...};
    }
};

// The value of a text, or the innermost reason why it has none.
std::string outcome(const string& text)
{
    qx::script::scriptcontext context;
    return outcomeIn(context, text);
}

} // namespace

TEST(hostObject, answers_for_each_interface_and_ends_once)
{
    int ended = 0;
    {
        refPtr<part> object(new part(&ended));
        for (const wchar_t* name : {L"qx::intrface::unknown", L"qx::intrface::fieldaccess",
                                    L"qx::intrface::restrictionsaccess", L"qx::intrface::propertyaccess",
                                    L"qx::intrface::arrayfieldaccess", L"qx::intrface::triggerEvents"}) {
            void* found = nullptr;
            EXPECT_TRUE(object->queryInterface(name, &found)) << string(name).utf8();
            ASSERT_NE(found, nullptr);
            EXPECT_EQ(object->release(), 1u);
        }
        const void* found = &ended;
        const part& fixed = *object;
        EXPECT_FALSE(fixed.queryInterface(L"qx::intrface::relationaccess", &found));
        EXPECT_EQ(found, nullptr);

        host::reference held = host::referenceTo(object);
        intrface::interfaceptr<intrface::fieldaccess> fields(held);
        object = refPtr<part>();
        EXPECT_EQ(ended, 0);
        string name;
        EXPECT_TRUE(fields->getValue(L"name", &name));
        EXPECT_EQ(host::objectOf<part>(held.getUnknown())->name(), L"bolt");
        EXPECT_FALSE(host::objectOf<host::objectIterator>(held.getUnknown()));
    }
    EXPECT_EQ(ended, 1);
}

// The rows work on one object, in turn.
TEST(hostObject, fields_read_and_write_as_expected)
{
    int ended = 0;
    const refPtr<part> object(new part(&ended));
    qx::script::scriptcontext context;
    context.createVariable(nameOf(L"o"), host::valueOf(object));
    expectOutcomes("engine/host_objects",
                   [&](const string& row) { return texts{string::fromUtf8(outcomeIn(context, row))}; });
    EXPECT_TRUE(part::fields().find(L"counts")->set(
        *object, genericValue(std::map<int, genericValue>{{7, genericValue(1)}})));
    EXPECT_EQ(valueText(part::fields().find(L"counts")->get(*object)), "map<int> {7: int 1}");
    object->mNeighbour = refPtr<part>(new part(&ended));
    genericValue any;
    refPtr<part> neighbour;
    EXPECT_TRUE(object->getValue(L"neighbour", any) && host::readValue(any, neighbour));
    EXPECT_EQ(neighbour.get(), object->mNeighbour.get());
}

TEST(hostObject, table_of_fields_keeps_its_order)
{
    const host::fieldTable<wide> table = wide::tableOf(std::make_index_sequence<std::size(wide::names)>());
    for (std::size_t place = 0; place < table.size(); ++place) {
        EXPECT_EQ(table[place].name(), wide::names[place]);
        EXPECT_EQ(table.indexOf(wide::names[place]), place == 13 ? 5 : place) << "the first of two";
    }
    EXPECT_EQ(table.find(L"h"), nullptr);
}

TEST(hostObject, iterator_keeps_what_it_walks_over)
{
    int ended = 0;
    {
        refPtr<host::objectIterator> walk;
        {
            const std::vector<refPtr<part>> parts = {refPtr<part>(new part(&ended)), refPtr<part>(),
                                                     refPtr<part>(new part(&ended))};
            walk = host::iterate(parts);
        }
        qx::script::scriptcontext context;
        context.createVariable(nameOf(L"walk"), host::valueOf(walk));
        genericValue result;
        for (int pass = 0; pass < 2; ++pass)
            parsed(L"createarray(walk)")->exec(context, result);
        EXPECT_EQ(valueText(result),
                  "array [unknownptr to an object, unknownptr to nothing, unknownptr to an object]");
        EXPECT_EQ(ended, 0);
    }
    EXPECT_EQ(ended, 2);
}

TEST(statementOfAFunction, takes_and_gives_as_expected)
{
    static int calls = 0;
    host::addStatement(L"hostAdd", {L"a", L"b"},
                       [](int a, std::optional<short> b) { return a + b.value_or(100); });
    host::addStatement(L"host join", {L"parts"}, [](const std::vector<string>& parts) {
        string joined;
        for (const string& piece : parts)
            joined += piece;
        return joined;
    });
    host::addStatement(L"hostset", {L"value"},
                       [](qx::script::codecontext& context, const genericValue& value) {
                           ++calls;
                           context.setGlobalContextVariable(nameOf(L"seen"), value);
                       });
    host::addStatement(L"hostthrow", {L"how"}, [](const string& how) -> bool {
        if (how == L"std")
            throw std::runtime_error("disk on fire");
        throw qx::unexpectedErrorException(L"own %s", how);
    });
    host::addStatement(L"hostpart", {L"object"}, [](const refPtr<part>& object) { return !object; });
    host::addStatement(L"hostorder", {L"a", L"b", L"c"}, [](string a, const string& b, string&& c) noexcept {
        return string(std::move(a) + b + c);
    });
    host::addStatement(L"hostcaptured", {L"serial"},
                       [added = std::make_unique<int>(5)](qx::uint64 serial) { return serial + *added; });
    expectOutcomes("engine/host_statements",
                   [](const string& text) { return texts{string::fromUtf8(outcome(text))}; });
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(failureOf([] { parsed(L"hostadd()"); }).back(), L"hostAdd: Number of parameters < 1");
}

TEST(statementOfAFunction, has_a_name_of_its_own_that_scripts_can_call)
{
    host::addStatement(L"hostonce", {}, [] { return true; });
    for (const wchar_t* name :
         {L"<=>=<", L"Host Once", L"StrLen", L"host(once", L"host)once", L"host;once", L"{hostonce",
          L"hostonce}", L"host,once", L"host\"once", L"host<int>", L"host//once", L"", L" \r\n"}) {
        const string reason = failureOf([&] { host::addStatement(name, {}, [] {}); }).back();
        const bool exists = string(name).lower().deleteAll(L" ") == L"hostonce" || name == string(L"StrLen");
        EXPECT_EQ(reason, exists ? L"addStatement: " + string(name) + L" exists already"
                                 : L"addStatement: no script can call " + string(name));
    }
    for (const wchar_t* name : {L"->", L"=>", L"host\nline", L"h\u00f6chst"}) {
        host::addStatement(name, {}, [] { return 1; });
        EXPECT_EQ(outcome(string(name) + L"()"), "int 1") << string(name).utf8();
    }
    const auto refused = [](std::initializer_list<const wchar_t*> names) {
        return failureOf([&] { host::addStatement(L"hostcount", names, [](int, int) {}); }).back();
    };
    EXPECT_EQ(refused({L"a"}), L"addStatement: hostcount has another number of parameters");
    EXPECT_EQ(refused({L"a", nullptr}), L"addStatement: hostcount has a parameter without a name");
    EXPECT_EQ(refused({L"a", L"a"}), L"addStatement: hostcount has two parameters a");
}

TEST(statementOfAFunction, is_listed_behind_the_built_in_ones)
{
    namespace script = qx::script;
    host::addStatement(
        L"HostListed", {L"a", L"b"}, [](int, std::optional<int>) {}, L"Does nothing.");
    static script::scriptModule own(
        [](const string&, const std::vector<string>&, const std::vector<string>&, int) {
            return static_cast<script::statement*>(nullptr);
        },
        [](std::vector<script::statementInfo>& all) { all.emplace_back().name = L"ownstatement"; });
    own.registerModule();
    string told;
    bool isBehind = false;
    for (const script::statementInfo& one : script::listStatements()) {
        EXPECT_FALSE(isBehind && one.isBuiltIn);
        isBehind = !one.isBuiltIn;
        if (one.name == L"hostlisted" || one.name == L"ownstatement")
            told += string::sformat(L"%s %s%s %s\n", one.module, one.name, one.parameters, one.summary);
    }
    EXPECT_NE(told.find(L"host hostlisted(a, [b]) Does nothing.\n"), told.npos);
    EXPECT_NE(told.find(L" ownstatement \n"), told.npos);
}
