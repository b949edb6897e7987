// Names: one for each text, from whatever thread.
#include "qxScString.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>
#include <unordered_set>

using qx::scString;

TEST(scString, equalTextsAreOneName)
{
    const scString name = scString::createFrom(L"value");
    EXPECT_EQ(name, scString::createFrom(qx::string(L"value")));
    EXPECT_EQ(name.c_str(), scString::createFrom(L"value").c_str());
    EXPECT_FALSE(name == scString::createFrom(L"Value"));
    EXPECT_EQ(name.string(), L"value");
    EXPECT_EQ(scString::createFrom(static_cast<const wchar_t*>(nullptr)), scString::createFrom(L""));

    std::optional<scString> first(scString::createFrom(L"gone"));
    const scString copy = *first;
    first.reset();
    EXPECT_EQ(copy.string(), L"gone");
}

TEST(scString, threadsMeetInOneTable)
{
    constexpr int threads = 4;
    constexpr int names = 500;
    std::vector<std::vector<const wchar_t*>> seen(threads);
    std::vector<std::thread> running;
    running.reserve(threads);
    for (auto& pointers : seen) {
        running.emplace_back([&pointers] {
            for (int i = 0; i < names; ++i)
                pointers.push_back(scString::createFrom(qx::string::sformat(L"name %d", i)).c_str());
        });
    }
    for (std::thread& thread : running)
        thread.join();
    for (const auto& pointers : seen)
        EXPECT_EQ(pointers, seen[0]);
    EXPECT_EQ(std::unordered_set<const wchar_t*>(seen[0].begin(), seen[0].end()).size(), std::size_t(names));
}
