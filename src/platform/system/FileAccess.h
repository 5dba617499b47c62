#pragma once

#include "platform/system/FilePath.h"

#include <QFileDevice>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace quillfern {

// What is done with files and folders by their paths. Any thread.

/// The path of the file itself behind all links; empty when it is not there.
[[nodiscard]] FilePath resolvedPath(const FilePath& path);

/// Removes the name of a file. Returns true when the name is gone now or did not exist.
bool removeFile(const FilePath& path);

/// Gives a file another name on the same file system; a file that already has that name is replaced. Returns
/// whether it was done.
bool renameFile(const FilePath& from, const FilePath& to);

/// Makes a folder and the folders above it that are missing. Returns whether the folder exists now.
bool makeFolders(const FilePath& folder);

/// Whether new files may be made in a folder, as far as the system knows without an attempt.
[[nodiscard]] bool mayWriteInto(const FilePath& folder);

/// A descriptor for reading a regular file, owned by the caller; a pipe or device is refused rather than
/// waited for. Where the system allows, reading does not change the date of the last access. Throws Failure.
[[nodiscard]] int openRegularFile(const FilePath& path);

/// Fills `bytes` from a place in an open file, whose position is not used. Throws Failure when the file
/// cannot be read there or has fewer bytes by now.
void readExactly(int descriptor, std::int64_t offset, char* bytes, std::size_t size);

/// The same as openRegularFile() for code that reads through Qt. The returned file has no file name. Throws
/// Failure.
[[nodiscard]] std::unique_ptr<QFileDevice> readRegularFile(const FilePath& path);

} // namespace quillfern
