// Conditions: the text becomes a list of steps, and a test of a value runs down that list.
#include "qxCondition.h"

#include "qxAutoPtr.h"
#include "qxCell.h"
#include "qxHeldTypes.h"
#include "qxNumberText.h"
#include "qxReference.h"
#include "qxStack.h"
#include "qxTextView.h"

#include <algorithm>
#include <compare>
#include <optional>

namespace qx::conditions
{

namespace
{

constexpr std::size_t longestText = 65536;
constexpr int deepestNesting = 200;

// --- Values ---

template <class T>
std::optional<T> momentIn(std::wstring_view text)
{
    T moment;
    return T::parse(text, moment) ? std::optional<T>(moment) : std::nullopt;
}

// What stands on the right of a test, read in every way in which it may be compared.
struct operand
{
    string text; // as written
    std::optional<double> number;
    std::optional<date> day;
    std::optional<time> timeOfDay;
    std::optional<timestamp> moment;

    static operand ofWord(std::wstring_view word) { return {string(std::wstring(word)), {}, {}, {}, {}}; }
    static operand ofNumber(std::wstring_view text, double value)
    {
        operand made = ofWord(text);
        made.number = value;
        return made;
    }
    static operand ofText(const string& text)
    {
        return {text, {}, momentIn<date>(text), momentIn<time>(text), momentIn<timestamp>(text)};
    }
};

// The value under test. What it reads as is found out once, when a test first asks.
class subject
{
public:
    explicit subject(const genericValue& value) : mHolder(heldBy(value))
    {
        using reference = sharedPtr<genericValue>;
        if (!dynamic_cast<genericValue::holder<reference>*>(mHolder.get()))
            return;
        const sharedPtr<genericValue> variable = typeconvert::referredVariable(readAs<reference>().value());
        mHolder = variable ? heldBy(*variable) : sharedPtr<genericValue::holderbase>();
    }

    bool isNull() const { return !mHolder; }

    // Null where the value has no text. Borrowed from this object.
    const string* text() { return mText.of(*this); }

    // Unordered where nothing compares.
    std::partial_ordering compare(const operand& right)
    {
        if (isNull())
            return std::partial_ordering::unordered;
        if (right.day && holds<date>())
            return *readAs<date>() <=> *right.day;
        if (right.timeOfDay && holds<time>())
            return *readAs<time>() <=> *right.timeOfDay;
        if (right.moment && holds<timestamp>())
            return *readAs<timestamp>() <=> *right.moment;
        if (right.number)
            if (const double* const number = mNumber.of(*this))
                return *number <=> *right.number;
        if (const string* const own = text())
            return own->compare(right.text) <=> 0;
        return std::partial_ordering::unordered;
    }

private:
    // A small value gets a holder of its own, so that the tested one stays small.
    static sharedPtr<genericValue::holderbase> heldBy(const genericValue& value)
    {
        return cell::isSmall(cell::access::load(value)) ? genericValue(value).holderCopy()
                                                        : value.holderCopy();
    }

    template <class T>
    bool holds() const
    {
        return dynamic_cast<genericValue::holder<T>*>(mHolder.get()) != nullptr;
    }
    template <class T>
    std::optional<T> readAs() const
    {
        T out{};
        genericValue::ptrholder<T> target(&out);
        return mHolder && mHolder->copyTo(target) ? std::optional<T>(std::move(out)) : std::nullopt;
    }

    template <class T>
    class reading
    {
    public:
        const T* of(const subject& read)
        {
            if (!mTried)
                mValue = read.readAs<T>();
            mTried = true;
            return mValue ? &*mValue : nullptr;
        }

    private:
        std::optional<T> mValue;
        bool mTried = false;
    };

    sharedPtr<genericValue::holderbase> mHolder;
    reading<double> mNumber;
    reading<string> mText;
};

// --- Steps ---

enum class operation
{
    equal,
    notEqual,
    less,
    lessOrEqual,
    greater,
    greaterOrEqual,
    between,
    in,
    like,
    empty,
    negate,
    skipIfTrue, // go on at `first`
    skipIfFalse
};

// One step of a condition: it sets the outcome by a test of the value, or works on the outcome so far.
struct step
{
    operation does;
    std::size_t first; // of its operands, or the step where to go on
    std::size_t count; // of its operands
};

// Never changed once it is parsed.
class stepList final : public condition
{
public:
    bool isTrue(const genericValue& value) const override
    {
        subject tested(value);
        bool outcome = false;
        for (std::size_t at = 0; at < mSteps.size(); ++at) {
            const step& now = mSteps[at];
            if (now.does == operation::negate)
                outcome = !outcome;
            else if (now.does != operation::skipIfTrue && now.does != operation::skipIfFalse)
                outcome = holds(now, tested);
            else if (outcome == (now.does == operation::skipIfTrue))
                at = now.first - 1;
        }
        return outcome;
    }

