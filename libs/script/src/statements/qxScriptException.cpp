// The failures of the engine: each a message with named fields.
#include "qxScriptException.h"

#include "qxFile.h"
#include "qxTextSlice.h"

namespace qx::script
{

errParsingException::errParsingException(const wchar_t* text, const exception* previous)
    : parserException(locString(L"EParsing", L"Error parsing [String]"), previous)
{
    fields().set(text, L"String");
}

errParsingException::errParsingException(const textSlice& text, const exception* previous)
    : parserException(locString(L"EParsing", L"Error parsing [String]"), previous)
{
    fields().set(text, L"String");
}

namespace
{

// REQUIRED: the text opens a parenthesis that it never closes, and a string without its end shares the id.
// Held by exceptionTexts.
const wchar_t* const missingClosingId = L"EMissCloseBracket";
const wchar_t* const missingBracketText = L"Missing closing bracket (\"[Br]\" for statement \"[Str]\"";
const wchar_t* const missingStringEndText = L"Missing end of string for statement \"[Str]\"";

} // namespace

missingBracketException::missingBracketException(wchar_t bracket, const wchar_t* statement,
                                                 const exception* previous)
    : missingBracketException(bracket, textSlice(string(statement)), previous)
{}

missingBracketException::missingBracketException(wchar_t bracket, const textSlice& statement,
                                                 const exception* previous)
    : parserException(locString(missingClosingId, missingBracketText), previous)
{
    fields().set(bracket, L"Br");
    fields().set(statement, L"Str");
}

missingStringEndException::missingStringEndException(const wchar_t* statement, const exception* previous)
    : missingStringEndException(textSlice(string(statement)), previous)
{}

missingStringEndException::missingStringEndException(const textSlice& statement, const exception* previous)
    : parserException(locString(missingClosingId, missingStringEndText), previous)
{
    fields().set(statement, L"Str");
}

errParsingParamTypeException::errParsingParamTypeException(const wchar_t* type, const exception* previous)
    : parserException(locString(L"EParsingParType", L"Error parsing parametertype \"[Type]\""), previous)
{
    fields().set(type, L"Type");
}

errParsingDataTypeException::errParsingDataTypeException(const wchar_t* type, const exception* previous)
    : parserException(locString(L"EParsingDataType", L"Error parsing datatype \"[Type]\""), previous)
{
    fields().set(type, L"Type");
}

errParsingDefaultOfParamException::errParsingDefaultOfParamException(const wchar_t* defaultText,
                                                                     const wchar_t* parameter,
                                                                     const exception* previous)
    : parserException(
          locString(L"EParsingDefOfParam", L"Error parsing defaultvalue \"[Def]\" of parameter \"[Param]\""),
          previous)
{
    fields().set(defaultText, L"Def");
    fields().set(parameter, L"Param");
}

numParamsException::numParamsException(const wchar_t* function, long32 required)
    : parserException(locString(L"ENumParams", L"[Fct]: Number of parameters < [NReq]"), nullptr)
{
    fields().set(function, L"Fct");
    fields().set(required, L"NReq");
}

scriptFunctionNotFoundException::scriptFunctionNotFoundException(const wchar_t* function,
                                                                 const file& scriptFile,
                                                                 const exception* previous)
    : parserException(locString(L"EFunNotFound", L"Function \"[Fun]\" not found in file \"[File]\""),
                      previous)
{
    fields().set(function, L"Fun");
    fields().set(scriptFile.fullName(), L"File");
}

parameterNotFoundException::parameterNotFoundException(const wchar_t* name, const exception* previous)
    : scriptException(locString(L"EParamNotFound", L"Parameter \"[Param]\" not found"), previous)
{
    fields().set(name, L"Param");
}

globalVarNotFoundException::globalVarNotFoundException(const wchar_t* name, const exception* previous)
    : scriptException(locString(L"EGlobNotFound", L"Global variable \"[Var]\" not found"), previous)
{
    fields().set(name, L"Var");
}

variableNotFoundException::variableNotFoundException(const wchar_t* name, const exception* previous)
    : scriptException(locString(L"EVarNotFound", L"Variable \"[Var]\" not found"), previous)
{
    fields().set(name, L"Var");
}

inParameterNotFoundException::inParameterNotFoundException(const wchar_t* name, const exception* previous)
    : scriptException(locString(L"EInParamNotFound", L"Input parameter \"[Name]\" not found"), previous)
{
    fields().set(name, L"Name");
}

prepareParameterException::prepareParameterException(const wchar_t* function, const wchar_t* parameter,
                                                     const exception* previous)
    : scriptException(
          locString(L"EPrepareparam", L"Error preparing parameter for function \"[Fun]\" ([Par])"), previous)
{
    fields().set(function, L"Fun");
    fields().set(parameter, L"Par");
}

scriptExecException::scriptExecException(const wchar_t* script, const wchar_t* detail,
                                         const exception* previous)
    : scriptException(locString(L"EExecError", L"Error executing script \"[Script]\" [Det]"), previous)
{
    fields().set(script, L"Script");
    if (detail)
        fields().set(string::sformat(L"(%s)", detail), L"Det");
    else
        fields().set(static_cast<const wchar_t*>(nullptr), L"Det");
}

exceptionDetail::exceptionDetail(const string& detail) : exception(locString(), nullptr), mDetail(detail) {}

} // namespace qx::script
