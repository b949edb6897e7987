// Values out of configuration files. Each call reads its file anew; a file that cannot be read holds nothing.
#include "modules/qxScriptModules.h"
#include "modules/qxScriptRows.h"

#include "qxConfigReader.h"

namespace qx::script
{

namespace
{

constexpr declaredParameter fileParam{L"file", true, L"Error retrieving file"};
constexpr declaredParameter keyParam{L"vstr", true, L"Error retrieving key-str"};

class file_loadini final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"file_loadini";
    static constexpr declaredParameter sectionParam{L"sstr", true, L"Error retrieving section-str"};
    static constexpr declaredParameter caseParam{L"cs", false};
    static constexpr declaredParameter declared[] = {fileParam, sectionParam, keyParam, caseParam};

    statement* clone() const override { return new file_loadini(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const string name = require<string>(fileParam, context);
        const string section = require<string>(sectionParam, context);
        const string key = require<string>(keyParam, context);
        bool caseSensitive = false;
        read(caseParam, context, caseSensitive);
        configStructure settings;
        iniFileReader(file(name)).fill(settings);
        string value;
        try {
            const std::size_t index = settings.sectionIdx(section, caseSensitive);
            if (index != configStructure::notFound)
                settings.section(index).getValue(key, value, caseSensitive);
        } catch (...) {
            value.clear(); // REQUIRED: a look-up that fails has found nothing
        }
        replaceResult(result, value);
    }
};

class file_loadcfg final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"file_loadcfg";
    static constexpr declaredParameter declared[] = {fileParam, keyParam};

    statement* clone() const override { return new file_loadcfg(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const string name = require<string>(fileParam, context);
        const string key = require<string>(keyParam, context);
        configStructure settings;
        cfgFileReader(file(name)).fill(settings);
        string value;
        settings.section(0).getValue(key, value, false);
        replaceResult(result, value);
    }
};

// --- Table ---

constexpr builtin rows[] = {
    namedRow<file_loadini>(
        L"Gives the value of a key in a section of an ini file; empty where there is none. Case counts "
        L"where the last parameter is true."),
    namedRow<file_loadcfg>(
        L"Gives the value of a key, written in any case, in a file of lines `key value`; empty where "
        L"there is none."),
};

} // namespace

constinit const builtinTable configurationRows = rows;

} // namespace qx::script
