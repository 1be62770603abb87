#pragma once

#include <QDialog>
#include <QHash>
#include <QMap>
#include <QStringList>

#include <utility>

class DroppedFilesModel;
class FileDroppableQListView;
class QHBoxLayout;
class QTabWidget;
class QTreeWidget;
class QTreeWidgetItem;

// A preview for putting together a load of DICOM files by hand: which files there are, to which patients and
// series they belong, and which tags tell them apart. It loads nothing. GUI thread; the tags are read on it,
// behind a progress dialog.
class InteractiveDicomUnserializerDialog : public QDialog
{
    Q_OBJECT

public:
    explicit InteractiveDicomUnserializerDialog(QWidget *parent = nullptr);

    // Appends all files of the directory whose names end in ".dcm", in order of their names.
    void addDirectory(const QString &path);

    // Stays open while tags are being read.
    void done(int result) override;

public slots:
    // Brings the contents of a page up to date; the pages count from 0.
    void prepareTab(int page);

private:
    using TagKey = quint32; // (group << 16) | element

    struct TagColumn
    {
        QString name;
        QMap<QString, QStringList> filesByValue;
    };

    // The patient and the series of a file, as the tree shows them.
    using Group = std::pair<QString, QString>;

    QWidget *makeFilesPage();
    QWidget *makeFiltersPage();
    void addButton(QHBoxLayout *row, const QString &text, void (InteractiveDicomUnserializerDialog::*slot)());
    void askForDirectory();
    void askForFiles();
    void moveUp();
    void moveDown();
    void moveCurrentFile(int rows);
    void checkSelection();
    void uncheckSelection();
    void setCheckState(Qt::CheckState state);
    void addPaths(const QStringList &paths);
    void addFiles(const QStringList &added);
    QTreeWidgetItem *groupItem(const Group &group);
    void gatherMetadata();
    void gatherFile(const QString &path);
    void fillSeriesTree();
    void fillFilterTree();

    QTabWidget *tabs;
    FileDroppableQListView *files;
    DroppedFilesModel *filePaths;
    QTreeWidget *seriesTree;
    QTreeWidget *filterTree;
    QHash<TagKey, TagColumn> metadata;
    QHash<QString, Group> groups; // by path, once the tags are known
    QStringList gatheredPaths;    // what metadata and groups were made of
    bool gathering = false;
};
