// An order with its lines: objects of the host made with qxScriptHost.h.
#pragma once

#include "customer.h"

#include <qxScriptHost.h>

#include <map>
#include <vector>

class orderLine final : public qx::host::fieldObject<orderLine>
{
public:
    orderLine(const qx::string& article, int quantity, double price)
        : mArticle(article), mQuantity(quantity), mPrice(price)
    {}

    static const qx::host::fieldTable<orderLine>& fields()
    {
        static const qx::host::fieldTable<orderLine> table = {
            {L"article", &orderLine::mArticle, L"Article"},
            {L"quantity", &orderLine::mQuantity, L"Quantity"},
            {L"price", &orderLine::mPrice, L"Price"},
            {L"amount", &orderLine::amount, L"Amount"}, // no setter: scripts only read it
        };
        return table;
    }

    double amount() const { return mQuantity * mPrice; }

private:
    qx::string mArticle;
    int mQuantity;
    double mPrice;
};

// Besides its fields an order has relations: its customer and its lines; data that scripts hang on it while
// they work; and messages for whoever edits it.
class order final
    : public qx::host::fieldObject<order, qx::intrface::relationaccess, qx::intrface::transientdataaccess,
                                   qx::intrface::messagesaccess>
{
public:
    order(int number, const qx::date& day, const qx::refPtr<customer>& buyer)
        : mNumber(number), mDay(day), mBuyer(buyer)
    {}

    void add(const qx::string& article, int quantity, double price)
    {
        mLines.emplace_back(new orderLine(article, quantity, price));
    }
    double total() const
    {
        double sum = 0;
        for (const qx::refPtr<orderLine>& line : mLines)
            sum += line->amount();
        return sum * (100 - mDiscount) / 100;
    }
    double discount() const { return mDiscount; }
    bool setDiscount(double percent)
    {
        if (percent < 0 || percent > 50)
            return false; // the script's obj_set fails
        mDiscount = percent;
        return true;
    }
    const std::map<qx::string, qx::string>& messages() const { return mMessages; }

    static const qx::host::fieldTable<order>& fields()
    {
        static const qx::host::fieldTable<order> table = {
            {L"number", &order::mNumber, L"Number"},
            {L"day", &order::mDay, L"Date"},
            {L"discount", &order::discount, &order::setDiscount, L"Discount in percent"},
            {L"total", &order::total, L"Total"},
            {L"remarks", &order::mRemarks, L"Remarks"}, // an array
        };
        return table;
    }

    // --- Relations ---

    bool hasRelation(const wchar_t* name) override
    {
        return name == qx::string(L"customer") || name == qx::string(L"lines");
    }
    bool getRelation(const wchar_t* name, unknown** out) override
    {
        if (name != qx::string(L"customer"))
            return false;
        qx::host::handOut(mBuyer, out);
        return true;
    }
    bool setRelation(const wchar_t* name, unknown* linked) override
    {
        const qx::refPtr<customer> buyer = qx::host::objectOf<customer>(linked);
        if (name != qx::string(L"customer") || (linked && !buyer))
            return false;
        mBuyer = buyer;
        return true;
    }
    bool getRelations(const wchar_t* name, unknown** out) override
    {
        if (name != qx::string(L"lines"))
            return false;
        qx::host::handOut(qx::host::iterate(mLines), out);
        return true;
    }

    // --- Transient data ---

    bool hasTransientData(const wchar_t* name) override { return mTransient.contains(name); }
    bool setTransientData(const wchar_t* name, unknown* data) override
    {
        mTransient.erase(name);
        if (data)
            mTransient.emplace(name, qx::host::reference::share(data));
        return true;
    }
    bool getTransientData(const wchar_t* name, unknown** out) override
    {
        const auto found = mTransient.find(name);
        if (found == mTransient.end())
            return false;
        qx::host::handOut(found->second, out);
        return true;
    }

    // --- Messages ---

    bool addMessage(const wchar_t* id, int severity, const qx::locString& message) override
    {
        static const wchar_t* const kinds[] = {L"Note", L"Warning", L"Error"};
        mMessages[id] = qx::string::sformat(L"%s: %s", kinds[severity], message.text());
        return true;
    }
    bool removeMessage(const wchar_t* id) override { return mMessages.erase(id) != 0; }

private:
    using unknown = qx::intrface::unknown;

    int mNumber;
    qx::date mDay;
    double mDiscount = 0;
    qx::refPtr<customer> mBuyer;
    std::vector<qx::refPtr<orderLine>> mLines;
    std::vector<qx::string> mRemarks = {L"by courier", L"no weekend"};
    std::map<qx::string, qx::host::reference> mTransient;
    std::map<qx::string, qx::string> mMessages;
};
