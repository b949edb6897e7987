// The manager of conversions between held types.
//
// What the library itself converts is one table, made once out of lists of types and never
// changed. What others add stands in a list of its own, under a mutex that a conversion
// takes only when the pair of types may be in that list, which one word of bits tells.
#include "qxTypeConversion.h"

#include "qxCell.h"
#include "qxHeldTypes.h"
#include "qxHooks.h"
#include "qxPlainConversion.h"
#include "qxReference.h"
#include "qxStack.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <shared_mutex>
#include <typeindex>
#include <unordered_map>

namespace qx::typeconvert
{

namespace
{

using function = bool (*)(void* destination, const void* source, int format, char* formatText);

// type_info is compared by name, so that one type is one key in all libraries.
struct typePair
{
    std::type_index to;
    std::type_index from;

    bool operator==(const typePair& other) const = default;
    std::size_t hash() const noexcept { return to.hash_code() * 31 + from.hash_code(); }
};

struct hashOfPair
{
    std::size_t operator()(const typePair& pair) const noexcept { return pair.hash(); }
};

using conversionTable = std::unordered_map<typePair, function, hashOfPair>;

using plainTypes = join<fieldTypes, typeList<uint64, locString, directory>>;

template <class Key>
using mapOf = std::map<Key, genericValue>;
template <class... Key>
typeList<mapOf<Key>...> mapsOf(typeList<Key...>);
// Held types that convert only where a reference to a variable holds them or is to hold them.
using opaqueTypes = join<typeList<calcCrc32, sharedPtr<conditions::condition>, valueArray>, keptHeldTypes,
                         decltype(mapsOf(mapKeyTypes()))>;

template <class To, class From>
bool convertPlain(void* to, const void* from, int format, char*)
{
    return plainConversion<To, From>::run(*static_cast<To*>(to), *static_cast<const From*>(from), format);
}

template <class To, class From>
void enterPlain(conversionTable& table)
{
    if constexpr (plainPair<To, From>)
        table.emplace(typePair{typeid(To), typeid(From)}, convertPlain<To, From>);
}

template <class... From>
void enterPlainPairs(conversionTable& table, typeList<From...>)
{
    const auto enterTo = [&]<class To>(typeList<To>) { (enterPlain<To, From>(table), ...); };
    (enterTo(typeList<From>()), ...);
}

template <class T>
void enterReference(conversionTable& table)
{
    using reference = sharedPtr<genericValue>;
    table.emplace(typePair{typeid(T), typeid(reference)}, readReference<T>);
    if constexpr (holdable<T>)
        table.emplace(typePair{typeid(reference), typeid(T)}, writeReference<T>);
}

template <class... T>
void enterReferences(conversionTable& table, typeList<T...>)
{
    (enterReference<T>(table), ...);
}

conversionTable ownConversions()
{
    conversionTable table;
    enterPlainPairs(table, plainTypes());
    enterReferences(table, join<plainTypes, opaqueTypes>());
    return table;
}

template <class... T>
bool isAnyOf(const std::type_info& type, typeList<T...>)
{
    return ((type == typeid(T)) || ...);
}

bool isPlain(const std::type_info& type)
{
    return isAnyOf(type, plainTypes());
}

typePair pairOf(const typeConverterBase& converter)
{
    return {converter.destinationType(), converter.sourceType()};
}

std::uint64_t filterBit(const typePair& pair)
{
    return std::uint64_t(1) << pair.hash() % 64;
}

} // namespace

struct typeConversionManager::tables
{
    const conversionTable own = ownConversions();

    std::shared_mutex mutex;               // guards `added`
    std::vector<typeConverterBase*> added; // the latest last
    // A bit for each pair that was added, so that other conversions need not look: threads do not meet at the
    // mutex.
    std::atomic<std::uint64_t> addedPairs = 0;

    // The next converter for `pair` before position `end`, which moves down to it; null when there is none.
    typeConverterBase* nextAdded(const typePair& pair, std::size_t& end)
    {
        if (!(addedPairs.load(std::memory_order_acquire) & filterBit(pair)))
            return nullptr;
        const std::shared_lock reading(mutex);
        for (end = std::min(end, added.size()); end-- > 0;)
            if (pairOf(*added[end]) == pair)
                return added[end];
        return nullptr;
    }

