// The system properties of a workstation: a store that lives as long as the process.
#include "Properties.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "host/PropertyStore.h"

namespace {

struct Store {
    std::mutex mutex;
    std::map<std::string, int32_t, std::less<>> values;
};

Store& store() {
    static auto& instance = *new Store;  // never destroyed: read also while the process exits
    return instance;
}

}  // namespace

namespace NSCam::Utils {

int32_t Properties::property_get_int32(char const* name, int32_t fallback) {
    std::lock_guard const lock(store().mutex);
    auto const& values = store().values;
    auto const found = values.find(std::string_view(name));
    return found != values.end() ? found->second : fallback;
}

}  // namespace NSCam::Utils

namespace NSCam::Host {

void setProperty(std::string const& name, int32_t value) {
    std::lock_guard const lock(store().mutex);
    store().values.insert_or_assign(name, value);
}

void clearProperties() {
    std::lock_guard const lock(store().mutex);
    store().values.clear();
}

}  // namespace NSCam::Host
