#include "scriptFile.h"

#include "measured.h"

#include <qxDirectory.h>

namespace workloads
{

scriptFile::scriptFile(const qx::string& path) : mFile(path)
{
    const qx::fsEntryName name(path);
    mDirectory = qx::directory(name.path(0)).fullName();
    mCall = L"script$" + name.name(qx::nameWithoutExtension) + L"$";
}

qx::genericValue scriptFile::run(const qx::string& call, qx::script::scriptcontext& context,
                                 std::vector<qx::genericValue>& arguments) const
{
    qx::genericValue result;
    demand(qx::script::codeManager::instance()->executeFunction(mDirectory, call, context, arguments, result),
           L"there is nothing to run");
    return result;
}

} // namespace workloads
