#include "recovery/RecoveryJournal.h"

#include "contours/SlicedContoursObject.h"
#include "objects/manager/ImageManager.h"
#include "serialization/formats/SlicSerializer.h"

#include <algorithm>
#include <sstream>
#include <string>
#include <utility>

namespace {

std::string slicBytes(SlicedContoursObject &contours)
{
    std::ostringstream stream;
    SlicSerializer().serialize(&contours, stream);
    return std::move(stream).str();
}

std::size_t stateOf(const std::string &bytes)
{
    return std::hash<std::string>()(bytes);
}

} // namespace

RecoveryJournal::RecoveryJournal(ImageManager &newManager, const QString &session, QObject *parent)
    : QObject(parent)
    , manager(newManager)
    , writer(session)
{
    watchNewContours();
    connect(&manager, &ImageManager::layoutChanged, this, &RecoveryJournal::watchNewContours);
    connect(&manager, &ImageManager::aboutToWrite, this, &RecoveryJournal::writeNow);
    connect(&manager, &ImageManager::imageWritten, this, &RecoveryJournal::noteWritten);
    manager.addClosingListener(this, [this](ImageObject *closing) { noteClosing(closing); });
    startTimer(intervalMs, Qt::CoarseTimer);
}

RecoveryJournal::~RecoveryJournal()
{
    writeChanged(); // the writer waits for it
}

void RecoveryJournal::writeNow()
{
    writeChanged();
    writer.waitUntilWritten(RecoveryWriter::patience);
}

void RecoveryJournal::timerEvent(QTimerEvent *)
{
    writeChanged();
}

void RecoveryJournal::watchNewContours()
{
    for (int row = 0; row < manager.imageCount(); ++row) {
        auto *contours = qobject_cast<SlicedContoursObject *>(manager.image(row));
        const auto known = [contours](const Watched &entry) { return entry.contours == contours; };
        if (contours != nullptr && std::none_of(watched.begin(), watched.end(), known))
            watched.push_back({contours, ++lastNumber, stateOf(slicBytes(*contours))});
    }
}

void RecoveryJournal::writeChanged()
{
    const std::set<int> failed = writer.takeFailed();
    std::erase_if(watched, [this](const Watched &entry) {
        if (entry.contours.isNull())
            writer.forget(entry.number);
        return entry.contours.isNull();
    });
    for (Watched &entry : watched) {
        if (failed.count(entry.number) != 0)
            entry.state = 0; // try again
        writeIfChanged(entry);
    }
}

void RecoveryJournal::writeIfChanged(Watched &entry)
{
    std::string bytes = slicBytes(*entry.contours);
    const std::size_t former = std::exchange(entry.state, stateOf(bytes));
    if (entry.state != former)
        writer.write(entry.contours->label(), entry.number, std::move(bytes));
}

void RecoveryJournal::noteClosing(ImageObject *closing)
{
    const auto closed = std::find_if(watched.begin(), watched.end(),
                                     [closing](const Watched &entry) { return entry.contours == closing; });
    if (closed == watched.end())
        return;
    writeIfChanged(*closed);
    writer.forget(closed->number);
    watched.erase(closed);
}

void RecoveryJournal::noteWritten(ImageObject *image, AbstractImageObjectSerializer *serializer)
{
    if (dynamic_cast<SlicSerializer *>(serializer) == nullptr)
        return;
    for (const Watched &entry : watched) {
        if (entry.contours == image)
            writer.markSaved(entry.number);
    }
}
