#pragma once

#include <QString>
#include <QStringList>

// Reads image objects of one file format. It keeps nothing of a running call, is created once and lives to
// the end of the process. Readers inherit it virtually, since one may talk to files in more than one way. GUI
// thread.
class AbstractImageObjectUnserializer
{
public:
    // name: translated text for the file dialog and for the report of a failed load; extensions: without the
    // dot.
    AbstractImageObjectUnserializer(const QString &name, const QStringList &mimeTypes,
                                    const QStringList &extensions);
    virtual ~AbstractImageObjectUnserializer();

    AbstractImageObjectUnserializer(const AbstractImageObjectUnserializer &) = delete;
    AbstractImageObjectUnserializer &operator=(const AbstractImageObjectUnserializer &) = delete;

    virtual const QString &name();
    virtual const QStringList &mimeTypes();
    virtual const QStringList &extensions();

protected:
    // For the classes between this one and a reader: with a virtual base the reader itself calls the
    // constructor above, and this one never runs.
    AbstractImageObjectUnserializer() = default;

private:
    QString nameText;
    QStringList mimeTypeList;
    QStringList extensionList;
};
