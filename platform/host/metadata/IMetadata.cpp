// The metadata container of a workstation.
#include "IMetadata.h"

namespace NSCam {

size_t IMetadata::IEntry::count() const {
    return std::visit([](auto const& items) { return items.size(); }, mItems);
}

void IMetadata::update(uint32_t tag, IEntry entry) {
    mEntries.insert_or_assign(tag, std::move(entry));
}

IMetadata::IEntry IMetadata::entryFor(uint32_t tag, int32_t /*reserved*/) const {
    auto const found = mEntries.find(tag);
    return found != mEntries.end() ? found->second : IEntry();
}

template <typename T>
bool IMetadata::getEntry(IMetadata const* metadata, uint32_t tag, T& value, size_t index) {
    if (metadata == nullptr) {
        return false;
    }
    auto const found = metadata->mEntries.find(tag);
    if (found == metadata->mEntries.end()) {
        return false;
    }
    auto const* items = std::get_if<std::vector<T>>(&found->second.mItems);
    if (items == nullptr || index >= items->size()) {
        return false;
    }
    value = (*items)[index];
    return true;
}

template bool IMetadata::getEntry<int32_t>(IMetadata const*, uint32_t, int32_t&, size_t);
template bool IMetadata::getEntry<float>(IMetadata const*, uint32_t, float&, size_t);

}  // namespace NSCam
