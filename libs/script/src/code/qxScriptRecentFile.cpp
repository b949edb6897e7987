// Loading of functions: from the cached definitions of the recent file, or by reading it anew.
#include "code/qxScriptRecentFile.h"

namespace qx::script
{

namespace
{

sharedPtr<function> parseDefinition(const scriptDefinition& definition, const file& source,
                                    const timestamp& time)
{
    return function::parse(definition.body, definition.parameters, source, time);
}

sharedPtr<function> parseFrom(const definitionTable& definitions, const string& name, const file& source,
                              const timestamp& time)
{
    const auto found = definitions.find(name);
    return found == definitions.end() ? sharedPtr<function>() : parseDefinition(found->second, source, time);
}

} // namespace

timestamp modificationTime(const file& scriptFile)
{
    return timestamp::fromTimer(scriptFile.lastModificationTime());
}

recentFile& recentFile::instance()
{
    static recentFile* const file = new recentFile;
    return *file;
}

sharedPtr<function> recentFile::load(const file& source, const string& name)
{
    const timestamp before = modificationTime(source);
    if (const sharedTable kept = definitions(source, before))
        return parseFrom(*kept, name, source, before);

    binaryBuffer text;
    const bool isRead = readScriptText(source, text); // a file that cannot be read defines nothing
    scrdefReader reader(std::move(text));
    const timestamp time = modificationTime(source);
    if (isRead && time == before && isReadAgain(source, time)) {
        const auto all = std::make_shared<definitionTable>();
        readDefinitions(reader, *all);
        keep(source, time, all);
        return parseFrom(*all, name, source, time);
    }
    scriptDefinition definition;
    const bool isFound = findDefinition(reader, name, definition);
    reader.clear();
    return isFound ? parseDefinition(definition, source, time) : sharedPtr<function>();
}

// Null for another file and where no definitions are kept.
recentFile::sharedTable recentFile::definitions(const file& source, const timestamp& time)
{
    const std::lock_guard<std::mutex> guard(mMutex);
    return mTable && isThis(source, time) ? mTable : nullptr;
}

// Remembers that the file has been read for one function. True when it is the second time.
bool recentFile::isReadAgain(const file& source, const timestamp& time)
{
    const std::lock_guard<std::mutex> guard(mMutex);
    if (isThis(source, time))
        return true;
    mName = source.fullName();
    mTime = time;
    mTable.reset();
    return false;
}

void recentFile::keep(const file& source, const timestamp& time, sharedTable table)
{
    const std::lock_guard<std::mutex> guard(mMutex);
    if (isThis(source, time))
        mTable.swap(table); // the one before ends after the mutex is released
}

// Under the mutex.
bool recentFile::isThis(const file& source, const timestamp& time) const
{
    return mTime == time && mName == source.fullName();
}

} // namespace qx::script
