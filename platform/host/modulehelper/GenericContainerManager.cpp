// The registry of named containers of a workstation.
#include <android/log.h>

#include <atomic>
#include <map>
#include <mutex>
#include <utility>

#include "IGenericContainerManager.h"
#include "host/ContainerRegistry.h"

namespace {

constinit std::atomic<bool> gEnabled{true};

// Whoever asked sees only that there is no container, and two sides that never meet.
void complain(std::string const& name, NSCam::GenericContainerKind const& there,
              NSCam::GenericContainerKind const& asked) {
    __android_log_print(ANDROID_LOG_ERROR, "GenericContainer",
                        "\"%s\" has capacity %zu, flags 0x%x and elements %s; this side asks for "
                        "capacity %zu, flags 0x%x and elements %s, and gets none",
                        name.c_str(), there.capacity, there.flags, there.elementType.c_str(),
                        asked.capacity, asked.flags, asked.elementType.c_str());
}

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
        if (found->second.kind == kind) {
            return found->second.object;
        }
        complain(name, found->second.kind, kind);
        return nullptr;
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
