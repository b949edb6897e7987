// Short ways for the tests of script files and of the code manager.
#pragma once

#include "utils/fakeSystem.h"
#include "utils/scratchDirectory.h"
#include "valueText.h"

#include <qxScript>

#include <atomic>
#include <chrono>
#include <thread>

// The chain of what `work` throws, as failureOf gives it, in UTF-8.
template <class Work>
std::vector<std::string> chainOfFailure(const Work& work)
{
    std::vector<std::string> chain;
    for (const qx::string& text : failureOf(work))
        chain.push_back(text.utf8());
    return chain;
}

// The same in one text, with line ends between.
template <class Work>
std::string chainText(const Work& work)
{
    std::string chain;
    for (const std::string& text : chainOfFailure(work))
        chain.append(chain.empty() ? "" : "\n").append(text);
    return chain;
}

// Runs a code call with texts as arguments, in a context of its own, and gives its result as text ("null" for
// a null value) or the chain of its failure.
inline std::string runCall(const qx::string& base, const qx::string& call, const texts& arguments = {})
{
    qx::string text = L"null";
    const std::string chain = chainText([&] {
        std::vector<qx::genericValue> values(arguments.begin(), arguments.end());
        qx::script::scriptcontext context;
        qx::genericValue result;
        if (qx::script::codeManager::instance()->executeFunction(base, call, context, values, result))
            result.getValue(text);
        else
            text = L"declined";
    });
    return chain == "nothing thrown" ? text.utf8() : chain;
}

// Runs `work(thread number)` on eight threads at once.
template <class Work>
void onManyThreads(const Work& work)
{
    constexpr int count = 8;
    std::atomic<int> waiting = count;
    std::vector<std::thread> threads;
    threads.reserve(count);
    for (int number = 0; number < count; ++number) {
        threads.emplace_back([&, number] {
            for (--waiting; waiting > 0;)
                std::this_thread::yield();
            work(number);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

// A file name that no test has used: the cache of the process knows files by name alone.
inline std::string unusedName()
{
    static int number = 0;
    return "cached" + std::to_string(++number);
}

// Sets the modification time of a file, in seconds from the first call: the same age is the same time.
inline void setAge(const scratchDirectory& directory, const std::string& entry, int seconds)
{
    static const auto now = std::filesystem::file_time_type::clock::now();
    std::filesystem::last_write_time(directory.path(entry), now + std::chrono::seconds(seconds));
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
