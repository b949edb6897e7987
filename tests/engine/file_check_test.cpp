// A call between scripts does not look at its file again within one tick of the clock, unless anything but
// the engine has run on the thread or what others wrote has been read. Each row stands between two calls of a
// function whose file changes within the tick: by what runs outside of the engine in the row, or else by
// somebody else, just before the second call.
#include "host.h"
#include "hostObject.h"
#include "recordingObject.h"
#include "scriptSupport.h"
#include "settingsInForce.h"
#include "support/expectations.h"

#include <gtest/gtest.h>

namespace
{

using qx::genericValue;
using qx::string;

// A machine where time stands still, and two files: `f` of the one tells in the global `seen` which version
// of it has run, `g` of the other calls that, always by the same statement. The first call loads `f`, the
// second remembers it; from then on its file changes.
class changingFile final : public fakeSystem
{
public:
    // Somebody else changes the file before call `changed` of `g`, unless it has been changed by then.
    explicit changingFile(int changed) : mTickOfChange(2 * changed - 1)
    {
        change();
        directory.write(mName + "g.qxscr", "scrdef g(){ return(callfunction($" + mName + "$f)); }");
    }

    void changeFromOutside()
    {
        if (mTicks >= 4)
            change();
    }
    // Asked for when `g` is called and when that calls `f`.
    qx::uint64 tick() override
    {
        if (++mTicks == mTickOfChange && mVersion == 1)
            change();
        mCalled = mVersion;
        return 0;
    }
    bool status(const string& name, qx::fileStatus& found) override
    {
        if (name.ends_with(L".ini"))
            changeFromOutside();
        return platformSystem::status(name, found);
    }

    string call() const { return L"callfunction($" + string::fromUtf8(mName) + L"g$g)"; }
    // That of the last call.
    std::string version() const { return std::to_string(mCalled); }
    const scratchDirectory directory;

private:
    void change()
    {
        const std::string number = std::to_string(++mVersion);
        directory.write(mName + ".qxscr",
                        "scrdef f(){ createglobalvar(seen, \"" + number + "\"); return(\"1\"); }");
        setAge(directory, mName + ".qxscr", mVersion - 1000);
    }

    const std::string mName = unusedName();
    const int mTickOfChange;
    int mVersion = 0;
    int mCalled = 0;
    int mTicks = 0;
};

// Foreign code of every kind that scripts can reach, all of which changes the file.
class foreignCode
{
public:
    explicit foreignCode(changingFile& file)
        : mFile(file), mModule([this](const moduleCall& call) { return made(call); })
    {
        mCurrent = this;
        mObject.hasIt = false;
        mObject.whenAsked = mElement.whenAsked = mLast.whenAsked =
            mIterator.whenAsked = [this] { mFile.changeFromOutside(); };
        qx::typeconvert::typeConversionManager::instance().add(&mConverter);
        qx::locString::setLanguage(L"xx");
    }
    foreignCode(const foreignCode&) = delete;
    foreignCode& operator=(const foreignCode&) = delete;
    ~foreignCode()
    {
        qx::locString::setLanguage(L"");
        qx::typeconvert::typeConversionManager::instance().remove(&mConverter);
        mCurrent = nullptr;
    }

    // Makes the variables that the rows use.
    void fill(scriptcontext& context)
    {
        context.createVariable(nameOf(L"o"), mObject.value());
        context.createVariable(nameOf(L"it"), mIterator.value());
        mLast.references = 0;
        context.createVariable(nameOf(L"last"), mLast.value());
        context.createVariable(nameOf(L"loc"), genericValue(qx::locString(L"id")));
        context.setParameter(nameOf(L"sparameter"), textValue(L"1"));
        for (const wchar_t* text :
             {L"createvar(own, \"1\")", L"createvar(target, \"1\")", L"createvar(shared, \"1\")",
              L"createvar(snull)", L"createvar(ref, getvarptr<int>(target))",
              L"createvar(list, createarray())", L"createvar(refs, list)", L"addtoarray(refs, ref)",
              L"addtoarray(list, \"1\")", L"createvar(slist, list)", L"createglobalvar(sglobal, \"1\")"})
            parsed(text)->exec(context);
        for (const wchar_t* name : {L"shared", L"snull", L"slist", L"sparameter", L"sglobal"})
            mAddresses.push_back(context.variableAddress(nameOf(name)));
    }

private:
    statement* made(const moduleCall& call)
    {
        if (call.name == L"keepreturned") {
            std::shared_ptr<qx::script::valueProvider> returning(
                qx::script::valueProvider::createFrom(call.params[0], call.flags));
            return new hostStatement([this, returning](codecontext& context, genericValue& result) {
                returning->getValue(context, result);
                mAddresses.push_back(context.parameterAddress(scriptcontext::returnparam()));
            });
        }
        if (call.name == L"host")
            return new hostStatement([this](auto&, auto&) { mFile.changeFromOutside(); });
        if (call.name == L"sqrt") // the module has been asked, but knows no such statement
            mFile.changeFromOutside();
        return nullptr;
    }
    static bool firstElement(void* to, const void* from, int, char*)
    {
        mCurrent->mFile.changeFromOutside();
        return static_cast<const qx::valueArray*>(from)->front().getValue(*static_cast<int*>(to));
    }

