// Any text is a code call or none, and what was cut out of it has the promised shape.
#include "sandbox.h"

#include <qxScript>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace qx::script;
    fuzzing::sandbox& entered = fuzzing::sandbox::enter();
    const qx::string call = fuzzing::textOf(data, size);
    eCodeType type = codeTypeScript;
    qx::string file;
    qx::string function;
    if (codeManager::instance()->parseCodeCall(call, type, file, function)) {
        fuzzing::require(!file.empty() && !function.empty(), "both names are there");
        fuzzing::require(file == file.lower() && function == function.lower(), "both names are lower-case");
        fuzzing::require(function.find_first_of(L" \t$") == function.npos, "a function name has no blanks");
    }

    // The same text as a call: every place but one holds no file, and that one defines `f`.
    entered.system.setContent("scrdef f(in<string> text=\"none\")\n{ return(text); }\n");
    scriptcontext context;
    std::vector<qx::genericValue> arguments;
    qx::genericValue result;
    try {
        codeManager::instance()->executeFunction(L"/script", call, context, arguments, result);
    } catch (const qx::exception&) {
    }
    return 0;
}
