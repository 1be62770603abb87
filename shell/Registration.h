#pragma once

class ImageManager;

// Registers all readers, writers and icon providers, and the table of metrics that is written beside saved
// contours. The registered objects live to the end of the process.
void registerFormats(ImageManager &manager);
