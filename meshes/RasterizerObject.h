#pragma once

#include "objects/GraphicsObjectRenderAdvisor.h"
#include "objects/MervImageObject.h"
#include "platform/WorkerThread.h"

#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

class OffscreenCanvas;

// A voxel image (8 bit, unsigned) drawn by OpenGL: the source draws itself slab by slab, one slab per slice,
// and each picture becomes a slice. Drawn on a worker thread of its own with an off-screen context, once
// invalidateRasterization() was called and again after each change of the source; updated() comes from the
// worker. Does not own the source; keeps the last raster when that is closed. Without OpenGL the raster stays
// 0. Made and deleted on the GUI thread, with no OpenGL context current afterwards.
class RasterizerObject : public MervImageObject, public GraphicsObjectRenderAdvisor
{
    Q_OBJECT

public:
    // Sizes in voxels, at least 0; voxel sizes in mm. Each voxel is drawn in red, green, blue and alpha,
    // whatever rgba says. Throws std::bad_alloc when the image has no room.
    RasterizerObject(ImageObject *source, int width, int height, int depth, float voxelX, float voxelY,
                     float voxelZ, QObject *parent = nullptr, bool rgba = true);
    ~RasterizerObject() override;

    bool isRunning() const { return worker.isRunning(); }
    void wait() { worker.join(); }
    // A run is asked for or draws. Its voxels are published, and updated() is emitted, shortly after this
    // ends.
    bool isStale() const;

    QList<ImageObject *> sources() const override;
    void detachFrom(ImageObject *closing) override;
    void stopWorking() override;
    // Nothing: neither a message nor a check for OpenGL.
    void beforePaint() override;

    // Smoothing is off in every line of a raster; all else is left to the objects.
    bool overrides(GraphicsObject *object, int key, int subKey) override;
    std::uint32_t value(GraphicsObject *object, int key, int subKey) override;

public slots:
    // Asks for a new raster. Any thread.
    void invalidateRasterization();

protected:
    // Sets up drawing for a slice, on the worker.
    virtual void prepareSlice();
    // Ends the worker, which leaves a run without publishing it. A class that replaces prepareSlice() or the
    // advice calls this in its own destructor. May be called again.
    void shutdown();

private:
    void followSource();
    void releaseSource();
    bool showsProbeColour(int row) const;
    void probeOrientation();

    void work();
    bool awaitRequest();
    bool stopRequested() const;
    void rasterize();
    void setUpDrawing() const;
    bool drawSlices();
    bool drawSlice(int slice);
    void readSlice(int slice);
    void publish();

    const int width; // of the raster, in voxels
    const int height;
    const int depth;
    const std::array<float, 3> voxelSize; // in mm

    mutable std::mutex flagMutex; // guards the next three; nothing is taken under it
    bool stale = false;           // the raster is out of date
    bool requested = false;       // a run is asked for
    bool stop = false;            // the worker is to end

    // The working copy of the raster, one block per slice, x fastest. Under this mutex that of the voxels may
    // be taken.
    std::mutex dataMutex;
    std::vector<std::vector<std::uint8_t>> slices;

    // Written by the GUI thread only, which waits by it until the worker has drawn the slab that it is at.
    // Held while the source draws: its own locks are taken under this one, never the other way round.
    std::mutex sourceMutex;
    ImageObject *source;

    std::vector<std::uint8_t> pixels; // read back from the canvas, four bytes each; the worker's
    std::unique_ptr<OffscreenCanvas> canvas;
    unsigned int drawingErrors = 0; // of OpenGL in the run before
    bool yFlipped = false;          // the canvas has its first row at the top
    bool deletionTold = false;
    WorkerThread worker;
};
