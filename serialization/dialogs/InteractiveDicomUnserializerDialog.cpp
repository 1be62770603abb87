#include "serialization/dialogs/InteractiveDicomUnserializerDialog.h"

#include "serialization/dialogs/DroppedFilesModel.h"
#include "serialization/dialogs/FileDroppableQListView.h"
#include "serialization/dicom/DicomLoader.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressDialog>
#include <QPushButton>
#include <QScreen>
#include <QSet>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <exception>
#include <iostream>

namespace {

enum Page
{
    FilesPage,
    FiltersPage
};

enum SeriesColumn
{
    SeriesName,
    PatientName,
    FileName
};

enum FilterColumn
{
    Axis,
    Filter,
    FilteredCount,
    UniqueCount,
    TagNumber,
    Property
};

QString hex(quint32 number)
{
    return QString("%1").arg(number, 4, 16, QChar('0')).toUpper();
}

QLabel *plainLabel(const QString &text)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

InteractiveDicomUnserializerDialog::InteractiveDicomUnserializerDialog(QWidget *parent)
    : QDialog(parent)
    , tabs(new QTabWidget)
    , files(new FileDroppableQListView)
    , filePaths(new DroppedFilesModel(this))
    , seriesTree(new QTreeWidget)
    , filterTree(new QTreeWidget)
{
    setWindowTitle(tr("Load Dicom series"));
    resize(QSize(800, 600).boundedTo(screen()->availableSize() * 0.9)); // with its frame
    tabs->addTab(makeFilesPage(), tr("Files"));
    tabs->addTab(makeFiltersPage(), tr("Filters and Axes"));
    tabs->addTab(plainLabel(tr("not yet implemented")), tr("not yet implemented"));
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(tabs);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(tabs, &QTabWidget::currentChanged, this, &InteractiveDicomUnserializerDialog::prepareTab);
    connect(filePaths, &DroppedFilesModel::dropped, this, &InteractiveDicomUnserializerDialog::addPaths);
}

QWidget *InteractiveDicomUnserializerDialog::makeFilesPage()
{
    files->setModel(filePaths);
    files->setAcceptDrops(true);
    seriesTree->setHeaderLabels({tr("Series"), tr("Patient"), tr("File name")});
    seriesTree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    auto *row = new QHBoxLayout;
    addButton(row, tr("Add directory ..."), &InteractiveDicomUnserializerDialog::askForDirectory);
    addButton(row, tr("Add files ..."), &InteractiveDicomUnserializerDialog::askForFiles);
    addButton(row, tr("Move up"), &InteractiveDicomUnserializerDialog::moveUp);
    addButton(row, tr("Move down"), &InteractiveDicomUnserializerDialog::moveDown);
    addButton(row, tr("Select"), &InteractiveDicomUnserializerDialog::checkSelection);
    addButton(row, tr("Unselect"), &InteractiveDicomUnserializerDialog::uncheckSelection);
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    layout->addWidget(files);
    layout->addWidget(seriesTree);
    layout->addLayout(row);
    return page;
}

QWidget *InteractiveDicomUnserializerDialog::makeFiltersPage()
{
    filterTree->setHeaderLabels({tr("Axis"), tr("Filter"), tr("**)"), tr("*)"), tr("Tag"), tr("Property")});
    filterTree->setRootIsDecorated(false);
    fillFilterTree();
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    layout->addWidget(filterTree);
    layout->addWidget(plainLabel(tr("Key: *) number of unique values **) ~ after filtering")));
    return page;
}

void InteractiveDicomUnserializerDialog::addButton(QHBoxLayout *row, const QString &text,
                                                   void (InteractiveDicomUnserializerDialog::*slot)())
{
    auto *button = new QPushButton(text);
    button->setAutoDefault(false);
    row->addWidget(button);
    connect(button, &QPushButton::clicked, this, slot);
}

void InteractiveDicomUnserializerDialog::askForDirectory()
{
    const QString path = QFileDialog::getExistingDirectory(this, tr("Add directory"), QDir::currentPath());
    if (!path.isEmpty())
        addDirectory(path);
}

void InteractiveDicomUnserializerDialog::askForFiles()
{
    addPaths(QFileDialog::getOpenFileNames(this, tr("Add files"), QDir::currentPath(), "*.dcm"));
}

void InteractiveDicomUnserializerDialog::addDirectory(const QString &path)
{
    const QDir directory(path);
    QStringList added;
    for (const QString &name : directory.entryList({"*.dcm"}, QDir::Files, QDir::Name))
        added.append(directory.absoluteFilePath(name));
    addFiles(added);
}

void InteractiveDicomUnserializerDialog::addPaths(const QStringList &paths)
{
    for (const QString &path : paths) {
        if (QFileInfo(path).isDir())
            addDirectory(path);
        else
            addFiles({path});
    }
}

// A file that is listed already is not listed twice.
void InteractiveDicomUnserializerDialog::addFiles(const QStringList &added)
{
    QStringList paths = filePaths->stringList();
    QSet<QString> known(paths.begin(), paths.end());
    for (const QString &path : added) {
        if (known.contains(path))
            continue;
        known.insert(path);
        paths.append(path);
        auto *item = new QTreeWidgetItem;
        item->setText(FileName, path);
        item->setCheckState(SeriesName, Qt::Checked);
        groupItem(groups.value(path, {tr("[patient]"), tr("[series]")}))->addChild(item);
    }
    filePaths->setStringList(paths);
}

QTreeWidgetItem *InteractiveDicomUnserializerDialog::groupItem(const Group &group)
{
    for (int row = 0; row < seriesTree->topLevelItemCount(); ++row) {
        QTreeWidgetItem *item = seriesTree->topLevelItem(row);
        if (item->text(PatientName) == group.first && item->text(SeriesName) == group.second)
            return item;
    }
    auto *item = new QTreeWidgetItem(seriesTree);
    item->setText(PatientName, group.first);
    item->setText(SeriesName, group.second);
    item->setExpanded(true);
    return item;
}

void InteractiveDicomUnserializerDialog::moveUp()
{
    moveCurrentFile(-1);
}

void InteractiveDicomUnserializerDialog::moveDown()
{
    moveCurrentFile(1);
}

void InteractiveDicomUnserializerDialog::moveCurrentFile(int rows)
{
    QTreeWidgetItem *item = seriesTree->currentItem();
    QTreeWidgetItem *parent = item != nullptr ? item->parent() : nullptr;
    if (parent == nullptr)
        return;
    const int from = parent->indexOfChild(item);
    const int to = from + rows;
    if (to < 0 || to >= parent->childCount())
        return;
    parent->insertChild(to, parent->takeChild(from));
    seriesTree->setCurrentItem(item);
}

void InteractiveDicomUnserializerDialog::checkSelection()
{
    setCheckState(Qt::Checked);
}

void InteractiveDicomUnserializerDialog::uncheckSelection()
{
    setCheckState(Qt::Unchecked);
}

void InteractiveDicomUnserializerDialog::setCheckState(Qt::CheckState state)
{
    for (QTreeWidgetItem *item : seriesTree->selectedItems()) {
        if (item->parent() != nullptr)
            item->setCheckState(SeriesName, state);
    }
}

void InteractiveDicomUnserializerDialog::done(int result)
{
    if (!gathering)
        QDialog::done(result);
}

void InteractiveDicomUnserializerDialog::prepareTab(int page)
{
    if (gathering)
        return;
    if (page == FilesPage)
        fillSeriesTree();
    if (page == FiltersPage) {
        gatherMetadata();
        fillFilterTree();
    }
}

void InteractiveDicomUnserializerDialog::gatherMetadata()
{
    const QStringList paths = filePaths->stringList();
    if (paths == gatheredPaths)
        return;
    metadata.clear();
    groups.clear();
    gathering = true;
    QProgressDialog progress(this);
    progress.setWindowTitle(tr("Gathering metadata"));
    progress.setCancelButton(nullptr);
    progress.setWindowModality(Qt::ApplicationModal);
    progress.setMinimumDuration(0);
    progress.setRange(0, static_cast<int>(paths.size()));
    progress.setValue(0);
    for (const QString &path : paths) {
        gatherFile(path);
        progress.setValue(progress.value() + 1); // handles the events that are due
    }
    gathering = false;
    gatheredPaths = paths;
}

void InteractiveDicomUnserializerDialog::gatherFile(const QString &path)
{
    QString patient;
    QString series;
    QString seriesUid;
    try {
        for (const dicom::TagValue &tag : dicom::readTags(QFile::encodeName(path).toStdString())) {
            const QString value = QString::fromStdString(tag.value);
            TagColumn &column = metadata[tag.tag];
            if (column.name.isEmpty())
                column.name = QString::fromStdString(tag.name);
            column.filesByValue[value].append(path);
            if (tag.tag == dicom::tags::patientName)
                patient = value;
            else if (tag.tag == dicom::tags::seriesDescription)
                series = value;
            else if (tag.tag == dicom::tags::seriesInstanceUid)
                seriesUid = value;
        }
    } catch (const std::exception &exception) { // a file too large for the memory adds what it can
        std::cerr << exception.what() << std::endl;
    }
    if (!series.isEmpty() || !seriesUid.isEmpty() || !patient.isEmpty())
        groups[path] = {patient, series.isEmpty() ? seriesUid : series};
}

// Groups the files anew as soon as their patients and series are known; checks and order within a group stay.
void InteractiveDicomUnserializerDialog::fillSeriesTree()
{
    QList<QTreeWidgetItem *> items;
    for (int row = 0; row < seriesTree->topLevelItemCount(); ++row)
        items += seriesTree->topLevelItem(row)->takeChildren();
    seriesTree->clear();
    for (QTreeWidgetItem *item : items)
        groupItem(groups.value(item->text(FileName), {tr("[patient]"), tr("[series]")}))->addChild(item);
}

// Tags with one value cannot tell files apart and are left out. No filter is set yet: both counts are equal.
void InteractiveDicomUnserializerDialog::fillFilterTree()
{
    filterTree->clear();
    auto *placeholder = new QTreeWidgetItem(filterTree);
    placeholder->setText(Property, tr("[meta property name]"));
    QList<TagKey> keys = metadata.keys();
    std::sort(keys.begin(), keys.end());
    for (const TagKey key : keys) {
        const TagColumn &column = metadata[key];
        if (column.filesByValue.size() < 2)
            continue;
        auto *item = new QTreeWidgetItem(filterTree);
        const QString count = QString::number(column.filesByValue.size());
        item->setText(FilteredCount, count);
        item->setText(UniqueCount, count);
        item->setText(TagNumber, QString("%1, %2").arg(hex(key >> 16U), hex(key & 0xFFFFU)));
        item->setText(Property, column.name);
    }
    for (int column = 0; column < filterTree->columnCount(); ++column)
        filterTree->resizeColumnToContents(column);
}
