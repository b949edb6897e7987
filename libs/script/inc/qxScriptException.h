// The failures of the engine.
//
//     qx::exception
//       scriptException                       every failure of the engine
//         parserException                     text that cannot become a statement or a function
//           errParsingException, missingBracketException, missingStringEndException,
//           errParsingParamTypeException, errParsingDataTypeException, errParsingDefaultOfParamException,
//           numParamsException, scriptFunctionNotFoundException
//         parameterNotFoundException, globalVarNotFoundException, variableNotFoundException,
//         inParameterNotFoundException, prepareParameterException
//         scriptExecException                 a statement failed at run time
//       exceptionDetail                       carries a detail text to the statement's failure; stays inside
//
// Parsing wraps what it catches once for each level of the text, running once for each enclosing statement.
// Beside these a plain qx::string travels, thrown by the script itself; it is never wrapped by a statement.
// `previous` may be null everywhere; texts may not.
#pragma once

#include "qxException.h"
#include "qxScriptExport.h"

namespace qx::script
{

class QXSCRIPT_API scriptException : public exception
{
protected:
    using exception::exception;
};

class QXSCRIPT_API parserException : public scriptException
{
protected:
    using scriptException::scriptException;
};

class QXSCRIPT_API errParsingException : public parserException
{
public:
    explicit errParsingException(const wchar_t* text, const exception* previous = nullptr);
    // Shares the buffer of `text`.
    explicit errParsingException(const textSlice& text, const exception* previous = nullptr);
};

class QXSCRIPT_API missingBracketException : public parserException
{
public:
    missingBracketException(wchar_t bracket, const wchar_t* statement, const exception* previous = nullptr);
    missingBracketException(wchar_t bracket, const textSlice& statement, const exception* previous = nullptr);
};

class QXSCRIPT_API missingStringEndException : public parserException
{
public:
    explicit missingStringEndException(const wchar_t* statement, const exception* previous = nullptr);
    explicit missingStringEndException(const textSlice& statement, const exception* previous = nullptr);
};

// A parameter declaration of a kind other than `in`.
class QXSCRIPT_API errParsingParamTypeException : public parserException
{
public:
    explicit errParsingParamTypeException(const wchar_t* type, const exception* previous = nullptr);
};

class QXSCRIPT_API errParsingDataTypeException : public parserException
{
public:
    explicit errParsingDataTypeException(const wchar_t* type, const exception* previous = nullptr);
};

class QXSCRIPT_API errParsingDefaultOfParamException : public parserException
{
public:
    errParsingDefaultOfParamException(const wchar_t* defaultText, const wchar_t* parameter,
                                      const exception* previous = nullptr);
};

// Fewer parameters than a built-in function requires.
class QXSCRIPT_API numParamsException : public parserException
{
public:
    numParamsException(const wchar_t* function, long32 required);
};

class QXSCRIPT_API scriptFunctionNotFoundException : public parserException
{
public:
    scriptFunctionNotFoundException(const wchar_t* function, const file& scriptFile,
                                    const exception* previous = nullptr);
};

class QXSCRIPT_API parameterNotFoundException : public scriptException
{
public:
    explicit parameterNotFoundException(const wchar_t* name, const exception* previous = nullptr);
};

class QXSCRIPT_API globalVarNotFoundException : public scriptException
{
public:
    explicit globalVarNotFoundException(const wchar_t* name, const exception* previous = nullptr);
};

class QXSCRIPT_API variableNotFoundException : public scriptException
{
public:
    explicit variableNotFoundException(const wchar_t* name, const exception* previous = nullptr);
};

// A required parameter of a script function was not passed.
class QXSCRIPT_API inParameterNotFoundException : public scriptException
{
public:
    explicit inParameterNotFoundException(const wchar_t* name, const exception* previous = nullptr);
};

// A parameter of a script function's call cannot be prepared.
class QXSCRIPT_API prepareParameterException : public scriptException
{
public:
    prepareParameterException(const wchar_t* function, const wchar_t* parameter,
                              const exception* previous = nullptr);
};

class QXSCRIPT_API scriptExecException : public scriptException
{
public:
    // `detail` is shown in parentheses; null for none.
    scriptExecException(const wchar_t* script, const wchar_t* detail, const exception* previous = nullptr);
};

class QXSCRIPT_API exceptionDetail : public exception
{
public:
    explicit exceptionDetail(const string& detail);

    const string& detail() const noexcept { return mDetail; }

private:
    string mDetail;
};

} // namespace qx::script
