#include <qxScript>

#include <cstdio>
#include <vector>

int main()
{
    using namespace qx::script;

    scriptcontext context; // one for each run; a thread needs its own
    std::vector<qx::genericValue> arguments{qx::genericValue(qx::string(L"you"))};
    qx::genericValue result;
    try {
        codeManager::instance()->executeFunction(L"scripts", L"script$greetings$greet", context, arguments,
                                                 result);
    } catch (const qx::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    qx::string text;
    if (result.getValue(text)) {
        std::puts(text.utf8().c_str()); // Hello, you!
    }
    return 0;
}
