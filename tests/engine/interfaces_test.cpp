// The contract with the host's objects: names, slots, counted pointers, references as values.
#include "host.h"
#include "hostObject.h"
#include "valueText.h"

#include <qxHeldTypes.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

using namespace qx::intrface;
using qx::genericValue;
using testing::ElementsAre;

namespace
{

using calls = std::vector<std::string>;

// The place of a virtual operation in its table, from 0: a pointer to one is its offset there.
template <class Operation>
std::size_t slotOf(Operation operation)
{
    std::uintptr_t offset = 0;
    std::memcpy(&offset, &operation, sizeof offset);
    return offset / sizeof(void*);
}

template <class... Values>
std::vector<std::size_t> slotsOfGet()
{
    return {slotOf<bool (fieldaccess::*)(const wchar_t*, Values)>(&fieldaccess::getValue)...};
}

template <class... Values>
std::vector<std::size_t> slotsOfSet()
{
    return {slotOf<bool (fieldaccess::*)(const wchar_t*, Values)>(&fieldaccess::setValue)...};
}

// A query that answers one thing and gives another, or throws.
class liar final : public hostObject<unknown>
{
public:
    using hostObject::queryInterface;
    bool queryInterface(const wchar_t*, void** out) override
    {
        if (throws)
            throw false;
        *out = given;
        if (given)
            ++references;
        return given == nullptr;
    }

    bool throws = false;
    unknown* given = nullptr;
};

template <class T>
void expectQuery(const char* name)
{
    SCOPED_TRACE(name);
    hostObject<unknown> object;
    {
        objectRef reference = objectRef::adopt(object.root());
        const interfaceptr<T> typed(static_cast<interfaceptrbase&>(reference));
        EXPECT_EQ(object.take(), calls{name});
        const const_interfaceptr<T> readOnly(object.root());
        EXPECT_EQ(object.take(), calls{std::string("const ") + name});
        const bool offered = std::is_same_v<T, unknown>;
        EXPECT_TRUE(typed.isValid() == offered && readOnly.isValid() == offered);
        EXPECT_EQ(object.references, offered ? 3u : 1u);
    }
    EXPECT_EQ(object.references, 0u);
}

} // namespace

TEST(interfaces, are_asked_for_by_their_names)
{
    expectQuery<unknown>("qx::intrface::unknown");
    expectQuery<fieldaccess>("qx::intrface::fieldaccess");
    expectQuery<arrayfieldaccess>("qx::intrface::arrayfieldaccess");
    expectQuery<propertyaccess>("qx::intrface::propertyaccess");
    expectQuery<restrictionsaccess>("qx::intrface::restrictionsaccess");
    expectQuery<triggerEvents>("qx::intrface::triggerEvents");
    expectQuery<relationaccess>("qx::intrface::relationaccess");
    expectQuery<transientdataaccess>("qx::intrface::transientdataaccess");
    expectQuery<messagesaccess>("qx::intrface::messagesaccess");
    expectQuery<forwardIterator>("qx::intrface::forwardIterator");
    EXPECT_STREQ(interfaceName<bidirectionalIterator>, L"qx::intrface::bidirectionalIterator");
    EXPECT_STREQ(interfaceName<backwardIterator>, L"qx::intrface::backwardIterator");
    EXPECT_STREQ(interfaceName<object>, L"qx::intrface::object");
}

// Hosts are built apart from the engine, so the order of the slots is a promise.
TEST(interfaces, keep_their_slots)
{
    const std::size_t root[] = {
        slotOf(&unknown::addRef), slotOf(&unknown::release),
        slotOf<bool (unknown::*)(const wchar_t*, const void**) const>(&unknown::queryInterface),
        slotOf<bool (unknown::*)(const wchar_t*, void**)>(&unknown::queryInterface)};
    EXPECT_THAT(root, ElementsAre(0, 1, 2, 3));
    EXPECT_EQ(slotOf(&fieldaccess::hasField), 4u);
    const auto getters =
        slotsOfGet<genericValue&, qx::timestamp*, qx::time*, qx::date*, qx::string*, double*, float*,
                   qx::ulong32*, qx::uint*, qx::ushort*, qx::long32*, int*, short*, bool*>();
    EXPECT_THAT(getters, ElementsAre(5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18));
    const auto setters = slotsOfSet<qx::timestamp, qx::time, qx::date, const qx::string&, double, float,
                                    qx::ulong32, qx::uint, qx::ushort, qx::long32, short, bool>();
    EXPECT_THAT(setters, ElementsAre(20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31));
    EXPECT_EQ(slotOf(&restrictionsaccess::getRestriction), 33u);
    EXPECT_EQ(slotOf(&arrayfieldaccess::getValue), 4u);
    EXPECT_EQ(slotOf(&propertyaccess::getLabel), 9u);
    EXPECT_EQ(slotOf(&triggerEvents::triggerFieldInfoChange), 5u);
    EXPECT_EQ(slotOf(&relationaccess::setRelation), 6u);
    EXPECT_EQ(slotOf(&relationaccess::getRelations), 8u);
    EXPECT_EQ(slotOf(&transientdataaccess::getTransientData), 6u);
    EXPECT_EQ(slotOf(&messagesaccess::removeMessage), 5u);
    EXPECT_EQ(slotOf(&forwardIterator::isEnd), 6u);
}

