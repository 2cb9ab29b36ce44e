#include "TextSpool.h"

#include <cerrno>

#include "base/Messages.h"

namespace zoomreplay {
namespace {

void orThrow(bool isDone) {
    if (!isDone) {
        throw systemError("temporary file", errno);
    }
}

}  // namespace

TextSpool::Place TextSpool::add(std::string_view text) {
    if (mFile == nullptr) {
        mFile.reset(std::tmpfile());
        orThrow(mFile != nullptr);
    }
    orThrow(std::fwrite(text.data(), 1, text.size(), mFile.get()) == text.size());
    Place const place{mSize, static_cast<uint32_t>(text.size())};
    mSize += text.size();
    return place;
}

std::string TextSpool::read(Place place) {
    std::string text(place.size, '\0');
    orThrow(fseeko(mFile.get(), static_cast<off_t>(place.offset), SEEK_SET) == 0);
    orThrow(std::fread(text.data(), 1, text.size(), mFile.get()) == text.size());
    return text;
}

}  // namespace zoomreplay
