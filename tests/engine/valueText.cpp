// Values and failures as the tests show them.
#include "valueText.h"

#include <qxHeldTypes.h>

#include <algorithm>

namespace
{

using reference = qx::sharedPtr<qx::genericValue>;
using object = qx::intrface::interfaceptr<qx::intrface::unknown>;

std::string plainText(const qx::genericValue& value)
{
    qx::string text = L"(no text)";
    value.getValue(text);
    return text.utf8();
}

template <class T>
std::string held(const qx::genericValue::holderbase& holder, const qx::genericValue& value)
{
    const T& what = *static_cast<const T*>(holder.heldConstAddress());
    if constexpr (std::is_same_v<T, qx::string>) {
        return quotedText(what);
    } else if constexpr (std::is_same_v<T, qx::valueArray>) {
        std::string text;
        for (const qx::genericValue& element : what)
            text += (text.empty() ? "" : ", ") + valueText(element);
        return text.insert(0, 1, '[').append(1, ']');
    } else if constexpr (std::is_same_v<T, reference>) {
        static thread_local int nesting = 0; // references may go in circles
        std::string text = "to ";
        text.append(!what ? "nothing" : ++nesting > 8 ? "..." : valueText(*what));
        nesting -= what ? 1 : 0;
        return text;
    } else if constexpr (std::is_same_v<T, object>) {
        return what.isValid() ? "to an object" : "to nothing";
    } else if constexpr (requires { typename T::mapped_type; }) {
        std::string text;
        for (const auto& [key, element] : what)
            text += (text.empty() ? "" : ", ") + plainText(qx::genericValue(key)) + ": " + valueText(element);
        return text.insert(0, 1, '{').append(1, '}');
    } else {
        return plainText(value);
    }
}

struct shownType
{
    const std::type_info& type;
    const char* name;
    std::string (*text)(const qx::genericValue::holderbase& holder, const qx::genericValue& value);
};

template <class T>
shownType shown(const char* name)
{
    return {typeid(T), name, held<T>};
}

} // namespace

std::string valueText(const qx::genericValue& value)
{
    static const shownType types[] = {
        shown<bool>("bool"),
        shown<short>("short"),
        shown<qx::ushort>("ushort"),
        shown<int>("int"),
        shown<qx::uint>("uint"),
        shown<qx::long32>("long"),
        shown<qx::ulong32>("ulong"),
        shown<qx::uint64>("uint64"),
        shown<float>("float"),
        shown<double>("double"),
        shown<qx::string>("string"),
        shown<qx::date>("date"),
        shown<qx::time>("time"),
        shown<qx::timestamp>("timestamp"),
        shown<qx::locString>("locString"),
        shown<qx::valueArray>("array"),
        shown<std::map<short, qx::genericValue>>("map<short>"),
        shown<std::map<int, qx::genericValue>>("map<int>"),
        shown<std::map<qx::long32, qx::genericValue>>("map<long>"),
        shown<std::map<qx::string, qx::genericValue>>("map<string>"),
        shown<reference>("reference"),
        shown<object>("unknownptr"),
        shown<void*>("handle"),
        shown<qx::calcCrc32>("checksum"),
        shown<qx::sharedPtr<qx::conditions::condition>>("condition"),
    };
    const auto holder = value.holderCopy();
    if (!holder)
        return "null";
    const auto* const row = std::find_if(std::begin(types), std::end(types),
                                         [&](const shownType& t) { return t.type == holder->heldType(); });
    return row == std::end(types) ? "(unknown type)"
                                  : std::string(row->name).append(1, ' ').append(row->text(*holder, value));
}

std::string quotedText(const qx::string& text)
{
    std::string quoted = "\"";
    for (const char c : text.utf8())
        if (c == '\n')
            quoted += "\\n";
        else if (c == '\r')
            quoted += "\\r";
        else
            quoted += std::string(c == '"' || c == '\\' ? 1 : 0, '\\') + c;
    return quoted + '"';
}

texts chainOf(const qx::exception& failure)
{
    texts chain;
    for (const qx::locString& message : failure.messages())
        chain.push_back(message.text());
    return chain;
}
