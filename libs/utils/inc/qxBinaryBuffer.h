// The content of a file in memory.
//
//     qx::binaryBuffer buffer;
//     if(buffer.readFromFile(source, [] { return false; })) {
//         void* cursor = nullptr; // the start
//         char byte;
//         while(buffer.read(cursor, &byte, 1) == 1) ...
//     }
#pragma once

#include "qxExport.h"
#include "qxFile.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace qx
{

// A block of bytes in memory, empty at first. A value: copies are deep. Not locked.
class QXUTILS_API binaryBuffer
{
public:
    // Files of more bytes are taken for a mistake: those of program text, and those with
    // settings or texts.
    static constexpr std::size_t mostOfText = std::size_t(64) << 20;
    static constexpr std::size_t mostOfSettings = std::size_t(16) << 20;

    // Replaces the content by that of the whole file. `cancelled` is asked before each
    // piece, and true ends the reading; an empty function never does. False, with the
    // buffer empty, when it was cancelled, the file cannot be read or holds more than
    // `most` bytes. Throws nothing.
    bool readFromFile(const file& source, const std::function<bool()>& cancelled,
                      std::size_t most = mostOfText);

    // Scrambles in place: byte i is exclusive-ored with byte i of the key, which repeats.
    // Doing it twice restores. A null or empty key changes nothing.
    void xxor(const char* key);

    // Copies up to `count` bytes from `cursor` on to `target`, moves the cursor behind them
    // and returns how many there were; 0 at the end. A null cursor is the start. A cursor
    // stays valid until the content changes, and belongs to this buffer, not to a copy of
    // it; one from elsewhere reads nothing.
    std::size_t read(void*& cursor, void* target, std::size_t count) const;

    // In bytes.
    std::size_t logicalLength() const { return mBytes.size(); }

    // Null when the buffer is empty. Valid until the content changes.
    const char* data() const { return mBytes.empty() ? nullptr : mBytes.data(); }

    // Drops the content and its memory.
    void clear();

private:
    std::vector<char> mBytes;
};

} // namespace qx
