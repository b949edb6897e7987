// Contexts: look-up of variables, and what the root of a call keeps.
#include "qxScriptContext.h"

#include "contexts/qxScriptScope.h"
#include "qxScriptException.h"

namespace qx::script
{

namespace
{

// Made when the library is loaded: each parameter that is set is compared with it.
const scString returnedName = scString::createFrom(L"#return#");

} // namespace

// --- scope ---

scriptcontext* scope::findPlainRoot(codecontext& context) noexcept
{
    if (typeid(context) == typeid(scriptcontext))
        context.mpPlainRoot = static_cast<scriptcontext*>(&context);
    else if (typeid(context) == typeid(codecontext) || typeid(context) == typeid(blockcontext))
        context.mpPlainRoot = plainRoot(*context.mpOuterBlock);
    return context.mpPlainRoot;
}

genericSet::entry* scope::variableIndexed(codecontext& context, scriptcontext& root,
                                          const scString& name) noexcept
{
    for (codecontext* block = &context; block; block = block->mpOuterBlock)
        if (genericSet::entry* const local = block->mVariables.find(name))
            return local;
    if (genericSet::entry* const given = root.mParameters.find(name))
        return given;
    return global(root, name);
}

genericSet::entry* scope::globalIndexed(scriptcontext& root, const scString& name) noexcept
{
    return root.mpGlobalVariables->find(name);
}

sharedPtr<genericValue> requireVariable(codecontext& context, const scString& name)
{
    sharedPtr<genericValue> address = context.variableAddress(name);
    if (!address)
        throw variableNotFoundException(name.c_str());
    return address;
}

// --- codecontext ---

codecontext::codecontext(codecontext* outer) : mpOuterBlock(outer)
{
    if (!outer)
        assertionFailed(L"mpOuterBlock!=NULL", L"libs/script/inc/qxScript", 32);
}

codecontext::~codecontext() = default;

bool codecontext::hasVariable(const scString& name) const
{
    auto& self = const_cast<codecontext&>(*this);
    if (scriptcontext* const root = scope::plainRoot(self))
        return scope::variable(self, *root, name) != nullptr;
    return static_cast<bool>(self.variableAddress(name));
}

bool codecontext::createVariable(const scString& name, const genericValue& value)
{
    return !hasVariable(name) && mVariables.setGenericValue(name, value, true);
}

bool codecontext::setVariable(const scString& name, const genericValue& value)
{
    for (codecontext* block = this; block; block = block->mpOuterBlock)
        if (block->mVariables.find(name))
            return block->mVariables.setGenericValue(name, value, true);
    return false;
}

genericValue& codecontext::variable(const scString& name)
{
    return *requireVariable(*this, name);
}

const genericValue& codecontext::variable(const scString& name) const
{
    return const_cast<codecontext*>(this)->variable(name);
}

sharedPtr<genericValue> codecontext::variableAddress(const scString& name)
{
    if (scriptcontext* const root = scope::plainRoot(*this)) {
        genericSet::entry* const found = scope::variable(*this, *root, name);
        return found ? found->address() : sharedPtr<genericValue>();
    }
    if (sharedPtr<genericValue> local = mVariables.genericValue(name))
        return local;
    if (mpOuterBlock) {
        if (sharedPtr<genericValue> outer = mpOuterBlock->variableAddress(name))
            return outer;
    }
    if (sharedPtr<genericValue> parameter = parameterAddress(name))
        return parameter;
    return globalContextVariableAddress(name);
}

void codecontext::initScriptContext(scriptcontext& callee)
{
    callee.setGlobalVariables(getGlobalContextVariables());
}

// What a plain block forwards to its root.

bool codecontext::hasGlobalContextVariable(const scString& name) const
{
    return mpOuterBlock && mpOuterBlock->hasGlobalContextVariable(name);
}

bool codecontext::setGlobalContextVariable(const scString& name, const genericValue& value)
{
    if (!mpOuterBlock)
        throw false;
    return mpOuterBlock->setGlobalContextVariable(name, value);
}

genericValue& codecontext::globalContextVariable(const scString& name)
{
    if (!mpOuterBlock)
        throw globalVarNotFoundException(name.c_str());
    return mpOuterBlock->globalContextVariable(name);
}

const genericValue& codecontext::globalContextVariable(const scString& name) const
{
    if (!mpOuterBlock)
        throw globalVarNotFoundException(name.c_str());
    return static_cast<const codecontext*>(mpOuterBlock)->globalContextVariable(name);
}

sharedPtr<genericValue> codecontext::globalContextVariableAddress(const scString& name)
{
    return mpOuterBlock ? mpOuterBlock->globalContextVariableAddress(name) : sharedPtr<genericValue>();
}

bool codecontext::hasParameter(const scString& name) const
{
    return mpOuterBlock && mpOuterBlock->hasParameter(name);
}

bool codecontext::setParameter(const scString& name, const genericValue& value)
{
    if (!mpOuterBlock)
        throw false;
    return mpOuterBlock->setParameter(name, value);
}

bool codecontext::deleteParameter(const scString& name)
{
    if (!mpOuterBlock)
        throw false;
    return mpOuterBlock->deleteParameter(name);
}

genericValue& codecontext::parameter(const scString& name)
{
    if (!mpOuterBlock)
        throw parameterNotFoundException(name.c_str());
    return mpOuterBlock->parameter(name);
}

const genericValue& codecontext::parameter(const scString& name) const
{
    if (!mpOuterBlock)
        throw parameterNotFoundException(name.c_str());
    return static_cast<const codecontext*>(mpOuterBlock)->parameter(name);
}

sharedPtr<genericValue> codecontext::parameterAddress(const scString& name)
{
    return mpOuterBlock ? mpOuterBlock->parameterAddress(name) : sharedPtr<genericValue>();
}

bool codecontext::setScriptSignal(const scString& name, const genericValue& value)
{
    return mpOuterBlock && mpOuterBlock->setScriptSignal(name, value);
}

sharedPtr<genericValue> codecontext::scriptSignal(const scString& name)
{
    return mpOuterBlock ? mpOuterBlock->scriptSignal(name) : sharedPtr<genericValue>();
}

void codecontext::clearScriptSignal(const scString& name)
{
    if (mpOuterBlock)
        mpOuterBlock->clearScriptSignal(name);
}

genericSet* codecontext::getGlobalContextVariables()
{
    if (!mpOuterBlock)
        throw false;
    return mpOuterBlock->getGlobalContextVariables();
}

// --- scriptcontext ---

scriptcontext::scriptcontext() : codecontext(rootTag()) {}

scriptcontext::~scriptcontext()
{
    if (mOwnsGlobalVariables)
        delete mpGlobalVariables;
}

const scString& scriptcontext::returnparam()
{
    return returnedName;
}

bool scriptcontext::hasGlobalContextVariable(const scString& name) const
{
    return static_cast<bool>(const_cast<scriptcontext*>(this)->globalContextVariableAddress(name));
}

bool scriptcontext::setGlobalContextVariable(const scString& name, const genericValue& value)
{
    if (!mpGlobalVariables) {
        if (!mOwnsGlobalVariables)
            return false;
        mpGlobalVariables = new genericSet;
    }
    return mpGlobalVariables->setGenericValue(name, value, true);
}

genericValue& scriptcontext::globalContextVariable(const scString& name)
{
    const sharedPtr<genericValue> stored = scriptcontext::globalContextVariableAddress(name);
    if (!stored)
        throw globalVarNotFoundException(name.c_str());
    return *stored;
}

const genericValue& scriptcontext::globalContextVariable(const scString& name) const
{
    return const_cast<scriptcontext*>(this)->globalContextVariable(name);
}

sharedPtr<genericValue> scriptcontext::globalContextVariableAddress(const scString& name)
{
    return mpGlobalVariables ? mpGlobalVariables->genericValue(name) : sharedPtr<genericValue>();
}

bool scriptcontext::hasParameter(const scString& name) const
{
    return static_cast<bool>(const_cast<scriptcontext*>(this)->parameterAddress(name));
}

bool scriptcontext::setParameter(const scString& name, const genericValue& value)
{
    mParameters.setGenericValue(name, value, true);
    if (name == returnedName)
        markPending(raised::returned, true);
    return true;
}

bool scriptcontext::deleteParameter(const scString& name)
{
    mParameters.erase(name);
    if (name == returnedName)
        markPending(raised::returned, false);
    return true;
}

genericValue& scriptcontext::parameter(const scString& name)
{
    const sharedPtr<genericValue> stored = mParameters.genericValue(name);
    if (!stored)
        throw parameterNotFoundException(name.c_str());
    return *stored;
}

const genericValue& scriptcontext::parameter(const scString& name) const
{
    return const_cast<scriptcontext*>(this)->parameter(name);
}

sharedPtr<genericValue> scriptcontext::parameterAddress(const scString& name)
{
    return mParameters.genericValue(name);
}

bool scriptcontext::setScriptSignal(const scString& name, const genericValue& value)
{
    mSignals.setGenericValue(name, value, false);
    markPending(signalOf(name), true);
    return true;
}

sharedPtr<genericValue> scriptcontext::scriptSignal(const scString& name)
{
    return mSignals.genericValue(name);
}

void scriptcontext::clearScriptSignal(const scString& name)
{
    mSignals.erase(name);
    markPending(signalOf(name), false);
}

void scriptcontext::markPending(raised what, bool stands) noexcept
{
    if (what == raised::nothing)
        return;
    const unsigned bit = scope::bitOf(what);
    mPending = static_cast<unsigned char>(stands ? mPending | bit : mPending & ~bit);
}

genericSet* scriptcontext::getGlobalContextVariables()
{
    return mpGlobalVariables;
}

void scriptcontext::setGlobalVariables(genericSet* shared)
{
    // REQUIRED: the text says NULL where it means the opposite. Held by contextSharesGlobals.
    if (mpGlobalVariables)
        throw unexpectedErrorException(L"scriptcontext::setGlobalVariables: mpGlobalVariables is NULL");
    mpGlobalVariables = shared;
    mOwnsGlobalVariables = false;
}

} // namespace qx::script
