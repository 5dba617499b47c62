#pragma once

#include "platform/store/AccessList.h"
#include "platform/system/FilePath.h"

#include <QByteArray>
#include <ctime>
#include <map>
#include <optional>
#include <sys/stat.h>

namespace quillfern::store {

/// What a file has besides its bytes and its name, and what a file that takes its place is to have as well:
/// owner, group, mode, POSIX access list and the user's attributes ("user.…"). The dates are noted too. Any
/// thread.
class FileAttributes
{
  public:
    /// Those of an open file. Throws Failure.
    [[nodiscard]] static FileAttributes of(int descriptor);
    /// Those of the regular file at `path`; nothing for a link, for anything else, or when nothing is there.
    [[nodiscard]] static std::optional<FileAttributes> ofFileAt(const FilePath& path);

    [[nodiscard]] const AccessList& access() const { return access_; }

    /// Gives them to an open, new file of this process, as far as the system allows: owner and group, or else
    /// the group alone. Where one of these or the access list cannot be kept, nobody but the new owner has
    /// more rights than before, and the bits for running the file as its owner or group go.
    void giveTo(int descriptor) const;
    /// Sets the dates of last access and change.
    void giveDatesTo(int descriptor) const;

  private:
    AccessList access_;
    mode_t special_ = 0; ///< set-user-ID, set-group-ID and sticky bit
    std::map<QByteArray, QByteArray> userAttributes_;
    std::timespec accessed_ = {};
    std::timespec modified_ = {};

    template <class Get, class List>
    void read(const struct stat& status, const Get& get, const List& list);
};

/// Who has rights on an open file now.
[[nodiscard]] AccessList accessOf(int descriptor);

/// Sets the rights on an open file, and the bits of `special` besides. Where the file system keeps no access
/// lists, the file gets what is left of the list without granting more.
void setAccess(int descriptor, const AccessList& list, mode_t special = 0);

} // namespace quillfern::store
