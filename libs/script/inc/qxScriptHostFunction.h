// C++ functions as statements of the language.
//
//     qx::host::addStatement(L"vat", {L"net", L"rate"}, [](double net, std::optional<double> rate) {
//         return net * rate.value_or(0.2);
//     });
//
// Scripts then say `vat("100")` or `vat(net, "0.07")`. Parameters and result are held types of genericValue,
// genericValue itself, refPtr to an object of the host, or vectors of such (qxScriptHostObject.h, valueOf and
// readValue). A std::optional need not be given, and is empty then; parameters behind it should be optional
// too.
//
//     double, int, bool, qx::string, date, ...    converted; what does not read fails
//     std::optional<T>                            as T; nothing where the call does not give it
//     genericValue                                as the script gives it, null included
//     refPtr<customer>                            a reference to a customer; any other object is a failure
//     std::vector<T>                              an array, element by element
//     script::codecontext&                        first only: the context of the run
//     void                                        as result: the statement has no value
// A function that wants the run's context takes a codecontext& first, which is no parameter of the
// statement. As many functions as a host likes compile quickly: lambdas of one signature share their code.
#pragma once

#include "qxScriptContext.h"
#include "qxScriptHostObject.h"
#include "qxScriptStatement.h"

#include "qxHeldTypes.h"

#include <initializer_list>
#include <memory>
#include <optional>
#include <span>

namespace qx::script
{
struct statementInfo; // qxScriptInspect.h
}

namespace qx::host
{

//     class swapMaker final : public qx::host::statementMaker
//     {
//         script::statement* make(const std::vector<string>& types, const std::vector<string>& params,
//                                 int flags) const override
//         {
//             return types.size() == 1 ? swap::create(types[0], params, flags) : nullptr;
//         }
//     };
//     qx::host::addStatement(L"swap", std::make_unique<swapMaker>()); // swap<int>(a, b)
//
// Makes the statements of one name, for hosts that want more than a function: types in angle brackets,
// parameters that are not evaluated, a statement of a class of their own. Lives as long as the process, and
// is asked from whatever threads parse.
class statementMaker
{
public:
    virtual ~statementMaker() = default;
    // As a script::statementFactory, for calls of its name: a statement that the caller owns, or null to
    // decline, which makes the call an unknown one.
    virtual script::statement* make(const std::vector<string>& types, const std::vector<string>& params,
                                    int flags) const = 0;
    // For script::listStatements: adds to the entry of its name, which is all that is told without this.
    virtual void describe(script::statementInfo&) const {}
};

// Enters a name for good, which scripts may write in any case and with blanks. Throws
// unexpectedErrorException for a name that exists, and for one that no script can reach: that is empty, or
// holds what scripts are cut at, which is any of `( ) { } , ; "`, both `<` and `>`, or `//`. Must not run
// while another thread parses or registers.
QXSCRIPT_API void addStatement(const string& name, std::unique_ptr<const statementMaker> maker);

// How a function becomes a statement; nothing for hosts to use.
namespace detail
{

// One parameter of a function: whether a call has to give it, and how its value is read.
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

class functionStatement; // the engine's side: a statement with named parameters

// A call of a function, for the length of its run. Arguments are evaluated from left to right, once each.
class functionCall
{
public:
    // The argument of the parameter at `place`, evaluated anew, in the type of the function. Throws where it
    // is missing and required, or does not read.
    template <class T>
    T read(std::size_t place) const
    {
        T out{};
        genericValue value;
        if (evaluate(place, value) && !argument<T>::read(value, out))
            refuse(place);
        return out;
    }

    script::codecontext& context() const { return mContext; }

private:
    friend class functionStatement;

    functionCall(const functionStatement& caller, script::codecontext& context)
        : mStatement(caller), mContext(context)
    {}
    // False for a parameter that is not required and not given.
    QXSCRIPT_API bool evaluate(std::size_t place, genericValue& value) const;
    [[noreturn]] QXSCRIPT_API void refuse(std::size_t place) const;

    const functionStatement& mStatement;
    script::codecontext& mContext;
};

// Functions of one signature run by one piece of code, and statements of all of them are one class: what is
// made for each function is its thunk.
using anyThunk = void (*)();

// A function, without its type: owned, and called through the code of its signature.
struct boundFunction
{
    using endOfTarget = void (*)(const void*);
    using runOfCall = void (*)(const functionCall& call, const void* target, anyThunk thunk,
                               genericValue& result);

