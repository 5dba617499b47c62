#include "platform/system/FreeMemory.h"

#include "platform/system/Failure.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif
#include <sys/mman.h>
#include <sys/resource.h>

namespace quillfern {

void saveAddressSpace()
{
#ifdef __GLIBC__
    rlimit limit = {};
    if (::getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY) ::mallopt(M_ARENA_MAX, 1);
#endif
}

void requireFreeMemory(std::size_t bytes)
{
    // Address space only; nothing is taken of the machine's memory.
    void* const probe = ::mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (probe == MAP_FAILED)
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "There is not enough memory to begin."));
    ::munmap(probe, bytes);
}

} // namespace quillfern
