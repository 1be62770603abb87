// The worker writes what the owner reads, without a lock, in the thread that all workers run in.
#include "platform/WorkerThread.h"

#include <QCoreApplication>

#include <iostream>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
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
