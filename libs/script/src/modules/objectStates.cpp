// The statements on the states of fields: restriction, disabled, constant, label, and what observers are
// told.
#include "modules/objectStatements.h"

#include "qxHeldTypes.h"

namespace qx::script
{

namespace
{

using conditions::condition;
using intrface::fieldaccess;
using intrface::propertyaccess;
using intrface::restrictionsaccess;
using intrface::triggerEvents;

// A field of an object, through one interface of it.
template <class T>
struct fieldOf
{
    intrface::interfaceptr<T> access;
    string name;
};

// What all have in common: the object first, then its interface, then the name of the field.
class onField : public scriptbasesinglefunction
{
protected:
    template <class T>
    fieldOf<T> requireField(codecontext& context) const
    {
        objectRef object = requireThis(context);
        const auto access = requireInterface<T>(object, L"Error retrieving this-pointer (2)");
        return {access, requireName(context)};
    }

    objectRef requireThis(codecontext& context) const
    {
        return require<objectRef>(L"this", context, L"Error retrieving this-pointer (1)");
    }
    template <class T>
    intrface::interfaceptr<T> requireInterface(objectRef& object, const wchar_t* failure) const
    {
        const intrface::interfaceptr<T> access(object);
        if (!access.isValid())
            execError(this, failure);
        return access;
    }
    string requireName(codecontext& context) const
    {
        return require<string>(L"fn", context, L"Error retrieving fieldname");
    }
};

// --- Restrictions ---

class obj_setrestriction final : public onField
{
public:
    static constexpr const wchar_t* messageName = L"obj_setrestriction";
    static constexpr declaredParameter declared[] = {{L"this", true}, {L"fn", true}, {L"restriction", true}};

    statement* clone() const override { return new obj_setrestriction(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        const auto field = requireField<restrictionsaccess>(context);
        const auto text = require<string>(L"restriction", context, L"Error retrieving restriction");
        // REQUIRED: a text that is no condition is no failure: the field gets a null one.
        field.access->setRestriction(field.name.c_str(), sharedPtr<condition>(condition::parse(text)));
    }
};

class obj_isfieldvalid final : public onField
{
public:
    static constexpr const wchar_t* messageName = L"obj_isfieldvalid";
    static constexpr declaredParameter declared[] = {{L"this", true}, {L"fn", true}};

    statement* clone() const override { return new obj_isfieldvalid(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        objectRef object = requireThis(context);
        const auto restrictions =
            requireInterface<restrictionsaccess>(object, L"Error retrieving this-pointer (2)");
        const auto fields = requireInterface<fieldaccess>(object, L"Error retrieving this-pointer (3)");
        const string name = requireName(context);
        const sharedPtr<condition> restriction = restrictions->getRestriction(name.c_str());
        bool isValid = true;
        if (restriction) {
            genericValue value;
            fields->getValue(name.c_str(), value);
            isValid = restriction->isTrue(value);
        }
        writeToSlot(result, isValid);
    }
};

// --- Flags ---

struct enabledFlag
{
    // REQUIRED: a wrong call of the one that sets is told under the name of its opposite.
    static constexpr const wchar_t* setName = L"obj_setdisabled";
    static constexpr const wchar_t* askName = L"obj_isenabled";
    static constexpr const wchar_t* parameter = L"enabled";
    static constexpr bool isOpposite = true; // of what the object knows
    static constexpr auto set = &propertyaccess::setDisabled;
    static constexpr auto ask = &propertyaccess::isDisabled;
};

struct disabledFlag
{
    static constexpr const wchar_t* setName = L"obj_setdisabled";
    static constexpr const wchar_t* askName = L"obj_isdisabled";
    static constexpr const wchar_t* parameter = L"disabled";
    static constexpr bool isOpposite = false;
    static constexpr auto set = &propertyaccess::setDisabled;
    static constexpr auto ask = &propertyaccess::isDisabled;
};

struct constantFlag
{
    static constexpr const wchar_t* setName = L"obj_setconstant";
    static constexpr const wchar_t* askName = L"obj_isconstant";
    static constexpr const wchar_t* parameter = L"const";
    static constexpr bool isOpposite = false;
    static constexpr auto set = &propertyaccess::setConstant;
    static constexpr auto ask = &propertyaccess::isConstant;
};

template <class Flag>
class setFlag final : public onField
{
public:
    static constexpr const wchar_t* messageName = Flag::setName;
    static constexpr declaredParameter declared[] = {
        {L"this", true}, {L"fn", true}, {Flag::parameter, false}};

