// Files: names, copies, and lines of text.
#include "code/qxScriptBasePath.h"
#include "modules/fileStatements.h"
#include "modules/qxScriptModules.h"
#include "statements/qxScriptBase.h"

#include "qxDirectory.h"

#include <algorithm>

namespace qx::script
{

namespace
{

// Statements that begin with the name of a file.
class onFile : public scriptbasesinglefunction
{
protected:
    string requireFile(codecontext& context) const
    {
        return require<string>(L"file", context, L"Error retrieving file");
    }

    // The same for a name that is taken from the directory of the script when it begins with a dot.
    // REQUIRED: ".hidden" counts as such a name, and nothing is put between directory and name.
    string requireScriptFile(codecontext& context) const
    {
        string name = requireFile(context);
        if (name.starts_with(L'.')) {
            string directoryName;
            context.globalContextVariable(scriptBasePath()).getValue(directoryName);
            name.insert(0, directoryName);
        }
        return name;
    }
};

// Statements that tell one thing about a name, which is taken as it was written.
template <class Told>
class aboutFile final : public onFile
{
public:
    static constexpr const wchar_t* messageName = Told::name;
    static constexpr declaredParameter declared[] = {{L"file", true}};

    statement* clone() const override { return new aboutFile(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        replaceResult(result, Told::of(requireFile(context)));
    }
};

struct file_exists
{
    static constexpr const wchar_t* name = L"file_exists";
    static bool of(const string& text) { return file(text).exists(); }
};

struct file_path
{
    static constexpr const wchar_t* name = L"file_path";
    static string of(const string& text) { return fsEntryName(text).path(0); }
};

struct file_name
{
    static constexpr const wchar_t* name = L"file_name";
    static string of(const string& text) { return fsEntryName(text).name(0); }
};

class file_makeabs final : public onFile
{
public:
    // REQUIRED: a wrong call is told under the name of another statement.
    static constexpr const wchar_t* messageName = L"file_copy";
    static constexpr declaredParameter declared[] = {{L"file", true}};

    statement* clone() const override { return new file_makeabs(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        replaceResult(result, file(requireScriptFile(context)).fullName());
    }
};

class file_makerelative final : public onFile
{
public:
    static constexpr const wchar_t* messageName = L"file_makerelative";
    static constexpr declaredParameter declared[] = {{L"file", true}, {L"basepath", true}};

    statement* clone() const override { return new file_makerelative(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const file target(requireFile(context));
        // REQUIRED: the text is that of a bad file.
        const directory base(require<string>(L"basepath", context, L"Error retrieving file"));
        replaceResult(result, target.relativeNameTo(base.entryName()));
    }
};

class file_exchangeextension final : public onFile
{
public:
    static constexpr const wchar_t* messageName = L"file_exchangeextension";
    static constexpr declaredParameter declared[] = {{L"file", true}, {L"ext", true}};

    statement* clone() const override { return new file_exchangeextension(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const fsEntryName name(requireFile(context));
        const string extension = require<string>(L"ext", context, L"Error retrieving extension");
        replaceResult(result, string(name.name(nameWithPath | nameWithoutExtension) + L"." + extension));
    }
};

class file_copy final : public onFile
{
public:
    static constexpr const wchar_t* messageName = L"file_copy";
    static constexpr declaredParameter declared[] = {{L"file", true}, {L"topath", true}, {L"tofile", false}};

    statement* clone() const override { return new file_copy(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const file source(requireScriptFile(context));
        if (!source.exists())
            execError(this, L"file not existing");
        const directory target(require<string>(L"topath", context, L"Error retrieving destination path"));
        if (!target.exists())
            execError(this, L"Error: destination path not existing");
        string name;
        if (!read(L"tofile", context, name))
            name = source.entryName().name(0);
        const file copy(target.fullName(), name);
        if (!source.copy(copy, false))
            execError(this, L"Error copying file");
        replaceResult(result, copy.fullName());
    }
};

class file_appendTextLine final : public onFile
{
public:
    static constexpr const wchar_t* messageName = L"file_appendTextLine";
    static constexpr declaredParameter declared[] = {{L"file", true}, {L"str", true}};

    statement* clone() const override { return new file_appendTextLine(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        const file target(requireFile(context));
        string line = require<string>(L"str", context, L"Error retrieving str");
        line.resize(std::min(line.size(), line.find(L'\0'))); // REQUIRED: a zero character ends it
        if (!target.appendTextLine(line))
            execError(this, L"Error opening file");
    }
};

// Statements on a directory and, if it is given, a file in it.
class onPath : public scriptbasesinglefunction
{
public:
    static constexpr declaredParameter declared[] = {{L"path", true}, {L"file", false}};

protected:
    file requireTarget(codecontext& context) const
    {
        const string path = require<string>(L"path", context, L"Error retrieving path");
        string name;
        read(L"file", context, name);
        return file(path, name);
    }
};

class file_make final : public onPath
{
public:
    static constexpr const wchar_t* messageName = L"file_make";

