#pragma once

#include <QString>
#include <QStringList>

#include <vector>

// One text of a translation source file (.ts).
struct TsMessage
{
    QString context;
    QString source;
    QString comment;          // tells texts with the same source apart
    QString state;            // empty when finished; "unfinished", "vanished", "obsolete"
    bool plural = false;      // has a form for each grammatical number
    QStringList translations; // one text, or the forms from the singular on
};

// All texts of the file, in its order; empty when it cannot be read.
std::vector<TsMessage> readTsFile(const QString &path);
