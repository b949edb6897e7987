// The holders behind genericValue, for code that needs a held value in place and not a copy
// of it.
//
//     qx::sharedPtr<qx::genericValue::holderbase> shared = value.holderCopy();
//     if (auto* array = dynamic_cast<qx::genericValue::holder<qx::valueArray>*>(shared.get()))
//         array->value().push_back(element);
//
// Appending to an array by getValue and setValue would copy the whole array twice; this
// copies one element. For small values the other way is the cheaper one, as they have no
// holder until somebody asks for it.
//
// A holder keeps its type for life; a change of type is a new holder. The identity of a
// type is the dynamic cast: equal types never reach the conversion manager.
//
// Ownership: holders are counted (sharedPtr) and owned by whoever shares them. The value
// above may be replaced meanwhile; `array` stays valid as long as `shared`, apart from the
// value then.
//
// Threads: the lock of a holder guards writes and copies of its value as a whole. Who works
// in place, as above, has to keep other threads away. No lock is held while a conversion
// runs or anything of a host's may run.
//
// Failures: a holder for which there is no memory is null. A conversion that is refused is
// the result false, and the written side is as before.
#pragma once

#include "qxGenericValue.h"
#include "qxTypeConversion.h"

#include <new>
#include <typeinfo>

namespace qx
{

// What all holders have in common, whatever their type.
class QXUTILS_API genericValue::holderbase
{
public:
    virtual ~holderbase();

    // A new holder of the same kind and value, owned by the caller. Null without memory.
    // Throws what copying the value throws.
    virtual holderbase* clone() const = 0;
    // Write this value into `destination`, and the value of `source` into this one; they
    // differ in whose type is asked first. A holder of the same type takes the value as it
    // is, any other by the conversion manager. False when no conversion does it; the
    // written side is unchanged then. Neither replaces a held type.
    virtual bool copyTo(holderbase& destination) const = 0;
    virtual bool copyFrom(const holderbase& source) = 0;
    // The type that is held, and where it lies: borrowed, as long as the holder.
    // heldAddress is null where the value cannot be written, and may be null in pointer
    // holders.
    virtual const std::type_info& heldType() const = 0;
    virtual void* heldAddress() = 0;
    virtual const void* heldConstAddress() const = 0;
    // True for holders of somebody else's variable, which live on the stack for the length
    // of one operation.
    virtual bool isPointerHolder() const = 0;

    // Storage of holders that live on the heap, with the use counter in front; see
    // counterPlace. `allocate` gives null without memory, so `new` of a holder does.
    // `deallocate` ignores null. Any thread may give back what another took.
    static void* allocate(std::size_t size) noexcept;
    static void deallocate(void* storage) noexcept;
    static void* operator new(std::size_t size) noexcept { return allocate(size); }
    static void operator delete(void* storage) noexcept { deallocate(storage); }

protected:
    holderbase() noexcept = default;
    holderbase(const holderbase&) = delete;
    holderbase& operator=(const holderbase&) = delete;
};

// A holder of a T, wherever the T lies:
//
//     class           the value lies                 clone()            writes
//     valueholder     in the holder, on the heap     copies the value   replace it
//     ptrholder       in a variable of the caller    names the same     go into that variable
//     constptrholder  in a variable of the caller    names the same     are lost
//
// The class is the identity of the type: a holderbase that is a holder<T> holds a T, and
// dynamic_cast is how to ask. T is copied, assigned and moved; its operations may throw,
// which then passes on to whoever asked, with the value as it was.
template <class T>
class QX_SHARED genericValue::holder : public genericValue::holderbase
{
public:
    // One pair of copyTo and copyFrom for all types: the dynamic cast tells the same type,
    // and the conversion manager is asked for any other.
    bool copyTo(holderbase& destination) const override;
    bool copyFrom(const holderbase& source) override;
    const std::type_info& heldType() const override;

    // The value in place; without the lock, see above. `value` of a read-only variable
    // throws the bool value false.
    virtual T& value() = 0;
    // The value in place, to be read. As `value`, without the lock.
    virtual const T& constValue() const = 0;
    // Writes the value, under the lock.
    virtual void assign(const T& source) = 0;
    // assign with a source that may be emptied.
    virtual void take(T&& source);

protected:
    // A copy of the value, made under the lock: what other threads write meanwhile is in it
    // as a whole or not at all.
    T read() const
    {
        const genericValueHolderLocker guard(mLocker);
        return constValue();
    }

    // Guards the value against reads and writes as a whole. Recursive, since the destructor
    // of what is replaced may come back to this holder.
    mutable spinLockerRecursive mLocker = genericValueHolderLocker::createLocker();
};

// Owns its value: the holder of everything that stays in a genericValue. Lives on the heap,
// behind a sharedPtr.
template <class T>
class QX_SHARED genericValue::valueholder : public genericValue::holder<T>
{
public:
    // Copies or takes the value over.
    explicit valueholder(const T& source) : mValue(source) {}
    explicit valueholder(T&& source) noexcept : mValue(std::move(source)) {}

    // A new holder of a copy of `source`; null without memory.
    static valueholder* make(const T& source)
    {
        // Values that find no memory are null, and null holders are how that is told.
        try {
            return new valueholder(source);
        } catch (const std::bad_alloc&) {
            return nullptr;
        }
    }

