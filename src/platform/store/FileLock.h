#pragma once

#include "platform/system/FilePath.h"

namespace quillfern::store {

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
