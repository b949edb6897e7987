// Fields of host objects by table: members, or pairs of functions, bound to names.
//
//     class order final : public qx::host::fieldObject<order>
//     {
//     public:
//         static const qx::host::fieldTable<order>& fields()
//         {
//             static const qx::host::fieldTable<order> table = {
//                 {L"number", &order::mNumber},
//                 {L"discount", &order::discount, &order::setDiscount},
//                 {L"total", &order::total}, // no setter: scripts read it only
//             };
//             return table;
//         }
//         ...
//
// A field has a held type of genericValue, or is a genericValue, which takes the type that is written, or is
// a refPtr to an object or a vector of such, which scripts read as a reference or an array and do not write.
// Anything else does not compile:
//
//     bool, short, int, long32, ushort, uint, ulong32     read and written
//     float, double, qx::string                           read and written
//     date, time, timestamp                               read and written
//     genericValue                                        read and written, in whatever type comes
//     refPtr<T>                                           read as a reference
//     std::vector of any of these                         read as an array
//
// Whatever type a script states, the value is converted to and from the
// field's own as everywhere in the language.
#pragma once

#include "qxScriptHostObject.h"

#include "qxCompiler.h"
#include "qxHeldTypes.h"

#include <algorithm>
#include <cwchar>
#include <initializer_list>
#include <typeinfo>

namespace qx::host
{

// What a field may be, of those that the head of this header lists.
template <class T>
inline constexpr bool fieldType = holdable<T> || std::is_same_v<T, genericValue>;
template <class T>
inline constexpr bool fieldType<refPtr<T>> = true;
template <class T>
inline constexpr bool fieldType<std::vector<T>> = fieldType<T>;

//     {L"total", &order::total, L"Sum"}             read only, shown with a label
//     {L"rate", &order::rate, &order::setRate}       the setter may refuse a value by false
//
// One field of a class: a name, and how it is read and written. Immutable; used by any thread that may use
// the object.
template <class Owner>
class field
{
public:
    // A member, read and written in place. `name` and `label` are literals, here and below; the label is what
    // an editor shows until somebody sets another.
    template <class T>
    field(const wchar_t* name, T Owner::*member, const wchar_t* label = L"")
        : mName(name), mLabel(label), mAccess(new memberAccess<T>(member))
    {}
    // What a function gives: scripts read it only.
    template <class T>
    field(const wchar_t* name, T (Owner::*getter)() const, const wchar_t* label = L"")
        : mName(name), mLabel(label), mAccess(new computedAccess<std::remove_cvref_t<T>, T>(getter))
    {}
    // A pair of functions. The setter gives nothing, or a bool that is false for a value that it refuses.
    template <class T, class Set, class Done>
    field(const wchar_t* name, T (Owner::*getter)() const, Done (Owner::*setter)(Set),
          const wchar_t* label = L"")
        : mName(name), mLabel(label),
          mAccess(new propertyAccess<std::remove_cvref_t<T>, T, Set, Done>(getter, setter))
    {}

    // What the table says.
    std::wstring_view name() const { return mName; }
    const wchar_t* label() const { return mLabel; }
    // True for a member or a pair of functions whose type scripts can give.
    bool isWritable() const { return mAccess->isWritable(); }

    // The content in the field's own type; then converted into a T, or false, with `out` untouched, where it
    // does not convert.
    genericValue get(const Owner& owner) const { return mAccess->read(owner); }
    template <class T>
    bool get(const Owner& owner, T& out) const
    {
        if (mAccess->type() == typeid(T)) {
            mAccess->copy(owner, &out);
            return true;
        }
        return mAccess->read(owner).getValue(out);
    }
    // False where the field cannot be written, the value does not convert, or the setter refuses it.
    bool set(Owner& owner, const genericValue& value) const { return mAccess->write(owner, value); }

private:
    // How one kind of field is reached; T is the field's type. Copies of the field share it.
    class access
    {
    public:
        virtual ~access() = default;
        virtual const std::type_info& type() const = 0;
        virtual bool isWritable() const = 0;
        virtual genericValue read(const Owner& owner) const = 0;
        virtual void copy(const Owner& owner, void* out) const = 0; // to a place of exactly this type
        virtual bool write(Owner& owner, const genericValue& value) const = 0;
    };

    // What a script can give, as a whole.
    template <class T>
    static constexpr bool written = holdable<T> || std::is_same_v<T, genericValue>;

    // What all fields of one type have in common; read only, unless somebody overrides that.
    template <class T>
    class typedAccess : public access
    {
        static_assert(fieldType<T>,
                      "a field has a held type, or is a genericValue, a refPtr or a vector of such");

    public:
        const std::type_info& type() const override { return typeid(T); }
        bool isWritable() const override { return false; }
        bool write(Owner&, const genericValue&) const override { return false; }
    };

