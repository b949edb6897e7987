// Script files: how their text is cut into definitions.
//
// A script file is a sequence of definitions `scrdef name(declarations) body`. Plain files end in .qxscr,
// scrambled ones in .qxsscr. Reading only cuts: declarations stay as written and bodies stay text, so that
// one broken function does not harm the others of its file.
#pragma once

#include "qxBinaryBuffer.h"
#include "qxFile.h"

#include <array>
#include <cstdint>
#include <unordered_map>

namespace qx::script
{

// Scrambles or unscrambles a whole text of a script file.
void scramble(binaryBuffer& text);

// True for a file whose extension says that its content is scrambled.
bool isScrambled(const file& scriptFile);

// Reads a script file as plain text, in whichever form it is. False, with `text` empty, when it cannot be
// read.
bool readScriptText(const file& scriptFile, binaryBuffer& text);

// Walks over the definitions of a script text. Each byte becomes one character of the default ANSI code page.
class scrdefReader
{
public:
    // Reads `text`; when that is empty, fill() takes the content of `source` instead.
    explicit scrdefReader(binaryBuffer text, const file& source = file());

    void fill();
    void clear() { mText.clear(); }
    void rewind();
    const file& source() const { return mSource; }

    // The next definition, without the word that opens it: its lines, joined. False when there is none. The
    // text may be empty; it is valid until the next call. Throws the bool value false for a byte that stands
    // for no character.
    bool readText(std::wstring_view& text);
    // The number of the line with the word that opened the definition which readText gave last, from 1, with
    // CR LF as one line end.
    std::size_t lineNumber() const { return mDefinitionLine; }

private:
    // What a byte becomes; line ends have this bit besides, and a byte that stands for no character has it
    // alone.
    static constexpr std::uint32_t endsRun = 0x8000'0000u;
    // Lines of up to so many bytes are read as a whole.
    static constexpr std::size_t shortLine = 256;
    static constexpr std::size_t widenedAtOnce = 16;

    bool readLine();
    bool readShortRun();
    void readRun();

    file mSource;
    binaryBuffer mText;
    std::array<std::uint32_t, 256> mCharacters; // by byte
    bool mIsPlain = true;                       // ASCII stands for itself
    std::size_t mOffset = 0;
    std::size_t mLinesBefore = 0; // line ends in front of that
    std::array<wchar_t, shortLine + widenedAtOnce> mShortLine;
    std::wstring mLongLine;
    std::wstring_view mContent;  // what counts of the line that was read last; in one of these
    std::size_t mLineNumber = 0; // of that
    bool mIsAhead = false;       // that opens the next definition
    std::wstring mDefinition;    // that was read last
    std::size_t mDefinitionLine = 0;
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
    blankInName
};

// Reads the definition at the reader's position and moves behind it. Where it is not read, nothing but its
// line counts, if there is one.
definitionResult readDefinition(scrdefReader& reader, scriptDefinition& definition);
// Reads a definition without cutting it: gives its text and the name in it, both valid until the next call.
definitionResult readDefinition(scrdefReader& reader, std::wstring_view& text, std::wstring_view& name);
// Cuts a definition that was read. Strings that are in `definition` are used again.
void cutDefinition(std::wstring_view text, scriptDefinition& definition);

// What the definitions of one name, in any case, make together: the body of the last one, and of each
// declaration the last. These two read all definitions, from the reader's beginning. Reading ends silently at
// a definition that cannot be cut. They throw readFileException with the reader's file for whatever fails.

// The one of this name. False when there is none.
bool findDefinition(scrdefReader& reader, const string& name, scriptDefinition& found);

// All of them, by their lower-case names.
using definitionTable = std::unordered_map<string, scriptDefinition>;
void readDefinitions(scrdefReader& reader, definitionTable& found);

} // namespace qx::script
