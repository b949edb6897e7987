// Contexts: who sees which name, who writes it, and what blocks forward to the root.
#include "assertRecorder.h"
#include "host.h"
#include "valueText.h"

#include <gtest/gtest.h>

namespace
{

const qx::scString a = nameOf(L"a");
const qx::scString g = nameOf(L"g");
const qx::scString p = nameOf(L"p");

std::string variableText(codecontext& context, const qx::scString& name)
{
    const qx::sharedPtr<qx::genericValue> address = context.variableAddress(name);
    return address ? valueText(*address) : "absent";
}

const texts globalsAreSet = {L"scriptcontext::setGlobalVariables: mpGlobalVariables is NULL"};

} // namespace

TEST(context, look_up_goes_from_the_inner_locals_to_parameters_and_globals)
{
    scriptcontext root;
    codecontext outer(&root);
    root.setGlobalContextVariable(a, textValue(L"global"));
    root.setParameter(a, textValue(L"parameter"));
    {
        codecontext inner(&outer);
        EXPECT_FALSE(inner.createVariable(a, textValue(L"local"))); // visible already
        EXPECT_EQ(variableText(inner, a), "string \"parameter\"");
        root.deleteParameter(a);
        EXPECT_FALSE(inner.createVariable(a, textValue(L"local")));
        EXPECT_EQ(variableText(inner, a), "string \"global\"");

        EXPECT_TRUE(outer.createVariable(p, qx::genericValue())); // the name counts, not the value
        EXPECT_FALSE(inner.createVariable(p, textValue(L"second")));
        EXPECT_TRUE(inner.createVariable(g, textValue(L"local")));
        root.setParameter(p, textValue(L"parameter"));
        EXPECT_EQ(variableText(inner, p), "null");
        EXPECT_EQ(variableText(root, p), "string \"parameter\"");
    }
    EXPECT_FALSE(outer.hasVariable(g));
    EXPECT_FALSE(outer.hasVariable(nameOf(L"A")));
}

TEST(context, set_variable_writes_the_innermost_local_and_nothing_else)
{
    scriptcontext root;
    codecontext block(&root);
    root.createVariable(a, textValue(L"before"));
    const qx::sharedPtr<qx::genericValue> address = root.variableAddress(a);
    EXPECT_TRUE(block.setVariable(a, qx::genericValue(5)));
    EXPECT_EQ(valueText(*address), "int 5"); // the same storage, with the new type

    root.setParameter(p, textValue(L"parameter"));
    root.setGlobalContextVariable(g, textValue(L"global"));
    for (const qx::scString& name : {p, g, nameOf(L"nobody")})
        EXPECT_FALSE(block.setVariable(name, textValue(L"new")));
}

TEST(context, missing_names_are_told_by_kind)
{
    scriptcontext root;
    codecontext block(&root);
    const auto expectMissing = [](auto& context) { // const and not
        EXPECT_EQ(failureOf([&] { (void)context.variable(a); }), texts{L"Variable \"a\" not found"});
        EXPECT_EQ(failureOf([&] { (void)context.parameter(a); }), texts{L"Parameter \"a\" not found"});
        EXPECT_EQ(failureOf([&] { (void)context.globalContextVariable(a); }),
                  texts{L"Global variable \"a\" not found"});
        EXPECT_FALSE(context.hasVariable(a) || context.hasParameter(a) ||
                     context.hasGlobalContextVariable(a));
    };
    for (codecontext* context : {static_cast<codecontext*>(&root), &block}) {
        expectMissing(*context);
        expectMissing(std::as_const(*context));
        EXPECT_FALSE(context->scriptSignal(a));
        EXPECT_TRUE(context->deleteParameter(a));
        context->clearScriptSignal(a);
    }
}

TEST(context, blocks_forward_what_concerns_the_call)
{
    scriptcontext root;
    codecontext outer(&root);
    codecontext block(&outer);
    EXPECT_TRUE(block.setParameter(p, textValue(L"1")));
    EXPECT_TRUE(block.setGlobalContextVariable(g, textValue(L"1")));
    EXPECT_TRUE(block.hasParameter(p) && block.hasGlobalContextVariable(g));
    // Addresses are the storage and see later writes.
    const auto parameter = root.parameterAddress(p);
    const auto global = root.globalContextVariableAddress(g);
    EXPECT_EQ(parameter.get(), &block.parameter(p));
    EXPECT_EQ(global.get(), &block.globalContextVariable(g));
    root.setParameter(p, qx::genericValue(2));
    root.setGlobalContextVariable(g, qx::genericValue(2));
    EXPECT_EQ(valueText(*global), "int 2");
    EXPECT_TRUE(block.deleteParameter(p));
    EXPECT_FALSE(root.hasParameter(p));
    EXPECT_EQ(valueText(*parameter), "int 2"); // held on

    EXPECT_TRUE(block.setScriptSignal(a, qx::genericValue()));
    ASSERT_TRUE(root.scriptSignal(a)); // raised, although its value is null
    EXPECT_TRUE(root.setScriptSignal(a, qx::genericValue(3)));
    EXPECT_EQ(valueText(*block.scriptSignal(a)), "int 3");
    block.clearScriptSignal(a);
    EXPECT_FALSE(root.scriptSignal(a));
}

