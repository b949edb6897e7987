// Arrays and maps: the statements that create them and work on those that sit in variables.
//
// The name of the variable is the literal text of the first parameter, as it stands: with its blanks and in
// its case. Variables are stored under lower-case names without blanks, so a script spells the name like that
// here.
#include "contexts/qxScriptEpoch.h"
#include "modules/askedObject.h"
#include "modules/qxScriptCollections.h"
#include "modules/qxScriptModules.h"
#include "modules/qxScriptRows.h"
#include "modules/refusals.h"
#include "qxScriptTypes.h"
#include "statements/qxScriptHeld.h"
#include "statements/qxScriptVariable.h"

#include "qxHeldTypes.h"
#include "qxValueTraits.h"

namespace qx::script
{

namespace
{

// The T in a variable that nobody else can reach, in place. Null where it is not just that; then the long way
// tells. What is in place stays there until something has an effect.
template <class T>
T* variableInPlace(codecontext& context, const namedVariable& asked)
{
    if (!shortCutsAllowed())
        return nullptr;
    if (genericValue* const cells = scope::cells(context)) {
        const genericValue* const own = asked.inFrame(cells);
        return own ? heldInPlace<T>(*own) : nullptr;
    }
    scriptcontext* const root = scope::plainRoot(context);
    genericSet::entry* const variable = root ? scope::variable(context, *root, asked.name()) : nullptr;
    return variable && !variable->isShared() ? heldInPlace<T>(variable->value()) : nullptr;
}

// The T in a visible variable, whoever else can reach it. A variable that others can reach may have been
// written by them, so the epoch moves.
template <class T>
heldIn<T> heldInVariable(codecontext& context, const scString& name)
{
    const sharedPtr<genericValue> storage = context.variableAddress(name);
    if (storage.useCount() > 2u) // the set, and we
        epoch::move();
    return heldIn<T>(storage.get());
}

class createArray final : public scriptbasestatement
{
public:
    static constexpr const wchar_t* unusable = L"createArray:::createFrom: error parsing \"%s\"";
    static constexpr const wchar_t* noSource = L"error retrieving iterator";
    static constexpr const wchar_t* failures[] = {unusable, noSource, noCollection, noCollectionWithoutText};

    explicit createArray(operand source) : mpSource(std::move(source))
    {
        if (!mpSource)
            offerShortCuts(this, 0, writing::replaces);
    }

    statement* clone() const override { return new createArray(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        replaceResult(result, mpSource ? elements(context) : valueArray());
    }
    bool resolve(compiler&) const { return !mpSource; }
    bool freshValue(genericValue& out) const
    {
        if (!mpSource)
            out = genericValue(valueArray());
        return !mpSource;
    }

    static statement* create(const callText& call)
    {
        if (call.params.empty())
            return new createArray(operand());
        return new createArray(requireOperand(call, 0, unusable));
    }

private:
    using iterator = askedObject<intrface::forwardIterator>;

    // What the source has: the objects that it walks over, or copies of the elements of an array. REQUIRED:
    // an object that is no iterator has nothing, without a failure.
    valueArray elements(codecontext& context) const
    {
        genericValue source;
        if (!mpSource.evaluate(context, source))
            execError(this, noSource);
        objectRef object;
        valueArray array;
        if (!source.getValue(object) && !source.getValue(array))
            refuseCollection(this, source);
        const iterator walked(object);
        return walked.isValid() ? objectsOf(walked) : array;
    }

    static valueArray objectsOf(const iterator& walked)
    {
        std::size_t count = 0;
        walk(walked, [&](const objectRef&) { ++count; });
        valueArray objects;
        objects.reserve(count);
        walk(walked, [&](const objectRef& object) { objects.emplace_back(object); });
        return objects;
    }

    template <class Use>
    static void walk(const iterator& walked, Use use)
    {
        objectRef object;
        for (walked->first(object.receive()); !walked->isEnd(); walked->next(object.receive()))
            use(object);
    }

    operand mpSource; // null: none given
};

// Base of the statements on an array in a variable.
class arrayStatement : public scriptbasestatement
{
public:
    static constexpr const wchar_t* noArray = L"Error retrieving array";

protected:
    explicit arrayStatement(const scString& name) : mArray(name) {}

    valueArray* arrayInPlace(codecontext& context) const
    {
        return variableInPlace<valueArray>(context, mArray);
    }

    heldIn<valueArray> requireArray(codecontext& context) const
    {
        heldIn<valueArray> array = heldInVariable<valueArray>(context, mArray.name());
        if (!array)
            execError(this, noArray);
        return array;
    }

