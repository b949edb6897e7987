// The statements that read and write the fields of host objects.
#include "modules/qxScriptModules.h"
#include "modules/qxScriptObject.h"
#include "modules/qxScriptRows.h"

#include "qxHeldTypes.h"

namespace qx::script
{

namespace
{

using intrface::arrayfieldaccess;
using intrface::fieldaccess;

// --- Reading ---

constexpr refusals getRefusals{2, L"getFieldValue::parse: number of parameters < 2",
                               L"getFieldValue::parse: error parsing %s"};
constexpr refusals getArrayRefusals{2, L"getArrayFieldValue::parse: number of parameters < 2",
                                    L"getArrayFieldValue::parse: error parsing %s"};
constexpr const wchar_t* notHeld = L"internal error";
constexpr const wchar_t* notGot = L"error calling the objects get-method for field %s";

// What a field of the type is when the host succeeds without writing.
template <class T>
T fieldDefault()
{
    if constexpr (std::is_same_v<T, date>)
        return date(date::thisYear(), 1, 1);
    else if constexpr (std::is_same_v<T, timestamp>)
        return timestamp(fieldDefault<date>());
    else
        return T{};
}

// Reads a field through the interface that has an operation for T, in place of what `result` held.
template <class Access, class T>
class getFieldAs : public fieldstatement
{
public:
    void execute(codecontext& context, genericValue& result) const override
    {
        const auto fields = requireObject<Access>(context);
        const memberName name = getFieldName(context);
        if (!fields.ask([&](Access& asked) { return getInto(asked, name.c_str(), result); }))
            execError(this, notGot, name.text());
    }

protected:
    using fieldstatement::fieldstatement;

private:
    // The result becomes a T, which takes what the host writes.
    bool getInto(Access& fields, const wchar_t* name, genericValue& result) const
    {
        if constexpr (cell::small<T>)
            return getSmall(fields, name, result);
        else {
            replaceResult(result, fieldDefault<T>());
            const heldIn<T> value(&result);
            if (!value)
                execError(this, notHeld);
            return fields.getValue(name, value.get());
        }
    }
    static bool getSmall(Access& fields, const wchar_t* name, genericValue& result)
    {
        auto value = fieldDefault<T>();
        try {
            const bool isGiven = fields.getValue(name, &value);
            replaceResult(result, value);
            return isGiven;
        } catch (...) {
            replaceResult(result, value);
            throw;
        }
    }
};

template <class T>
class getFieldValue final : public getFieldAs<fieldaccess, T>
{
public:
    statement* clone() const override { return new getFieldValue(*this); }

    static statement* create(const callText& call) { return new getFieldValue(call, getRefusals); }

private:
    using getFieldAs<fieldaccess, T>::getFieldAs;
};

class getArrayFieldValue final : public getFieldAs<arrayfieldaccess, valueArray>
{
public:
    statement* clone() const override { return new getArrayFieldValue(*this); }

    static statement* create(const callText& call) { return new getArrayFieldValue(call, getArrayRefusals); }

private:
    using getFieldAs::getFieldAs;
};

// The host chooses the type, and null is no failure.
class getGenericFieldValue final : public fieldstatement
{
public:
    statement* clone() const override { return new getGenericFieldValue(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const auto fields = requireObject<fieldaccess>(context);
        result.clear();
        const memberName name = getFieldName(context);
        fields->getValue(name.c_str(), result);
    }

    static statement* create(const callText& call) { return new getGenericFieldValue(call, getRefusals); }

private:
    using fieldstatement::fieldstatement;
};

// --- Writing ---

bool write(fieldaccess& fields, const wchar_t* name, int value)
{
    return fields.setValue(name, long32(value));
}

// REQUIRED: a field gets to know whether there is an object, and not the object.
bool write(fieldaccess& fields, const wchar_t* name, const objectRef& value)
{
    return fields.setValue(name, value.isValid());
}

template <class T>
bool write(fieldaccess& fields, const wchar_t* name, const T& value)
{
    return fields.setValue(name, value);
}

// REQUIRED: the first text names the other statement.
constexpr refusals setRefusals{3, L"getFieldValue::parse: number of parameters < 3", getRefusals.unusable};
constexpr const wchar_t* unusableValue = L"setFieldValue::parse: error parsing %s";
constexpr const wchar_t* noField = L"field \"%s\" not found within object";
constexpr const wchar_t* noValue = L"unable to retrieve value for field \"%s\" (1)";
constexpr const wchar_t* unreadableValue = L"unable to retrieve value for field \"%s\" (2)";
constexpr const wchar_t* notSet = L"error calling the objects set-method";

template <class T>
class setFieldValue final : public fieldstatement
{
public:
    statement* clone() const override { return new setFieldValue(*this); }
    // Has no value.
    void execute(codecontext& context, genericValue&) const override
    {
        const auto fields = requireObject<fieldaccess>(context);
        const memberName name = getFieldName(context);
        if (!fields->hasField(name.c_str()) && !mayCreate(context))
            execError(this, noField, name.text());
        genericValue given;
        if (!mpValue.evaluate(context, given))
            execError(this, noValue, name.text());
        T value{};
        if (!readValue(given, value))
            execError(this, unreadableValue, name.text());
        if (!fields.ask([&](fieldaccess& asked) { return write(asked, name.c_str(), value); }))
            execError(this, notSet);
    }