    // Its operands are those that were added since the step before it.
    void addTest(operation test)
    {
        mSteps.push_back({test, mUsed, mOperands.size() - mUsed});
        mUsed = mOperands.size();
    }
    void addOperand(operand added) { mOperands.push_back(std::move(added)); }
    void addNegation() { mSteps.push_back({operation::negate, 0, 0}); }
    // Its end is known later.
    std::size_t addSkip(operation skip)
    {
        mSteps.push_back({skip, 0, 0});
        return mSteps.size() - 1;
    }
    void endSkip(std::size_t skip) { mSteps[skip].first = mSteps.size(); }

private:
    bool holds(const step& test, subject& tested) const
    {
        const operand* const right = mOperands.data() + test.first;
        switch (test.does) {
        case operation::equal:
            return tested.compare(*right) == 0;
        case operation::notEqual:
            return tested.compare(*right) != 0;
        case operation::less:
            return tested.compare(*right) < 0;
        case operation::lessOrEqual:
            return tested.compare(*right) <= 0;
        case operation::greater:
            return tested.compare(*right) > 0;
        case operation::greaterOrEqual:
            return tested.compare(*right) >= 0;
        case operation::between:
            return tested.compare(right[0]) >= 0 && tested.compare(right[1]) <= 0;
        case operation::in:
            return std::any_of(right, right + test.count,
                               [&](const operand& one) { return tested.compare(one) == 0; });
        case operation::like:
            return tested.text() && fitsPattern(*tested.text(), right->text);
        default: // empty
            return tested.isNull() || (tested.text() && tested.text()->empty());
        }
    }

    std::vector<step> mSteps;
    std::vector<operand> mOperands;
    std::size_t mUsed = 0; // operands that belong to a step
};

// --- Text ---

enum class tokenKind
{
    end,
    word,
    number,
    text,
    symbol,
    unknown
};

bool isLetter(wchar_t c)
{
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}

// The tokens of a condition, one at a time.
class scanner
{
public:
    explicit scanner(std::wstring_view text) : mRest(text) { advance(); }

    tokenKind kind() const { return mKind; }
    // A word in lower case, a number or a symbol as written, the content of a quoted text.
    const string& token() const { return mToken; }
    double number() const { return mNumber; }

    // Takes the token where it is this word or symbol.
    bool take(tokenKind kind, std::wstring_view token)
    {
        if (mKind != kind || mToken != token)
            return false;
        advance();
        return true;
    }

    void advance()
    {
        mRest.remove_prefix(std::min(mRest.find_first_not_of(L" \t\r\n"), mRest.size()));
        mToken.clear();
        if (mRest.empty())
            mKind = tokenKind::end;
        else if (mRest.front() == L'"')
            mKind = takeText() ? tokenKind::text : tokenKind::unknown;
        else if (isLetter(mRest.front()))
            takeWord();
        else
            mKind =
                takeSymbol() ? tokenKind::symbol : (takeNumber() ? tokenKind::number : tokenKind::unknown);
    }

private:
    void takeWhile(bool (*belongs)(wchar_t))
    {
        std::size_t length = 0;
        while (length < mRest.size() && belongs(mRest[length]))
            ++length;
        mToken.assign(mRest.substr(0, length));
        mRest.remove_prefix(length);
    }

    void takeWord()
    {
        takeWhile([](wchar_t c) { return isLetter(c) || isDigit(c); });
        mToken.toLower();
        mKind = tokenKind::word;
    }

    bool takeNumber()
    {
        takeWhile([](wchar_t c) { return isLetter(c) || isDigit(c) || c == L'.' || c == L'+' || c == L'-'; });
        const std::size_t sign = mToken.find_first_not_of(L"+-");
        return sign != mToken.npos && !isLetter(mToken[sign]) && readNumber(mToken, mNumber);
    }

    bool takeSymbol()
    {
        for (const std::wstring_view symbol : {L"!=", L"<=", L">=", L"=", L"<", L">", L"(", L")", L","})
            if (mRest.starts_with(symbol)) {
                mToken.assign(symbol);
                mRest.remove_prefix(symbol.size());
                return true;
            }
        return false;
    }

