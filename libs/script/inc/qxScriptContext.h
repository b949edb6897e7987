// Contexts: where a run keeps its variables.
//
// A codecontext is the scope of one block. A scriptcontext is the root of a chain of blocks: one call of a
// script function, with its parameters, its control signals and the global variables that all calls of a run
// share.
//
//     qx::script::scriptcontext context;
//     context.setGlobalContextVariable(qx::scString::createFrom(L"user"), qx::genericValue(name));
//
// Names compare exactly; the statements of the language lower-case theirs, so a host that wants scripts to
// find a variable gives it a name in lower case. Values are copied on their way in. A context is for one
// thread at a time, and must outlive the runs in it and the contexts of blocks inside it.
//
//     class formContext final : public qx::script::scriptcontext
//     {
//         bool hasParameter(const qx::scString& name) const override { return mForm.has(name.string()); }
//         ... // and the others that concern parameters
//     };
//
// A host may derive a class of its own, to have names that are computed or stored elsewhere: the engine then
// asks the virtual operations for each look-up, and takes no other way to variables.
#pragma once

#include "qxGenericSet.h"
#include "qxScriptExport.h"

namespace qx::script
{

class replay;
class scriptcontext;
enum class raised;

class QXSCRIPT_API codecontext
{
public:
    // The scope of a block inside `outer`, which is borrowed. Null fails the check "mpOuterBlock!=NULL": a
    // report, then the bool value false thrown.
    explicit codecontext(codecontext* outer);
    codecontext(const codecontext&) = delete;
    codecontext& operator=(const codecontext&) = delete;
    virtual ~codecontext();

    // True when variableAddress finds the name: as a local of this or an outer block, a parameter, or a
    // global.
    virtual bool hasVariable(const scString& name) const;

    // What concerns the call and not the block goes outward to the root, see scriptcontext.
    //
    // Global variables are shared by all calls of a run: what one script function sets, those that it calls
    // and its caller find. False where a root does not have them or does not store them.
    virtual bool hasGlobalContextVariable(const scString& name) const;
    virtual bool setGlobalContextVariable(const scString& name, const genericValue& value);
    // The variable itself, as long as it is not replaced. Throws globalVarNotFoundException.
    virtual genericValue& globalContextVariable(const scString& name);
    virtual const genericValue& globalContextVariable(const scString& name) const;
    // The variable for keeps: it lives as long as somebody has the pointer. Null for an unknown name.
    virtual sharedPtr<genericValue> globalContextVariableAddress(const scString& name);
    // Parameters belong to one call: the arguments that a function was called with, and what it has returned.
    virtual bool hasParameter(const scString& name) const;
    // Makes the parameter or replaces its value. False where the root does not take it.
    virtual bool setParameter(const scString& name, const genericValue& value);
    // False for an unknown name.
    virtual bool deleteParameter(const scString& name);
    // The parameter itself, as long as it is not deleted. Throws parameterNotFoundException.
    virtual genericValue& parameter(const scString& name);
    virtual const genericValue& parameter(const scString& name) const;
    // The parameter for keeps. Null for an unknown name.
    virtual sharedPtr<genericValue> parameterAddress(const scString& name);
    // Signals are how `break`, `continue` and `return` reach the statements around them: whoever raises one
    // sets it, the statement that it is meant for clears it.
    virtual bool setScriptSignal(const scString& name, const genericValue& value);
    // The value of a raised signal; a null pointer when it is not raised.
    virtual sharedPtr<genericValue> scriptSignal(const scString& name);
    // Nothing happens where it is not raised.
    virtual void clearScriptSignal(const scString& name);