    bool resolveArray(compiler& names) const { return mArray.resolve(names); }

private:
    namedVariable mArray;
};

class sizeOfArray final : public arrayStatement
{
public:
    // REQUIRED: the second text names another class.
    static constexpr refusals texts{1, L"sizeOfArray::createFrom: number of parameters < 1",
                                    L"sizeOfSet::createFrom: error parsing \"%s\""};
    static constexpr const wchar_t* failures[] = {texts.tooFew, texts.unusable, noArray};

    explicit sizeOfArray(const scString& name) : arrayStatement(name)
    {
        offerShortCuts(this, 0, writing::keepsType);
    }

    statement* clone() const override { return new sizeOfArray(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        writeToSlot(result, valueTraits<ulong32>::wrap(requireArray(context)->size()));
    }
    std::uint64_t smallValue(codecontext& context) const
    {
        const valueArray* const array = arrayInPlace(context);
        return array ? cell::make(valueTraits<ulong32>::wrap(array->size())) : cell::refused;
    }
    bool resolve(compiler& names) const { return resolveArray(names); }

    static statement* create(const callText& call)
    {
        return new sizeOfArray(requireWrittenName(call, texts));
    }
};

class addToArray final : public arrayStatement
{
public:
    static constexpr refusals texts{2, L"addToArray::createFrom: number of parameters < 2",
                                    L"addToArray::createFrom: error parsing \"%s\""};
    static constexpr const wchar_t* missing = L"Error retrieving value(1)";
    static constexpr const wchar_t* noValue = L"Error retrieving value(2)";
    static constexpr const wchar_t* failures[] = {texts.tooFew, texts.unusable, noArray, missing, noValue};

    addToArray(const scString& name, operand value) : arrayStatement(name), mpValue(std::move(value))
    {
        stayInside(this);
    }

    statement* clone() const override { return new addToArray(*this); }
    // Has no value.
    void execute(codecontext& context, genericValue&) const override
    {
        if (!runShort(context))
            add(context);
    }
    bool resolve(compiler& names) const { return resolveArray(names) && mpValue.resolve(names); }
    bool runShort(codecontext& context) const
    {
        genericValue value;
        if (!shortCutsAllowed() || !mpValue.evaluateShort(context, value))
            return false;
        valueArray* const array = arrayInPlace(context);
        return array && declinesWithoutMemory([&] {
                   array->push_back(std::move(value));
                   return true;
               });
    }

    static statement* create(const callText& call)
    {
        const scString name = requireWrittenName(call, texts);
        return new addToArray(name, requireOperand(call, 1, texts));
    }

private:
    void add(codecontext& context) const
    {
        const heldIn<valueArray> array = requireArray(context);
        if (!mpValue)
            execError(this, missing);
        genericValue value;
        if (!mpValue.evaluate(context, value))
            execError(this, noValue);
        array->push_back(std::move(value));
    }

    operand mpValue;
};

class arrayElement final : public arrayStatement
{
public:
    static constexpr refusals texts{2, L"arrayElement::createFrom: number of parameters < 2",
                                    L"arrayElement::createFrom: error parsing \"%s\""};
    static constexpr const wchar_t* missing = L"Error retrieving index (1)";
    static constexpr const wchar_t* unreadable = L"Error retrieving index (2)";
    static constexpr const wchar_t* beyond = L"index bigger than array size";
    static constexpr const wchar_t* failures[] = {texts.tooFew, texts.unusable, noArray,
                                                  missing,      unreadable,     beyond};

    arrayElement(const scString& name, operand index) : arrayStatement(name), mpIndex(std::move(index))
    {
        mpIndex.fold<uint>();
        offerShortCuts(this, depthOf(mpIndex), writing::replaces);
    }

    statement* clone() const override { return new arrayElement(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const heldIn<valueArray> array = requireArray(context);
        if (!mpIndex)
            execError(this, missing);
        uint index = 0;
        if (!mpIndex.read(context, index))
            execError(this, unreadable);
        if (array->size() <= index)
            execError(this, beyond);
        result = (*array)[index];
    }
    std::uint64_t smallValue(codecontext& context) const
    {
        const genericValue* const element = elementInPlace(context);
        return element ? smallIn(*element) : cell::refused;
    }
    bool textValue(codecontext& context, textScratch& text) const
    {
        const genericValue* const element = elementInPlace(context);
        return element && text.showInPlace(*element);
    }
    const genericValue* valueInPlace(codecontext& context) const { return elementInPlace(context); }
    bool resolve(compiler& names) const { return resolveArray(names) && mpIndex.resolve(names); }

    static statement* create(const callText& call)
    {
        const scString name = requireWrittenName(call, texts);
        return new arrayElement(name, requireOperand(call, 1, texts));
    }

private:
    const genericValue* elementInPlace(codecontext& context) const
    {
        uint index = 0;
        if (!cell::read(mpIndex.shortCut().smallValue(context), index))
            return nullptr;
        const valueArray* const array = arrayInPlace(context);
        return array && index < array->size() ? &(*array)[index] : nullptr;
    }

    operand mpIndex;
};

template <class K>
using mapOf = std::map<K, genericValue>;

template <class K>
class createMap final : public scriptbasestatement
{
public:
    createMap() { offerShortCuts(this, 0, writing::replaces); }

