// SPDX-License-Identifier: MIT
// KindFilter: leaves out whole kinds of records. For imports: a driver reads all of a file,
// whatever kinds it is asked for. One thread at a time.

#pragma once

#include "host/transfer/DownloadRequest.h"
#include "host/transfer/EventFilter.h"

namespace host {

class KindFilter final : public EventFilter {
public:
    explicit KindFilter(const RequestedKinds& kinds) : kinds_(kinds) {}

    void event(const Event& event, const Sink& sink) override;
    void finish(const Sink&) override {}

private:
    [[nodiscard]] bool isWanted(const Event& event);

    RequestedKinds kinds_;
    bool isInRoute_ = false;
};

} // namespace host
