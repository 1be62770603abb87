#include "view/interaction/WindowMode.h"

#include "objects/MervImageObject.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"
#include "view/interaction/CentreOfMass.h"

#include <cmath>
#include <iostream>

namespace {

constexpr double pixelsPerWindow = 1024.0;

// Left drag: dx shifts the window, dy widens it.
void shiftAndWiden(MervImageObject &image, const QPoint &moved)
{
    const double low = static_cast<double>(image.windowLow());
    const double high = static_cast<double>(image.windowHigh());
    const double window = high - low;
    const double dx = moved.x();
    const double half = moved.y() / 2.0;
    image.setWindow(static_cast<float>(low - (dx + half) / pixelsPerWindow * window),
                    static_cast<float>(high - (dx - half) / pixelsPerWindow * window));
}

// Right drag: dx shifts the window, dy narrows it by a power of two.
void shiftAndScale(MervImageObject &image, const QPoint &moved)
{
    const double low = static_cast<double>(image.windowLow());
    const double high = static_cast<double>(image.windowHigh());
    const double window = high - low;
    const double shift = moved.x() / pixelsPerWindow;
    const double growth = (std::exp2(moved.y() / pixelsPerWindow) - 1.0) / 2.0;
    image.setWindow(static_cast<float>(low - (shift - growth) * window),
                    static_cast<float>(high - (shift + growth) * window));
}

void printWindow(MervImageObject &image)
{
    std::cout << "WindowMin, WindowMax: " << image.windowLow() << ", " << image.windowHigh() << std::endl;
    const auto lock = image.lockVoxels();
    if (const auto centre = centreOfMass(*image.voxels(), image.voxels()->getLow(0)))
        std::cout << "Center of Mass: " << (*centre)[0] << ", " << (*centre)[1] << ", " << (*centre)[2]
                  << std::endl;
}

} // namespace

void WindowMode::move(const MouseInput &input)
{
    if (!(input.buttons & (Qt::LeftButton | Qt::RightButton)))
        return;
    MervImageObject *image = view.imageComposition()->windowedImage();
    if (image == nullptr || image->voxels() == nullptr)
        return;
    if (input.buttons.testFlag(Qt::LeftButton)) {
        shiftAndWiden(*image, input.movement);
    } else {
        shiftAndScale(*image, input.movement);
        printWindow(*image);
    }
    view.requestRepaint();
}

bool WindowMode::doubleClick(const MouseInput &input)
{
    if (input.button != Qt::LeftButton && input.button != Qt::RightButton)
        return false;
    MervImageObject *image = view.imageComposition()->windowedImage();
    if (image == nullptr || image->voxels() == nullptr)
        return true;
    if (input.button == Qt::LeftButton)
        image->computeMinMax();
    else
        image->setWindow(0.0f, 1.0f);
    view.requestRepaint();
    return true;
}
