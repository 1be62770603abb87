#pragma once

#include <QStringList>

class QMenu;
class QWidget;

// What is cut off on the screen: for each visible text of the window (labels, buttons, combo boxes with all
// their entries, hints in line edits, tabs, headers, group boxes, cells, menu bar and tool bars) that has
// less room than it needs, one line with the text and both sizes. Empty when all is readable. The window must
// be shown and laid out. The insides of a file dialog of the toolkit are checked for labels and buttons only.
QStringList cutOffTexts(const QWidget &window);

// The same for a menu that is open.
QStringList cutOffEntries(const QMenu &menu);