    statement* clone() const override { return new file_make(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        replaceResult(result, requireTarget(context).fullName());
    }
};

class file_delete final : public onPath
{
public:
    static constexpr const wchar_t* messageName = L"file_delete";

    statement* clone() const override { return new file_delete(*this); }
    // What is not there, or may not be deleted, stays silent.
    void execute(codecontext& context, genericValue&) const override
    {
        const file target = requireTarget(context);
        if (target.exists())
            target.remove();
    }
};

class fsname_replaceinvalidchars final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"fsname_replaceinvalidchars";
    // REQUIRED: without its parameter the call is accepted, and fails when it runs.
    static constexpr declaredParameter declared[] = {{L"str", false}};

    statement* clone() const override { return new fsname_replaceinvalidchars(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const string name = require<string>(L"str", context, L"Error retrieving name");
        replaceResult(result, fsEntryName::replaceInvalidChars(name, L' '));
    }
};

// --- Table ---

constexpr const wchar_t* noFile = L"Error retrieving file";
constexpr const wchar_t* noPath = L"Error retrieving path";

const builtin rows[] = {
    {.name = L"file_make",
     .create = createNamed<file_make>,
     .parameters = L"(path, [file])",
     .summary =
         L"Gives the full name of a file in a directory, or of the directory alone; nothing is made on "
         L"the disk.",
     .failures = {noPath}},
    {.name = L"file_delete",
     .create = createNamed<file_delete>,
     .parameters = L"(path, [file])",
     .result = resultRule::none,
     .summary = L"Deletes a file; one that is not there or may not be deleted is passed over.",
     .failures = {noPath}},
    {.name = L"file_copy",
     .create = createNamed<file_copy>,
     .parameters = L"(file, topath, [tofile])",
     .summary = L"Copies a file into a directory, under its own name or another; gives the full name of the "
                L"copy. A name that begins with a dot is taken from the directory of the script.",
     .failures = {noFile, L"file not existing\n"
                          L"Error retrieving destination path\n"
                          L"Error: destination path not existing\n"
                          L"Error copying file"}},
    {.name = L"file_makeabs",
     .create = createNamed<file_makeabs>,
     .parameters = L"(file)",
     .summary =
         L"Gives the full name of a file. A name that begins with a dot is taken from the directory of "
         L"the script, any other from the current directory.",
     .failures = {noFile}},
    {.name = L"file_makerelative",
     .create = createNamed<file_makerelative>,
     .parameters = L"(file, basepath)",
     .summary = L"Gives the way from a directory to a file.",
     .failures = {noFile}},
    {.name = L"file_exchangeextension",
     .create = createNamed<file_exchangeextension>,
     .parameters = L"(file, ext)",
     .summary = L"Gives the name with another extension, which is written without its dot.",
     .failures = {noFile, L"Error retrieving extension"}},
    {.name = L"file_exists",
     .create = createNamed<aboutFile<file_exists>>,
     .parameters = L"(file)",
     .summary = L"Tells whether there is a file of this name; false for a directory.",
     .failures = {noFile}},
    {.name = L"file_path",
     .create = createNamed<aboutFile<file_path>>,
     .parameters = L"(file)",
     .summary = L"Gives what stands before the last part of a name, the separator included.",
     .failures = {noFile}},
    {.name = L"file_name",
     .create = createNamed<aboutFile<file_name>>,
     .parameters = L"(file)",
     .summary = L"Gives the last part of a name, the extension included.",
     .failures = {noFile}},
    {.name = L"file_appendtextline",
     .create = createNamed<file_appendTextLine>,
     .parameters = L"(file, str)",
     .result = resultRule::none,
     .summary = L"Adds a line to a file, which is made if it is missing.",
     .failures = {noFile, L"Error retrieving str\n"
                          L"Error opening file"}},
    {.name = L"fsname_replaceinvalidchars",
     .create = createNamed<fsname_replaceinvalidchars>,
     .parameters = L"([str])",
     .summary = L"Gives the text with a blank for each character that must not stand in the name of a file.",
     .failures = {L"Error retrieving name"}},
    {.name = L"file_loadini",
     .create = createLoadini,
     .parameters = L"(file, sstr, vstr, [cs])",
     .summary =
         L"Gives the value of a key in a section of an ini file; empty where there is none. Case counts "
         L"where the last parameter is true.",
     .failures = {noFile, L"Error retrieving section-str\n"
                          L"Error retrieving key-str"}},
    {.name = L"file_loadcfg",
     .create = createLoadcfg,
     .parameters = L"(file, vstr)",
     .summary = L"Gives the value of a key, written in any case, in a file of lines `key value`; empty where "
                L"there is none.",
     .failures = {noFile, L"Error retrieving key-str"}},
};

} // namespace

constinit const builtinModule fileModule{L"file", rows};

} // namespace qx::script
