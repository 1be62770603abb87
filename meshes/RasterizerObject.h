#pragma once

#include "objects/GraphicsObjectRenderAdvisor.h"
#include "objects/MervImageObject.h"
#include "platform/WorkerThread.h"

#include <memory>
#include <mutex>
#include <vector>

class OffscreenCanvas;

// A voxel image (8 bit, unsigned) drawn by OpenGL: the source draws itself slab by slab, one slab per slice,
// and each picture becomes a slice. Drawn on a worker thread of its own with an off-screen context, once
// invalidateRasterization() was called and again after each change of the source; updated() comes from the
// worker. Does not own the source; keeps the last raster when that is closed.
class RasterizerObject : public MervImageObject, public GraphicsObjectRenderAdvisor
{
    Q_OBJECT

public:
    // Sizes in voxels, at least 0; voxel sizes in mm. Throws std::bad_alloc when the image has no room.
    RasterizerObject(ImageObject *source, int width, int height, int depth, float voxelX, float voxelY,
                     float voxelZ, QObject *parent = nullptr, bool rgba = true);
    ~RasterizerObject() override;

    bool isRunning() const { return worker.isRunning(); }
    void wait() { worker.join(); }
    // The raster is behind its source, or a run is asked for or going on.
    bool isStale() const;

    QList<ImageObject *> sources() const override;
    void detachFrom(ImageObject *closing) override;
    void stopWorking() override;
    void beforePaint() override;

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
    struct State;
    std::unique_ptr<State> state;
    WorkerThread worker;
};
