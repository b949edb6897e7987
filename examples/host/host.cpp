// A console host: orders are real objects of this program, and a script checks them and computes them.
#include "money.h"
#include "order.h"

#include <qxMath.h>
#include <qxPlatformSystem.h>

#include <cstdio>
#include <optional>

using qx::refPtr;

namespace
{

void print(const qx::string& line)
{
    std::puts(line.utf8().c_str());
}

// Between scripts and the machine: this host does not let them end it by a division.
class guardedSystem final : public qx::platformSystem
{
public:
    [[noreturn]] void divisionFault() override { throw qx::unexpectedErrorException(L"division by zero"); }
};

// Statements of the host's own, for all its scripts.
void addStatements()
{
    static qx::script::scriptModule handMade(money::make);
    handMade.registerModule();

    qx::host::addStatement(L"vat", {L"net", L"rate"}, [](double net, std::optional<double> rate) {
        return qx::roundImp(net * rate.value_or(0.2), 2);
    });
}

// Runs a function of scripts/orders.qxscr with the order as its argument, and reads its value.
template <class T>
T run(const wchar_t* function, const refPtr<order>& subject)
{
    qx::script::scriptcontext context; // one for each run
    std::vector<qx::genericValue> arguments{qx::host::valueOf(subject)};
    qx::genericValue result;
    qx::script::codeManager::instance()->executeFunction(L"scripts", qx::string(L"script$orders$") + function,
                                                         context, arguments, result);
    T value{};
    result.getValue(value); // converts; false, with the value untouched, where that is not possible
    return value;
}

void handle(const refPtr<order>& subject)
{
    try {
        print(run<qx::string>(L"title", subject));
        print(L"  discount " + run<qx::string>(L"grant_discount", subject) + L" percent");
        print(L"  total " + run<qx::string>(L"total", subject));
        print(run<bool>(L"check", subject) ? L"  accepted" : L"  refused");
    } catch (const qx::exception& failure) {
        // What went wrong, outermost first: which statement of which statement.
        for (const qx::locString& message : failure.messages())
            print(L"  " + message.text());
    }
    for (const auto& [id, text] : subject->messages())
        print(L"  " + text);
}

void handleOrders()
{
    const refPtr<customer> ada(new customer(L"Ada", 5000));
    const refPtr<customer> bob(new customer(L"Bob", 100));

    const refPtr<order> first(new order(1, qx::date(2024, 3, 9), ada));
    first->add(L"lamp", 10, 89.5);
    first->add(L"bulb", 40, 2.25);
    handle(first);

    const refPtr<order> second(new order(2, qx::date(2024, 3, 10), bob));
    second->add(L"table", 2, 349);
    second->add(L"chair", 0, 59);
    handle(second);

    const refPtr<order> third(new order(3, qx::date(2024, 3, 11), refPtr<customer>()));
    handle(third);
}

} // namespace

int main()
{
    static guardedSystem guarded;
    qx::system::setCurrent(&guarded);
    try {
        addStatements();
        handleOrders();
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    } catch (...) {
        std::fputs("an unexpected failure\n", stderr);
        return 1;
    }
    return 0;
}
