// A statement of the host's own, written by hand: money(amount, [currency]) shows an amount.
#pragma once

#include <qxScript>

class money final : public qx::script::singlefunction
{
public:
    // The factory of a module: null for names that are not its own.
    static statement* make(const qx::string& name, const std::vector<qx::string>&,
                           const std::vector<qx::string>& params, int flags)
    {
        if (name != L"money")
            return nullptr;
        qx::autoPtr<money> made(new money);
        made->parse(L"money", params, flags, L"amount", true, L"currency", false, nullptr);
        return made.release();
    }

    statement* clone() const override { return new money(*this); }
    void destroy() override { delete this; }
    void execute(qx::script::codecontext& context, qx::genericValue& result) const override
    {
        qx::genericValue value;
        double amount = 0;
        if (!getParamValue(L"amount", context, value) || !value.getValue(amount))
            execError(this, L"error retrieving amount");
        qx::string currency = L"EUR";
        if (getParamValue(L"currency", context, value))
            value.getValue(currency);
        result = qx::genericValue(qx::string::sformat(L"%.2f %s", amount, currency));
    }
};
