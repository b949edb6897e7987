// The interfaces through which scripts reach the host's objects. The host implements them, the engine calls
// them.
//
// Scripts never see a class of the host. They hold counted pointers (qxScriptReference.h) to objects that
// answer queryInterface with a wide-string name. An object offers `unknown` and whichever other interfaces it
// likes; a statement that needs one that is missing fails with a message of its own.
//
//     class part final : public qx::intrface::fieldaccess, public qx::intrface::triggerEvents
//     {
//     public:
//         bool queryInterface(const wchar_t* name, void** out) override
//         {
//             *out = nullptr;
//             if (std::wcscmp(name, qx::intrface::interfaceName<qx::intrface::fieldaccess>) == 0)
//                 *out = static_cast<qx::intrface::fieldaccess*>(this);
//             ... // and the other ones, `unknown` among them
//             if (*out)
//                 addRef();
//             return *out != nullptr;
//         }
//         ...
//     };
//
// qx::host::object (qxScriptHostObject.h) does all that by itself.
//
// For all operations: names are those of the script, never null and borrowed for the length of the call. The
// engine takes no lock around a call, but for addRef, and may call from any thread that runs a script. An
// exception ends the statement like any other failure. The order of the operations is the order of their
// slots.
#pragma once

#include "qxCondition.h"
#include "qxGenericValue.h"
#include "qxLocString.h"
#include "qxScriptExport.h"
#include "qxTimestamp.h"

namespace qx::intrface
{

// The root of every interface. Objects count their own references, interlocked, and delete themselves at
// zero.
class unknown
{
public:
    // Add and drop one reference. Both give the new count, which is for the curious: nobody may decide by it,
    // as another thread may have changed it since. Copies of values count under a lock of the value, so
    // addRef counts and does nothing else; release may run whatever the end of the object does.
    virtual uint addRef() = 0;
    virtual uint release() = 0;
    // Sets `*out` to null; if the object offers the interface, sets it to that interface's pointer, with one
    // reference for the caller, and gives true. The caller looks at the pointer alone. Every statement on an
    // object asks at least once, so a plain comparison of names is best.
    // The const form gives the same pointer to readers.
    virtual bool queryInterface(const wchar_t* name, const void** out) const = 0;
    virtual bool queryInterface(const wchar_t* name, void** out) = 0;

protected:
    ~unknown() = default;
};

// Reads and writes the named fields of an object, in the type that the script states. What `obj_get`,
// `obj_set` and their relatives need; a field is whatever the host takes for one.
// Scripts ask by `obj_has`, `obj_get`, `obj_set`, and the same with `ctxt_` for the object of the context.
class fieldaccess : public unknown
{
public:
    // Asked before each write, never before a read: to read a field that does not exist is a failure of
    // getValue.
    virtual bool hasField(const wchar_t* name) = 0;

    // Write the content of the field to `value`, which is never null. False: it cannot be read as that type.
    // What `value` holds then is not used. The first one chooses the held type itself and may leave the value
    // null; the engine does not look at its result.
    virtual bool getValue(const wchar_t* name, genericValue& value) = 0;
    virtual bool getValue(const wchar_t* name, timestamp* value) = 0;
    virtual bool getValue(const wchar_t* name, time* value) = 0;
    virtual bool getValue(const wchar_t* name, date* value) = 0;
    virtual bool getValue(const wchar_t* name, string* value) = 0;
    virtual bool getValue(const wchar_t* name, double* value) = 0;
    virtual bool getValue(const wchar_t* name, float* value) = 0;
    virtual bool getValue(const wchar_t* name, ulong32* value) = 0;
    virtual bool getValue(const wchar_t* name, uint* value) = 0;
    virtual bool getValue(const wchar_t* name, ushort* value) = 0;
    virtual bool getValue(const wchar_t* name, long32* value) = 0;
    virtual bool getValue(const wchar_t* name, int* value) = 0;
    virtual bool getValue(const wchar_t* name, short* value) = 0;
    virtual bool getValue(const wchar_t* name, bool* value) = 0;

    // The engine never calls it.
    virtual void reserved() {}

