// libqvxcam_modulehelper: named containers through which modules hand entries to each other without
// knowing each other. The newest entry is what counts; older ones are kept up to a capacity.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <typeinfo>
#include <utility>

#include "IGenericContainerManager.h"

namespace NSCam {

/// A container of T, shared by its readers and writers. T is copyable and has external linkage. Any
/// thread.
template <typename T>
class IGenericContainer {
 public:
    /// Takes part in a container by reading it. Any thread.
    class Reader {
     public:
        /// For createReader.
        explicit Reader(std::shared_ptr<IGenericContainer> container)
            : mContainer(std::move(container)) {}

        /// A copy of the newest entry, which stays; nothing as long as none was published.
        std::optional<T> readNewest() const { return mContainer->newest(); }

     private:
        std::shared_ptr<IGenericContainer> mContainer;
    };

    /// Takes part in a container by filling it. Any thread.
    class Writer {
     public:
        /// For createWriter.
        explicit Writer(std::shared_ptr<IGenericContainer> container)
            : mContainer(std::move(container)) {}

        /// Makes entry the newest one; a full container drops its oldest.
        void publish(T entry) { mContainer->publish(std::move(entry)); }

     private:
        std::shared_ptr<IGenericContainer> mContainer;
    };

    /// Joins the container of that name in the process-wide registry, making it where it is
    /// missing.
    /// @return empty without a registry, and when the container of that name has another element
    ///     type, capacity or flags. Any thread.
    static std::shared_ptr<Reader> createReader(char const* name, size_t capacity, uint32_t flags) {
        return join<Reader>(name, capacity, flags);
    }

    /// As createReader.
    static std::shared_ptr<Writer> createWriter(char const* name, size_t capacity, uint32_t flags) {
        return join<Writer>(name, capacity, flags);
    }

    /// A container of its own, in no registry.
    explicit IGenericContainer(size_t capacity) : mCapacity(capacity) {}

 private:
    template <typename Side>
    static std::shared_ptr<Side> join(char const* name, size_t capacity, uint32_t flags) {
        auto* const registry = IGenericContainerManager::get();
        if (registry == nullptr) {
            return nullptr;
        }

        // The type's name rather than its type_info: where visibility is hidden each library has a
        // type_info of its own, and not every standard library takes two of them for equal.
        auto const container = registry->getOrCreate(
            name, {typeid(T).name(), capacity, flags},
            [capacity] { return std::make_shared<IGenericContainer>(capacity); });
        if (container == nullptr) {
            return nullptr;
        }
        return std::make_shared<Side>(std::static_pointer_cast<IGenericContainer>(container));
    }

    std::optional<T> newest() const {
        std::lock_guard const lock(mMutex);
        return mEntries.empty() ? std::nullopt : std::optional<T>(mEntries.back());
    }

    void publish(T entry) {
        std::list<T> dropped;  // outlives the lock: destroying an entry may run its owner's code
        std::lock_guard const lock(mMutex);
        mEntries.push_back(std::move(entry));
        if (mEntries.size() > mCapacity) {
            dropped.splice(dropped.begin(), mEntries, mEntries.begin());
        }
    }

    size_t const mCapacity;
    mutable std::mutex mMutex;
    std::list<T> mEntries;  // oldest first
};

}  // namespace NSCam