    holderbase* clone() const override
    {
        const genericValueHolderLocker guard(this->mLocker);
        return make(mValue);
    }
    void* heldAddress() override { return &mValue; }
    const void* heldConstAddress() const override { return &mValue; }
    // Shared like any object: the address stays good as long as the holder.
    bool isPointerHolder() const override { return false; }
    T& value() override { return mValue; }
    const T& constValue() const override { return mValue; }
    // Under the lock where the copy cannot fail half way and ends nothing foreign.
    void assign(const T& source) override
    {
        if constexpr (std::is_trivially_copyable_v<T> || std::is_same_v<T, string>) {
            const genericValueHolderLocker guard(this->mLocker);
            mValue = source;
        } else {
            // The copy may fail half way, and the end of the previous value may run foreign
            // code: neither under the lock.
            take(T(source));
        }
    }
    void take(T&& source) override
    {
        const genericValueHolderLocker guard(this->mLocker);
        // The value before leaves in `source` and ends there, after the lock is given back.
        std::swap(mValue, source);
    }

private:
    // Guarded by the lock of the holder.
    T mValue;
};

// Writes into somebody else's variable: the receiving end of getValue.
//
//     double number = 0;
//     qx::genericValue::ptrholder<double> target(&number);
//     if (shared->copyTo(target)) ... // converted, whatever `shared` holds
template <class T>
class QX_SHARED genericValue::ptrholder : public genericValue::holder<T>
{
public:
    // Borrows `target` for its own lifetime. Null takes every write without effect.
    explicit ptrholder(T* target) noexcept : mTarget(target) {}

    holderbase* clone() const override { return new ptrholder(mTarget); }
    void* heldAddress() override { return mTarget; }
    const void* heldConstAddress() const override { return mTarget; }
    bool isPointerHolder() const override { return true; }
    T& value() override { return *mTarget; }
    const T& constValue() const override { return *mTarget; }
    void assign(const T& source) override
    {
        const genericValueHolderLocker guard(this->mLocker);
        if (mTarget)
            *mTarget = source;
    }
    void take(T&& source) override
    {
        const genericValueHolderLocker guard(this->mLocker);
        if (mTarget)
            *mTarget = std::move(source);
    }

private:
    // The variable, which is not owned; null for none.
    T* mTarget;
};

// Reads somebody else's variable: the sending end of setValue. What is written into it is
// lost, and writes tell so where they can.
template <class T>
class QX_SHARED genericValue::constptrholder : public genericValue::holder<T>
{
public:
    // Borrows `target` for its own lifetime.
    explicit constptrholder(const T* target) noexcept : mTarget(target) {}

    holderbase* clone() const override { return new constptrholder(mTarget); }
    // Not to be written.
    void* heldAddress() override { return nullptr; }
    const void* heldConstAddress() const override { return mTarget; }
    bool isPointerHolder() const override { return true; }
    // Throws the bool value false: the variable cannot be written.
    T& value() override { throw false; }
    const T& constValue() const override { return *mTarget; }
    // Does nothing.
    void assign(const T&) override {}

private:
    const T* mTarget;
};

// Not inline: MinGW exports only such members of an instantiated class, and the holders
// that a host makes need these.
template <class T>
const std::type_info& genericValue::holder<T>::heldType() const
{
    return typeid(T);
}

template <class T>
void genericValue::holder<T>::take(T&& source)
{
    assign(source);
}

template <class T>
bool genericValue::holder<T>::copyTo(holderbase& destination) const
{
    if (auto* same = dynamic_cast<holder<T>*>(&destination)) {
        same->take(read());
        return true;
    }
    const typeconvert::typeConversionManager& conversions = typeconvert::typeConversionManager::instance();
    if (!conversions.exists(destination.heldType(), typeid(T)))
        return false;
    // Converted from a copy, so that no lock is held while the conversion runs.
    const T copy = read();
    // A variable of the caller is converted into in place; nobody else can see it.
    if (destination.isPointerHolder())
        return destination.heldAddress() &&
               conversions.convert(destination.heldType(), destination.heldAddress(), typeid(T), &copy, 0,
                                   nullptr);
    // A stored value converts itself: it knows how its own type is written.
    if constexpr (holdable<T>)
        return destination.copyFrom(valueholder<T>(copy));
    else
        return false;
}

template <class T>
bool genericValue::holder<T>::copyFrom(const holderbase& source)
{
    if (const auto* same = dynamic_cast<const holder<T>*>(&source)) {
        take(same->read());
        return true;
    }
    const typeconvert::typeConversionManager& conversions = typeconvert::typeConversionManager::instance();
    if (isPointerHolder())
        return heldAddress() && conversions.convert(typeid(T), heldAddress(), source.heldType(),
                                                    source.heldConstAddress(), 0, nullptr);
    // Converted beside the value and then assigned, so that no lock is held while the
    // conversion runs.
    T converted = read();
    if (!conversions.convert(typeid(T), &converted, source.heldType(), source.heldConstAddress(), 0, nullptr))
        return false;
    // What was written through a reference is the variable; the reference itself stays as
    // it is.
    if constexpr (!std::is_same_v<T, sharedPtr<genericValue>>)
        take(std::move(converted));
    return true;
}

} // namespace qx
