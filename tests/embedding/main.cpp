// A host that adds a statement and runs a script with it.
#include <qxScript>

#include <qxScriptHost.h>

#include <cstdio>

int main()
{
    qx::host::addStatement(L"triple", {L"value"}, [](int value) { return value * 3; });
    qx::script::scriptcontext context;
    qx::genericValue result;
    const qx::sharedPtr<qx::script::statement> tree(
        qx::script::statement::createFrom(L"strcat(triple(\"14\"), \" is the answer\")", 0));
    tree->exec(context, result);
    qx::string text;
    if (!result.getValue(text))
        return 1;
    std::puts(text.utf8().c_str());
    return 0;
}
