// The pointer classes and their reported checks.
#include "qxAutoPtr.h"
#include "qxRefPtr.h"
#include "qxSharedPtr.h"

#include <gmock/gmock.h>

namespace
{

// Counts the objects that live, and its own references.
struct counted
{
    static inline int alive = 0;

    counted() { ++alive; }
    ~counted() { --alive; }
    void addRef() { ++references; }
    void release()
    {
        if (--references == 0)
            delete this;
    }

    int references = 0;
    int field = 7;
};

qx::string report; // of the last failed check

} // namespace

TEST(pointers, count_the_owners_of_their_object)
{
    {
        qx::sharedPtr<counted> first(new counted);
        qx::sharedPtr<counted> second = first;
        const qx::const_sharedPtr<counted> reader(second);
        EXPECT_EQ(reader.useCount(), 3u);
        EXPECT_EQ(reader->field, 7);
        const qx::sharedPtr<counted>& self = second;
        second = self;
        first = qx::sharedPtr<counted>();
        EXPECT_EQ(first.useCount(), 0u);
        const qx::sharedPtr<counted> moved = std::move(second);
        EXPECT_FALSE(second); // NOLINT(bugprone-use-after-move)
        EXPECT_EQ(moved.useCount(), 2u);
    }
    EXPECT_EQ(qx::const_sharedPtr<counted>().useCount(), 0u);
    EXPECT_EQ(counted::alive, 0);
    {
        const qx::refPtr<counted> first(new counted);
        qx::refPtr<counted> second = first;
        qx::refPtr<counted> moved = std::move(second);
        EXPECT_EQ(first->references, 2);
        moved = qx::refPtr<counted>();
        EXPECT_EQ(first->references, 1);
    }
    EXPECT_EQ(counted::alive, 0);
    {
        qx::autoPtr<counted> owner(new counted);
        owner.reset(new counted);
        EXPECT_EQ(counted::alive, 1);
        qx::autoPtr<counted> next = std::move(owner);
        EXPECT_FALSE(owner); // NOLINT(bugprone-use-after-move)
        delete next.release();
        EXPECT_EQ(counted::alive, 0);
        next.reset(new counted);
    }
    EXPECT_EQ(counted::alive, 0);
}

TEST(pointers, null_dereference_is_reported)
{
    const qx::assertHandler before = qx::setAssertHandler([](const qx::string& text) { report = text; });
    EXPECT_THROW(*qx::const_sharedPtr<counted>(), bool);
    EXPECT_THAT(report,
                testing::StartsWith(
                    L"Assertion failed:\nm_p != nullptr\n\nFile: libs/utils/inc/qxSharedPtr\nLine: "));
    EXPECT_THROW(qx::refPtr<counted>()->field = 1, bool);
    EXPECT_THAT(report, testing::HasSubstr(L"m_p != NULL\n\nFile: libs/utils/inc/qxRefPtr\n"));
    EXPECT_THROW(qx::autoPtr<counted>()->field = 1, bool);
    EXPECT_THAT(report, testing::HasSubstr(L"m_p != NULL\n\nFile: libs/utils/inc/qxAutoPtr\n"));
    EXPECT_THROW(qx::assertionFailed(std::wstring(2000, L'x').c_str(), L"path", 1), bool);
    EXPECT_EQ(report.size(), 1024u);
    qx::setAssertHandler(before);
}
