#include "tests/endurance/ContourEditor.h"

#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "tests/endurance/Watched.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <memory>

namespace {

constexpr int mostFragments = 6, mostContours = 4, mostReferences = 8, mostLines = 16;
constexpr std::size_t mostPoints = 48;

bool sameBits(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

void verifyEqualLine(const SlicedContoursSegment &real, const PlainLine &plain)
{
    const SegmentSnapshot line = real.snapshot();
    require(std::bit_cast<std::uint32_t>(line.z) == std::bit_cast<std::uint32_t>(plain.z),
            "height of a line");
    require(line.points.size() == plain.points.size() &&
                real.pointCount() == static_cast<int>(plain.points.size()),
            "number of points: " + std::to_string(line.points.size()) + " where the rules give " +
                std::to_string(plain.points.size()));
    for (std::size_t i = 0; i < line.points.size(); ++i)
        require(sameBits(line.points[i].x(), plain.points[i].x()) &&
                    sameBits(line.points[i].y(), plain.points[i].y()),
                "point " + std::to_string(i) + " of " + std::to_string(line.points.size()));
    require(real.length() == plain.length(), "length of a line");
}

} // namespace

ContourEditor::ContourEditor(SlicedContoursObject &edited, EditSource &decisions, PlainContours newModel,
                             Edits allowed)
    : object(edited)
    , source(decisions)
    , model(std::move(newModel))
    , edits(allowed)
{
    for (const PlainFragment &fragment : model.fragments)
        lastId = std::max(lastId, fragment.id);
    model.label = object.label();
    connect(&object, qOverload<QObject *>(&SlicedContoursObject::updated), this, [this] { silent = false; });
}

void ContourEditor::addContour(const QString &label, const QStringList &fragmentLabels)
{
    SlicedContour *contour = object.newContour(label);
    PlainContour plain{label, {}};
    for (const QString &fragmentLabel : fragmentLabels) {
        contour->addFragmentReference(object.newFragment(fragmentLabel));
        model.fragments.push_back({++lastId, fragmentLabel, {}});
        plain.fragmentIds.push_back(lastId);
    }
    model.contours.push_back(plain);
    silent = true;
}

void ContourEditor::step()
{
    using Edit = void (ContourEditor::*)();
    using Self = ContourEditor;
    static constexpr Edit ofLines[] = {
        &Self::addBack,  &Self::addBack,     &Self::addBack,     &Self::addFront,   &Self::addFront,
        &Self::drag,     &Self::drag,        &Self::drawLine,    &Self::drawLine,   &Self::drawLoop,
        &Self::splice,   &Self::splice,      &Self::splice,      &Self::spliceDry,  &Self::spliceExisting,
        &Self::erase,    &Self::erase,       &Self::moveToLevel, &Self::rename,     &Self::moveToFragment,
        &Self::drawLoop, &Self::redrawSlice, &Self::redrawSlice, &Self::redrawSlice};
    static constexpr Edit ofStructure[] = {&Self::newFragment,    &Self::newFragment, &Self::addDrawnFragment,
                                           &Self::deleteFragment, &Self::newContour,  &Self::deleteContour,
                                           &Self::refer,          &Self::refer};
    if (edits == AllEdits && source.oneIn(4))
        (this->*ofStructure[source.below(static_cast<int>(std::size(ofStructure)))])();
    else
        (this->*ofLines[source.below(static_cast<int>(std::size(ofLines)))])();
}

void ContourEditor::verify() const
{
    verifyEqual(object, model);
    for (const PlainFragment &fragment : model.fragments) {
        for (const PlainLine &line : fragment.lines) {
            for (std::size_t i = 0; i < line.points.size(); ++i) {
                const QPointF &p = line.points[i];
                require(std::isfinite(p.x()) && std::isfinite(p.y()), "a coordinate is not finite");
                require(line.spliced || i == 0 || !plainSame(line.points[i - 1], p),
                        "a drawn line holds a point twice in a row");
            }
        }
    }
}

void ContourEditor::verifyEqual(const SlicedContoursObject &object, const PlainContours &model)
{
    require(object.label() == model.label, "label of the object");
    require(object.fragmentCount() == static_cast<int>(model.fragments.size()), "number of fragments");
    for (int f = 0; f < object.fragmentCount(); ++f) {
        const SlicedContoursFragment &real = *object.fragment(f);
        const PlainFragment &plain = model.fragments[static_cast<std::size_t>(f)];
        require(real.label() == plain.label, "label of a fragment");
        require(real.segmentCount() == static_cast<int>(plain.lines.size()), "number of lines");
        for (int i = 0; i < real.segmentCount(); ++i)
            verifyEqualLine(*real.segment(i), plain.lines[static_cast<std::size_t>(i)]);
    }
    require(object.contourCount() == static_cast<int>(model.contours.size()), "number of contours");
    for (int c = 0; c < object.contourCount(); ++c) {
        const SlicedContour &real = *object.contour(c);
        const PlainContour &plain = model.contours[static_cast<std::size_t>(c)];
        require(real.label() == plain.label, "label of a contour");
        require(real.fragmentCount() == static_cast<int>(plain.fragmentIds.size()), "number of references");
        for (int i = 0; i < real.fragmentCount(); ++i) {
            const PlainFragment *meant = model.fragmentOf(plain.fragmentIds[static_cast<std::size_t>(i)]);
            const auto row = meant != nullptr ? static_cast<int>(meant - model.fragments.data()) : -1;
            require(real.fragment(i) == object.fragment(row), "what a contour refers to");
        }
    }
}

std::optional<ContourEditor::Place> ContourEditor::anyLine()
{
    if (model.fragments.empty())
        return std::nullopt;
    const int fragment = source.below(static_cast<int>(model.fragments.size()));
    const std::size_t lines = model.fragments[static_cast<std::size_t>(fragment)].lines.size();
    if (lines == 0)
        return std::nullopt;
    return Place{fragment, source.below(static_cast<int>(lines))};
}

PlainLine &ContourEditor::plainLine(Place place)
{
    return model.fragments[static_cast<std::size_t>(place.fragment)]
        .lines[static_cast<std::size_t>(place.line)];
}

SlicedContoursSegment *ContourEditor::realLine(Place place) const
{
    return object.fragment(place.fragment)->segment(place.line);
}

// Mostly on a coarse grid, where points meet; sometimes with many digits, and sometimes far away.
double ContourEditor::coordinate()
{
    const int kind = source.below(16);
    const int number = source.below(256);
    if (kind < 11)
        return number % 48 / 2.0;
    if (kind < 15)
        return number / 7.0 - 8.0;
    return (number - 128) * 1e3;
}

QPointF ContourEditor::somewhere()
{
    const double x = coordinate();
    return {x, coordinate()};
}

QPointF ContourEditor::somePointOf(const PlainLine &line)
{
    if (line.points.empty() || source.oneIn(3))
        return somewhere();
    switch (source.below(3)) {
    case 0:
        return line.points.front();
    case 1:
        return line.points.back();
    default:
        return line.points[static_cast<std::size_t>(source.below(static_cast<int>(line.points.size())))];
    }
}

float ContourEditor::someLevel()
{
    constexpr float odd[] = {0.0f, -0.0f, -3.0f, 0.1f, 1e4f, 2.9999f};
    const int choice = source.below(32);
    return choice < 6 ? odd[choice] : (static_cast<float>(choice % 8) + 0.5f) * 2.0f;
}

QString ContourEditor::someLabel()
{
    const QString labels[] = {"bone",
                              QString(),
                              QString::fromUtf8("Knorpelfl\xC3\xA4"
                                                "che \xF0\x9F\xA6\xB4"),
                              "%1 %L2 %n",
                              QString(300, 'x'),
                              "a\tb\nc",
                              QString(QChar(0xD83E))};
    return labels[source.below(static_cast<int>(std::size(labels)))];
}

bool ContourEditor::isFull(int fragment) const
{
    return model.fragments[static_cast<std::size_t>(fragment)].lines.size() >= mostLines;
}

void ContourEditor::addBack()
{
    const auto place = anyLine();
    if (!place || plainLine(*place).points.size() >= mostPoints)
        return;
    const QPointF p = somePointOf(plainLine(*place));
    realLine(*place)->addPointBack(p);
    plainLine(*place).addBack(p);
}

void ContourEditor::addFront()
{
    const auto place = anyLine();
    if (!place || plainLine(*place).points.size() >= mostPoints)
        return;
    const QPointF p = somePointOf(plainLine(*place));
    realLine(*place)->addPointFront(p);
    plainLine(*place).addFront(p);
}

// As a mouse does, with one announcement at the end.
void ContourEditor::drag()
{
    const auto place = anyLine();
    if (!place)
        return;
    realLine(*place)->beginUpdates();
    for (int left = source.below(12); left > 0 && plainLine(*place).points.size() < mostPoints; --left) {
        const QPointF p = somePointOf(plainLine(*place));
        const bool atFront = source.oneIn(4);
        silent = true;
        if (atFront)
            realLine(*place)->addPointFront(p);
        else
            realLine(*place)->addPointBack(p);
        require(silent, "a held back change was announced");
        atFront ? plainLine(*place).addFront(p) : plainLine(*place).addBack(p);
    }
    realLine(*place)->endUpdates();
    require(!silent, "a drag was not announced");
}

// A line with one announcement at its end; one of a single point is silent.
void ContourEditor::drawInto(int fragment, float z, const std::vector<QPointF> &points)
{
    if (isFull(fragment))
        return;
    SlicedContoursSegment *real = object.fragment(fragment)->newSegment(points.front(), z);
    silent = true;
    PlainLine line{{points.front()}, z};
    if (points.size() > 1)
        real->beginUpdates();
    for (std::size_t i = 1; i < points.size(); ++i) {
        real->addPointBack(points[i]);
        line.addBack(points[i]);
    }
    require(silent, "a held back change was announced");
    if (points.size() > 1)
        real->endUpdates();
    model.fragments[static_cast<std::size_t>(fragment)].lines.push_back(line);
}

void ContourEditor::drawLine()
{
    if (model.fragments.empty())
        return;
    const int fragment = source.below(static_cast<int>(model.fragments.size()));
    const float z = someLevel();
    std::vector<QPointF> points{somewhere()};
    for (int left = source.below(10); left > 0; --left)
        points.push_back(somewhere());
    drawInto(fragment, z, points);
}

void ContourEditor::drawLoop()
{
    if (model.fragments.empty())
        return;
    const int count = static_cast<int>(model.fragments.size());
    const int first = source.below(count);
    drawLoop(first, source.below(count), someLevel());
}

// An outline in two pieces that meet at both ends.
void ContourEditor::drawLoop(int first, int second, float z)
{
    const double wave = source.below(8) / 4.0;
    const int width = 2 + source.below(20);
    std::vector<QPointF> bone{{1, 10}}, surface{{1, 10}};
    for (int x = 2; x <= width; ++x) {
        bone.emplace_back(x, 10 - wave * (x % 3));
        surface.emplace_back(x, 13 + wave * (x % 4));
    }
    surface.push_back(bone.back());
    if (source.oneIn(3))
        std::reverse(surface.begin(), surface.end());
    drawInto(first, z, bone);
    drawInto(second, z, surface);
}

// All lines of a slice go, and the outline of a contour takes their place.
void ContourEditor::redrawSlice()
{
    if (model.contours.empty())
        return;
    const PlainContour &contour =
        model.contours[static_cast<std::size_t>(source.below(static_cast<int>(model.contours.size())))];
    std::vector<int> rows;
    for (const int id : contour.fragmentIds)
        if (const PlainFragment *fragment = model.fragmentOf(id))
            rows.push_back(static_cast<int>(fragment - model.fragments.data()));
    if (rows.empty())
        return;
    const float z = someLevel();
    for (int f = 0; f < static_cast<int>(model.fragments.size()); ++f) {
        auto &lines = model.fragments[static_cast<std::size_t>(f)].lines;
        for (int i = static_cast<int>(lines.size()) - 1; i >= 0; --i) {
            if (lines[static_cast<std::size_t>(i)].z == z) {
                delete realLine({f, i});
                lines.erase(lines.begin() + i);
            }
        }
    }
    drawLoop(rows.front(), rows.back(), z);
}

// A patch whose ends lie on the line, near it or anywhere.
void ContourEditor::splice()
{
    const auto place = anyLine();
    if (!place || isFull(place->fragment) || plainLine(*place).points.size() >= mostPoints)
        return;
    const auto nearby = [this, &place] {
        const QPointF p = somePointOf(plainLine(*place));
        return p + QPointF(source.below(5) / 4.0 - 0.5, source.below(5) / 4.0 - 0.5);
    };
    std::vector<QPointF> points{nearby()};
    for (int left = source.below(5); left > 0; --left)
        points.push_back(somewhere());
    points.push_back(nearby());
    drawInto(place->fragment, plainLine(*place).z, points);
    auto &lines = model.fragments[static_cast<std::size_t>(place->fragment)].lines;
    const PlainLine patch = lines.back();
    const int last = static_cast<int>(lines.size()) - 1;
    float lost = 0.5f, plainLost = 0.5f;
    require(!realLine(*place)->replaceWith(realLine({place->fragment, last}), &lost), "a dry run acted");
    plainLost += plainLine(*place).spliceLoss(patch.points);
    require(std::abs(lost - plainLost) <= 1e-5f * (1.0f + std::abs(lost)), "the length that splicing loses");
    const bool spliced = patch.points.size() >= 2 && plainLine(*place).splice(patch.points);
    require(realLine(*place)->replaceWith(realLine({place->fragment, last}), nullptr) == spliced,
            "whether a patch touches");
    if (spliced)
        lines.pop_back();
}

// Asking for the loss changes nothing and says nothing.
void ContourEditor::spliceDry()
{
    const auto place = anyLine(), patch = anyLine();
    if (!place || !patch)
        return;
    const bool before = std::exchange(silent, true);
    float lost = 0.0f;
    require(!realLine(*place)->replaceWith(realLine(*patch), &lost), "a dry run acted");
    require(silent, "a dry run was announced");
    silent = before;
    if (realLine(*place) != realLine(*patch) && !plainLine(*patch).points.empty()) {
        const float plainLost = plainLine(*place).spliceLoss(plainLine(*patch).points);
        require(std::abs(lost - plainLost) <= 1e-5f * (1.0f + plainLine(*place).length()),
                "the length that splicing loses");
    }
}

// Another line as the patch, of the same fragment or of another one.
void ContourEditor::spliceExisting()
{
    const auto place = anyLine(), patch = anyLine();
    if (!place || !patch)
        return;
    const bool self = realLine(*place) == realLine(*patch);
    const std::vector<QPointF> points = plainLine(*patch).points;
    const bool spliced = !self && points.size() >= 2 && plainLine(*place).points.size() < mostPoints &&
                         plainLine(*place).splice(points);
    if (!self && !spliced && plainLine(*place).points.size() >= mostPoints)
        return;
    require(realLine(*place)->replaceWith(realLine(*patch), nullptr) == spliced, "whether a line touches");
    auto &lines = model.fragments[static_cast<std::size_t>(patch->fragment)].lines;
    if (spliced)
        lines.erase(lines.begin() + patch->line);
}

void ContourEditor::erase()
{
    const auto place = anyLine();
    if (!place)
        return;
    delete realLine(*place);
    auto &lines = model.fragments[static_cast<std::size_t>(place->fragment)].lines;
    lines.erase(lines.begin() + place->line);
    require(!silent, "the end of a line was not announced");
}

void ContourEditor::moveToLevel()
{
    const auto place = anyLine();
    if (!place)
        return;
    const float z = someLevel();
    realLine(*place)->setZ(z);
    plainLine(*place).z = z;
    require(!silent, "a new height was not announced");
}

void ContourEditor::moveToFragment()
{
    const auto place = anyLine();
    if (!place)
        return;
    const int target = source.below(static_cast<int>(model.fragments.size()));
    if (isFull(target))
        return;
    object.fragment(target)->addSegment(realLine(*place));
    if (target == place->fragment)
        return;
    auto &from = model.fragments[static_cast<std::size_t>(place->fragment)].lines;
    model.fragments[static_cast<std::size_t>(target)].lines.push_back(plainLine(*place));
    from.erase(from.begin() + place->line);
    require(!silent, "an adopted line was not announced");
}

void ContourEditor::rename()
{
    const QString label = someLabel();
    const int what = source.below(3);
    if (what == 0) {
        object.setLabel(label);
        model.label = label;
    } else if (what == 1 && !model.fragments.empty()) {
        const int row = source.below(static_cast<int>(model.fragments.size()));
        object.fragment(row)->setLabel(label);
        model.fragments[static_cast<std::size_t>(row)].label = label;
    } else if (what == 2 && !model.contours.empty()) {
        const int row = source.below(static_cast<int>(model.contours.size()));
        object.contour(row)->setLabel(label);
        model.contours[static_cast<std::size_t>(row)].label = label;
    }
}

void ContourEditor::newFragment()
{
    if (model.fragments.size() >= mostFragments)
        return;
    const QString label = someLabel();
    object.newFragment(label);
    model.fragments.push_back({++lastId, label, {}});
    silent = true;
}

// One that was drawn before it comes here, as files are read.
void ContourEditor::addDrawnFragment()
{
    if (model.fragments.size() >= mostFragments)
        return;
    auto fragment = std::make_unique<Watched<SlicedContoursFragment>>();
    PlainFragment plain{++lastId, fragment->label(), {}};
    for (int left = source.below(4); left > 0; --left) {
        PlainLine line{{somewhere()}, someLevel()};
        SlicedContoursSegment *real = fragment->newSegment(line.points.front(), line.z);
        const QPointF p = somewhere();
        real->addPointBack(p);
        line.addBack(p);
        plain.lines.push_back(line);
    }
    object.addFragment(fragment.release());
    model.fragments.push_back(plain);
    silent = true;
}

void ContourEditor::deleteFragment()
{
    if (model.fragments.size() < 3)
        return;
    const int row = source.below(static_cast<int>(model.fragments.size()));
    delete object.fragment(row);
    noteDeleted(model.fragments[static_cast<std::size_t>(row)].id);
    model.fragments.erase(model.fragments.begin() + row);
}

void ContourEditor::noteDeleted(int fragmentId)
{
    for (PlainContour &contour : model.contours)
        std::replace(contour.fragmentIds.begin(), contour.fragmentIds.end(), fragmentId,
                     int{PlainContour::gone});
}

void ContourEditor::newContour()
{
    if (model.contours.size() >= mostContours)
        return;
    auto *contour = new Watched<SlicedContour>;
    contour->setLabel(someLabel());
    model.contours.push_back({contour->label(), {}});
    object.addContour(contour);
}

void ContourEditor::deleteContour()
{
    if (model.contours.empty() || !source.oneIn(2))
        return;
    const int row = source.below(static_cast<int>(model.contours.size()));
    delete object.contour(row);
    model.contours.erase(model.contours.begin() + row);
}

void ContourEditor::refer()
{
    if (model.contours.empty() || model.fragments.empty())
        return;
    const int row = source.below(static_cast<int>(model.contours.size()));
    PlainContour &contour = model.contours[static_cast<std::size_t>(row)];
    if (contour.fragmentIds.size() >= mostReferences)
        return;
    const int meant = source.below(static_cast<int>(model.fragments.size()));
    object.contour(row)->addFragmentReference(object.fragment(meant));
    contour.fragmentIds.push_back(model.fragments[static_cast<std::size_t>(meant)].id);
}
