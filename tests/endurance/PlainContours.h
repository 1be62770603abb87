#pragma once

#include "contours/SegmentSnapshot.h"

#include <QPointF>
#include <QString>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

// Contours as nothing but lists, edited by the rules as they are written down: no objects, signals, locks or
// indexes. What the real contours must be after the same edits. Coordinates in mm.

inline bool plainSame(const QPointF &a, const QPointF &b)
{
    return std::abs(a.x() - b.x()) <= 1e-12 && std::abs(a.y() - b.y()) <= 1e-12;
}

inline double plainDistance(const QPointF &a, const QPointF &b)
{
    return std::sqrt((a.x() - b.x()) * (a.x() - b.x()) + (a.y() - b.y()) * (a.y() - b.y()));
}

struct PlainLine
{
    using Points = std::vector<QPointF>;

    Points points;
    float z = 0.0f;
    bool spliced = false; // may hold a point twice in a row: splicing takes points over as they are

    void addBack(const QPointF &p)
    {
        const std::size_t count = points.size();
        if (count >= 1 && plainSame(points.back(), p))
            return;
        if (count >= 2 && plainSame(points[count - 2], p))
            return points.pop_back();
        if (const auto met = occurrence(p); met && !plainSame(points.front(), p))
            return points.resize(*met + 1);
        if (count >= 2 && collinear(points[count - 2], points[count - 1], p))
            points.pop_back();
        points.push_back(p);
    }
    void addFront(const QPointF &p)
    {
        if (!points.empty() && plainSame(points.front(), p))
            return;
        if (points.size() >= 2 && plainSame(points[1], p)) {
            points.erase(points.begin());
            return;
        }
        if (const auto met = occurrence(p); met && !plainSame(points.back(), p)) {
            points.erase(points.begin(), points.begin() + static_cast<std::ptrdiff_t>(*met));
            return;
        }
        points.insert(points.begin(), p);
    }
    // False if the piece touches nowhere.
    bool splice(const Points &piece)
    {
        const auto s = nearest(piece.front(), 1.0), e = nearest(piece.back(), 1.0);
        if (piece.size() < 2 || (!s && !e))
            return false;
        spliced = true;
        if (s && e)
            replaceBetween(*s, *e, piece);
        else
            replaceFrom(s ? *s : *e, s ? piece : Points(piece.rbegin(), piece.rend()));
        return true;
    }
    // The length that splice() would discard.
    float spliceLoss(const Points &piece) const
    {
        const auto s = nearest(piece.front(), 1.0), e = nearest(piece.back(), 1.0);
        if (piece.size() < 2 || (!s && !e))
            return 0.0f;
        if (s && e) {
            const std::size_t low = std::min(*s, *e), high = std::max(*s, *e);
            return length() - (low > 0 ? length(0, low - 1) : 0.0f) - length(high + 1, points.size() - 1);
        }
        const std::size_t at = s ? *s : *e;
        const std::size_t second = *nearest(s ? piece[1] : piece[piece.size() - 2], infinity);
        if (second == at && (at == 0 || at + 1 == points.size()))
            return 0.0f;
        return at < second ? length(at, points.size() - 1) : length(0, at);
    }
    float length() const { return points.empty() ? 0.0f : length(0, points.size() - 1); }

private:
    static constexpr double infinity = std::numeric_limits<double>::infinity();

    static bool collinear(const QPointF &a, const QPointF &b, const QPointF &p)
    {
        return (a.x() - b.x()) / (b.x() - p.x()) == (a.y() - b.y()) / (b.y() - p.y()) ||
               (a.x() - b.x() == 0 && b.x() - p.x() == 0) || (a.y() - b.y() == 0 && b.y() - p.y() == 0);
    }
    std::optional<std::size_t> occurrence(const QPointF &p) const
    {
        for (std::size_t i = 0; i < points.size(); ++i)
            if (plainSame(points[i], p))
                return i;
        return std::nullopt;
    }
    std::optional<std::size_t> nearest(const QPointF &p, double limit) const
    {
        std::optional<std::size_t> found;
        for (std::size_t i = 0; i < points.size(); ++i) {
            if (plainDistance(points[i], p) < limit) {
                limit = plainDistance(points[i], p);
                found = i;
            }
        }
        return found;
    }
    void prependOneByOne(const Points &piece)
    {
        for (const QPointF &p : piece)
            points.insert(points.begin(), p);
    }
    void replaceBetween(std::size_t s, std::size_t e, const Points &piece)
    {
        Points result(points.begin(), points.begin() + static_cast<std::ptrdiff_t>(std::min(s, e)));
        if (s < e)
            result.insert(result.end(), piece.begin(), piece.end());
        else
            result.insert(result.end(), piece.rbegin(), piece.rend());
        result.insert(result.end(), points.begin() + static_cast<std::ptrdiff_t>(std::max(s, e)) + 1,
                      points.end());
        points = result;
    }
    void replaceFrom(std::size_t s, const Points &walked)
    {
        const std::size_t second = *nearest(walked[1], infinity);
        if (second == s && s == 0)
            return prependOneByOne(walked);
        if (second == s && s + 1 == points.size()) {
            points.insert(points.end(), walked.begin(), walked.end());
        } else if (s < second) {
            points.resize(s + 1);
            points.insert(points.end(), walked.begin(), walked.end());
        } else {
            points.erase(points.begin(), points.begin() + static_cast<std::ptrdiff_t>(s) + 1);
            prependOneByOne(walked);
        }
    }
    // Each edge rounded to single precision, and summed in it.
    float length(std::size_t from, std::size_t to) const
    {
        float sum = 0.0f;
        for (std::size_t i = from; i < to && i + 1 < points.size(); ++i)
            sum += static_cast<float>(plainDistance(points[i], points[i + 1]));
        return sum;
    }
};

struct PlainFragment
{
    int id = 0; // what contours refer to it by
    QString label;
    std::vector<PlainLine> lines;
};

struct PlainContour
{
    static constexpr int gone = 0; // the id of a fragment that was deleted

    QString label;
    std::vector<int> fragmentIds;
};

struct PlainContours
{
    QString label;
    std::vector<PlainFragment> fragments;
    std::vector<PlainContour> contours;

    const PlainFragment *fragmentOf(int id) const
    {
        const auto found = std::find_if(fragments.begin(), fragments.end(),
                                        [id](const PlainFragment &fragment) { return fragment.id == id; });
        return found != fragments.end() ? &*found : nullptr;
    }
    // The heights that have lines, rising.
    std::vector<float> levels() const
    {
        std::vector<float> all;
        for (const PlainFragment &fragment : fragments)
            for (const PlainLine &line : fragment.lines)
                if (std::find(all.begin(), all.end(), line.z) == all.end())
                    all.push_back(line.z);
        std::sort(all.begin(), all.end());
        return all;
    }
    // What a file gives back: each line drawn anew point by point, without references to nothing.
    PlainContours asReadBack() const
    {
        PlainContours copy = *this;
        for (PlainFragment &fragment : copy.fragments) {
            for (PlainLine &line : fragment.lines) {
                const std::vector<QPointF> points = std::exchange(line.points, {});
                for (const QPointF &p : points)
                    line.addBack(p);
                line.z = points.empty() ? 0.0f : line.z;
                line.spliced = false;
            }
        }
        for (PlainContour &contour : copy.contours)
            std::erase(contour.fragmentIds, PlainContour::gone);
        return copy;
    }
};
