// Any bytes are an ini file and a cfg file: what is read has the promised shape, and is found again in the
// store.
#include "sandbox.h"

#include <qxConfigReader.h>

namespace
{

using qx::string;

void requireTrimmed(const string& text, const char* property)
{
    string trimmed = text;
    trimmed.deleteLeading(L" \t").deleteTrailing(L" \t");
    fuzzing::require(trimmed == text && text.find_first_of(L"\r\n") == text.npos, property);
}

// Reads one section, and requires its keys to be in the store.
void readPairs(qx::keyValueFileReader& reader, qx::configStructure& store, const string& section)
{
    string key;
    string value;
    string found;
    while (reader.readKey(key, value)) {
        requireTrimmed(key, "a key has no blanks around it");
        requireTrimmed(value, "a value has no blanks around it");
        fuzzing::require(!key.empty(), "a key is not empty");
        fuzzing::require(store.section(section, true, false).getValue(key, found, true), "a key is found");
        fuzzing::require(store.section(store.sectionIdx(section, false)).size() > 0, "in any case");
    }
}

template <class Reader>
void readAs()
{
    Reader reader(qx::file(L"/script/settings"));
    qx::configStructure store;
    reader.fill(store);
    fuzzing::require(reader.open(), "a file that is there opens");
    string section;
    readPairs(reader, store, section);
    while (reader.readSection(section)) {
        requireTrimmed(section, "a section has no blanks around it");
        readPairs(reader, store, section);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzzing::sandbox& entered = fuzzing::sandbox::enter();
    entered.system.setContent({reinterpret_cast<const char*>(data), size});
    readAs<qx::iniFileReader>();
    readAs<qx::cfgFileReader>();
    entered.system.setContent({});
    return 0;
}
