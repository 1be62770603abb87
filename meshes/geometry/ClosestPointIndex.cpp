#include "meshes/geometry/ClosestPointIndex.h"

#include "meshes/geometry/MedianOrder.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace MERV::BRep {

namespace {

// Coordinates and sizes between which no product in TriFace::closestPointTo() overflows or vanishes.
constexpr double largestCoordinate = 0x1p100;
constexpr double smallestExtent = 0x1p-100;
// How far from the mesh a point may be, in local coordinates, to be answered by the tree.
constexpr double reach = 0x1p16;
// By how much a distance in single precision may be above the one to the answer of
// TriFace::closestPointTo(), in proportion to the largest coordinate, and in proportion to the distance and
// to the longest side.
constexpr double marginByCoordinates = 0x1p-21;
constexpr double marginBySize = 0x1p-19;
// The lowest height of a sound face, by the extent of the mesh, so that single precision can tell the face
// from a line; and by the square of the largest coordinate. TriFace::closestPointTo() compares sums of
// products of coordinates: what it takes for a foot inside may lie outside by 230 units in the last place
// (2^-53) of that square, divided by the height. That is to stay below 2^-23 times the extent.
constexpr double lowestHeight = 0x1p-20;
constexpr double lowestHeightByCoordinates = 0x1p-22;

constexpr float noLimit = 0x1p80f; // above all distances but those of lanes without content

bool isPlain(const Point &p)
{
    const auto fits = [](double value) { return std::abs(value) <= largestCoordinate; };
    return p.valid && p.w == 1.0 && fits(p.x) && fits(p.y) && fits(p.z);
}

bool isPlain(const TriFace &face)
{
    return face.isValid() && isPlain(face.vertex(0)) && isPlain(face.vertex(1)) && isPlain(face.vertex(2));
}

// Of a plain face, in mm.
struct Shape
{
    double longestSide, lowestHeight;
};

Shape shapeOf(const TriFace &face)
{
    const auto corner = [&face](int i) {
        const Point &p = face.vertex(i);
        return Triple<double>{p.x, p.y, p.z};
    };
    const auto a = corner(1) - corner(0), b = corner(2) - corner(1), c = corner(0) - corner(2);
    const auto normal = cross(a, b);
    const double longest = std::max({dot(a, a), dot(b, b), dot(c, c)});
    return {std::sqrt(longest), std::sqrt(dot(normal, normal) / longest)};
}

// The centre of the box along the axes, which for the two faces of a rectangle is the same.
Vector middleOf(const std::array<Vector, 3> &corners)
{
    const auto [a, b, c] = corners;
    const auto middle = [](float p, float q, float r) {
        return 0.5f * (std::min({p, q, r}) + std::max({p, q, r}));
    };
    return {middle(a.x, b.x, c.x), middle(a.y, b.y, c.y), middle(a.z, b.z, c.z)};
}

std::size_t foursIn(std::size_t size)
{
    return (size + lanes - 1) / lanes;
}

} // namespace

// One question. Distances in the tree are squares.
//
// Of the faces in the tree the nearest triangle nearly always has the answer, and to ask it is dear. So the
// descent first presumes that the answer lies on the nearest triangle and only collects what is as near. The
// collected faces are asked then; if their answer is farther away than presumed, which happens beyond obtuse
// corners, a second descent goes that far and asks each face it meets.
class ClosestPointIndex::Search
{
public:
    Search(const ClosestPointIndex &newIndex, const Point &newQuery)
        : index(newIndex)
        , query(newQuery)
        , at(newIndex.local(newQuery))
        , slack(marginByCoordinates * (1.0 + std::abs(at.x) + std::abs(at.y) + std::abs(at.z)) +
                marginBySize * index.longestSide)
    {}

    void presume(std::size_t face);
    void ask(std::size_t face);
    void searchTree();

    const FacePoint &answer() const { return best; }

private:
    struct Candidate
    {
        float distance;
        std::uint32_t face;
    };

    struct Node
    {
        float distance;
        std::uint32_t level; // 0 is four triangles, above are boxes
        std::size_t number;
    };

    float limitFor(double distance) const;
    void descend();
    void openBoxes(std::uint32_t level, std::size_t number);
    void meetTriangles(std::size_t number);
    void collect(const Candidate &candidate);
    void askCollected();

    // A node leaves at most three others waiting at each of at most 16 levels, and four are being put there.
    static constexpr std::size_t mostNodes = 64;
    static constexpr std::size_t mostCandidates = 16;

