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

std::vector<qx::string> reports;

void keepReport(const qx::string& text)
{
    reports.push_back(text);
}

// The report of a failed check, which throws the bool value false.
template <class Function>
qx::string reportOf(Function function)
{
    reports.clear();
    const qx::assertHandler before = qx::setAssertHandler(keepReport);
    try {
        function();
        ADD_FAILURE() << "nothing thrown";
    } catch (bool thrown) {
        EXPECT_FALSE(thrown);
    }
    qx::setAssertHandler(before);
    return reports.size() == 1 ? reports[0] : qx::string(L"no single report");
}

} // namespace

TEST(pointers, countTheOwnersOfTheirObject)
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

TEST(pointers, nullDereferenceIsReported)
{
    const auto expectReport = [](auto function, const wchar_t* expression, const wchar_t* header) {
        EXPECT_THAT(reportOf(function),
                    testing::StartsWith(qx::string::sformat(
                        L"Assertion failed:\n%s\n\nFile: libs/utils/inc/%s\nLine: ", expression, header)));
    };
    expectReport([] { qx::sharedPtr<counted>()->field = 1; }, L"m_p != nullptr", L"qxSharedPtr");
    expectReport([] { qx::refPtr<counted>()->field = 1; }, L"m_p != NULL", L"qxRefPtr");
    expectReport([] { qx::autoPtr<counted>()->field = 1; }, L"m_p != NULL", L"qxAutoPtr");
    EXPECT_EQ(reportOf([] { qx::assertionFailed(std::wstring(2000, L'x').c_str(), L"path", 1); }).size(),
              1024u);
}
