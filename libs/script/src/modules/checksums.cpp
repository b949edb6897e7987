// Checksums: a CRC-32 over a series of texts. The running state is a value that the script keeps.
#include "modules/qxScriptModules.h"
#include "modules/qxScriptRows.h"

#include "qxCrc32.h"
#include "qxHeldTypes.h"

namespace qx::script
{

namespace
{

class calccrc_create final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"calccrc_create";
    static constexpr declaredParameter declared[] = {{L"", false}}; // REQUIRED: parsed and never asked for

    statement* clone() const override { return new calccrc_create(*this); }
    void execute(codecontext&, genericValue& result) const override { replaceResult(result, calcCrc32()); }
};

class onChecksum : public scriptbasesinglefunction
{
protected:
    static constexpr declaredParameter stateParam{L"this", true, L"Error retrieving calccrc32"};

    calcCrc32 requireState(codecontext& context) const { return require<calcCrc32>(stateParam, context); }
};

class calccrc_add final : public onChecksum
{
public:
    static constexpr const wchar_t* messageName = L"calccrc_add";
    static constexpr declaredParameter valueParam{L"value", true, L"Error retrieving value"};
    static constexpr declaredParameter declared[] = {stateParam, valueParam};

    statement* clone() const override { return new calccrc_add(*this); }
    // The state that was given stays as it is; the result is the new one.
    void execute(codecontext& context, genericValue& result) const override
    {
        calcCrc32 state = requireState(context);
        const auto text = require<string>(valueParam, context);
        const std::string bytes = bytesOf(text.c_str());
        state.crc(bytes.data(), bytes.size());
        replaceResult(result, state);
    }

private:
    // Two bytes for each character, the low one first, up to and with the zero character that ends the text.
    static std::string bytesOf(std::wstring_view text)
    {
        std::string bytes((text.size() + 1) * 2, '\0');
        for (std::size_t i = 0; i < text.size(); ++i) {
            const auto unit = static_cast<uint>(text[i]);
            bytes[2 * i] = static_cast<char>(unit & 0xFF);
            bytes[2 * i + 1] = static_cast<char>(unit >> 8 & 0xFF);
        }
        return bytes;
    }
};

class calccrc_result final : public onChecksum
{
public:
    static constexpr const wchar_t* messageName = L"calccrc_result";
    static constexpr declaredParameter declared[] = {stateParam};

    statement* clone() const override { return new calccrc_result(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        replaceResult(result, ulong32(~requireState(context).state()));
    }
};

// --- Table ---

constexpr builtin rows[] = {
    namedRow<calccrc_create>(L"Gives the state of a checksum to which nothing has been added."),
    namedRow<calccrc_add>(
        L"Gives the state of a checksum with one more text; the given state stays as it is."),
    namedRow<calccrc_result>(L"Gives the checksum of a state."),
};

} // namespace

constinit const builtinTable checksumRows = rows;

} // namespace qx::script
