#include "tests/endurance/EditedNetwork.h"

#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "meshes/BitPlaneRasterizerObject.h"
#include "meshes/ColoringTriMeshRenderer.h"
#include "meshes/SlicedContoursTriangulator.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "meshes/TriMeshFragment.h"
#include "objects/manager/ImageManager.h"
#include "serialization/formats/SlicSerializer.h"
#include "serialization/formats/SlicUnserializer.h"
#include "tests/endurance/MetricsTable.h"
#include "tests/endurance/ModelComplaints.h"
#include "tests/endurance/PlainSummary.h"
#include "tests/support/PlainRibbons.h"
#include "tests/support/PlainThickness.h"
#include "view/GraphicsPod.h"
#include "view/ImageComposition.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include <sstream>

namespace {

constexpr int mostImages = 12;
constexpr std::size_t mostTables = 3;

// The model tester wants no flags for the invalid index, where a composition answers "enabled" on purpose.
class TestedComposition : public ImageComposition
{
public:
    Qt::ItemFlags flags(const QModelIndex &index) const override
    {
        return index.isValid() ? ImageComposition::flags(index) : Qt::NoItemFlags;
    }
};

std::vector<SegmentSnapshot> linesOf(const PlainFragment &fragment)
{
    std::vector<SegmentSnapshot> lines;
    for (const PlainLine &line : fragment.lines)
        lines.push_back({line.points, line.z});
    return lines;
}

// No vertex lies beyond the lines that it was made of.
void verifyBounds(const TriMeshFragment &mesh, const PlainFragment &fragment)
{
    double low[3]{1e300, 1e300, 1e300}, high[3]{-1e300, -1e300, -1e300};
    for (const PlainLine &line : fragment.lines) {
        for (const QPointF &p : line.points) {
            const double coordinates[3]{p.x(), p.y(), static_cast<double>(line.z)};
            for (int axis = 0; axis < 3; ++axis) {
                low[axis] = std::min(low[axis], coordinates[axis]);
                high[axis] = std::max(high[axis], coordinates[axis]);
            }
        }
    }
    for (const MERV::BRep::TriFace &face : mesh.all()) {
        for (int corner = 0; corner < 3; ++corner) {
            const MERV::BRep::Point &p = face.vertex(corner);
            require(p.w == 1.0 && p.x >= low[0] && p.x <= high[0] && p.y >= low[1] && p.y <= high[1] &&
                        p.z >= low[2] && p.z <= high[2],
                    "a mesh reaches beyond its lines");
        }
    }
}

std::unique_ptr<SlicedContoursObject> readBack(SlicedContoursObject &object)
{
    std::stringstream file;
    require(SlicSerializer().serialize(&object, file), "contours could not be written");
    const std::string bytes = file.str();
    SlicUnserializer reader;
    std::string head = bytes;
    head.resize(std::max<std::size_t>(head.size(), ContinuousStreamImageObjectUnserializer::headSize));
    require(reader.canUnserialize(head.data()), "written contours are not recognised");
    std::unique_ptr<ImageObject> read(reader.unserialize(file));
    require(dynamic_cast<SlicedContoursObject *>(read.get()) != nullptr,
            "written contours could not be read");
    require(file.tellg() == static_cast<std::streamoff>(bytes.size()), "a part of the file was left over");
    return std::unique_ptr<SlicedContoursObject>(static_cast<SlicedContoursObject *>(read.release()));
}

} // namespace

EditedNetwork::EditedNetwork(ImageManager &imageManager, EditSource &decisions, bool hasWorkers)
    : manager(imageManager)
    , source(decisions)
    , withWorkers(hasWorkers)
    , complaints(std::make_unique<ModelComplaints>())
    , composition(std::make_unique<TestedComposition>())
{
    watchTree();
    manager.addClosingListener(composition.get(),
                               [this](ImageObject *closing) { composition->detachFrom(closing); });
    begin(nullptr, {});
}

