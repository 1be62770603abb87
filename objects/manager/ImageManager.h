#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <QList>
#include <QPointer>
#include <QStringList>

#include <functional>
#include <vector>

class AbstractIconProvider;
class AbstractImageObjectSerializer;
class AbstractImageObjectUnserializer;
class AbstractQIconProvider;
class ImageObject;
class MervImageObject;
class QPaintDevice;

// The one list of all loaded and derived image objects, and the flat model that the image list and the table
// of properties show: a row per image, the name in column 0, one further column per image property seen so
// far. It drives every load and save with their dialogs and reports, and keeps the registries that these use.
//
// Child of the main window. The list owns the images: closeImage() deletes; the destructor does not, the
// process ends then. Registered serializers, unserializers and icon providers stay the property of those who
// registered them. Main thread. Announces every change of the list with layoutChanged() (preceded by
// layoutAboutToBeChanged(), persistent indexes follow their image), never with rowsInserted or dataChanged.
class ImageManager : public QAbstractItemModel
{
    Q_OBJECT

public:
    // Makes the table of metrics of contours. The manager does not delete the model.
    using MetricsModelFactory = std::function<QAbstractItemModel *(ImageObject *)>;
    // Told of an image that is about to be deleted.
    using ClosingListener = std::function<void(ImageObject *)>;

    // Type of the bytes that mimeData() makes: for each dragged row a QString with its number in decimal.
    static const QString &indexMimeType();

    // Restores the current directory of the process, and stores it every 10 seconds from then on.
    explicit ImageManager(QObject *parent);
    // Records the paths of the images and the current directory. Images that are its children, as those of a
    // DICOM folder are, go with it, and all let go of them first; others are left alone.
    ~ImageManager() override;

    // The order of registration is the order in which loading and saving ask.
    void addSerializer(AbstractImageObjectSerializer *serializer);
    void addUnserializer(AbstractImageObjectUnserializer *unserializer);
    // Ignores a provider that is not an AbstractQIconProvider.
    void addIconProvider(AbstractIconProvider *provider);
    // What writes the metrics beside saved contours; without it none are written.
    void setMetricsModelFactory(MetricsModelFactory factory);

    // Takes ownership; ignores null.
    void addImage(ImageObject *image);
    int imageCount() const;
    // Null out of range or for an invalid index.
    ImageObject *image(int row) const;
    ImageObject *image(const QModelIndex &index) const;
    // Takes the image out of the list, makes all others and all listeners let go of it, and deletes it. Does
    // nothing for an index without an image.
    void closeImage(const QModelIndex &index);
    // Ends the worker threads of all images and waits for them; for the end of the program.
    void stopWorkers();
    // For holders of image objects that are not in the list themselves, as views are: `listener` is called by
    // closeImage(), and at the manager's end, while the object is still whole, as long as `holder` lives.
    void addClosingListener(QObject *holder, ClosingListener listener);

    // Asks for a file and a format and writes the image; reports by dialogs. True when it was written.
    bool saveImage(const QModelIndex &index);
    bool saveImage(ImageObject *image);

    // Loads one file and adds it; without any message. Null on failure, with the reason in *error; error may
    // be null. Moves the current directory of the process to that of the file.
    ImageObject *loadFile(const QString &path, QString *error);
    // Asks for files, loads them and reports. Returns how many were loaded.
    int loadInteractively();

    // Number of DICOM series in the directory; 0 also when they cannot be read.
    int countDicomSeries(const QString &directory) const;
    // Loads every series in the directory, without questions. These images add no columns.
    QList<ImageObject *> loadDicomSeries(const QString &directory);
    // Asks for the series, the echo time and the slice distance. Null on failure or when cancelled.
    ImageObject *loadDicomSeriesInteractively(const QString &directory);
    // Writes the slices as numbered files. True when all of them were written.
    bool saveDicomSeries(MervImageObject *image, const QString &directory);

    // Draws all images as squares with lines from each to the images that it was computed from.
    void paintRelations(QPaintDevice *device);

    // Stores the current directory of the process in the settings.
    void saveCurrentDirectory();

    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    using QObject::parent;
    QModelIndex parent(const QModelIndex &index) const override;
    // The counts are the same for any parent.
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    // Renames an image (column 0, Qt::EditRole); emits nothing.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    // Loads the dropped files with a progress dialog; failures are silent. False if there are no URLs.
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

signals:
    // Files are about to be written for the user, perhaps in the place of others. Whoever writes files
    // without the manager emits it as well.
    void aboutToWrite();
    // The image was written completely.
    void imageWritten(ImageObject *image, AbstractImageObjectSerializer *serializer);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    struct Listener
    {
        QPointer<QObject> holder;
        ClosingListener call;
    };

    void restoreCurrentDirectory();
    void addPropertyNames(const MervImageObject &image);
    void letGoOfOwnedImages();
    void announceClosing(ImageObject *closing);
    QIcon icon(ImageObject *image) const;
    QVariant propertyText(ImageObject *image, int column) const;

    void loadFiles(const QStringList &paths, QStringList &failed);
    ImageObject *loadFromStream(const QString &path, QStringList &failed, QString *error);
    ImageObject *loadFromFileSystem(const QString &path, QStringList &failed);

    QList<AbstractImageObjectSerializer *> serializersFor(ImageObject *image) const;

    enum class Written
    {
        Stream,
        FileSystem,
        NotOpened,
        Failed
    };
    static Written write(AbstractImageObjectSerializer *serializer, ImageObject *image, const QString &path);
    QString writeMetrics(ImageObject *image, const QString &contoursPath) const;

    QList<ImageObject *> images; // in order of insertion; a row is an index into it
    QStringList propertyNames;   // in order of first sight; column k is name k - 1; never removed
    QList<AbstractImageObjectSerializer *> serializers;
    QList<AbstractImageObjectUnserializer *> unserializers;
    QList<AbstractQIconProvider *> iconProviders;
    MetricsModelFactory metricsModelFactory;
    std::vector<Listener> listeners;
};
