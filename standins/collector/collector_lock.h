#pragma once

// Stand-in: a lock that a thread of the collector never lets go. Whoever stops or destroys the
// collector then waits for ever, as with a real collector whose thread was killed inside its lock.

namespace Standin {

/// Starts a thread that takes the collector's lock for good; returns when the thread has it.
void HoldLockForEver();

/// Takes the collector's lock and lets it go again.
void PassThroughLock();

}  // namespace Standin
