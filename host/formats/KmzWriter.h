// SPDX-License-Identifier: MIT
// KmzWriter: writes records as a KMZ file: a ZIP archive with one KML document. One thread at a
// time. Source of the format: OGC KML 2.2 (OGC 07-147r2), annex C.

#pragma once

#include "host/files/Output.h"
#include "host/formats/KmlWriter.h"
#include "host/formats/Writer.h"

#include <optional>
#include <string>
#include <utility>

namespace host {

class KmzWriter final : public Writer {
public:
    /// @param spoolFolder  where the document is kept until its end, uncompressed
    KmzWriter(Output& output, const std::string& spoolFolder);

    void event(const Event& event) override { kml_.event(event); }
    void watchClose(CloseWatch watch) override { watch_ = std::move(watch); }
    [[nodiscard]] std::optional<gps::Error> close() override;
    [[nodiscard]] std::string remark() const override { return kml_.remark(); }

private:
    [[nodiscard]] bool compressDocument();

    Output& output_;
    Spool document_;
    KmlWriter kml_;
    CloseWatch watch_;
};

} // namespace host