    inline static foreignCode* mCurrent = nullptr;
    changingFile& mFile;
    hostModule mModule;
    qx::typeconvert::typeConverter<qx::valueArray, int> mConverter{firstElement};
    recordingObject mObject;
    hostObject<unknown> mElement;
    hostObject<unknown> mLast; // whose one reference is that of its variable
    hostIterator mIterator{{&mElement, &mElement}};
    std::vector<qx::sharedPtr<genericValue>> mAddresses;
};

} // namespace

// The end of a tree that a newer one replaces may run scripts, whose calls share its place in the memory of
// the thread.
TEST(fileCheck, what_runs_at_the_end_of_an_old_tree_changes_no_call)
{
    const scratchDirectory directory;
    const std::string name = unusedName();
    const auto write = [&](int age) {
        std::string text = "scrdef first(){ attheend(); return(\"first\"); }\n";
        for (int i = 0; i < 600; ++i)
            text += "scrdef f" + std::to_string(i) + "(){ return(\"other\"); }\n";
        directory.write(name + ".qxscr", text);
        setAge(directory, name + ".qxscr", age);
    };
    scriptcontext inner;
    inner.setGlobalContextVariable(nameOf(L"scriptbasepath"), genericValue(directory.name()));
    std::vector<ownedStatement> others; // at least one for each place
    struct atTheEnd
    {
        ~atTheEnd() { work(); }
        std::function<void()> work;
    };
    bool isArmed = false;
    const hostModule host([&](const moduleCall& call) -> statement* {
        if (call.name != L"attheend")
            return nullptr;
        const auto end = std::make_shared<atTheEnd>();
        end->work = [&] {
            for (const ownedStatement& other : others)
                if (isArmed)
                    other->exec(inner);
        };
        return new hostStatement([end](auto&, auto&) {});
    });
    write(-100);
    const ownedStatement call = parsed(L"callfunction($" + string::fromUtf8(name) + L"$first)");
    for (int i = 0; i < 600; ++i)
        others.push_back(parsed(string::sformat(L"callfunction($%s$f%d)", string::fromUtf8(name), i)));
    genericValue result;
    call->exec(inner, result);
    write(-50);
    isArmed = true;
    scriptcontext context;
    context.setGlobalContextVariable(nameOf(L"scriptbasepath"), genericValue(directory.name()));
    call->exec(context, result);
    EXPECT_EQ(valueText(result), "string \"first\"");
    isArmed = false;
    directory.write(name + ".qxscr", "scrdef first(){ return(\"\"); }\n"); // ends the statement of the test
    setAge(directory, name + ".qxscr", -10);
    call->exec(context, result);
}

namespace
{

// What a row gives; the same with short cuts and the long way.
std::string outcomeOf(const string& row, bool shortCuts)
{
    const shortCutsSet inForce(shortCuts);
    std::vector<string> pieces;
    row.splitAt(L"CALL", pieces, false);
    const bool callsItself = pieces.size() > 1;
    changingFile file(2 + std::max(1, static_cast<int>(pieces.size()) - 1));
    foreignCode foreign(file);
    const std::string other = unusedName();
    file.directory.write(other + ".qxscr", "scrdef f(){ sqrt(\"4\"); }");
    string program = L"{ CALL; CALL; " + row + (callsItself ? L"; }" : L"; CALL; }");
    program.replace(L"CALL", file.call()).replace(L"OTHER", string::fromUtf8(other));

    scriptcontext context;
    context.setGlobalContextVariable(nameOf(L"scriptbasepath"), genericValue(file.directory.name()));
    foreign.fill(context);
    const std::string failure = chainText([&] { parsed(program)->exec(context); });
    const std::string seen = valueText(context.variable(nameOf(L"seen")));
    return failure != "nothing thrown"                   ? failure
           : seen == "string \"" + file.version() + "\"" ? "noticed"
                                                         : "serves " + seen;
}

} // namespace

TEST(fileCheck, changes_are_noticed_as_expected)
{
    expectOutcomes("engine/file_check", [](const string& row) {
        const std::string outcome = outcomeOf(row, true);
        EXPECT_EQ(outcomeOf(row, false), outcome) << row.utf8();
        return texts{string::fromUtf8(outcome)};
    });
}
