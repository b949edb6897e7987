// The failures of the engine: texts, categories, chains.
#include "host.h"
#include "valueText.h"

#include <qxFile.h>

#include <gtest/gtest.h>

using namespace qx::script;

namespace
{

// Without a reason and with one.
template <class T, class... Args>
void expect(const wchar_t* id, const qx::string& text, const Args&... arguments)
{
    static_assert(std::is_nothrow_copy_constructible_v<T> && std::is_base_of_v<scriptException, T>);
    const T alone(arguments...);
    EXPECT_EQ(alone.message().id(), id);
    EXPECT_EQ(chainOf(alone), texts{text});
    EXPECT_EQ(alone.what(), text.utf8());
    const qx::unexpectedErrorException reason(L"the reason");
    EXPECT_EQ(chainOf(T(arguments..., &reason)), (texts{text, L"the reason"}));
}

template <class T, class... Args>
void expectParsing(const wchar_t* id, const qx::string& text, const Args&... arguments)
{
    static_assert(std::is_base_of_v<parserException, T>);
    expect<T>(id, text, arguments...);
}

} // namespace

TEST(failures, exception_texts)
{
    const qx::file script(L"tools.qxscr");
    // Text of a script is neither a format nor a field of the message around it.
    expectParsing<errParsingException>(L"EParsing", L"Error parsing %s[String]%n", L"%s[String]%n");
    expectParsing<missingBracketException>(
        L"EMissCloseBracket", L"Missing closing bracket (\")\" for statement \"f(x\"", L')', L"f(x");
    expectParsing<missingStringEndException>(L"EMissCloseBracket",
                                             L"Missing end of string for statement \"f(x\"", L"f(x");
    expectParsing<errParsingParamTypeException>(L"EParsingParType", L"Error parsing parametertype \"out\"",
                                                L"out");
    expectParsing<errParsingDataTypeException>(L"EParsingDataType", L"Error parsing datatype \"in\"", L"in");
    expectParsing<errParsingDefaultOfParamException>(
        L"EParsingDefOfParam", L"Error parsing defaultvalue \"1\" of parameter \"n\"", L"1", L"n");
    expectParsing<scriptFunctionNotFoundException>(
        L"EFunNotFound", L"Function \"f\" not found in file \"" + script.fullName() + L"\"", L"f", script);
    expect<parameterNotFoundException>(L"EParamNotFound", L"Parameter \"p\" not found", L"p");
    expect<globalVarNotFoundException>(L"EGlobNotFound", L"Global variable \"g\" not found", L"g");
    expect<variableNotFoundException>(L"EVarNotFound", L"Variable \"v\" not found", L"v");
    expect<inParameterNotFoundException>(L"EInParamNotFound", L"Input parameter \"n\" not found", L"n");
    expect<prepareParameterException>(L"EPrepareparam",
                                      L"Error preparing parameter for function \"f\" (text)", L"f", L"text");
    expect<scriptExecException>(L"EExecError", L"Error executing script \"[Det]\" (%d[Script])", L"[Det]",
                                L"%d[Script]");
    expect<scriptExecException>(L"EExecError", L"Error executing script \"f(x)\" ()", L"f(x)", L"");
    expect<scriptExecException>(L"EExecError", L"Error executing script \"f(x)\" ", L"f(x)",
                                static_cast<const wchar_t*>(nullptr));

    const numParamsException tooFew(L"file_copy", qx::long32(2));
    EXPECT_EQ(chainOf(tooFew), texts{L"file_copy: Number of parameters < 2"});
    EXPECT_EQ(tooFew.message().id(), L"ENumParams");
    static_assert(std::is_base_of_v<parserException, numParamsException>);
    static_assert(!std::is_base_of_v<scriptException, exceptionDetail>);
    static_assert(!std::is_base_of_v<parserException, scriptExecException>);
}
