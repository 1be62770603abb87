// The main thread, which has started another program before, reads what a worker writes without a lock.
#include "platform/WorkerThread.h"

#include <QCoreApplication>
#include <QProcess>

#include <iostream>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QProcess process;
    process.start("true", QStringList());
    process.waitForFinished();
    int unguarded = 0;
    WorkerThread worker([&unguarded] {
        for (int i = 0; i < 1000; ++i)
            ++unguarded;
    });
    worker.start();
    for (int i = 0; i < 1000 && unguarded < 1000; ++i)
        QThread::usleep(10);
    worker.join();
    std::cout << unguarded << '\n';
}
