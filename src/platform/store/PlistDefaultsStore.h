#pragma once

#include "platform/store/DefaultsStore.h"
#include "platform/store/Record.h"
#include "platform/system/FilePath.h"

#include <QString>
#include <optional>

namespace quillfern {
class Folders;
}

namespace quillfern::store {

/// The user's defaults in a property-list file, "Orvane/Quillfern1.plist" in the folder for configuration
/// files. Read by the constructor; written whole at every flush and readable by its owner only, since a
/// password may be in it: an existing file loses the permissions of others then.
///
/// Two programs may flush at once: each waits for the lock beside the store, reads what the other wrote and
/// changes only the values it was given itself. A file that cannot be read counts as empty; the first flush
/// moves it to another name instead of writing over it.
class PlistDefaultsStore final : public DefaultsStore
{
  public:
    /// Throws nothing; when the file cannot be read, the reason is written to the system log.
    explicit PlistDefaultsStore(const Folders& folders);

    [[nodiscard]] std::optional<RecordValue> value(const QString& key) const override;
    void setValue(const QString& key, RecordValue value) override;
    void flush() override;

    /// Empty when the system names no folder for configuration files.
    [[nodiscard]] const FilePath& path() const { return path_; }

  private:
    FilePath path_;
    Record values_;
    Record changes_; ///< since the last flush
};

} // namespace quillfern::store
