// SPDX-License-Identifier: MIT
// PlainTrackPoints: takes the track points of the usual form out of the text of a GPX document,
// before it is parsed. A document is mostly such points, for which a parser of all of XML takes
// several times the time and the memory. Used by GpxReader. Stateless. [any]

#pragma once

#include <gps/Value.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace host {

/// The points at the start of one <trkseg>.
struct PlainTrackPoints {
    std::ptrdiff_t segment =
        0;               ///< the offset of the name in the segment's tag, in the remaining text
    gps::Array points{}; ///< as GpxReader makes them
    std::size_t fractions = 0; ///< how many of their times had a fraction of a second
};

/// Takes the points that follow a "<trkseg>" directly, up to the first that is not of this form,
/// with any white space between the tags, "ele" and "time" optional, and valid values:
///
///     <trkpt lat="46.5" lon="7.25"><ele>1000</ele><time>2008-08-11T06:15:48Z</time></trkpt>
///
/// A "<trkseg>" in a comment, a CDATA section or an attribute looks the same here. So the result
/// counts only if the remaining text has an element at each `segment`. Then the parser was, there
/// and behind the points, in the content of that element, and the points were what they looked
/// like.
/// @param xml       in: a document in UTF-8. out: what remains of it
/// @param progress  called with the bytes done now and then; may be empty
/// @return     the points by segment, in their order; empty if the text is unchanged
[[nodiscard]] std::vector<PlainTrackPoints>
takePlainTrackPoints(std::string& xml, const std::function<void(std::size_t done)>& progress = {});

} // namespace host
