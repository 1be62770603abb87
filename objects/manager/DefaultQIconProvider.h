#pragma once

#include "objects/manager/AbstractQIconProvider.h"

#include <QIcon>

#include <memory>

// Icons of grid images: one for volumes, one for single slices.
class DefaultQIconProvider : public AbstractQIconProvider
{
public:
    // Exactly for grid images.
    bool canProvide(Entity *entity) override;
    // A null icon for all else.
    const QIcon &icon(Entity *entity) override;

private:
    QIcon emptyIcon;
    std::unique_ptr<QIcon> volumeIcon; // built on first use
    std::unique_ptr<QIcon> sliceIcon;  // built on first use
};
