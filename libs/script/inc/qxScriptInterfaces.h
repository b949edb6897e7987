// The contract with the host's objects.
//
// Scripts never see a class of the host. They hold counted pointers to objects that answer queryInterface
// with a wide-string name. An object offers `unknown` and whichever other interfaces it likes.
#pragma once

#include "qxGenericValue.h"
#include "qxScriptExport.h"

namespace qx::intrface
{

// The root of every interface. Objects count their own references, interlocked, and delete themselves at
// zero.
class unknown
{
public:
    // Give the new count.
    virtual uint addRef() = 0;
    virtual uint release() = 0;
    // Sets `*out` to null; if the object offers the interface, sets it to that interface's pointer, with one
    // reference for the caller, and gives true. The caller looks at the pointer alone.
    virtual bool queryInterface(const wchar_t* name, const void** out) const = 0;
    virtual bool queryInterface(const wchar_t* name, void** out) = 0;

protected:
    ~unknown() = default;
};

// The name by which an interface is asked for.
template <class T>
inline constexpr const wchar_t* interfaceName = nullptr;
template <>
inline constexpr const wchar_t* interfaceName<unknown> = L"qx::intrface::unknown";

class const_interfaceptrbase
{
public:
    virtual bool isValid() const = 0;
    virtual const unknown* getConstUnknown() const = 0;

protected:
    ~const_interfaceptrbase() = default;
};

class interfaceptrbase
{
public:
    virtual unknown* getUnknown() = 0;

protected:
    ~interfaceptrbase() = default;
};

// A typed pointer to a host object. One that is not null owns exactly one reference.
template <class T>
class QX_SHARED const_interfaceptr : public const_interfaceptrbase
{
public:
    const_interfaceptr() noexcept = default;
    // Asks `object`, which may be null, for T.
    explicit const_interfaceptr(const unknown* object)
    {
        const void* found = nullptr;
        if (object)
            object->queryInterface(interfaceName<T>, &found);
        mpInterface = const_cast<T*>(static_cast<const T*>(found));
    }
    // Copies share the object: one more reference, no query.
    const_interfaceptr(const const_interfaceptr& other) : mpInterface(other.mpInterface) { take(); }
    const_interfaceptr& operator=(const const_interfaceptr& other)
    {
        if (this != &other) {
            drop();
            mpInterface = other.mpInterface;
            take();
        }
        return *this;
    }

    bool isValid() const override { return mpInterface != nullptr; }
    const unknown* getConstUnknown() const override { return mpInterface; }
    virtual ~const_interfaceptr() { drop(); }

    const T* get() const noexcept { return mpInterface; }
    const T* operator->() const noexcept { return mpInterface; }

protected:
    void take() const
    {
        if (mpInterface)
            mpInterface->addRef();
    }
    void drop()
    {
        if (T* const dropped = mpInterface) {
            mpInterface = nullptr;
            dropped->release();
        }
    }

    T* mpInterface = nullptr;
};

template <class T>
class QX_SHARED interfaceptr : public const_interfaceptr<T>, public interfaceptrbase
{
public:
    interfaceptr() noexcept = default;
    // Asks the object of `other` for T; null when there is none or it declines.
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

    unknown* getUnknown() override { return this->mpInterface; }

    T* get() const noexcept { return this->mpInterface; }
    T* operator->() const noexcept { return this->mpInterface; }
};

extern template class QXSCRIPT_API const_interfaceptr<unknown>;
extern template class QXSCRIPT_API interfaceptr<unknown>;

} // namespace qx::intrface

// A `ref`: a value that holds a counted host object. Copies share the object.
template <>
inline constexpr unsigned qx::heldAs<qx::intrface::interfaceptr<qx::intrface::unknown>> =
    qx::heldInValue | qx::heldByPointer;
