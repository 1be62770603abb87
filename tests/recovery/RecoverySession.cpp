#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "objects/manager/ImageManager.h"
#include "recovery/RecoveryJournal.h"
#include "serialization/formats/SlicSerializer.h"

#include <QApplication>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <random>
#include <sstream>
#include <string>

// recovery_session FOLDER SEED: traces lines without end, to be killed. Prints a line after each step: its
// number, the time on the monotonic clock in ms, and a hash of the SLIC bytes of the contours. The number is
// also the label of the contours' second fragment.

namespace {

constexpr int stepMs = 25;

class Tracing
{
public:
    Tracing(SlicedContoursObject &newContours, unsigned seed)
        : contours(newContours)
        , lines(*contours.newFragment("lines"))
        , random(seed)
    {
        contours.newFragment("0");
    }

    void step()
    {
        act();
        contours.fragment(1)->setLabel(QString::number(++steps));
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        std::printf(
            "%d %lld %zu\n", steps,
            static_cast<long long>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count()),
            hash());
        std::fflush(stdout);
    }

private:
    void act()
    {
        const auto choice = random() % 20;
        if (lines.segmentCount() == 0 || choice == 0)
            lines.newSegment(anywhere(), static_cast<float>(random() % 24));
        else if (choice == 1 && lines.segmentCount() > 5)
            delete someLine();
        else if (choice == 2)
            splice(*someLine());
        else if (choice < 7)
            someLine()->addPointFront(anywhere());
        else
            someLine()->addPointBack(anywhere());
    }
    // From a point of the line to elsewhere, as a piece that mends it.
    void splice(SlicedContoursSegment &line)
    {
        auto piece = std::make_unique<SlicedContoursSegment>();
        piece->setZ(line.z());
        piece->addPointBack(line.point(static_cast<int>(below(line.pointCount()))));
        for (int i = 0; i < 3; ++i)
            piece->addPointBack(anywhere());
        if (line.replaceWith(piece.get(), nullptr))
            static_cast<void>(piece.release()); // the line has deleted it
    }
    SlicedContoursSegment *someLine() { return lines.segment(static_cast<int>(below(lines.segmentCount()))); }
    QPointF anywhere()
    {
        const double x = millimetres();
        return {x, millimetres()};
    }
    double millimetres() { return static_cast<double>(below(200000)) / 1000; }
    unsigned long below(int count) { return random() % static_cast<unsigned>(count); }
    std::size_t hash() const
    {
        std::ostringstream bytes;
        SlicSerializer().serialize(&contours, bytes);
        return std::hash<std::string>()(std::move(bytes).str());
    }

    SlicedContoursObject &contours;
    SlicedContoursFragment &lines;
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
