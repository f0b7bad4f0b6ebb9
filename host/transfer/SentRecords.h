// SPDX-License-Identifier: MIT
// SentRecords: finds the records of a send that have the name of one on the device, as the planned
// files hold it. Used to look for what a send replaces and for what is missing after it. One thread
// at a time.

#pragma once

#include "host/transfer/RecordComparison.h"
#include "host/transfer/RecordScope.h"

#include <gps/GPSFileDevice.h>

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace host {

/// The waypoints, geocaches and routes of a data dictionary. A device without a file of geocaches
/// has them in its file of waypoints, with what that can hold of them.
class SentRecords {
public:
    struct Record {
        const RecordScope* scope;      ///< what it is
        const RecordScope* fileScope;  ///< what a file holds of it
        const gps::Dictionary* record; ///< null: not a record, so that no file can hold it
        std::string_view name;
        bool isMarked = false; ///< for the caller
    };

    /// @param data    what is sent, with names and texts as the device stores them; must outlive
    ///                this object
    /// @param plan    tells whether there is a file of geocaches
    /// @param device  must outlive this object
    SentRecords(const gps::Dictionary& data, const gps::SendPlan& plan,
                const gps::GPSFileDevice& device);
    SentRecords(const SentRecords&) = delete;
    SentRecords& operator=(const SentRecords&) = delete;

    /// All of them, in the order of the data: first waypoints and geocaches, then routes.
    [[nodiscard]] std::vector<Record>& all() noexcept { return records_; }

    /// Calls `visit` with each record that has the name and the kind of one in a file.
    /// @param file  the kind of the file, as in gps::PlannedFile
    /// @param key   of the kind of the file's record, as for a gps::RecordVisitor
    template <typename Visitor> void forEachNamesake(std::string_view file, std::string_view key,
                                                     const gps::Dictionary& inFile,
                                                     const Visitor& visit)
    {
        const auto& scope = scopeOf(file, key, inFile);
        auto [at, end] = byName().equal_range(nameOf(inFile));
        for (; at != end; ++at) {
            if (records_[at->second].fileScope == &scope)
                visit(records_[at->second]);
        }
    }

    /// The first record that was not returned before if it has the name and the kind of one in a
    /// file; null otherwise. Files mostly hold what was sent in the order of the data, and then no
    /// table of names is needed.
    [[nodiscard]] Record* next(std::string_view file, std::string_view key,
                               const gps::Dictionary& inFile)
    {
        if (next_ == records_.size() || records_[next_].name != nameOf(inFile) ||
            records_[next_].fileScope != &scopeOf(file, key, inFile))
            return nullptr;
        return &records_[next_++];
    }

    /// Whether the device stores the same for a record and one in a file that has its name.
    [[nodiscard]] bool areSame(const Record& sent, const gps::Dictionary& inFile)
    {
        return sent.record != nullptr && sent.fileScope->areSame(comparison_, *sent.record, inFile);
    }

    /// Whether the device stores the same for two routes, but for the names of their points.
    [[nodiscard]] bool areSameButForPointNames(const gps::Dictionary& a, const gps::Dictionary& b)
    {
        return comparison_.areSameButForPointNames(a, b);
    }

private:
    void add(const gps::Dictionary& data, std::string_view key, bool areGeocachesWaypoints,
             std::size_t longestName);
    [[nodiscard]] const std::unordered_multimap<std::string_view, std::size_t>& byName();
    [[nodiscard]] static std::string_view nameOf(const gps::Dictionary& record);
    [[nodiscard]] static const RecordScope& scopeOf(std::string_view file, std::string_view key,
                                                    const gps::Dictionary& inFile);

    RecordComparison comparison_;
    std::vector<Record> records_;
    std::deque<gps::Dictionary> cut_; // geocaches with names as a file of waypoints has them
    std::unordered_multimap<std::string_view, std::size_t> byName_; // indices into records_
    std::size_t next_ = 0;
};

} // namespace host
