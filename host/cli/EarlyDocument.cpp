// SPDX-License-Identifier: MIT
// The documents are those of empty reports.

#include "host/cli/EarlyDocument.h"

#include "host/cli/Commands.h"
#include "host/cli/DownloadJson.h"
#include "host/cli/RestoreJson.h"
#include "host/cli/SendJson.h"

namespace host {

std::string earlyDocument(const DownloadOptions& options, const EarlyEnd& end)
{
    if (!options.json)
        return {};
    DownloadReport report;
    if (!end.error)
        report.operations.push_back({.isInterrupted = true});
    return downloadJson(report, {end.message}, end.status);
}

std::string earlyDocument(const SendOptions& options, const EarlyEnd& end)
{
    if (!options.json)
        return {};
    PreparedSend nothing;
    nothing.request.isDryRun = options.dryRun;
    SendReport report;
    if (end.error && end.mayHaveBegun)
        report.errors = {*end.error};
    else
        report.obstacle = end.error;
    report.wasStopped = report.wasStoppedEarly = !end.error;
    return sendJson(nothing, report, {end.message}, end.status);
}

std::string earlyDocument(const RestoreOptions& options, const EarlyEnd& end)
{
    if (!options.json)
        return {};
    RestoreReport report;
    report.error = end.error;
    report.wasStopped = !end.error;
    return restoreJson({}, options.backup.value_or(""), report, {end.message}, end.status);
}

std::string earlyDocument(const GlobalOptions&, const EarlyEnd&)
{
    return {};
}

ExitStatus printEarlyEnd(const EarlyEnd& end, const std::string& document, const Console& console)
{
    console.messages({end.message});
    if (document.empty())
        return end.status;
    const auto printed = print(document, console);
    return printed == ExitStatus::kSuccess ? end.status : printed;
}

} // namespace host
