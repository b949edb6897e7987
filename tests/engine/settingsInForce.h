// Switches of the engine, set for the length of a scope.
#pragma once

#include <qxScriptSettings.h>

template <bool (*Get)() noexcept, void (*Set)(bool) noexcept>
class switchSet
{
public:
    explicit switchSet(bool on) : mBefore(Get()) { Set(on); }
    switchSet(const switchSet&) = delete;
    switchSet& operator=(const switchSet&) = delete;
    ~switchSet() { Set(mBefore); }

private:
    bool mBefore;
};

using shortCutsSet = switchSet<qx::script::settings::shortCuts, qx::script::settings::setShortCuts>;
using compiledSet = switchSet<qx::script::settings::compiled, qx::script::settings::setCompiled>;
using strictFileCheckSet =
    switchSet<qx::script::settings::strictFileCheck, qx::script::settings::setStrictFileCheck>;
