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

} // namespace

TEST(context, look_up_goes_from_the_inner_locals_to_parameters_and_globals)
{
    scriptcontext root;
    codecontext outer(&root);
    codecontext inner(&outer);
    root.setGlobalContextVariable(a, textValue(L"global"));
    EXPECT_EQ(variableText(inner, a), "string \"global\"");
    root.setParameter(a, textValue(L"parameter"));
    EXPECT_EQ(variableText(inner, a), "string \"parameter\"");
    EXPECT_FALSE(root.createVariable(a, textValue(L"local"))); // visible already
    root.deleteParameter(a);
    EXPECT_FALSE(inner.createVariable(a, textValue(L"local")));
    EXPECT_EQ(variableText(inner, a), "string \"global\"");

    EXPECT_TRUE(outer.createVariable(p, textValue(L"local")));
    root.setParameter(p, textValue(L"parameter"));
    EXPECT_EQ(variableText(inner, p), "string \"local\"");
    EXPECT_EQ(variableText(root, p), "string \"parameter\"");
}

TEST(context, created_variables_belong_to_their_block_and_are_not_shadowed)
{
    scriptcontext root;
    {
        codecontext block(&root);
        EXPECT_TRUE(block.createVariable(a, textValue(L"first")));
        EXPECT_FALSE(block.createVariable(a, textValue(L"second")));
        codecontext inner(&block);
        EXPECT_FALSE(inner.createVariable(a, textValue(L"third")));
        EXPECT_EQ(valueText(inner.variable(a)), "string \"first\"");
        EXPECT_FALSE(root.hasVariable(a));
    }
    EXPECT_TRUE(root.createVariable(a, qx::genericValue()));
    EXPECT_TRUE(root.hasVariable(a)); // the name counts, not the value
    EXPECT_FALSE(root.hasVariable(nameOf(L"A")));
}

TEST(context, setVariable_writes_the_innermost_local_and_nothing_else)
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
    for (codecontext* context : {static_cast<codecontext*>(&root), &block}) {
        const codecontext& reading = *context;
        EXPECT_EQ(failureOf([&] { context->variable(a); }), texts{L"Variable \"a\" not found"});
        EXPECT_EQ(failureOf([&] { (void)reading.variable(a); }), texts{L"Variable \"a\" not found"});
        EXPECT_EQ(failureOf([&] { context->parameter(a); }), texts{L"Parameter \"a\" not found"});
        EXPECT_EQ(failureOf([&] { (void)reading.parameter(a); }), texts{L"Parameter \"a\" not found"});
        EXPECT_EQ(failureOf([&] { context->globalContextVariable(a); }),
                  texts{L"Global variable \"a\" not found"});
        EXPECT_EQ(failureOf([&] { (void)reading.globalContextVariable(a); }),
                  texts{L"Global variable \"a\" not found"});
        EXPECT_FALSE(context->variableAddress(a));
        EXPECT_FALSE(context->parameterAddress(a));
        EXPECT_FALSE(context->globalContextVariableAddress(a));
        EXPECT_FALSE(context->scriptSignal(a));
        EXPECT_FALSE(reading.hasVariable(a) || reading.hasParameter(a) ||
                     reading.hasGlobalContextVariable(a));
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
    EXPECT_EQ(root.parameterAddress(p).get(), &block.parameter(p));
    EXPECT_TRUE(block.hasParameter(p));
    EXPECT_TRUE(block.deleteParameter(p));
    EXPECT_FALSE(root.hasParameter(p));

    EXPECT_TRUE(block.setGlobalContextVariable(g, textValue(L"1")));
    EXPECT_TRUE(block.hasGlobalContextVariable(g));
    EXPECT_EQ(root.globalContextVariableAddress(g).get(), &block.globalContextVariable(g));

    EXPECT_TRUE(block.setScriptSignal(a, qx::genericValue()));
    ASSERT_TRUE(root.scriptSignal(a)); // raised, although its value is null
    EXPECT_TRUE(root.scriptSignal(a)->isNull());
    EXPECT_TRUE(root.setScriptSignal(a, qx::genericValue(3)));
    EXPECT_EQ(valueText(*block.scriptSignal(a)), "int 3");
    block.clearScriptSignal(a);
    EXPECT_FALSE(root.scriptSignal(a));
}

