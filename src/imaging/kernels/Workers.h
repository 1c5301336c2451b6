// The threads of parallel loops, where the system may refuse them.
#pragma once

namespace lumora {

/// To be called before each parallel loop. oneTBB gives a loop up when it gets no thread, which must not cost a photo:
/// so loops run in the caller's thread alone until the system once gave as many as oneTBB takes, and then keeps.
void prepareWorkers();

} // namespace lumora
