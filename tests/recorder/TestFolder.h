// A folder of a test's own, which goes with it: tests of several builds may run at once.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace zoomrecorder {

class TestFolder {
 public:
    TestFolder() = default;
    ~TestFolder() { std::filesystem::remove_all(path); }
    TestFolder(TestFolder const&) = delete;
    TestFolder& operator=(TestFolder const&) = delete;

    std::string const path = [] {
        std::string name = std::filesystem::temp_directory_path() / "recorderXXXXXX";
        return std::string(mkdtemp(name.data()));
    }();
    std::string const record = path + "/record.jsonl";

    std::string text() const {
        std::ifstream file(record);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

}  // namespace zoomrecorder
