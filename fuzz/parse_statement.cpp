// Any text is a statement, none, or a failure of the tree; and what it is runs, or fails, in the same way by
// short cuts and without.
#include "sandbox.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace qx::script;
    constexpr std::size_t longestRun = 1024; // bytes of text that is run and not only parsed

    fuzzing::sandbox::enter();
    try {
        const qx::autoPtr<statement> tree(statement::createFrom(fuzzing::textOf(data, size), 0));
        if (!tree || size > longestRun)
            return 0;
        const qx::autoPtr<statement> copy(tree->clone());
        fuzzing::require(copy->text() == tree->text(), "a copy has the text of its original");
        fuzzing::runBothWays([&](qx::genericValue& result) {
            scriptcontext context;
            copy->exec(context, result);
        });
    } catch (const qx::exception& failure) {
        for (const qx::locString& message : failure.messages())
            fuzzing::require(message.string(nullptr, qx::searchPath()), "a failure has a text");
    }
    return 0;
}
