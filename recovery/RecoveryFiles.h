#pragma once

#include <QDateTime>
#include <QString>

#include <optional>
#include <vector>

// Names of the files of the recovery folder, and which of them are kept. Pure functions, any thread.
namespace RecoveryFiles {

// One written state of a contours object.
struct Generation
{
    QString label;  // of the object, without what a file name cannot hold
    int object = 0; // from 1, in the order in which objects came up in their session
    QDateTime time;
};

// "LABEL_OBJECT_TIME.slic", with the local time to the millisecond and its offset from UTC, at most 255 bytes
// in UTF-8.
QString name(const Generation &generation);
// Nothing for a file that is not a generation.
std::optional<Generation> parse(const QString &name);

// Whether a generation was being written under this name, and was not finished: its own name comes later.
bool isHalf(const QString &name);

// "OBJECT.saved": the last state of the object is in a file of the user's.
QString savedMark(int object);
// Nothing for any other name.
std::optional<int> parseSavedMark(const QString &name);

// Time as it stands in names.
QString timeText(const QDateTime &time);

// Which of the generations of one object may go, as indexes into `times`, ascending. `times` are in
// milliseconds since the epoch, in order of writing. Kept are at most 20, from the last one back: the last of
// each minute of the ten minutes before `now`, and the last of each ten minutes before.
std::vector<std::size_t> superseded(const std::vector<qint64> &times, qint64 now);

} // namespace RecoveryFiles
