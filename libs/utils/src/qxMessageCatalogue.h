// The texts of the language files.
#pragma once

#include "qxLocString.h"

#include <map>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace qx
{

// A language file is `<file>.<language>.ini`, in UTF-8, with lines `id=text`. Files are read when they are
// first asked for, and again when their time has changed, to an older one too. A language with a region
// (`de_CH`) falls back on the language without it. May be used from any thread.
class messageCatalogue
{
public:
    // The one catalogue of the process; never destroyed.
    static messageCatalogue& instance();

    // See locString.
    void setLanguage(const string& language);
    void setDirectories(const searchPath& directories);

    // The text of `id`: from the directories of `path`, then those that the host has set, then `lang` beside
    // the program. A null language is the current one; an empty `file` is `messages`. False, with `text`
    // unchanged, when no file has the id.
    bool find(const string& id, const wchar_t* language, const string& file, const searchPath& path,
              string& text);

private:
    bool find(const string& id, const std::vector<string>& languages, const string& stem,
              const searchPath& path, string& text);

    // A file as it was read last. Immutable.
    struct languageFile
    {
        long long modified; // milliseconds since 1970
        std::unordered_map<string, string> texts;
    };
    using shared = std::shared_ptr<const languageFile>;

    messageCatalogue() = default;

    std::vector<string> searched(const searchPath& path) const;
    shared load(const string& fileName);

    mutable std::mutex mMutex; // not held while a file is read
    string mLanguage;
    std::vector<string> mDirectories;
    std::map<string, shared> mFiles; // by full name
};

} // namespace qx