    // Makes a local variable of this block. False, with nothing changed, when the name is visible already in
    // whatever way.
    bool createVariable(const scString& name, const genericValue& value);
    // Writes the innermost local variable of the name. False when no block has one; parameters and globals
    // are left alone.
    bool setVariable(const scString& name, const genericValue& value);
    // The visible variable of the name. Throws variableNotFoundException.
    genericValue& variable(const scString& name);
    const genericValue& variable(const scString& name) const;
    // The storage of the visible variable: locals from the innermost block outward, then parameters, then
    // globals. A null pointer for an unknown name.
    sharedPtr<genericValue> variableAddress(const scString& name);

    // Lets `callee` share this run's global variables. Throws unexpectedErrorException when it has some
    // already.
    void initScriptContext(scriptcontext& callee);

protected:
    struct rootTag
    {};
    // The root of a chain has no outer block.
    explicit codecontext(rootTag) noexcept {}

private:
    friend class scope;
    friend class blockcontext;
    friend class frame;
    friend class nestedFrame;

    virtual genericSet* getGlobalContextVariables();

    // A block whose root is known already.
    codecontext(codecontext& outer, scriptcontext* plainRoot) noexcept
        : mpOuterBlock(&outer), mpPlainRoot(plainRoot)
    {}

    // Makes the context a frame of compiled code.
    void enterCells(qx::genericValue* cells) noexcept { mpCells = cells; }

    codecontext* mpOuterBlock = nullptr; // borrowed; null in a root alone
    // The root of the chain, once it is known that no context of it overrides anything: then nobody can tell
    // whether the virtual operations are called. Null: not known.
    scriptcontext* mpPlainRoot = nullptr;
    // The cells of a frame of compiled code; null in all others.
    qx::genericValue* mpCells = nullptr;
    genericSet mVariables;
};

// The root: parameters, signals and global variables of one call. To call a function, make one, set the
// globals that the script expects, and give it to codeManager or to statement::exec. It may serve any number
// of runs; what they leave behind stays: globals, parameters, the returned value.
class QXSCRIPT_API scriptcontext : public codecontext
{
public:
    // Begins without anything; the global variables come with the first one that is set.
    scriptcontext();
    // Ends the global variables too, unless they belong to another context.
    ~scriptcontext() override;

    // Global variables: as codecontext says. They are stored here, or shared with the caller's root.
    bool hasGlobalContextVariable(const scString& name) const override;
    // False, with nothing stored, in a context that shares the globals of one that had none.
    bool setGlobalContextVariable(const scString& name, const genericValue& value) override;
    genericValue& globalContextVariable(const scString& name) override;
    const genericValue& globalContextVariable(const scString& name) const override;
    sharedPtr<genericValue> globalContextVariableAddress(const scString& name) override;
    // Parameters: stored here. Setting one always succeeds.
    bool hasParameter(const scString& name) const override;
    bool setParameter(const scString& name, const genericValue& value) override;
    bool deleteParameter(const scString& name) override;
    genericValue& parameter(const scString& name) override;
    const genericValue& parameter(const scString& name) const override;
    sharedPtr<genericValue> parameterAddress(const scString& name) override;
    // Signals: stored here, until the statement that they are meant for clears them.
    bool setScriptSignal(const scString& name, const genericValue& value) override;
    sharedPtr<genericValue> scriptSignal(const scString& name) override;
    void clearScriptSignal(const scString& name) override;

    // The name under which a returned value stands among the parameters. A context that is to run again must
    // lose it first: context.deleteParameter(scriptcontext::returnparam()).
    static const scString& returnparam();

private:
    friend class codecontext;
    friend class scope;

    genericSet* getGlobalContextVariables() override;
    void setGlobalVariables(genericSet* shared);
    void markPending(raised what, bool stands) noexcept;

    genericSet mParameters;
    genericSet mSignals;
    genericSet* mpGlobalVariables = nullptr;
    replay* mpReplayed = nullptr; // calls that a statement of this run has made already; null for none
    bool mOwnsGlobalVariables = true;
    // Which of the names of control flow stand among the parameters and the signals, as bits: the test after
    // each statement is one load.
    unsigned char mPending = 0;
};

} // namespace qx::script
