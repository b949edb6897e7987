// function: a loaded function of a script file, immutable and shared.
#pragma once

#include "code/qxScriptInParameter.h"
#include "compiled/qxScriptProgram.h"
#include "qxScriptStatement.h"

#include "qxFile.h"
#include "qxSharedPtr.h"
#include "qxTimestamp.h"

#include <atomic>
#include <span>

namespace qx::script
{

class scriptcontext;

class function
{
public:
    // Parses the body and then the declarations; throws what parsing throws. A null pointer for a body that
    // holds no statement.
    static sharedPtr<function> parse(const string& body, const std::vector<string>& declarations,
                                     const file& source, const timestamp& time);
    // Parses both as `parse` does, and keeps nothing. False for a body that holds no statement.
    static bool parses(string&& body, std::span<const string> declarations);

    const file& source() const { return mFile; }
    // The modification time of the file.
    const timestamp& time() const { return mTimestamp; }
    const statement& body() const { return *mpStatement; }

    // The directory of the file, which is the base path of the run.
    const genericValue& directoryName() const { return mDirectory; }

    // What is known of the context of a call.
    enum class callee
    {
        ofHost,      // it stays, with the parameters and what was returned
        ofCall,      // it ends with the call
        ofCallAtHome // the same, and the base path is the directory of the function already
    };
    // Runs the function in `context`, with parameters made of the arguments in order of declaration; missing
    // ones take their defaults. The arguments of a host are copied, those of a call may be emptied. What is
    // returned goes to `result`. `name` is the function in what is thrown: prepareParameterException, with
    // what is bound by then left bound, and scriptExecException.
    void call(const string& name, std::span<genericValue> arguments, scriptcontext& context, callee kind,
              genericValue& result) const;
    // Runs the rest of the function where it was left in `f`, in a root of the engine's own for it. `result`
    // and what is thrown are as for a call at home.
    void callRest(const string& name, frame& f, scriptcontext& root, genericValue& result) const;
    ending ends() const noexcept { return inside::ends(*mpStatement); }
    // The compiled form, made when that pays; null where the function stays a tree.
    const program* compiled() const
    {
        return mForm.load(std::memory_order_acquire) == form::unknown ? compileIfWorth() : mProgram.get();
    }

private:
    function() = default;

    // Names the function in what `work` throws.
    template <class Work>
    static void named(const string& name, const Work& work);

    void bind(const string& name, std::span<genericValue> arguments, scriptcontext& context,
              callee kind) const;
    // What was returned in a context that ends with the call goes to `result`.
    static void moveReturned(scriptcontext& root, genericValue& result);
    // `bareRoot` is the context where that was bare before the parameters were bound; null otherwise.
    void run(scriptcontext& context, scriptcontext* bareRoot, callee kind, genericValue& result) const;
    // See compiled(). Counts the runs; safe from any thread.
    const program* compileIfWorth() const;
    std::unique_ptr<const program> compile() const;

    // What is known of the compiled form.
    enum class form : unsigned char
    {
        unknown,
        tree,
        compiled
    };

    sharedPtr<statement> mpStatement;
    std::vector<inParameter> mParameters;
    file mFile;
    genericValue mDirectory; // of the file
    timestamp mTimestamp;
    mutable std::atomic<form> mForm = form::unknown;
    mutable std::atomic<unsigned char> mRuns = 0;    // while the form is unknown
    mutable std::unique_ptr<const program> mProgram; // written once, before mForm
};

} // namespace qx::script
