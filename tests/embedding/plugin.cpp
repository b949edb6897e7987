// A plug-in that embeds the engine.
#include <qxScript>

extern "C" QX_VISIBLE int answer()
{
    using qx::script::statement;
    const qx::sharedPtr<statement> tree(statement::createFrom(L"add<int>(strlen(\"two\"), \"39\")", 0));
    qx::script::scriptcontext context;
    qx::genericValue result;
    tree->exec(context, result);
    int value = 0;
    result.getValue(value);
    return value;
}
