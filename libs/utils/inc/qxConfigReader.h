// Readers of configuration files: an ini file has sections, a cfg file is a flat list of
// keys.
//
//     qx::configStructure settings;
//     qx::iniFileReader(qx::file(L"window.ini")).fill(settings);
//     qx::string width = L"80";
//     settings.section(L"window", false, true).getValue(L"width", width, false);
//
// A file that begins with the byte order mark of UTF-8 is read as UTF-8, any other in the
// default ANSI code page. Lines end with CR, LF or both. Blanks and tabs around a line, a
// section, a key and a value do not count; empty lines and those that begin with the
// comment mark are passed over.
//
// A reader keeps the decoded text of the whole file until it is closed. Not locked.
#pragma once

#include "qxConfigStructure.h"
#include "qxExport.h"
#include "qxFile.h"
#include "qxString.h"

#include <cstddef>
#include <string_view>

namespace qx
{

// Lines `[section]` open a section, lines `key SEPARATOR value` belong to the one above
// them. What follows the first separator is the value, further separators included. Lines
// of another form, and those without a key, are passed over. Nothing is thrown but
// std::bad_alloc.
class QXUTILS_API keyValueFileReader
{
public:
    // An empty `comment` leaves no line out. `third` has no meaning.
    keyValueFileReader(const file& file, const string& separator, const string& comment, const string& third);
    virtual ~keyValueFileReader();

    // Moves to the next section, and puts its name into `name`. False, with `name`
    // unchanged, behind the last one.
    virtual bool readSection(string& name);

    // Reads the next pair of the current section, or of the lines before the first one.
    // False, with key and value unchanged, at its end.
    virtual bool readKey(string& key, string& value);

    // Reads the whole file and stands at its start. False, and as if the file were empty,
    // when it cannot be read.
    bool open();

    // Forgets the content.
    void close();

    // Opens the file, stores all it holds, and closes it. A value replaces one that `store`
    // has under exactly the same names. The lines before the first section come last, into
    // the section without a name. A file that cannot be read changes nothing.
    void fill(configStructure& store);

protected:
    // Stands at a position again, in characters from the start.
    void rewind(long long position);

    // Puts the next line that is neither empty nor a comment into `line`, and moves behind
    // it. False at the end. Valid until the reader is closed.
    bool readLine(std::wstring_view& line);

private:
    file mFile;
    string mSeparator;
    string mComment;
    string mContent;
    std::size_t mPosition = 0;
};

// Lines `key=value`; `;` begins a comment.
class QXUTILS_API iniFileReader : public keyValueFileReader
{
public:
    // Looks at no file yet; open and fill do.
    explicit iniFileReader(const file& file);
};

// Lines `key value`, where the key ends at the first blank or tab and the value may be
// missing; `#` begins a comment. There are no sections, so brackets have no meaning.
class QXUTILS_API cfgFileReader : public keyValueFileReader
{
public:
    // Looks at no file yet; open and fill do.
    explicit cfgFileReader(const file& file);

    bool readSection(string& name) override;
    bool readKey(string& key, string& value) override;
};

} // namespace qx