    const ClosestPointIndex &index;
    const Point &query;
    const Vector at;
    const double slack;
    float limit = noLimit;    // no face farther away than this is looked at
    float askLimit = noLimit; // no face farther away than this can have the answer
    bool presuming = true;
    double bestDistance = 0.0;
    FacePoint best;
    std::array<Node, mostNodes> waiting; // the nearest one last
    std::size_t waitingCount = 0;
    std::array<Candidate, mostCandidates> collected;
    std::size_t collectedCount = 0;
};

// Of the tree, for an answer at this distance in local coordinates.
float ClosestPointIndex::Search::limitFor(double distance) const
{
    const double bound = distance * (1.0 + marginBySize) + slack;
    return std::min(noLimit, static_cast<float>(bound * bound));
}

void ClosestPointIndex::Search::presume(std::size_t face)
{
    limit = std::min(limit, limitFor(distance(index.faces[face].vertex(0), query) * index.scale));
}

void ClosestPointIndex::Search::ask(std::size_t face)
{
    const Point candidate = index.faces[face].closestPointTo(query);
    if (!candidate.valid)
        return;
    const double d = distance(candidate, query); // a number, if infinite: both are finite, w is not 0
    if (best.point.valid && (d > bestDistance || (d == bestDistance && face >= best.face)))
        return;
    best = {candidate, face};
    bestDistance = d;
    askLimit = limitFor(d * index.scale);
    limit = std::min(limit, askLimit);
}

void ClosestPointIndex::Search::searchTree()
{
    if (index.triangles.empty())
        return;
    descend();
    askCollected();
    if (askLimit <= limit)
        return;
    presuming = false;
    limit = askLimit;
    descend();
}

void ClosestPointIndex::Search::descend()
{
    waiting[waitingCount++] = {0.0f, static_cast<std::uint32_t>(index.levels.size()), 0};
    while (waitingCount > 0) {
        const Node &node = waiting[--waitingCount];
        if (node.distance > limit)
            continue;
        if (node.level == 0)
            meetTriangles(node.number);
        else
            openBoxes(node.level - 1, node.number);
    }
}

void ClosestPointIndex::Search::openBoxes(std::uint32_t level, std::size_t number)
{
    const Float4 distances = index.levels[level][number].squaredDistances(at);
    for (const RankedLane &lane : fromFarToNear(distances)) {
        waiting[waitingCount] = {lane.value, level, number * lanes + lane.lane};
        waitingCount += lane.value <= limit ? 1 : 0;
    }
}

void ClosestPointIndex::Search::meetTriangles(std::size_t number)
{
    const Float4 distances = index.triangles[number].squaredDistances(at);
    for (std::size_t lane = 0; lane < lanes; ++lane) {
        if (distances[lane] > limit)
            continue;
        const std::uint32_t face = index.faceOf[number * lanes + lane];
        if (presuming)
            collect({distances[lane], face});
        else
            ask(face);
    }
}

void ClosestPointIndex::Search::collect(const Candidate &candidate)
{
    if (collectedCount == mostCandidates)
        askCollected();
    collected[collectedCount++] = candidate;
    limit = std::min(limit, limitFor(std::sqrt(candidate.distance) + slack));
}

// The nearest ones first.
void ClosestPointIndex::Search::askCollected()
{
    const auto end = collected.begin() + static_cast<std::ptrdiff_t>(collectedCount);
    for (auto next = collected.begin(); next != end; ++next) {
        std::iter_swap(next, std::min_element(next, end, [](const Candidate &a, const Candidate &b) {
                           return a.distance < b.distance;
                       }));
        if (next->distance > askLimit)
            break;
        ask(next->face);
    }
    collectedCount = 0;
}

ClosestPointIndex::ClosestPointIndex(std::span<const TriFace> newFaces)
    : faces(newFaces)
{
    measureExtent();
    std::vector<PlacedFace> sound = sortOut();
    orderByMedians(sound);
    makeTriangles(sound);
    makeBoxes();
}

FacePoint ClosestPointIndex::closestPoint(const Point &query, std::size_t hint) const
{
    if (!isInReach(query))
        return closestPointByScan(faces, query);
    Search search(*this, query);
    if (hint < faces.size() && isPlain(faces[hint]))
        search.presume(hint);
    for (const std::uint32_t face : unsound)
        search.ask(face);
    search.searchTree();
    return search.answer();
}

