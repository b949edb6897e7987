// Objects of the host: what the statements on them have in common, and the table of all.
#include "modules/objectStatements.h"
#include "modules/qxScriptModules.h"

namespace qx::script
{

methodstatement::methodstatement(const callText& call, const objectRefusals& texts)
{
    if (call.params.size() < texts.required)
        refuse(texts.tooFew);
    mpObject = requireProvider(call, 0, texts.unusable);
}

objectRef methodstatement::getObject(codecontext& context) const
{
    genericValue value;
    if (!mpObject.evaluate(context, value))
        execError(this, nullptr);
    const heldIn<objectRef> object(&value);
    return object ? *object : objectRef();
}

fieldstatement::fieldstatement(const callText& call, const objectRefusals& texts)
    : methodstatement(call, texts), mpFieldName(requireProvider(call, 1, texts.unusable))
{}

memberName fieldstatement::evaluateFieldName(codecontext& context) const
{
    genericValue value;
    if (!mpFieldName.evaluate(context, value))
        execError(this, nullptr);
    string name;
    value.getValue(name);
    return memberName(std::move(name));
}

// --- Table ---

namespace
{

constexpr const wchar_t* getFailures = L"getFieldValue::parse: number of parameters < 2\n"
                                       L"getFieldValue::parse: error parsing %s\n"
                                       L"unable to retrieve object\n"
                                       L"internal error\n"
                                       L"error calling the objects get-method for field %s";
constexpr const wchar_t* getArrayFailures = L"getArrayFieldValue::parse: number of parameters < 2\n"
                                            L"getArrayFieldValue::parse: error parsing %s";
constexpr const wchar_t* stateFailures = L"Error retrieving this-pointer (1)\n"
                                         L"Error retrieving this-pointer (2)\n"
                                         L"Error retrieving fieldname";
constexpr const wchar_t* relationFailures = L"unable to retrieve object\n"
                                            L"relation \"%s\" not found";
constexpr const wchar_t* getRelationFailures = L"getRelation::createFrom: error parsing \"%s\"\n"
                                               L"Error retrieving relation \"%s\"";
constexpr const wchar_t* dataFailures = L"unable to retrieve object\n"
                                        L"unable to retrieve name";

// Statements with two names: they take the object as their first parameter under both.
constexpr builtin has(const wchar_t* name)
{
    return {.name = name,
            .create = createFieldHas,
            .parameters = L"(this, fname)",
            .summary = L"Tells whether the object has the field.",
            .failures = {L"Error retrieving object\n"
                         L"Error retrieving fieldname"}};
}

constexpr builtin get(const wchar_t* name)
{
    return {.name = name,
            .create = createFieldGet,
            .parameters = L"<type>(object, field)",
            .types = L"bool, short, int, long, ushort, uint, ulong, float, double, string, date, time, "
                     L"timestamp, array, generic",
            .summary = L"Gives the content of a field of the object in the type, a `string` without one; as "
                       L"`generic` it is what the object has there, and null for nothing.",
            .failures = {getFailures, getArrayFailures}};
}

constexpr builtin set(const wchar_t* name)
{
    return {.name = name,
            .create = createFieldSet,
            .parameters = L"<type>(object, field, value, [create])",
            .types = L"bool, short, int, long, ushort, uint, ulong, float, double, string, date, time, "
                     L"timestamp, ref",
            .result = resultRule::none,
            .summary = L"Writes the value to a field of the object in the type, a `string` without one; a "
                       L"`ref` as whether there is an object. The field has to exist unless `create` is "
                       L"true.",
            .failures = {L"getFieldValue::parse: number of parameters < 3\n"
                         L"getFieldValue::parse: error parsing %s\n"
                         L"setFieldValue::parse: error parsing %s\n"
                         L"unable to retrieve object\n"
                         L"field \"%s\" not found within object\n"
                         L"unable to retrieve value for field \"%s\" (1)\n"
                         L"unable to retrieve value for field \"%s\" (2)\n"
                         L"error calling the objects set-method"}};
}

constexpr builtin hasData(const wchar_t* name)
{
    return {.name = name,
            .create = createHasTransientData,
            .parameters = L"(object, name)",
            .summary = L"Tells whether there is data under the name on the object.",
            .failures = {L"hasTransientData::createFrom: number of parameters < 2\n"
                         L"hasTransientData::createFrom: error parsing \"%s\"",
                         dataFailures}};
}

constexpr builtin getData(const wchar_t* name)
{
    return {.name = name,
            .create = createGetTransientData,
            .parameters = L"(object, name)",
            .summary = L"Gives a copy of the value that a script has hung on the object under the name; "
                       L"fails, without a text, where there is none.",
            .failures = {L"getTransientData::createFrom: number of parameters < 2\n"
                         L"getTransientData::createFrom: error parsing \"%s\"",
                         dataFailures, L"Error executing getTransientData"}};
}

constexpr builtin setData(const wchar_t* name)
{
    return {.name = name,
            .create = createSetTransientData,
            .parameters = L"(object, name, [value])",
            .result = resultRule::none,
            .summary = L"Hangs a copy of the value on the object under the name, or clears what is there.",
            .failures = {L"setTransientData::createFrom: number of parameters < 2\n"
                         L"setTransientData::createFrom: error parsing \"%s\"",
                         dataFailures,
                         L"unable to retrieve value\n"
                         L"Error executing setTransientData"}};
}

const builtin rows[] = {
    has(L"obj_has"),
    has(L"ctxt_has"),
    get(L"obj_get"),
    get(L"ctxt_get"),
    {.name = L"ctxt_getarray",
     .create = createFieldGetArray,
     .parameters = L"(object, field)",
     .summary = L"Gives the array in a field of the object.",
     .failures = {getArrayFailures, L"unable to retrieve object\n"
                                    L"internal error\n"
                                    L"error calling the objects get-method for field %s"}},
    set(L"obj_set"),
    set(L"ctxt_set"),
    {.name = L"obj_setrestriction",
     .create = createSetRestriction,
     .parameters = L"(this, fn, restriction)",
     .result = resultRule::none,
     .summary = L"Gives a field the condition that the text tells, as `condition_create` makes it, or none "
                L"where the text is no condition.",
     .failures = {stateFailures, L"Error retrieving restriction"}},
    {.name = L"obj_isfieldvalid",
     .create = createIsFieldValid,
     .parameters = L"(this, fn)",
     .result = resultRule::keepsType,
     .summary = L"Tells whether a field meets its restriction; one without a restriction does.",
     .failures = {stateFailures, L"Error retrieving this-pointer (3)"}},
    {.name = L"obj_setenabled",
     .create = createSetEnabled,
     .parameters = L"(this, fn, [enabled])",
     .result = resultRule::none,
     .summary = L"Enables a field, or disables it where `enabled` is false.",
     .failures = {stateFailures}},
    {.name = L"obj_isenabled",
     .create = createIsEnabled,
     .parameters = L"(this, fn)",
     .summary = L"Tells whether a field is enabled.",
     .failures = {stateFailures}},
    {.name = L"obj_setdisabled",
     .create = createSetDisabled,
     .parameters = L"(this, fn, [disabled])",
     .result = resultRule::none,
     .summary = L"Disables a field, or enables it where `disabled` is false.",
     .failures = {stateFailures}},
    {.name = L"obj_isdisabled",
     .create = createIsDisabled,
     .parameters = L"(this, fn)",
     .summary = L"Tells whether a field is disabled.",
     .failures = {stateFailures}},
    {.name = L"obj_setconstant",
     .create = createSetConstant,
     .parameters = L"(this, fn, [const])",
     .result = resultRule::none,
     .summary = L"Makes a field constant, or changeable where `const` is false.",
     .failures = {stateFailures}},
    {.name = L"obj_isconstant",
     .create = createIsConstant,
     .parameters = L"(this, fn)",
     .summary = L"Tells whether a field is constant.",
     .failures = {stateFailures}},
    {.name = L"obj_setlabel",
     .create = createSetLabel,
     .parameters = L"(this, fn, label)",
     .result = resultRule::none,
     .summary = L"Gives a field its label.",
     .failures = {stateFailures}},
    {.name = L"obj_setlabelswitch",
     .create = createSetLabelSwitch,
     .parameters = L"(this, fn, label_on, label_off, enabled)",
     .result = resultRule::none,
     .summary = L"Gives a field the one label where `enabled` is true and the other where it is false; the "
                L"label that is not used is not evaluated.",
     .failures = {stateFailures}},
    {.name = L"obj_label",
     .create = createLabel,
     .parameters = L"(this, fn)",
     .summary = L"Gives the label of a field.",
     .failures = {stateFailures}},
    {.name = L"obj_triggerfieldchange",
     .create = createTriggerFieldChange,
     .parameters = L"(this, fn)",
     .result = resultRule::none,
     .summary = L"Has the object tell its observers that the content of a field has changed.",
     .failures = {stateFailures}},
    {.name = L"obj_triggerfieldinfochange",
     .create = createTriggerFieldInfoChange,
     .parameters = L"(this, fn)",
     .result = resultRule::none,
     .summary = L"Has the object tell its observers that the label or a state of a field has changed.",
     .failures = {stateFailures}},
    {.name = L"obj_getrelation",
     .create = createGetRelation,
     .parameters = L"(object, relation, [unused], [unused], [deletion status])",
     .summary = L"Gives the object at the other end of a relation, a null reference where there is none.",
     .failures = {L"getRelation::createFrom: number of parameters < 2\n"
                  L"Unable to retrieve deletionstatus",
                  relationFailures, getRelationFailures}},
    {.name = L"obj_getrelations",
     .create = createGetRelations,
     .parameters = L"(object, relation)",
     .summary = L"Gives what walks over the objects at the other ends of a relation, for `for_each` and "
                L"`createarray`.",
     .failures = {L"getRelations::createFrom: number of parameters < 2", relationFailures,
                  getRelationFailures}},
    {.name = L"obj_setrelation",
     .create = createSetRelation,
     .parameters = L"(object, relation, [related])",
     .result = resultRule::none,
     .summary = L"Links the object to another, or to none.",
     .failures = {L"setRelation::createFrom: number of parameters < 2\n"
                  L"setRelation::createFrom: error parsing \"%s\"",
                  relationFailures,
                  L"unable to retrieve relation\n"
                  L"pObject->setRelation failed"}},
    hasData(L"obj_hastransientdata"),
    hasData(L"ctxt_hastransientdata"),
    getData(L"obj_gettransientdata"),
    getData(L"ctxt_gettransientdata"),
    setData(L"obj_settransientdata"),
    setData(L"ctxt_settransientdata"),
};

} // namespace

constinit const builtinModule objectModule{L"object", rows};

} // namespace qx::script
