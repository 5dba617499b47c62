#pragma once

#include <cstddef>

namespace quillfern {

/// Lets threads share one heap where the address space of this process is limited; otherwise each would keep
/// 64 MiB of addresses to itself, and soon nobody would get any. For the begin of a program.
void saveAddressSpace();

/// Throws Failure when this process may not take so many more bytes (a limit on its address space). For the
/// begin of work whose libraries crash where memory fails.
void requireFreeMemory(std::size_t bytes);

} // namespace quillfern
