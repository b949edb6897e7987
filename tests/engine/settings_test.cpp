// The whole of the tests runs again with the engine's switches the other way round: CTest sets QX_SHORT_CUTS,
// QX_COMPILED or QX_FILE_CHECK for that.
#include "settingsInForce.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string_view>

namespace
{

bool says(const char* variable, std::string_view word)
{
    const char* const value = std::getenv(variable);
    return value && value == word;
}

class switchesOfTheRun final : public testing::Environment
{
public:
    void SetUp() override
    {
        qx::script::settings::setShortCuts(!says("QX_SHORT_CUTS", "off"));
        qx::script::settings::setCompiled(!says("QX_COMPILED", "off"));
        qx::script::settings::setStrictFileCheck(says("QX_FILE_CHECK", "strict"));
    }
};

const testing::Environment* const installed = testing::AddGlobalTestEnvironment(new switchesOfTheRun);

} // namespace

TEST(settings, each_switch_is_what_it_was_set_to)
{
    for (const bool on : {true, false}) {
        const shortCutsSet shortCuts(on);
        const compiledSet compiled(on);
        const strictFileCheckSet strict(!on);
        EXPECT_EQ(qx::script::settings::compiled(), on);
        EXPECT_EQ(qx::script::settings::shortCuts(), on);
        EXPECT_EQ(qx::script::settings::strictFileCheck(), !on);
    }
    EXPECT_EQ(qx::script::settings::shortCuts(), !says("QX_SHORT_CUTS", "off"));
    EXPECT_EQ(qx::script::settings::compiled(), !says("QX_COMPILED", "off"));
    EXPECT_NE(installed, nullptr);
}
