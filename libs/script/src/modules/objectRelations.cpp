// The statements on the relations of host objects, and on the data that scripts hang on them.
#include "modules/genericValueObject.h"
#include "modules/qxScriptModules.h"
#include "modules/qxScriptObject.h"
#include "modules/qxScriptRows.h"

#include "qxHeldTypes.h"

namespace qx::script
{

namespace
{

using ifimpl::gvObjectImpl;
using intrface::relationaccess;
using intrface::transientdataaccess;
using intrface::unknown;

// --- Relations ---

// A relation that its object has.
struct relationOf
{
    askedObject<relationaccess> object;
    string name;
};

class relationStatement : public fieldstatement
{
public:
    static constexpr const wchar_t* noRelation = L"relation \"%s\" not found";
    static constexpr const wchar_t* notGot = L"Error retrieving relation \"%s\"";

protected:
    using fieldstatement::fieldstatement;

    relationOf requireRelation(codecontext& context) const
    {
        const auto object = requireObject<relationaccess>(context);
        const string name = getFieldName(context).text();
        if (!object->hasRelation(name.c_str()))
            execError(this, noRelation, name);
        return {object, name};
    }

    // What the object hands out at the other end is released whatever it answers.
    objectRef requireRelated(const relationOf& relation,
                             bool (relationaccess::*get)(const wchar_t*, unknown**)) const
    {
        objectRef related;
        if (!relation.object.ask([&](relationaccess& asked) {
                return (asked.*get)(relation.name.c_str(), related.receive());
            }))
            execError(this, notGot, relation.name);
        return related;
    }
};

constexpr const wchar_t* getRelationUnusable = L"getRelation::createFrom: error parsing \"%s\"";

class getRelation final : public relationStatement
{
public:
    static constexpr refusals texts{2, L"getRelation::createFrom: number of parameters < 2",
                                    getRelationUnusable};
    static constexpr const wchar_t* noStatus = L"Unable to retrieve deletionstatus";
    static constexpr const wchar_t* failures[] = {texts.tooFew, noStatus,       noObject,
                                                  noRelation,   texts.unusable, notGot};

    explicit getRelation(const callText& call)
        : relationStatement(call, texts), mpDeletionStatus(operandAt(call, 4))
    {}

    statement* clone() const override { return new getRelation(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const relationOf relation = requireRelation(context);
        string unused;
        if (mpDeletionStatus && !mpDeletionStatus.read(context, unused))
            execError(this, noStatus);
        replaceResult(result, requireRelated(relation, &relationaccess::getRelation));
    }

private:
    operand mpDeletionStatus; // REQUIRED: the fifth parameter; it is read, and no operation takes it
};

class getRelations final : public relationStatement
{
public:
    // REQUIRED: the second text names the other statement.
    static constexpr refusals texts{2, L"getRelations::createFrom: number of parameters < 2",
                                    getRelationUnusable};
    static constexpr const wchar_t* failures[] = {texts.tooFew, noObject, noRelation, texts.unusable, notGot};

    explicit getRelations(const callText& call) : relationStatement(call, texts) {}

    statement* clone() const override { return new getRelations(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const relationOf relation = requireRelation(context);
        replaceResult(result, requireRelated(relation, &relationaccess::getRelations));
    }
};

class setRelation final : public relationStatement
{
public:
    static constexpr refusals texts{2, L"setRelation::createFrom: number of parameters < 2",
                                    L"setRelation::createFrom: error parsing \"%s\""};
    static constexpr const wchar_t* unreadable = L"unable to retrieve relation";
    static constexpr const wchar_t* notSet = L"pObject->setRelation failed";
    static constexpr const wchar_t* failures[] = {texts.tooFew, texts.unusable, noObject,
                                                  noRelation,   unreadable,     notSet};

    explicit setRelation(const callText& call) : relationStatement(call, texts), mpRelated(operandAt(call, 2))
    {}

    statement* clone() const override { return new setRelation(*this); }
    // Has no value.
    void execute(codecontext& context, genericValue&) const override
    {
        const relationOf relation = requireRelation(context);
        objectRef related;
        if (mpRelated)
            related = requireGiven(context);
        if (!relation.object->setRelation(relation.name.c_str(), related.get()))
            execError(this, notSet);
    }

private:
    // Nothing is converted.
    objectRef requireGiven(codecontext& context) const
    {
        genericValue value;
        const bool isGiven = mpRelated.evaluate(context, value);
        const heldIn<objectRef> object(&value);
        if (!isGiven || !object)
            execError(this, unreadable);
        return *object;
    }

    operand mpRelated; // null: the relation is cleared
};

// --- Transient data ---

// Data under a name of an object.
struct dataOf
{
    askedObject<transientdataaccess> object;
    string name;
};

class dataStatement : public methodstatement
{
public:
    static constexpr const wchar_t* noName = L"unable to retrieve name";

protected:
    // A name that cannot be made is found missing when the statement runs.
    dataStatement(const callText& call, const refusals& texts)
        : methodstatement(call, texts), mpName(operandAt(call, 1))
    {}

