// An object of a host: offers the interfaces that it is made of, counts its references and notes what it is
// asked. It lives on the test's stack, with one reference of the test's own, and never deletes itself. A
// quiet one notes nothing, and may be used from several threads.
#pragma once

#include <qxScript.h>

#include <gtest/gtest.h>

#include <functional>
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
        return qx::interlockedIncrement(&references);
    }
    qx::uint release() override
    {
        note("release");
        return qx::interlockedDecrement(&references);
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
    void note(const std::string& what) const
    {
        whenAsked();
        if (!isQuiet)
            mNoted.push_back(what);
    }

    qx::uint references = 1;
    bool isQuiet = false;
    std::function<void()> whenAsked = [] {}; // runs within every operation

private:
    void* find(const qx::string& name)
    {
        void* found = nullptr;
        if (name == qx::intrface::interfaceName<unknown>)
            found = root();
        else
            (offer<First>(name, found), ..., offer<More>(name, found));
        if (found)
            qx::interlockedIncrement(&references);
        return found;
    }
    template <class Interface>
    void offer(const qx::string& name, void*& found)
    {
        if (name == qx::intrface::interfaceName<Interface>)
            found = static_cast<Interface*>(this);
        if constexpr (std::is_same_v<Interface, qx::intrface::restrictionsaccess>)
            offer<qx::intrface::fieldaccess>(name, found);
    }

    mutable std::vector<std::string> mNoted;
};

// Walks over objects of the test; null ones are allowed.
class hostIterator final : public hostObject<qx::intrface::forwardIterator>
{
public:
    explicit hostIterator(std::vector<hostObject<unknown>*> objects) : mObjects(std::move(objects)) {}

    void first(unknown** out) override
    {
        note("first");
        mAt = 0;
        give(out);
    }
    void next(unknown** out) override
    {
        note("next");
        ++mAt;
        give(out);
        if (--movesLeft == 0)
            throw qx::unexpectedErrorException(L"iterator broken");
    }
    bool isEnd() override
    {
        whenAsked();
        return mAt >= mObjects.size();
    }

    int movesLeft = -1; // moves until one throws

private:
    void give(unknown** out)
    {
        EXPECT_EQ(*out, nullptr);
        if (isEnd() || !mObjects[mAt])
            return;
        mObjects[mAt]->addRef();
        *out = mObjects[mAt]->root();
    }

    std::vector<hostObject<unknown>*> mObjects;
    std::size_t mAt = 0;
};
