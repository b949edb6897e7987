// The common CRC-32 (polynomial 0xEDB88320, reflected), as a running state.
//
//     qx::calcCrc32 checksum;
//     checksum.crc("123456789", 9);
//     ~checksum.state(); // 0xCBF43926
//
// It can be fed piece by piece: what counts is the sequence of bytes, not how it was cut. A
// value can hold one, which carries a checksum on from one piece to the next. Nothing is
// thrown; not locked.
#pragma once

#include "qxExport.h"
#include "qxTypes.h"

#include <cstddef>

namespace qx
{

// A small value of four bytes.
class QXUTILS_API calcCrc32
{
public:
    // Begins anew, or where an earlier one stopped: with what its state() gave.
    constexpr explicit calcCrc32(uint state = 0xFFFFFFFF) : mState(state) {}

    // Folds `length` bytes into the state. `data` may be null when there are none.
    void crc(const void* data, std::size_t length);

    // The running state; the checksum proper is its complement.
    uint state() const { return mState; }

private:
    uint mState;
};

} // namespace qx
