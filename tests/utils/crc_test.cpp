#include <qxCrc32.h>

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

namespace
{

// One bit at a time, as the polynomial is defined.
qx::uint slowCrc(std::string_view bytes)
{
    qx::uint state = 0xFFFFFFFF;
    for (const char byte : bytes) {
        state ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            state = state & 1 ? (state >> 1) ^ 0xEDB88320u : state >> 1;
    }
    return state;
}

} // namespace

TEST(crc, published_check_value)
{
    qx::calcCrc32 checksum;
    checksum.crc("123456789", 9);
    EXPECT_EQ(~checksum.state(), 0xCBF43926u);
}

TEST(crc, nothing_leaves_the_start_value)
{
    qx::calcCrc32 checksum;
    checksum.crc(nullptr, 0);
    EXPECT_EQ(checksum.state(), 0xFFFFFFFFu);
    EXPECT_EQ(qx::calcCrc32(7).state(), 7u);
}

TEST(crc, random_texts_agree_with_the_slow_way)
{
    std::mt19937 random; // NOLINT(cert-msc51-cpp): the same texts in each run
    for (int text = 0; text < 500; ++text) {
        std::string bytes(random() % 2000, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        qx::calcCrc32 checksum;
        checksum.crc(bytes.data(), bytes.size());
        ASSERT_EQ(checksum.state(), slowCrc(bytes)) << text;
    }
}

TEST(crc, every_length_alignment_and_cut_agrees_with_the_slow_way)
{
    std::string bytes;
    for (int i = 0; i < 40; ++i)
        bytes += static_cast<char>(i * 37 + 200);
    for (std::size_t start = 0; start < 8; ++start) {
        for (std::size_t length = 0; start + length <= bytes.size(); ++length) {
            const std::string_view part = std::string_view(bytes).substr(start, length);
            qx::calcCrc32 whole;
            whole.crc(part.data(), part.size());
            qx::calcCrc32 pieces;
            pieces.crc(part.data(), length / 3);
            pieces.crc(part.data() + length / 3, length - length / 3);
            ASSERT_EQ(whole.state(), slowCrc(part)) << start << " " << length;
            ASSERT_EQ(pieces.state(), slowCrc(part)) << start << " " << length;
        }
    }
}
