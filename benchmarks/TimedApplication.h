#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QString>

#include <vector>

// An application that measures for how long its thread does not come back to its event loop: from the moment
// at which an event is handed out until it is done, or until the handler itself lets further events through
// (a dialog, a progress window). What the user feels as a standstill is the longest of these times.
class TimedApplication : public QApplication
{
public:
    TimedApplication(int &argc, char **argv);

    bool notify(QObject *receiver, QEvent *event) override;

    struct Standstill
    {
        double milliseconds = 0.0;
        QString event; // its type and the class of its receiver
    };
    // The longest one since the last call.
    Standstill takeLongest();

private:
    void begin(const QString &event);
    void end();

    std::vector<QString> handled; // events that are being handled, the outermost first
    bool running = false;
    QString present;
    QElapsedTimer clock;
    Standstill longest;
};
