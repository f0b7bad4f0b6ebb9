// SPDX-License-Identifier: MIT
// PlannedTexts: the texts of files that the planning of a send has made. The send that follows
// writes the same texts if the records and the present files are still the same, so it need not
// make them again: that is most of its time. A snapshot owns one, and the driver gives it to the
// worker of a send. [any]

#pragma once

#include "../common/RecordKind.h"

#include <gps/GPSTransferAccount.h>
#include <gps/SharedText.h>
#include <gps/Value.h>

#include <map>
#include <mutex>
#include <optional>
#include <string_view>
#include <unordered_map>

namespace magellan {

class PlannedTexts {
public:
    /// What a file will hold.
    struct Merged {
        gps::SharedText text;
        gps::LineAccount present; ///< what becomes of the lines that it holds now
    };

    void clear();

    /// Keeps the text of a default file. Replaces the one of the same kind.
    /// @param records  an array: what is merged
    /// @param present  what it is merged into
    void add(RecordKind kind, gps::Value records, gps::SharedText present, Merged merged);

    /// The text for the same records, which are not compared but recognised, and the same present
    /// text.
    [[nodiscard]] std::optional<Merged> find(RecordKind kind, const gps::Array& records,
                                             std::string_view present) const;

    /// Does the same for the text of a track, a dictionary.
    void addTrack(const gps::Value& track, gps::SharedText text);
    [[nodiscard]] std::optional<gps::SharedText> findTrack(const gps::Value& track) const;

private:
    struct Merge {
        gps::Value records; // held so that no other array gets its address
        gps::SharedText present;
        Merged merged;
    };
    struct Track {
        gps::Value track;
        gps::SharedText text;
    };

    mutable std::mutex mutex_;
    std::map<RecordKind, Merge> merges_;                       // guarded by mutex_
    std::unordered_map<const gps::Dictionary*, Track> tracks_; // guarded by mutex_
};

} // namespace magellan