    // A member: read as it stands, written in place.
    template <class T>
    class memberAccess final : public typedAccess<T>
    {
    public:
        explicit memberAccess(T Owner::*member) : mMember(member) {}
        bool isWritable() const override { return written<T>; }
        genericValue read(const Owner& owner) const override { return valueOf(owner.*mMember); }
        void copy(const Owner& owner, void* out) const override { *static_cast<T*>(out) = owner.*mMember; }
        bool write(Owner& owner, const genericValue& value) const override
        {
            if constexpr (written<T>)
                return readValue(value, owner.*mMember);
            else
                return false;
        }

    private:
        T Owner::*mMember;
    };

    // What a function gives, which may be a T or a reference to one.
    template <class T, class Got>
    class computedAccess : public typedAccess<T>
    {
    public:
        explicit computedAccess(Got (Owner::*getter)() const) : mGetter(getter) {}
        genericValue read(const Owner& owner) const override { return valueOf((owner.*mGetter)()); }
        void copy(const Owner& owner, void* out) const override
        {
            *static_cast<T*>(out) = (owner.*mGetter)();
        }

    private:
        Got (Owner::*mGetter)() const;
    };

    // A pair of functions. What is written is converted into what the setter takes first.
    template <class T, class Got, class Set, class Done>
    class propertyAccess final : public computedAccess<T, Got>
    {
        static_assert(written<std::remove_cvref_t<Set>>, "a setter takes a held type or a genericValue");

    public:
        propertyAccess(Got (Owner::*getter)() const, Done (Owner::*setter)(Set))
            : computedAccess<T, Got>(getter), mSetter(setter)
        {}
        bool isWritable() const override { return true; }
        bool write(Owner& owner, const genericValue& value) const override
        {
            std::remove_cvref_t<Set> converted{};
            if (!readValue(value, converted))
                return false;
            if constexpr (std::is_void_v<Done>) {
                (owner.*mSetter)(converted);
                return true;
            } else {
                return (owner.*mSetter)(converted);
            }
        }

    private:
        Done (Owner::*mSetter)(Set);
    };

    std::wstring_view mName;
    const wchar_t* mLabel;
    sharedPtr<const access> mAccess;
};

// The fields of a class, to be made once and never changed, so that any thread may use it, in the order in
// which they are given. Names and labels are literals; names are compared exactly, and of two that are the
// same the first counts.
template <class Owner>
class fieldTable
{
public:
    fieldTable(std::initializer_list<field<Owner>> fields) : mFields(fields)
    {
        for (std::size_t place = 0; place < mFields.size(); ++place)
            mByName.push_back(place);
        std::stable_sort(mByName.begin(), mByName.end(), [this](std::size_t a, std::size_t b) {
            return mFields[a].name() < mFields[b].name();
        });
    }

    // The fields, in the order of the table; `index` is below size().
    std::size_t size() const { return mFields.size(); }
    const field<Owner>& operator[](std::size_t index) const { return mFields[index]; }

    // Borrowed from the table; null for a name that no field has.
    const field<Owner>* find(const wchar_t* name) const
    {
        const field<Owner>* const first = mFields.data();
        const field<Owner>* const end = first + mFields.size();
        if (mFields.size() > walkedAtMost)
            return findInOrder(name);
        for (const field<Owner>* at = first; at != end; ++at)
            if (isName(at->name().data(), name))
                return at;
        return nullptr;
    }
    // The place of a field in the order of the table; size() for a name that none has.
    std::size_t indexOf(const wchar_t* name) const
    {
        const field<Owner>* const found = find(name);
        return found ? static_cast<std::size_t>(found - mFields.data()) : size();
    }

private:
    // Names differ early, mostly: a walk along a few is quicker than the order, and needs no length.
    static constexpr std::size_t walkedAtMost = 12;

    static bool isName(const wchar_t* known, const wchar_t* name)
    {
        return *known == *name && std::wcscmp(known, name) == 0;
    }
    QX_NOINLINE const field<Owner>* findInOrder(std::wstring_view name) const
    {
        const auto at = std::lower_bound(
            mByName.begin(), mByName.end(), name,
            [this](std::size_t place, std::wstring_view wanted) { return mFields[place].name() < wanted; });
        return at != mByName.end() && mFields[*at].name() == name ? &mFields[*at] : nullptr;
    }

    std::vector<field<Owner>> mFields;
    std::vector<std::size_t> mByName; // the places in order of the names
};

// The base of fieldObject: fieldaccess as such, unless the object offers an interface that extends it.
template <class... More>
using withFields = std::conditional_t<
    (std::is_base_of_v<intrface::fieldaccess, More> || ...),
    object<intrface::arrayfieldaccess, intrface::propertyaccess, More...>,
    object<intrface::fieldaccess, intrface::arrayfieldaccess, intrface::propertyaccess, More...>>;

// Base of an object whose class `Derived` has a static `fields()`: offers fieldaccess, arrayfieldaccess and
// propertyaccess over that table, and the interfaces named besides, which Derived implements.
//
// States of fields belong to the single object: nothing is disabled to begin with, what scripts cannot write
// is constant, and labels are those of the table. They are for editors; a script may write a disabled field.
template <class Derived, class... More>
//
//     class note final : public qx::host::fieldObject<note, qx::intrface::messagesaccess>
//
// One object is for one thread at a time, as far as its fields and states go; its references may be counted
// by any.
class fieldObject : public withFields<More...>
{
public:
    // --- fieldaccess: each name is looked for in the table, in its exact spelling. False for a name that
    // none has, and where the field's type and the asked one do not convert into each other.

