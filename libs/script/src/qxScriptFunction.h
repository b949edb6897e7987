// function: a loaded function of a script file, immutable and shared.
#pragma once

#include "qxScriptInParameter.h"
#include "qxScriptStatement.h"

#include "qxFile.h"
#include "qxSharedPtr.h"
#include "qxTimestamp.h"

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

    // Makes parameters of the context out of the arguments, in order of declaration; missing ones take their
    // defaults. Throws prepareParameterException with `name` as the function; what is bound by then stays.
    void bind(const string& name, const std::vector<genericValue>& arguments, scriptcontext& context) const;

private:
    function() = default;

    sharedPtr<statement> mpStatement;
    std::vector<inParameter> mParameters;
    file mFile;
    timestamp mTimestamp;
};

} // namespace qx::script
