// The data type keywords.
#include "qxScriptTypes.h"

#include "qxLog.h"

namespace qx::script
{

ePrimitiveScriptType parseScriptType(const string& text)
{
    static const struct
    {
        std::wstring_view word;
        ePrimitiveScriptType type;
    } keywords[] = {
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
    if (qxlog::logManager::listens(qxlog::level::debug))
        qxlog::logManager::getLogger(L"qx::script::parseScriptType")
            ->log_debug(L"qx::script::parseScriptType entered with typestring %s", text);
    const string word = text.lower();
    for (const auto& keyword : keywords)
        if (keyword.word == word)
            return keyword.type;
    return scriptTypeVoid;
}

} // namespace qx::script