TEST(context, context_shares_globals)
{
    scriptcontext caller;
    {
        scriptcontext early;
        caller.initScriptContext(early); // there is no set yet to hand over
        EXPECT_FALSE(early.setGlobalContextVariable(g, textValue(L"1")));
        EXPECT_TRUE(caller.setGlobalContextVariable(g, textValue(L"1")));
        EXPECT_FALSE(early.hasGlobalContextVariable(g));
        caller.initScriptContext(early);
        EXPECT_TRUE(early.hasGlobalContextVariable(g));

        codecontext block(&caller);
        scriptcontext callee;
        block.initScriptContext(callee);
        EXPECT_EQ(&callee.globalContextVariable(g), &caller.globalContextVariable(g));
        callee.setGlobalContextVariable(a, textValue(L"made"));
        EXPECT_EQ(failureOf([&] { block.initScriptContext(callee); }), globalsAreSet);
    }
    EXPECT_EQ(variableText(caller, a), "string \"made\""); // outlives the borrower

    scriptcontext owner;
    owner.setGlobalContextVariable(g, textValue(L"own"));
    EXPECT_EQ(failureOf([&] { caller.initScriptContext(owner); }), globalsAreSet);
    EXPECT_EQ(variableText(owner, g), "string \"own\"");
}

TEST(context, block_without_an_outer_one_is_refused)
{
    const assertRecorder recorder;
    EXPECT_EQ(failureOf([] { codecontext block(nullptr); }), texts{L"false"});
    EXPECT_EQ(recorder.take(),
              texts{L"Assertion failed:\nmpOuterBlock!=NULL\n\nFile: libs/script/inc/qxScript\nLine: 32"});
}

TEST(context, variable_that_is_made_when_it_is_asked_for_lasts_while_it_is_read)
{
    class makingContext final : public scriptcontext
    {
    public:
        qx::sharedPtr<qx::genericValue> parameterAddress(const qx::scString& name) override
        {
            if (name != p && name != nameOf(L"localscriptbasepath"))
                return scriptcontext::parameterAddress(name);
            return qx::sharedPtr<qx::genericValue>(new qx::genericValue(textValue(L"made for this look-up")));
        }
    };
    makingContext root;
    root.setGlobalContextVariable(nameOf(L"scriptbasepath"), textValue(L""));
    qx::genericValue result;
    parsed(L"strcat(p, p)")->exec(root, result);
    EXPECT_EQ(valueText(result), "string \"made for this look-upmade for this look-up\"");
    EXPECT_EQ(failureOf([&] { parsed(L"callfunction($no such file$f)")->exec(root, result); }).size(), 2u);
}

TEST(context, derived_root_answers_the_look_ups_of_its_blocks)
{
    class suppliedContext final : public scriptcontext // supplies names of its own
    {
    public:
        qx::sharedPtr<qx::genericValue> parameterAddress(const qx::scString& name) override
        {
            return name == p ? mSupplied : scriptcontext::parameterAddress(name);
        }
        qx::sharedPtr<qx::genericValue> globalContextVariableAddress(const qx::scString& name) override
        {
            return name == g ? mSupplied : scriptcontext::globalContextVariableAddress(name);
        }
        bool hasVariable(const qx::scString& name) const override
        {
            return name == a || scriptcontext::hasVariable(name);
        }

    private:
        qx::sharedPtr<qx::genericValue> mSupplied{new qx::genericValue(textValue(L"supplied"))};
    };
    suppliedContext root;
    codecontext block(&root);
    for (const qx::scString& name : {p, g}) {
        EXPECT_EQ(variableText(block, name), "string \"supplied\"");
        EXPECT_TRUE(block.hasVariable(name));
    }
    EXPECT_TRUE(root.hasParameter(p));
    EXPECT_TRUE(block.hasGlobalContextVariable(g));
    EXPECT_FALSE(root.createVariable(a, textValue(L"1"))); // by its own word it has the name
    qx::genericValue result;
    parsed(L"{ setvar(p, \"written\"); return(g); }")->exec(root, result);
    EXPECT_EQ(valueText(result), "string \"written\"");
}
