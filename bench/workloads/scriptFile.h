// A script file whose functions a host calls by name.
#pragma once

#include <qxScript>

#include <vector>

namespace workloads
{

class scriptFile
{
public:
    explicit scriptFile(const qx::string& path);

    const qx::file& file() const { return mFile; }

    const qx::string& directory() const { return mDirectory; }
    // The code call of a function.
    qx::string call(const qx::string& function) const { return mCall + function; }

    // Runs a code call of this file in a context of the caller.
    qx::genericValue run(const qx::string& call, qx::script::scriptcontext& context,
                         std::vector<qx::genericValue>& arguments) const;

private:
    qx::file mFile;
    qx::string mDirectory;
    qx::string mCall; // all of a code call but the function
};

} // namespace workloads
