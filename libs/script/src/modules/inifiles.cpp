// Values out of configuration files. Each call reads its file anew; a file that cannot be read holds nothing.
#include "modules/fileStatements.h"
#include "statements/qxScriptBase.h"

#include "qxConfigReader.h"

namespace qx::script
{

namespace
{

class file_loadini final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"file_loadini";
    static constexpr declaredParameter declared[] = {
        {L"file", true}, {L"sstr", true}, {L"vstr", true}, {L"cs", false}};

    statement* clone() const override { return new file_loadini(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const string name = require<string>(L"file", context, L"Error retrieving file");
        const string section = require<string>(L"sstr", context, L"Error retrieving section-str");
        const string key = require<string>(L"vstr", context, L"Error retrieving key-str");
        bool caseSensitive = false;
        read(L"cs", context, caseSensitive);
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
    static constexpr declaredParameter declared[] = {{L"file", true}, {L"vstr", true}};

    statement* clone() const override { return new file_loadcfg(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const string name = require<string>(L"file", context, L"Error retrieving file");
        const string key = require<string>(L"vstr", context, L"Error retrieving key-str");
        configStructure settings;
        cfgFileReader(file(name)).fill(settings);
        string value;
        settings.section(0).getValue(key, value, false);
        replaceResult(result, value);
    }
};

} // namespace

statement* createLoadini(const callText& call)
{
    return createNamed<file_loadini>(call);
}

statement* createLoadcfg(const callText& call)
{
    return createNamed<file_loadcfg>(call);
}

} // namespace qx::script
