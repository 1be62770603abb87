#include "view/DisplayScope.h"

#include <QCoreApplication>

#include <array>

namespace {

// In the order of the scopes.
constexpr std::array<const char *, 8> names{
    QT_TRANSLATE_NOOP("DisplayScopes", "(hidden)"),
    QT_TRANSLATE_NOOP("DisplayScopes", "Point"),
    QT_TRANSLATE_NOOP("DisplayScopes", "Point and adjacent"),
    QT_TRANSLATE_NOOP("DisplayScopes", "Slice"),
    QT_TRANSLATE_NOOP("DisplayScopes", "Slice and adjacent"),
    QT_TRANSLATE_NOOP("DisplayScopes", "Volume"),
    QT_TRANSLATE_NOOP("DisplayScopes", "Volume behind"),
    QT_TRANSLATE_NOOP("DisplayScopes", "Volume before"),
};

QString translated(const char *text)
{
    return QCoreApplication::translate("DisplayScopes", text);
}

} // namespace

QString DisplayScopes::shownName(int scope)
{
    if (scope < ScopeHidden || scope > ScopeVolume)
        return translated(QT_TRANSLATE_NOOP("DisplayScopes", "unknown"));
    return translated(names[static_cast<std::size_t>(scope)]);
}

QStringList DisplayScopes::offeredNames()
{
    QStringList offered;
    for (std::size_t scope = ScopePoint; scope < names.size(); ++scope)
        offered << translated(names[scope]);
    return offered;
}

std::optional<int> DisplayScopes::fromName(const QString &name)
{
    if (name == translated(QT_TRANSLATE_NOOP("DisplayScopes", "(hide)")))
        return ScopeHidden;
    for (std::size_t scope = ScopeHidden; scope < names.size(); ++scope)
        if (name == translated(names[scope]))
            return static_cast<int>(scope);
    return std::nullopt;
}
