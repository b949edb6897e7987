// Objects of a host, as scripts find them in variables.
#pragma once

#include "host.h"
#include "recordingObject.h"

// An object that scripts know as `o`, and another as `other`. At its end nothing refers to either.
class objectWorld
{
public:
    objectWorld()
    {
        object->restriction = recordingObject::condition(qx::conditions::condition::parse(L"= 7"));
        object->handedOut = other->root();
    }
    objectWorld(const objectWorld&) = delete;
    objectWorld& operator=(const objectWorld&) = delete;
    ~objectWorld()
    {
        object->data = objectRef();
        EXPECT_EQ(object->references, 1u);
        object->release();
        EXPECT_EQ(other->references, 1u);
        other->release();
        EXPECT_EQ(recordingObject::living, 0);
    }

    void fill(scriptcontext& context) const
    {
        context.createVariable(nameOf(L"o"), object->value());
        context.createVariable(nameOf(L"other"), other->value());
    }

    // What the object was asked since the last call.
    std::string operations() const
    {
        std::string all;
        for (const std::string& one : object->take())
            all.append(all.empty() ? "" : "; ").append(one);
        return qx::string::fromUtf8(all).replace(L"qx::intrface::", L"?").utf8();
    }

    recordingObject* const object = new recordingObject;
    recordingObject* const other = new recordingObject;
};