EditedNetwork::~EditedNetwork()
{
    tables.clear();
    editor.reset();
    while (manager.imageCount() > 0)
        manager.closeImage(manager.index(0, 0));
}

// With a null object with fresh contours.
void EditedNetwork::begin(SlicedContoursObject *newObject, PlainContours model)
{
    watched = nullptr;
    if (newObject == nullptr)
        newObject = watched = new Watched<SlicedContoursObject>("lines");
    object = newObject;
    editor = std::make_unique<ContourEditor>(*object, source, std::move(model));
    ownListeners = listeners();
    manager.addImage(object);
    show(object);
    if (object->fragmentCount() == 0)
        for (int i = 0; i < 8; ++i)
            editor->step();
    addTriangulator();
    tables.insert(tables.begin(), std::make_unique<MetricsTable>(object, manager));
}

int EditedNetwork::listeners() const
{
    if (watched == nullptr)
        return 0;
    return watched->listeners(SIGNAL(updated(QObject *))) + watched->listeners(SIGNAL(updated())) +
           watched->listeners(SIGNAL(structureChanged())) + watched->listeners(SIGNAL(destroyed(QObject *)));
}

template <class Object>
std::vector<Object *> EditedNetwork::all() const
{
    std::vector<Object *> found;
    for (int row = 0; row < manager.imageCount(); ++row)
        if (auto *image = qobject_cast<Object *>(manager.image(row)))
            found.push_back(image);
    return found;
}

void EditedNetwork::show(ImageObject *image)
{
    composition->addImageObject(image);
    composition->pod(composition->podCount() - 1)->setDisplayScope(source.below(8));
}

// What costs more is checked less often, and once more at the end.
void EditedNetwork::runToTheEnd()
{
    while (!source.atEnd()) {
        step();
        verify();
        if (seen.steps % 8 == 0)
            verifyFile();
        if (seen.steps % 16 == 0)
            verifyMetrics();
        if (seen.steps % 100 == 0)
            verifyMeasurements();
    }
    verifyFile();
    verifyMetrics();
    verifyMeasurements();
    closeAll();
}

void EditedNetwork::step()
{
    ++seen.steps;
    if (source.below(8) == 0)
        changeNetwork();
    else
        editor->step();
    QCoreApplication::processEvents();
}

void EditedNetwork::changeNetwork()
{
    using Change = void (EditedNetwork::*)();
    using Self = EditedNetwork;
    static constexpr Change changes[] = {&Self::addTriangulator, &Self::addMeasurement, &Self::addMeasurement,
                                         &Self::addRaster,       &Self::addTable,       &Self::removeTable,
                                         &Self::closeOne,        &Self::closeOne,       &Self::setBitCodes,
                                         &Self::changeView,      &Self::editNext,       &Self::reload};
    (this->*changes[source.below(static_cast<int>(std::size(changes)))])();
}

void EditedNetwork::addTriangulator()
{
    if (manager.imageCount() >= mostImages)
        return closeOne();
    auto *triangulator = new SlicedContoursTriangulator(object);
    manager.addImage(triangulator);
    show(triangulator);
}

void EditedNetwork::addMeasurement()
{
    const auto meshes = all<SlicedContoursTriangulator>();
    if (!withWorkers || meshes.empty() || manager.imageCount() >= mostImages)
        return;
    SlicedContoursTriangulator *mesh =
        meshes[static_cast<std::size_t>(source.below(static_cast<int>(meshes.size())))];
    if (mesh->fragmentCount() == 0)
        return;
    TriMeshFragment *base = mesh->fragment(source.below(mesh->fragmentCount()));
    TriMeshFragment *remote = mesh->fragment(source.below(mesh->fragmentCount()));
    const int definition = source.below(3);
    auto *measurer = new TriMeshDistanceMeasurer(base, remote, definition, "thickness");
    manager.addImage(measurer);
    measurements.push_back({measurer, base, remote, definition});
    auto *coloring = new ColoringTriMeshRenderer(base, measurer, "coloring");
    manager.addImage(coloring);
    show(coloring);
}

