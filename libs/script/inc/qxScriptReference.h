// Counted, typed pointers to the host's objects, and references to such objects as values.
//
//     qx::intrface::interfaceptr<qx::intrface::unknown> object = ...; // from a value, or share(pointer)
//     qx::intrface::interfaceptr<qx::intrface::fieldaccess> fields(object);
//     if (fields.isValid() && fields->hasField(L"length"))
//
// An operation that hands out an object puts it straight into a pointer, so that nothing is lost when it
// fails:
//
//     qx::intrface::interfaceptr<qx::intrface::unknown> buyer;
//     if (relations->getRelation(L"buyer", buyer.receive())) ...
//
// A pointer that is not null owns exactly one reference, which it drops at its end. A pointer itself is for
// one thread at a time; two pointers to one object may be used by two threads, as far as the object allows
// it.
//
// A value that holds a reference is a genericValue of interfaceptr<unknown>:
//
//     qx::genericValue value(qx::intrface::interfaceptr<qx::intrface::unknown>::share(object));
//     qx::intrface::interfaceptr<qx::intrface::unknown> back;
//     if (value.getValue(back) && back.isValid()) ...
#pragma once

#include "qxScriptInterfaces.h"

namespace qx::intrface
{

// Told by every pointer that has released the last reference to an object: its end may have run anything, so
// what the thread has cached of files is looked up anew.
QXSCRIPT_API void objectEnded() noexcept;

// What all pointers have in common, whatever their interface: enough to ask the object for another one. Not
// to be derived from by hosts.
class const_interfaceptrbase
{
public:
    // False for a null pointer.
    virtual bool isValid() const = 0;
    // Borrowed; null for a null pointer.
    virtual const unknown* getConstUnknown() const = 0;

protected:
    ~const_interfaceptrbase() = default;
};

// What all pointers have in common through which the object may be changed.
class interfaceptrbase
{
public:
    // Borrowed; null for a null pointer.
    virtual unknown* getUnknown() = 0;

protected:
    ~interfaceptrbase() = default;
};

// A typed pointer to a host object. An interface of the host's own takes part once interfaceName is
// specialised for it. Instantiated by whoever uses it, and visible everywhere, so that all agree on one type.
//
// The const one is for readers: it asks the const queries, and gives const operations alone.
template <class T>
class QX_SHARED const_interfaceptr : public const_interfaceptrbase
{
    static_assert(interfaceName<T>[0] != L'\0', "the interface has no name to ask for");

public:
    // A null pointer.
    const_interfaceptr() noexcept = default;
    // Asks `object`, which may be null, for T. Null when the object declines. Whatever the query throws goes
    // on.
    explicit const_interfaceptr(const unknown* object)
    {
        const void* found = nullptr;
        if (object)
            object->queryInterface(interfaceName<T>, &found);
        mpInterface = const_cast<T*>(static_cast<const T*>(found));
    }
    // Copies share the object: one more reference, no query.
    const_interfaceptr(const const_interfaceptr& other) : mpInterface(other.mpInterface) { take(); }
    // Shares the object of `other`; to itself is nothing.
    // REQUIRED: the old object is released before the new one is taken, so `other` must not be a part of an
    // object that the release ends.
    const_interfaceptr& operator=(const const_interfaceptr& other)
    {
        if (this != &other) {
            drop();
            mpInterface = other.mpInterface;
            take();
        }
        return *this;
    }

    // The object as its interface; borrowed, null for a null pointer. `->` must not be used on that.
    bool isValid() const override { return mpInterface != nullptr; }
    const unknown* getConstUnknown() const override { return mpInterface; }
    // Drops its reference, which may end the object.
    virtual ~const_interfaceptr() { drop(); }

    // Borrowed. What is done through it is the object's to allow: no lock is taken.
    const T* get() const noexcept { return mpInterface; }
    const T* operator->() const noexcept { return mpInterface; }

protected:
    void take() const
    {
        if (mpInterface)
            mpInterface->addRef();
    }
    // Null before the release: what the end of the object calls must not find it here and release it again.
    // Counting is taken for just that, but the end of an object may run anything.
    void drop()
    {
        if (T* const dropped = mpInterface) {
            mpInterface = nullptr;
            if (dropped->release() == 0)
                objectEnded();
        }
    }

    T* mpInterface = nullptr; // one reference; null for none
};

// One whose object may be changed: the pointer that values and the engine hold.
template <class T>
class QX_SHARED interfaceptr : public const_interfaceptr<T>, public interfaceptrbase
{
public:
    // A null pointer.
    interfaceptr() noexcept = default;
    // Asks the object of `other` for T; null when there is none or it declines. `other` keeps its own
    // reference. Whatever the query throws goes on.
    explicit interfaceptr(interfaceptrbase& other)
    {
        void* found = nullptr;
        if (unknown* const object = other.getUnknown())
            object->queryInterface(interfaceName<T>, &found);
        this->mpInterface = static_cast<T*>(found);
    }
    interfaceptr(const interfaceptr& other) : const_interfaceptr<T>(other), interfaceptrbase() {}
    interfaceptr& operator=(const interfaceptr& other)
    {
        const_interfaceptr<T>::operator=(other);
        return *this;
    }

    // From a plain pointer, which may be null: `share` takes a reference of its own, `adopt` takes over the
    // caller's.
    static interfaceptr share(T* object)
    {
        interfaceptr made = adopt(object);
        made.take();
        return made;
    }
    static interfaceptr adopt(T* object)
    {
        interfaceptr made;
        made.mpInterface = object;
        return made;
    }

    // Borrowed; null for a null pointer.
    unknown* getUnknown() override { return this->mpInterface; }

    // Drops what it holds and gives the place where an operation that hands out an object puts its pointer,
    // with the reference that comes with it: null on entry, as the operations want it.
    T** receive()
    {
        this->drop();
        return &this->mpInterface;
    }

    // As those of the const pointer, for operations that change the object.
    T* get() const noexcept { return this->mpInterface; }
    T* operator->() const noexcept { return this->mpInterface; }
};

// A pointer to an object, whatever it offers: what values hold.
using objectRef = interfaceptr<unknown>;

} // namespace qx::intrface

// A `ref`: a value that holds a counted host object. Copies share the object.
template <>
inline constexpr unsigned qx::heldAs<qx::intrface::objectRef> = qx::heldInValue | qx::heldByPointer;
