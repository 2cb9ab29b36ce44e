// Texts that are seldom needed again, kept out of memory.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace zoomreplay {

/// Keeps texts in a temporary file, which nobody else sees and which is gone when the process ends.
class TextSpool {
 public:
    struct Place {
        uint64_t offset;
        uint32_t size;
    };

    /// @throws UserError there is no room for a temporary file.
    Place add(std::string_view text);

    /// @throws UserError it cannot be read.
    std::string read(Place place);

 private:
    struct Closing {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::unique_ptr<std::FILE, Closing> mFile;  // once there is a text
    uint64_t mSize = 0;
};

}  // namespace zoomreplay
