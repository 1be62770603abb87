#pragma once

#include "recovery/RecoveryWriter.h"

#include <QObject>
#include <QPointer>

#include <cstddef>
#include <vector>

class AbstractImageObjectSerializer;
class ImageManager;
class ImageObject;
class SlicedContoursObject;

// Keeps what the user has drawn on the disk, without being asked: every few seconds the contours of the image
// manager's list that have changed are written as ordinary SLIC files to a folder of this session, and at
// once before they are closed, before the program writes any file of the user's, and at its end. The bytes
// are made in the calling thread, in few milliseconds, and written by another one.
//
// Contours that were just loaded count as unchanged. Shows nothing; failures cost a line on standard error.
// Main thread. Must end before the manager.
class RecoveryJournal : public QObject
{
    Q_OBJECT

public:
    // Writes to `session`, see RecoveryFolder.
    RecoveryJournal(ImageManager &manager, const QString &session, QObject *parent = nullptr);
    // Writes what has changed.
    ~RecoveryJournal() override;

    // Writes what has changed and waits for it, though not for a disk that does not answer.
    void writeNow();

    static constexpr int intervalMs = 5000; // from a change to its file, at the most

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    struct Watched
    {
        QPointer<SlicedContoursObject> contours;
        int number; // in the names of the files
        std::size_t state;
    };

    void watchNewContours();
    void writeChanged();
    void writeIfChanged(Watched &watched);
    void noteClosing(ImageObject *closing);
    void noteWritten(ImageObject *image, AbstractImageObjectSerializer *serializer);

    ImageManager &manager;
    std::vector<Watched> watched;
    int lastNumber = 0;
    RecoveryWriter writer;
};
