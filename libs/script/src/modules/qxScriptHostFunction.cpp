// The statements that a host has made of its functions: one module of names that no built-in has.
#include "qxScriptHostFunction.h"

#include "qxScriptInspect.h"
#include "statements/qxScriptBuiltins.h"

#include <algorithm>
#include <exception>
#include <unordered_map>

namespace qx::host
{

namespace detail
{

namespace
{

// A function with its name and its parameters. Lives as long as the process.
class functionMaker final : public statementMaker
{
public:
    functionMaker(const string& name, std::initializer_list<const wchar_t*> parameters,
                  const wchar_t* summary, std::span<const bool> required, boundFunction&& function);

    script::statement* make(const std::vector<string>&, const std::vector<string>& params,
                            int flags) const override;
    void describe(script::statementInfo& told) const override;

    const script::declaredParameter& parameter(std::size_t place) const { return mParameters[place]; }
    void run(const functionCall& call, genericValue& result) const
    {
        mFunction.run(call, mFunction.target.get(), mFunction.thunk, result);
    }

private:
    string mName;
    const wchar_t* mSummary;
    std::vector<script::declaredParameter> mParameters;
    boundFunction mFunction;
};

} // namespace

class functionStatement final : public script::singlefunction
{
public:
    functionStatement(const functionMaker& maker, const string& name, const std::vector<string>& params,
                      int flags, const std::vector<script::declaredParameter>& declared)
        : mMaker(maker)
    {
        parse(name.c_str(), params, flags, declared);
    }

    script::statement* clone() const override { return new functionStatement(*this); }
    void destroy() override { delete this; }
    void execute(script::codecontext& context, genericValue& result) const override
    {
        try {
            mMaker.run(functionCall(*this, context), result);
        } catch (const exception&) {
            throw;
        } catch (const std::exception& thrown) {
            execError(this, L"%s", string::fromUtf8(thrown.what()));
        }
    }

private:
    friend class functionCall;

    const functionMaker& mMaker;
};

bool functionCall::evaluate(std::size_t place, genericValue& value) const
{
    const script::declaredParameter& parameter = mStatement.mMaker.parameter(place);
    if (mStatement.getParamValue(parameter.name, mContext, value))
        return true;
    if (parameter.required)
        mStatement.execError(&mStatement, L"parameter %s is missing", parameter.name);
    return false;
}

void functionCall::refuse(std::size_t place) const
{
    mStatement.execError(&mStatement, L"parameter %s does not read", mStatement.mMaker.parameter(place).name);
}

namespace
{

functionMaker::functionMaker(const string& name, std::initializer_list<const wchar_t*> parameters,
                             const wchar_t* summary, std::span<const bool> required, boundFunction&& function)
    : mName(name), mSummary(summary), mFunction(std::move(function))
{
    if (parameters.size() != required.size())
        throw unexpectedErrorException(L"addStatement: %s has another number of parameters", name);
    for (const wchar_t* parameter : parameters) {
        if (!parameter)
            throw unexpectedErrorException(L"addStatement: %s has a parameter without a name", name);
        for (const script::declaredParameter& before : mParameters)
            if (std::wstring_view(before.name) == parameter)
                throw unexpectedErrorException(L"addStatement: %s has two parameters %s", name, parameter);
        mParameters.push_back({parameter, required[mParameters.size()]});
    }
}

script::statement* functionMaker::make(const std::vector<string>&, const std::vector<string>& params,
                                       int flags) const
{
    return new functionStatement(*this, mName, params, flags, mParameters);
}

void functionMaker::describe(script::statementInfo& told) const
{
    for (const script::declaredParameter& parameter : mParameters) {
        told.parameters += told.parameters.empty() ? L"(" : L", ";
        told.parameters += parameter.required ? string(parameter.name) : L"[" + string(parameter.name) + L"]";
    }
    told.parameters += told.parameters.empty() ? L"()" : L")";
    told.summary = mSummary;
}

} // namespace

void addFunction(const string& name, std::initializer_list<const wchar_t*> parameters, const wchar_t* summary,
                 std::span<const bool> required, boundFunction&& function)
{
    addStatement(name, std::make_unique<const functionMaker>(name, parameters, summary, required,
                                                             std::move(function)));
}

} // namespace detail

namespace
{

using makerTable = std::unordered_map<std::wstring, std::unique_ptr<const statementMaker>>;

makerTable& makers()
{
    static auto* const table = new makerTable; // never destroyed: scripts may run to the end of the process
    return *table;
}

script::statement* makeOwn(const string& name, const std::vector<string>& types,
                           const std::vector<string>& params, int flags)
{
    const auto found = makers().find(name);
    return found == makers().end() ? nullptr : found->second->make(types, params, flags);
}

void listOwn(std::vector<script::statementInfo>& all)
{
    const std::size_t first = all.size();
    for (const auto& [name, maker] : makers()) {
        script::statementInfo& told = all.emplace_back();
        told.name = name;
        told.module = L"host";
        maker->describe(told);
    }
    std::sort(all.begin() + static_cast<std::ptrdiff_t>(first), all.end(),
              [](const script::statementInfo& a, const script::statementInfo& b) { return a.name < b.name; });
}

constinit script::scriptModule ownStatements(makeOwn, listOwn);

// What the parser makes of a name, and what it and the reader of files cut a text at.
bool isReachable(const string& name)
{
    const bool hasTypes = name.find(L'<') != string::npos && name.find(L'>') != string::npos;
    return !name.empty() && !hasTypes && name.find(L"//") == string::npos &&
           name.find_first_of(L"(){},;\"") == string::npos;
}

} // namespace

void addStatement(const string& name, std::unique_ptr<const statementMaker> maker)
{
    string written = name;
    written.toLower().deleteAll(L"\r\n \t");
    if (!isReachable(written))
        throw unexpectedErrorException(L"addStatement: no script can call %s", name);
    if (script::findBuiltin(written) || !makers().emplace(written, std::move(maker)).second)
        throw unexpectedErrorException(L"addStatement: %s exists already", name);
    ownStatements.registerModule();
}

} // namespace qx::host
