// The language files. Each is read when it is first asked for and again when its time has
// changed; what was read is immutable and shared, so no lock is held while a file is read
// or a text looked up.
#include "qxMessageCatalogue.h"

#include "qxBinaryBuffer.h"
#include "qxDirectory.h"
#include "qxHooks.h"
#include "qxSystem.h"
#include "qxTextLines.h"

namespace qx
{

namespace
{

constexpr const wchar_t* commonFile = L"messages";
constexpr const wchar_t* directoryBesideProgram = L"lang";

// Comments, sections and lines without an id are passed over. A later text of an id replaces the earlier.
std::unordered_map<string, string> textsOf(std::string_view bytes)
{
    takeByteOrderMark(bytes);
    const string content = string::fromUtf8(bytes);
    std::wstring_view rest = content;
    std::unordered_map<string, string> texts;
    while (!rest.empty()) {
        const std::wstring_view line = takeLine(rest, L"\n");
        std::wstring_view id;
        std::wstring_view text;
        if (line.find_first_of(L";#[") != 0 && splitPair(line, L"=", id, text))
            texts[string(std::wstring(id))] = std::wstring(text);
    }
    return texts;
}

// The language as given, then without its region.
std::vector<string> fallbacksOf(const string& language)
{
    std::vector<string> languages;
    if (!language.empty())
        languages.push_back(language);
    const std::size_t region = language.find_first_of(L"_-");
    if (region != language.npos && region > 0)
        languages.emplace_back(language.substr(0, region));
    return languages;
}

} // namespace

messageCatalogue& messageCatalogue::instance()
{
    static messageCatalogue* const catalogue = new messageCatalogue;
    return *catalogue;
}

void messageCatalogue::setLanguage(const string& language)
{
    const std::lock_guard guard(mMutex);
    mLanguage = language;
}

void messageCatalogue::setDirectories(const searchPath& directories)
{
    const std::lock_guard guard(mMutex);
    mDirectories = directories.directories();
}

bool messageCatalogue::find(const string& id, const wchar_t* language, const string& file,
                            const searchPath& path, string& text)
{
    string wanted;
    if (language) {
        wanted = language;
    } else {
        const std::lock_guard guard(mMutex);
        wanted = mLanguage;
    }
    const std::vector<string> languages = fallbacksOf(wanted);
    if (id.empty() || languages.empty())
        return false;
    const bool isFound = find(id, languages, file.empty() ? string(commonFile) : file, path, text);
    hooks::call(hooks::foreignCode); // the system may be the host's own
    return isFound;
}

bool messageCatalogue::find(const string& id, const std::vector<string>& languages, const string& stem,
                            const searchPath& path, string& text)
{
    const std::vector<string> directories = searched(path);
    for (const string& candidate : languages) {
        const string name = stem + L"." + candidate + L".ini";
        for (const string& directory : directories) {
            const shared found = load(qx::file(directory, name).fullName());
            if (!found)
                continue;
            if (const auto entry = found->texts.find(id); entry != found->texts.end()) {
                text = entry->second;
                return true;
            }
        }
    }
    return false;
}

std::vector<string> messageCatalogue::searched(const searchPath& path) const
{
    std::vector<string> directories = path.directories();
    {
        const std::lock_guard guard(mMutex);
        directories.insert(directories.end(), mDirectories.begin(), mDirectories.end());
    }
    directory program;
    if (getModulePath(string(), program))
        directories.push_back(directory(program.fullName(), directoryBesideProgram).fullName());
    return directories;
}

// Null for a file that is not there or cannot be read.
messageCatalogue::shared messageCatalogue::load(const string& fileName)
{
    fileStatus status;
    if (!system::current().status(fileName, status) || status.isDirectory)
        return nullptr;
    {
        const std::lock_guard guard(mMutex);
        const auto known = mFiles.find(fileName);
        if (known != mFiles.end() && status.lastModification == known->second->modified)
            return known->second;
    }
    binaryBuffer content;
    if (!content.readFromFile(qx::file(fileName), nullptr, binaryBuffer::mostOfSettings))
        return nullptr;
    const auto read = std::make_shared<const languageFile>(
        languageFile{status.lastModification, textsOf({content.data(), content.logicalLength()})});
    const std::lock_guard guard(mMutex);
    // Where another thread was faster with a later state, the next look at the time tells.
    return mFiles[fileName] = read;
}

} // namespace qx