TEST(interfacePointers, are_as_valid_as_what_the_query_leaves)
{
    liar object;
    objectRef reference = objectRef::share(object.root());
    EXPECT_FALSE(interfaceptr<fieldaccess>(reference).isValid()); // true, but nothing given
    object.given = object.root();
    EXPECT_TRUE(interfaceptr<unknown>(static_cast<interfaceptrbase&>(reference)).isValid());
    EXPECT_EQ(object.references, 2u);

    object.throws = true;
    EXPECT_THROW(interfaceptr<fieldaccess>{reference}, bool);
    EXPECT_EQ(object.references, 2u);
}

TEST(interfacePointers, give_the_interface_of_an_object_with_several)
{
    class iterator final : public hostObject<forwardIterator, triggerEvents>
    {
    public:
        void first(unknown**) override { note("first"); }
        void next(unknown**) override { note("next"); }
        bool isEnd() override { return true; }
        bool triggerFieldChange(const wchar_t*) override { return true; }
        bool triggerFieldInfoChange(const wchar_t*) override
        {
            note("info");
            return true;
        }
    };
    iterator object;
    objectRef reference = object.share();
    interfaceptr<triggerEvents> events(reference);
    ASSERT_TRUE(events.isValid());
    object.take();
    events->triggerFieldInfoChange(L"f");
    interfaceptr<forwardIterator> back(events);
    ASSERT_TRUE(back.isValid());
    back->first(nullptr);
    const objectRef root(events); // asks, though every interface is an `unknown` already
    EXPECT_EQ(object.take(),
              (calls{"info", "qx::intrface::forwardIterator", "first", "qx::intrface::unknown"}));
    EXPECT_EQ(root.get(), object.root());
    EXPECT_EQ(object.references, 5u);
}

TEST(interfacePointers, count_one_reference_each)
{
    hostObject<unknown> first;
    hostObject<unknown> second;
    {
        objectRef shared = first.share();
        EXPECT_EQ(first.take(), calls{"addRef"});
        objectRef adopted = objectRef::adopt(second.root());
        EXPECT_EQ(second.take(), calls{});
        EXPECT_EQ(shared.getUnknown(), first.root());
        EXPECT_EQ(shared.getConstUnknown(), first.root());

        objectRef copy(shared);
        EXPECT_EQ(first.take(), calls{"addRef"}); // no query
        auto& same = copy;
        copy = same;
        EXPECT_EQ(first.take(), calls{});
        copy = shared; // the same object in another pointer
        EXPECT_EQ(first.take(), (calls{"release", "addRef"}));
        copy = adopted;
        EXPECT_EQ(first.take(), calls{"release"});
        EXPECT_EQ(second.take(), calls{"addRef"});
        copy = objectRef();
        EXPECT_EQ(second.take(), calls{"release"});
        EXPECT_FALSE(copy.isValid() || objectRef(copy).isValid() || objectRef::share(nullptr).isValid());
    }
    EXPECT_EQ(first.references, 1u);
    EXPECT_EQ(second.references, 0u); // the adopted one was the test's own
}

// The end of an object may reach the pointer that ends it.
TEST(interfacePointers, are_null_while_their_object_is_released)
{
    class watcher final : public hostObject<unknown>
    {
    public:
        qx::uint release() override
        {
            validMeanwhile = watched.isValid();
            return hostObject::release();
        }
        objectRef watched = objectRef::adopt(root());
        bool validMeanwhile = true;
    };
    watcher object;
    object.watched = objectRef();
    EXPECT_FALSE(object.validMeanwhile);
}

TEST(references, share_their_object_when_values_are_copied)
{
    hostObject<unknown> object;
    {
        const genericValue value = object.value();
        genericValue copy;
        copy = value;
        const genericValue array(qx::valueArray{copy, value});
        const qx::valueArray arrays(2, array);
        EXPECT_EQ(object.references, 1u + 2u + 3 * 2u);

        hostObject<unknown> other;
        objectRef target = other.share();
        EXPECT_TRUE(copy.getValue(target));
        EXPECT_EQ(other.references, 1u);
        EXPECT_EQ(target.getUnknown(), object.root());
        EXPECT_TRUE(genericValue(objectRef()).getValue(target)); // a null reference is a value
        EXPECT_FALSE(target.isValid());
        EXPECT_FALSE(genericValue().getValue(target));
        EXPECT_FALSE(textValue(L"text").getValue(target));
    }
    EXPECT_EQ(object.references, 1u);
}
