// The cells of the tree that the composition shows: what they say, and what editing them changes.
#include "view/ImageComposition.h"

#include "contours/EdgePointSet.h"
#include "objects/RectilinearGridImageObject.h"
#include "view/DisplayScope.h"
#include "view/GraphicsPod.h"

#include <QColor>
#include <QStringList>

#include <algorithm>

namespace {

constexpr int swatchSize = 16;
constexpr int filterNone = 0;
constexpr int filterSobel = 1;

bool showsText(int role)
{
    return role == Qt::DisplayRole || role == Qt::EditRole;
}

bool hasColor(int graphicsType)
{
    return graphicsType == GraphicsTypeImage || graphicsType == GraphicsTypeContour ||
           graphicsType == GraphicsTypeFragment;
}

bool isChildType(int graphicsType)
{
    return graphicsType == GraphicsTypeContour || graphicsType == GraphicsTypeFragment;
}

QPixmap swatch(QColor color)
{
    color.setAlphaF(1.0f);
    QPixmap pixmap(swatchSize, swatchSize);
    pixmap.fill(color);
    return pixmap;
}

float opacityOf(double percent)
{
    return static_cast<float>(std::clamp(percent / 100.0, 0.0, 1.0));
}

QString filterName(int filter)
{
    return filter == filterSobel ? ImageComposition::tr("Sobel") : ImageComposition::tr("[none]");
}

} // namespace

QVariant ImageComposition::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case ImageColumn:
        return tr("Image");
    case DisplayColumn:
        return tr("Display");
    case ColorColumn:
        return tr("Color");
    case OpacityColumn:
        return tr("Opacity [%]");
    case AnalyzeColumn:
        return tr("Analyze");
    case EditColumn:
        return tr("Edit");
    case DisplayScopeColumn:
        return tr("Display Scope");
    case DisplayModeColumn:
        return tr("Display Mode");
    case InputFilterColumn:
        return tr("Input Filter");
    default:
        return {};
    }
}

Qt::ItemFlags ImageComposition::flags(const QModelIndex &index) const
{
    const GraphicsObject *object = objectAt(index);
    if (object == nullptr)
        return Qt::ItemIsEnabled;
    constexpr Qt::ItemFlags editable = Qt::ItemIsEnabled | Qt::ItemIsEditable;
    constexpr Qt::ItemFlags plain = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    const int type = object->graphicsType();
    switch (index.column()) {
    case ImageColumn:
        return editable | Qt::ItemIsSelectable;
    case ColorColumn:
    case OpacityColumn:
        return hasColor(type) ? editable | Qt::ItemIsSelectable : plain;
    case AnalyzeColumn:
        return type == GraphicsTypeImage || qobject_cast<const EdgePointSet *>(object) != nullptr ? editable
                                                                                                  : plain;
    case EditColumn:
        return isChildType(type) ? editable : plain;
    case DisplayColumn:
    case DisplayScopeColumn:
    case DisplayModeColumn:
    case InputFilterColumn:
        return topPod(index) != nullptr ? editable : plain;
    default:
        return plain;
    }
}

QVariant ImageComposition::data(const QModelIndex &index, int role) const
{
    GraphicsObject *object = objectAt(index);
    if (object == nullptr)
        return {};
    switch (index.column()) {
    case ImageColumn:
        return nameData(object, role);
    case ColorColumn:
        return colorData(index, role);
    case OpacityColumn:
        return opacityData(index, role);
    case AnalyzeColumn:
        return analyzeData(index, role);
    case EditColumn:
        return editData(object, role);
    default:
        GraphicsPod *pod = topPod(index);
        return pod != nullptr ? podData(*pod, index.column(), role) : QVariant();
    }
}

QVariant ImageComposition::nameData(GraphicsObject *object, int role) const
{
    if (role == Qt::DecorationRole) {
        if (qobject_cast<RectilinearGridImageObject *>(object) != nullptr)
            return imageIcon;
        return object->graphicsType() == GraphicsTypeFragment ? QVariant(fragmentIcon) : QVariant();
    }
    const auto *labeled = qobject_cast<const LabeledGraphicsObject *>(object);
    if (labeled != nullptr && (showsText(role) || role == Qt::WhatsThisRole))
        return labeled->label();
    return {};
}

// The pod and the index of the colour of a row that has one.
std::optional<std::pair<GraphicsPod *, int>> ImageComposition::colorPlace(const QModelIndex &index) const
{
    const GraphicsObject *object = objectAt(index);
    if (object == nullptr || !hasColor(object->graphicsType()))
        return std::nullopt;
    if (GraphicsPod *pod = topPod(index))
        return std::pair(pod, 0);
    return std::pair(pods.at(parent(index).row()), index.row());
}

QVariant ImageComposition::colorData(const QModelIndex &index, int role) const
{
    const auto place = colorPlace(index);
    if (!place)
        return {};
    const QColor color = place->first->color(place->second);
    if (role == Qt::DecorationRole)
        return swatch(color);
    return showsText(role) ? QVariant(color.name()) : QVariant();
}

QVariant ImageComposition::opacityData(const QModelIndex &index, int role) const
{
    const auto place = colorPlace(index);
    if (!place || !showsText(role))
        return {};
    return static_cast<int>(static_cast<double>(place->first->color(place->second).alphaF()) * 100.0);
}

