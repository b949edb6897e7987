// The one door through which statements ask the objects of a host.
#pragma once

#include "contexts/qxScriptEpoch.h"
#include "qxScriptReference.h"
#include "qxScriptStatement.h"

namespace qx::script
{

using intrface::objectRef;

// A pointer to the interface T of an object. Whatever is asked may have run anything, so each call moves the
// epoch once it is done: an operand that is evaluated later may call a function of a file that has changed.
template <class T>
class askedObject
{
public:
    // Asks `object` for T; null when there is none or it declines.
    explicit askedObject(objectRef& object) : mPointer(object) { epoch::move(); }

    bool isValid() const { return mPointer.isValid(); }

    // Lasts to the end of the call.
    class call
    {
    public:
        explicit call(T* object) noexcept : mpObject(object) {}
        call(const call&) = delete;
        call& operator=(const call&) = delete;
        ~call() { epoch::move(); }
        T* operator->() const noexcept { return mpObject; }

    private:
        T* mpObject;
    };
    call operator->() const noexcept { return call(mPointer.get()); }

    // For operations that are not named here: `use` gets the interface, for the length of its work.
    template <class Use>
    decltype(auto) ask(const Use& use) const
    {
        const call asked(mPointer.get());
        return use(*mPointer.get());
    }

private:
    intrface::interfaceptr<T> mPointer;
};

// The interface T of an object. `failure` is that of `asking` where the object does not offer it.
template <class T>
askedObject<T> requireInterface(const statement* asking, objectRef& object, const wchar_t* failure)
{
    askedObject<T> found(object);
    if (!found.isValid())
        statement::execError(asking, failure);
    return found;
}

} // namespace qx::script
