// The registry of named containers of a workstation.
#include <atomic>
#include <map>
#include <mutex>
#include <utility>

#include "IGenericContainerManager.h"
#include "host/ContainerRegistry.h"

namespace {

class GenericContainerManager final : public NSCam::IGenericContainerManager {
 public:
    std::shared_ptr<void> getOrCreate(std::string const& name,
                                      NSCam::GenericContainerKind const& kind,
                                      Create const& create) override {
        std::lock_guard const lock(mMutex);
        auto const found = mContainers.find(name);
        if (found == mContainers.end()) {
            return mContainers.emplace(name, Container{kind, create()}).first->second.object;
        }
        return found->second.kind == kind ? found->second.object : nullptr;
    }

    void drop() {
        std::map<std::string, Container> dropped;  // outlives the lock: entries may be customers'
        std::lock_guard const lock(mMutex);
        dropped.swap(mContainers);
    }

 private:
    struct Container {
        NSCam::GenericContainerKind kind;
        std::shared_ptr<void> object;
    };

    std::mutex mMutex;
    std::map<std::string, Container> mContainers;
};

constinit std::atomic<bool> gEnabled{true};

GenericContainerManager& manager() {
    // Never destroyed: used also while the process exits.
    static auto& instance = *new GenericContainerManager;
    return instance;
}

}  // namespace

namespace NSCam {

IGenericContainerManager* IGenericContainerManager::get() {
    return gEnabled.load(std::memory_order_relaxed) ? &manager() : nullptr;
}

}  // namespace NSCam

namespace NSCam::Host {

void enableContainerRegistry(bool on) {
    gEnabled.store(on, std::memory_order_relaxed);
}

void dropContainers() {
    manager().drop();
}

}  // namespace NSCam::Host
