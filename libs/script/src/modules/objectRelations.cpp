// The statements on the relations of host objects, and on the data that scripts hang on them.
#include "modules/genericValueObject.h"
#include "modules/objectStatements.h"

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
    intrface::interfaceptr<relationaccess> object;
    string name;
};

class relationStatement : public fieldstatement
{
protected:
    using fieldstatement::fieldstatement;

    relationOf requireRelation(codecontext& context) const
    {
        const auto object = requireObject<relationaccess>(context);
        const string name = getFieldName(context).text();
        if (!object->hasRelation(name.c_str()))
            execError(this, L"relation \"%s\" not found", name);
        epoch::move(); // the object may have run anything, and there are operands yet
        return {object, name};
    }

    // What the object hands out at the other end is released whatever it answers.
    objectRef requireRelated(const relationOf& relation,
                             bool (relationaccess::*get)(const wchar_t*, unknown**)) const
    {
        objectRef related;
        if (!(relation.object.get()->*get)(relation.name.c_str(), related.receive()))
            execError(this, L"Error retrieving relation \"%s\"", relation.name);
        return related;
    }
};

constexpr const wchar_t* getRelationUnusable = L"getRelation::createFrom: error parsing \"%s\"";

class getRelation final : public relationStatement
{
public:
    explicit getRelation(const callText& call)
        : relationStatement(call,
                            {2, L"getRelation::createFrom: number of parameters < 2", getRelationUnusable}),
          mpDeletionStatus(providerOf(call, 4))
    {}

    statement* clone() const override { return new getRelation(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const relationOf relation = requireRelation(context);
        string unused;
        if (mpDeletionStatus && !mpDeletionStatus.read(context, unused))
            execError(this, L"Unable to retrieve deletionstatus");
        replaceResult(result, requireRelated(relation, &relationaccess::getRelation));
    }

private:
    ownedProvider mpDeletionStatus; // REQUIRED: the fifth parameter; it is read, and no operation takes it
};

class getRelations final : public relationStatement
{
public:
    // REQUIRED: the second text names the other statement.
    explicit getRelations(const callText& call)
        : relationStatement(call,
                            {2, L"getRelations::createFrom: number of parameters < 2", getRelationUnusable})
    {}

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
    explicit setRelation(const callText& call)
        : relationStatement(call, {2, L"setRelation::createFrom: number of parameters < 2",
                                   L"setRelation::createFrom: error parsing \"%s\""}),
          mpRelated(providerOf(call, 2))
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
            execError(this, L"pObject->setRelation failed");
    }

private:
    // Nothing is converted.
    objectRef requireGiven(codecontext& context) const
    {
        genericValue value;
        const bool isGiven = mpRelated.evaluate(context, value);
        const heldIn<objectRef> object(&value);
        if (!isGiven || !object)
            execError(this, L"unable to retrieve relation");
        return *object;
    }

    ownedProvider mpRelated; // null: the relation is cleared
};

// --- Transient data ---

// Data under a name of an object.
struct dataOf
{
    intrface::interfaceptr<transientdataaccess> object;
    string name;
};

class dataStatement : public methodstatement
{
protected:
    // A name that cannot be made is found missing when the statement runs.
    dataStatement(const callText& call, const objectRefusals& texts)
        : methodstatement(call, texts), mpName(providerOf(call, 1))
    {}

    dataOf requireData(codecontext& context) const
    {
        const auto object = requireObject<transientdataaccess>(context);
        string name;
        if (!mpName.read(context, name))
            execError(this, L"unable to retrieve name");
        return {object, name};
    }

private:
    ownedProvider mpName;
};

class hasTransientData final : public dataStatement
{
public:
    explicit hasTransientData(const callText& call)
        : dataStatement(call, {2, L"hasTransientData::createFrom: number of parameters < 2",
                               L"hasTransientData::createFrom: error parsing \"%s\""})
    {}

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
    explicit getTransientData(const callText& call)
        : dataStatement(call, {2, L"getTransientData::createFrom: number of parameters < 2",
                               L"getTransientData::createFrom: error parsing \"%s\""})
    {}

    statement* clone() const override { return new getTransientData(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const dataOf data = requireData(context);
        objectRef stored;
        if (!data.object->getTransientData(data.name.c_str(), stored.receive()))
            execError(this, L"Error executing getTransientData");
        const auto* const carrier = dynamic_cast<ifimpl::intrfaceImpl<gvObjectImpl>*>(stored.get());
        if (!carrier)
            execError(this, nullptr);
        result = carrier->value();
    }
};

class setTransientData final : public dataStatement
{
public:
    explicit setTransientData(const callText& call)
        : dataStatement(call, {2, L"setTransientData::createFrom: number of parameters < 2",
                               L"setTransientData::createFrom: error parsing \"%s\""}),
          mpValue(providerOf(call, 2))
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
            execError(this, L"Error executing setTransientData");
    }

private:
    objectRef requireCarrier(codecontext& context) const
    {
        genericValue value;
        if (!mpValue.evaluate(context, value))
            execError(this, L"unable to retrieve value");
        gvObjectImpl* const made = gvObjectImpl::make(value);
        void* root = nullptr;
        if (made)
            made->queryInterface(intrface::interfaceName<unknown>, &root);
        return objectRef::adopt(static_cast<unknown*>(root));
    }

    ownedProvider mpValue; // null: what is stored is cleared
};

} // namespace

statement* createGetRelation(const callText& call)
{
    return new getRelation(call);
}

statement* createGetRelations(const callText& call)
{
    return new getRelations(call);
}

statement* createSetRelation(const callText& call)
{
    return new setRelation(call);
}

statement* createHasTransientData(const callText& call)
{
    return new hasTransientData(call);
}

statement* createGetTransientData(const callText& call)
{
    return new getTransientData(call);
}

statement* createSetTransientData(const callText& call)
{
    return new setTransientData(call);
}

} // namespace qx::script
