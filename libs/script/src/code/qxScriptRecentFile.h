// The script file from which a function was loaded last, with all its definitions.
#pragma once

#include "code/qxScriptFile.h"
#include "code/qxScriptFunction.h"

#include <memory>
#include <mutex>

namespace qx::script
{

timestamp modificationTime(const file& scriptFile);

// Loads functions. Without a cache of definitions, loading all functions of a file costs the square of their
// number; with it, the file is cut once, when its second function is asked for. The entry is valid as long as
// the file has the time that it had before and after it was read. Safe from several threads.
class recentFile
{
public:
    // The one of the process; never destroyed, since scripts may run to the end.
    static recentFile& instance();

    // Loads one function. A null pointer when the file does not define it, or without a statement. Throws
    // what reading and parsing throw.
    sharedPtr<function> load(const file& source, const string& name);

private:
    using sharedTable = std::shared_ptr<const definitionTable>;

    sharedTable definitions(const file& source, const timestamp& time);
    bool isReadAgain(const file& source, const timestamp& time);
    void keep(const file& source, const timestamp& time, sharedTable table);
    bool isThis(const file& source, const timestamp& time) const;

    std::mutex mMutex; // guards what follows
    string mName;
    timestamp mTime;
    sharedTable mTable; // null: one function alone has been read so far
};

} // namespace qx::script
