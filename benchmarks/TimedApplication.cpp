#include "benchmarks/TimedApplication.h"

#include <QAbstractEventDispatcher>
#include <QMetaEnum>
#include <QThread>

#include <utility>

namespace {

QString nameOf(const QObject *receiver, const QEvent *event)
{
    const char *type = QMetaEnum::fromType<QEvent::Type>().valueToKey(event->type());
    return QString("%1 to %2").arg(type != nullptr ? type : "Event", receiver->metaObject()->className());
}

} // namespace

// The dispatcher tells when a loop waits or looks for events, also one that a handler runs.
TimedApplication::TimedApplication(int &argc, char **argv)
    : QApplication(argc, argv)
{
    const QAbstractEventDispatcher *loop = QAbstractEventDispatcher::instance();
    connect(loop, &QAbstractEventDispatcher::aboutToBlock, this, [this] { end(); });
    connect(loop, &QAbstractEventDispatcher::awake, this, [this] { end(); });
}

// An event that is sent while another one is handled belongs to that one, unless a loop ran between them.
bool TimedApplication::notify(QObject *receiver, QEvent *event)
{
    if (running || QThread::currentThread() != thread())
        return QApplication::notify(receiver, event);
    handled.push_back(nameOf(receiver, event));
    begin(handled.back());
    const bool result = QApplication::notify(receiver, event);
    end();
    handled.pop_back();
    if (!handled.empty())
        begin(handled.back());
    return result;
}

TimedApplication::Standstill TimedApplication::takeLongest()
{
    return std::exchange(longest, {});
}

void TimedApplication::begin(const QString &event)
{
    present = event;
    running = true;
    clock.start();
}

void TimedApplication::end()
{
    if (!std::exchange(running, false))
        return;
    const double milliseconds = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    if (milliseconds > longest.milliseconds)
        longest = {milliseconds, present};
}
