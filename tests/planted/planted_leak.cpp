// Forgets objects, in a program without a window.
#include <QCoreApplication>
#include <QObject>

#include <iostream>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    for (int i = 0; i < 10; ++i) // a last one may still be in a register
        std::cout << (new QObject)->objectName().size() << '\n';
}
