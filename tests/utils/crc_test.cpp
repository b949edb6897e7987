// Checksums, against the definition of the polynomial.
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

TEST(crc, known_values)
{
    qx::calcCrc32 checksum;
    checksum.crc(nullptr, 0);
    EXPECT_EQ(checksum.state(), 0xFFFFFFFFu);
    checksum.crc("123456789", 9);
    EXPECT_EQ(~checksum.state(), 0xCBF43926u); // the published check value
    EXPECT_EQ(qx::calcCrc32(7).state(), 7u);
}

TEST(crc, random_texts_in_two_pieces_agree_with_the_slow_way)
{
    std::mt19937 random; // NOLINT(cert-msc51-cpp): the same texts in each run
    std::string bytes(2000, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    for (std::size_t start = 0; start < 8; ++start) {
        for (std::size_t length = 0; start + length < bytes.size(); length += 1 + random() % 9) {
            const std::string_view all = std::string_view(bytes).substr(start, length);
            const std::size_t cut = length == 0 ? 0 : random() % length;
            qx::calcCrc32 checksum;
            checksum.crc(all.data(), cut);
            checksum.crc(all.data() + cut, length - cut);
            ASSERT_EQ(checksum.state(), slowCrc(all)) << start << " " << cut << " " << length;
        }
    }
}
