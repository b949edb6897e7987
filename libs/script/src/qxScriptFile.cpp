#include "qxScriptFile.h"

#include "qxException.h"
#include "qxSystem.h"

namespace qx::script
{

namespace
{

constexpr char scrambleKey[] = "k2#Vq9!xLm4$Zt7&Rb1~Yw6*Hs3%Pn8^Jd5(Cg0)Fu_+Ea=?";
static_assert(sizeof scrambleKey == 48 + 1);

constexpr std::wstring_view definitionMark = L"scrdef ";

bool isLineEnd(wchar_t c)
{
    return c == L'\r' || c == L'\n';
}

// What counts of a line: without leading blanks and without its comment.
// REQUIRED: the comment begins at the first "//", also inside a quoted string.
std::wstring_view withoutBlanksAndComment(std::wstring_view line)
{
    line.remove_prefix(std::min(line.find_first_not_of(L" \t"), line.size()));
    return line.substr(0, line.find(L"//"));
}

bool opensDefinition(std::wstring_view line)
{
    return line.size() >= definitionMark.size() &&
           string(line.substr(0, definitionMark.size())).lower() == definitionMark;
}

// Collects the text of the next definition, which may be empty. False when there is none.
bool collectDefinition(scrdefReader& reader, string& text, std::size_t& lineNumber)
{
    bool isOpen = false;
    string line;
    for (scrdefReader::place before = reader.position(); reader.readLine(line); before = reader.position()) {
        std::wstring_view content = withoutBlanksAndComment(line);
        if (opensDefinition(content)) {
            if (isOpen) {
                reader.setPosition(before);
                return true;
            }
            isOpen = true;
            lineNumber = reader.lineNumber();
            content.remove_prefix(definitionMark.size());
        }
        if (isOpen)
            text += content;
    }
    return isOpen;
}

// Cuts the declarations out of `text`, which begins behind the opening bracket, and gives what follows the
// closing one.
std::wstring_view cutParameters(std::wstring_view text, std::vector<string>& parameters)
{
    bool inString = false;
    bool escaped = false;
    bool startsNew = true;
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        const wchar_t c = text[at];
        if (c == L')' && !inString) {
            ++at;
            break;
        }
        if (c == L',' && !inString) {
            startsNew = true;
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
        if (startsNew) {
            parameters.emplace_back();
            startsNew = false;
        }
        parameters.back() += c;
    }
    if (parameters.size() == 1) {
        parameters.front().deleteLeading(L" \t").deleteTrailing(L" \t");
        if (parameters.front().empty())
            parameters.clear();
    }
    return text.substr(at);
}

void store(const scriptDefinition& definition, configStructure& definitions)
{
    constexpr int mode = configCreate | configReplace;
    configSection& section = definitions.section(definition.name, false, true);
    std::size_t number = 0;
    for (const string& parameter : definition.parameters)
        section.setValue(parameterKey(++number), parameter, false, mode);
    section.setValue(bodyKey, definition.body, false, mode);
}

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

string parameterKey(std::size_t number)
{
    return L"parameter" + std::to_wstring(number);
}

scrdefReader::scrdefReader(binaryBuffer text, const file& source) : mSource(source), mText(std::move(text))
{
    system& current = system::current();
    mCharacters.fill(0);
    for (std::size_t byte = 0; byte < mCharacters.size(); ++byte)
        mHasCharacter[byte] = current.widenByte(static_cast<unsigned char>(byte), mCharacters[byte]);
}

void scrdefReader::fill()
{
    if (mText.logicalLength() == 0)
        mText.readFromFile(mSource, [] { return false; });
}

bool scrdefReader::readLine(string& line)
{
    line.clear();
    const char* const bytes = mText.data();
    const std::size_t size = mText.logicalLength();
    while (mPosition.offset < size) {
        const std::size_t offset = mPosition.offset++;
        const auto byte = static_cast<unsigned char>(bytes[offset]);
        if (!mHasCharacter[byte])
            throw false;
        const wchar_t c = mCharacters[byte];
        if (!isLineEnd(c)) {
            if (line.empty())
                mLineNumber = mPosition.line;
            line += c;
            continue;
        }
        const bool endsCrLf = c == L'\n' && offset > 0 && bytes[offset - 1] == '\r';
        if (!endsCrLf)
            ++mPosition.line;
        if (!line.empty())
            return true;
    }
    return !line.empty();
}

definitionResult readDefinition(scrdefReader& reader, scriptDefinition& definition)
{
    definition = scriptDefinition();
    string text;
    if (!collectDefinition(reader, text, definition.line))
        return definitionResult::atEnd;
    if (text.empty())
        return definitionResult::withoutText;
    text.deleteLeading(L" \t").deleteTrailing(L" \t");
    const std::size_t nameEnd = std::min(text.find(L'('), text.size());
    if (text.find(L' ') < nameEnd)
        return definitionResult::blankInName;
    definition.name = text.substr(0, nameEnd);
    if (nameEnd < text.size()) {
        const std::wstring_view behind = std::wstring_view(text).substr(nameEnd + 1);
        definition.body = string(cutParameters(behind, definition.parameters));
    }
    return definitionResult::read;
}

void readDefinitions(scrdefReader& reader, configStructure& definitions)
{
    try {
        reader.setPosition(scrdefReader::place());
        reader.fill();
        scriptDefinition definition;
        while (readDefinition(reader, definition) == definitionResult::read)
            store(definition, definitions);
    } catch (const exception& caught) {
        throw readFileException(reader.source(), &caught);
    } catch (...) {
        throw readFileException(reader.source(), nullptr);
    }
}

} // namespace qx::script
