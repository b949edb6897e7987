// Eight bytes a step by eight tables: table k holds what a byte becomes after k more bytes of zero.
#include "qxCrc32.h"

#include <array>

namespace qx
{

namespace
{

using crcTables = std::array<std::array<uint, 256>, 8>;

constexpr crcTables makeTables()
{
    crcTables tables{};
    for (uint byte = 0; byte < 256; ++byte) {
        uint state = byte;
        for (int bit = 0; bit < 8; ++bit)
            state = (state >> 1) ^ (state & 1 ? 0xEDB88320u : 0u);
        tables[0][byte] = state;
    }
    for (std::size_t k = 1; k < tables.size(); ++k) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const uint before = tables[k - 1][byte];
            tables[k][byte] = (before >> 8) ^ tables[0][before & 0xFF];
        }
    }
    return tables;
}

constexpr crcTables tables = makeTables();

} // namespace

void calcCrc32::crc(const void* data, std::size_t length)
{
    const unsigned char* bytes = static_cast<const unsigned char*>(data);
    uint state = mState;
    for (; length >= 8; bytes += 8, length -= 8) {
        // Composed byte by byte, so the order of bytes in memory plays no part.
        const uint low =
            state ^ (bytes[0] | uint(bytes[1]) << 8 | uint(bytes[2]) << 16 | uint(bytes[3]) << 24);
        state = tables[7][low & 0xFF] ^ tables[6][(low >> 8) & 0xFF] ^ tables[5][(low >> 16) & 0xFF] ^
                tables[4][low >> 24] ^ tables[3][bytes[4]] ^ tables[2][bytes[5]] ^ tables[1][bytes[6]] ^
                tables[0][bytes[7]];
    }
    for (; length > 0; ++bytes, --length)
        state = (state >> 8) ^ tables[0][(state ^ *bytes) & 0xFF];
    mState = state;
}

} // namespace qx
