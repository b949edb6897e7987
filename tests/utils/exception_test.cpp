// Exceptions and their chains.
#include "qxException.h"
#include "qxFile.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

using qx::exception;
using qx::locString;

static_assert(std::is_nothrow_copy_constructible_v<exception> &&
              std::is_nothrow_copy_assignable_v<exception>);

namespace
{

std::vector<qx::string> textsOf(const exception& failure)
{
    std::vector<qx::string> texts;
    for (const locString& message : failure.messages())
        texts.push_back(message.text());
    return texts;
}

} // namespace

TEST(exception, keepsTheWholeChain)
{
    auto reason = std::make_unique<qx::unexpectedErrorException>(L"%s: %d", L"reason", 7);
    const exception middle(locString(nullptr, L"middle"), reason.get());
    exception outer(locString(nullptr, L"outer"), &middle);
    reason.reset();
    const std::vector<qx::string> expected{L"outer", L"middle", L"reason: 7"};
    EXPECT_EQ(textsOf(outer), expected);

    exception other(locString(nullptr, L"other"), nullptr);
    other = outer;
    outer = exception(locString(nullptr, L"new"), &outer);
    EXPECT_EQ(textsOf(other), expected);
    EXPECT_EQ(textsOf(outer).size(), 4u);
    try {
        throw exception(other);
    } catch (const std::exception& caught) {
        EXPECT_STREQ(caught.what(), "outer");
    }
}

TEST(exception, texts)
{
    const qx::file missing(L"gone.txt");
    const auto named = [&](const wchar_t* text) {
        return qx::string(text).replace(L"%", missing.fullName()).utf8();
    };
    EXPECT_EQ(qx::fileNotFoundException(missing).what(), named(L"File % not found!"));
    EXPECT_EQ(qx::readFileException(missing, nullptr).what(), named(L"Error reading file %"));
    EXPECT_STREQ(qx::outOfMemoryException().what(), "Out of memory");
    EXPECT_STREQ(qx::unexpectedErrorException(qx::string(L"100% [A] \u00E4")).what(), "100% [A] \xC3\xA4");
}

TEST(exception, aLongChainEnds)
{
    exception failure(locString(nullptr, L"link"), nullptr);
    for (int i = 0; i < 200000; ++i)
        failure = exception(locString(nullptr, L"link"), &failure);
    EXPECT_EQ(failure.messages().size(), 200001u);
}
