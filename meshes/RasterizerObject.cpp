#include "meshes/RasterizerObject.h"

#include "Common/ImageBase.h"
#include "platform/OffscreenCanvas.h"

#include <QMetaMethod>
#include <QThread>

#include <array>
#include <cstddef>
#include <iostream>
#include <limits>
#include <new>

namespace {

constexpr std::size_t channels = 4; // of the canvas
constexpr double copies = 3.0;      // of a voxel: in the image, in the slices and in their pictures

std::size_t area(int width, int height)
{
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
}

// Throws std::bad_alloc for a raster beyond all memory. Piece after piece the system may grant what it does
// not have, and end the program when that is used; all of it at once it refuses.
void demandMemory(int width, int height, int depth)
{
    const double bytes = copies * static_cast<double>(width) * height * depth;
    if (bytes > static_cast<double>(std::numeric_limits<std::ptrdiff_t>::max()))
        throw std::bad_alloc();
    void *volatile memory = ::operator new(static_cast<std::size_t>(bytes));
    ::operator delete(memory);
}

// An empty image for the raster. Owned by the caller.
MERV::Image *newRaster(int width, int height, int depth, const std::array<float, 3> &voxelSize)
{
    demandMemory(width, height, depth);
    try {
        auto raster = std::make_unique<MERV::ImageBase<unsigned char>>();
        raster->setDimensions(width, height, depth, 1, 1);
        raster->setSpacing(voxelSize[0], voxelSize[1], voxelSize[2], 1.0f);
        raster->setWindowRange(0.0f, 255.0f, 0);
        return raster.release();
    } catch (const MERV::Exception &) {
        throw std::bad_alloc();
    }
}

} // namespace

RasterizerObject::RasterizerObject(ImageObject *newSource, int newWidth, int newHeight, int newDepth,
                                   float voxelX, float voxelY, float voxelZ, QObject *parent, bool)
    : MervImageObject(newRaster(newWidth, newHeight, newDepth, {voxelX, voxelY, voxelZ}), QString(), parent)
    , width(newWidth)
    , height(newHeight)
    , depth(newDepth)
    , voxelSize{voxelX, voxelY, voxelZ}
    , slices(static_cast<std::size_t>(newDepth), std::vector<std::uint8_t>(area(newWidth, newHeight)))
    , source(newSource)
    , pixels(area(newWidth, newHeight) * channels)
    , canvas(std::make_unique<OffscreenCanvas>(newWidth, newHeight))
    , worker([this] { work(); })
{
    axes = {QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("z")};
    rangeText = tr("raster value");
    clearSignature();
    setLabel(tr("Rasterization of %1").arg(source != nullptr ? source->label() : QString()));
    followSource();
    probeOrientation();
    std::cout << "Rasterizer constructed; thread id is " << QThread::currentThreadId() << std::endl;
    canvas->giveAway();
    worker.start(QThread::InheritPriority);
}

RasterizerObject::~RasterizerObject()
{
    shutdown();
    canvas.reset();
    std::cout << "Rasterizer Object deleted." << std::endl;
}

// Contours tell of changes by updated(QObject *); other sources have updated() alone.
void RasterizerObject::followSource()
{
    const QMetaMethod invalidate =
        staticMetaObject.method(staticMetaObject.indexOfSlot("invalidateRasterization()"));
    const auto follow = [&](const char *signal) {
        const QMetaObject *meta = source != nullptr ? source->metaObject() : &staticMetaObject;
        const int index = meta->indexOfSignal(signal);
        return source != nullptr && index >= 0 &&
               connect(source, meta->method(index), this, invalidate, Qt::QueuedConnection);
    };
    if (!follow("updated(QObject*)")) {
        std::cerr << "Cound not establish connection indicating rasterization invalidation." << std::endl;
        follow("updated()");
    }
    // For a source that goes without being announced: too late for a slab that is being drawn, but no other
    // one will be.
    if (source != nullptr)
        connect(source, &QObject::destroyed, this, &RasterizerObject::releaseSource);
}

void RasterizerObject::releaseSource()
{
    const std::lock_guard lock(sourceMutex);
    source = nullptr;
}

void RasterizerObject::detachFrom(ImageObject *closing)
{
    MervImageObject::detachFrom(closing);
    if (source == nullptr || closing != source)
        return;
    disconnect(source, nullptr, this, nullptr);
    releaseSource();
}

QList<ImageObject *> RasterizerObject::sources() const
{
    return source != nullptr ? QList<ImageObject *>{source} : QList<ImageObject *>();
}

void RasterizerObject::shutdown()
{
    if (!deletionTold)
        std::cout << "Deleting Rasterizer Object ..." << std::endl;
    deletionTold = true;
    RasterizerObject::stopWorking(); // also for destructors, where nothing is virtual
}

void RasterizerObject::stopWorking()
{
    MervImageObject::stopWorking();
    {
        const std::lock_guard lock(flagMutex);
        stop = true;
    }
    worker.join();
}

void RasterizerObject::beforePaint() {}

bool RasterizerObject::overrides(GraphicsObject *, int key, int)
{
    return key == RenderKey::Smooth;
}

std::uint32_t RasterizerObject::value(GraphicsObject *, int, int)
{
    return 0;
}

void RasterizerObject::invalidateRasterization()
{
    const std::lock_guard lock(flagMutex);
    stale = true;
    requested = true;
}

bool RasterizerObject::isStale() const
{
    const std::lock_guard lock(flagMutex);
    return stale;
}
