#include "qxScriptFunction.h"

#include "qxScriptContext.h"
#include "qxScriptException.h"
#include "qxScriptParser.h"

namespace qx::script
{

sharedPtr<function> function::parse(const string& body, const std::vector<string>& declarations,
                                    const file& source, const timestamp& time)
{
    sharedPtr<function> made(new function);
    made->mpStatement = sharedPtr<statement>(statementParser::instance()->createStatementFrom(body, 0));
    if (!made->mpStatement)
        return sharedPtr<function>();
    for (const string& declaration : declarations)
        made->mParameters.emplace_back(declaration, 0);
    made->mFile = source;
    made->mTimestamp = time;
    return made;
}

void function::bind(const string& name, const std::vector<genericValue>& arguments,
                    scriptcontext& context) const
{
    try {
        std::size_t next = 0;
        for (const inParameter& parameter : mParameters) {
            if (parameter.name().empty())
                continue;
            genericValue value;
            if (next < arguments.size())
                value = arguments[next++];
            parameter.resolve(value);
            context.setParameter(scString::createFrom(parameter.name()), value);
        }
    } catch (const exception& caught) {
        throw prepareParameterException(name.c_str(), L"", &caught);
    } catch (const string& text) {
        throw prepareParameterException(name.c_str(), text.c_str());
    } catch (...) {
        throw prepareParameterException(name.c_str(), L"");
    }
}

} // namespace qx::script
