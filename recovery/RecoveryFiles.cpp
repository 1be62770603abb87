#include "recovery/RecoveryFiles.h"

#include <QRegularExpression>

#include <algorithm>
#include <set>
#include <utility>

namespace {

constexpr std::size_t keptGenerations = 20;
constexpr qint64 minute = 60 * 1000; // in milliseconds, as all times here
constexpr qint64 tenMinutes = 10 * minute;
constexpr qsizetype longestLabel = 180; // bytes; a file name may have 255

constexpr const char *timePattern = "yyyy-MM-dd'T'HH.mm.ss.zzz";

// Leaves out what separates folders, what cannot be seen, and a dot that would hide the file.
QString fileNamePart(const QString &label)
{
    QString part;
    for (const char32_t character : label.toUcs4()) {
        const QString next = QString::fromUcs4(&character, 1);
        if (part.toUtf8().size() + next.toUtf8().size() > longestLabel)
            break;
        const bool unfit = character == U'/' || character == U'\\' || !QChar::isPrint(character);
        part += unfit ? QStringLiteral("-") : next;
    }
    if (part.startsWith('.'))
        part[0] = '-';
    return part.isEmpty() ? QStringLiteral("contours") : part;
}

QDateTime parseTime(const QString &local, const QString &hours, const QString &minutes)
{
    QDateTime time = QDateTime::fromString(local, timePattern);
    const int sign = hours.startsWith('-') ? -1 : 1;
    time.setOffsetFromUtc(hours.toInt() * 3600 + sign * minutes.toInt() * 60);
    return time;
}

} // namespace

namespace RecoveryFiles {

QString timeText(const QDateTime &time)
{
    const QDateTime local = time.toLocalTime();
    const int offset = local.offsetFromUtc() / 60;
    return local.toString(timePattern) + QString::asprintf("%c%02d%02d", offset < 0 ? '-' : '+',
                                                           std::abs(offset) / 60, std::abs(offset) % 60);
}

QString name(const Generation &generation)
{
    return fileNamePart(generation.label) + '_' + QString::number(generation.object) + '_' +
           timeText(generation.time) + ".slic";
}

std::optional<Generation> parse(const QString &name)
{
    static const QRegularExpression pattern(
        R"(^(.+)_(\d{1,9})_(\d{4}-\d\d-\d\dT\d\d\.\d\d\.\d\d\.\d{3})([+-]\d\d)(\d\d)\.slic$)",
        QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = pattern.match(name);
    if (!match.hasMatch())
        return {};
    Generation generation{match.captured(1), match.captured(2).toInt(),
                          parseTime(match.captured(3), match.captured(4), match.captured(5))};
    if (!generation.time.isValid())
        return {};
    return generation;
}

bool isHalf(const QString &name)
{
    static const QRegularExpression ending(R"(\.[A-Za-z0-9]{6}$)"); // of the toolkit's temporary files
    const QRegularExpressionMatch match = ending.match(name);
    return match.hasMatch() && parse(name.left(match.capturedStart())).has_value();
}

QString savedMark(int object)
{
    return QString::number(object) + ".saved";
}

std::optional<int> parseSavedMark(const QString &name)
{
    static const QRegularExpression pattern(R"(^(\d{1,9})\.saved$)");
    const QRegularExpressionMatch match = pattern.match(name);
    if (!match.hasMatch())
        return {};
    return match.captured(1).toInt();
}

std::vector<std::size_t> superseded(const std::vector<qint64> &times, qint64 now)
{
    std::vector<std::size_t> result;
    std::set<std::pair<qint64, qint64>>
        spans; // length and number of those that have their generation already
    for (std::size_t i = times.size(); i-- > 0;) {
        const qint64 length = now - times[i] > tenMinutes ? tenMinutes : minute;
        if (spans.size() == keptGenerations || !spans.emplace(length, times[i] / length).second)
            result.push_back(i);
    }
    std::reverse(result.begin(), result.end());
    return result;
}

} // namespace RecoveryFiles
