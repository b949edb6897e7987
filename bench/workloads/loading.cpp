// Loads by the clock: all functions of a file, dropped or kept, or some by their first calls.
#include "loading.h"

namespace workloads
{

using qx::genericValue;
using qx::string;

measured loadFunctions(const scriptFile& scripts)
{
    return byTheClock([&] {
        long long loaded = 0;
        qx::script::checkFunctions(scripts.file(),
                                   [&](const qx::script::functionInfo&, const qx::exception* failure) {
                                       demand(!failure, L"a function that does not load");
                                       ++loaded;
                                   });
        return loaded;
    });
}

measured keepFunctions(const scriptFile& scripts)
{
    using qx::script::statement;
    std::vector<qx::sharedPtr<statement>> kept;
    return byTheClock([&] {
        for (const qx::script::functionInfo& function : qx::script::listFunctions(scripts.file()).functions)
            kept.emplace_back(statement::createFrom(function.body, 0));
        return static_cast<long long>(kept.size());
    });
}

measured callFunctionsFirst(const scriptFile& scripts, int n)
{
    const auto count = static_cast<std::size_t>(n);
    const std::size_t inFile = qx::script::listFunctions(scripts.file()).functions.size();
    demand(n > 0 && count <= inFile, L"the file has not so many functions");
    const std::size_t step = inFile / count;
    return byTheClock([&] {
        long long right = 0;
        for (std::size_t i = 0; i < count * step; i += step) {
            qx::script::scriptcontext context;
            std::vector<genericValue> arguments{genericValue(1), genericValue(2000)};
            const string call = scripts.call(L"f_" + std::to_wstring(i));
            // Each adds its number and 2000, and takes 1000 off a sum that is larger.
            const string sum = std::to_wstring(i + 1000);
            string text;
            if (scripts.run(call, context, arguments).getValue(text) && text == L"x" + sum + L"-" + sum)
                ++right;
        }
        return right;
    });
}

} // namespace workloads
