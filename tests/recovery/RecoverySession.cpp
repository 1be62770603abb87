#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "objects/manager/ImageManager.h"
#include "recovery/RecoveryJournal.h"

#include <QApplication>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <random>

// recovery_session FOLDER SEED: traces lines without end, to be killed. Prints a line after each step: its
// number, the time on the monotonic clock in ms, and how many segments and points there are then. The number
// is also the label of the contours' second fragment.

namespace {

constexpr int stepMs = 25;

class Tracing
{
public:
    Tracing(SlicedContoursObject &newContours, unsigned seed)
        : contours(newContours)
        , random(seed)
    {
        contours.newFragment("lines");
        contours.newFragment("0");
    }

    void step()
    {
        act();
        contours.fragment(1)->setLabel(QString::number(++steps));
        int points = 0;
        const SlicedContoursFragment &lines = *contours.fragment(0);
        for (int i = 0; i < lines.segmentCount(); ++i)
            points += lines.segment(i)->pointCount();
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        std::printf(
            "%d %lld %d %d\n", steps,
            static_cast<long long>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count()),
            lines.segmentCount(), points);
        std::fflush(stdout);
    }

private:
    void act()
    {
        SlicedContoursFragment &lines = *contours.fragment(0);
        const auto choice = random() % 20;
        if (lines.segmentCount() == 0 || choice == 0)
            lines.newSegment({millimetres(), millimetres()}, static_cast<float>(random() % 24));
        else if (choice == 1 && lines.segmentCount() > 5)
            delete lines.segment(static_cast<int>(random() % 5));
        else
            lines.segment(lines.segmentCount() - 1)->addPointBack({millimetres(), millimetres()});
    }
    double millimetres() { return static_cast<double>(random() % 200000) / 1000; }

    SlicedContoursObject &contours;
    std::mt19937 random;
    int steps = 0;
};

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_CONFIG_HOME", argv[1]); // no settings that another session might lock
    QApplication application(argc, argv);
    ImageManager manager(nullptr);
    auto *contours = new SlicedContoursObject("traced");
    Tracing tracing(*contours, static_cast<unsigned>(std::stoul(argv[2])));
    manager.addImage(contours);
    const RecoveryJournal journal(manager, QString::fromLocal8Bit(argv[1]));
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { tracing.step(); });
    timer.start(stepMs);
    return QApplication::exec();
}
