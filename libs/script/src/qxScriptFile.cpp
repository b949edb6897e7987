#include "qxScriptFile.h"

#include "qxException.h"
#include "qxSystem.h"
#include "qxTextView.h"

#include <algorithm>

namespace qx::script
{

namespace
{

constexpr char scrambleKey[] = "k2#Vq9!xLm4$Zt7&Rb1~Yw6*Hs3%Pn8^Jd5(Cg0)Fu_+Ea=?";
static_assert(sizeof scrambleKey == 48 + 1);

constexpr std::wstring_view definitionMark = L"scrdef ";
constexpr std::wstring_view blanks = L" \t";

// What counts of a line: without leading blanks and without its comment.
// REQUIRED: the comment begins at the first "//", also inside a quoted string.
std::wstring_view withoutBlanksAndComment(std::wstring_view line)
{
    while (!line.empty() && (line.front() == L' ' || line.front() == L'\t'))
        line.remove_prefix(1);
    for (std::size_t slash = line.find(L'/'); slash != line.npos; slash = line.find(L'/', slash + 1))
        if (slash + 1 < line.size() && line[slash + 1] == L'/')
            return line.substr(0, slash);
    return line;
}

bool opensDefinition(std::wstring_view line)
{
    // No other characters become an s and a c in lower case.
    if (line.size() < definitionMark.size() || (line[0] != L's' && line[0] != L'S') ||
        (line[1] != L'c' && line[1] != L'C'))
        return false;
    return string(std::wstring(line.substr(0, definitionMark.size()))).lower() == definitionMark;
}

// Cuts the declarations out of `text`, which begins behind the opening bracket, and gives what follows the
// closing one.
std::wstring_view cutParameters(std::wstring_view text, std::vector<string>& parameters)
{
    bool inString = false;
    bool escaped = false;
    std::wstring declaration;
    const auto add = [&] {
        if (!declaration.empty())
            parameters.emplace_back(declaration);
        declaration.clear();
    };
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        const wchar_t c = text[at];
        if (c == L')' && !inString) {
            ++at;
            break;
        }
        if (c == L',' && !inString) {
            add();
            continue;
        }
        if (c == L'\\' && inString) {
            // REQUIRED: the escape is never taken back, so that no later quotation mark of the definition
            // counts.
            escaped = true;
            continue;
        }
        if (c == L'"' && !escaped)
            inString = !inString;
        declaration += c;
    }
    add();
    if (parameters.size() == 1) {
        parameters.front().deleteLeading(blanks).deleteTrailing(blanks);
        if (parameters.front().empty())
            parameters.clear();
    }
    return text.substr(at);
}

bool isSameName(std::wstring_view written, const string& lowered)
{
    return written.size() == lowered.size() && string(std::wstring(written)).lower() == lowered;
}

// A definition cut in three.
struct outline
{
    // `text` is not empty.
    explicit outline(std::wstring_view text)
    {
        text = trimmed(text, blanks);
        const std::size_t nameEnd = std::min(text.find(L'('), text.size());
        name = text.substr(0, nameEnd);
        text.remove_prefix(nameEnd);
        if (!text.empty())
            behind = text.substr(1);
    }

    bool hasBlankInName() const { return name.find(L' ') != name.npos; }
    void cutInto(scriptDefinition& definition) const
    {
        definition.parameters.clear();
        definition.body = string(std::wstring(cutParameters(behind, definition.parameters)));
    }

    std::wstring_view name;
    std::wstring_view behind; // the opening bracket
};

} // namespace

void scramble(binaryBuffer& text)
{
    text.xxor(scrambleKey);
}

bool isScrambled(const file& scriptFile)
{
    return scriptFile.entryName().extension(0).lower() == L"qxsscr";
}

bool readScriptText(const file& scriptFile, binaryBuffer& text)
{
    const bool isRead = text.readFromFile(scriptFile, [] { return false; });
    if (isScrambled(scriptFile))
        scramble(text);
    return isRead;
}

scrdefReader::scrdefReader(binaryBuffer text, const file& source) : mSource(source), mText(std::move(text))
{
    system& current = system::current();
    for (std::size_t byte = 0; byte < mCharacters.size(); ++byte) {
        wchar_t c = 0;
        if (!current.widenByte(static_cast<unsigned char>(byte), c))
            mCharacters[byte] = endsRun;
        else
            mCharacters[byte] = static_cast<std::uint32_t>(c) | (c == L'\r' || c == L'\n' ? endsRun : 0);
    }
}

