#pragma once

#include <QCoreApplication>
#include <QTemporaryDir>

// Settings and application data of a test in a folder of their own. Make it before the application object,
// for example in initMain() of a test class:
//
//     static void initMain() { static const PrivateSettings settings; }
class PrivateSettings
{
public:
    PrivateSettings()
    {
        qputenv("XDG_CONFIG_HOME", folder.path().toLocal8Bit());
        qputenv("XDG_DATA_HOME", folder.path().toLocal8Bit());
        QCoreApplication::setOrganizationName("MERV");
        QCoreApplication::setApplicationName("Tevora");
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    }
    QString path() const { return folder.path(); }

private:
    QTemporaryDir folder;
};
