// Objects of the host, made short: a base that counts and answers queries, ways between objects, references
// and values, and a walk over objects.
//
//     class customer final : public qx::host::object<qx::intrface::messagesaccess>
//     {
//     public:
//         explicit customer(const qx::string& name);
//         bool addMessage(const wchar_t* id, int severity, const qx::locString& message) override;
//         bool removeMessage(const wchar_t* id) override;
//     };
//
//     qx::refPtr<customer> buyer(new customer(L"Ada"));
//     context.createVariable(name, qx::host::valueOf(buyer)); // the script's reference counts too
//
// An object with an interface of the host's own, which other parts of the host ask for:
//
//     class printing : public qx::intrface::unknown
//     {
//     public:
//         virtual void print() = 0;
//     };
//     template <>
//     inline constexpr const wchar_t* qx::intrface::interfaceName<printing> = L"printing";
//
//     class report final : public qx::host::object<printing> { ... };
//
// Nothing here changes the contract of qxScriptInterfaces.h: an object may as well implement it by hand.
#pragma once

#include "qxScriptReference.h"

#include "qxCompiler.h"
#include "qxHolder.h"
#include "qxLocks.h"
#include "qxRefPtr.h"

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace qx::host
{

using intrface::unknown;

// A reference to an object, whatever it is: what values hold. Copies share the object; the last one to go
// ends it.
using reference = intrface::objectRef;

// Base of an object that offers these interfaces. It begins without a reference, so a refPtr takes it over
// from `new`, and deletes itself, through its virtual destructor, with the last one. An interface of the
// host's own takes part once intrface::interfaceName is specialised for it. References are counted from any
// thread; whatever else the object does is the host's to guard.
template <class First, class... More>
class object : public First, public More...
{
public:
    // An object is one thing with a count of its own: scripts and hosts share it and do not copy it.
    object(const object&) = delete;
    object& operator=(const object&) = delete;

    // unknown: counts, from any thread; the last release deletes.
    uint addRef() override { return interlockedIncrement(&mReferences); }
    uint release() override
    {
        const uint left = interlockedDecrement(&mReferences);
        if (left == 0)
            delete this;
        return left;
    }
    // Gives the interfaces of the template's list, and `unknown`; null and false for any other name.
    bool queryInterface(const wchar_t* name, const void** out) const override
    {
        return const_cast<object*>(this)->queryInterface(name, const_cast<void**>(out));
    }
    bool queryInterface(const wchar_t* name, void** out) override
    {
        *out = find(name);
        if (*out)
            addRef();
        return *out != nullptr;
    }

    // This object as the root of its interfaces. Borrowed.
    unknown* root() noexcept { return static_cast<First*>(this); }

protected:
    // For derived classes; nobody else ends an object but by its last reference.
    object() = default;
    virtual ~object() = default;

private:
    // Names of the engine's own have mostly the address of ours; only others are compared as texts.
    void* find(const wchar_t* name)
    {
        void* const found = findBy(name, [](const wchar_t* a, const wchar_t* b) { return a == b; });
        return found ? found : findByText(name);
    }
    QX_NOINLINE void* findByText(const wchar_t* name)
    {
        return findBy(name, [](const wchar_t* a, const wchar_t* b) { return std::wstring_view(a) == b; });
    }

    // The pointer to the interface of that name, as `same` compares names; null where it is not offered.
    template <class Same>
    void* findBy(const wchar_t* name, const Same& same)
    {
        void* found = nullptr;
        if (same(name, intrface::interfaceName<unknown>))
            found = root();
        else
            static_cast<void>((offer<First>(name, same, found) || ... || offer<More>(name, same, found)));
        return found;
    }

    template <class Interface, class Same>
    bool offer(const wchar_t* name, const Same& same, void*& found)
    {
        if (same(name, intrface::interfaceName<Interface>))
            found = static_cast<Interface*>(this);
        // The one interface that extends another answers to both names.
        if constexpr (std::is_same_v<Interface, intrface::restrictionsaccess>)
            if (same(name, intrface::interfaceName<intrface::fieldaccess>))
                found = static_cast<intrface::fieldaccess*>(this);
        return found != nullptr;
    }

    uint mReferences = 0; // interlocked
};

// --- Between objects, references and values ---

// A reference of its own to `object`, which may be null.
template <class T>
reference referenceTo(T* object)
{
    return object ? reference::share(object->root()) : reference();
}
template <class T>
reference referenceTo(const refPtr<T>& object)
{
    return referenceTo(object.get());
}

// The object behind a pointer that came from a script, with a reference of its own, when it is a T of this
// host; null otherwise, and for null. Works across libraries that share T's type information.
template <class T>
refPtr<T> objectOf(unknown* pointer)
{
    return refPtr<T>(dynamic_cast<T*>(pointer));
}

//     bool getRelation(const wchar_t* name, unknown** out) override
//     {
//         qx::host::handOut(mBuyer, out); // a refPtr, which may be null
//         return true;
//     }
//
// For operations that hand an object out: `*out` gets the object with one reference for the caller. `object`
// may be null.
inline void handOut(const reference& object, unknown** out)
{
    *out = object.get();
    if (*out)
        (*out)->addRef();
}
template <class T>
void handOut(T* object, unknown** out)
{
    handOut(referenceTo(object), out);
}
template <class T>
void handOut(const refPtr<T>& object, unknown** out)
{
    handOut(object.get(), out);
}

// A value of what C++ code has: held types, objects (as references), and vectors of such.
//
//     valueOf(3.5)                            a double
//     valueOf(qx::string(L"text"))            a text
//     valueOf(buyer)                          a reference to an object; a null refPtr gives a null reference
//     valueOf(std::vector<qx::string>{...})   an array, whose elements are values of their own
template <holdable T>
genericValue valueOf(const T& held)
{
    return genericValue(held);
}
inline genericValue valueOf(const genericValue& value)
{
    return value;
}
template <class T>
genericValue valueOf(const refPtr<T>& object)
{
    return genericValue(referenceTo(object));
}
template <class T>
requires(!std::is_same_v<T, genericValue>) genericValue valueOf(const std::vector<T>& elements)
{
    valueArray array;
    array.reserve(elements.size());
    for (const T& element : elements)
        array.push_back(valueOf(element));
    return genericValue(array);
}

//     qx::refPtr<customer> buyer;
//     if (!readValue(value, buyer)) ...       // no reference, or to something that is no customer
//     std::vector<int> numbers;
//     if (!readValue(value, numbers)) ...     // no array, or one with an element that is no int
//
// Reads a value as what C++ code wants, converting as scripts do. False, with `out` untouched, where it does
// not read; a reference to another class of object does not. A null reference reads as a null object.
template <readable T>
bool readValue(const genericValue& value, T& out)
{
    return value.getValue(out);
}
// A value reads as itself, whatever it holds, null included.
inline bool readValue(const genericValue& value, genericValue& out)
{
    out = value;
    return true;
}
// Types that values hold and getValue does not read: uint64, maps, handles, references to variables.
template <holdable T>
requires(!readable<T>) bool readValue(const genericValue& value, T& out)
{
    const sharedPtr<genericValue::holderbase> source = value.holderCopy();
    const sharedPtr<genericValue::holderbase> target = genericValue(T()).holderCopy();
    if (!source || !target || !source->copyTo(*target))
        return false;
    out = dynamic_cast<genericValue::holder<T>&>(*target).constValue();
    return true;
}
// An object of the host, by its class.
template <class T>
bool readValue(const genericValue& value, refPtr<T>& out)
{
    reference found;
    if (!value.getValue(found))
        return false;
    refPtr<T> object = objectOf<T>(found.getUnknown());
    if (found.isValid() && !object)
        return false;
    out = std::move(object);
    return true;
}
// An array, if every element reads as a T.
template <class T>
requires(!std::is_same_v<T, genericValue>) bool readValue(const genericValue& value, std::vector<T>& out)
{
    valueArray array;
    if (!value.getValue(array))
        return false;
    std::vector<T> elements(array.size());
    for (std::size_t i = 0; i < array.size(); ++i) {
        T element{};
        if (!readValue(array[i], element))
            return false;
        elements[i] = std::move(element);
    }
    out = std::move(elements);
    return true;
}

// --- A walk over objects ---

// Walks over the objects that it was made with, in their order. It keeps its own references, so the container
// that they came from may change or end meanwhile.
class objectIterator final : public object<intrface::forwardIterator>
{
public:
    // Null references in between are handed out as null objects.
    explicit objectIterator(std::vector<reference> objects) : mObjects(std::move(objects)) {}

    // forwardIterator: each walk begins anew, and sees the objects that there were at the beginning.
    void first(unknown** out) override
    {
        mAt = 0;
        handOutCurrent(out);
    }
    void next(unknown** out) override
    {
        if (!isEnd())
            ++mAt;
        handOutCurrent(out);
    }
    bool isEnd() override { return mAt >= mObjects.size(); }

private:
    void handOutCurrent(unknown** out)
    {
        *out = nullptr;
        if (!isEnd())
            handOut(mObjects[mAt], out);
    }

    std::vector<reference> mObjects;
    std::size_t mAt = 0;
};

// An iterator over a container of refPtr or of plain pointers to objects, for an operation that hands one
// out:
//
//     bool getRelations(const wchar_t*, unknown** out) override
//     {
//         qx::host::handOut(qx::host::iterate(mParts), out);
//         return true;
//     }
template <class Container>
refPtr<objectIterator> iterate(const Container& objects)
{
    std::vector<reference> references;
    references.reserve(std::size(objects));
    for (const auto& element : objects)
        references.push_back(referenceTo(element));
    return refPtr<objectIterator>(new objectIterator(std::move(references)));
}

} // namespace qx::host
