// A host that calls scripts often: a function named once, and a tree parsed once.
#include <qxScript>

#include <cstdio>
#include <vector>

namespace
{

using qx::script::scriptcontext;
using qx::script::statement;

void print(const qx::genericValue& value)
{
    qx::string text;
    if (value.getValue(text))
        std::puts(text.utf8().c_str());
}

void greetAll()
{
    const qx::script::resolvedCall greet(L"scripts", L"script$greetings$greet");
    for (const wchar_t* name : {L"Ada", L"Grace"}) {
        scriptcontext own;
        std::vector<qx::genericValue> guest{qx::genericValue(qx::string(name))};
        qx::genericValue greeting;
        greet.execute(own, guest, greeting);
        print(greeting); // Hello, Ada!
    }
}

void add()
{
    const qx::autoPtr<statement> sum(statement::createFrom(L"add<int>(a, b)", 0));
    for (const int number : {1, 2}) {
        scriptcontext numbers;
        numbers.setParameter(qx::scString::createFrom(L"a"), qx::genericValue(40));
        numbers.setParameter(qx::scString::createFrom(L"b"), qx::genericValue(number));
        qx::genericValue total;
        sum->exec(numbers, total);
        print(total); // 41, 42
    }
}

// What a script says by throwmessage comes out of its tree as a text of its own.
void refuse()
{
    const qx::autoPtr<statement> refusal(statement::createFrom(L"throwmessage(\"not today\")", 0));
    try {
        scriptcontext context;
        refusal->exec(context);
    } catch (const qx::string& text) {
        std::puts(text.utf8().c_str()); // not today
    }
}

} // namespace

int main()
{
    try {
        greetAll();
        add();
        refuse();
    } catch (const qx::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}
