// Sections of keys and values: look-ups, and a reader of its own.
#include "scratchDirectory.h"

#include <qxConfigReader.h>

#include <gtest/gtest.h>

#include <chrono>

namespace
{

constexpr int replacing = qx::configCreate | qx::configReplace;

qx::string valueOf(const qx::configStructure& store, const wchar_t* section, const wchar_t* key,
                   bool caseSensitive)
{
    qx::string value = L"(none)";
    const std::size_t index = store.sectionIdx(section, caseSensitive);
    if (index != qx::configStructure::notFound)
        store.section(index).getValue(key, value, caseSensitive);
    return value;
}

} // namespace

TEST(configStructure, look_ups_and_modes_with_and_without_case)
{
    qx::configStructure store;
    store.section(L"Tools", true, true).setValue(L"Key", L"1", true, replacing);
    store.section(L"TOOLS", true, true).setValue(L"key", L"2", true, replacing);
    store.section(L"Tools", true, true).setValue(L"KEY", L"3", true, replacing);
    store.section(L"", true, true).setValue(L"loose", L"4", true, replacing);
    EXPECT_EQ(valueOf(store, L"Tools", L"Key", true), L"1");
    EXPECT_EQ(valueOf(store, L"Tools", L"KEY", true), L"3");
    EXPECT_EQ(valueOf(store, L"tools", L"Key", true), L"(none)");
    EXPECT_EQ(valueOf(store, L"tools", L"key", false), L"1");
    EXPECT_EQ(valueOf(store, L"", L"LOOSE", false), L"4");
    EXPECT_EQ(store.section(L"TOOLS", false, false).name(), L"Tools");
    EXPECT_THROW(store.section(L"none", false, false), bool);
    EXPECT_THROW(store.section(3), bool);

    qx::configSection& section = store.section(0);
    EXPECT_FALSE(section.setValue(L"a", L"1", true, qx::configReplace));
    EXPECT_TRUE(section.setValue(L"a", L"2", true, qx::configCreate));
    EXPECT_FALSE(section.setValue(L"A", L"3", false, qx::configCreate));
    EXPECT_EQ(valueOf(store, L"", L"a", true), L"2");
    EXPECT_TRUE(section.setValue(L"A", L"4", false, replacing));
    EXPECT_FALSE(section.setValue(L"a", L"5", true, 0));
    EXPECT_EQ(valueOf(store, L"", L"a", true), L"4");
    EXPECT_EQ(section.size(), 2u);
}

// Each count of names twice over, so that the step from walking to hashing is crossed with look-ups in
// between.
TEST(configStructure, many_names_behave_as_few)
{
    qx::configStructure store;
    qx::configSection& section = store.section(L"Many", false, true);
    for (int i = 0; i < 40; ++i) {
        section.setValue(qx::string::sformat(L"Key%d", i), qx::string::sformat(L"%d", i), true, replacing);
        section.setValue(qx::string::sformat(L"KEY%d", i), L"later", true, replacing);
        store.section(qx::string::sformat(L"Section%d", i), false, true);
        for (int k = 0; k <= i; ++k) {
            const qx::string number = qx::string::sformat(L"%d", k);
            ASSERT_EQ(valueOf(store, L"many", (L"key" + number).c_str(), false), number) << i;
            ASSERT_EQ(valueOf(store, L"Many", (L"KEY" + number).c_str(), true), L"later") << i;
            ASSERT_EQ(store.section(L"SECTION" + number, false, false).name(), L"Section" + number) << i;
        }
    }
}

TEST(configStructure, twenty_thousand_sections_are_no_burden)
{
    const auto start = std::chrono::steady_clock::now();
    qx::configStructure store;
    for (int i = 0; i < 20000; ++i)
        store.section(qx::string::sformat(L"Function%d", i), false, true);
    EXPECT_EQ(store.sectionCount(), 20001u);
    // A walk over all names for each of them would take minutes.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(configReader, separators_positions_and_failures_of_a_reader_of_its_own)
{
    class ownReader : public qx::keyValueFileReader
    {
    public:
        explicit ownReader(const qx::file& file) : keyValueFileReader(file, L"->", qx::string(), qx::string())
        {}
        bool readKey(qx::string& key, qx::string& value) override
        {
            if (key == L"last")
                throw false;
            return keyValueFileReader::readKey(key, value);
        }
        using keyValueFileReader::rewind;
    };
    const scratchDirectory scratch;
    scratch.write("pairs", "a -> 1 -> 2\n;b->3\n[s]\nlast->4\n");
    ownReader reader(qx::file(scratch.name("pairs")));
    qx::string section;
    qx::string key;
    qx::string value;
    EXPECT_FALSE(reader.readKey(key, value) || reader.readSection(section)) << "not open yet";
    ASSERT_TRUE(reader.open());
    const auto next = [&] { return reader.readKey(key, value) ? key + L"=" + value : qx::string(L"end"); };
    EXPECT_EQ(next(), L"a=1 -> 2");
    EXPECT_EQ(next(), L";b=3");
    EXPECT_EQ(next(), L"end");
    EXPECT_TRUE(reader.readSection(section));
    EXPECT_EQ(section, L"s");
    reader.rewind(13); // within the second line
    EXPECT_EQ(next(), L"b=3");
    reader.rewind(-1);
    EXPECT_EQ(next(), L"a=1 -> 2");
    reader.rewind(1000);
    EXPECT_EQ(next(), L"end");
    qx::configStructure store;
    EXPECT_THROW(reader.fill(store), bool);
    EXPECT_EQ(valueOf(store, L"s", L"last", true), L"4");
    EXPECT_EQ(next(), L"end") << "closed by the failure";
}
