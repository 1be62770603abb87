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

namespace {

// The one T of the process, which lives to its end: managers do not own what is registered with them.
template <class T, class... Arguments>
T *theOne(Arguments... arguments)
{
    static T *const one = new T(arguments...);
    return one;
}

} // namespace

// The order of these lines is the order in which the formats are offered and tried.
void registerFormats(ImageManager &manager)
{
    manager.addSerializer(theOne<VisSerializer>());
    manager.addSerializer(theOne<SlicSerializer>());
    manager.addSerializer(theOne<TextSlicSerializer>());
    manager.addSerializer(theOne<TextSerializer>());
    manager.addSerializer(theOne<EdgePointLister>());
    manager.addSerializer(theOne<AnalyzeSerializer>());
    manager.addSerializer(theOne<MhdSerializer>());
    manager.addSerializer(theOne<WindowsBitmapSerializer>());

    manager.addUnserializer(theOne<InteractiveDicomUnserializer>());
    manager.addUnserializer(theOne<SlicUnserializer>());
    manager.addUnserializer(theOne<DcmUnserializer>());
    manager.addUnserializer(theOne<MhdUnserializer>());
    manager.addUnserializer(theOne<AnalyzeUnserializer>());
    manager.addUnserializer(theOne<VisUnserializer>(&VoxelSizeDialog::ask));
    manager.addUnserializer(theOne<WindowsBitmapUnserializer>());

    manager.addIconProvider(theOne<DefaultQIconProvider>());
    manager.setMetricsModelFactory([&manager](ImageObject *object) -> QAbstractItemModel * {
        auto *model = new SlicedMetricsModel(object, &manager); // stays after the saving, on purpose
        manager.addClosingListener(model, [model](ImageObject *closing) { model->detachFrom(closing); });
        return model;
    });
}
