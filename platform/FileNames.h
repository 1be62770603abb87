#pragma once

#include <QString>

#include <string>

// A path as the system's own calls and the voxel library take it.
std::string narrowPath(const QString &path);

// A path as the readers of streams and files take it, and back.
std::wstring widePath(const QString &path);
QString pathFromWide(const wchar_t *path);

// The folder for copies of what may get lost, in the platform's place for the data of this application. May
// not be there yet.
QString recoveryFolderPath();