    statement* clone() const override { return new setFlag(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        const auto field = requireField<propertyaccess>(context);
        bool on = true;
        read(Flag::parameter, context, on);
        (field.access.get()->*Flag::set)(field.name.c_str(), on != Flag::isOpposite);
    }
};

template <class Flag>
class askFlag final : public onField
{
public:
    static constexpr const wchar_t* messageName = Flag::askName;
    static constexpr declaredParameter declared[] = {{L"this", true}, {L"fn", true}};

    statement* clone() const override { return new askFlag(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const auto field = requireField<propertyaccess>(context);
        const bool on = (field.access.get()->*Flag::ask)(field.name.c_str());
        replaceResult(result, on != Flag::isOpposite);
    }
};

// --- Labels ---

// REQUIRED: a label that cannot be read is empty.
class obj_setlabel final : public onField
{
public:
    static constexpr const wchar_t* messageName = L"obj_setlabel";
    static constexpr declaredParameter declared[] = {{L"this", true}, {L"fn", true}, {L"label", true}};

    statement* clone() const override { return new obj_setlabel(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        const auto field = requireField<propertyaccess>(context);
        string label;
        read(L"label", context, label);
        field.access->setLabel(field.name.c_str(), label);
    }
};

class obj_setlabelswitch final : public onField
{
public:
    static constexpr const wchar_t* messageName = L"obj_setlabelswitch";
    static constexpr declaredParameter declared[] = {
        {L"this", true}, {L"fn", true}, {L"label_on", true}, {L"label_off", true}, {L"enabled", true}};

    statement* clone() const override { return new obj_setlabelswitch(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        const auto field = requireField<propertyaccess>(context);
        bool isEnabled = false;
        read(L"enabled", context, isEnabled);
        string label;
        read(isEnabled ? L"label_on" : L"label_off", context, label);
        field.access->setLabel(field.name.c_str(), label);
    }
};

class obj_label final : public onField
{
public:
    static constexpr const wchar_t* messageName = L"obj_label";
    static constexpr declaredParameter declared[] = {{L"this", true}, {L"fn", true}};

    statement* clone() const override { return new obj_label(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const auto field = requireField<propertyaccess>(context);
        replaceResult(result, field.access->getLabel(field.name.c_str()));
    }
};

// --- Events ---

struct fieldChange
{
    static constexpr const wchar_t* name = L"obj_triggerfieldchange";
    static constexpr auto trigger = &triggerEvents::triggerFieldChange;
};

struct fieldInfoChange
{
    static constexpr const wchar_t* name = L"obj_triggerfieldinfochange";
    static constexpr auto trigger = &triggerEvents::triggerFieldInfoChange;
};

template <class Event>
class triggerEvent final : public onField
{
public:
    static constexpr const wchar_t* messageName = Event::name;
    static constexpr declaredParameter declared[] = {{L"this", true}, {L"fn", true}};

    statement* clone() const override { return new triggerEvent(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        const auto field = requireField<triggerEvents>(context);
        (field.access.get()->*Event::trigger)(field.name.c_str());
    }
};

} // namespace

statement* createSetRestriction(const callText& call)
{
    return createNamed<obj_setrestriction>(call);
}

statement* createIsFieldValid(const callText& call)
{
    return createNamed<obj_isfieldvalid>(call);
}

statement* createSetEnabled(const callText& call)
{
    return createNamed<setFlag<enabledFlag>>(call);
}

statement* createIsEnabled(const callText& call)
{
    return createNamed<askFlag<enabledFlag>>(call);
}

statement* createSetDisabled(const callText& call)
{
    return createNamed<setFlag<disabledFlag>>(call);
}

statement* createIsDisabled(const callText& call)
{
    return createNamed<askFlag<disabledFlag>>(call);
}

statement* createSetConstant(const callText& call)
{
    return createNamed<setFlag<constantFlag>>(call);
}

statement* createIsConstant(const callText& call)
{
    return createNamed<askFlag<constantFlag>>(call);
}

statement* createSetLabel(const callText& call)
{
    return createNamed<obj_setlabel>(call);
}

statement* createSetLabelSwitch(const callText& call)
{
    return createNamed<obj_setlabelswitch>(call);
}

statement* createLabel(const callText& call)
{
    return createNamed<obj_label>(call);
}

statement* createTriggerFieldChange(const callText& call)
{
    return createNamed<triggerEvent<fieldChange>>(call);
}

statement* createTriggerFieldInfoChange(const callText& call)
{
    return createNamed<triggerEvent<fieldInfoChange>>(call);
}

} // namespace qx::script
