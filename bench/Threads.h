// Several threads on the one manager.
#pragma once

namespace Bench {

/// Registers benchmarks of which each runs with 1, 2 and 4 threads. Reports calls per second, all
/// threads together: the manager's lock lets one in at a time.
void registerThreads();

}  // namespace Bench
