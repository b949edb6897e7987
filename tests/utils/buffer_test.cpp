// Binary buffers: files read in steps, and scrambling.
#include "fakeSystem.h"
#include "scratchDirectory.h"

#include <qxBinaryBuffer.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace
{

const char* const key = "k2#Vq9!xLm4$Zt7&Rb1~Yw6*Hs3%Pn8^Jd5(Cg0)Fu_+Ea=?";

std::string contentOf(const qx::binaryBuffer& buffer)
{
    return std::string(buffer.data(), buffer.logicalLength());
}

} // namespace

TEST(binaryBuffer, reads_in_steps_and_scrambles_with_a_repeated_key)
{
    const scratchDirectory scratch;
    const std::string content(100, '\0');
    scratch.write("zeros", content);
    qx::binaryBuffer buffer;
    ASSERT_TRUE(buffer.readFromFile(qx::file(scratch.name("zeros")), nullptr));
    buffer.xxor(key);
    EXPECT_EQ(contentOf(buffer), (std::string(key) + key).append(key, 4)); // 48 + 48 + 4

    char target[100] = {};
    void* cursor = nullptr;
    EXPECT_EQ(buffer.read(cursor, target, 2), 2u);
    EXPECT_EQ(buffer.read(cursor, target, 99), 98u);
    EXPECT_EQ(std::string(target, 3), std::string(key + 2, 3));
    EXPECT_EQ(buffer.read(cursor, target, 1), 0u);
    void* foreign = target;
    EXPECT_EQ(buffer.read(foreign, target, 1), 0u);

    buffer.xxor("");
    buffer.xxor(nullptr);
    buffer.xxor(key);
    EXPECT_EQ(contentOf(buffer), content);
}

TEST(binaryBuffer, a_failed_or_cancelled_read_leaves_nothing)
{
    const scratchDirectory scratch;
    scratch.write("large", std::string(100000, 'x'));
    const qx::file large(scratch.name("large"));
    qx::binaryBuffer buffer;
    int asked = 0;
    ASSERT_TRUE(buffer.readFromFile(large, [&asked] { return ++asked == -1; }));
    EXPECT_EQ(contentOf(buffer), std::string(100000, 'x'));
    asked = 0;
    EXPECT_FALSE(buffer.readFromFile(large, [&asked] { return ++asked == 3; }));
    EXPECT_EQ(asked, 3);
    EXPECT_EQ(buffer.logicalLength(), 0u);
    EXPECT_FALSE(buffer.readFromFile(large, []() -> bool { throw std::runtime_error("callback"); }));
    for (const qx::file& missing : {qx::file(scratch.name("missing")), qx::file(scratch.name()), qx::file()})
        EXPECT_FALSE(buffer.readFromFile(missing, nullptr));
    for (const auto& [most, isRead] : {std::pair(100000u, true), std::pair(99999u, false)}) {
        EXPECT_EQ(buffer.readFromFile(large, nullptr, most), isRead);
        EXPECT_EQ(buffer.logicalLength(), isRead ? most : 0u);
    }
    const failingDisk disk;
    EXPECT_FALSE(buffer.readFromFile(large, nullptr));
    EXPECT_EQ(buffer.logicalLength(), 0u);
    void* cursor = nullptr;
    EXPECT_EQ(buffer.read(cursor, &asked, 1), 0u);
}
