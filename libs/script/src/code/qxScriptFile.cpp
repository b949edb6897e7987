#include "code/qxScriptFile.h"

#include "qxException.h"
#include "qxSystem.h"
#include "qxTextView.h"

#include <algorithm>
#include <cstring>

namespace qx::script
{

namespace
{

constexpr char scrambleKey[] = "k2#Vq9!xLm4$Zt7&Rb1~Yw6*Hs3%Pn8^Jd5(Cg0)Fu_+Ea=?";
static_assert(sizeof scrambleKey == 48 + 1);

constexpr std::wstring_view definitionMark = L"scrdef ";
constexpr std::wstring_view blanks = L" \t";
constexpr std::size_t firstBeyondAscii = 128;

// What counts of a line: without leading blanks and without its comment.
// REQUIRED: the comment begins at the first "//", also inside a quoted string.
template <class Char>
std::basic_string_view<Char> withoutBlanksAndComment(std::basic_string_view<Char> line)
{
    constexpr Char slash = '/';
    while (!line.empty() && (line.front() == ' ' || line.front() == '\t'))
        line.remove_prefix(1);
    for (std::size_t at = line.find(slash); at != line.npos; at = line.find(slash, at + 1))
        if (at + 1 < line.size() && line[at + 1] == slash)
            return line.substr(0, at);
    return line;
}

bool opensDefinition(std::wstring_view line)
{
    // No characters but capitals become letters of the mark in lower case.
    const auto isSame = [](wchar_t mark, wchar_t written) {
        return mark == (written >= L'A' && written <= L'Z' ? written + (L'a' - L'A') : written);
    };
    return line.size() >= definitionMark.size() &&
           std::equal(definitionMark.begin(), definitionMark.end(), line.begin(), isSame);
}

// Cuts the declarations out of `text`, which begins behind the opening bracket, and gives what follows the
// closing one. The strings that are in the list are used again.
std::wstring_view cutParameters(std::wstring_view text, std::vector<string>& parameters)
{
    for (string& parameter : parameters)
        parameter.clear();
    bool inString = false;
    bool escaped = false;
    std::size_t count = 0; // of the declarations that are complete
    std::size_t at = 0;
    std::size_t start = 0; // of what is not yet in the declaration
    const auto store = [&] {
        if (at > start) {
            if (count == parameters.size())
                parameters.emplace_back();
            parameters[count].append(text.substr(start, at - start));
        }
        start = at + 1;
    };
    const auto complete = [&] {
        store();
        if (count < parameters.size() && !parameters[count].empty())
            ++count;
    };
    for (; at < text.size(); ++at) {
        const wchar_t c = text[at];
        if (c == L'"') {
            if (!escaped)
                inString = !inString;
        } else if (inString) {
            if (c == L'\\') {
                // REQUIRED: the escape is never taken back, so that no later quotation mark of the definition
                // counts.
                escaped = true;
                store();
            }
        } else if (c == L')') {
            break;
        } else if (c == L',') {
            complete();
        }
    }
    complete();
    parameters.resize(count);
    if (count == 1) {
        parameters.front().deleteLeading(blanks).deleteTrailing(blanks);
        if (parameters.front().empty())
            parameters.clear();
    }
    return text.substr(std::min(at + 1, text.size()));
}

bool isSameName(std::wstring_view written, const string& lowered)
{
    return written.size() == lowered.size() && string(std::wstring(written)).lower() == lowered;
}

// The number of bytes in front of the first line end; `size` where there is none.
std::size_t lengthOfLine(const char* bytes, std::size_t size)
{
    for (const char lineEnd : {'\n', '\r'})
        if (const void* const end = std::memchr(bytes, lineEnd, size))
            size = static_cast<std::size_t>(static_cast<const char*>(end) - bytes);
    return size;
}

bool isAscii(const char* bytes, std::size_t size)
{
    std::uint64_t all = 0;
    for (; size >= sizeof all; bytes += sizeof all, size -= sizeof all) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, bytes, sizeof eight);
        all |= eight;
    }
    for (; size != 0; ++bytes, --size)
        all |= static_cast<unsigned char>(*bytes);
    return (all & 0x8080'8080'8080'8080u) == 0;
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
        definition.body.assign(cutParameters(behind, definition.parameters));
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
    for (std::uint32_t byte = 0; byte < mCharacters.size(); ++byte) {
        wchar_t c = 0;
        if (!current.widenByte(static_cast<unsigned char>(byte), c))
            mCharacters[byte] = endsRun;
        else
            mCharacters[byte] = static_cast<std::uint32_t>(c) | (c == L'\r' || c == L'\n' ? endsRun : 0);
        const std::uint32_t plain = byte | (byte == '\r' || byte == '\n' ? endsRun : 0);
        mIsPlain = mIsPlain && (byte >= firstBeyondAscii || mCharacters[byte] == plain);
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

// Reads up to the next line end if it is near and all in front of it is ASCII that stands for itself: most
// lines of most files. They are cut before they are widened, many bytes at a time.
bool scrdefReader::readShortRun()
{
    const char* const bytes = mText.data() + mOffset;
    const std::size_t left = mText.logicalLength() - mOffset;
    const std::size_t size = lengthOfLine(bytes, std::min(left, shortLine));
    if (!mIsPlain || (size == shortLine && size < left) || !isAscii(bytes, size))
        return false;
    mOffset += size;
    const std::string_view content = withoutBlanksAndComment(std::string_view(bytes, size));
    const std::size_t behind = left - static_cast<std::size_t>(content.data() - bytes); // what may be read
    wchar_t* const wide = mShortLine.data();
    std::size_t i = 0;
    for (; i < content.size() && i + widenedAtOnce <= behind; i += widenedAtOnce) {
        std::array<unsigned char, widenedAtOnce>
            narrow; // of its own, so that the compiler sees what may be done
        std::memcpy(narrow.data(), content.data() + i, narrow.size());
        for (std::size_t k = 0; k < widenedAtOnce; ++k)
            wide[i + k] = narrow[k];
    }
    for (; i < content.size(); ++i)
        wide[i] = static_cast<unsigned char>(content[i]);
    mContent = std::wstring_view(wide, content.size());
    return true;
}

// Reads up to the next line end.
void scrdefReader::readRun()
{
    mLongLine.clear();
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
        mLongLine.append(run.data(), count);
    } while (count == run.size());
    mContent = withoutBlanksAndComment(std::wstring_view(mLongLine));
}

// Reads the next line that is not empty. False at the end.
bool scrdefReader::readLine()
{
    bool isEmpty = true;
    while (isEmpty && mOffset < mText.logicalLength()) {
        const std::size_t start = mOffset;
        if (!readShortRun())
            readRun();
        isEmpty = mOffset == start;
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
    return !isEmpty;
}

bool scrdefReader::readText(std::wstring_view& text)
{
    mDefinition.clear();
    bool isOpen = false;
    while (mIsAhead || readLine()) {
        std::wstring_view content = mContent;
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

definitionResult readDefinition(scrdefReader& reader, std::wstring_view& text, std::wstring_view& name)
{
    if (!reader.readText(text))
        return definitionResult::atEnd;
    if (text.empty())
        return definitionResult::withoutText;
    const outline parts(text);
    name = parts.name;
    return parts.hasBlankInName() ? definitionResult::blankInName : definitionResult::read;
}

definitionResult readDefinition(scrdefReader& reader, scriptDefinition& definition)
{
    std::wstring_view text;
    std::wstring_view name;
    const definitionResult result = readDefinition(reader, text, name);
    definition.line = reader.lineNumber();
    if (result == definitionResult::read)
        cutDefinition(text, definition);
    return result;
}

void cutDefinition(std::wstring_view text, scriptDefinition& definition)
{
    const outline parts(text);
    definition.name.assign(parts.name);
    parts.cutInto(definition);
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
