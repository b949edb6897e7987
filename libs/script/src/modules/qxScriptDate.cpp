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
    template <int Form>
    static statement* create(const callText& call)
    {
        if (call.params.empty())
            refuse(L"dateAsString::createFrom: number of parameters < 1");
        return new dateAsString(requireProvider(call, 0, dateKind::unreadableText), Form);
    }

    statement* clone() const override { return new dateAsString(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        date given;
        if (!mpDate.read(context, given))
            execError(this, dateKind::noValue);
        string text;
        if (!write(given, text))
            execError(this, L"invalid kind of string %d", mForm);
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

private:
    dateAsString(ownedProvider given, int form) : mpDate(std::move(given)), mForm(form)
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

    ownedProvider mpDate;
    int mForm;
};

// --- Table ---

constexpr const wchar_t* useFailures = L"infoOfDate::createFrom: error parsing \"%s\"\n"
                                       L"Missing or invalid date-provider";
constexpr failureLists ofConstant{L"staticDate::execute: no function call"};
constexpr failureLists ofReadOut{useFailures, L"infoOfDate::createFrom: number of parameters < 1\n"
                                              L"invalid infotype %d"};
constexpr failureLists ofText{useFailures, L"dateAsString::createFrom: number of parameters < 1\n"
                                           L"invalid kind of string %d"};

constexpr builtin constantRow(const wchar_t* name, statement* (*create)(const callText&),
                              const wchar_t* summary)
{
    return {name, create, L"()", nullptr, resultRule::keepsType, summary, ofConstant};
}

constexpr builtin readOutRow(const wchar_t* name, statement* (*create)(const callText&),
                             const wchar_t* summary)
{
    return {name, create, L"(date)", nullptr, resultRule::keepsType, summary, ofReadOut};
}

constexpr builtin textRow(const wchar_t* name, statement* (*create)(const callText&), const wchar_t* summary)
{
    return {name, create, L"(date)", nullptr, resultRule::replaces, summary, ofText};
}

const builtin rows[] = {
    constantRow(L"today", staticDate::create<date::today>, L"Gives the day of the local clock."),
    constantRow(L"brelvixinidate", staticDate::create<date::brelvixIniDate>, L"Gives 1900-01-01."),
    readOutRow(L"date_year", infoOfDate::create<0>, L"Gives the year."),
    readOutRow(L"date_month", infoOfDate::create<1>, L"Gives the month, from 1."),
    readOutRow(L"date_dayofmonth", infoOfDate::create<2>, L"Gives the day of the month, from 1."),
    readOutRow(L"date_weekofyear", infoOfDate::create<3>,
               L"Gives the week of the year by ISO 8601, in which week 1 has the year's first Thursday."),
    readOutRow(L"date_dayofyear", infoOfDate::create<4>, L"Gives the day of the year, from 1."),
    readOutRow(L"date_dayofweek", infoOfDate::create<5>, L"Gives the day of the week, 1 for Monday."),
    textRow(L"date_assybasedate", dateAsString::create<0>,
            L"Gives the date as text with apostrophes around it: '2024-03-09'."),
    textRow(L"date_aslocalestring", dateAsString::create<1>, L"Gives the date as text: 09.03.2024."),
};

} // namespace

constinit const builtinModule dateModule{L"date", rows};

} // namespace qx::script
