#pragma once

#include <QThread>
#include <QTime>

// The program's pauses go by the day's clock and end at once when they pass midnight. Call this before what
// counts on their length, or on a time of day shortly before now: it waits until midnight is not near.
inline void waitForMidnightToPass()
{
    const auto isNear = [](QTime now) { return now < QTime(0, 0, 2) || now >= QTime(23, 59, 30); };
    while (isNear(QTime::currentTime()))
        QThread::msleep(100);
}
