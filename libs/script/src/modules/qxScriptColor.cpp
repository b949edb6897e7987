// Colours, for hosts that keep them as numbers.
#include "modules/qxScriptModules.h"
#include "statements/qxScriptBase.h"

#include "qxHeldTypes.h"
#include "qxRgbColor.h"

namespace qx::script
{

namespace
{

ulong32 numberOf(uint red, uint green, uint blue)
{
    rgbColor colour;
    colour.setRGB(static_cast<unsigned char>(red), static_cast<unsigned char>(green),
                  static_cast<unsigned char>(blue));
    return ulong32(colour.colorValue());
}

class rgb_make final : public scriptbasestatement
{
public:
    static constexpr const wchar_t* scriptName = L"rgb_make";
    static constexpr const wchar_t* unusable = L"rgb_make::createFrom: error parsing \"%s\"";
    static constexpr const wchar_t* noRed = L"Error getting value for red";
    static constexpr const wchar_t* noGreen = L"Error getting value for green";
    static constexpr const wchar_t* noBlue = L"Error getting value for blue";
    static constexpr const wchar_t* notWritten = L"Error executing qx::rgbColor";
    static constexpr const wchar_t* failures[] = {unusable, noRed, noGreen, noBlue, notWritten};

    static statement* create(const callText& call)
    {
        if (call.params.size() < 3)
            throw numParamsException(scriptName, long32(3));
        return new rgb_make(call);
    }

    statement* clone() const override { return new rgb_make(*this); }
    // Only the low eight bits of each part count.
    void execute(codecontext& context, genericValue& result) const override
    {
        const uint red = requirePart(mpRed, context, noRed);
        const uint green = requirePart(mpGreen, context, noGreen);
        const uint blue = requirePart(mpBlue, context, noBlue);
        try {
            writeToSlot(result, numberOf(red, green, blue));
        } catch (...) {
            execError(this, notWritten);
        }
    }
    std::uint64_t smallValue(codecontext& context) const
    {
        uint red = 0;
        uint green = 0;
        uint blue = 0;
        if (mpRed.shortCut().read(context, red) && mpGreen.shortCut().read(context, green) &&
            mpBlue.shortCut().read(context, blue))
            return cell::make(numberOf(red, green, blue));
        return cell::refused;
    }
    bool resolve(compiler& names) const
    {
        return mpRed.resolve(names) && mpGreen.resolve(names) && mpBlue.resolve(names);
    }

private:
    explicit rgb_make(const callText& call)
        : mpRed(partOf(call, 0)), mpGreen(partOf(call, 1)), mpBlue(partOf(call, 2))
    {
        for (operand* const part : {&mpRed, &mpGreen, &mpBlue})
            part->fold<uint>();
        offerShortCuts(this, depthOf(mpRed, mpGreen, mpBlue), writing::keepsType);
    }

    static operand partOf(const callText& call, std::size_t place)
    {
        return requireOperand(call, place, unusable);
    }

    uint requirePart(const operand& part, codecontext& context, const wchar_t* failure) const
    {
        uint value = 0;
        if (!part.read(context, value))
            execError(this, failure);
        return value;
    }

    operand mpRed;
    operand mpGreen;
    operand mpBlue;
};

class rgb_const final : public scriptbasestatement
{
public:
    static constexpr const wchar_t* notWritten = L"Error executing function call";
    static constexpr const wchar_t* failures[] = {notWritten};

    template <unsigned char Red, unsigned char Green, unsigned char Blue>
    static constexpr builtin row(const wchar_t* name, const wchar_t* summary)
    {
        return {.name = name,
                .create = create<Red, Green, Blue>,
                .parameters = L"()",
                .result = resultRule::keepsType,
                .summary = summary,
                .failures = failures};
    }

    statement* clone() const override { return new rgb_const(*this); }
    void execute(codecontext&, genericValue& result) const override
    {
        try {
            writeToSlot(result, mNumber);
        } catch (...) {
            execError(this, notWritten);
        }
    }
    std::uint64_t smallValue(codecontext&) const { return cell::make(mNumber); }
    static bool resolve(compiler&) { return true; }

private:
    template <unsigned char Red, unsigned char Green, unsigned char Blue>
    static statement* create(const callText&)
    {
        return new rgb_const(numberOf(Red, Green, Blue));
    }

    explicit rgb_const(ulong32 number) : mNumber(number) { offerShortCuts(this, 0, writing::keepsType); }

    ulong32 mNumber;
};

// --- Table ---

constexpr builtin rows[] = {
    {.name = rgb_make::scriptName,
     .create = rgb_make::create,
     .parameters = L"(red, green, blue)",
     .result = resultRule::keepsType,
     .summary = L"Gives the number of a colour: red + green * 256 + blue * 65536, each modulo 256.",
     .failures = rgb_make::failures},
    rgb_const::row<255, 0, 0>(L"red", L"Gives the number of red."),
    rgb_const::row<0, 255, 0>(L"green", L"Gives the number of green."),
    rgb_const::row<0, 0, 255>(L"blue", L"Gives the number of blue."),
    rgb_const::row<255, 255, 0>(L"yellow", L"Gives the number of yellow."),
    rgb_const::row<255, 0, 255>(L"magenta", L"Gives the number of magenta."),
    rgb_const::row<0, 255, 255>(L"cyan", L"Gives the number of cyan."),
    rgb_const::row<255, 255, 255>(L"white", L"Gives the number of white."),
    rgb_const::row<0, 0, 0>(L"black", L"Gives the number of black."),
};

} // namespace

constinit const builtinTable colourRows = rows;

} // namespace qx::script
