// Wall-clock timing shared by the benchmarks that time two things in one
// iteration (ours against a peer, or a frame against a full repaint).
#pragma once

#include <chrono>

namespace faroven::bench {

// How long f takes, in seconds.
template <class F>
double seconds(F&& f) {
    const auto t0 = std::chrono::steady_clock::now();
    f();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
}

}  // namespace faroven::bench
