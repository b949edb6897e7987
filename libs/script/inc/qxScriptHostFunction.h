// C++ functions as statements of the language.
//
//     qx::host::addStatement(L"vat", {L"net", L"rate"}, [](double net, std::optional<double> rate) {
//         return net * rate.value_or(0.2);
//     });
//
// Scripts then say `vat("100")` or `vat(net, "0.07")`. Parameters and result are held types of genericValue,
// genericValue itself, refPtr to an object of the host, or vectors of such. A std::optional need not be
// given. A function that wants the run's context takes a codecontext& first, which is no parameter of the
// statement.
#pragma once

#include "qxScriptContext.h"
#include "qxScriptHostObject.h"
#include "qxScriptStatement.h"

#include "qxHeldTypes.h"

#include <exception>
#include <initializer_list>
#include <memory>
#include <optional>
#include <tuple>

namespace qx::host
{

// Makes the statements of one name. Lives as long as the process.
class statementMaker
{
public:
    virtual ~statementMaker() = default;
    // As a script::statementFactory, for calls of its name.
    virtual script::statement* make(const std::vector<string>& types, const std::vector<string>& params,
                                    int flags) const = 0;
};

// Enters a name, which scripts may write in any case and with blanks. Throws unexpectedErrorException for a
// name that exists. Must not run while another thread parses or registers.
QXSCRIPT_API void addStatement(const string& name, std::unique_ptr<const statementMaker> maker);

namespace detail
{

template <class T>
struct argument
{
    static constexpr bool isRequired = true;
    static bool read(const genericValue& value, T& out) { return readValue(value, out); }
};
template <class T>
struct argument<std::optional<T>>
{
    static constexpr bool isRequired = false;
    static bool read(const genericValue& value, std::optional<T>& out)
    {
        return readValue(value, out.emplace());
    }
};

// What a statement knows of its function.
template <class Function>
struct boundFunction
{
    string name;
    std::vector<const wchar_t*> parameters; // literals
    Function function;
};

template <class Function, class Result, bool WithContext, class... Args>
class functionStatement final : public script::singlefunction
{
public:
    using bound = boundFunction<Function>;

    functionStatement(const sharedPtr<const bound>& function, const std::vector<string>& params, int flags)
        : mFunction(function)
    {
        const bool required[] = {argument<std::remove_cvref_t<Args>>::isRequired..., true};
        std::vector<script::declaredParameter> declared;
        for (std::size_t i = 0; i < sizeof...(Args); ++i)
            declared.push_back({mFunction->parameters[i], required[i]});
        parse(mFunction->name.c_str(), params, flags, declared);
    }

    script::statement* clone() const override { return new functionStatement(*this); }
    void destroy() override { delete this; }
    void execute(script::codecontext& context, genericValue& result) const override
    {
        try {
            run(context, result, std::index_sequence_for<Args...>());
        } catch (const exception&) {
            throw;
        } catch (const std::exception& thrown) {
            execError(this, L"%s", string::fromUtf8(thrown.what()));
        }
    }

private:
    template <std::size_t... Place>
    void run(script::codecontext& context, genericValue& result, std::index_sequence<Place...>) const
    {
        // In braces the arguments are evaluated in order.
        std::tuple<std::remove_cvref_t<Args>...> values{
            read<std::remove_cvref_t<Args>>(mFunction->parameters[Place], context)...};
        const auto call = [&]() -> Result {
            if constexpr (WithContext)
                return mFunction->function(context, std::get<Place>(values)...);
            else
                return mFunction->function(std::get<Place>(values)...);
        };
        if constexpr (std::is_void_v<Result>)
            call();
        else
            result = valueOf(call());
    }

    template <class T>
    T read(const wchar_t* name, script::codecontext& context) const
    {
        T out{};
        genericValue value;
        if (!getParamValue(name, context, value)) {
            if (argument<T>::isRequired)
                execError(this, L"parameter %s is missing", name);
        } else if (!argument<T>::read(value, out)) {
            execError(this, L"parameter %s does not read", name);
        }
        return out;
    }

    sharedPtr<const bound> mFunction;
};

template <class Function, class Result, bool WithContext, class... Args>
class functionMaker final : public statementMaker
{
public:
    using bound = boundFunction<Function>;

    explicit functionMaker(bound function) : mFunction(new bound(std::move(function))) {}
    script::statement* make(const std::vector<string>&, const std::vector<string>& params,
                            int flags) const override
    {
        return new functionStatement<Function, Result, WithContext, Args...>(mFunction, params, flags);
    }

private:
    sharedPtr<const bound> mFunction;
};

template <bool WithContext, class Function, class Result, class... Args>
void addFunction(const string& name, std::initializer_list<const wchar_t*> parameters, Function function)
{
    using maker = functionMaker<Function, Result, WithContext, Args...>;
    if (parameters.size() != sizeof...(Args))
        throw unexpectedErrorException(L"addStatement: %s has another number of parameters", name);
    addStatement(name,
                 std::make_unique<maker>(boundFunction<Function>{name, parameters, std::move(function)}));
}

// Takes a signature apart.
template <class Signature>
struct signature;
template <class Result, class... Args>
struct signature<Result (*)(Args...)>
{
    template <class Function>
    static void add(const string& name, std::initializer_list<const wchar_t*> parameters, Function function)
    {
        addFunction<false, Function, Result, Args...>(name, parameters, std::move(function));
    }
};
template <class Result, class... Args>
struct signature<Result (*)(script::codecontext&, Args...)>
{
    template <class Function>
    static void add(const string& name, std::initializer_list<const wchar_t*> parameters, Function function)
    {
        addFunction<true, Function, Result, Args...>(name, parameters, std::move(function));
    }
};
template <class Class, class Result, class... Args>
struct signature<Result (Class::*)(Args...) const> : signature<Result (*)(Args...)>
{};

template <class Function>
struct callOperator
{
    using type = decltype(&Function::operator());
};
template <class Result, class... Args>
struct callOperator<Result (*)(Args...)>
{
    using type = Result (*)(Args...);
};

} // namespace detail

// Makes a statement of a function, or of a function object whose call operator is const and no template; it
// is called from whatever threads run scripts. `parameters` names them, for messages alone: literals, as many
// as the function has. Failures are those of the other addStatement, and unexpectedErrorException for another
// number of names. Whatever the function throws ends the statement; the text of a std::exception is the
// failure's.
template <class Function>
void addStatement(const string& name, std::initializer_list<const wchar_t*> parameters, Function function)
{
    detail::signature<typename detail::callOperator<Function>::type>::add(name, parameters,
                                                                          std::move(function));
}

} // namespace qx::host
