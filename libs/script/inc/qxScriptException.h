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
// What a host shows is the chain, the failure of the outermost statement first and the reason last:
//
//     try {
//         tree->exec(context, result);
//     } catch (const qx::exception& failure) {
//         for (const qx::locString& message : failure.messages())
//             show(message.text());
//     } catch (const qx::string& thrown) { // by the script, with throwmessage
//         show(thrown);
//     }
//
// Parsing wraps what it catches once for each level of the text, running once for each enclosing statement.
// Beside these a plain qx::string travels, thrown by the script itself; it is never wrapped by a statement.
// `previous`, the failure that led to this one, may be null everywhere; texts may not, unless said otherwise.
// The texts are copied, and so is the chain of `previous`: nothing is borrowed. Each class tells its message,
// with its fields in brackets, and the id by which message files translate it.
#pragma once

#include "qxException.h"
#include "qxScriptExport.h"

namespace qx::script
{

// Category: every failure of the engine, parsing and running alike.
class QXSCRIPT_API scriptException : public exception
{
protected:
    using exception::exception;
};

// Category: text that cannot become a statement, and functions that cannot be loaded. A script that throws
// one has not run.
class QXSCRIPT_API parserException : public scriptException
{
protected:
    using scriptException::scriptException;
};

// "Error parsing [String]" (EParsing): a piece of text that is no statement, or whose parts are none. One
// link for each level of the text around the fault; the innermost text and reason come last in the chain.
class QXSCRIPT_API errParsingException : public parserException
{
public:
    explicit errParsingException(const wchar_t* text, const exception* previous = nullptr);
    // Shares the buffer of `text`.
    explicit errParsingException(const textSlice& text, const exception* previous = nullptr);
};

// "Missing closing bracket ("[Br]" for statement "[Str]"" (EMissCloseBracket), the parenthesis as it stands.
// `bracket` is the closing one that was wanted: `)` or `}`.
class QXSCRIPT_API missingBracketException : public parserException
{
public:
    missingBracketException(wchar_t bracket, const wchar_t* statement, const exception* previous = nullptr);
    // Shares the buffer of `statement`.
    missingBracketException(wchar_t bracket, const textSlice& statement, const exception* previous = nullptr);
};

// "Missing end of string for statement "[Str]"" (EMissCloseBracket, which it shares): a quotation mark that
// no other one follows.
class QXSCRIPT_API missingStringEndException : public parserException
{
public:
    explicit missingStringEndException(const wchar_t* statement, const exception* previous = nullptr);
    // Shares the buffer of `statement`.
    explicit missingStringEndException(const textSlice& statement, const exception* previous = nullptr);
};

// "Error parsing parametertype "[Type]"" (EParsingParType): a parameter declaration of a kind other than
// `in`.
class QXSCRIPT_API errParsingParamTypeException : public parserException
{
public:
    explicit errParsingParamTypeException(const wchar_t* type, const exception* previous = nullptr);
};

// "Error parsing datatype "[Type]"" (EParsingDataType): a parameter declaration whose type is no keyword.
class QXSCRIPT_API errParsingDataTypeException : public parserException
{
public:
    explicit errParsingDataTypeException(const wchar_t* type, const exception* previous = nullptr);
};

// "Error parsing defaultvalue "[Def]" of parameter "[Param]"" (EParsingDefOfParam): a default that is no
// parameter of a call.
class QXSCRIPT_API errParsingDefaultOfParamException : public parserException
{
public:
    errParsingDefaultOfParamException(const wchar_t* defaultText, const wchar_t* parameter,
                                      const exception* previous = nullptr);
};

// "[Fct]: Number of parameters < [NReq]" (ENumParams): fewer parameters than a built-in function requires.
class QXSCRIPT_API numParamsException : public parserException
{
public:
    numParamsException(const wchar_t* function, long32 required);
};

// "Function "[Fun]" not found in file "[File]"" (EFunNotFound). `scriptFile` is shown with its whole path.
class QXSCRIPT_API scriptFunctionNotFoundException : public parserException
{
public:
    scriptFunctionNotFoundException(const wchar_t* function, const file& scriptFile,
                                    const exception* previous = nullptr);
};

// "Parameter "[Param]" not found" (EParamNotFound): asked of a context that has none of the name.
class QXSCRIPT_API parameterNotFoundException : public scriptException
{
public:
    explicit parameterNotFoundException(const wchar_t* name, const exception* previous = nullptr);
};

// "Global variable "[Var]" not found" (EGlobNotFound): likewise.
class QXSCRIPT_API globalVarNotFoundException : public scriptException
{
public:
    explicit globalVarNotFoundException(const wchar_t* name, const exception* previous = nullptr);
};

// "Variable "[Var]" not found" (EVarNotFound): neither a local nor a parameter nor a global has the name.
class QXSCRIPT_API variableNotFoundException : public scriptException
{
public:
    explicit variableNotFoundException(const wchar_t* name, const exception* previous = nullptr);
};

// "Input parameter "[Name]" not found" (EInParamNotFound): a required parameter of a script function was not
// passed.
class QXSCRIPT_API inParameterNotFoundException : public scriptException
{
public:
    explicit inParameterNotFoundException(const wchar_t* name, const exception* previous = nullptr);
};

// "Error preparing parameter for function "[Fun]" ([Par])" (EPrepareparam): a parameter of a script
// function's call cannot be made ready; the reason is the previous failure.
class QXSCRIPT_API prepareParameterException : public scriptException
{
public:
    prepareParameterException(const wchar_t* function, const wchar_t* parameter,
                              const exception* previous = nullptr);
};

// "Error executing script "[Script]" [Det]" (EExecError): a statement failed at run time. `script` is the
// text of the statement, see statement::text. One link for each statement around the fault, the innermost
// last.
class QXSCRIPT_API scriptExecException : public scriptException
{
public:
    // `detail` is shown in parentheses; null for none.
    scriptExecException(const wchar_t* script, const wchar_t* detail, const exception* previous = nullptr);
};

// What statement::execError throws: the guarded run around it makes a scriptExecException of it, so a host
// meets one only if it calls `execute` by itself.
class QXSCRIPT_API exceptionDetail : public exception
{
public:
    explicit exceptionDetail(const string& detail);

    // Valid as long as this object.
    const string& detail() const noexcept { return mDetail; }

private:
    string mDetail;
};

} // namespace qx::script
