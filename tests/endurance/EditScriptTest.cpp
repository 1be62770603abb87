// Some thousand random edits with fixed seeds. TEVORA_EDIT_SEED shifts the seeds, TEVORA_EDIT_BYTES makes the
// scripts longer. Each run is held to have compared something: faces, samples, outlines and files.
#include "objects/manager/ImageManager.h"
#include "tests/endurance/EditedNetwork.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/PrivateSettings.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace {

constexpr int seedCount = 8;
constexpr int defaultBytes = 10000;

class EditScriptTest : public testing::TestWithParam<int>
{
protected:
    // One application for the whole program, without a screen and without OpenGL.
    static void SetUpTestSuite()
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qunsetenv("DISPLAY");
        static const PrivateSettings settings;
        static int count = 1;
        static char name[] = "edit_script_test";
        static char *arguments[] = {name, nullptr};
        static const QApplication application(count, arguments);
    }
    static std::vector<std::uint8_t> script()
    {
        const int bytes = qEnvironmentVariableIntValue("TEVORA_EDIT_BYTES");
        const int seed = GetParam() + 1000 * qEnvironmentVariableIntValue("TEVORA_EDIT_SEED");
        return randomBytes(static_cast<unsigned>(seed),
                           static_cast<std::size_t>(bytes > 0 ? bytes : defaultBytes));
    }
    // What the workers write.
    CapturedOutput output;
};

} // namespace

TEST_P(EditScriptTest, allThatFollowsTheLinesStaysTrue)
{
    const std::vector<std::uint8_t> bytes = script();
    EditSource source(bytes);
    ImageManager manager(nullptr);
    EditedNetwork network(manager, source, true);
    try {
        network.runToTheEnd();
    } catch (const Violation &violation) {
        FAIL() << "after " << network.tally().steps << " steps: " << violation.what();
    }
    const EditedNetwork::Tally &seen = network.tally();
    EXPECT_GE(seen.steps, 800);
    EXPECT_GE(seen.faces, 10000);
    EXPECT_GE(seen.samples, 50);
    EXPECT_GE(seen.outlines, 20);
    EXPECT_GE(seen.files, 100);
    EXPECT_GE(seen.closed, 20);
}

INSTANTIATE_TEST_SUITE_P(Seeds, EditScriptTest, testing::Range(0, seedCount));
