// The common CRC-32 (polynomial 0xEDB88320, reflected), as a running state.
//
//     qx::calcCrc32 checksum;
//     checksum.crc("123456789", 9);
//     ~checksum.state(); // 0xCBF43926
#pragma once

#include "qxExport.h"
#include "qxTypes.h"

#include <cstddef>

namespace qx
{

class QXUTILS_API calcCrc32
{
public:
    constexpr explicit calcCrc32(uint state = 0xFFFFFFFF) : mState(state) {}

    // Folds `length` bytes into the state. `data` may be null when there are none.
    void crc(const void* data, std::size_t length);

    // The running state; the checksum proper is its complement.
    uint state() const { return mState; }

private:
    uint mState;
};

} // namespace qx