void EditedNetwork::addRaster()
{
    if (!withWorkers || !all<RasterizerObject>().empty() || manager.imageCount() >= mostImages)
        return;
    auto *raster = new BitPlaneRasterizerObject(object, 16, 16, 4, 1.5f, 1.5f, 2.0f);
    manager.addImage(raster);
    show(raster);
}

void EditedNetwork::addTable()
{
    if (tables.size() >= mostTables)
        tables.pop_back();
    ImageObject *measured = manager.image(source.below(manager.imageCount()));
    tables.push_back(std::make_unique<MetricsTable>(measured, manager));
}

void EditedNetwork::removeTable()
{
    if (!tables.empty())
        tables.erase(tables.begin() + source.below(static_cast<int>(tables.size())));
}

void EditedNetwork::closeOne()
{
    const int row = source.below(manager.imageCount());
    if (manager.image(row) == object && !source.oneIn(8))
        return;
    close(row);
    if (object == nullptr)
        begin(nullptr, {});
}

void EditedNetwork::close(int row)
{
    ImageObject *closing = manager.image(row);
    const QPointer<ImageObject> closed = closing;
    if (closing == object) {
        editor.reset();
        object = watched = nullptr;
    }
    manager.closeImage(manager.index(row, 0));
    require(closed.isNull(), "a closed object lives on");
    ++seen.closed;
    for (int other = 0; other < manager.imageCount(); ++other)
        require(!manager.image(other)->sources().contains(closing), "a closed object is still a source");
    std::erase_if(measurements, [](const Measurement &each) { return each.measurer.isNull(); });
}

void EditedNetwork::setBitCodes()
{
    for (BitPlaneRasterizerObject *raster : all<BitPlaneRasterizerObject>()) {
        if (object->contourCount() > 0)
            raster->setBitCode(object->contour(source.below(object->contourCount())), source.below(256));
        raster->setDefaultBitCode(source.below(256) - 128);
        raster->invalidateRasterization();
    }
}

// Any cell but the names, which the plain model would not hear of.
void EditedNetwork::changeView()
{
    const QVariant values[] = {true,     false,    50.0,       -1e9,       "#123456",
                               "Volume", "(hide)", QVariant(), "no colour"};
    QModelIndex parent;
    if (source.oneIn(2))
        parent = composition->index(source.below(composition->podCount()), 0);
    const int rows = composition->rowCount(parent);
    if (rows == 0)
        return;
    const QModelIndex cell =
        composition->index(source.below(rows), 1 + source.below(composition->columnCount() - 1), parent);
    composition->setData(cell, values[source.below(static_cast<int>(std::size(values)))]);
}

// "Everything may have changed" is said without a range, on purpose: the model tester must not hear of it.
void EditedNetwork::editNext()
{
    compositionTester.reset();
    composition->selectNextGraphicsObjectForEditing();
    watchTree();
}

void EditedNetwork::watchTree()
{
    compositionTester = std::make_unique<QAbstractItemModelTester>(
        composition.get(), QAbstractItemModelTester::FailureReportingMode::Warning);
}

// As after a crash: what was written last is read and gone on with; what was made from the old contours stays
// until someone closes it.
void EditedNetwork::reload()
{
    std::unique_ptr<SlicedContoursObject> read = readBack(*object);
    PlainContours model = editor->plain().asReadBack();
    ContourEditor::verifyEqual(*read, model);
    for (int row = manager.imageCount() - 1; row >= 0; --row)
        if (manager.image(row) == object)
            close(row);
    while (manager.imageCount() >= mostImages)
        close(0);
    begin(read.release(), std::move(model));
}

void EditedNetwork::verify()
{
    editor->verify();
    for (const SlicedContoursTriangulator *triangulator : all<SlicedContoursTriangulator>())
        if (editor->isAnnounced() && triangulator->sources().contains(object))
            verifyMesh(*triangulator);
    verifyTree();
    complaints->verifyNone();
}

