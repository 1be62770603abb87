// The same in a main thread that has started another program before.
#include "tests/planted/RaceWithWorker.h"

#include <QCoreApplication>
#include <QProcess>

#include <iostream>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QProcess process;
    process.start("true", QStringList());
    process.waitForFinished();
    std::cout << raceWithWorker() << '\n';
}