    std::unique_ptr<const void, endOfTarget> target; // the function object
    anyThunk thunk;                                  // calls it, as `run` knows
    runOfCall run;
};

// `required` tells of each of the function's parameters whether it has to be given.
QXSCRIPT_API void addFunction(const string& name, std::initializer_list<const wchar_t*> parameters,
                              const wchar_t* summary, std::span<const bool> required,
                              boundFunction&& function);

// The code for all functions of one signature.
template <class Result, class... Args>
class signature
{
public:
    template <bool WithContext, class Function>
    static void add(const string& name, std::initializer_list<const wchar_t*> parameters,
                    const wchar_t* summary, Function&& function)
    {
        using object = std::remove_cvref_t<Function>;
        constexpr thunk call = thunkOf<object, WithContext>;
        boundFunction bound{{new object(std::forward<Function>(function)), endOf<object>},
                            reinterpret_cast<anyThunk>(call),
                            run};
        addFunction(name, parameters, summary, std::span(required, sizeof...(Args)), std::move(bound));
    }

private:
    using thunk = Result (*)(const void* target, script::codecontext& context, Args... arguments);

    // All that is made for each function: a call of it by its type.
    template <class Function, bool WithContext>
    static Result thunkOf(const void* target, script::codecontext& context, Args... arguments)
    {
        const Function& function = *static_cast<const Function*>(target);
        if constexpr (WithContext)
            return function(context, static_cast<Args&&>(arguments)...);
        else
            return function(static_cast<Args&&>(arguments)...);
    }
    template <class Function>
    static void endOf(const void* target)
    {
        delete static_cast<const Function*>(target);
    }

    static void run(const functionCall& call, const void* target, anyThunk erased, genericValue& result)
    {
        runWith(call, target, reinterpret_cast<thunk>(erased), result, std::index_sequence_for<Args...>());
    }
    template <std::size_t... Place>
    static void runWith(const functionCall& call, const void* target, thunk function, genericValue& result,
                        std::index_sequence<Place...>)
    {
        // In braces the arguments are evaluated in order.
        inOrder{call, target, function, result, call.read<std::remove_cvref_t<Args>>(Place)...};
    }
    // Calls the function with what was read, and writes what it gives.
    struct inOrder
    {
        inOrder(const functionCall& call, const void* target, thunk function,
                [[maybe_unused]] genericValue& result, std::remove_cvref_t<Args>&&... arguments)
        {
            if constexpr (std::is_void_v<Result>)
                function(target, call.context(), static_cast<Args&&>(arguments)...);
            else
                result = valueOf(function(target, call.context(), static_cast<Args&&>(arguments)...));
        }
    };

    // One more than there are, since an array cannot be empty.
    static constexpr bool required[] = {argument<std::remove_cvref_t<Args>>::isRequired..., true};
};

// Takes the type of a function apart. `context` tells whether it takes one; `plain` is the pointer that a
// function object without state becomes.
template <class Function>
struct taken : taken<decltype(&Function::operator())>
{};
template <class Result, class... Args>
struct taken<Result (*)(Args...)>
{
    using plain = Result (*)(Args...);
    using shape = signature<Result, Args...>;
    static constexpr bool context = false;
};
template <class Result, class... Args>
struct taken<Result (*)(script::codecontext&, Args...)>
{
    using plain = Result (*)(script::codecontext&, Args...);
    using shape = signature<Result, Args...>;
    static constexpr bool context = true;
};
template <class Result, class... Args>
struct taken<Result (*)(Args...) noexcept> : taken<Result (*)(Args...)>
{};
template <class Class, class Result, class... Args>
struct taken<Result (Class::*)(Args...) const> : taken<Result (*)(Args...)>
{};
template <class Class, class Result, class... Args>
struct taken<Result (Class::*)(Args...) const noexcept> : taken<Result (*)(Args...)>
{};

} // namespace detail

// Makes a statement of a function, or of a function object whose call operator is const and no template; it
// is called from whatever threads run scripts, several at once, and is kept for good. `parameters` names
// them, for messages and lists: literals, as many as the function has, no two the same. `summary` is a
// literal too, a sentence for script::listStatements.
//
//     qx::host::addStatement(L"log", {L"text"}, [](const qx::string& text) { append(text); },
//                            L"Writes a line into the application's log.");
//
// Failures are those of the other addStatement, and unexpectedErrorException for another number of names, one
// that is null, and one that occurs twice. Whatever the function throws ends the statement; the text of a
// std::exception is the failure's.
template <class Function>
void addStatement(const string& name, std::initializer_list<const wchar_t*> parameters, Function function,
                  const wchar_t* summary = L"")
{
    using taken = detail::taken<Function>;
    using plain = typename taken::plain;
    // A lambda that captures nothing has a type of its own and would want a thunk of its own.
    if constexpr (std::is_empty_v<Function> && std::is_convertible_v<Function, plain>)
        taken::shape::template add<taken::context>(name, parameters, summary, static_cast<plain>(function));
    else
        taken::shape::template add<taken::context>(name, parameters, summary, std::move(function));
}

} // namespace qx::host
