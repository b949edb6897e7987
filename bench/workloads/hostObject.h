// The object of the host that W7 works on; the peers' hosts have the same.
#pragma once

#include <qxScriptHost.h>

namespace workloads
{

class hostObject final : public qx::host::fieldObject<hostObject>
{
public:
    static const qx::host::fieldTable<hostObject>& fields()
    {
        static const qx::host::fieldTable<hostObject> table = {
            {L"count", &hostObject::mCount},
            {L"score", &hostObject::mScore},
            {L"name", &hostObject::mName},
        };
        return table;
    }

private:
    int mCount = 0;
    double mScore = 1.5;
    qx::string mName = L"host";
};

} // namespace workloads
