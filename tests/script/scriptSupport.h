// Short ways for the tests of script files and of the code manager.
#pragma once

#include "utils/scratchDirectory.h"

#include <qxScript>

#include <chrono>

// The messages of a failure as UTF-8, outermost first.
inline std::vector<std::string> chainOf(const qx::exception& failure)
{
    std::vector<std::string> chain;
    for (const qx::locString& message : failure.messages()) {
        chain.push_back(message.text().utf8());
    }
    return chain;
}

// The chain of what `work` throws; empty when it throws nothing.
template <class Work>
std::vector<std::string> chainOfFailure(Work work)
{
    try {
        work();
    } catch (const qx::exception& failure) {
        return chainOf(failure);
    }
    return {};
}

// Runs a code call with texts as arguments, in a context of its own, and gives its result as text ("null" for
// a null value).
inline std::string runCall(const qx::string& base, const qx::string& call,
                           const std::vector<qx::string>& texts = {})
{
    std::vector<qx::genericValue> arguments;
    for (const qx::string& text : texts) {
        arguments.emplace_back(text);
    }
    qx::script::scriptcontext context;
    qx::genericValue result;
    if (!qx::script::codeManager::instance()->executeFunction(base, call, context, arguments, result)) {
        return "declined";
    }
    qx::string text;
    return result.getValue(text) ? text.utf8() : "null";
}

// A file name that no test has used: the cache of the process knows files by name alone.
inline std::string unusedName()
{
    static int number = 0;
    return "cached" + std::to_string(++number);
}

// Sets the modification time of a file, in seconds from now.
inline void setAge(const scratchDirectory& directory, const std::string& entry, int seconds)
{
    std::filesystem::last_write_time(directory.path(entry), std::filesystem::file_time_type::clock::now() +
                                                                std::chrono::seconds(seconds));
}

// Makes a directory current for the length of a test.
class currentDirectory
{
public:
    explicit currentDirectory(const std::filesystem::path& path) : mBefore(std::filesystem::current_path())
    {
        std::filesystem::current_path(path);
    }
    currentDirectory(const currentDirectory&) = delete;
    currentDirectory& operator=(const currentDirectory&) = delete;
    ~currentDirectory() { std::filesystem::current_path(mBefore); }

private:
    std::filesystem::path mBefore;
};
