// A host object that offers every interface of the object statements. It notes each operation with its
// arguments, answers from what the test has put into it, and ends itself with its last reference.
#pragma once

#include "hostObject.h"
#include "valueText.h"

#include <qxHeldTypes.h>

#include <functional>
#include <map>

class recordingObject final
    : public hostObject<qx::intrface::restrictionsaccess, qx::intrface::arrayfieldaccess,
                        qx::intrface::propertyaccess, qx::intrface::triggerEvents,
                        qx::intrface::relationaccess, qx::intrface::transientdataaccess,
                        qx::intrface::messagesaccess>
{
public:
    using named = const wchar_t*;
    using condition = qx::sharedPtr<qx::conditions::condition>;

    recordingObject() { ++living; }
    ~recordingObject() override { --living; }
    inline static int living = 0;

    qx::uint release() override
    {
        const qx::uint left = qx::interlockedDecrement(&references);
        if (left == 0)
            delete this;
        return left;
    }
    qx::uint addRef() override { return qx::interlockedIncrement(&references); }
    bool queryInterface(named name, void** out) override
    {
        if (name == refused) {
            *out = nullptr;
            return false;
        }
        return hostObject::queryInterface(name, out);
    }
    using hostObject::queryInterface;

    // What it answers with.
    qx::string refused; // an interface that it does not offer
    bool succeeds = true;
    bool hasIt = true;
    qx::genericValue content{qx::string(L"7")}; // of each field, converted into what is asked for; null fails
    condition restriction;                      // of each field
    unknown* handedOut = nullptr;            // with a reference of its own, by whatever hands out an object
    std::function<void()> meanwhile = [] {}; // runs at the end of every operation
    objectRef data;                          // the transient data

    bool hasField(named name) override { return asked("hasField", name); }
    bool getValue(named name, qx::genericValue& value) override
    {
        value = content;
        return done("getValue<generic>", name);
    }
    bool getValue(named name, qx::valueArray* value) override { return get(name, value); }
    bool setRestriction(named name, const condition& given) override
    {
        restriction = given;
        return !done("setRestriction", name, given ? "condition" : "null");
    }
    condition getRestriction(named name) override
    {
        done("getRestriction", name);
        return restriction;
    }
    bool setDisabled(named name, bool on) override { return !done("setDisabled", name, flag(on)); }
    bool isDisabled(named name) override { return asked("isDisabled", name); }
    bool setConstant(named name, bool on) override { return !done("setConstant", name, flag(on)); }
    bool isConstant(named name) override { return asked("isConstant", name); }
    bool setLabel(named name, const qx::string& label) override
    {
        return !done("setLabel", name, quotedText(label));
    }
    qx::string getLabel(named name) override
    {
        done("getLabel", name);
        return L"7";
    }
    bool triggerFieldChange(named name) override { return !done("triggerFieldChange", name); }
    bool triggerFieldInfoChange(named name) override { return !done("triggerFieldInfoChange", name); }
    bool hasRelation(named name) override { return asked("hasRelation", name); }
    bool getRelation(named name, unknown** out) override { return give("getRelation", name, out); }
    bool getRelations(named name, unknown** out) override { return give("getRelations", name, out); }
    bool setRelation(named name, unknown* object) override
    {
        return done("setRelation", name, object ? "object" : "null");
    }
    bool hasTransientData(named name) override { return asked("hasTransientData", name); }
    bool setTransientData(named name, unknown* given) override
    {
        data = objectRef::share(given);
        return done("setTransientData", name, given ? "object" : "null");
    }
    bool getTransientData(named name, unknown** out) override
    {
        return give("getTransientData", name, out, data.isValid() ? data.get() : handedOut);
    }

    bool addMessage(named id, int severity, const qx::locString& message) override
    {
        const bool isEmpty = !message.string(nullptr, qx::searchPath());
        return !done("addMessage", id,
                     std::to_string(severity) + ' ' + (isEmpty ? "empty" : message.text().utf8()));
    }
    bool removeMessage(named id) override { return !done("removeMessage", id); }

#define QX_GET(T)                                                                                            \
    bool getValue(named name, std::add_pointer_t<T> value) override                                          \
    {                                                                                                        \
        return get(name, value);                                                                             \
    }
#define QX_SET(T) QX_SET_GIVEN(T, T)
#define QX_SET_GIVEN(T, GIVEN)                                                                               \
    bool setValue(named name, GIVEN value) override                                                          \
    {                                                                                                        \
        return done("setValue", name, valueText(qx::genericValue(value)));                                   \
    }
    QX_FIELD_TYPES(QX_GET)
    QX_SET(bool)
    QX_SET(short)
    QX_SET(qx::long32)
    QX_SET(qx::ushort)
    QX_SET(qx::uint)
    QX_SET(qx::ulong32)
    QX_FLOATING_TYPES(QX_SET)
    QX_CALENDAR_TYPES(QX_SET)
    QX_SET_GIVEN(qx::string, const qx::string&)

private:
    static std::string flag(bool on)
    {
        return on ? "true" : "false";
    }

    bool done(const std::string& operation, named name, const std::string& argument = "")
    {
        note(operation + ' ' + qx::string(name).utf8() + (argument.empty() ? "" : ' ' + argument));
        const auto now = meanwhile; // which may be replaced while it runs
        now();
        return succeeds;
    }
    bool asked(const char* question, named name)
    {
        done(question, name);
        return hasIt;
    }
    template <class T>
    bool get(named name, T* value)
    {
        const std::string before = valueText(qx::genericValue(*value));
        if (!content.isNull())
            content.getValue(*value);
        return done("getValue", name, "over " + before);
    }
    bool give(const char* operation, named name, unknown** out)
    {
        return give(operation, name, out, handedOut);
    }
    bool give(const char* operation, named name, unknown** out, unknown* given)
    {
        EXPECT_EQ(*out, nullptr);
        *out = given;
        if (given)
            given->addRef();
        return done(operation, name);
    }
};
