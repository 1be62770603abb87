#pragma once

#include "objects/GraphicsObjectRenderAdvisor.h"
#include "objects/ImageObject.h"
#include "platform/OpenGl.h"

#include <array>
#include <atomic>
#include <functional>
#include <mutex>
#include <semaphore>
#include <vector>

// A source that stops in each drawing until a test lets it go on. Draws nothing.
class GatedSource : public ImageObject
{
public:
    void renderBox(GraphicsObjectRenderAdvisor *, float, float, float, float, float, float) override
    {
        ++entered;
        gate.acquire();
        ++left;
    }
    void letPass(int drawings) { gate.release(drawings); }

    std::atomic<int> entered{0};
    std::atomic<int> left{0};

private:
    std::counting_semaphore<> gate{0};
};

// A source that draws what a test says, and keeps the boxes that it was asked for.
class ScriptedSource : public ImageObject
{
public:
    using Box = std::array<float, 6>; // x, y and z, each from and to

    explicit ScriptedSource(std::function<void(float zMin)> newDraw)
        : draw(std::move(newDraw))
    {}

    void renderBox(GraphicsObjectRenderAdvisor *, float xMin, float xMax, float yMin, float yMax, float zMin,
                   float zMax) override
    {
        {
            const std::lock_guard lock(mutex);
            asked.push_back({xMin, xMax, yMin, yMax, zMin, zMax});
        }
        draw(zMin);
    }
    std::vector<Box> boxes() const
    {
        const std::lock_guard lock(mutex);
        return asked;
    }

    // A rectangle in the current colour.
    static void fill(float left, float bottom, float right, float top) { glRectf(left, bottom, right, top); }

private:
    std::function<void(float)> draw;
    mutable std::mutex mutex; // guards asked
    std::vector<Box> asked;
};
