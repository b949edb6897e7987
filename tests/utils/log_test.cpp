// Loggers write to the host's sink, at the host's level.
#include "qxLog.h"

#include <gtest/gtest.h>

namespace
{

class recorder final : public qxlog::sink
{
public:
    void write(qxlog::level severity, const qx::string& logger, const qx::string& text) override
    {
        lines.push_back(qx::string::sformat(L"%d %s: %s", static_cast<int>(severity), logger, text));
    }

    std::vector<qx::string> lines;
};

} // namespace

TEST(log, writes_up_to_the_level_and_is_off_by_default)
{
    recorder sink;
    qxlog::sink* const before = qxlog::logManager::setSink(&sink);
    const qx::refPtr<qxlog::logger> logger = qxlog::logManager::getLogger(L"a::b");
    EXPECT_EQ(qxlog::logManager::currentLevel(), qxlog::level::off);
    logger->log_debug(L"unheard");
    qxlog::logManager::setLevel(qxlog::level::debug);
    logger->log_trace(L"too fine");
    logger->log_debug(L"%d of %s", 1, L"two");
    qxlog::logManager::setLevel(qxlog::level::trace);
    logger->log_trace(L"fine");
    EXPECT_EQ(qxlog::logManager::setSink(nullptr), &sink);
    logger->log_trace(L"to nowhere");
    qxlog::logManager::setLevel(qxlog::level::off);
    qxlog::logManager::setSink(before);
    EXPECT_EQ(sink.lines, (std::vector<qx::string>{L"4 a::b: 1 of two", L"5 a::b: fine"}));
}
