#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <filesystem>
#include <stdexcept>
#include <system_error>

// Output of a command that ended with success; throws std::runtime_error with its messages otherwise.
inline QByteArray outputOf(const QString &program, const QStringList &arguments,
                           const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        throw std::runtime_error((program + ": " + process.errorString()).toStdString() + "\n" +
                                 process.readAllStandardError().toStdString());
    return process.readAllStandardOutput();
}

// The package's files in a folder of their own, with its control files in DEBIAN. Its scripts can be run on
// this folder in place of the root of the system.
class UnpackedPackage
{
public:
    UnpackedPackage() { outputOf("dpkg-deb", {"--raw-extract", TEVORA_PACKAGE, root()}); }

    QString root() const { return folder.filePath("root"); }
    QString path(const QString &file) const { return root() + "/" + file; }

    QByteArray read(const QString &file) const
    {
        QFile opened(path(file));
        if (!opened.open(QIODevice::ReadOnly))
            throw std::runtime_error("cannot read " + file.toStdString());
        return opened.readAll();
    }

    void write(const QString &file, const QByteArray &bytes) const
    {
        QDir(root()).mkpath(QFileInfo(file).path());
        QFile opened(path(file));
        if (!opened.open(QIODevice::WriteOnly) || opened.write(bytes) != bytes.size())
            throw std::runtime_error("cannot write " + file.toStdString());
    }

    // Runs "postinst" or "prerm" as dpkg does, in an environment with this LANG and no other word on the
    // language.
    void runScript(const QString &script, const QString &action, const QString &lang = QString()) const
    {
        QDir(root()).mkpath("var/lib/dpkg/alternatives");
        QDir(root()).mkpath("etc/alternatives");
        QDir(root()).mkpath("var/log");
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove("LC_ALL");
        environment.remove("LC_MESSAGES");
        environment.insert("LANG", lang);
        environment.insert("DPKG_ROOT", root());
        outputOf(path("DEBIAN/" + script), {action}, environment);
    }

    // The name of the set of help pages in use, as "help-en"; empty when there is no link.
    QString helpSet() const { return QFileInfo(linkTarget("etc/alternatives/tevora-help")).fileName(); }

    // What a symbolic link says, to the letter; empty when there is none.
    QString linkTarget(const QString &link) const
    {
        std::error_code none;
        return QString::fromStdString(std::filesystem::read_symlink(path(link).toStdString(), none).string());
    }

private:
    QTemporaryDir folder;
};
