#pragma once

#include <functional>

// Before the application object exists: attributes and formats that must be set by then.
void prepareApplication();

// Runs the program from the splash screen to the end of the event loop; always 0. beforeLoop, if any, is
// called in the GUI thread when the main window is up.
int runApplication(int argc, char **argv, const std::function<void()> &beforeLoop = {});

// Keeps the events going for the given time of the day's clock; ends at once when that passes midnight.
void sleepWithEvents(int milliseconds);