    statement* clone() const override { return new createMap(*this); }
    void execute(codecontext&, genericValue& result) const override { replaceResult(result, mapOf<K>()); }
    static bool resolve(compiler&) { return true; }
    static bool freshValue(genericValue& out)
    {
        out = genericValue(mapOf<K>());
        return true;
    }

    static statement* create(const callText&) { return new createMap; }
};

constexpr const wchar_t* noKeyType = L"mapstatement:::createFrom: missing datatype";
constexpr const wchar_t* wrongKeyType = L"mapstatement:::createFrom: invalid datatype %s";
constexpr const wchar_t* noMap = L"Map not found";
constexpr const wchar_t* noKey = L"Error retrieving key";
constexpr const wchar_t* noMapValue = L"Error retrieving value";

// Base of the statements on a map in a variable. The type of its keys must be theirs.
template <class K>
class mapStatement : public scriptbasestatement
{
protected:
    mapStatement(const callText& call, const refusals& texts)
        : mMap(requireWrittenName(call, texts)), mpKey(requireOperand(call, 1, texts))
    {
        if constexpr (cell::small<K>)
            mpKey.template fold<K>();
    }

    mapOf<K>* mapInPlace(codecontext& context) const { return variableInPlace<mapOf<K>>(context, mMap); }
    // The key by its short cut.
    bool readKeyShort(codecontext& context, K& key) const
    {
        if constexpr (cell::small<K>)
            return cell::read(mpKey.shortCut().smallValue(context), key);
        else {
            textScratch text;
            return mpKey.shortCut().textValue(context, text) && declinesWithoutMemory([&] {
                       key = text.take();
                       return true;
                   });
        }
    }

    heldIn<mapOf<K>> requireMap(codecontext& context) const
    {
        heldIn<mapOf<K>> map = heldInVariable<mapOf<K>>(context, mMap.name());
        if (!map)
            execError(this, noMap);
        return map;
    }

    K requireKey(codecontext& context) const
    {
        K key{};
        if (!mpKey.read(context, key))
            execError(this, noKey);
        return key;
    }

    bool resolveMap(compiler& names) const { return mMap.resolve(names) && mpKey.resolve(names); }

private:
    namedVariable mMap;

protected:
    operand mpKey;
};

constexpr refusals insertRefusals{3, L"insertIntoMap::createFrom: number of parameters < 3",
                                  L"insertIntoMap::createFrom: error parsing \"%s\""};
constexpr refusals findRefusals{2, L"findInMap::createFrom: number of parameters < 2",
                                L"findInMap::createFrom: error parsing \"%s\""};

template <class K>
class insertIntoMap final : public mapStatement<K>
{
public:
    statement* clone() const override { return new insertIntoMap(*this); }
    // Has no value.
    void execute(codecontext& context, genericValue&) const override
    {
        if (!runShort(context))
            insert(context);
    }
    bool resolve(compiler& names) const { return this->resolveMap(names) && mpValue.resolve(names); }
    bool runShort(codecontext& context) const
    {
        K key{};
        genericValue value;
        if (!shortCutsAllowed() || !this->readKeyShort(context, key) ||
            !mpValue.evaluateShort(context, value))
            return false;
        mapOf<K>* const map = this->mapInPlace(context);
        return map && declinesWithoutMemory([&] {
                   const auto [place, isNew] = map->try_emplace(std::move(key));
                   // An object that would end here runs the host's code.
                   if (!isNew && place->second.hasHolder() && !heldInPlace<string>(place->second))
                       return false;
                   place->second = std::move(value);
                   return true;
               });
    }

    static statement* create(const callText& call) { return new insertIntoMap(call); }

private:
    // Not inline, so that the look-up in the map above is (W6).
    [[gnu::noinline]] void insert(codecontext& context) const
    {
        const heldIn<mapOf<K>> map = this->requireMap(context);
        const K key = this->requireKey(context);
        genericValue value;
        if (!mpValue.evaluate(context, value))
            statement::execError(this, noMapValue);
        try {
            map->insert_or_assign(key, value);
        } catch (const exception& caught) {
            statement::execError(this, &caught, nullptr);
        } catch (...) {
            statement::execError(this, nullptr);
        }
    }

