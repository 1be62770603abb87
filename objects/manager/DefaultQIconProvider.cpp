#include "objects/manager/DefaultQIconProvider.h"

#include "Common/Image.h"
#include "objects/MervImageObject.h"
#include "objects/RegularGridImageObject.h"
#include "resources/Resources.h"

namespace {

const QIcon &builtOnce(std::unique_ptr<QIcon> &icon, const QString &kind)
{
    if (icon == nullptr) {
        icon = std::make_unique<QIcon>();
        icon->addFile(Resources::icon("pixmap." + kind + ".1channel.32.png"));
        icon->addFile(Resources::icon("pixmap." + kind + ".1channel.16.png"));
    }
    return *icon;
}

} // namespace

bool DefaultQIconProvider::canProvide(Entity *entity)
{
    return dynamic_cast<RegularGridImageObject *>(entity) != nullptr;
}

const QIcon &DefaultQIconProvider::icon(Entity *entity)
{
    if (!canProvide(entity))
        return emptyIcon;
    const auto *volume = dynamic_cast<MervImageObject *>(entity);
    const bool hasSlices =
        volume != nullptr && volume->voxels() != nullptr && volume->voxels()->getDepth() > 1;
    return hasSlices ? builtOnce(volumeIcon, "volume") : builtOnce(sliceIcon, "1slice");
}
