// The start of the program in a process of its own, from its birth until the main window has been painted and
// waits for the user, without the four pauses in which the splash screen is to be read. Needs a display.
#include "shell/Startup.h"

#include <QProcess>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr const char *childArgument = "--start-up";
constexpr double pausesSeconds = 4 * 0.3;

double now()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// Tells the time as soon as nothing is left to do, and is gone.
void tellTheTime()
{
    QTimer::singleShot(0, [] {
        std::printf("ready at %.6f\n", now());
        std::fflush(stdout);
        std::_Exit(0);
    });
}

void startUp(benchmark::State &state)
{
    for (auto _ : state) {
        QProcess program;
        const double born = now();
        program.start("/proc/self/exe", {childArgument});
        program.waitForFinished();
        const QByteArray told = program.readAllStandardOutput();
        const qsizetype at = told.indexOf("ready at ");
        if (at < 0) {
            state.SkipWithError("the program did not start");
            break;
        }
        state.SetIterationTime(std::atof(told.mid(at + 9).constData()) - born - pausesSeconds);
    }
}
BENCHMARK(startUp)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    if (argc > 1 && std::strcmp(argv[1], childArgument) == 0) {
        prepareApplication();
        return runApplication(argc, argv, tellTheTime);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