    explicit insertIntoMap(const callText& call)
        : mapStatement<K>(call, insertRefusals), mpValue(requireOperand(call, 2, insertRefusals))
    {
        stayInside(this);
    }

    operand mpValue;
};

template <class K>
class findInMap final : public mapStatement<K>
{
public:
    statement* clone() const override { return new findInMap(*this); }
    // A key that is not there leaves the result as it is.
    void execute(codecontext& context, genericValue& result) const override
    {
        const heldIn<mapOf<K>> map = this->requireMap(context);
        const auto found = map->find(this->requireKey(context));
        if (found != map->end())
            result = found->second;
    }
    std::uint64_t smallValue(codecontext& context) const
    {
        const genericValue* const found = findInPlace(context);
        return found ? smallIn(*found) : cell::refused;
    }
    bool textValue(codecontext& context, textScratch& text) const
    {
        const genericValue* const found = findInPlace(context);
        return found && text.showInPlace(*found);
    }
    const genericValue* valueInPlace(codecontext& context) const { return findInPlace(context); }
    bool resolve(compiler& names) const { return this->resolveMap(names); }

    static statement* create(const callText& call) { return new findInMap(call); }

private:
    explicit findInMap(const callText& call) : mapStatement<K>(call, findRefusals)
    {
        offerShortCuts(this, depthOf(this->mpKey), writing::replaces);
    }

    const genericValue* findInPlace(codecontext& context) const
    {
        K key{};
        if (!this->readKeyShort(context, key))
            return nullptr;
        const mapOf<K>* const map = this->mapInPlace(context);
        if (!map)
            return nullptr;
        const auto found = map->find(key);
        return found == map->end() ? nullptr : &found->second;
    }
};

// Makes the member of a family of map statements for the stated type of key.
template <template <class K> class Statement>
statement* createKeyed(const callText& call)
{
    if (call.types.empty())
        refuse(noKeyType);
    if (statement* const made = makeFor(parseScriptType(call.types[0]), mapKeyTypes(),
                                        [&call]<class K>() { return Statement<K>::create(call); }))
        return made;
    refuse(wrongKeyType, call.types[0]);
}

// --- Table ---

constexpr const wchar_t* keyTypes = wordsOf<mapKeyTypes>;
constexpr const wchar_t* createFailures[] = {noKeyType, wrongKeyType};
constexpr const wchar_t* insertFailures[] = {
    noKeyType, wrongKeyType, insertRefusals.tooFew, insertRefusals.unusable, noMap, noKey, noMapValue};
constexpr const wchar_t* findFailures[] = {
    noKeyType, wrongKeyType, findRefusals.tooFew, findRefusals.unusable, noMap, noKey};

constexpr builtin rows[] = {
    {.name = L"createarray",
     .create = createArray::create,
     .parameters = L"([source])",
     .summary = L"Gives a new array: empty, a copy of an array, or the objects that an object walks "
                L"over.",
     .failures = createArray::failures},
    {.name = L"sizeofarray",
     .create = sizeOfArray::create,
     .parameters = L"(name)",
     .result = resultRule::keepsType,
     .summary = L"Gives the number of elements of the array in this variable.",
     .failures = sizeOfArray::failures},
    {.name = L"addtoarray",
     .create = addToArray::create,
     .parameters = L"(name, value)",
     .result = resultRule::none,
     .summary = L"Appends a value to the array in this variable.",
     .failures = addToArray::failures},
    {.name = L"arrayelement",
     .create = arrayElement::create,
     .parameters = L"(name, index)",
     .summary = L"Gives an element of the array in this variable; the first has the index 0.",
     .failures = arrayElement::failures},
    {.name = L"createmap",
     .create = createKeyed<createMap>,
     .parameters = L"<key type>()",
     .types = keyTypes,
     .summary = L"Gives a new, empty map with keys of this type.",
     .failures = createFailures},
    {.name = L"insertintomap",
     .create = createKeyed<insertIntoMap>,
     .parameters = L"<key type>(name, key, value)",
     .types = keyTypes,
     .result = resultRule::none,
     .summary = L"Puts a value into the map in this variable, in place of one with the same key.",
     .failures = insertFailures},
    {.name = L"findinmap",
     .create = createKeyed<findInMap>,
     .parameters = L"<key type>(name, key)",
     .types = keyTypes,
     .result = resultRule::replacesIfAny,
     .summary = L"Gives what the map in this variable holds for the key; has no value where it holds "
                L"nothing.",
     .failures = findFailures},
};

} // namespace

constinit const builtinTable collectionRows = rows;

} // namespace qx::script