void scrdefReader::fill()
{
    if (mText.logicalLength() == 0)
        mText.readFromFile(mSource, [] { return false; });
}

void scrdefReader::rewind()
{
    mOffset = 0;
    mLinesBefore = 0;
    mIsAhead = false;
}

// Appends to the line what comes before the next line end.
void scrdefReader::widenRun()
{
    const char* const bytes = mText.data();
    const std::size_t size = mText.logicalLength();
    std::array<wchar_t, 256> run; // appended as a whole: one by one costs five times as much
    std::size_t count = 0;
    do {
        for (count = 0; count < run.size() && mOffset < size; ++mOffset) {
            const std::uint32_t c = mCharacters[static_cast<unsigned char>(bytes[mOffset])];
            if (c & endsRun)
                break;
            run[count++] = static_cast<wchar_t>(c);
        }
        mLine.append(run.data(), count);
    } while (count == run.size());
}

// Reads the next line that is not empty. False at the end.
bool scrdefReader::readLine()
{
    mLine.clear();
    while (mLine.empty() && mOffset < mText.logicalLength()) {
        widenRun();
        mLineNumber = mLinesBefore + 1;
        if (mOffset == mText.logicalLength())
            break;
        const char* const end = mText.data() + mOffset++;
        const std::uint32_t c = mCharacters[static_cast<unsigned char>(*end)];
        if (c == endsRun)
            throw false;
        const bool endsCrLf = c == (endsRun | L'\n') && mOffset > 1 && end[-1] == '\r';
        if (!endsCrLf)
            ++mLinesBefore;
    }
    return !mLine.empty();
}

bool scrdefReader::readText(std::wstring_view& text)
{
    mDefinition.clear();
    bool isOpen = false;
    while (mIsAhead || readLine()) {
        std::wstring_view content = withoutBlanksAndComment(mLine);
        if (opensDefinition(content)) {
            mIsAhead = isOpen;
            if (isOpen)
                break;
            isOpen = true;
            mDefinitionLine = mLineNumber;
            content.remove_prefix(definitionMark.size());
        }
        if (isOpen)
            mDefinition.append(content);
    }
    text = mDefinition;
    return isOpen;
}

definitionResult readDefinition(scrdefReader& reader, scriptDefinition& definition)
{
    definition = scriptDefinition();
    std::wstring_view text;
    if (!reader.readText(text))
        return definitionResult::atEnd;
    definition.line = reader.lineNumber();
    if (text.empty())
        return definitionResult::withoutText;
    const outline parts(text);
    if (parts.hasBlankInName())
        return definitionResult::blankInName;
    definition.name = string(std::wstring(parts.name));
    parts.cutInto(definition);
    return definitionResult::read;
}

namespace
{

// Calls `use` with each definition that can be cut, in order.
template <class Use>
void visitDefinitions(scrdefReader& reader, const Use& use)
{
    try {
        reader.rewind();
        reader.fill();
        for (std::wstring_view text; reader.readText(text) && !text.empty();) {
            const outline parts(text);
            if (parts.hasBlankInName())
                return;
            use(parts);
        }
    } catch (const exception& caught) {
        throw readFileException(reader.source(), &caught);
    } catch (...) {
        throw readFileException(reader.source(), nullptr);
    }
}

// Puts a later definition of a name over the earlier ones, whose further declarations stay.
void cutOver(const outline& parts, scriptDefinition& earlier)
{
    std::vector<string> parameters;
    parameters.swap(earlier.parameters);
    parts.cutInto(earlier);
    for (std::size_t i = earlier.parameters.size(); i < parameters.size(); ++i)
        earlier.parameters.push_back(std::move(parameters[i]));
}

} // namespace

bool findDefinition(scrdefReader& reader, const string& name, scriptDefinition& found)
{
    const string wanted = name.lower();
    bool isFound = false;
    visitDefinitions(reader, [&](const outline& parts) {
        if (!isSameName(parts.name, wanted))
            return;
        isFound = true;
        cutOver(parts, found);
    });
    return isFound;
}

void findDefinitions(scrdefReader& reader, definitionTable& found)
{
    visitDefinitions(reader, [&](const outline& parts) {
        cutOver(parts, found[string(std::wstring(parts.name)).toLower()]);
    });
}

} // namespace qx::script
