#pragma once

#include "platform/system/FilePath.h"

#include <stop_token>

namespace quillfern::store {

/// Locks an open file against other calls of this function, in this program and in others, until the
/// descriptor is closed. The file may be open for reading only. Waits until the lock is free; throws Failure,
/// which names the file by `path`, when that takes longer than `patience` milliseconds, and Cancelled. On a
/// file system without locks no program waits.
void lockOpenFile(int descriptor, const FilePath& path, int patience, const std::stop_token& stop = {});

/// Holds a lock for as long as the object lives; other programs that ask for the same lock wait. The lock is
/// on an empty file that stays behind, and the system releases it when the program ends, however it ends.
class FileLock
{
  public:
    /// Waits until the lock is free. Throws Failure when that takes longer than `patience` milliseconds or
    /// the file cannot be made. On a file system without locks no program waits.
    explicit FileLock(const FilePath& path, int patience = 5000);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

  private:
    int descriptor_;
};

} // namespace quillfern::store
