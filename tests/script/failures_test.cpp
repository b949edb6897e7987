// The failures of the engine: texts, categories, chains.
#include "host.h"
#include "valueText.h"

#include <qxFile.h>

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <type_traits>

using namespace qx::script;

namespace
{

struct failure
{
    std::shared_ptr<const qx::exception> thrown;
    bool isParsing; // caught as parserException
    const wchar_t* id;
    qx::string text;
};

template <class T, class... Args>
failure row(const wchar_t* id, const qx::string& text, const Args&... arguments)
{
    static_assert(std::is_nothrow_copy_constructible_v<T>);
    constexpr bool isParsing = std::is_base_of_v<parserException, T>;
    static_assert(std::is_base_of_v<scriptException, T>);
    return {std::make_shared<T>(arguments...), isParsing, id, text};
}

std::vector<failure> everyFailure(const qx::exception* reason)
{
    const qx::file script(L"tools.qxscr");
    return {
        row<errParsingException>(L"EParsing", L"Error parsing f(x", L"f(x", reason),
        row<missingBracketException>(L"EMissCloseBracket",
                                     L"Missing closing bracket (\")\" for statement \"f(x\"", L')', L"f(x",
                                     reason),
        row<missingStringEndException>(L"EMissCloseBracket", L"Missing end of string for statement \"f(x\"",
                                       L"f(x", reason),
        row<errParsingParamTypeException>(L"EParsingParType", L"Error parsing parametertype \"out\"", L"out",
                                          reason),
        row<errParsingDataTypeException>(L"EParsingDataType", L"Error parsing datatype \"in\"", L"in",
                                         reason),
        row<errParsingDefaultOfParamException>(L"EParsingDefOfParam",
                                               L"Error parsing defaultvalue \"1\" of parameter \"n\"", L"1",
                                               L"n", reason),
        row<scriptFunctionNotFoundException>(
            L"EFunNotFound", L"Function \"f\" not found in file \"" + script.fullName() + L"\"", L"f", script,
            reason),
        row<parameterNotFoundException>(L"EParamNotFound", L"Parameter \"p\" not found", L"p", reason),
        row<globalVarNotFoundException>(L"EGlobNotFound", L"Global variable \"g\" not found", L"g", reason),
        row<variableNotFoundException>(L"EVarNotFound", L"Variable \"v\" not found", L"v", reason),
        row<inParameterNotFoundException>(L"EInParamNotFound", L"Input parameter \"n\" not found", L"n",
                                          reason),
        row<prepareParameterException>(
            L"EPrepareparam", L"Error preparing parameter for function \"f\" (text)", L"f", L"text", reason),
        row<scriptExecException>(L"EExecError", L"Error executing script \"f(x)\" (detail)", L"f(x)",
                                 L"detail", reason),
        row<scriptExecException>(L"EExecError", L"Error executing script \"f(x)\" ()", L"f(x)", L"", reason),
        row<scriptExecException>(L"EExecError", L"Error executing script \"f(x)\" ", L"f(x)",
                                 static_cast<const wchar_t*>(nullptr), reason),
    };
}

} // namespace

TEST(failures, exceptionTexts)
{
    const std::set<qx::string> parsing = {L"EParsing",         L"EMissCloseBracket",  L"EParsingParType",
                                          L"EParsingDataType", L"EParsingDefOfParam", L"EFunNotFound"};
    const qx::unexpectedErrorException reason(L"the reason");
    for (const failure& f : everyFailure(nullptr)) {
        EXPECT_EQ(chainOf(*f.thrown), texts{f.text});
        EXPECT_EQ(f.thrown->message().id(), f.id);
        EXPECT_EQ(f.isParsing, parsing.contains(f.id));
    }
    for (const failure& f : everyFailure(&reason))
        EXPECT_EQ(chainOf(*f.thrown), (texts{f.text, L"the reason"}));

    const numParamsException tooFew(L"file_copy", qx::long32(2));
    EXPECT_EQ(chainOf(tooFew), texts{L"file_copy: Number of parameters < 2"});
    EXPECT_EQ(tooFew.message().id(), L"ENumParams");
    static_assert(std::is_base_of_v<parserException, numParamsException>);
    static_assert(!std::is_base_of_v<scriptException, exceptionDetail>);
}

TEST(failures, chain_is_in_the_order_of_wrapping_and_survives_its_links)
{
    auto outer = std::make_unique<scriptExecException>(L"outer", nullptr);
    {
        const variableNotFoundException inner(L"v");
        const scriptExecException middle(L"middle", L"detail", &inner);
        *outer = scriptExecException(L"outer", nullptr, &middle);
    }
    const scriptExecException copy(*outer);
    outer.reset();
    EXPECT_EQ(chainOf(copy),
              (texts{L"Error executing script \"outer\" ", L"Error executing script \"middle\" (detail)",
                     L"Variable \"v\" not found"}));
    EXPECT_STREQ(copy.what(), "Error executing script \"outer\" ");
}

TEST(failures, text_of_a_script_is_shown_as_it_is)
{
    // Neither a format nor a field of the message around it.
    EXPECT_EQ(chainOf(errParsingException(L"%s[String]%n")), texts{L"Error parsing %s[String]%n"});
    EXPECT_EQ(chainOf(scriptExecException(L"[Det]", L"%d[Script]")),
              texts{L"Error executing script \"[Det]\" (%d[Script])"});
}
