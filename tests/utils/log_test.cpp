// Loggers write to the host's sink, at the host's level.
#include "qxLog.h"

#include <gtest/gtest.h>

namespace
{

class recorder final : public qxlog::sink
{
public:
    recorder() : mBefore(qxlog::logManager::setSink(this)) {}
    ~recorder() override
    {
        qxlog::logManager::setSink(mBefore);
        qxlog::logManager::setLevel(qxlog::level::off);
    }
    void write(qxlog::level severity, const qx::string& logger, const qx::string& text) override
    {
        lines.push_back(qx::string::sformat(L"%d %s: %s", static_cast<int>(severity), logger, text));
    }

    std::vector<qx::string> lines;

private:
    qxlog::sink* mBefore;
};

} // namespace

TEST(log, isOffByDefault)
{
    EXPECT_EQ(qxlog::logManager::currentLevel(), qxlog::level::off);
    EXPECT_FALSE(qxlog::logManager::listens(qxlog::level::error));
    recorder sink;
    qxlog::logManager::getLogger(L"a")->log_debug(L"unheard");
    EXPECT_TRUE(sink.lines.empty());
}

TEST(log, writesUpToTheLevel)
{
    recorder sink;
    const qx::refPtr<qxlog::logger> logger = qxlog::logManager::getLogger(L"a::b");
    qxlog::logManager::setLevel(qxlog::level::debug);
    logger->log_trace(L"too fine");
    logger->log_debug(L"%d of %s", 1, L"two");
    qxlog::logManager::setLevel(qxlog::level::trace);
    logger->log_trace(L"fine");
    EXPECT_EQ(sink.lines, (std::vector<qx::string>{L"4 a::b: 1 of two", L"5 a::b: fine"}));

    qxlog::sink* const before = qxlog::logManager::setSink(nullptr);
    EXPECT_EQ(before, &sink);
    logger->log_trace(L"to nowhere");
    EXPECT_EQ(sink.lines.size(), 2u);
}
