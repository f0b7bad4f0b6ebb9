// SPDX-License-Identifier: MIT
// Lines are cut at the edges of the picture: the drawing library cannot count as far as a deep zoom
// level is wide.

#include "host/window/map/RecordPainter.h"

#include "host/window/map/LabelRoom.h"
#include "host/window/map/MapText.h"
#include "host/window/map/PointClusters.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace host {
namespace {

constexpr double kLineWidth = 3; // pixels
constexpr double kSelectedWidth = 6;
constexpr double kCutMargin = 20; // beyond the widest line
constexpr double kNameSize = 12;
constexpr std::size_t kMostInName = 24; // characters
constexpr std::size_t kMostTries = 4 * LabelRoom::kMostLabels;

/// A piece of a line within the picture.
struct Piece {
    std::vector<PicturePoint> points{};
    double before = 0; // pixels of the line before the piece, so that its dashes do not wander
};

/// The part of a line between two points that is within a rectangle: where it begins and ends, from
/// 0 to 1.
/// Source: Y.-D. Liang, B. A. Barsky, "A New Concept and Method for Line Clipping", ACM
/// Transactions on Graphics 3, 1984.
class Cut {
public:
    Cut(const PicturePoint& a, const PicturePoint& b, const MapView& view)
    {
        side(b.x - a.x, -kCutMargin - a.x, view.width + kCutMargin - a.x);
        side(b.y - a.y, -kCutMargin - a.y, view.height + kCutMargin - a.y);
    }

    [[nodiscard]] bool isOutside() const { return begin_ > end_; }
    [[nodiscard]] double begin() const { return begin_; }
    [[nodiscard]] double end() const { return end_; }

private:
    void side(double step, double least, double most)
    {
        if (step == 0) {
            if (least > 0 || most < 0)
                end_ = -1;
            return;
        }
        const auto [first, last] = std::minmax({least / step, most / step});
        begin_ = std::max(begin_, first);
        end_ = std::min(end_, last);
    }

    double begin_ = 0;
    double end_ = 1;
};

/// Finds the pieces of a path that are seen.
class Pieces {
public:
    Pieces(const MapView& view, bool isMeasured) : view_(view), isMeasured_(isMeasured) {}

    void add(const MapLine& line, double shift)
    {
        const auto seen = view_.extent(kCutMargin);
        length_ = 0;
        isOpen_ = false;
        if (line.positions.size() == 1 && line.parts[0].shifted(shift).overlaps(seen)) {
            const auto only = pointOf(line, 0, shift);
            found_.push_back({{only, only}});
        }
        for (std::size_t part = 0; part < line.parts.size(); ++part) {
            if (line.parts[part].shifted(shift).overlaps(seen) || isMeasured_)
                addPart(line, part * MapLine::kPart, shift);
            else
                isOpen_ = false;
        }
    }

    [[nodiscard]] std::vector<Piece>& found() { return found_; }

private:
    [[nodiscard]] PicturePoint pointOf(const MapLine& line, std::size_t index, double shift) const
    {
        const auto& position = line.positions[index];
        const MapPosition shifted{position.x + shift, position.y};
        return {view_.x(shifted), view_.y(shifted)};
    }

    void addPart(const MapLine& line, std::size_t begin, double shift)
    {
        const auto last = std::min(begin + MapLine::kPart, line.positions.size() - 1);
        auto from = pointOf(line, begin, shift);
        for (auto i = begin; i < last; ++i) {
            const auto to = pointOf(line, i + 1, shift);
            addStep(from, to);
            from = to;
        }
    }

    void addStep(const PicturePoint& from, const PicturePoint& to)
    {
        const double step = isMeasured_ ? std::hypot(to.x - from.x, to.y - from.y) : 0;
        const Cut cut{from, to, view_};
        const auto at = [&](double part) {
            return PicturePoint{from.x + part * (to.x - from.x), from.y + part * (to.y - from.y)};
        };
        if (cut.isOutside()) {
            isOpen_ = false;
        } else {
            if (!isOpen_ || cut.begin() > 0)
                found_.push_back({{at(cut.begin())}, length_ + cut.begin() * step});
            found_.back().points.push_back(at(cut.end()));
            isOpen_ = cut.end() == 1;
        }
        length_ += step;
    }

