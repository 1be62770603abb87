#include "shell/Registration.h"

#include "contours/metrics/SlicedMetricsModel.h"
#include "objects/manager/DefaultQIconProvider.h"
#include "objects/manager/ImageManager.h"
#include "serialization/dialogs/VoxelSizeDialog.h"
#include "serialization/formats/AnalyzeSerializer.h"
#include "serialization/formats/AnalyzeUnserializer.h"
#include "serialization/formats/DcmUnserializer.h"
#include "serialization/formats/EdgePointLister.h"
#include "serialization/formats/InteractiveDicomUnserializer.h"
#include "serialization/formats/MhdSerializer.h"
#include "serialization/formats/MhdUnserializer.h"
#include "serialization/formats/SlicSerializer.h"
#include "serialization/formats/SlicUnserializer.h"
#include "serialization/formats/TextSerializer.h"
#include "serialization/formats/TextSlicSerializer.h"
#include "serialization/formats/VisSerializer.h"
#include "serialization/formats/VisUnserializer.h"
#include "serialization/formats/WindowsBitmapSerializer.h"
#include "serialization/formats/WindowsBitmapUnserializer.h"

// The order of these lines is the order in which the formats are offered and tried.
void registerFormats(ImageManager &manager)
{
    manager.addSerializer(new VisSerializer);
    manager.addSerializer(new SlicSerializer);
    manager.addSerializer(new TextSlicSerializer);
    manager.addSerializer(new TextSerializer);
    manager.addSerializer(new EdgePointLister);
    manager.addSerializer(new AnalyzeSerializer);
    manager.addSerializer(new MhdSerializer);
    manager.addSerializer(new WindowsBitmapSerializer);

    manager.addUnserializer(new InteractiveDicomUnserializer);
    manager.addUnserializer(new SlicUnserializer);
    manager.addUnserializer(new DcmUnserializer);
    manager.addUnserializer(new MhdUnserializer);
    manager.addUnserializer(new AnalyzeUnserializer);
    manager.addUnserializer(new VisUnserializer(&VoxelSizeDialog::ask));
    manager.addUnserializer(new WindowsBitmapUnserializer);

    manager.addIconProvider(new DefaultQIconProvider);
    manager.setMetricsModelFactory([&manager](ImageObject *object) -> QAbstractItemModel * {
        auto *model = new SlicedMetricsModel(object);
        manager.addClosingListener(model, [model](ImageObject *closing) { model->detachFrom(closing); });
        return model;
    });
}
