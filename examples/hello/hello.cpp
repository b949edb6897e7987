// The smallest host: calls one function of a script file.
#include <qxScript>

#include <cstdio>
#include <vector>

static qx::string greeting(const qx::string& name)
{
    qx::script::scriptcontext context; // one for each run; a thread needs its own
    std::vector<qx::genericValue> arguments{qx::genericValue(name)};
    qx::genericValue result;
    qx::script::codeManager::instance()->executeFunction(L"scripts", L"script$greetings$greet", context,
                                                         arguments, result);
    qx::string text;
    result.getValue(text); // false, and an empty text, where the function gives none
    return text;
}

int main()
{
    try {
        std::puts(greeting(L"you").utf8().c_str()); // Hello, you!
        return 0;
    } catch (const qx::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
