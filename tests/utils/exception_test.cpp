// Exceptions and their chains.
#include "qxException.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

using qx::exception;
using qx::locString;

static_assert(std::is_nothrow_copy_constructible_v<exception> &&
              std::is_nothrow_copy_assignable_v<exception>);

TEST(exception, chains_are_copied_whole_and_may_be_long)
{
    auto reason = std::make_unique<qx::unexpectedErrorException>(L"%s: %d%%", L"[A] \u00E4", 7);
    exception failure(locString(nullptr, L"outer"), reason.get());
    reason.reset();
    const exception early = failure;
    for (int i = 0; i < 200000; ++i)
        failure = exception(locString(nullptr, L"link"), &failure);
    EXPECT_EQ(failure.messages().size(), 200002u);
    EXPECT_EQ(failure.messages().back().text(), L"[A] \u00E4: 7%");
    EXPECT_EQ(early.messages().size(), 2u);
    try {
        throw exception(early);
    } catch (const std::exception& caught) {
        EXPECT_STREQ(caught.what(), "outer");
    }
}
