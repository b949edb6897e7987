// An object of a host: offers the interfaces that it is made of, counts its references and notes what it is
// asked. It lives on the test's stack, with one reference of the test's own, and never deletes itself.
#pragma once

#include <qxScript.h>

#include <string>
#include <utility>
#include <vector>

using qx::intrface::unknown;
using objectRef = qx::intrface::interfaceptr<unknown>;

template <class First, class... More>
class hostObject : public First, public More...
{
public:
    hostObject() = default;
    hostObject(const hostObject&) = delete;
    hostObject& operator=(const hostObject&) = delete;
    virtual ~hostObject() = default;

    qx::uint addRef() override
    {
        note("addRef");
        return ++references;
    }
    qx::uint release() override
    {
        note("release");
        return --references;
    }
    bool queryInterface(const wchar_t* name, const void** out) const override
    {
        note("const " + qx::string(name).utf8());
        auto& self = const_cast<hostObject&>(*this);
        *out = self.find(name);
        return *out != nullptr;
    }
    bool queryInterface(const wchar_t* name, void** out) override
    {
        note(qx::string(name).utf8());
        *out = find(name);
        return *out != nullptr;
    }

    unknown* root() { return static_cast<First*>(this); }
    objectRef share() { return objectRef::share(root()); }
    qx::genericValue value() { return qx::genericValue(share()); }

    // What happened since the last call.
    std::vector<std::string> take() { return std::exchange(mNoted, {}); }
    void note(const std::string& what) const { mNoted.push_back(what); }

    qx::uint references = 1;

private:
    void* find(const qx::string& name)
    {
        void* found = nullptr;
        if (name == qx::intrface::interfaceName<unknown>)
            found = root();
        else
            (offer<First>(name, found), ..., offer<More>(name, found));
        if (found)
            ++references;
        return found;
    }
    template <class Interface>
    void offer(const qx::string& name, void*& found)
    {
        if (name == qx::intrface::interfaceName<Interface>)
            found = static_cast<Interface*>(this);
    }

    mutable std::vector<std::string> mNoted;
};
