// Host control of the registry of named containers. Kept by libqvxcam_modulehelper. Any thread.
#pragma once

namespace NSCam::Host {

/// Off: IGenericContainerManager::get answers null, as on a platform without a registry. The
/// containers are kept, and on again finds them. A process starts with the registry on.
void enableContainerRegistry(bool on);

/// Forgets all containers. Readers and writers that hold one keep it, but are met no more.
void dropContainers();

}  // namespace NSCam::Host
