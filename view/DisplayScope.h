#pragma once

#include <QString>
#include <QStringList>

#include <optional>

// How much of an object a view draws.
enum DisplayScope : int
{
    ScopeHidden = 0,
    ScopePoint = 1,
    ScopePointAndAdjacent = 2, // offered and stored; nothing is drawn for it
    ScopeSlice = 3,
    ScopeSliceAndAdjacent = 4,
    ScopeVolume = 5,
    ScopeVolumeBehind = 6,
    ScopeVolumeBefore = 7
};

namespace DisplayScopes {

// The name that a table shows. Only the scopes up to ScopeVolume have one: all else is "unknown", on purpose
// also the two last scopes.
QString shownName(int scope);

// The names that an editor offers, "Point" to "Volume before"; hiding is not among them.
QStringList offeredNames();

// The scope with this name, "(hide)" and "(hidden)" included; nothing for any other text.
std::optional<int> fromName(const QString &name);

} // namespace DisplayScopes
