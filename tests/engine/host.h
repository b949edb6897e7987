// A host's side of the engine: statements made of a function, and a module whose calls a test sees and
// answers.
#pragma once

#include "valueText.h"

#include <qxScript.h>

#include <functional>
#include <utility>
#include <vector>

using qx::script::codecontext;
using qx::script::scriptcontext;
using qx::script::statement;

// Owns a statement as hosts do: ended by the library that made it.
using ownedStatement = qx::sharedPtr<statement>;

inline ownedStatement parsed(const qx::string& text, int flags = 0)
{
    return ownedStatement(statement::createFrom(text, flags));
}

// Parses, runs in a fresh context and gives the result.
inline qx::genericValue evaluated(const qx::string& text)
{
    scriptcontext context;
    qx::genericValue result;
    parsed(text)->exec(context, result);
    return result;
}

// The value that a statement gives, or the innermost reason why there is none.
inline std::string outcomeOf(const statement& run, codecontext& context, qx::genericValue result = {})
{
    const texts chain = failureOf([&] { run.exec(context, result); });
    return chain[0] == L"nothing thrown" ? valueText(result) : chain.back().utf8();
}

// The same of the clone of a text.
inline std::string outcomeIn(codecontext& context, const qx::string& text)
{
    std::string outcome;
    const texts chain =
        failureOf([&] { outcome = outcomeOf(*ownedStatement(parsed(text)->clone()), context); });
    return outcome.empty() ? chain.back().utf8() : outcome;
}

inline qx::scString nameOf(const wchar_t* text)
{
    return qx::scString::createFrom(text);
}

inline qx::genericValue textValue(const wchar_t* text)
{
    return qx::genericValue(qx::string(text));
}

class hostStatement final : public statement
{
public:
    using action = std::function<void(codecontext& context, qx::genericValue& result)>;

    explicit hostStatement(action work) : mWork(std::move(work)) { ++living; }
    hostStatement(const hostStatement& other) : statement(other), mWork(other.mWork) { ++living; }
    ~hostStatement() override { --living; }

    statement* clone() const override { return new hostStatement(*this); }
    void destroy() override { delete this; }
    void execute(codecontext& context, qx::genericValue& result) const override { mWork(context, result); }

    inline static int living = 0;

private:
    action mWork;
};

// One call as a module's factory gets it.
struct moduleCall
{
    qx::string name;
    std::vector<qx::string> types;
    std::vector<qx::string> params;
    int flags;
};

// A module that is asked before the built-in ones, for the length of a scope; one at a time.
class hostModule
{
public:
    // Answers each call with a statement or null.
    using answer = std::function<statement*(const moduleCall& call)>;

    explicit hostModule(answer made) : mAnswer(std::move(made))
    {
        // The parser keeps a module for good, so one object in static memory serves every test. Initialised
        // data of the program lies below that of the engine.
        static constinit qx::script::scriptModule module(ask);
        module.registerModule();
        mCurrent = this;
    }
    // Knows one name, of a statement that does `work`.
    hostModule(const wchar_t* name, hostStatement::action work)
        : hostModule(statementNamed(name, std::move(work)))
    {}
    hostModule(const hostModule&) = delete;
    hostModule& operator=(const hostModule&) = delete;
    ~hostModule() { mCurrent = nullptr; }

    static answer statementNamed(const wchar_t* name, hostStatement::action work)
    {
        return [wanted = qx::string(name), work = std::move(work)](const moduleCall& call) -> statement* {
            return call.name == wanted ? new hostStatement(work) : nullptr;
        };
    }

    // What it was asked, in order.
    std::vector<moduleCall> asked;

private:
    static statement* ask(const qx::string& name, const std::vector<qx::string>& types,
                          const std::vector<qx::string>& params, int flags)
    {
        if (!mCurrent)
            return nullptr;
        mCurrent->asked.push_back({name, types, params, flags});
        return mCurrent->mAnswer(moduleCall(mCurrent->asked.back()));
    }

    inline static hostModule* mCurrent = nullptr;
    answer mAnswer;
};