    bool hasField(const wchar_t* name) override { return table().find(name) != nullptr; }

    bool getValue(const wchar_t* name, genericValue& value) override
    {
        const field<Derived>* const found = find(name);
        if (!found)
            return false;
        value = found->get(self());
        return true;
    }
    bool getValue(const wchar_t* name, timestamp* value) override { return get(name, *value); }
    bool getValue(const wchar_t* name, time* value) override { return get(name, *value); }
    bool getValue(const wchar_t* name, date* value) override { return get(name, *value); }
    bool getValue(const wchar_t* name, string* value) override { return get(name, *value); }
    bool getValue(const wchar_t* name, double* value) override { return get(name, *value); }
    bool getValue(const wchar_t* name, float* value) override { return get(name, *value); }
    bool getValue(const wchar_t* name, ulong32* value) override { return get(name, *value); }
    bool getValue(const wchar_t* name, uint* value) override { return get(name, *value); }
    bool getValue(const wchar_t* name, ushort* value) override { return get(name, *value); }
    bool getValue(const wchar_t* name, long32* value) override { return get(name, *value); }
    bool getValue(const wchar_t* name, int* value) override { return get(name, *value); }
    bool getValue(const wchar_t* name, short* value) override { return get(name, *value); }
    bool getValue(const wchar_t* name, bool* value) override { return get(name, *value); }

    bool setValue(const wchar_t* name, timestamp value) override { return set(name, value); }
    bool setValue(const wchar_t* name, time value) override { return set(name, value); }
    bool setValue(const wchar_t* name, date value) override { return set(name, value); }
    bool setValue(const wchar_t* name, const string& value) override { return set(name, value); }
    bool setValue(const wchar_t* name, double value) override { return set(name, value); }
    bool setValue(const wchar_t* name, float value) override { return set(name, value); }
    bool setValue(const wchar_t* name, ulong32 value) override { return set(name, value); }
    bool setValue(const wchar_t* name, uint value) override { return set(name, value); }
    bool setValue(const wchar_t* name, ushort value) override { return set(name, value); }
    bool setValue(const wchar_t* name, long32 value) override { return set(name, value); }
    bool setValue(const wchar_t* name, short value) override { return set(name, value); }
    bool setValue(const wchar_t* name, bool value) override { return set(name, value); }

    // --- arrayfieldaccess: fields that are vectors; false for others.

    bool getValue(const wchar_t* name, std::vector<genericValue>* value) override
    {
        return get(name, *value);
    }

    // --- propertyaccess: kept for this object alone; false for a name that no field has.

    bool setDisabled(const wchar_t* name, bool disabled) override
    {
        return change(name, [&](state& s) { s.disabled = disabled; });
    }
    bool isDisabled(const wchar_t* name) override { return stateOf(name).disabled; }
    bool setConstant(const wchar_t* name, bool constant) override
    {
        return change(name, [&](state& s) { s.constant = constant; });
    }
    bool isConstant(const wchar_t* name) override { return stateOf(name).constant; }
    bool setLabel(const wchar_t* name, const string& label) override
    {
        return change(name, [&](state& s) { s.label = label; });
    }
    string getLabel(const wchar_t* name) override { return stateOf(name).label; }

private:
    // What an editor shows of a field.
    struct state
    {
        bool disabled = false;
        bool constant = false;
        string label;
    };

    // Made at the first use, once for all objects of the class.
    static const fieldTable<Derived>& table()
    {
        static const fieldTable<Derived>& known = Derived::fields();
        return known;
    }
    static const field<Derived>* find(const wchar_t* name) { return table().find(name); }
    Derived& self() { return static_cast<Derived&>(*this); }

    // The typed reads and writes of fieldaccess: the field converts.
    template <class T>
    bool get(const wchar_t* name, T& out)
    {
        const field<Derived>* const found = find(name);
        return found && found->get(self(), out);
    }
    template <class T>
    bool set(const wchar_t* name, const T& value)
    {
        const field<Derived>* const found = find(name);
        return found && found->set(self(), genericValue(value));
    }

    // Before anybody has changed it: what the table says.
    static state initialState(std::size_t index)
    {
        return {false, !table()[index].isWritable(), string(table()[index].label())};
    }
    state stateOf(const wchar_t* name) const
    {
        const std::size_t index = table().indexOf(name);
        if (index < mStates.size())
            return mStates[index];
        return index < table().size() ? initialState(index) : state();
    }
    // False for a name that no field has.
    template <class Change>
    bool change(const wchar_t* name, const Change& apply)
    {
        const std::size_t index = table().indexOf(name);
        if (index == table().size())
            return false;
        while (mStates.size() < table().size())
            mStates.push_back(initialState(mStates.size()));
        apply(mStates[index]);
        return true;
    }

    std::vector<state> mStates; // as in the table; empty until the first change
};

} // namespace qx::host
