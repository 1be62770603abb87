#pragma once

#include "demo/xtest/XTestDevice.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>

// A program started as a user would, with settings and data in a home folder of its own, and worked through
// the X server. It ends with this object at the latest.
class ProgramOnScreen
{
public:
    // In an English system without any locale.
    explicit ProgramOnScreen(const QString &home)
    {
        for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME"})
            setVariable(name, home);
        for (const char *name : {"LC_ALL", "LC_NUMERIC", "LC_MESSAGES", "LANG", "LANGUAGE"})
            setVariable(name, QString());
        setVariable("LC_CTYPE", "C.UTF-8");
    }
    ~ProgramOnScreen()
    {
        process.kill();
        process.waitForFinished();
    }
    ProgramOnScreen(const ProgramOnScreen &) = delete;
    ProgramOnScreen &operator=(const ProgramOnScreen &) = delete;

    // Before the start: a variable of its environment. An empty value removes it.
    void setVariable(const QString &name, const QString &value)
    {
        QProcessEnvironment values = process.processEnvironment();
        if (values.isEmpty())
            values = QProcessEnvironment::systemEnvironment();
        if (value.isEmpty())
            values.remove(name);
        else
            values.insert(name, value);
        process.setProcessEnvironment(values);
    }

    // Starts it and waits until a window with this title stands on the screen, and the start is over. False
    // when it does not come.
    bool start(const QString &executable, const QStringList &arguments, const QString &title)
    {
        QElapsedTimer time;
        time.start();
        process.start(executable, arguments);
        if (!process.waitForStarted() || !waitForWindow(title))
            return false;
        msToWindow = time.elapsed();
        QTest::qWait(1200);
        return true;
    }
    qint64 millisecondsToWindow() const { return msToWindow; }

    // Until it was seen once: it may be gone again for a moment while the window manager frames it.
    static bool waitForWindow(const QString &title)
    {
        return QTest::qWaitFor([&] { return windowIsThere(title); }, 60000);
    }

    // A visible window of any program with this title; not a splash screen. Of a title with letters beyond
    // ASCII, the longest part without them is looked for: in a locale that is not installed such letters come
    // to the X server wrongly. May miss the window while others come and go.
    static bool windowIsThere(const QString &title)
    {
        const QStringList parts = title.split(QRegularExpression("[^\\x00-\\x7F]+"));
        const QString longest =
            *std::max_element(parts.begin(), parts.end(),
                              [](const QString &a, const QString &b) { return a.size() < b.size(); });
        const QString pattern = QRegularExpression::escape(longest).replace("\\ ", " ");
        QProcess search;
        search.start("xdotool",
                     {"search", "--onlyvisible", "--name", longest == title ? "^" + pattern + "$" : pattern});
        return search.waitForFinished() && !search.readAllStandardOutput().trimmed().isEmpty();
    }

    void tapKey(const char *key)
    {
        device.tapKey(key);
        QTest::qWait(200);
    }
    void altKey(const char *key)
    {
        device.pressKey("Alt_L");
        device.tapKey(key);
        device.releaseKey("Alt_L");
        QTest::qWait(200);
    }

    // Whether the program ends within half a minute, of itself and with success.
    bool endsWell()
    {
        return (process.state() == QProcess::NotRunning || process.waitForFinished(30000)) &&
               process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }

private:
    QProcess process;
    XTestDevice device;
    qint64 msToWindow = 0;
};
