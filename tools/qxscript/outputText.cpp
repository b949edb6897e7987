// Values as text: scalars as they convert, arrays and maps as JSON, references followed to what they lead to.
#include "outputText.h"

#include <qxHeldTypes.h>
#include <qxScript>

#include <cmath>
#include <unordered_set>

namespace
{

using qx::genericValue;
using qx::string;
using heldValue = qx::sharedPtr<genericValue::holderbase>;
using qx::intrface::objectRef;
using reference = qx::sharedPtr<genericValue>;

// The value inside a holder, if it is of that type.
template <class T>
const T* as(const heldValue& held)
{
    const auto* holder = dynamic_cast<const genericValue::holder<T>*>(held.get());
    return holder ? &holder->constValue() : nullptr;
}

template <class T>
bool isA(const heldValue& held)
{
    return held->heldType() == typeid(T);
}

template <class... T>
bool isOneOf(const heldValue& held)
{
    return (isA<T>(held) || ...);
}

// A part of an array or map; the key is a map's.
struct child
{
    string key;
    const genericValue* value;
};

template <class Key>
bool addEntries(const heldValue& held, std::vector<child>& children)
{
    const auto* map = as<std::map<Key, genericValue>>(held);
    if (!map)
        return false;
    for (const auto& [key, value] : *map) {
        string text;
        genericValue(key).getValue(text);
        children.push_back({text, &value});
    }
    return true;
}

bool isMap(const heldValue& held, std::vector<child>& children)
{
    return addEntries<string>(held, children) || addEntries<int>(held, children) ||
           addEntries<qx::long32>(held, children) || addEntries<short>(held, children);
}

bool isArray(const heldValue& held, std::vector<child>& children)
{
    const auto* array = as<qx::valueArray>(held);
    if (!array)
        return false;
    for (const genericValue& value : *array)
        children.push_back({string(), &value});
    return true;
}

// The text of what is neither array nor map.
string scalarText(const heldValue& held, const genericValue& value)
{
    if (const auto* object = as<objectRef>(held))
        return object->isValid() ? L"<object>" : L"<null object>";
    if (isA<qx::sharedPtr<qx::conditions::condition>>(held))
        return L"<condition>";
    if (isA<qx::calcCrc32>(held))
        return L"<checksum>";
    if (isA<void*>(held))
        return L"<handle>";
    string text;
    return value.getValue(text) ? text : string(L"<value>");
}

bool isBareInJson(const heldValue& held, const genericValue& value)
{
    double number = 0;
    if (isOneOf<float, double>(held))
        return value.getValue(number) && std::isfinite(number);
    return isOneOf<bool, short, qx::ushort, int, qx::uint, qx::long32, qx::ulong32, qx::uint64>(held);
}

bool isHighSurrogate(wchar_t c)
{
    return c >= 0xD800 && c <= 0xDBFF;
}

bool isLowSurrogate(wchar_t c)
{
    return c >= 0xDC00 && c <= 0xDFFF;
}

void appendQuoted(string& json, const string& text)
{
    json += L'"';
    for (std::size_t i = 0; i < text.size(); ++i) {
        const wchar_t c = text[i];
        const bool isPair = isHighSurrogate(c) && i + 1 < text.size() && isLowSurrogate(text[i + 1]);
        if (c == L'"' || c == L'\\') {
            json += L'\\';
            json += c;
        } else if (isPair) {
            json += c;
            json += text[++i];
        } else if (c < L' ' || isHighSurrogate(c) || isLowSurrogate(c)) {
            json += string::sformat(L"\\u%04x", static_cast<unsigned>(c));
        } else {
            json += c;
        }
    }
    json += L'"';
}

// Writes values as JSON. Keeps its own stack, since values may be nested deeper than the machine's bears.
class jsonWriter
{
public:
    string write(const genericValue& value)
    {
        begin(value);
        while (!mOpen.empty()) {
            container& innermost = mOpen.back();
            if (innermost.next == innermost.children.size()) {
                mJson += innermost.isMap ? L'}' : L']';
                forget(innermost.references);
                mOpen.pop_back();
                continue;
            }
            if (innermost.next > 0)
                mJson += L',';
            const child& part = innermost.children[innermost.next++];
            if (innermost.isMap) {
                appendQuoted(mJson, part.key);
                mJson += L':';
            }
            begin(*part.value);
        }
        return std::move(mJson);
    }

private:
    struct container
    {
        heldValue held; // keeps the children
        std::vector<child> children;
        bool isMap;
        std::size_t references; // that led to it
        std::size_t next = 0;
    };

    // Writes a scalar, or opens an array or map.
    void begin(const genericValue& value)
    {
        const genericValue* current = &value;
        std::size_t references = 0;
        heldValue held = current->holderCopy();
        while (held && isA<reference>(held)) {
            const reference target = *as<reference>(held);
            if (target && !mFollowed.insert(target.get()).second) {
                appendQuoted(mJson, L"<reference>"); // it leads back to what is being written
                forget(references);
                return;
            }
            if (target) {
                mTargets.push_back(target);
                ++references;
            }
            current = target.get();
            held = target ? target->holderCopy() : heldValue();
        }
        std::vector<child> children;
        const bool map = held && isMap(held, children);
        if (map || (held && isArray(held, children))) {
            mJson += map ? L'{' : L'[';
            mOpen.push_back({held, std::move(children), map, references});
            return;
        }
        if (!held)
            mJson += L"null";
        else if (isBareInJson(held, *current))
            mJson += scalarText(held, *current);
        else
            appendQuoted(mJson, scalarText(held, *current));
        forget(references);
    }

    void forget(std::size_t references)
    {
        for (; references > 0; --references) {
            mFollowed.erase(mTargets.back().get());
            mTargets.pop_back();
        }
    }

    string mJson;
    std::vector<container> mOpen;
    std::vector<reference> mTargets; // variables behind the references that led to where the writer stands
    std::unordered_set<const genericValue*> mFollowed;
};

} // namespace

bool outputText(const genericValue& value, string& text)
{
    reference target; // keeps the variable
    const genericValue* current = &value;
    heldValue held = current->holderCopy();
    std::unordered_set<const genericValue*> followed;
    while (held && isA<reference>(held)) {
        target = reference(*as<reference>(held));
        if (!target)
            return false;
        if (!followed.insert(target.get()).second) {
            text = L"<reference>";
            return true;
        }
        current = target.get();
        held = current->holderCopy();
    }
    if (!held)
        return false;
    std::vector<child> children;
    text = isArray(held, children) || isMap(held, children) ? jsonWriter().write(value)
                                                            : scalarText(held, *current);
    return true;
}
