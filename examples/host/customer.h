// A customer: an object of the host that implements the contract by hand. order.h shows the short way.
#pragma once

#include <qxScript>

#include <string_view>

class customer final : public qx::intrface::fieldaccess
{
public:
    customer(const qx::string& name, double credit) : mName(name), mCredit(credit) {}
    customer(const customer&) = delete;
    customer& operator=(const customer&) = delete;

    // --- Every object: counting, and answers to queries ---

    qx::uint addRef() override { return qx::interlockedIncrement(&mReferences); }
    qx::uint release() override
    {
        const qx::uint left = qx::interlockedDecrement(&mReferences);
        if (left == 0)
            delete this;
        return left;
    }
    bool queryInterface(const wchar_t* name, void** out) override
    {
        const std::wstring_view wanted(name);
        *out = nullptr;
        if (wanted != L"qx::intrface::unknown" && wanted != L"qx::intrface::fieldaccess")
            return false;
        *out = static_cast<fieldaccess*>(this);
        addRef();
        return true;
    }
    bool queryInterface(const wchar_t* name, const void** out) const override
    {
        return const_cast<customer*>(this)->queryInterface(name, const_cast<void**>(out));
    }
    unknown* root() { return this; }

    // --- Fields: "name", and "credit", which scripts may write ---

    bool hasField(const wchar_t* name) override { return !fieldOf(name).isNull(); }

    bool getValue(const wchar_t* name, qx::genericValue& value) override
    {
        value = fieldOf(name);
        return !value.isNull();
    }
    bool getValue(const wchar_t* name, qx::timestamp* value) override { return read(name, value); }
    bool getValue(const wchar_t* name, qx::time* value) override { return read(name, value); }
    bool getValue(const wchar_t* name, qx::date* value) override { return read(name, value); }
    bool getValue(const wchar_t* name, qx::string* value) override { return read(name, value); }
    bool getValue(const wchar_t* name, double* value) override { return read(name, value); }
    bool getValue(const wchar_t* name, float* value) override { return read(name, value); }
    bool getValue(const wchar_t* name, qx::ulong32* value) override { return read(name, value); }
    bool getValue(const wchar_t* name, qx::uint* value) override { return read(name, value); }
    bool getValue(const wchar_t* name, qx::ushort* value) override { return read(name, value); }
    bool getValue(const wchar_t* name, qx::long32* value) override { return read(name, value); }
    bool getValue(const wchar_t* name, int* value) override { return read(name, value); }
    bool getValue(const wchar_t* name, short* value) override { return read(name, value); }
    bool getValue(const wchar_t* name, bool* value) override { return read(name, value); }

    bool setValue(const wchar_t* name, qx::timestamp value) override { return write(name, value); }
    bool setValue(const wchar_t* name, qx::time value) override { return write(name, value); }
    bool setValue(const wchar_t* name, qx::date value) override { return write(name, value); }
    bool setValue(const wchar_t* name, const qx::string& value) override { return write(name, value); }
    bool setValue(const wchar_t* name, double value) override { return write(name, value); }
    bool setValue(const wchar_t* name, float value) override { return write(name, value); }
    bool setValue(const wchar_t* name, qx::ulong32 value) override { return write(name, value); }
    bool setValue(const wchar_t* name, qx::uint value) override { return write(name, value); }
    bool setValue(const wchar_t* name, qx::ushort value) override { return write(name, value); }
    bool setValue(const wchar_t* name, qx::long32 value) override { return write(name, value); }
    bool setValue(const wchar_t* name, short value) override { return write(name, value); }
    bool setValue(const wchar_t* name, bool value) override { return write(name, value); }

private:
    ~customer() = default; // release ends it

    // Null for a name that no field has.
    qx::genericValue fieldOf(std::wstring_view name) const
    {
        if (name == L"name")
            return qx::genericValue(mName);
        if (name == L"credit")
            return qx::genericValue(mCredit);
        return qx::genericValue();
    }
    // The script states the type: what is here is converted to it, as everywhere in the language.
    template <class T>
    bool read(const wchar_t* name, T* out) const
    {
        return fieldOf(name).getValue(*out);
    }
    template <class T>
    bool write(std::wstring_view name, const T& value)
    {
        return name == L"credit" && qx::genericValue(value).getValue(mCredit);
    }

    qx::string mName;
    double mCredit;
    qx::uint mReferences = 0;
};
