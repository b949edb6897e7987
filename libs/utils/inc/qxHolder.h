// The holders behind genericValue, for code that needs a held value in place and not a copy of it.
//
//     qx::sharedPtr<qx::genericValue::holderbase> shared = value.holderCopy();
//     if (auto* array = dynamic_cast<qx::genericValue::holder<qx::valueArray>*>(shared.get()))
//         array->value().push_back(element);
//
// A holder keeps its type for life; a change of type is a new holder. The identity of a type is the dynamic
// cast: equal types never reach the conversion manager. The lock of a holder guards writes and copies of its
// value; no lock is held while a conversion runs.
#pragma once

#include "qxGenericValue.h"
#include "qxTypeConversion.h"

#include <new>
#include <typeinfo>

namespace qx
{

class QXUTILS_API genericValue::holderbase
{
public:
    virtual ~holderbase();

    // A new holder of the same kind and value, owned by the caller. Null without memory.
    virtual holderbase* clone() const = 0;
    // Write this value into `destination`, and the value of `source` into this one. False when no conversion
    // does it; the written side is unchanged then.
    virtual bool copyTo(holderbase& destination) const = 0;
    virtual bool copyFrom(const holderbase& source) = 0;
    virtual const std::type_info& heldType() const = 0;
    virtual void* heldAddress() = 0;
    virtual const void* heldConstAddress() const = 0;
    // True for holders of somebody else's variable.
    virtual bool isPointerHolder() const = 0;

    // Storage of holders that live on the heap, with the use counter in front. `allocate` gives null without
    // memory.
    static void* allocate(std::size_t size) noexcept;
    static void deallocate(void* storage) noexcept;
    static void* operator new(std::size_t size) noexcept { return allocate(size); }
    static void operator delete(void* storage) noexcept { deallocate(storage); }

protected:
    holderbase() noexcept = default;
    holderbase(const holderbase&) = delete;
    holderbase& operator=(const holderbase&) = delete;
};

template <class T>
class QX_SHARED genericValue::holder : public genericValue::holderbase
{
public:
    bool copyTo(holderbase& destination) const override;
    bool copyFrom(const holderbase& source) override;
    const std::type_info& heldType() const override;

    virtual T& value() = 0;
    virtual const T& constValue() const = 0;
    virtual void assign(const T& source) = 0;
    // The same with a source that may be emptied.
    virtual void take(T&& source);

protected:
    // A copy of the value, made under the lock.
    T read() const
    {
        const genericValueHolderLocker guard(mLocker);
        return constValue();
    }

    mutable spinLockerRecursive mLocker = genericValueHolderLocker::createLocker();
};

// Owns its value: the holder of everything that stays in a genericValue.
template <class T>
class QX_SHARED genericValue::valueholder : public genericValue::holder<T>
{
public:
    explicit valueholder(const T& source) : mValue(source) {}
    explicit valueholder(T&& source) noexcept : mValue(std::move(source)) {}

    // A new holder of a copy of `source`; null without memory.
    static valueholder* make(const T& source)
    {
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
    bool isPointerHolder() const override { return false; }
    T& value() override { return mValue; }
    const T& constValue() const override { return mValue; }
    void assign(const T& source) override
    {
        if constexpr (std::is_trivially_copyable_v<T> || std::is_same_v<T, string>) {
            const genericValueHolderLocker guard(this->mLocker);
            mValue = source;
        } else {
            // The copy may fail half way, and the end of the previous value may run foreign code: neither
            // under the lock.
            take(T(source));
        }
    }
    void take(T&& source) override
    {
        const genericValueHolderLocker guard(this->mLocker);
        std::swap(mValue, source);
    }

private:
    T mValue;
};

// Writes into somebody else's variable: the receiving end of getValue.
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
    T* mTarget;
};

// Reads somebody else's variable: the sending end of setValue.
template <class T>
class QX_SHARED genericValue::constptrholder : public genericValue::holder<T>
{
public:
    // Borrows `target` for its own lifetime.
    explicit constptrholder(const T* target) noexcept : mTarget(target) {}

    holderbase* clone() const override { return new constptrholder(mTarget); }
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

// Not inline: MinGW exports only such members of an instantiated class, and the holders that a host makes
// need these.
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
    const T copy = read();
    if (destination.isPointerHolder())
        return destination.heldAddress() &&
               conversions.convert(destination.heldType(), destination.heldAddress(), typeid(T), &copy, 0,
                                   nullptr);
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
    // Converted beside the value and then assigned, so that no lock is held while the conversion runs.
    T converted = read();
    if (!conversions.convert(typeid(T), &converted, source.heldType(), source.heldConstAddress(), 0, nullptr))
        return false;
    // What was written through a reference is the variable; the reference itself stays as it is.
    if constexpr (!std::is_same_v<T, sharedPtr<genericValue>>)
        take(std::move(converted));
    return true;
}

} // namespace qx