QVariant ImageComposition::analyzeData(const QModelIndex &index, int role) const
{
    if (qobject_cast<EdgePointSet *>(objectAt(index)) == nullptr)
        return role == Qt::WhatsThisRole ? QVariant(tr("Only edge point sets can be analyzed.")) : QVariant();
    return showsText(role) ? QVariant(index.row() == analyzed) : QVariant();
}

QVariant ImageComposition::editData(GraphicsObject *object, int role) const
{
    if (object->graphicsType() != GraphicsTypeFragment)
        return {};
    const bool isEdited = object == edited;
    if (showsText(role))
        return isEdited;
    if (role == Qt::CheckStateRole)
        return static_cast<int>(isEdited ? Qt::Checked : Qt::Unchecked);
    return {};
}

QVariant ImageComposition::podData(GraphicsPod &pod, int column, int role) const
{
    switch (column) {
    case DisplayColumn:
        return role == Qt::EditRole ? QVariant(pod.display()) : QVariant();
    case DisplayScopeColumn:
        if (role == Qt::DisplayRole)
            return DisplayScopes::shownName(pod.displayScope());
        return role == Qt::EditRole ? QVariant(DisplayScopes::offeredNames()) : QVariant();
    case InputFilterColumn:
        return showsText(role) ? QVariant(filterName(pod.inputFilter())) : QVariant();
    default:
        return {};
    }
}

bool ImageComposition::setData(const QModelIndex &index, const QVariant &value, int)
{
    if (objectAt(index) == nullptr)
        return false;
    switch (index.column()) {
    case ImageColumn:
        return setName(index, value.toString());
    case ColorColumn:
        return setColor(index, value.toString());
    case OpacityColumn:
        return setOpacity(index, value.toDouble());
    case AnalyzeColumn:
        return setAnalyzed(index);
    case EditColumn:
        return setEdited(index, value.toBool());
    default:
        GraphicsPod *pod = topPod(index);
        return pod != nullptr && setPodData(*pod, index, value);
    }
}

// Groups and edge points keep their names, and the answer is still true.
bool ImageComposition::setName(const QModelIndex &index, const QString &name)
{
    GraphicsObject *object = objectAt(index);
    if (auto *labeled = qobject_cast<LabeledGraphicsObject *>(object);
        labeled != nullptr && hasColor(object->graphicsType()))
        labeled->setLabel(name);
    emit updated();
    return true;
}

bool ImageComposition::setColor(const QModelIndex &index, const QString &name)
{
    if (GraphicsPod *pod = topPod(index)) {
        QColor color(name);
        color.setAlphaF(pod->color(0).alphaF());
        return storeColor(index, color);
    }
    const auto place = colorPlace(index);
    if (!place)
        return false;
    const QColor given(name);
    QColor color = place->first->color(place->second);
    color.setRed(given.red());
    color.setGreen(given.green());
    color.setBlue(given.blue());
    return storeColor(index, color);
}

bool ImageComposition::setOpacity(const QModelIndex &index, double percent)
{
    QColor color;
    if (GraphicsPod *pod = topPod(index))
        color = pod->color(0);
    else if (const auto place = colorPlace(index))
        color = place->first->color(place->second);
    else
        return false;
    color.setAlphaF(opacityOf(percent));
    return storeColor(index, color);
}

// For a row whose pod and colour exist.
bool ImageComposition::storeColor(const QModelIndex &index, const QColor &color)
{
    if (GraphicsPod *pod = topPod(index))
        pod->setColor(color);
    else if (const auto place = colorPlace(index))
        place->first->colors()[place->second] = color;
    emit dataChanged(index, index);
    emit updated();
    return true;
}

// The value does not count: whoever writes to this cell makes its row the analyzed one.
bool ImageComposition::setAnalyzed(const QModelIndex &index)
{
    const int row = rowOf(static_cast<GraphicsObject *>(index.internalPointer()));
    if (row < 0)
        return false;
    analyzed = row;
    emit dataChanged(this->index(0, index.column()), this->index(podCount() - 1, index.column()));
    return true;
}

bool ImageComposition::setEdited(const QModelIndex &index, bool on)
{
    edited = on ? objectAt(index) : nullptr;
    const QModelIndex above = parent(index);
    emit dataChanged(this->index(0, index.column(), above),
                     this->index(rowCount(above) - 1, index.column(), above));
    return true;
}

bool ImageComposition::setPodData(GraphicsPod &pod, const QModelIndex &index, const QVariant &value)
{
    switch (index.column()) {
    case DisplayColumn:
        pod.setDisplay(value.toBool());
        emit dataChanged(index, index);
        return true;
    case DisplayScopeColumn: {
        const auto scope = DisplayScopes::fromName(value.toString());
        if (!scope)
            return false;
        pod.setDisplayScope(*scope); // which announces itself
        return true;
    }
    case InputFilterColumn:
        pod.setInputFilter(value.toString() == filterName(filterSobel) ? filterSobel : filterNone);
        emit dataChanged(index, index);
        emit updated();
        return true;
    default:
        return false;
    }
}
