#pragma once

#include "config/Numbering.h"
#include "platform/store/DefaultsStore.h"
#include "platform/store/Record.h"
#include "platform/system/Failure.h"

#include <QString>
#include <memory>
#include <optional>

namespace quillfern {

/// The job configuration and the few options that are not part of it. Main thread.
class Settings
{
  public:
    /// Starts from the defaults; then applies the store's record "NUMBERING" to the configuration and its
    /// record "SETTINGS" to these settings, as far as the store has them, and fills what is absent in the
    /// configuration. The store (may be null: nothing is remembered) must outlive this object.
    explicit Settings(store::DefaultsStore* defaults = nullptr);

    std::unique_ptr<Numbering> number; ///< null only in what initWithCoder() returns
    bool isClearProcessedFiles = false;
    bool isOpenFolderAfterConversion = true;
    bool isSetCurrentAsDefaultOutputFolderPath = true; ///< the chosen output folder is remembered
    std::optional<QString> outputFolderPath = QString();
    std::optional<QString> pdfOpenPassword = QString(); ///< tried on protected files when they are added

    /// The settings as a record that contains the configuration's record. Absent texts become empty texts
    /// first, also in this object. The bytes of an output folder that is not UTF-8 stand in an entry of their
    /// own behind the others. Returns no record on a failure.
    [[nodiscard]] std::optional<store::Record> getData();
    /// Applies a record; a missing key gives false or no value. An output folder that is not to be remembered
    /// is cleared. A null pointer changes nothing.
    void setData(const store::Record* data);
    /// Writes the record under "SETTINGS" into the store and flushes it. Returns why that failed; nothing
    /// when the settings are saved, or there is no store.
    std::optional<Reason> synchronize();

    /// Writes the keyed form, which does not contain the configuration.
    void encodeWithCoder(store::Record& coder) const;
    /// Reads a keyed form into new settings, which have no configuration and no store.
    [[nodiscard]] static std::unique_ptr<Settings> initWithCoder(const store::Record& coder);

  private:
    struct WithoutNumber
    {
    };
    explicit Settings(WithoutNumber) : defaults_(nullptr) {}
    void readOptions(const store::Record& data);

    store::DefaultsStore* defaults_;
};

} // namespace quillfern
