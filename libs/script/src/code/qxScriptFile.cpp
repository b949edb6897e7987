// Reading of script files: bytes become lines, lines become the texts of definitions, and a text is cut into
// name, declarations and body. Most lines are ASCII, and are looked at as bytes before they are widened.
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

// Cuts the list of declarations out of a definition.
class declarationCutter
{
public:
    // `text` begins behind the opening bracket. Strings that are in `declarations` are used again.
    declarationCutter(std::wstring_view text, std::vector<string>& declarations)
        : mText(text), mDeclarations(declarations)
    {
        for (string& declaration : declarations)
            declaration.clear();
    }

    // Gives what follows the closing bracket; nothing follows where none closes.
    std::wstring_view cut()
    {
        while (mAt < mText.size() && !closes(mText[mAt]))
            ++mAt;
        finish();
        return mText.substr(std::min(mAt + 1, mText.size()));
    }

private:
    // True for the closing bracket; else the character is done with.
    bool closes(wchar_t c)
    {
        if (c == L'"')
            quote();
        else if (mInString && c == L'\\')
            escape();
        else if (!mInString && c == L',')
            comma();
        return !mInString && c == L')';
    }
    void quote()
    {
        if (!mEscaped)
            mInString = !mInString;
    }
    // REQUIRED: the escape is never taken back, so that no later quotation mark of the definition counts.
    void escape()
    {
        mEscaped = true;
        store();
    }
    void comma()
    {
        store();
        if (mCount < mDeclarations.size() && !mDeclarations[mCount].empty())
            ++mCount;
    }
    // Blanks are kept where there are several declarations.
    void finish()
    {
        comma();
        mDeclarations.resize(mCount);
        if (mCount != 1)
            return;
        mDeclarations.front().deleteLeading(blanks).deleteTrailing(blanks);
        if (mDeclarations.front().empty())
            mDeclarations.clear();
    }
    // Appends what is pending; the character at hand is dropped.
    void store()
    {
        if (mAt > mPending) {
            if (mCount == mDeclarations.size())
                mDeclarations.emplace_back();
            mDeclarations[mCount].append(mText.substr(mPending, mAt - mPending));
        }
        mPending = mAt + 1;
    }

    std::wstring_view mText;
    std::vector<string>& mDeclarations;
    bool mInString = false;
    bool mEscaped = false;
    std::size_t mCount = 0; // of the declarations that are complete
    std::size_t mAt = 0;
    std::size_t mPending = 0; // where the text begins that is not yet in a declaration
};

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
        definition.body.assign(declarationCutter(behind, definition.parameters).cut());
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

void readDefinitions(scrdefReader& reader, definitionTable& found)
{
    visitDefinitions(reader, [&](const outline& parts) {
        cutOver(parts, found[string(std::wstring(parts.name)).toLower()]);
    });
}

} // namespace qx::script
