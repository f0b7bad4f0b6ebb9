// SPDX-License-Identifier: MIT
// A function pointer per format keeps the table constant and the writers' headers out of Formats.h.

#include "host/formats/Formats.h"

#include "host/formats/CsvWriter.h"
#include "host/formats/EventLines.h"
#include "host/formats/GeoJsonWriter.h"
#include "host/formats/GpxWriter.h"
#include "host/formats/HtmlWriter.h"
#include "host/formats/KmlWriter.h"
#include "host/formats/KmzWriter.h"

#include <algorithm>
#include <array>

namespace host {
namespace {

std::unique_ptr<Writer> makeGpx(Output& output, const std::string& spoolFolder,
                                const RecordOrigin& origin)
{
    return std::make_unique<GpxWriter>(output, spoolFolder, origin);
}

std::unique_ptr<Writer> makeKml(Output& output, const std::string& spoolFolder, const RecordOrigin&)
{
    return std::make_unique<KmlWriter>(output, spoolFolder);
}

std::unique_ptr<Writer> makeKmz(Output& output, const std::string& spoolFolder, const RecordOrigin&)
{
    return std::make_unique<KmzWriter>(output, spoolFolder);
}

std::unique_ptr<Writer> makeGeoJson(Output& output, const std::string& spoolFolder,
                                    const RecordOrigin&)
{
    return std::make_unique<GeoJsonWriter>(output, spoolFolder);
}

std::unique_ptr<Writer> makeHtml(Output& output, const std::string& spoolFolder,
                                 const RecordOrigin& origin)
{
    return std::make_unique<HtmlWriter>(output, spoolFolder, origin);
}

std::unique_ptr<Writer> makeCsv(Output& output, const std::string& spoolFolder, const RecordOrigin&)
{
    return std::make_unique<CsvWriter>(output, spoolFolder);
}

std::unique_ptr<Writer> makeEventLines(Output& output, const std::string&, const RecordOrigin&)
{
    return std::make_unique<EventLines>(output);
}

// In the order in which help texts and error messages list them.
constexpr std::array kFormats{Format{"gpx", makeGpx},         Format{"kml", makeKml},
                              Format{"kmz", makeKmz},         Format{"geojson", makeGeoJson},
                              Format{"html", makeHtml},       Format{"csv", makeCsv},
                              Format{"jsonl", makeEventLines}};

} // namespace

std::span<const Format> formats()
{
    return kFormats;
}

const Format* findFormat(std::string_view name)
{
    const auto* const found = std::find_if(kFormats.begin(), kFormats.end(),
                                           [&](const Format& row) { return row.name == name; });
    return found != kFormats.end() ? found : nullptr;
}

std::string formatNames()
{
    std::string names;
    for (const auto& format : kFormats) {
        if (!names.empty())
            names += ", ";
        names += format.name;
    }
    return names;
}

} // namespace host