    const MapView& view_;
    bool isMeasured_;
    bool isOpen_ = false; // the last piece goes on
    double length_ = 0;
    std::vector<Piece> found_;
};

void strokePiece(cairo_t* cairo, const std::vector<PicturePoint>& points)
{
    // A line of many thousand points takes longer than as many of its parts.
    constexpr std::size_t kMost = 1000;
    for (std::size_t begin = 0; begin + 1 < points.size(); begin += kMost) {
        const auto end = std::min(begin + kMost + 1, points.size());
        for (auto i = begin; i < end; ++i)
            cairo_line_to(cairo, points[i].x, points[i].y);
        cairo_stroke(cairo);
    }
}

/// Paints one picture.
class RecordPainting {
public:
    RecordPainting(const RecordScene& scene, const MapView& view, PointIcons& icons)
        : scene_(scene), colors_(MapColors::of(view.isDark)), icons_(icons),
          picture_(newPicture(view)), cairo_(drawingOn(picture_)), room_(view.width, view.height)
    {
        cairo_set_line_join(cairo_.get(), CAIRO_LINE_JOIN_ROUND);
        cairo_set_line_cap(cairo_.get(), CAIRO_LINE_CAP_ROUND);
    }

    MapPicture paint()
    {
        for (std::size_t i = 0; i < scene_.records->paths.size(); ++i) {
            const auto record = scene_.records->pathRecord(i);
            if (isTicked(record) && record != scene_.selected)
                paintPath(i, kLineWidth);
        }
        paintSelectedPath();
        paintPoints();
        paintNames();
        cairo_surface_flush(picture_.surface.get());
        return std::move(picture_);
    }

private:
    [[nodiscard]] bool isTicked(const RecordRef& record) const
    {
        switch (record.kind) {
        case RecordKind::kTrack:
            return scene_.ticked->tracks[record.index];
        case RecordKind::kRoute:
            return scene_.ticked->routes[record.index];
        case RecordKind::kPoint:
            break;
        }
        return scene_.ticked->points[record.index];
    }

    // What is selected is seen, ticked or not.
    void paintSelectedPath()
    {
        for (std::size_t i = 0; i < scene_.records->paths.size(); ++i) {
            if (scene_.selected == scene_.records->pathRecord(i))
                paintPath(i, kSelectedWidth);
        }
    }

    void paintPath(std::size_t index, double width)
    {
        auto& path = scene_.records->paths[index].path;
        const bool isRoute = scene_.records->paths[index].isRoute;
        Pieces pieces{picture_.view, isRoute};
        visitShifts(path.extent(), picture_.view.extent(kCutMargin), [&](double shift) {
            for (const auto& line : path.linesAt(picture_.view.zoom()))
                pieces.add(line, shift);
        });
        // On a line that is wider, so that it is seen on any map.
        setColor(cairo_.get(), colors_.paper, 0.8);
        cairo_set_line_width(cairo_.get(), width + 2);
        for (const auto& piece : pieces.found())
            strokePiece(cairo_.get(), piece.points);
        setColor(cairo_.get(), lineColor(index));
        cairo_set_line_width(cairo_.get(), width);
        for (auto& piece : pieces.found()) {
            setDashes(isRoute, piece.before);
            strokePiece(cairo_.get(), piece.points);
            picture_.traces.push_back({scene_.records->pathRecord(index), std::move(piece.points)});
        }
        setDashes(false, 0);
        markIfTiny(index);
    }

    // On a map of the world a hike would not be seen.
    void markIfTiny(std::size_t index)
    {
        constexpr double kTiny = 12; // pixels
        constexpr double kDotRadius = 5;
        const auto& extent = scene_.records->paths[index].path.extent();
        const auto& view = picture_.view;
        if (std::max(extent.right - extent.left, extent.bottom - extent.top) * view.scale > kTiny)
            return;
        visitShifts(extent, view.extent(kCutMargin), [&](double shift) {
            const auto center = extent.shifted(shift).center();
            cairo_arc(cairo_.get(), view.x(center), view.y(center), kDotRadius, 0, 7);
            setColor(cairo_.get(), lineColor(index));
            cairo_fill_preserve(cairo_.get());
            setColor(cairo_.get(), colors_.paper);
            cairo_set_line_width(cairo_.get(), 1.5);
            cairo_stroke(cairo_.get());
        });
    }

