// The OpenGL side of RasterizerObject: what the constructor finds out about the canvas, and the worker.
#include "meshes/RasterizerObject.h"
#include "platform/GlState.h"
#include "platform/OffscreenCanvas.h"

#include <QThread>

#include <array>
#include <cmath>
#include <cstring>
#include <exception>
#include <initializer_list>
#include <iostream>
#include <limits>
#include <sstream>
#include <string>

namespace {

constexpr unsigned long pollingIntervalMs = 20;
constexpr double nearZ = 1000.0; // on purpose above the far one: z grows towards the eye
constexpr double farZ = -1000.0;
constexpr int blueByte = 2;

using Rgba = std::array<GLubyte, 4>;
constexpr Rgba probeColour{145, 39, 198, 255};

// Lines are written whole: other threads write, too.
void tell(std::ostream &stream, const std::string &line)
{
    stream << line + '\n' << std::flush;
}

std::string textOf(const void *address)
{
    std::ostringstream text;
    text << address;
    return text.str();
}

std::string threadId()
{
    return textOf(QThread::currentThreadId());
}

// Makes the box of mm 0..right, bottom..top the whole canvas.
void loadOrtho(double right, double bottom, double top)
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    // OpenGL refuses an empty box and keeps the identity; so do we for what is no number.
    if (std::isfinite(right) && std::isfinite(bottom) && std::isfinite(top))
        glOrtho(0.0, right, bottom, top, nearZ, farZ);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}

// Each pixel is covered or not: nothing that blends, smooths, lights or textures.
void loadPlainState()
{
    for (const GLenum capability : std::initializer_list<GLenum>{
             GL_BLEND, GL_DITHER, GL_MULTISAMPLE, GL_DEPTH_TEST, GL_TEXTURE_2D, GL_LIGHTING, GL_SCISSOR_TEST,
             GL_LINE_SMOOTH, GL_POINT_SMOOTH, GL_POLYGON_SMOOTH, GL_LINE_STIPPLE, GL_COLOR_LOGIC_OP})
        glDisable(capability);
    glPointSize(1.0f);
    glLineWidth(1.0f);
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
}

// Nearest voxel and no repetition, for sources that are volumes.
void loadTextureParameters()
{
    glBindTexture(GL_TEXTURE_2D, contextTexture());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
}

} // namespace

bool RasterizerObject::showsProbeColour(int row) const
{
    // On purpose a row that need not exist: outside the canvas nothing is defined, so nothing is read.
    if (width < 1 || row >= height)
        return false;
    Rgba pixel{};
    glReadPixels(0, row, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
    return pixel == probeColour;
}

// Draws a point into the first voxel and looks where it is.
void RasterizerObject::probeOrientation()
{
    constexpr int otherEnd = 255; // on purpose not derived from the height
    const bool current = canvas->makeCurrent();
    // What any canvas has: there are no others any more.
    std::cout << "Pbuffer is in "
              << "RGBA"
              << " mode." << std::endl;
    if (!current)
        return;
    loadPlainState();
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    loadOrtho(width * static_cast<double>(voxelSize[0]), 0.0, height * static_cast<double>(voxelSize[1]));
    glColor4ubv(probeColour.data());
    {
        const GlPrimitive points(GL_POINTS);
        glVertex2f(voxelSize[0] / 2.0f, voxelSize[1] / 2.0f);
    }
    yFlipped = !showsProbeColour(0) && showsProbeColour(otherEnd);
    canvas->doneCurrent();
}

void RasterizerObject::work()
{
    canvas->takeOver();
    tell(std::cout, "Rasterizer thread started. Thread id is " + threadId());
    tell(std::cout, "Now entering Rasterizer main loop ...");
    while (awaitRequest())
        rasterize();
    canvas->giveAway();
    tell(std::cout, "Exiting Rasterizer event loop ...");
}

// Waits until a run is asked for; false if the worker is to end.
bool RasterizerObject::awaitRequest()
{
    for (;;) {
        {
            const std::lock_guard lock(flagMutex);
            if (stop)
                return false;
            if (requested) {
                requested = false;
                return true;
            }
        }
        QThread::msleep(pollingIntervalMs);
    }
}

bool RasterizerObject::stopRequested() const
{
    const std::lock_guard lock(flagMutex);
    return stop;
}

void RasterizerObject::rasterize()
{
    tell(std::cout, "Starting rasterization. Thread id is " + threadId() + ", OpenGL error flags are " +
                        std::to_string(drawingErrors));
    bool complete = true;
    if (canvas->makeCurrent()) {
        setUpDrawing();
        complete = drawSlices();
        drawingErrors = glGetError();
        canvas->doneCurrent();
    } else {
        tell(std::cerr, "makeCurrent failed. pbuffer DC is " + textOf(canvas->handle()));
    }
    {
        const std::lock_guard lock(flagMutex);
        stale = requested;
    }
    if (!complete)
        return;
    publish();
    emit updated();
    tell(std::cout, "Rasterization finished in thread id " + threadId());
}

void RasterizerObject::setUpDrawing() const
{
    const double right = width * static_cast<double>(voxelSize[0]);
    const double top = height * static_cast<double>(voxelSize[1]);
    if (yFlipped)
        loadOrtho(right, top, 0.0);
    else
        loadOrtho(right, 0.0, top);
    loadTextureParameters();
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
}

// False if the run ends early: the worker is to stop, the source has gone, or it could not draw.
bool RasterizerObject::drawSlices()
{
    try {
        for (int slice = 0; slice < depth; ++slice)
            if (stopRequested() || !drawSlice(slice))
                return false;
        return true;
    } catch (const std::exception &failure) {
        tell(std::cerr, std::string("Rasterization failed: ") + failure.what());
        return false;
    }
}

bool RasterizerObject::drawSlice(int slice)
{
    // Of x and y the smallest positive number, on purpose not the most negative one.
    constexpr float lowest = std::numeric_limits<float>::min();
    constexpr float highest = std::numeric_limits<float>::max();
    loadPlainState();
    glClear(GL_COLOR_BUFFER_BIT);
    prepareSlice();
    {
        const std::lock_guard lock(sourceMutex);
        if (source == nullptr)
            return false;
        source->renderBox(this, lowest, highest, lowest, highest, static_cast<float>(slice) * voxelSize[2],
                          static_cast<float>(slice + 1) * voxelSize[2]);
    }
    readSlice(slice);
    return true;
}

void RasterizerObject::readSlice(int slice)
{
    glFinish();
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    const std::lock_guard lock(dataMutex);
    const std::uint8_t *pixel = pixels.data() + blueByte;
    for (std::uint8_t &voxel : slices[static_cast<std::size_t>(slice)]) {
        voxel = *pixel;
        pixel += sizeof(Rgba);
    }
}

void RasterizerObject::publish()
{
    {
        const std::lock_guard data(dataMutex);
        const auto voxelLock = lockVoxels();
        auto *out = static_cast<std::uint8_t *>(image->getFrameData(0));
        for (const std::vector<std::uint8_t> &slice : slices) {
            if (!slice.empty())
                std::memcpy(out, slice.data(), slice.size());
            out += slice.size();
        }
    }
    invalidateTextures();
}

void RasterizerObject::prepareSlice()
{
    glEnable(GL_LINE_SMOOTH);
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
}
