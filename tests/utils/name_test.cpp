// Names: one for each text, from whatever thread.
#include "qxScString.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>

using qx::scString;

TEST(scString, equal_texts_are_one_name)
{
    std::optional<scString> first(scString::createFrom(L"value"));
    const scString name = *first;
    first.reset();
    EXPECT_EQ(name.string(), L"value");
    EXPECT_EQ(name, scString::createFrom(qx::string(L"value")));
    EXPECT_FALSE(name == scString::createFrom(L"Value"));
    EXPECT_EQ(scString::createFrom(static_cast<const wchar_t*>(nullptr)), scString::createFrom(L""));
}

TEST(scString, threads_meet_in_one_table)
{
    std::vector<scString> seen[2];
    const auto work = [](std::vector<scString>& names) {
        for (int i = 0; i < 2000; ++i)
            names.push_back(scString::createFrom(qx::string::sformat(L"name %d", i)));
    };
    std::thread other(work, std::ref(seen[1]));
    work(seen[0]);
    other.join();
    EXPECT_EQ(seen[0], seen[1]);
}
