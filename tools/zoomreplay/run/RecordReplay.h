// The replay of one of many records, in a process of its own.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

#include "RecordResult.h"
#include "base/Messages.h"

namespace zoomreplay {

/// What a replay has come to. It grows while the record is replayed, so that it is known even when
/// the process comes to a sudden end.
struct Tally {
    std::atomic<uint64_t> line{0};       ///< of the record, the one in hand
    std::atomic<uint64_t> bytesRead{0};  ///< of the record
    Counts counts;
    bool isOver = false;  ///< the record's end was reached
};

/// Once in a process. Goes on without expected results that cannot be opened, and ends in
/// ExitStatus::BadInput then.
/// @param expected the path of the expected results.
/// @throws UserError
ExitStatus replayRecord(std::string const& path, std::optional<std::string> const& expected,
                        Tally& tally);

}  // namespace zoomreplay
