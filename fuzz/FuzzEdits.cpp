// Bytes as decisions of a hand that edits contours, with everything that follows them: the first one says
// whether measurements and rasters come in, which take their time. What the edits of
// tests/endurance check is checked after each.
#include "fuzz/FuzzInput.h"
#include "objects/manager/ImageManager.h"
#include "tests/endurance/EditedNetwork.h"
#include "tests/support/PrivateSettings.h"

#include <QApplication>

#include <cstdio>

extern "C" int LLVMFuzzerInitialize(int *count, char ***arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qunsetenv("DISPLAY");
    silenceReaders();
    static const PrivateSettings settings;
    static const QApplication application(*count, *arguments);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr int inputsPerWorker = 32;
    static ImageManager manager(nullptr);
    EditSource source({data, size});
    try {
        EditedNetwork network(manager, source, source.oneIn(inputsPerWorker));
        network.runToTheEnd();
    } catch (const Violation &violation) {
        std::fprintf(stderr, "%s\n", violation.what());
        __builtin_trap();
    }
    return 0;
}
