// Which records a command line means: files, folders and lists of both.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zoomreplay {

struct Record {
    std::string path;
    std::string name;  ///< what its expected results are called, too: a path below their folder
};

/// Where records are looked for.
struct RecordSources {
    std::vector<std::string> paths;      ///< files and folders; "-" is a list on standard input
    std::optional<std::string> root;     ///< names are paths below it
    std::optional<std::string> results;  ///< the folder of expected results: holds no records
};

struct Records {
    std::vector<Record> all;  ///< in the order of their paths, none of them twice
    std::vector<std::string>
        results;  ///< files that a folder holds beside them, and are no records
};

/// A folder stands for all files below it whose names end in ".jsonl", and for packed ones, which
/// are found here and refused when they are replayed; what begins with a dot and what holds results
/// is left out. A file stands for itself, whatever it holds and whether it can be read. Without a
/// root, names are paths below the folder that was named, or the file's own name.
/// @throws UserError a folder without records, no list, a record outside of the root.
Records findRecords(RecordSources const& sources);

/// By its name.
bool isPacked(std::string_view path);

/// @throws UserError two records have the same name.
void checkNames(std::vector<Record> const& records);

}  // namespace zoomreplay
