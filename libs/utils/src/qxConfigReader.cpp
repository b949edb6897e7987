// Readers of configuration files: the whole file is decoded when it is opened, and lines
// are views into that text.
#include "qxConfigReader.h"

#include "qxBinaryBuffer.h"
#include "qxSystem.h"
#include "qxTextLines.h"

#include <algorithm>

namespace qx
{

namespace
{

constexpr std::wstring_view blanks = L" \t";
constexpr std::wstring_view lineEnds = L"\r\n";

string decoded(std::string_view bytes)
{
    return takeByteOrderMark(bytes) ? string::fromUtf8(bytes) : system::current().widen(bytes);
}

// Whether a line opens a section, which is then put into `name`.
bool isSection(std::wstring_view line, std::wstring_view& name)
{
    const std::size_t end = line.find(L']');
    if (!line.starts_with(L'[') || end == line.npos)
        return false;
    name = trimmed(line.substr(1, end - 1));
    return true;
}

} // namespace

keyValueFileReader::keyValueFileReader(const file& file, const string& separator, const string& comment,
                                       const string&)
    : mFile(file), mSeparator(separator), mComment(comment)
{}

keyValueFileReader::~keyValueFileReader() = default;

bool keyValueFileReader::open()
{
    close();
    binaryBuffer bytes;
    if (!bytes.readFromFile(mFile, nullptr, binaryBuffer::mostOfSettings))
        return false;
    mContent = decoded({bytes.data(), bytes.logicalLength()});
    return true;
}

void keyValueFileReader::close()
{
    string().swap(mContent);
    mPosition = 0;
}

void keyValueFileReader::rewind(long long position)
{
    mPosition = static_cast<std::size_t>(std::clamp(position, 0LL, static_cast<long long>(mContent.size())));
}

bool keyValueFileReader::readLine(std::wstring_view& line)
{
    std::wstring_view rest = std::wstring_view(mContent).substr(mPosition);
    while (!rest.empty()) {
        const std::wstring_view found = takeLine(rest, lineEnds);
        mPosition = mContent.size() - rest.size();
        if (found.empty() || (!mComment.empty() && found.starts_with(mComment)))
            continue;
        line = found;
        return true;
    }
    return false;
}

bool keyValueFileReader::readSection(string& name)
{
    std::wstring_view line;
    std::wstring_view section;
    while (readLine(line)) {
        if (isSection(line, section)) {
            name.assign(section);
            return true;
        }
    }
    return false;
}

bool keyValueFileReader::readKey(string& key, string& value)
{
    std::wstring_view line;
    std::wstring_view nextSection;
    for (std::size_t before = mPosition; readLine(line); before = mPosition) {
        if (isSection(line, nextSection)) {
            mPosition = before;
            return false;
        }
        std::wstring_view foundKey;
        std::wstring_view foundValue;
        if (!splitPair(line, mSeparator, foundKey, foundValue))
            continue;
        key.assign(foundKey);
        value.assign(foundValue);
        return true;
    }
    return false;
}

void keyValueFileReader::fill(configStructure& store)
{
    const auto storePairs = [this, &store](const string& section) {
        string key;
        string value;
        while (readKey(key, value))
            store.section(section, true, true).setValue(key, value, true, configCreate | configReplace);
    };
    open();
    try {
        string section;
        while (readSection(section))
            storePairs(section);
        rewind(0);
        storePairs(string());
    } catch (...) {
        close();
        throw;
    }
    close();
}

iniFileReader::iniFileReader(const file& file) : keyValueFileReader(file, L"=", L";", string()) {}

cfgFileReader::cfgFileReader(const file& file) : keyValueFileReader(file, L" ", L"#", string()) {}

bool cfgFileReader::readSection(string&)
{
    return false;
}

bool cfgFileReader::readKey(string& key, string& value)
{
    std::wstring_view line;
    if (!readLine(line))
        return false;
    const std::size_t end = std::min(line.find_first_of(blanks), line.size());
    key.assign(line.substr(0, end));
    value.assign(trimmed(line.substr(end)));
    return true;
}

} // namespace qx