    dataOf requireData(codecontext& context) const
    {
        const auto object = requireObject<transientdataaccess>(context);
        string name;
        if (!mpName.read(context, name))
            execError(this, noName);
        return {object, name};
    }

private:
    operand mpName;
};

class hasTransientData final : public dataStatement
{
public:
    static constexpr refusals texts{2, L"hasTransientData::createFrom: number of parameters < 2",
                                    L"hasTransientData::createFrom: error parsing \"%s\""};
    static constexpr const wchar_t* failures[] = {texts.tooFew, texts.unusable, noObject, noName};

    explicit hasTransientData(const callText& call) : dataStatement(call, texts) {}

    statement* clone() const override { return new hasTransientData(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const dataOf data = requireData(context);
        replaceResult(result, data.object->hasTransientData(data.name.c_str()));
    }
};

class getTransientData final : public dataStatement
{
public:
    static constexpr refusals texts{2, L"getTransientData::createFrom: number of parameters < 2",
                                    L"getTransientData::createFrom: error parsing \"%s\""};
    static constexpr const wchar_t* notGot = L"Error executing getTransientData";
    static constexpr const wchar_t* failures[] = {texts.tooFew, texts.unusable, noObject, noName, notGot};

    explicit getTransientData(const callText& call) : dataStatement(call, texts) {}

    statement* clone() const override { return new getTransientData(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const dataOf data = requireData(context);
        objectRef stored;
        if (!data.object->getTransientData(data.name.c_str(), stored.receive()))
            execError(this, notGot);
        const auto* const carrier = dynamic_cast<ifimpl::intrfaceImpl<gvObjectImpl>*>(stored.get());
        if (!carrier)
            execError(this, nullptr);
        result = carrier->value();
    }
};

class setTransientData final : public dataStatement
{
public:
    static constexpr refusals texts{2, L"setTransientData::createFrom: number of parameters < 2",
                                    L"setTransientData::createFrom: error parsing \"%s\""};
    static constexpr const wchar_t* noValue = L"unable to retrieve value";
    static constexpr const wchar_t* notSet = L"Error executing setTransientData";
    static constexpr const wchar_t* failures[] = {texts.tooFew, texts.unusable, noObject,
                                                  noName,       noValue,        notSet};

    explicit setTransientData(const callText& call) : dataStatement(call, texts), mpValue(operandAt(call, 2))
    {}

    statement* clone() const override { return new setTransientData(*this); }
    // Has no value.
    void execute(codecontext& context, genericValue&) const override
    {
        const dataOf data = requireData(context);
        objectRef carrier;
        if (mpValue)
            carrier = requireCarrier(context);
        if (!data.object->setTransientData(data.name.c_str(), carrier.get()))
            execError(this, notSet);
    }

private:
    objectRef requireCarrier(codecontext& context) const
    {
        genericValue value;
        if (!mpValue.evaluate(context, value))
            execError(this, noValue);
        gvObjectImpl* const made = gvObjectImpl::make(value);
        void* root = nullptr;
        if (made)
            made->queryInterface(intrface::interfaceName<unknown>, &root);
        return objectRef::adopt(static_cast<unknown*>(root));
    }

    operand mpValue; // null: what is stored is cleared
};

// --- Table ---

constexpr builtin hasDataRow = {.name = L"obj_hastransientdata",
                                .create = create<hasTransientData>,
                                .parameters = L"(object, name)",
                                .summary = L"Tells whether there is data under the name on the object.",
                                .failures = hasTransientData::failures};
constexpr builtin getDataRow = {
    .name = L"obj_gettransientdata",
    .create = create<getTransientData>,
    .parameters = L"(object, name)",
    .summary = L"Gives a copy of the value that a script has hung on the object under the name; fails, "
               L"without a text, where there is none.",
    .failures = getTransientData::failures};
constexpr builtin setDataRow = {
    .name = L"obj_settransientdata",
    .create = create<setTransientData>,
    .parameters = L"(object, name, [value])",
    .result = resultRule::none,
    .summary = L"Hangs a copy of the value on the object under the name, or clears what is there.",
    .failures = setTransientData::failures};

constexpr builtin rows[] = {
    {.name = L"obj_getrelation",
     .create = create<getRelation>,
     .parameters = L"(object, relation, [unused], [unused], [deletion status])",
     .summary = L"Gives the object at the other end of a relation, a null reference where there is none.",
     .failures = getRelation::failures},
    {.name = L"obj_getrelations",
     .create = create<getRelations>,
     .parameters = L"(object, relation)",
     .summary = L"Gives what walks over the objects at the other ends of a relation, for `for_each` and "
                L"`createarray`.",
     .failures = getRelations::failures},
    {.name = L"obj_setrelation",
     .create = create<setRelation>,
     .parameters = L"(object, relation, [related])",
     .result = resultRule::none,
     .summary = L"Links the object to another, or to none.",
     .failures = setRelation::failures},
    hasDataRow,
    renamed(hasDataRow, L"ctxt_hastransientdata"),
    getDataRow,
    renamed(getDataRow, L"ctxt_gettransientdata"),
    setDataRow,
    renamed(setDataRow, L"ctxt_settransientdata"),
};

} // namespace

constinit const builtinTable relationRows = rows;

} // namespace qx::script
