#include "Records.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <string_view>
#include <system_error>

#include "base/LineReader.h"
#include "base/Messages.h"
#include "scenario/json/Json.h"
#include "scenario/json/LineError.h"

namespace zoomreplay {
namespace {

namespace fs = std::filesystem;

std::string readAll(File file) {
    std::string text;
    std::array<char, 65536> buffer{};
    for (size_t count = file.read(buffer); count > 0; count = file.read(buffer)) {
        text.append(buffer.data(), count);
    }
    return text;
}

// A zero byte cannot be part of a name: where there is one, it ends each name, and line ends are
// part of names.
std::vector<std::string> readList() {
    std::string const text = readAll(File::openInput("-"));
    char const separator = text.find('\0') != std::string::npos ? '\0' : '\n';
    std::vector<std::string> paths;
    for (size_t begin = 0; begin < text.size();) {
        size_t const end = std::min(text.find(separator, begin), text.size());
        std::string path = text.substr(begin, end - begin);
        if (!path.empty()) {
            paths.push_back(path == "-" ? "./-" : std::move(path));
        }
        begin = end + 1;
    }
    if (paths.empty()) {
        throw UserError("<stdin>: names no records");
    }
    return paths;
}

bool endsIn(std::string_view name, std::string_view ending) {
    return name.size() > ending.size() && name.substr(name.size() - ending.size()) == ending;
}

// Its length; 0 for what is not packed.
size_t packedEnding(std::string_view name) {
    constexpr std::array<std::string_view, 4> kEndings{".gz", ".xz", ".zst", ".bz2"};
    auto const ending = std::find_if(kEndings.begin(), kEndings.end(),
                                     [&](std::string_view known) { return endsIn(name, known); });
    return ending != kEndings.end() ? ending->size() : 0;
}

bool isRecordName(std::string_view name) {
    return endsIn(name.substr(0, name.size() - packedEnding(name)), ".jsonl");
}

// By its first line. What cannot be read is for the replay to complain of.
bool holdsResults(std::string const& path) {
    try {
        LineReader reader(File::openInput(path));
        auto const line = reader.next();
        return line.has_value() && scenario::parseObject(*line).contains("line");
    } catch (UserError const&) {
        return false;
    } catch (scenario::LineError const&) {
        return false;
    }
}

class Search {
 public:
    explicit Search(RecordSources const& sources) : mRoot(sources.root) {
        std::error_code error;
        if (sources.results.has_value()) {
            mExpected = fs::canonical(*sources.results, error);
        }
    }

    void take(std::string const& path) {
        std::error_code error;
        if (!fs::is_directory(path, error)) {
            add(path, fs::path(path).filename());
            return;
        }
        size_t const before = mFound.all.size();
        walk(path, path);
        if (mFound.all.size() == before) {
            throw UserError(path + ": has no records, which end in .jsonl");
        }
    }

    Records finish() {
        auto const byPath = [](Record const& a, Record const& b) { return a.path < b.path; };
        auto const isSame = [](Record const& a, Record const& b) { return a.path == b.path; };
        std::sort(mFound.all.begin(), mFound.all.end(), byPath);
        mFound.all.erase(std::unique(mFound.all.begin(), mFound.all.end(), isSame),
                         mFound.all.end());
        return std::move(mFound);
    }

 private:
    void walk(fs::path const& top, fs::path const& folder) {
        std::error_code error;
        fs::directory_iterator entries(folder, error);
        for (; entries != fs::directory_iterator(); entries.increment(error)) {
            take(top, *entries);
        }
        if (error) {
            add(folder, folder.lexically_relative(top));  // where records are replayed it is told
        }
    }

    void take(fs::path const& top, fs::directory_entry const& entry) {
        std::error_code error;
        fs::path const& path = entry.path();
        std::string const name = path.filename();
        if (name.front() == '.') {
            return;
        }
        if (fs::is_directory(entry.symlink_status(error))) {
            walkUnlessExpected(top, path);
        } else if (isRecordName(name) && entry.is_regular_file(error)) {
            addUnlessResults(path, path.lexically_relative(top));
        }
    }

    void walkUnlessExpected(fs::path const& top, fs::path const& folder) {
        std::error_code error;
        if (mExpected.empty() || fs::canonical(folder, error) != mExpected) {
            walk(top, folder);
        }
    }

    void addUnlessResults(std::string const& path, std::string const& name) {
        if (holdsResults(path)) {
            mFound.results.push_back(path);
        } else {
            add(path, name);
        }
    }

    void add(std::string const& path, std::string const& name) {
        mFound.all.push_back({path, mRoot.has_value() ? nameBelowRoot(path) : name});
    }

    // By the record's folder: the record itself may be a link to anywhere.
    std::string nameBelowRoot(fs::path const& path) const {
        std::error_code error;
        fs::path const folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
        fs::path const below = fs::relative(folder, *mRoot, error);
        if (error || below.empty() || *below.begin() == "..") {
            throw UserError(path.string() + ": is not below " + *mRoot);
        }
        return (below / path.filename()).lexically_normal();
    }

    std::optional<std::string> mRoot;
    fs::path mExpected;
    Records mFound;
};

}  // namespace

Records findRecords(RecordSources const& sources) {
    Search search(sources);
    for (std::string const& path : sources.paths) {
        if (path != "-") {
            search.take(path);
            continue;
        }
        for (std::string const& listed : readList()) {
            search.take(listed);
        }
    }
    return search.finish();
}

bool isPacked(std::string_view path) {
    return packedEnding(path) > 0;
}

void checkNames(std::vector<Record> const& records) {
    std::map<std::string_view, Record const*> byName;
    for (Record const& record : records) {
        auto const [known, isNew] = byName.emplace(record.name, &record);
        if (!isNew) {
            throw UserError(record.path + ": has the same name as " + known->second->path +
                            "; tell them apart with --root");
        }
    }
}

}  // namespace zoomreplay
