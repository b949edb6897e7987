// What the engine's own statements do besides execute, and how they run each other.
//
// A statement of the engine may offer short cuts: ways past values and look-ups that give exactly what
// `execute` gives, or decline and have had no effect; then `execute` runs. They stand behind one pointer of
// the statement; those of a host's statement do just what `execute` does.
#pragma once

#include "qxCell.h"
#include "qxScriptStatement.h"
#include "qxStack.h"

namespace qx::script
{

class compiler;
class operandShortCut;
class operation;
class resumption;
class textScratch;
class value;

// What the value of a statement is when it is the body of a function, where that is known: a block has none
// but what it returns, and a `return` ends with what it returns.
enum class ending : unsigned char
{
    any,
    block,
    returned
};

// What the statements that a function is made of offer to the compiler; all others are handed over, or have
// short cuts alone. Those `Inside` are for a statement in a block that has just been opened for it.
struct compiledForm
{
    // Declares the variables that the statement makes in the block around it.
    void (*declare)(const statement& self, compiler& names);
    void (*declareInside)(const statement& self, compiler& names);
    // The operations of the statement, before `next`.
    const operation* (*compile)(const statement& self, compiler& c, const operation* next);
    const operation* (*compileInside)(const statement& self, compiler& c, const operation* next);
    // The run of a statement from where the frame was left.
    void (*resume)(const statement& self, codecontext& context, resumption& rest);
    void (*resumeInside)(const statement& self, codecontext& fresh, resumption& rest);
    // True for a loop, and for what holds one.
    bool (*repeats)(const statement& self);
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
    // A value that is made of nothing, into one that is null. Null where there is no such way.
    bool (*freshValue)(const statement& self, genericValue& out);
    // Settles what the names below mean in frames. False where the short cuts above have no way in a frame.
    bool (*resolve)(const statement& self, compiler& names);
    // The value for operations. Never null.
    const value* (*compileValue)(const statement& self, const operandShortCut& asked, compiler& c);
    // The work for a caller that drops the value. False, without an effect, where it declines. Null where
    // there is no such way.
    bool (*runShort)(const statement& self, codecontext& context);
    const compiledForm* form = nullptr; // null: none of its own
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
    static bool freshValue(const statement& asked, genericValue& out)
    {
        return asked.mpShortCuts->freshValue && asked.mpShortCuts->freshValue(asked, out);
    }

    // A value by the short cuts of a statement, for those without an operation of their own.
    static const value* compileByShortCuts(const statement& self, const operandShortCut& as, compiler& c);

    // The text of the small value, for statements without a short cut of their own for texts.
    static bool showSmallValue(const statement& self, codecontext& context, textScratch& text);

    // --- For the compiler ---

    static bool resolve(const statement& asked, compiler& names)
    {
        return asked.mpShortCuts->resolve(asked, names);
    }
    static const value* compileValue(const statement& asked, const operandShortCut& as, compiler& c)
    {
        return asked.mpShortCuts->compileValue(asked, as, c);
    }
    static void declare(const statement& asked, compiler& names)
    {
        if (const compiledForm* const form = asked.mpShortCuts->form)
            form->declare(asked, names);
    }
    static void declareInside(const statement& asked, compiler& names)
    {
        if (const compiledForm* const form = asked.mpShortCuts->form)
            form->declareInside(asked, names);
    }
    static const operation* compile(const statement& asked, compiler& c, const operation* next);
    static const operation* compileInside(const statement& asked, compiler& c, const operation* next);
    static bool repeats(const statement& asked)
    {
        const compiledForm* const form = asked.mpShortCuts->form;
        return form && !stack::isExhausted() && form->repeats(asked);
    }
    static bool runShort(const statement& asked, codecontext& context)
    {
        return asked.mpShortCuts->runShort(asked, context);
    }
    // exec of a statement that had begun when the frame was left: the guard alone, since it was traced and
    // counted then.
    static void resume(const statement& left, codecontext& context, resumption& rest);
    static void resumeInside(const statement& left, codecontext& fresh, resumption& rest);

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
    static void resumed(const statement& run, const Work& work);
    template <class Work>
    static void watched(const statement& run, const Work& work);
    static void trace(const statement& run, const wchar_t* format);
    [[noreturn]] static void raiseCaught(const statement& run);
};

// What a class has of a compiled form.
template <class Statement>
constexpr compiledForm formOf()
{
    compiledForm made{
        [](const statement&, compiler&) {},
        nullptr,
        [](const statement& self, compiler& c, const operation* next) {
            return static_cast<const Statement&>(self).compile(c, next);
        },
        nullptr,
        [](const statement& self, codecontext& context, resumption& rest) {
            if constexpr (requires(const Statement& s) { s.resume(context, rest); })
                static_cast<const Statement&>(self).resume(context, rest);
        },
        nullptr,
        [](const statement& self) {
            if constexpr (requires(const Statement& s) { s.repeats(); })
                return static_cast<const Statement&>(self).repeats();
            else
                return false;
        },
    };
    if constexpr (requires(const Statement& s, compiler& names) { s.declare(names); })
        made.declare = [](const statement& self, compiler& names) {
            static_cast<const Statement&>(self).declare(names);
        };
    made.declareInside = made.declare;
    made.compileInside = made.compile;
    made.resumeInside = made.resume;
    if constexpr (requires(const Statement& s, compiler& names) { s.declareInside(names); }) {
        made.declareInside = [](const statement& self, compiler& names) {
            static_cast<const Statement&>(self).declareInside(names);
        };
        made.compileInside = [](const statement& self, compiler& c, const operation* next) {
            return static_cast<const Statement&>(self).compileInside(c, next);
        };
        made.resumeInside = [](const statement& self, codecontext& fresh, resumption& rest) {
            static_cast<const Statement&>(self).resumeInside(fresh, rest);
        };
    }
    return made;
}

template <class Statement>
inline constexpr compiledForm formFor = formOf<Statement>();

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
        nullptr,
        [](const statement& self, compiler& names) {
            if constexpr (requires(const Statement& s) { s.resolve(names); })
                return static_cast<const Statement&>(self).resolve(names);
            else
                return false;
        },
        inside::compileByShortCuts,
        nullptr,
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
    if constexpr (requires(const Statement& s, genericValue& out) { s.freshValue(out); })
        made.freshValue = [](const statement& self, genericValue& out) {
            return static_cast<const Statement&>(self).freshValue(out);
        };
    if constexpr (requires(const Statement& s, const operandShortCut& as, compiler& c) {
                      s.compileValue(as, c);
                  })
        made.compileValue = [](const statement& self, const operandShortCut& as, compiler& c) {
            return static_cast<const Statement&>(self).compileValue(as, c);
        };
    if constexpr (requires(const Statement& s, codecontext& context) { s.runShort(context); })
        made.runShort = [](const statement& self, codecontext& context) {
            return static_cast<const Statement&>(self).runShort(context);
        };
    if constexpr (requires(const Statement& s, compiler& c, const operation* next) { s.compile(c, next); })
        made.form = &formFor<Statement>;
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
    static_assert(requires(const Statement& s, compiler& names) { s.resolve(names); });
    stayInside(made);
    inside::setDepth(*made, operandDepth, written);
}

} // namespace qx::script
