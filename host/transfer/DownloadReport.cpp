// SPDX-License-Identifier: MIT
// The verdicts on a whole download follow from those on its operations.

#include "host/transfer/DownloadReport.h"

#include <algorithm>

namespace host {

bool DownloadReport::hasReceived() const
{
    return std::any_of(operations.begin(), operations.end(),
                       [](const OperationReport& operation) { return operation.hasReceived(); });
}

bool DownloadReport::isComplete() const
{
    return !operations.empty() &&
           std::all_of(operations.begin(), operations.end(),
                       [](const OperationReport& operation) { return operation.isComplete(); });
}

bool DownloadReport::isInterrupted() const
{
    return std::any_of(operations.begin(), operations.end(),
                       [](const OperationReport& operation) { return operation.isInterrupted; });
}

bool DownloadReport::hasDamagedLines() const
{
    return std::any_of(operations.begin(), operations.end(), [](const OperationReport& operation) {
        return operation.hasDamagedLines();
    });
}

} // namespace host