void EditedNetwork::verifyMesh(const SlicedContoursTriangulator &triangulator)
{
    for (int row = 0; row < object->fragmentCount(); ++row) {
        const PlainFragment &fragment = editor->plain().fragments[static_cast<std::size_t>(row)];
        const TriMeshFragment *mesh = triangulator.triangulationOf(object->fragment(row));
        require(mesh != nullptr, "a fragment has no mesh");
        int faces = 0;
        plainRibbons(linesOf(fragment), [&](const MERV::BRep::TriFace &face) {
            require(faces < mesh->faceCount(), "a mesh has too few faces");
            for (int corner = 0; corner < 3; ++corner)
                require(mesh->face(faces).vertex(corner).sameCoordinates(face.vertex(corner)),
                        "a corner of a face");
            ++faces;
        });
        require(faces == mesh->faceCount(), "a mesh has too many faces");
        verifyBounds(*mesh, fragment);
        seen.faces += faces;
    }
}

void EditedNetwork::verifyTree() const
{
    require(composition->rowCount() == composition->podCount(), "rows of the tree");
    for (int row = 0; row < composition->podCount(); ++row) {
        if (composition->pod(row)->object() != object)
            continue;
        const QModelIndex parent = composition->index(row, 0);
        const int contourCount = object->contourCount();
        require(composition->rowCount(parent) == contourCount + object->fragmentCount(), "rows of contours");
        for (int child = 0; child < composition->rowCount(parent); ++child) {
            const QString expected = child < contourCount ? object->contour(child)->label()
                                                          : object->fragment(child - contourCount)->label();
            require(composition->index(child, 0, parent).data().toString() == expected, "a name in the tree");
        }
    }
}

void EditedNetwork::verifyMetrics()
{
    for (const std::unique_ptr<MetricsTable> &table : tables)
        seen.outlines += table->verify(editor->isAnnounced() ? object : nullptr, editor->plain());
    complaints->verifyNone();
}

void EditedNetwork::verifyFile()
{
    ++seen.files;
    const std::unique_ptr<SlicedContoursObject> read = readBack(*object);
    ContourEditor::verifyEqual(*read, editor->plain().asReadBack());
}

void EditedNetwork::awaitWorkers() const
{
    QElapsedTimer clock;
    clock.start();
    const auto areBusy = [this] {
        for (const TriMeshDistanceMeasurer *measurer : all<TriMeshDistanceMeasurer>())
            if (measurer->isPending())
                return true;
        for (const RasterizerObject *raster : all<RasterizerObject>())
            if (raster->isStale())
                return true;
        return false;
    };
    while (areBusy()) {
        require(clock.elapsed() < 60000, "the workers do not come to rest");
        QThread::msleep(2);
        QCoreApplication::processEvents();
    }
}

void EditedNetwork::verifyMeasurements()
{
    awaitWorkers();
    for (const Measurement &measurement : measurements)
        verifyMeasurement(measurement);
}

void EditedNetwork::verifyMeasurement(const Measurement &measurement)
{
    SampleMap expected;
    if (measurement.base != nullptr && measurement.remote != nullptr) {
        const bool alongNormal = measurement.definition != TriMeshDistanceMeasurer::MinimalDistance;
        const PlainThickness plain(measurement.base->all(), measurement.remote->all(), alongNormal);
        expected = plainSamples(plain);
    }
    const LockedSamples samples = measurement.measurer->samples();
    require(samples->size() == expected.size(), "number of samples");
    for (const auto &[place, value] : expected)
        require(samples.contains(place) && samples.value(place) == value, "a sample");
    seen.samples += static_cast<long>(expected.size());
}

void EditedNetwork::closeAll()
{
    tables.clear();
    while (manager.imageCount() > 1) {
        const int row = source.below(manager.imageCount());
        close(manager.image(row) != object ? row : (row + 1) % manager.imageCount());
        complaints->verifyNone();
    }
    require(composition->podCount() == 1, "a closed object is still shown");
    compositionTester.reset();
    composition.reset();
    require(watched == nullptr || listeners() == ownListeners, "someone still listens to the contours");
    close(0);
}
