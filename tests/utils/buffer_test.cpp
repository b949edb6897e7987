#include "fakeSystem.h"
#include "scratchDirectory.h"

#include <qxBinaryBuffer.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace
{

const char* const key = "k2#Vq9!xLm4$Zt7&Rb1~Yw6*Hs3%Pn8^Jd5(Cg0)Fu_+Ea=?";

bool never()
{
    return false;
}

std::string contentOf(const qx::binaryBuffer& buffer)
{
    return std::string(buffer.data() ? buffer.data() : "", buffer.logicalLength());
}

} // namespace

TEST(binaryBuffer, scrambling_repeats_the_key_and_restores)
{
    const scratchDirectory scratch;
    const std::string content(100, '\0');
    scratch.write("zeros", content);
    qx::binaryBuffer buffer;
    ASSERT_TRUE(buffer.readFromFile(qx::file(scratch.name("zeros")), never));
    buffer.xxor(key);
    EXPECT_EQ(contentOf(buffer), (std::string(key) + key).append(key, 4)); // 48 + 48 + 4
    buffer.xxor("");
    buffer.xxor(nullptr);
    buffer.xxor(key);
    EXPECT_EQ(contentOf(buffer), content);
}

TEST(binaryBuffer, reads_in_steps_and_stops_at_the_end)
{
    const scratchDirectory scratch;
    scratch.write("text", "abcde");
    qx::binaryBuffer buffer;
    ASSERT_TRUE(buffer.readFromFile(qx::file(scratch.name("text")), never));
    char target[8] = {};
    void* cursor = nullptr;
    EXPECT_EQ(buffer.read(cursor, target, 2), 2u);
    void* const noted = cursor;
    EXPECT_EQ(buffer.read(cursor, target, 8), 3u);
    EXPECT_EQ(std::string(target, 3), "cde");
    EXPECT_EQ(buffer.read(cursor, target, 8), 0u);
    cursor = noted;
    EXPECT_EQ(buffer.read(cursor, target, 1), 1u);
    EXPECT_EQ(target[0], 'c');

    void* foreign = target;
    EXPECT_EQ(buffer.read(foreign, target, 1), 0u);
    buffer.clear();
    cursor = nullptr;
    EXPECT_EQ(buffer.read(cursor, target, 1), 0u);
    EXPECT_EQ(buffer.logicalLength(), 0u);
}

TEST(binaryBuffer, a_failed_or_cancelled_read_leaves_nothing)
{
    const scratchDirectory scratch;
    scratch.write("large", std::string(100000, 'x'));
    const qx::file large(scratch.name("large"));
    qx::binaryBuffer buffer;
    ASSERT_TRUE(buffer.readFromFile(large, nullptr));
    EXPECT_EQ(contentOf(buffer), std::string(100000, 'x'));

    int asked = 0;
    EXPECT_FALSE(buffer.readFromFile(large, [&asked] { return ++asked == 3; }));
    EXPECT_EQ(asked, 3);
    EXPECT_EQ(buffer.logicalLength(), 0u);
    EXPECT_FALSE(buffer.readFromFile(large, []() -> bool { throw std::runtime_error("callback"); }));
    EXPECT_FALSE(buffer.readFromFile(qx::file(scratch.name("missing")), never));
    EXPECT_FALSE(buffer.readFromFile(qx::file(scratch.name()), never));
    EXPECT_FALSE(buffer.readFromFile(qx::file(), never));
    const failingDisk disk;
    EXPECT_FALSE(buffer.readFromFile(large, never));
    EXPECT_EQ(buffer.logicalLength(), 0u);
}
