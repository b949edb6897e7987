// The data type keywords.
#include "qxScriptTypes.h"

#include "statements/qxScriptBuiltins.h"
#include "statements/qxScriptDataTypes.h"

#include "qxHeldTypes.h"
#include "qxLog.h"

#include <algorithm>
#include <array>

namespace qx::script
{

namespace
{

// The keywords by their numbers.
template <class... T>
constexpr auto keywordsOf(typeList<T...>)
{
    std::array<std::wstring_view, sizeof...(T) + 2> words;
    words[scriptTypeVoid] = L"void";
    words[scriptTypeBinary] = L"binary";
    ((words[dataTypeOf<T>.number] = dataTypeOf<T>.word), ...);
    return words;
}

constexpr auto keywords = keywordsOf(keywordTypes());

// scriptTypeVoid for a word that is none.
ePrimitiveScriptType find(std::wstring_view word)
{
    const auto found = std::find(keywords.begin(), keywords.end(), word);
    return found == keywords.end() ? scriptTypeVoid
                                   : static_cast<ePrimitiveScriptType>(found - keywords.begin());
}

ePrimitiveScriptType typeOf(std::wstring_view text)
{
    if (qxlog::logManager::listens(qxlog::level::debug))
        qxlog::logManager::getLogger(L"qx::script::parseScriptType")
            ->log_debug(L"qx::script::parseScriptType entered with typestring %s", text);
    const ePrimitiveScriptType found = find(text);
    return found != scriptTypeVoid ? found : find(string(std::wstring(text)).lower());
}

} // namespace

ePrimitiveScriptType parseScriptType(const string& text)
{
    return typeOf(text);
}

ePrimitiveScriptType parseScriptType(const typeWord& word)
{
    return typeOf(word);
}

} // namespace qx::script
