// Files: names, copies, and lines of text.
#include "code/qxScriptBasePath.h"
#include "modules/qxScriptModules.h"
#include "modules/qxScriptRows.h"

#include "qxDirectory.h"

#include <algorithm>

namespace qx::script
{

namespace
{

constexpr const wchar_t* noFile = L"Error retrieving file";

// Statements that begin with the name of a file.
class onFile : public scriptbasesinglefunction
{
protected:
    static constexpr declaredParameter fileParam{L"file", true, noFile};

    string requireFile(codecontext& context) const { return require<string>(fileParam, context); }

    // The name of the file, taken from the directory of the script when it begins with a dot.
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
    static constexpr declaredParameter declared[] = {fileParam};

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

class file_makerelative final : public onFile
{
public:
    static constexpr const wchar_t* messageName = L"file_makerelative";
    // REQUIRED: the text is that of a bad file.
    static constexpr declaredParameter baseParam{L"basepath", true, noFile};
    static constexpr declaredParameter declared[] = {fileParam, baseParam};

    statement* clone() const override { return new file_makerelative(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const file target(requireFile(context));
        const directory base(require<string>(baseParam, context));
        replaceResult(result, target.relativeNameTo(base.entryName()));
    }
};

class file_exchangeextension final : public onFile
{
public:
    static constexpr const wchar_t* messageName = L"file_exchangeextension";
    static constexpr declaredParameter extensionParam{L"ext", true, L"Error retrieving extension"};
    static constexpr declaredParameter declared[] = {fileParam, extensionParam};

    statement* clone() const override { return new file_exchangeextension(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const fsEntryName name(requireFile(context));
        const string extension = require<string>(extensionParam, context);
        replaceResult(result, string(name.name(nameWithPath | nameWithoutExtension) + L"." + extension));
    }
};

class file_copy final : public onFile
{
public:
    static constexpr const wchar_t* messageName = L"file_copy";
    static constexpr declaredParameter toPath{L"topath", true, L"Error retrieving destination path"};
    static constexpr declaredParameter toFile{L"tofile", false};
    static constexpr declaredParameter declared[] = {fileParam, toPath, toFile};
    static constexpr const wchar_t* noSource = L"file not existing";
    static constexpr const wchar_t* noTarget = L"Error: destination path not existing";
    static constexpr const wchar_t* notCopied = L"Error copying file";
    static constexpr const wchar_t* failures[] = {noFile, noSource, toPath.failure, noTarget, notCopied};

    statement* clone() const override { return new file_copy(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const file source(requireScriptFile(context));
        if (!source.exists())
            execError(this, noSource);
        const directory target(require<string>(toPath, context));
        if (!target.exists())
            execError(this, noTarget);
        string name;
        if (!read(toFile, context, name))
            name = source.entryName().name(0);
        const file copy(target.fullName(), name);
        if (!source.copy(copy, false))
            execError(this, notCopied);
        replaceResult(result, copy.fullName());
    }
};

class file_makeabs final : public onFile
{
public:
    // REQUIRED: a wrong call is told under the name of another statement.
    static constexpr const wchar_t* messageName = file_copy::messageName;
    static constexpr const wchar_t* scriptName = L"file_makeabs";
    static constexpr declaredParameter declared[] = {fileParam};

    statement* clone() const override { return new file_makeabs(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        replaceResult(result, file(requireScriptFile(context)).fullName());
    }
};

class file_appendTextLine final : public onFile
{
public:
    static constexpr const wchar_t* messageName = L"file_appendTextLine";
    static constexpr declaredParameter lineParam{L"str", true, L"Error retrieving str"};
    static constexpr declaredParameter declared[] = {fileParam, lineParam};
    static constexpr const wchar_t* notOpened = L"Error opening file";
    static constexpr const wchar_t* failures[] = {notOpened};

    statement* clone() const override { return new file_appendTextLine(*this); }
    void execute(codecontext& context, genericValue&) const override
    {
        const file target(requireFile(context));
        string line = require<string>(lineParam, context);
        line.resize(std::min(line.size(), line.find(L'\0'))); // REQUIRED: a zero character ends it
        if (!target.appendTextLine(line))
            execError(this, notOpened);
    }
};

// Statements on a directory and, if it is given, a file in it.
class onPath : public scriptbasesinglefunction
{
public:
    static constexpr declaredParameter pathParam{L"path", true, L"Error retrieving path"};
    static constexpr declaredParameter nameParam{L"file", false};
    static constexpr declaredParameter declared[] = {pathParam, nameParam};

protected:
    file requireTarget(codecontext& context) const
    {
        const string path = require<string>(pathParam, context);
        string name;
        read(nameParam, context, name);
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
    static constexpr declaredParameter nameParam{L"str", false, L"Error retrieving name"};
    static constexpr declaredParameter declared[] = {nameParam};

    statement* clone() const override { return new fsname_replaceinvalidchars(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const string name = require<string>(nameParam, context);
        replaceResult(result, fsEntryName::replaceInvalidChars(name, L' '));
    }
};

// --- Table ---

constexpr builtin rows[] = {
    namedRow<file_make>(
        L"Gives the full name of a file in a directory, or of the directory alone; nothing is made on "
        L"the disk."),
    namedRow<file_delete>(L"Deletes a file; one that is not there or may not be deleted is passed over.",
                          resultRule::none),
    namedRow<file_copy>(
        L"Copies a file into a directory, under its own name or another; gives the full name of the "
        L"copy. A name that begins with a dot is taken from the directory of the script."),
    namedRow<file_makeabs>(
        L"Gives the full name of a file. A name that begins with a dot is taken from the directory of "
        L"the script, any other from the current directory."),
    namedRow<file_makerelative>(L"Gives the way from a directory to a file."),
    namedRow<file_exchangeextension>(
        L"Gives the name with another extension, which is written without its dot."),
    namedRow<aboutFile<file_exists>>(L"Tells whether there is a file of this name; false for a directory."),
    namedRow<aboutFile<file_path>>(
        L"Gives what stands before the last part of a name, the separator included."),
    namedRow<aboutFile<file_name>>(L"Gives the last part of a name, the extension included."),
    namedRow<file_appendTextLine>(L"Adds a line to a file, which is made if it is missing.",
                                  resultRule::none),
    namedRow<fsname_replaceinvalidchars>(
        L"Gives the text with a blank for each character that must not stand in the name of a file."),
};

} // namespace

constinit const builtinTable fileRows = rows;

} // namespace qx::script
