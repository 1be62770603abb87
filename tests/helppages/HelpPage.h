#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

// A help page as its file says it.
struct HelpPage
{
    QString error;    // of the XML; null for a well-formed page
    QString language; // of the element html
    QStringList
        structure; // names of the elements in order, but for those inside of paragraphs, items and cells
    QStringList pictures; // file names
    QStringList labels;   // texts of the program (b class="label")
    QStringList keys;     // b class="key", in the words of the toolkit ("Shift+T", "PgDown")
    QStringList gestures; // b class="mouse", in English
    QStringList unknown;  // classes, keys and gestures that have no meaning here
    int links = 0;
    int words = 0;
};

namespace HelpPages {

inline const QStringList languages{"en", "de", "fr"};
// The topics that the program asks for.
inline const QStringList topics{
    "menu_file",
    "menu_image",
    "menu_view",
    "menu_procedures",
    "menu_help",
    "main_window_image_list",
    "stacked_slice_view_perspective",
    "stacked_slice_view_move",
    "stacked_slice_view_zoom",
    "stacked_slice_view_window",
    "stacked_slice_view_trace",
    "stacked_slice_view_guess",
    "stacked_slice_view_erase",
    "stacked_slice_view_load",
};

// The folder of the pages that were built in a language.
QString folder(const QString &language);
HelpPage read(const QString &language, const QString &topic);
// Texts of the program without the marks of keys ("&"): what stands in the sources, and what stands for each
// of them in a language.
QMultiMap<QString, QString> translations(const QString &language);

} // namespace HelpPages