    void setDashes(bool isDashed, double offset)
    {
        static constexpr std::array kDashes{8.0, 6.0};
        cairo_set_dash(cairo_.get(), kDashes.data(), isDashed ? int{kDashes.size()} : 0,
                       std::fmod(offset, kDashes[0] + kDashes[1]));
    }

    void paintPoints()
    {
        const auto& points = scene_.records->points;
        PointClusters clusters{picture_.view};
        const auto seen = picture_.view.extent(PointClusters::kMargin);
        for (std::size_t i = 0; i < points.size(); ++i) {
            if (!isTicked(recordOf(i)) || scene_.selected == recordOf(i))
                continue;
            visitPositions(i, seen, [&](const MapPosition& at) { clusters.add(at, i); });
        }
        for (const auto& cluster : clusters.find())
            paintCluster(cluster);
        for (std::size_t i = 0; i < points.size(); ++i) {
            if (scene_.selected == recordOf(i))
                visitPositions(i, seen, [&](const MapPosition& at) { paintSelected(i, at); });
        }
    }

    [[nodiscard]] RecordRef recordOf(std::size_t point) const
    {
        return {RecordKind::kPoint, scene_.records->points[point].record};
    }

    template <typename Visit>
    void visitPositions(std::size_t point, const Extent& seen, const Visit& visit) const
    {
        const auto& position = scene_.records->points[point].position;
        Extent extent;
        extent.include(position);
        visitShifts(extent, seen, [&](double shift) {
            visit(MapPosition{position.x + shift, position.y});
        });
    }

    void paintCluster(const PointCluster& cluster)
    {
        const bool isGroup = cluster.count > 1;
        const double radius = isGroup ? PointIcons::radiusOf(cluster.count) : PointIcons::kRadius;
        if (isGroup)
            icons_.drawGroup(cairo_.get(), picture_.view, cluster.count, cluster.center);
        else
            icons_.draw(cairo_.get(), picture_.view, scene_.records->points[cluster.first],
                        cluster.center, false);
        addSpot({cluster.center, radius, {recordOf(cluster.first), cluster.count, cluster.extent}});
    }

    void paintSelected(std::size_t point, const MapPosition& position)
    {
        const PicturePoint center{picture_.view.x(position), picture_.view.y(position)};
        icons_.draw(cairo_.get(), picture_.view, scene_.records->points[point], center, true);
        Extent extent;
        extent.include(position);
        addSpot({center, PointIcons::kRadius, {recordOf(point), 1, extent}});
    }

    void addSpot(const MapPicture::Spot& spot)
    {
        picture_.spots.push_back(spot);
        room_.occupy({spot.center.x - spot.radius, spot.center.y - spot.radius, 2 * spot.radius,
                      2 * spot.radius});
    }

    // The last one first: it may be selected.
    void paintNames()
    {
        const auto count = picture_.spots.size();
        const auto last = count - std::min(count, kMostTries);
        for (auto i = count; i > last && !room_.isFull(); --i) {
            if (picture_.spots[i - 1].hit.count == 1)
                paintName(picture_.spots[i - 1]);
        }
    }

    void paintName(const MapPicture::Spot& spot)
    {
        const auto name = nameOnMap(*scene_.records->records, spot.hit.record, kMostInName);
        if (name.empty())
            return;
        const MapText text{cairo_.get(), name, kNameSize};
        if (const auto corner = room_.place(spot.center, spot.radius, text.width(), text.height()))
            text.drawWithEdge(*corner, colors_.ink, colors_.paper);
    }

    const RecordScene& scene_;
    const MapColors& colors_;
    PointIcons& icons_;
    MapPicture picture_;
    std::shared_ptr<cairo_t> cairo_;
    LabelRoom room_;
};

} // namespace

MapPicture RecordPainter::paint(const RecordScene& scene, const MapView& view)
{
    if (!scene.records)
        return newPicture(view);
    return RecordPainting{scene, view, icons_}.paint();
}

} // namespace host
