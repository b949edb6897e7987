// What the engine's own statements do besides execute, and how they run each other.
//
// A statement of the engine may offer short cuts: ways past values and look-ups that give exactly what
// `execute` gives, or decline and have had no effect; then `execute` runs. They stand behind one pointer of
// the statement; those of a host's statement do just what `execute` does.
#pragma once

#include "qxCell.h"
#include "qxScriptStatement.h"

namespace qx::script
{

class textScratch;

// What the value of a statement is when it is the body of a function, where that is known: a block has none
// but what it returns, and a `return` ends with what it returns.
enum class ending : unsigned char
{
    any,
    block,
    returned
};

// The short cuts of one class of statements. What a class does not have is left to a default.
struct shortCuts
{
    // The work for a caller that drops the value.
    void (*run)(const statement& self, codecontext& context);
    // `run` in a block that has just been opened for it: a statement that opens one does not need to.
    void (*runInside)(const statement& self, codecontext& fresh);
    // The word of the value that exec would write into a null value, see qxCell.h: `refused` unless that is
    // small and comes about without any effect.
    cell::word (*smallValue)(const statement& self, codecontext& context);
    // The value as text. False, with `text` unusable, where it declines.
    bool (*textValue)(const statement& self, codecontext& context, textScratch& text);
    // The variable itself where the statement would give a copy of it; until something has an effect. Null
    // unless nobody else can reach it.
    const genericValue* (*valueInPlace)(const statement& self, codecontext& context);
    // Told by a constant `ends` of the class.
    ending ends = ending::any;
};

// How the value of a statement is written.
enum class writing : unsigned char
{
    replaces,     // what it is written into
    keepsType,    // of what it is written into
    textReplaces, // the same two with a text
    textKeepsType
};

// The engine's access to a statement.
class inside
{
public:
    // exec between statements of the engine, where nothing else has run in between. Whoever is not sure calls
    // exec.
    static void exec(const statement& run, codecontext& context, genericValue& result);
    static void exec(const statement& run, codecontext& context);
    // exec in a block that has just been opened for it.
    static void execInBlock(const statement& run, codecontext& fresh);

    // How many short cuts lie within each other below a statement; noShortCut if there is none to ask for.
    static unsigned char depth(const statement& asked) noexcept { return asked.mShortCutDepth; }
    static constexpr unsigned char noShortCut = statement::noShortCut;
    // True for a statement whose result keeps the type of the value that it is written into.
    static bool keepsType(const statement& asked) noexcept { return asked.mKeepsType; }
    // True for a statement whose result is a text.
    static bool givesText(const statement& asked) noexcept { return asked.mGivesText; }
    static ending ends(const statement& asked) noexcept { return asked.mpShortCuts->ends; }

    // singlefunction::parse for a call that is being parsed, with names that last for good.
    static void bind(singlefunction& made, const wchar_t* function, const callText& call,
                     std::span<const declaredParameter> declared)
    {
        made.bind(function, call, declared);
    }

    // To be asked only of a statement that has a depth.
    static cell::word smallValue(const statement& asked, codecontext& context)
    {
        return asked.mpShortCuts->smallValue(asked, context);
    }
    static bool textValue(const statement& asked, codecontext& context, textScratch& text)
    {
        return asked.mpShortCuts->textValue(asked, context, text);
    }
    static const genericValue* valueInPlace(const statement& asked, codecontext& context)
    {
        return asked.mpShortCuts->valueInPlace(asked, context);
    }

    // The text of the small value, for statements without a short cut of their own for texts.
    static bool showSmallValue(const statement& self, codecontext& context, textScratch& text);

    // For stayInside and offerShortCuts.
    static void setShortCuts(statement& offering, const shortCuts& offered) noexcept
    {
        offering.mpShortCuts = &offered;
        offering.mStaysInside = true;
    }
    static void setDepth(statement& offering, unsigned operandDepth, writing written) noexcept
    {
        constexpr unsigned deepest = 32;
        offering.mShortCutDepth =
            operandDepth < deepest ? static_cast<unsigned char>(operandDepth + 1) : noShortCut;
        offering.mKeepsType = written == writing::keepsType || written == writing::textKeepsType;
        offering.mGivesText = written == writing::textReplaces || written == writing::textKeepsType;
    }

private:
    friend class statement;

    static bool takeSmall(const statement& run, codecontext& context, genericValue& result, bool isOwn);
    static void execLong(const statement& run, codecontext& context, genericValue& result);
    static bool takeText(const statement& run, codecontext& context, genericValue& result);
    template <class Work>
    static void guarded(const statement& run, const Work& work);
    template <class Work>
    static void watched(const statement& run, const Work& work);
    static void trace(const statement& run, const wchar_t* format);
    [[noreturn]] static void raiseCaught(const statement& run);
};

// The short cuts that a class has.
template <class Statement>
constexpr shortCuts shortCutsOf()
{
    shortCuts made{
        [](const statement& self, codecontext& context) {
            if constexpr (requires(const Statement& s) { s.run(context); })
                static_cast<const Statement&>(self).run(context);
            else {
                genericValue dropped;
                static_cast<const Statement&>(self).execute(context, dropped);
            }
        },
        nullptr,
        [](const statement& self, codecontext& context) {
            if constexpr (requires(const Statement& s) { s.smallValue(context); })
                return static_cast<const Statement&>(self).smallValue(context);
            else
                return cell::refused;
        },
        inside::showSmallValue,
        [](const statement& self, codecontext& context) -> const genericValue* {
            if constexpr (requires(const Statement& s) { s.valueInPlace(context); })
                return static_cast<const Statement&>(self).valueInPlace(context);
            else
                return nullptr;
        },
    };
    made.runInside = made.run;
    if constexpr (requires(const Statement& s, codecontext& fresh) { s.runInside(fresh); })
        made.runInside = [](const statement& self, codecontext& fresh) {
            static_cast<const Statement&>(self).runInside(fresh);
        };
    if constexpr (requires(const Statement& s, codecontext& c, textScratch& text) { s.textValue(c, text); })
        made.textValue = [](const statement& self, codecontext& context, textScratch& text) {
            return static_cast<const Statement&>(self).textValue(context, text);
        };
    if constexpr (requires { Statement::ends; })
        made.ends = Statement::ends;
    return made;
}

// For constructors of final classes and bases alike; the last call counts.

// The statement itself runs nothing but the engine's own code: no host, no system.
template <class Statement>
void stayInside(Statement* made) noexcept
{
    static constexpr shortCuts offered = shortCutsOf<Statement>();
    inside::setShortCuts(*made, offered);
}

// stayInside for a statement that offers short cuts to values with the depth of its operands' (0 for
// literals). Where that is too great it has none, so that short cuts take a bounded piece of the stack.
template <class Statement>
void offerShortCuts(Statement* made, unsigned operandDepth, writing written) noexcept
{
    stayInside(made);
    inside::setDepth(*made, operandDepth, written);
}

} // namespace qx::script
