// Dates: constants, read-outs and text forms. Their calculation is reached from the operators.
#include "modules/qxScriptCalendar.h"
#include "modules/qxScriptModules.h"

#include "qxTypeConversion.h"

namespace qx::script
{

namespace
{

struct dateKind
{
    using type = date;
    static constexpr const wchar_t* noFunction = L"staticDate::execute: no function call";
    static constexpr const wchar_t* tooFewParameters = L"infoOfDate::createFrom: number of parameters < 1";
    static constexpr const wchar_t* unreadableText = L"infoOfDate::createFrom: error parsing \"%s\"";
    static constexpr const wchar_t* noValue = L"Missing or invalid date-provider";
    static constexpr const wchar_t* readOutFailures[] = {unreadableText, noValue, tooFewParameters,
                                                         noReadOut};
    static constexpr const wchar_t* parameters = L"(date)";
    static constexpr bool constantFailsWithoutText = true;
    static constexpr int (*readOuts[])(const date&) = {
        [](const date& day) { return day.year(); },       [](const date& day) { return day.month(); },
        [](const date& day) { return day.dayOfMonth(); }, [](const date& day) { return day.weekOfYear(); },
        [](const date& day) { return day.dayOfYear(); },  [](const date& day) { return day.dayOfWeek() + 1; },
    };
};

using staticDate = constantOf<dateKind>;
using infoOfDate = infoOf<dateKind>;

string digitsOf(int number, int width)
{
    string text;
    typeconvert::dtconvert(text, static_cast<uint>(number), width, nullptr);
    return text;
}

class dateAsString final : public scriptbasestatement
{
public:
    static constexpr const wchar_t* tooFew = L"dateAsString::createFrom: number of parameters < 1";
    static constexpr const wchar_t* noForm = L"invalid kind of string %d";
    static constexpr const wchar_t* failures[] = {dateKind::unreadableText, dateKind::noValue, tooFew,
                                                  noForm};

    template <int Form>
    static constexpr builtin row(const wchar_t* name, const wchar_t* summary)
    {
        return {.name = name,
                .create = create<Form>,
                .parameters = dateKind::parameters,
                .summary = summary,
                .failures = failures};
    }

    statement* clone() const override { return new dateAsString(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        date given;
        if (!mpDate.read(context, given))
            execError(this, dateKind::noValue);
        string text;
        if (!write(given, text))
            execError(this, noForm, mForm);
        replaceResult(result, std::move(text));
    }
    bool textValue(codecontext& context, textScratch& text) const
    {
        date given;
        string written;
        if (!mpDate.shortCut().read(context, given) || !write(given, written))
            return false;
        text.own(std::move(written));
        return true;
    }
    bool resolve(compiler& names) const { return mpDate.resolve(names); }

private:
    template <int Form>
    static statement* create(const callText& call)
    {
        if (call.params.empty())
            refuse(tooFew);
        return new dateAsString(requireOperand(call, 0, dateKind::unreadableText), Form);
    }

    dateAsString(operand given, int form) : mpDate(std::move(given)), mForm(form)
    {
        mpDate.fold<date>();
        offerShortCuts(this, depthOf(mpDate), writing::textReplaces);
    }

    // False for a form that is none.
    bool write(const date& given, string& text) const
    {
        const string year = digitsOf(given.year(), 4);
        const string month = digitsOf(given.month(), 2);
        const string day = digitsOf(given.dayOfMonth(), 2);
        switch (mForm) {
        case 0: // with apostrophes, as database queries want it
            text = L"'" + year + L"-" + month + L"-" + day + L"'";
            return true;
        case 1: // REQUIRED: the same in every locale
            text = day + L"." + month + L"." + year;
            return true;
        default:
            return false;
        }
    }

    operand mpDate;
    int mForm;
};

// --- Table ---

constexpr builtin rows[] = {
    staticDate::row<date::today>(L"today", L"Gives the day of the local clock."),
    staticDate::row<date::brelvixIniDate>(L"brelvixinidate", L"Gives 1900-01-01."),
    infoOfDate::row<0>(L"date_year", L"Gives the year."),
    infoOfDate::row<1>(L"date_month", L"Gives the month, from 1."),
    infoOfDate::row<2>(L"date_dayofmonth", L"Gives the day of the month, from 1."),
    infoOfDate::row<3>(
        L"date_weekofyear",
        L"Gives the week of the year by ISO 8601, in which week 1 has the year's first Thursday."),
    infoOfDate::row<4>(L"date_dayofyear", L"Gives the day of the year, from 1."),
    infoOfDate::row<5>(L"date_dayofweek", L"Gives the day of the week, 1 for Monday."),
    dateAsString::row<0>(L"date_assybasedate",
                         L"Gives the date as text with apostrophes around it: '2024-03-09'."),
    dateAsString::row<1>(L"date_aslocalestring", L"Gives the date as text: 09.03.2024."),
};

} // namespace

constinit const builtinTable dateRows = rows;

} // namespace qx::script
