// The texts of statements.
#include "qxScriptStatementText.h"

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

statementText::statementText(const statementText& other)
    : mStart(other.mStart), mLength(other.mLength), mForm(other.mForm)
{
    const std::uintptr_t word = other.mWord.load(std::memory_order_acquire);
    if (const sharedText* const whole = wholeIn(word)) {
        whole->addRef();
        mWord.store(reinterpret_cast<std::uintptr_t>(whole), std::memory_order_relaxed);
    } else if (const shownText* const made = shownIn(word)) {
        assign(made->text);
    }
}

statementText::~statementText()
{
    const std::uintptr_t word = mWord.load(std::memory_order_relaxed);
    if (word & shownMark)
        delete shownIn(word);
    else if (word != 0)
        wholeIn(word)->release();
}

const string& statementText::shown() const
{
    std::uintptr_t word = mWord.load(std::memory_order_acquire);
    if (!shownIn(word)) {
        auto made = std::make_unique<shownText>();
        if (const sharedText* const whole = wholeIn(word))
            made->text = textOf(whole->view().substr(mStart, mLength), mForm);
        const std::uintptr_t marked = reinterpret_cast<std::uintptr_t>(made.get()) | shownMark;
        // Where another thread comes first, what it made counts, and `word` becomes that.
        made->whole = refPtr<const sharedText>(wholeIn(word));
        if (mWord.compare_exchange_strong(word, marked, std::memory_order_acq_rel,
                                          std::memory_order_acquire)) {
            if (const sharedText* const whole = made->whole.get())
                whole->release(); // the word's own count
            word = marked;
            static_cast<void>(made.release()); // the word has it now
        }
    }
    return shownIn(word)->text;
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
    const std::uintptr_t word = mWord.load(std::memory_order_relaxed);
    if (shownText* const made = shownIn(word)) {
        made->text.swap(text);
        made->whole = refPtr<const sharedText>();
        return;
    }
    auto made = std::make_unique<shownText>();
    made->text.swap(text);
    mWord.store(reinterpret_cast<std::uintptr_t>(made.release()) | shownMark, std::memory_order_relaxed);
    if (word != 0)
        wholeIn(word)->release();
}

} // namespace qx::script
