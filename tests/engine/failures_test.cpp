// The failures of the engine: their identities, texts and chains.
#include "host.h"
#include "support/expectations.h"
#include "valueText.h"

#include <qxFile.h>

using namespace qx::script;

namespace
{

// `ID: TEXT`. A reason goes into the chain and into no text.
template <class T, class... Args>
std::string told(const Args&... arguments)
{
    static_assert(std::is_nothrow_copy_constructible_v<T> && std::is_base_of_v<scriptException, T>);
    const T failure(arguments...);
    const qx::string text = failure.message().text();
    EXPECT_EQ(chainOf(failure), texts{text});
    EXPECT_EQ(failure.what(), text.utf8());
    if constexpr (!std::is_same_v<T, numParamsException>) {
        const qx::unexpectedErrorException reason(L"the reason");
        EXPECT_EQ(chainOf(T(arguments..., &reason)), (texts{text, L"the reason"}));
    }
    return qx::string(failure.message().id()).utf8() + ": " + text.utf8() + "\n";
}

template <class... T>
constexpr bool areOfTheParser = (std::is_base_of_v<parserException, T> && ...);
static_assert(
    areOfTheParser<errParsingException, missingBracketException, missingStringEndException,
                   errParsingParamTypeException, errParsingDataTypeException,
                   errParsingDefaultOfParamException, scriptFunctionNotFoundException, numParamsException>);
static_assert(!areOfTheParser<scriptExecException> && !std::is_base_of_v<scriptException, exceptionDetail>);

} // namespace

TEST(failures, tell_what_is_expected)
{
    const qx::file script(L"tools.qxscr");
    // Text of a script is neither a format nor a field of the message around it.
    const std::string all =
        told<errParsingException>(L"%s[String]%n") + told<missingBracketException>(L')', L"f(x") +
        told<missingStringEndException>(L"f(x") + told<errParsingParamTypeException>(L"out") +
        told<errParsingDataTypeException>(L"in") + told<errParsingDefaultOfParamException>(L"1", L"n") +
        told<scriptFunctionNotFoundException>(L"f", script) + told<parameterNotFoundException>(L"p") +
        told<globalVarNotFoundException>(L"g") + told<variableNotFoundException>(L"v") +
        told<inParameterNotFoundException>(L"n") + told<prepareParameterException>(L"f", L"text") +
        told<scriptExecException>(L"[Det]", L"%d[Script]") + told<scriptExecException>(L"f(x)", L"") +
        told<scriptExecException>(L"f(x)", static_cast<const wchar_t*>(nullptr)) +
        told<numParamsException>(L"file_copy", qx::long32(2));
    expectContent(tableFile("engine/failures"),
                  qx::string::fromUtf8(all).replace(script.fullName(), L"FILE").utf8());
}
