// The statements on the states of fields: restriction, disabled, constant, label, and what observers are
// told.
#include "modules/qxScriptModules.h"
#include "modules/qxScriptObject.h"
#include "modules/qxScriptRows.h"

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
    askedObject<T> access;
    string name;
};

// What all have in common: the object first, then its interface, then the name of the field.
class onField : public objectfunction
{
public:
    static constexpr declaredParameter thisParam{L"this", true, L"Error retrieving this-pointer (1)"};
    static constexpr declaredParameter nameParam{L"fn", true, noFieldName};
    static constexpr declaredParameter declared[] = {thisParam, nameParam};
    static constexpr const wchar_t* noAccess = L"Error retrieving this-pointer (2)";
    static constexpr const wchar_t* failures[] = {thisParam.failure, noAccess, nameParam.failure};

protected:
    template <class T>
    fieldOf<T> requireField(codecontext& context) const
    {
        const auto access = requireObject<T>(thisParam, context, noAccess);
        return {access, requireName(context)};
    }
    string requireName(codecontext& context) const { return require<string>(nameParam, context); }
};

// --- Restrictions ---

class obj_setrestriction final : public onField
{
public:
    static constexpr const wchar_t* messageName = L"obj_setrestriction";
    static constexpr declaredParameter restrictionParam{L"restriction", true,
                                                        L"Error retrieving restriction"};
    static constexpr declaredParameter declared[] = {thisParam, nameParam, restrictionParam};
    static constexpr const wchar_t* failures[] = {thisParam.failure, noAccess, nameParam.failure,
                                                  restrictionParam.failure};

    statement* clone() const override { return new obj_setrestriction(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        const auto field = requireField<restrictionsaccess>(context);
        const auto text = require<string>(restrictionParam, context);
        // REQUIRED: a text that is no condition is no failure: the field gets a null one.
        field.access->setRestriction(field.name.c_str(), sharedPtr<condition>(condition::parse(text)));
    }
};

class obj_isfieldvalid final : public onField
{
public:
    static constexpr const wchar_t* messageName = L"obj_isfieldvalid";
    static constexpr const wchar_t* noFields = L"Error retrieving this-pointer (3)";
    static constexpr const wchar_t* failures[] = {thisParam.failure, noAccess, nameParam.failure, noFields};

