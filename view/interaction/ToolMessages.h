#pragma once

#include <QString>

class QWidget;

// Message boxes of the interaction tools, titled with the application's name. They run an event loop of their
// own: everything but the parent's input goes on meanwhile.
namespace ToolMessages {

void warn(QWidget *parent, const QString &text);
void inform(QWidget *parent, const QString &text);
// True for OK.
bool confirm(QWidget *parent, const QString &text);

} // namespace ToolMessages