    static statement* create(const callText& call) { return new setFieldValue(call); }

private:
    // REQUIRED: the flag is never refused.
    explicit setFieldValue(const callText& call)
        : fieldstatement(call, setRefusals), mpValue(requireOperand(call, 2, unusableValue)),
          mpCreate(operandAt(call, 3))
    {}

    bool mayCreate(codecontext& context) const
    {
        bool create = false;
        mpCreate.read(context, create);
        return create;
    }

    operand mpValue;
    operand mpCreate; // null: the field has to exist
};

// --- Asking ---

class hasField final : public objectfunction
{
public:
    static constexpr const wchar_t* messageName = L"has";
    static constexpr const wchar_t* scriptName = L"obj_has";
    static constexpr declaredParameter objectParam{L"this", true, L"Error retrieving object"};
    static constexpr declaredParameter nameParam{L"fname", true, noFieldName};
    static constexpr declaredParameter declared[] = {objectParam, nameParam};

    statement* clone() const override { return new hasField(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const auto fields = requireObject<fieldaccess>(objectParam, context, objectParam.failure);
        const auto name = require<string>(nameParam, context);
        replaceResult(result, ask(fields, name));
    }

private:
    // REQUIRED: whatever the host throws, a text too, is the failure of this statement.
    bool ask(const askedObject<fieldaccess>& fields, const string& name) const
    {
        try {
            return fields->hasField(name.c_str());
        } catch (const exception& caught) {
            execError(this, &caught, nullptr);
        } catch (...) {
            execError(this, nullptr);
        }
    }
};

// --- Types ---

// Two of the words are none of the language's data types.
template <class T>
struct fieldWord : keywordOf<T>
{};
template <>
struct fieldWord<objectRef>
{
    static constexpr const wchar_t* word = L"ref";
};
template <>
struct fieldWord<genericValue>
{
    static constexpr const wchar_t* word = L"generic";
};

template <class T>
using readingOf = std::conditional_t<
    std::is_same_v<T, valueArray>, getArrayFieldValue,
    std::conditional_t<std::is_same_v<T, genericValue>, getGenericFieldValue, getFieldValue<T>>>;

using readTypes = join<fieldTypes, typeList<valueArray, genericValue>>;
using writtenTypes = join<fieldTypes, typeList<objectRef>>;

// The statement for the first type word of the call; a call without one is about a text.
template <template <class> class Statement, class... T>
statement* createTyped(const callText& call, typeList<T...>)
{
    const string word = call.types.empty() ? string(dataTypeOf<string>.word) : call.types.front().lower();
    statement* made = nullptr;
    (void)((word == fieldWord<T>::word && (made = Statement<T>::create(call))) || ...);
    return made;
}

// --- Table ---

constexpr builtin hasRow = namedRow<hasField>(L"Tells whether the object has the field.");

constexpr const wchar_t* getFailures[] = {
    getRefusals.tooFew,      getRefusals.unusable,     noObject, notHeld, notGot,
    getArrayRefusals.tooFew, getArrayRefusals.unusable};
constexpr builtin getRow = {
    .name = L"obj_get",
    .create = [](const callText& call) { return createTyped<readingOf>(call, readTypes()); },
    .parameters = L"<type>(object, field)",
    .types = wordsOf<readTypes, fieldWord>,
    .summary = L"Gives the content of a field of the object in the type, a `string` without one; as "
               L"`generic` it is what the object has there, and null for nothing.",
    .failures = getFailures};

constexpr const wchar_t* getArrayFailures[] = {getArrayRefusals.tooFew, getArrayRefusals.unusable, noObject,
                                               notHeld, notGot};

constexpr const wchar_t* setFailures[] = {setRefusals.tooFew,
                                          setRefusals.unusable,
                                          unusableValue,
                                          noObject,
                                          noField,
                                          noValue,
                                          unreadableValue,
                                          notSet};
constexpr builtin setRow = {
    .name = L"obj_set",
    .create = [](const callText& call) { return createTyped<setFieldValue>(call, writtenTypes()); },
    .parameters = L"<type>(object, field, value, [create])",
    .types = wordsOf<writtenTypes, fieldWord>,
    .result = resultRule::none,
    .summary = L"Writes the value to a field of the object in the type, a `string` without one; a `ref` as "
               L"whether there is an object. The field has to exist unless `create` is true.",
    .failures = setFailures};

// Statements with two names take the object as their first parameter under both.
constexpr builtin rows[] = {
    hasRow,
    renamed(hasRow, L"ctxt_has"),
    getRow,
    renamed(getRow, L"ctxt_get"),
    {.name = L"ctxt_getarray",
     .create = getArrayFieldValue::create,
     .parameters = L"(object, field)",
     .summary = L"Gives the array in a field of the object.",
     .failures = getArrayFailures},
    setRow,
    renamed(setRow, L"ctxt_set"),
};

} // namespace

constinit const builtinTable fieldRows = rows;

} // namespace qx::script