    statement* clone() const override { return new obj_isfieldvalid(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        auto object = require<objectRef>(thisParam, context);
        const auto restrictions = requireInterface<restrictionsaccess>(this, object, noAccess);
        const auto fields = requireInterface<fieldaccess>(this, object, noFields);
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

struct disabledFlag
{
    static constexpr declaredParameter flagParam{L"disabled", false};
    static constexpr bool isOpposite = false; // of what the object knows
    static constexpr auto set = &propertyaccess::setDisabled;
    static constexpr auto ask = &propertyaccess::isDisabled;
};

struct enabledFlag
{
    static constexpr declaredParameter flagParam{L"enabled", false};
    static constexpr bool isOpposite = true;
    static constexpr auto set = &propertyaccess::setDisabled;
    static constexpr auto ask = &propertyaccess::isDisabled;
};

struct constantFlag
{
    static constexpr declaredParameter flagParam{L"const", false};
    static constexpr bool isOpposite = false;
    static constexpr auto set = &propertyaccess::setConstant;
    static constexpr auto ask = &propertyaccess::isConstant;
};

struct obj_setdisabled : disabledFlag
{
    static constexpr const wchar_t* scriptName = L"obj_setdisabled";
    static constexpr const wchar_t* messageName = scriptName;
};

struct obj_isdisabled : disabledFlag
{
    static constexpr const wchar_t* messageName = L"obj_isdisabled";
};

struct obj_setenabled : enabledFlag
{
    static constexpr const wchar_t* scriptName = L"obj_setenabled";
    // REQUIRED: a wrong call is told under the name of its opposite.
    static constexpr const wchar_t* messageName = obj_setdisabled::messageName;
};

struct obj_isenabled : enabledFlag
{
    static constexpr const wchar_t* messageName = L"obj_isenabled";
};

struct obj_setconstant : constantFlag
{
    static constexpr const wchar_t* scriptName = L"obj_setconstant";
    static constexpr const wchar_t* messageName = scriptName;
};

struct obj_isconstant : constantFlag
{
    static constexpr const wchar_t* messageName = L"obj_isconstant";
};

template <class Flag>
class setFlag final : public onField
{
public:
    static constexpr const wchar_t* messageName = Flag::messageName;
    static constexpr const wchar_t* scriptName = Flag::scriptName;
    static constexpr declaredParameter declared[] = {thisParam, nameParam, Flag::flagParam};

    statement* clone() const override { return new setFlag(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        const auto field = requireField<propertyaccess>(context);
        bool on = true;
        read(Flag::flagParam, context, on);
        field.access.ask(
            [&](propertyaccess& asked) { (asked.*Flag::set)(field.name.c_str(), on != Flag::isOpposite); });
    }
};

template <class Flag>
class askFlag final : public onField
{
public:
    static constexpr const wchar_t* messageName = Flag::messageName;

    statement* clone() const override { return new askFlag(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const auto field = requireField<propertyaccess>(context);
        const bool on =
            field.access.ask([&](propertyaccess& asked) { return (asked.*Flag::ask)(field.name.c_str()); });
        replaceResult(result, on != Flag::isOpposite);
    }
};

// --- Labels ---

// REQUIRED: a label that cannot be read is empty.
class obj_setlabel final : public onField
{
public:
    static constexpr const wchar_t* messageName = L"obj_setlabel";
    static constexpr declaredParameter labelParam{L"label", true};
    static constexpr declaredParameter declared[] = {thisParam, nameParam, labelParam};

    statement* clone() const override { return new obj_setlabel(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        const auto field = requireField<propertyaccess>(context);
        string label;
        read(labelParam, context, label);
        field.access->setLabel(field.name.c_str(), label);
    }
};

class obj_setlabelswitch final : public onField
{
public:
    static constexpr const wchar_t* messageName = L"obj_setlabelswitch";
    static constexpr declaredParameter onParam{L"label_on", true};
    static constexpr declaredParameter offParam{L"label_off", true};
    static constexpr declaredParameter enabledParam{enabledFlag::flagParam.name, true};
    static constexpr declaredParameter declared[] = {thisParam, nameParam, onParam, offParam, enabledParam};

    statement* clone() const override { return new obj_setlabelswitch(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        const auto field = requireField<propertyaccess>(context);
        bool isEnabled = false;
        read(enabledParam, context, isEnabled);
        string label;
        read(isEnabled ? onParam : offParam, context, label);
        field.access->setLabel(field.name.c_str(), label);
    }
};

class obj_label final : public onField
{
public:
    static constexpr const wchar_t* messageName = L"obj_label";

    statement* clone() const override { return new obj_label(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const auto field = requireField<propertyaccess>(context);
        replaceResult(result, field.access->getLabel(field.name.c_str()));
    }
};

// --- Events ---

struct obj_triggerfieldchange
{
    static constexpr const wchar_t* name = L"obj_triggerfieldchange";
    static constexpr auto trigger = &triggerEvents::triggerFieldChange;
};

struct obj_triggerfieldinfochange
{
    static constexpr const wchar_t* name = L"obj_triggerfieldinfochange";
    static constexpr auto trigger = &triggerEvents::triggerFieldInfoChange;
};

template <class Event>
class triggerEvent final : public onField
{
public:
    static constexpr const wchar_t* messageName = Event::name;

    statement* clone() const override { return new triggerEvent(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        const auto field = requireField<triggerEvents>(context);
        field.access.ask([&](triggerEvents& asked) { (asked.*Event::trigger)(field.name.c_str()); });
    }
};

// --- Table ---

constexpr builtin rows[] = {
    namedRow<obj_setrestriction>(
        L"Gives a field the condition that the text tells, as `condition_create` makes it, or none where the "
        L"text is no condition.",
        resultRule::none),
    namedRow<obj_isfieldvalid>(
        L"Tells whether a field meets its restriction; one without a restriction does.",
        resultRule::keepsType),
    namedRow<setFlag<obj_setenabled>>(L"Enables a field, or disables it where `enabled` is false.",
                                      resultRule::none),
    namedRow<askFlag<obj_isenabled>>(L"Tells whether a field is enabled."),
    namedRow<setFlag<obj_setdisabled>>(L"Disables a field, or enables it where `disabled` is false.",
                                       resultRule::none),
    namedRow<askFlag<obj_isdisabled>>(L"Tells whether a field is disabled."),
    namedRow<setFlag<obj_setconstant>>(L"Makes a field constant, or changeable where `const` is false.",
                                       resultRule::none),
    namedRow<askFlag<obj_isconstant>>(L"Tells whether a field is constant."),
    namedRow<obj_setlabel>(L"Gives a field its label.", resultRule::none),
    namedRow<obj_setlabelswitch>(
        L"Gives a field the one label where `enabled` is true and the other where it is false; the label "
        L"that is not used is not evaluated.",
        resultRule::none),
    namedRow<obj_label>(L"Gives the label of a field."),
    namedRow<triggerEvent<obj_triggerfieldchange>>(
        L"Has the object tell its observers that the content of a field has changed.", resultRule::none),
    namedRow<triggerEvent<obj_triggerfieldinfochange>>(
        L"Has the object tell its observers that the label or a state of a field has changed.",
        resultRule::none),
};

} // namespace

constinit const builtinTable stateRows = rows;

} // namespace qx::script
