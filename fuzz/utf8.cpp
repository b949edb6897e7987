// Any bytes survive the way into text and out again, and so does any text that came from bytes.
#include "sandbox.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const qx::string text = qx::string::fromUtf8(bytes);
    fuzzing::require(text.size() <= size, "a text has at most one unit a byte");
    for (const wchar_t unit : text)
        fuzzing::require(static_cast<wchar_t>(static_cast<std::uint16_t>(unit)) == unit,
                         "a unit has 16 bits");
    fuzzing::require(text.utf8() == bytes, "bytes come back");

    // Any units, paired or not, come out as bytes that stay the same from then on.
    qx::string units;
    for (std::size_t i = 0; i + 1 < size; i += 2)
        units.push_back(static_cast<wchar_t>(data[i] | data[i + 1] << 8));
    const std::string written = units.utf8();
    fuzzing::require(qx::string::fromUtf8(written).utf8() == written, "written text comes back");
    return 0;
}
