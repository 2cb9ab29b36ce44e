// libqvxcam_modulehelper: the process-wide registry of named containers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace NSCam {

/// What a container is made with. All sides of a container must ask for the same.
struct GenericContainerKind {
    std::string elementType;  ///< the type's name as typeid gives it
    size_t capacity = 0;      ///< entries
    uint32_t flags = 0;       ///< the platform's own; 0

    bool operator==(GenericContainerKind const&) const = default;
};

/// Keeps every container until the process ends, so that the sides of a container may come and go.
/// Modules use IGenericContainer, which knows its element type, rather than this.
class IGenericContainerManager {
 public:
    /// Makes a container.
    using Create = std::function<std::shared_ptr<void>()>;

    /// The one registry of the process, or null when the platform has none. Any thread.
    static IGenericContainerManager* get();

    virtual ~IGenericContainerManager() = default;

    /// The container of that name. The registry is locked throughout, so that all who ask get the
    /// same container, whoever is first.
    /// @param create makes the container when the name is new; must not call the registry.
    /// @return empty when the container of that name is of another kind. Any thread.
    virtual std::shared_ptr<void> getOrCreate(std::string const& name,
                                              GenericContainerKind const& kind,
                                              Create const& create) = 0;
};

}  // namespace NSCam
