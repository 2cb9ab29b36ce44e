// libqvxcam_metadata: a request's metadata, typed entries by tag.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <variant>
#include <vector>

namespace NSCam {

/// A container of entries by tag. A value without a lock: share it between threads read-only.
class IMetadata {
 public:
    /// The items of one tag, all of one type.
    class IEntry {
     public:
        IEntry() = default;
        /// An entry of these items.
        explicit IEntry(std::vector<int32_t> items) : mItems(std::move(items)) {}
        /// An entry of these items.
        explicit IEntry(std::vector<float> items) : mItems(std::move(items)) {}

        /// Number of items; 0 when the tag is absent.
        size_t count() const;

        /// An item. 0 beyond the count and where the items are of another type.
        template <typename T>
        T itemAt(uint32_t index) const {
            auto const* items = std::get_if<std::vector<T>>(&mItems);
            return items != nullptr && index < items->size() ? (*items)[index] : T{};
        }

     private:
        friend class IMetadata;  // getEntry must know the type of the items

        std::variant<std::vector<int32_t>, std::vector<float>> mItems;
    };

    /// Adds an entry, or replaces the one of the tag.
    void update(uint32_t tag, IEntry entry);

    /// The entry of a tag, empty when the tag is absent.
    IEntry entryFor(uint32_t tag, int32_t reserved) const;

    /// Reads one item.
    /// @return false, value untouched, when metadata is null, the tag absent, its items of another
    ///     type or fewer than index + 1.
    template <typename T>
    static bool getEntry(IMetadata const* metadata, uint32_t tag, T& value, size_t index);

 private:
    std::map<uint32_t, IEntry> mEntries;
};

extern template bool IMetadata::getEntry<int32_t>(IMetadata const*, uint32_t, int32_t&, size_t);
extern template bool IMetadata::getEntry<float>(IMetadata const*, uint32_t, float&, size_t);

}  // namespace NSCam