TEST(context, addresses_are_the_storage_and_see_later_writes)
{
    scriptcontext root;
    root.setParameter(p, textValue(L"1"));
    root.setGlobalContextVariable(g, textValue(L"1"));
    const auto parameter = root.parameterAddress(p);
    const auto global = root.globalContextVariableAddress(g);
    root.setParameter(p, qx::genericValue(2));
    root.setGlobalContextVariable(g, qx::genericValue(2));
    EXPECT_EQ(valueText(*parameter), "int 2");
    EXPECT_EQ(valueText(*global), "int 2");
    root.deleteParameter(p);
    EXPECT_EQ(valueText(*parameter), "int 2"); // held on
}

TEST(context, contextSharesGlobals)
{
    scriptcontext caller;
    caller.setGlobalContextVariable(g, textValue(L"1"));
    {
        codecontext block(&caller);
        scriptcontext callee;
        block.initScriptContext(callee);
        EXPECT_EQ(&callee.globalContextVariable(g), &caller.globalContextVariable(g));
        callee.setGlobalContextVariable(a, textValue(L"made"));
        EXPECT_EQ(failureOf([&] { block.initScriptContext(callee); }),
                  texts{L"scriptcontext::setGlobalVariables: mpGlobalVariables is NULL"});
    }
    EXPECT_EQ(variableText(caller, a), "string \"made\""); // outlives the borrower

    scriptcontext owner;
    owner.setGlobalContextVariable(g, textValue(L"own"));
    EXPECT_EQ(failureOf([&] { caller.initScriptContext(owner); }),
              texts{L"scriptcontext::setGlobalVariables: mpGlobalVariables is NULL"});
    EXPECT_EQ(valueText(owner.globalContextVariable(g)), "string \"own\"");
}

TEST(context, borrower_of_no_globals_makes_none)
{
    scriptcontext caller;
    scriptcontext callee;
    caller.initScriptContext(callee);
    EXPECT_FALSE(callee.setGlobalContextVariable(g, textValue(L"1")));
    EXPECT_FALSE(callee.hasGlobalContextVariable(g));
    EXPECT_TRUE(caller.setGlobalContextVariable(g, textValue(L"1")));
    EXPECT_FALSE(callee.hasGlobalContextVariable(g)); // it was handed no set
    caller.initScriptContext(callee);
    EXPECT_TRUE(callee.hasGlobalContextVariable(g));
}

TEST(context, block_without_an_outer_one_is_refused)
{
    const assertRecorder recorder;
    EXPECT_EQ(failureOf([] { codecontext block(nullptr); }), texts{L"false"});
    EXPECT_EQ(recorder.take(),
              texts{L"Assertion failed:\nmpOuterBlock!=NULL\n\nFile: libs/script/inc/qxScript\nLine: 32"});
}

TEST(context, used_again_still_holds_what_was_returned)
{
    EXPECT_EQ(scriptcontext::returnparam().string(), L"#return#");
    scriptcontext context;
    qx::genericValue result;
    parsed(L"return(\"first\")")->exec(context, result);
    const ownedStatement block = parsed(L"{ createglobalvar(g, \"1\"); createglobalvar(a, \"1\"); }");
    block->exec(context, result);
    EXPECT_EQ(valueText(result), "string \"first\"");
    EXPECT_TRUE(context.hasVariable(g));
    EXPECT_FALSE(context.hasVariable(a)); // stopped after its first statement
    context.deleteParameter(scriptcontext::returnparam());
    block->exec(context, result);
    EXPECT_TRUE(context.hasVariable(a));
}

namespace
{

// A host's root that supplies names of its own.
class suppliedContext final : public scriptcontext
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

} // namespace

TEST(context, derived_root_answers_the_look_ups_of_its_blocks)
{
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