    // Write `value` to the field. False: the field does not take it, which the script is told as a failure.
    // There is none for int: the engine sends an int as long32.
    virtual bool setValue(const wchar_t* name, timestamp value) = 0;
    virtual bool setValue(const wchar_t* name, time value) = 0;
    virtual bool setValue(const wchar_t* name, date value) = 0;
    virtual bool setValue(const wchar_t* name, const string& value) = 0;
    virtual bool setValue(const wchar_t* name, double value) = 0;
    virtual bool setValue(const wchar_t* name, float value) = 0;
    virtual bool setValue(const wchar_t* name, ulong32 value) = 0;
    virtual bool setValue(const wchar_t* name, uint value) = 0;
    virtual bool setValue(const wchar_t* name, ushort value) = 0;
    virtual bool setValue(const wchar_t* name, long32 value) = 0;
    virtual bool setValue(const wchar_t* name, short value) = 0;
    virtual bool setValue(const wchar_t* name, bool value) = 0;

protected:
    ~fieldaccess() = default;
};

// Reads fields that hold arrays. Scripts get a copy; there is no operation that writes one back.
// Scripts ask by `obj_get<array>`.
class arrayfieldaccess : public unknown
{
public:
    // Fills `*value`, which is never null and empty on entry. False: the field does not exist or is no array.
    virtual bool getValue(const wchar_t* name, std::vector<genericValue>* value) = 0;

protected:
    ~arrayfieldaccess() = default;
};

// States of fields that an editor of the object shows. They say what the user may do, and bind nobody: what a
// script may write is for fieldaccess to decide.
// Scripts set by `obj_setenabled`, `obj_setdisabled`, `obj_setconstant`, `obj_setlabel` and
// `obj_setlabelswitch`, and ask by `obj_isenabled`, `obj_isdisabled`, `obj_isconstant` and `obj_label`.
class propertyaccess : public unknown
{
public:
    // The engine does not look at the results of the three that set; false is meant for a field that does not
    // exist. The three that ask give false, or an empty text, for such a field.
    //
    // A disabled field is shown, and not to be used for the moment.
    virtual bool setDisabled(const wchar_t* name, bool disabled) = 0;
    virtual bool isDisabled(const wchar_t* name) = 0;
    // A constant field is shown, and never changed by the user.
    virtual bool setConstant(const wchar_t* name, bool constant) = 0;
    virtual bool isConstant(const wchar_t* name) = 0;
    // What stands beside the field, in the user's language.
    virtual bool setLabel(const wchar_t* name, const string& label) = 0;
    virtual string getLabel(const wchar_t* name) = 0;

protected:
    ~propertyaccess() = default;
};

// Conditions that the values of fields have to meet (qxCondition.h). Who checks them, and when, is the host's
// affair: an editor mostly, before it takes what the user has typed. An object that offers it answers to
// fieldaccess too, with the same pointer.
// Scripts set by `obj_setrestriction` and try a field against its condition by `obj_isfieldvalid`.
class restrictionsaccess : public fieldaccess
{
public:
    // Keeps the condition, shared with the script's own value. The engine does not look at the result.
    virtual bool setRestriction(const wchar_t* name, const sharedPtr<conditions::condition>& restriction) = 0;
    // The condition that is kept, shared. Null when the field has none.
    virtual sharedPtr<conditions::condition> getRestriction(const wchar_t* name) = 0;

protected:
    ~restrictionsaccess() = default;
};

// Tells the observers of an object that a field has changed. Writing a field tells nobody by itself: a script
// says when it is done. The engine does not look at the results.
// Scripts tell by `obj_triggerfieldchange` and `obj_triggerfieldinfochange`.
class triggerEvents : public unknown
{
public:
    // The content of the field.
    virtual bool triggerFieldChange(const wchar_t* name) = 0;
    // What is known of the field besides: its label, its states.
    virtual bool triggerFieldInfoChange(const wchar_t* name) = 0;

protected:
    ~triggerEvents() = default;
};

// Named links from an object to others. A relation has one end, which may be empty, or several, which scripts
// read through an iterator.
// Scripts ask by `obj_getrelation` and `obj_getrelations`, and link by `obj_setrelation`.
class relationaccess : public unknown
{
public:
    // Asked before each of the others; a relation that does not exist is a failure of the script.
    virtual bool hasRelation(const wchar_t* name) = 0;
    // Sets `*out`, null on entry, to the object at the other end, with one reference for the caller, and
    // gives true; null there is an empty relation. On false `*out` stays null.
    virtual bool getRelation(const wchar_t* name, unknown** out) = 0;
    // Links to `object`, or to nothing where it is null. Takes a reference of its own if it keeps the
    // pointer. False: the relation does not take it.
    virtual bool setRelation(const wchar_t* name, unknown* object) = 0;
    // The engine never calls it.
    virtual void reserved() {}
    // As getRelation, for a relation with several ends: hands out one object that stands for all of them and
    // that scripts walk, normally a forwardIterator.
    virtual bool getRelations(const wchar_t* name, unknown** out) = 0;

protected:
    ~relationaccess() = default;
};

// Objects that are attached to an object under a name for a while and are no part of it: what a script or a
// part of the host wants to find again where the object turns up next. They are not stored with the object.
// Scripts use `obj_hastransientdata`, `obj_gettransientdata` and `obj_settransientdata`, or `ctxt_` in place
// of `obj_`. A value that is no object travels in an object of the engine, which the host keeps like any
// other.
class transientdataaccess : public unknown
{
public:
    // False too where data was removed again.
    virtual bool hasTransientData(const wchar_t* name) = 0;
    // Takes a reference of its own if it keeps the pointer; null removes what is there. False: not taken.
    virtual bool setTransientData(const wchar_t* name, unknown* data) = 0;
    // As relationaccess::getRelation.
    virtual bool getTransientData(const wchar_t* name, unknown** out) = 0;

protected:
    ~transientdataaccess() = default;
};

// Messages that the user sees at an object, such as what an editor shows beside a field. The engine does not
// look at the results.
// Scripts use `objmsg_add` and `objmsg_remove`.
class messagesaccess : public unknown
{
public:
    // A copy of `message` is shown under `id`, by which it is removed; a second one under the same id is the
    // host's to sort out. `severity` is what the script gave; its meaning is the host's.
    virtual bool addMessage(const wchar_t* id, int severity, const locString& message) = 0;
    // Ends what is shown under `id`, if anything.
    virtual bool removeMessage(const wchar_t* id) = 0;

protected:
    ~messagesaccess() = default;
};

// A walk over objects, behind `for_each` and the statements that make arrays of objects. Every caller does:
// `first`; while not `isEnd`: use the element, `next`. A second walk begins with `first` again, and must give
// as many elements as the one before.
// Any object with it may stand for a collection in `for_each` and `createarray`.
class forwardIterator : public unknown
{
public:
    // Moves to the first element and sets `*out`, null on entry, to it, with one reference for the caller.
    // Without an element `*out` stays null and isEnd becomes true.
    virtual void first(unknown** out) = 0;
    // Moves to the element after the current one, and hands it out as `first` does.
    virtual void next(unknown** out) = 0;
    // True when there is no current element.
    virtual bool isEnd() = 0;

protected:
    ~forwardIterator() = default;
};

// Interfaces that hosts define among themselves; the engine knows their names alone.
class bidirectionalIterator;
class backwardIterator;
class object;

// The name by which an interface is asked for. An interface of a host's own needs one to take part in
// interfaceptr and qx::host::object:
//
//     template <>
//     inline constexpr const wchar_t* qx::intrface::interfaceName<printing> = L"printing";
//
template <class T>
inline constexpr const wchar_t* interfaceName = nullptr;
// The texts have one address for all who share this library, where the system's loader sees to that: equal
// addresses are equal names, different ones say nothing.
namespace names
{
inline constexpr QX_SHARED wchar_t unknown[] = L"qx::intrface::unknown";
inline constexpr QX_SHARED wchar_t fieldaccess[] = L"qx::intrface::fieldaccess";
inline constexpr QX_SHARED wchar_t arrayfieldaccess[] = L"qx::intrface::arrayfieldaccess";
inline constexpr QX_SHARED wchar_t propertyaccess[] = L"qx::intrface::propertyaccess";
inline constexpr QX_SHARED wchar_t restrictionsaccess[] = L"qx::intrface::restrictionsaccess";
inline constexpr QX_SHARED wchar_t triggerEvents[] = L"qx::intrface::triggerEvents";
inline constexpr QX_SHARED wchar_t relationaccess[] = L"qx::intrface::relationaccess";
inline constexpr QX_SHARED wchar_t transientdataaccess[] = L"qx::intrface::transientdataaccess";
inline constexpr QX_SHARED wchar_t messagesaccess[] = L"qx::intrface::messagesaccess";
inline constexpr QX_SHARED wchar_t forwardIterator[] = L"qx::intrface::forwardIterator";
inline constexpr QX_SHARED wchar_t bidirectionalIterator[] = L"qx::intrface::bidirectionalIterator";
inline constexpr QX_SHARED wchar_t backwardIterator[] = L"qx::intrface::backwardIterator";
inline constexpr QX_SHARED wchar_t object[] = L"qx::intrface::object";
} // namespace names

template <>
inline constexpr const wchar_t* interfaceName<unknown> = names::unknown;
template <>
inline constexpr const wchar_t* interfaceName<fieldaccess> = names::fieldaccess;
template <>
inline constexpr const wchar_t* interfaceName<arrayfieldaccess> = names::arrayfieldaccess;
template <>
inline constexpr const wchar_t* interfaceName<propertyaccess> = names::propertyaccess;
template <>
inline constexpr const wchar_t* interfaceName<restrictionsaccess> = names::restrictionsaccess;
template <>
inline constexpr const wchar_t* interfaceName<triggerEvents> = names::triggerEvents;
template <>
inline constexpr const wchar_t* interfaceName<relationaccess> = names::relationaccess;
template <>
inline constexpr const wchar_t* interfaceName<transientdataaccess> = names::transientdataaccess;
template <>
inline constexpr const wchar_t* interfaceName<messagesaccess> = names::messagesaccess;
template <>
inline constexpr const wchar_t* interfaceName<forwardIterator> = names::forwardIterator;
template <>
inline constexpr const wchar_t* interfaceName<bidirectionalIterator> = names::bidirectionalIterator;
template <>
inline constexpr const wchar_t* interfaceName<backwardIterator> = names::backwardIterator;
template <>
inline constexpr const wchar_t* interfaceName<object> = names::object;

} // namespace qx::intrface
