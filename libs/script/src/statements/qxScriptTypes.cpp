// The data type keywords.
#include "qxScriptTypes.h"

#include "statements/qxScriptBuiltins.h"

#include "qxLog.h"

#include <algorithm>

namespace qx::script
{

namespace
{

struct keyword
{
    std::wstring_view word;
    ePrimitiveScriptType type;
};

constexpr keyword keywords[] = {
    {L"void", scriptTypeVoid},     {L"bool", scriptTypeBool},
    {L"short", scriptTypeShort},   {L"int", scriptTypeInt},
    {L"long", scriptTypeLong},     {L"ushort", scriptTypeUshort},
    {L"uint", scriptTypeUint},     {L"ulong", scriptTypeUlong},
    {L"float", scriptTypeFloat},   {L"double", scriptTypeDouble},
    {L"string", scriptTypeString}, {L"date", scriptTypeDate},
    {L"time", scriptTypeTime},     {L"timestamp", scriptTypeTimestamp},
    {L"binary", scriptTypeBinary}, {L"unknownptr", scriptTypeUnknownptr},
    {L"array", scriptTypeArray},
};

// Null for a word that is none.
const keyword* findKeyword(std::wstring_view word)
{
    const auto found = std::find_if(std::begin(keywords), std::end(keywords),
                                    [word](const keyword& k) { return k.word == word; });
    return found == std::end(keywords) ? nullptr : found;
}

ePrimitiveScriptType typeOf(std::wstring_view text)
{
    if (qxlog::logManager::listens(qxlog::level::debug))
        qxlog::logManager::getLogger(L"qx::script::parseScriptType")
            ->log_debug(L"qx::script::parseScriptType entered with typestring %s", text);
    const keyword* found = findKeyword(text);
    if (!found)
        found = findKeyword(string(std::wstring(text)).lower());
    return found ? found->type : scriptTypeVoid;
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
