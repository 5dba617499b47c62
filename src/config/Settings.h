#pragma once

#include "config/Numbering.h"

#include <memory>

namespace quillfern {

/// The job configuration and the few options that live outside it. Main thread; a running job reads it.
class Settings
{
  public:
    /// Starts from the defaults; then the configuration takes the record "NUMBERING" of the store and these
    /// settings the record "SETTINGS", where there are such. The store (may be null: nothing is remembered)
    /// must outlive this object.
    explicit Settings(store::DefaultsStore* defaults = nullptr);

    std::unique_ptr<Numbering> number; ///< null only in what initWithCoder() returns
    bool isClearProcessedFiles = false;
    bool isOpenFolderAfterConversion = true;
    bool isSetCurrentAsDefaultOutputFolderPath = true; ///< the chosen output folder is remembered
    std::optional<QString> outputFolderPath = QString();
    std::optional<QString> pdfOpenPassword = QString(); ///< tried on protected files when they are added

    /// The record form, the configuration's in it. Absent texts become empty ones first, in this object too.
    /// Nothing on a failure.
    [[nodiscard]] std::optional<store::Record> getData();
    /// Applies a record; a missing key gives false or nothing. A folder that is not to be remembered is
    /// forgotten. Without a record nothing changes.
    void setData(const store::Record* data);
    /// Writes the record under "SETTINGS" into the store and flushes it.
    void synchronize();

    /// The keyed form, which leaves the configuration out.
    void encodeWithCoder(store::Record& coder) const;
    /// The settings of a keyed form, with no configuration and no store.
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