    // Under the exclusive lock.
    void refreshFilter() noexcept
    {
        std::uint64_t bits = 0;
        bool concernsSmallValues = false;
        for (const typeConverterBase* converter : added) {
            bits |= filterBit(pairOf(*converter));
            concernsSmallValues |= isPlain(converter->sourceType()) && isPlain(converter->destinationType());
        }
        addedPairs.store(bits, std::memory_order_release);
        cell::hasAddedConversions.store(concernsSmallValues, std::memory_order_release);
        hooks::call(hooks::conversions);
    }
};

typeConversionManager::typeConversionManager() : mpTables(new tables) {}

typeConversionManager& typeConversionManager::instance()
{
    static typeConversionManager* const manager = new typeConversionManager;
    return *manager;
}

void typeConversionManager::add(typeConverterBase* converter)
{
    if (!converter)
        return;
    const std::unique_lock writing(mpTables->mutex);
    mpTables->added.push_back(converter);
    mpTables->refreshFilter();
}

void typeConversionManager::remove(typeConverterBase* converter) noexcept
{
    const std::unique_lock writing(mpTables->mutex);
    std::erase(mpTables->added, converter);
    mpTables->refreshFilter();
}

bool typeConversionManager::convert(const std::type_info& toType, void* to, const std::type_info& fromType,
                                    const void* from, int format, char* formatText) const
{
    stack::check();
    const typePair pair{toType, fromType};
    std::size_t end = SIZE_MAX;
    while (const typeConverterBase* const converter = mpTables->nextAdded(pair, end)) {
        const bool isConverted = converter->convert(to, from, format, formatText);
        hooks::call(hooks::foreignCode);
        if (isConverted)
            return true;
    }
    const auto found = mpTables->own.find(pair);
    return found != mpTables->own.end() && found->second(to, from, format, formatText);
}

bool typeConversionManager::exists(const std::type_info& toType, const std::type_info& fromType) const
{
    const typePair pair{toType, fromType};
    std::size_t end = SIZE_MAX;
    return mpTables->nextAdded(pair, end) || mpTables->own.contains(pair);
}

// --- The conversions between two plain types ---

template <class To, class From>
bool dtconvert(To& to, const From& from, int format, char*)
{
    return plainConversion<To, From>::run(to, from, format);
}

// NOLINTNEXTLINE(bugprone-macro-parentheses)
#define QX_PAIR(To, From) template QXUTILS_API bool dtconvert<To, From>(To&, const From&, int, char*);
#define QX_PAIR_BOTH_WAYS(A, B) QX_PAIR(A, B) QX_PAIR(B, A)
#define QX_TO_EACH_NUMBER(From)                                                                              \
    QX_PAIR(bool, From)                                                                                      \
    QX_PAIR(short, From)                                                                                     \
    QX_PAIR(ushort, From)                                                                                    \
    QX_PAIR(int, From)                                                                                       \
    QX_PAIR(uint, From)                                                                                      \
    QX_PAIR(long32, From)                                                                                    \
    QX_PAIR(ulong32, From)                                                                                   \
    QX_PAIR(uint64, From)                                                                                    \
    QX_PAIR(float, From)                                                                                     \
    QX_PAIR(double, From)
#define QX_FROM_NUMBER(From) QX_TO_EACH_NUMBER(From) QX_PAIR(string, From)

QX_FROM_NUMBER(bool)
QX_FROM_NUMBER(short)
QX_FROM_NUMBER(ushort)
QX_FROM_NUMBER(int)
QX_FROM_NUMBER(uint)
QX_FROM_NUMBER(long32)
QX_FROM_NUMBER(ulong32)
QX_FROM_NUMBER(uint64)
QX_FROM_NUMBER(float)
QX_FROM_NUMBER(double)
QX_TO_EACH_NUMBER(string)
QX_PAIR_BOTH_WAYS(string, date)
QX_PAIR_BOTH_WAYS(string, time)
QX_PAIR_BOTH_WAYS(string, timestamp)
QX_PAIR_BOTH_WAYS(date, timestamp)
QX_PAIR(time, timestamp)
QX_PAIR(string, locString)
QX_PAIR(directory, string)
QX_PAIR(string, std::wstring)

} // namespace qx::typeconvert
