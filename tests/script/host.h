// A host's side of the engine: statements made of a function, and a module whose calls a test sees and
// answers.
#pragma once

#include <qxScript.h>

#include <functional>
#include <vector>

using qx::script::codecontext;
using qx::script::scriptcontext;
using qx::script::statement;

// Owns a statement as hosts do: ended by the library that made it.
using ownedStatement = qx::sharedPtr<statement>;

ownedStatement parsed(const qx::string& text, int flags = 0);

// Parses, runs in a fresh context and gives the result.
qx::genericValue evaluated(const qx::string& text);

qx::scString nameOf(const wchar_t* text);
qx::genericValue textValue(const wchar_t* text);

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

// `name<types>[params]`, with types and parameters joined by `|`; an empty one is shown as `_`.
qx::string shown(const moduleCall& call);

// A module that is asked before the built-in ones, for the length of a scope; one at a time.
class hostModule
{
public:
    // Answers each call with a statement or null.
    using answer = std::function<statement*(const moduleCall& call)>;

    explicit hostModule(answer made);
    hostModule(const hostModule&) = delete;
    hostModule& operator=(const hostModule&) = delete;
    ~hostModule();

    // Answers calls of one name with a statement that does `work`.
    static answer statementNamed(const wchar_t* name, hostStatement::action work);

    // What it was asked, in order.
    std::vector<moduleCall> asked;

private:
    answer mAnswer;

    friend statement* askHost(const qx::string&, const std::vector<qx::string>&,
                              const std::vector<qx::string>&, int);
};
