// The main thread reads what a worker writes, without a lock.
#include "tests/planted/RaceWithWorker.h"

#include <QCoreApplication>

#include <iostream>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    std::cout << raceWithWorker() << '\n';
}
