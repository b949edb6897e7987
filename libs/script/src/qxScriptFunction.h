// function: a loaded function of a script file, immutable and shared.
#pragma once

#include "qxScriptInParameter.h"
#include "qxScriptStatement.h"

#include "qxFile.h"
#include "qxSharedPtr.h"
#include "qxTimestamp.h"

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

    const file& source() const { return mFile; }
    // The modification time of the file.
    const timestamp& time() const { return mTimestamp; }
    const statement& body() const { return *mpStatement; }

    // Runs the function in `context`, with parameters made of the arguments, which may be emptied, in order of
    // declaration; missing ones take their defaults. The parameters and what is returned stay in the context,
    // and what is returned is copied into `result`. `name` is the function in what is thrown:
    // prepareParameterException, with what is bound by then left bound, and scriptExecException.
    void call(const string& name, std::span<genericValue> arguments, scriptcontext& context,
              genericValue& result) const;

private:
    function() = default;

    void bind(const string& name, std::span<genericValue> arguments, scriptcontext& context) const;
    void run(scriptcontext& context, genericValue& result) const;

    sharedPtr<statement> mpStatement;
    std::vector<inParameter> mParameters;
    file mFile;
    genericValue mDirectory; // of the file
    timestamp mTimestamp;
};

} // namespace qx::script