// The box around all faces that may be sound.
void ClosestPointIndex::measureExtent()
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    Triple<double> low{infinity, infinity, infinity}, high{-infinity, -infinity, -infinity};
    for (const TriFace &face : faces) {
        if (!isPlain(face))
            continue;
        for (int i = 0; i < 3; ++i) {
            const Point &p = face.vertex(i);
            low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
        }
    }
    const auto size = high - low;
    const double extent = 0.5 * std::max({size.x, size.y, size.z});
    if (!(extent >= smallestExtent))
        return;
    center = Point(0.5 * (low.x + high.x), 0.5 * (low.y + high.y), 0.5 * (low.z + high.z));
    scale = std::exp2(-std::ceil(std::log2(extent)));
    largest = std::max({-low.x, -low.y, -low.z, high.x, high.y, high.z});
}

bool ClosestPointIndex::isInReach(const Point &query) const
{
    const double x = (query.x - center.x) * scale, y = (query.y - center.y) * scale,
                 z = (query.z - center.z) * scale;
    return isPlain(query) && std::abs(x) <= reach && std::abs(y) <= reach && std::abs(z) <= reach;
}

// Leaves out faces that never have an answer.
std::vector<PlacedFace> ClosestPointIndex::sortOut()
{
    const double far = largest * scale;
    const double lowest = std::max(lowestHeight, lowestHeightByCoordinates * far * far);
    std::vector<PlacedFace> sound;
    sound.reserve(faces.size());
    for (std::size_t i = 0; i < faces.size(); ++i) {
        const TriFace &face = faces[i];
        const auto number = static_cast<std::uint32_t>(i);
        const Shape shape = isPlain(face) ? shapeOf(face) : Shape{};
        if (shape.lowestHeight * scale >= lowest) {
            sound.push_back({middleOf(localCorners(face)), number});
            longestSide = std::max(longestSide, shape.longestSide * scale);
        } else if (face.plane().isValid()) {
            unsound.push_back(number);
        }
    }
    return sound;
}

Vector ClosestPointIndex::local(const Point &point) const
{
    return {static_cast<float>((point.x - center.x) * scale),
            static_cast<float>((point.y - center.y) * scale),
            static_cast<float>((point.z - center.z) * scale)};
}

std::array<Vector, 3> ClosestPointIndex::localCorners(const TriFace &face) const
{
    return {local(face.vertex(0)), local(face.vertex(1)), local(face.vertex(2))};
}

void ClosestPointIndex::makeTriangles(std::span<const PlacedFace> ordered)
{
    triangles.resize(foursIn(ordered.size()));
    faceOf.resize(triangles.size() * lanes);
    for (std::size_t i = 0; i < faceOf.size(); ++i) {
        faceOf[i] = ordered[std::min(i, ordered.size() - 1)].face;
        triangles[i / lanes].set(i % lanes, localCorners(faces[faceOf[i]]));
    }
}

void ClosestPointIndex::makeBoxes()
{
    if (triangles.size() < 2)
        return;
    std::vector<Vector> normals;
    normals.reserve(triangles.size());
    std::vector<FourBoxes> boxes(foursIn(triangles.size()));
    for (std::size_t i = 0; i < triangles.size(); ++i) {
        normals.push_back(triangles[i].normal());
        boxes[i / lanes].fit(i % lanes, {&triangles[i], 1}, normals[i], triangles[i].longestSide());
    }
    levels.push_back(std::move(boxes));
    for (std::size_t content = lanes; levels.back().size() > 1; content *= lanes)
        levels.push_back(boxesAround(levels.back(), content, normals));
}

// One box around each four below, which hold `content` times four triangles each. The normals are those of
// the boxes below and become those of the boxes made.
std::vector<FourBoxes> ClosestPointIndex::boxesAround(const std::vector<FourBoxes> &below,
                                                      std::size_t content, std::vector<Vector> &normals) const
{
    std::vector<FourBoxes> boxes(foursIn(below.size()));
    for (std::size_t i = 0; i < below.size(); ++i) {
        const std::size_t first = i * lanes, last = std::min(first + lanes, normals.size()) - 1;
        Vector normal{};
        for (std::size_t k = first; k <= last; ++k)
            normal = normal + normals[k];
        const auto start = i * content;
        boxes[i / lanes].fit(i % lanes,
                             std::span(triangles).subspan(start, std::min(content, triangles.size() - start)),
                             normal,
                             below[i].centerOf(last - first) + below[i].centerOf(last - first > 1 ? 2 : 1) -
                                 below[i].centerOf(0) - below[i].centerOf(last - first > 1 ? 1 : 0));
        normals[i] = normal;
    }
    normals.resize(below.size());
    return boxes;
}

} // namespace MERV::BRep
