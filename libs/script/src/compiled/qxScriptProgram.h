// The compiled form of a function: its operations, and how it is run.
#pragma once

#include "compiled/qxScriptArena.h"
#include "compiled/qxScriptOperation.h"

#include <memory>
#include <vector>

namespace qx::script
{

class program
{
public:
    // Null for a body that has to be left a tree, and for one with a statement that would be handed over.
    // `body` is borrowed.
    static std::unique_ptr<const program> compile(const statement& body, std::vector<scString> parameters);

    program(const program&) = delete;
    program& operator=(const program&) = delete;

    // Runs the body as inside::exec does, in a root that was bare before the parameters were put into it.
    // `isHosts` for a root that a host has given.
    void run(scriptcontext& root, bool isHosts) const;

    // Runs the operations of the function whose cells are in force in `f`. False where it was left.
    bool runIn(frame& f) const;

    const statement& body() const noexcept { return mBody; }
    // The names of the first cells.
    std::span<const scString> parameters() const noexcept { return std::span(mNames).first(mParameterCount); }
    const scString& nameOf(unsigned cell) const noexcept { return mNames[cell]; }
    unsigned cellCount() const noexcept { return static_cast<unsigned>(mNames.size()); }

private:
    explicit program(const statement& body) : mBody(body) {}

    const statement& mBody;
    arena mArena;
    std::vector<scString> mNames;
    std::size_t mParameterCount = 0;
    const operation* mpFirst = nullptr; // null where the body does nothing
};

} // namespace qx::script
