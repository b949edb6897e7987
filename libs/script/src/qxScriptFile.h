// Script files: where they are found, and how their text is cut into definitions.
//
// A script file is a sequence of definitions `scrdef name(declarations) body`. Plain files end in .qxscr,
// scrambled ones in .qxsscr. Reading only cuts: declarations stay as written and bodies stay text, so that
// one broken function does not harm the others of its file.
#pragma once

#include "qxBinaryBuffer.h"
#include "qxConfigStructure.h"
#include "qxFile.h"

#include <array>
#include <bitset>

namespace qx::script
{

// Finds the file of a code call: the bare name in the current directory, then the name with its two
// extensions in `basePath` (if there is one), beside the running program, and in the current directory. On
// file systems that tell upper from lower case each candidate is looked for as written and then without
// regard to case. Throws fileNotFoundException with the last candidate.
file findScriptFile(const string& basePath, const string& fileName);

// Scrambles or unscrambles a whole text of a script file.
void scramble(binaryBuffer& text);

// True for a file whose extension says that its content is scrambled.
bool isScrambled(const file& scriptFile);

// Reads a script file as plain text, in whichever form it is. False, with `text` empty, when it cannot be
// read.
bool readScriptText(const file& scriptFile, binaryBuffer& text);

// The keys of a definition in the configStructure; the declarations follow as "parameter1", "parameter2", ...
inline constexpr const wchar_t* bodyKey = L"script";
string parameterKey(std::size_t number);

// Walks over the lines of a script text. Each byte becomes one character of the default ANSI code page.
class scrdefReader
{
public:
    // A point between two lines; `line` counts from 1 and takes CR LF as one line end.
    struct place
    {
        std::size_t offset = 0;
        std::size_t line = 1;
    };

    // Reads `text`; when that is empty, fill() takes the content of `source` instead.
    explicit scrdefReader(binaryBuffer text, const file& source = file());

    void fill();
    void clear() { mText.clear(); }
    const file& source() const { return mSource; }

    // The next line that is not empty, without its line end. False at the end. Throws the bool value false
    // for a byte that stands for no character.
    bool readLine(string& line);

    // Where the next readLine begins.
    place position() const { return mPosition; }
    void setPosition(const place& position) { mPosition = position; }
    // The number of the line that readLine gave last.
    std::size_t lineNumber() const { return mLineNumber; }

private:
    file mSource;
    binaryBuffer mText;
    place mPosition;
    std::size_t mLineNumber = 1;
    std::array<wchar_t, 256> mCharacters; // by byte
    std::bitset<256> mHasCharacter;
};

// One definition as the file has it.
struct scriptDefinition
{
    string name;
    std::vector<string> parameters; // declarations, not parsed
    string body;
    std::size_t line = 0; // of the word scrdef
};

// What came of looking for the next definition. All but `read` end the reading of the file.
enum class definitionResult
{
    read,
    atEnd,
    withoutText, // nothing stands behind `scrdef `
    blankInName  // the line is set, nothing else
};

// Reads the definition at the reader's position and moves behind it.
definitionResult readDefinition(scrdefReader& reader, scriptDefinition& definition);

// Stores all definitions of the text: a section for each name, its body and its declarations under their
// keys. Reading ends silently at a definition that cannot be cut. Throws readFileException with the reader's
// file for whatever fails.
void readDefinitions(scrdefReader& reader, configStructure& definitions);

} // namespace qx::script