    bool takeText()
    {
        for (;;) {
            mRest.remove_prefix(1);
            const std::size_t mark = mRest.find(L'"');
            if (mark == mRest.npos)
                return false;
            mToken.append(mRest.substr(0, mark));
            mRest.remove_prefix(mark + 1);
            if (!mRest.starts_with(L'"'))
                return true;
            mToken.push_back(L'"');
        }
    }

    std::wstring_view mRest;
    tokenKind mKind = tokenKind::end;
    string mToken;
    double mNumber = 0;
};

// Reads the grammar. Every step gives false where the text is no condition.
class parser
{
public:
    parser(std::wstring_view text, stepList& steps) : mText(text), mSteps(steps) {}

    bool run() { return anyOf() && mText.kind() == tokenKind::end; }

private:
    bool anyOf() { return joined(&parser::allOf, L"or", operation::skipIfTrue); }
    bool allOf() { return joined(&parser::negated, L"and", operation::skipIfFalse); }

    // Parts with a word in between, as soon as one decides the outcome the rest is skipped.
    bool joined(bool (parser::*part)(), std::wstring_view word, operation skip)
    {
        std::vector<std::size_t> skips;
        if (!(this->*part)())
            return false;
        while (takeWord(word)) {
            skips.push_back(mSteps.addSkip(skip));
            if (!(this->*part)())
                return false;
        }
        for (const std::size_t begun : skips)
            mSteps.endSkip(begun);
        return true;
    }

    bool negated()
    {
        if (takeWord(L"not")) {
            if (!nested(&parser::negated))
                return false;
            mSteps.addNegation();
            return true;
        }
        if (takeSymbol(L"("))
            return nested(&parser::anyOf) && takeSymbol(L")");
        return test();
    }

    bool nested(bool (parser::*part)())
    {
        if (mDepth == deepestNesting)
            return false;
        stack::check();
        ++mDepth;
        const bool done = (this->*part)();
        --mDepth;
        return done;
    }

    bool test()
    {
        static constexpr struct
        {
            tokenKind kind;
            const wchar_t* token;
            operation does;
            bool (parser::*operands)();
        } tests[] = {
            {tokenKind::symbol, L"=", operation::equal, &parser::value},
            {tokenKind::symbol, L"!=", operation::notEqual, &parser::value},
            {tokenKind::symbol, L"<", operation::less, &parser::value},
            {tokenKind::symbol, L"<=", operation::lessOrEqual, &parser::value},
            {tokenKind::symbol, L">", operation::greater, &parser::value},
            {tokenKind::symbol, L">=", operation::greaterOrEqual, &parser::value},
            {tokenKind::word, L"between", operation::between, &parser::bounds},
            {tokenKind::word, L"in", operation::in, &parser::list},
            {tokenKind::word, L"like", operation::like, &parser::quoted},
            {tokenKind::word, L"empty", operation::empty, &parser::nothing},
        };
        for (const auto& row : tests)
            if (mText.take(row.kind, row.token)) {
                if (!(this->*row.operands)())
                    return false;
                mSteps.addTest(row.does);
                return true;
            }
        return false;
    }

    bool value()
    {
        const string& token = mText.token();
        if (mText.kind() == tokenKind::number)
            mSteps.addOperand(operand::ofNumber(token, mText.number()));
        else if (mText.kind() == tokenKind::text)
            mSteps.addOperand(operand::ofText(token));
        else if (mText.kind() == tokenKind::word && (token == L"true" || token == L"false"))
            mSteps.addOperand(operand::ofWord(token));
        else
            return false;
        mText.advance();
        return true;
    }
    bool quoted() { return mText.kind() == tokenKind::text && value(); }
    bool bounds() { return value() && takeWord(L"and") && value(); }
    bool list()
    {
        if (!takeSymbol(L"(") || !value())
            return false;
        while (takeSymbol(L","))
            if (!value())
                return false;
        return takeSymbol(L")");
    }
    bool nothing() { return true; }

    bool takeWord(std::wstring_view word) { return mText.take(tokenKind::word, word); }
    bool takeSymbol(std::wstring_view symbol) { return mText.take(tokenKind::symbol, symbol); }

    scanner mText;
    stepList& mSteps;
    int mDepth = 0;
};

} // namespace

condition::~condition() = default;

condition* condition::parse(const string& text)
{
    if (text.size() > longestText)
        return nullptr;
    autoPtr<stepList> steps(new stepList);
    return parser(text, *steps).run() ? steps.release() : nullptr;
}

} // namespace qx::conditions
