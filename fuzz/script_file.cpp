// Any bytes are a script file: its definitions are listed and checked, plain and scrambled, and the first one
// that is sound can be called.
#include "sandbox.h"

#include <qxScript>

namespace
{

void readAs(const wchar_t* name)
{
    using namespace qx::script;
    const qx::file source{qx::string(name)};
    try {
        std::size_t failures = 0;
        for (const functionInfo& found : listFunctions(source).functions) {
            try {
                checkFunction(source, found);
            } catch (const parserException&) { // one bad definition says nothing about the next
                ++failures;
            }
        }
        checkFunctions(source, [&](const functionInfo&, const qx::exception* failure) {
            if (failure)
                --failures;
        });
        fuzzing::require(failures == 0, "all functions together fail as each does");
    } catch (const qx::readFileException&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzzing::sandbox& entered = fuzzing::sandbox::enter();
    entered.system.setContent({reinterpret_cast<const char*>(data), size});
    readAs(L"/script/plain.qxscr");
    readAs(L"/script/scrambled.qxsscr");
    entered.system.setContent({});
    return 0;
}
