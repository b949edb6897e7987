// The content of a file in memory. It comes through a byte sink that asks before each piece
// whether to go on; the cursor of read() is an address in the buffer, checked against its
// bounds at each step.
#include "qxBinaryBuffer.h"

#include "qxSystem.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace qx
{

namespace
{

class bufferSink : public byteSink
{
public:
    bufferSink(std::vector<char>& bytes, const std::function<bool()>& cancelled, std::size_t most)
        : mBytes(bytes), mCancelled(cancelled), mMost(most)
    {}

    bool take(const char* bytes, std::size_t size) override
    {
        if (cancelled() || size > mMost - mBytes.size())
            return false;
        mBytes.insert(mBytes.end(), bytes, bytes + size);
        return true;
    }

    bool cancelled() const { return mCancelled && mCancelled(); }

private:
    std::vector<char>& mBytes;
    const std::function<bool()>& mCancelled;
    const std::size_t mMost;
};

} // namespace

bool binaryBuffer::readFromFile(const file& source, const std::function<bool()>& cancelled, std::size_t most)
{
    clear();
    try {
        bufferSink sink(mBytes, cancelled, most);
        if (system::current().readFile(source.fullName(), sink))
            return true;
    } catch (...) {
        // Memory that ran out and a callback that threw count as not read.
    }
    clear();
    return false;
}

void binaryBuffer::xxor(const char* key)
{
    const std::size_t keyLength = key ? std::strlen(key) : 0;
    if (keyLength == 0)
        return;
    std::size_t position = 0;
    for (char& byte : mBytes) {
        byte = static_cast<char>(byte ^ key[position]);
        position = position + 1 == keyLength ? 0 : position + 1;
    }
}

std::size_t binaryBuffer::read(void*& cursor, void* target, std::size_t count) const
{
    // A cursor from elsewhere gives an offset beyond the end, since the difference wraps.
    const std::uintptr_t start = reinterpret_cast<std::uintptr_t>(mBytes.data());
    const std::uintptr_t offset = cursor ? reinterpret_cast<std::uintptr_t>(cursor) - start : 0;
    if (offset >= mBytes.size())
        return 0;
    const std::size_t copied = std::min(count, mBytes.size() - offset);
    std::memcpy(target, mBytes.data() + offset, copied);
    cursor = const_cast<char*>(mBytes.data() + offset + copied);
    return copied;
}

void binaryBuffer::clear()
{
    std::vector<char>().swap(mBytes);
}

} // namespace qx
