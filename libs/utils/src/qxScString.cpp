// The table of names.
#include "qxScString.h"

#include <mutex>
#include <shared_mutex>
#include <unordered_set>

namespace qx
{

namespace
{

struct textHash
{
    using is_transparent = void;
    std::size_t operator()(std::wstring_view text) const noexcept
    {
        return std::hash<std::wstring_view>()(text);
    }
};

struct nameTable
{
    std::shared_mutex mutex;
    std::unordered_set<string, textHash, std::equal_to<>> names; // nodes keep their address
};

// Never destroyed: names outlive every other static object.
nameTable& names()
{
    static nameTable* const table = new nameTable;
    return *table;
}

const string* intern(std::wstring_view text)
{
    nameTable& table = names();
    {
        const std::shared_lock reading(table.mutex);
        if (const auto found = table.names.find(text); found != table.names.end())
            return &*found;
    }
    const std::unique_lock writing(table.mutex);
    return &*table.names.emplace(text).first;
}

} // namespace

scString scString::createFrom(const qx::string& text)
{
    return scString(intern(text));
}

scString scString::createFrom(const wchar_t* text)
{
    return scString(intern(text ? std::wstring_view(text) : std::wstring_view()));
}

} // namespace qx
