// The texts of statements: kept as a piece of the parsed text until the first who asks makes a text of it.
#include "statements/qxScriptStatementText.h"

#include <memory>

namespace qx::script
{

namespace
{

constexpr std::size_t shownOtherwise = 122;

string shortened(string text)
{
    if (text.size() >= statementText::shownWhole)
        text.erase(shownOtherwise).append(L" ...");
    return text;
}

// The text of a piece, of which no more than `statementText::shownWhole` characters count.
string textOf(std::wstring_view piece, statementText::form how)
{
    string text{std::wstring(piece.substr(0, statementText::shownWhole))};
    if (how == statementText::form::variable)
        text.insert(0, L"getvar(").push_back(L')');
    return shortened(std::move(text));
}

} // namespace

struct statementText::shownText
{
    string text;
    refPtr<const sharedText> whole; // null for a text that was set as such
};

statementText::shownText* statementText::shownIn(std::uintptr_t word) noexcept
{
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a pointer and a mark in one word
    return word & shownMark ? reinterpret_cast<shownText*>(word & ~shownMark) : nullptr;
}

const sharedText* statementText::wholeIn(std::uintptr_t word) noexcept
{
    const shownText* const made = shownIn(word);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a pointer and a mark in one word
    return made ? made->whole.get() : reinterpret_cast<const sharedText*>(word);
}

void statementText::copy(const statement& other)
{
    mStored = other.mText;
    mStored.word = 0;
    const std::uintptr_t word = atomics::loadAcquire(other.mText.word);
    if (const sharedText* const whole = wholeIn(word)) {
        whole->addRef();
        mStored.word = reinterpret_cast<std::uintptr_t>(whole);
    } else if (const shownText* const made = shownIn(word)) {
        assign(made->text);
    }
}

void statementText::drop() noexcept
{
    if (mStored.word & shownMark)
        delete shownIn(mStored.word);
    else if (mStored.word != 0)
        wholeIn(mStored.word)->release();
}

const string& statementText::shown(const statement& named)
{
    const storedText& stored = named.mText;
    std::uintptr_t current = atomics::loadAcquire(stored.word);
    if (!shownIn(current)) {
        auto made = std::make_unique<shownText>();
        if (const sharedText* const whole = wholeIn(current))
            made->text =
                textOf(whole->view().substr(stored.start, stored.length), static_cast<form>(stored.form));
        const std::uintptr_t marked = reinterpret_cast<std::uintptr_t>(made.get()) | shownMark;
        made->whole = refPtr<const sharedText>(wholeIn(current));
        // Where another thread comes first, what it made counts, and `current` becomes that.
        if (__atomic_compare_exchange_n(&stored.word, &current, marked, false, __ATOMIC_ACQ_REL,
                                        __ATOMIC_ACQUIRE)) {
            if (const sharedText* const whole = made->whole.get())
                whole->release(); // the word's own count
            current = marked;
            static_cast<void>(made.release()); // the word has it now
        }
    }
    return shownIn(current)->text;
}

void statementText::set(std::wstring_view text)
{
    assign(shortened(string(std::wstring(text.substr(0, shownWhole)))));
}

void statementText::set(std::wstring_view piece, form how)
{
    assign(textOf(piece, how));
}

void statementText::assign(string text)
{
    if (shownText* const made = shownIn(mStored.word)) {
        made->text.swap(text);
        made->whole = refPtr<const sharedText>();
        return;
    }
    auto made = std::make_unique<shownText>();
    made->text.swap(text);
    const sharedText* const before = wholeIn(mStored.word);
    mStored.word = reinterpret_cast<std::uintptr_t>(made.release()) | shownMark;
    if (before)
        before->release();
}

// --- What the statement makes of it ---

statement::statement(const statement& other)
    : mpShortCuts(other.mpShortCuts), mShortCutDepth(other.mShortCutDepth), mKeepsType(other.mKeepsType),
      mGivesText(other.mGivesText), mStaysInside(other.mStaysInside)
{
    statementText(*this).copy(other);
}

statement::~statement()
{
    statementText(*this).drop();
}

const string& statement::text() const
{
    return statementText::shown(*this);
}

void statement::setText(const string& source)
{
    statementText(*this).set(source);
}

} // namespace qx::script
