#include "host.h"

namespace
{

hostModule* current = nullptr;

} // namespace

// The parser keeps a module for good, so one object in static memory serves every test. Static memory of the
// program lies below that of the library.
statement* askHost(const qx::string& name, const std::vector<qx::string>& types,
                   const std::vector<qx::string>& params, int flags)
{
    if (!current)
        return nullptr;
    current->asked.push_back({name, types, params, flags});
    return current->mAnswer(moduleCall(current->asked.back()));
}

hostModule::hostModule(answer made) : mAnswer(std::move(made))
{
    static qx::script::scriptModule module(askHost);
    module.registerModule();
    current = this;
}

hostModule::~hostModule()
{
    current = nullptr;
}

hostModule::answer hostModule::statementNamed(const wchar_t* name, hostStatement::action work)
{
    return [wanted = qx::string(name), work = std::move(work)](const moduleCall& call) -> statement* {
        return call.name == wanted ? new hostStatement(work) : nullptr;
    };
}

qx::string shown(const moduleCall& call)
{
    const auto joined = [](const std::vector<qx::string>& parts) {
        qx::string text;
        for (std::size_t i = 0; i < parts.size(); ++i)
            text += (i ? L"|" : L"") + (parts[i].empty() ? L"_" : parts[i]);
        return text;
    };
    return call.name + (call.types.empty() ? L"" : L"<" + joined(call.types) + L">") + L"[" +
           joined(call.params) + L"]";
}

ownedStatement parsed(const qx::string& text, int flags)
{
    return ownedStatement(statement::createFrom(text, flags));
}

qx::genericValue evaluated(const qx::string& text)
{
    scriptcontext context;
    qx::genericValue result;
    parsed(text)->exec(context, result);
    return result;
}

qx::scString nameOf(const wchar_t* text)
{
    return qx::scString::createFrom(text);
}

qx::genericValue textValue(const wchar_t* text)
{
    return qx::genericValue(qx::string(text));
}
