// SPDX-License-Identifier: MIT
// Downloads: the driver's operations one after another, with their records written to a file and
// handed to consumers. What `acquire`, `import` and `watch` share. [host thread]

#pragma once

#include "host/formats/RecordOrigin.h"
#include "host/transfer/DownloadReport.h"
#include "host/transfer/DownloadRequest.h"

#include <gps/GPSPlugInProtocol.h>

namespace host {

/// Opens the output file, runs every operation and finishes the file: complete under its final
/// name, or what arrived as a partial file. Returns when all is done. If the output cannot be
/// opened, the driver is not asked for anything.
///
/// An operation that fails does not keep the ones after it from running.
[[nodiscard]] DownloadReport download(gps::GPSPlugInProtocol& driver,
                                      const DownloadRequest& request);

/// Where and when the records of a download were obtained, for a front end that writes them later.
/// The title is that of the requested output.
[[nodiscard]] RecordOrigin originOf(const gps::GPSPlugInProtocol& driver,
                                    const DownloadRequest& request);

} // namespace host
