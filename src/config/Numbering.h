#pragma once

#include "config/JobConfiguration.h"
#include "platform/store/Record.h"
#include "platform/system/FilePath.h"
#include "stamps/PDFFont.h"
#include "stamps/StampList.h"

#include <QString>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace quillfern::store {
class DefaultsStore;
}

namespace quillfern {

class Numbering;

/// Is notified when the configuration has changed in a way that the preview shows.
class NumberingDelegate
{
  public:
    virtual ~NumberingDelegate() = default;
    virtual void PropertyChanged(Numbering& number) = 0;
};

/// The job configuration while the user edits it: it owns the stamps and the fields of JobConfiguration, and
/// notifies its delegate of changes.
///
/// Every change of a field in the dependency set notifies the delegate at once, unless an update bracket is
/// open; endUpdate(true) then notifies it once. Setting a field to the value it has changes nothing. Main
/// thread; jobs and previews work on a copy, which configuration() makes.
class Numbering
{
  public:
    /// Starts from the defaults, then applies the record "NUMBERING" of the store, if there is one. The store
    /// (may be null: nothing is remembered) must outlive this object.
    explicit Numbering(store::DefaultsStore* defaults = nullptr);
    Numbering(const Numbering&) = delete;
    Numbering& operator=(const Numbering&) = delete;

    StampList stamps; ///< drawing order; changing the list does not notify the delegate

    /// Not owned; may be null.
    void setDelegate(NumberingDelegate* delegate) { delegate_ = delegate; }

    /// A copy of all fields and stamps as they are now.
    [[nodiscard]] JobConfiguration configuration() const;

    /// The fields alone, without the stamps.
    [[nodiscard]] const JobConfiguration& fields() const { return fields_; }

    // The fields, which JobConfiguration describes.
    [[nodiscard]] bool isLivePreview() const { return fields_.isLivePreview; }
    void setIsLivePreview(bool value) { change(fields_.isLivePreview, value); }
    [[nodiscard]] bool isHighlightStamp() const { return fields_.isHighlightStamp; }
    void setIsHighlightStamp(bool value) { change(fields_.isHighlightStamp, value); }
    [[nodiscard]] std::int64_t startPage() const { return fields_.startPage; }
    void setStartPage(std::int64_t value) { change(fields_.startPage, value); }
    [[nodiscard]] std::int64_t endPage() const { return fields_.endPage; }
    void setEndPage(std::int64_t value) { change(fields_.endPage, value); }
    [[nodiscard]] std::int64_t startNumber() const { return fields_.startNumber; }
    void setStartNumber(std::int64_t value) { change(fields_.startNumber, value); }
    [[nodiscard]] std::int64_t numberSteps() const { return fields_.numberSteps; }
    void setNumberSteps(std::int64_t value) { change(fields_.numberSteps, value); }
    [[nodiscard]] PageRange pageRange() const { return fields_.pageRange; }
    void setPageRange(PageRange value) { change(fields_.pageRange, value); }
    [[nodiscard]] double marginLeft() const { return fields_.marginLeft; }
    void setMarginLeft(double value) { change(fields_.marginLeft, value); }
    [[nodiscard]] double marginTop() const { return fields_.marginTop; }
    void setMarginTop(double value) { change(fields_.marginTop, value); }
    [[nodiscard]] double marginRight() const { return fields_.marginRight; }
    void setMarginRight(double value) { change(fields_.marginRight, value); }
    [[nodiscard]] double marginBottom() const { return fields_.marginBottom; }
    void setMarginBottom(double value) { change(fields_.marginBottom, value); }
    [[nodiscard]] bool isContinuousNumbering() const { return fields_.isContinuousNumbering; }
    void setIsContinuousNumbering(bool value) { change(fields_.isContinuousNumbering, value); }
    [[nodiscard]] bool hasLabel() const { return fields_.hasLabel; }
    void setHasLabel(bool value) { change(fields_.hasLabel, value); }
    [[nodiscard]] const std::optional<QString>& labelPrefix() const { return fields_.labelPrefix; }
    void setLabelPrefix(std::optional<QString> value) { change(fields_.labelPrefix, std::move(value)); }

    [[nodiscard]] const JobOptions& options() const { return fields_.options; }
    /// Notifies as a field of the dependency set does: pages, sizes and texts of the preview depend on
    /// options.
    void setOptions(JobOptions value) { change(fields_.options, std::move(value)); }

    // Fields outside the dependency set: changing them notifies nobody.
    [[nodiscard]] MarginUnit marginUnit() const { return fields_.marginUnit; }
    void setMarginUnit(MarginUnit value) { fields_.marginUnit = value; }
    [[nodiscard]] bool isMarginInPercentage() const { return fields_.isMarginInPercentage; }
    void setIsMarginInPercentage(bool value) { fields_.isMarginInPercentage = value; }
    [[nodiscard]] bool isSymmetryPage() const { return fields_.isSymmetryPage; }
    void setIsSymmetryPage(bool value) { fields_.isSymmetryPage = value; }
    [[nodiscard]] bool isBackupFile() const { return fields_.isBackupFile; }
    void setIsBackupFile(bool value) { fields_.isBackupFile = value; }
    [[nodiscard]] const std::optional<QString>& outputFolder() const { return fields_.outputFolder; }
    void setOutputFolder(std::optional<QString> value) { fields_.outputFolder = std::move(value); }

    /// Opens the update bracket. Brackets do not nest.
    void beginUpdate() { isUpdating_ = true; }
    /// Closes the bracket; with `notify` the delegate is notified once.
    void endUpdate(bool notify);
    void cancelUpdate() { isUpdating_ = false; }
    /// True inside a bracket.
    [[nodiscard]] bool isUpdating() const { return isUpdating_; }

    /// The dependency set: the names of the fields whose change notifies the delegate.
    [[nodiscard]] static const std::set<std::string>& keyPathsForValuesAffectingIsSettingsChanged();

    /// The configuration as a record: every field in the format's order, then the stamps, then the options
    /// that are in use. The record ends before the first absent value. Returns no record on a failure.
    [[nodiscard]] std::optional<store::Record> getData() const;
    /// Applies a record without notifying the delegate; a missing key gives 0, false or no value, and the
    /// stamps are replaced. Returns false, with nothing changed, for a null pointer.
    bool setData(const store::Record* data);
    /// Gives every absent value of the fields and stamps the value that has the same effect, so that the next
    /// record is whole: the entries behind an absent value, the stamps among them, would be missing from it.
    /// Does not notify the delegate.
    void fillAbsentValues();
    /// False for a record without any key of a configuration.
    [[nodiscard]] static bool isConfiguration(const store::Record& record);
    /// Writes the record under "NUMBERING" into the store and flushes it.
    void synchronize();
    /// Writes the record into a profile file, an XML property list; an existing file is replaced only after
    /// the new one was written completely. Returns whether the profile was written.
    bool save(const FilePath& path) const;
    /// Reads a profile file, applies it with setData() and fills absent values. Returns false, with nothing
    /// changed, when the file cannot be read, is no property-list dictionary or holds no configuration.
    bool load(const FilePath& path);

    /// What the pictures of all stamps together may have, in bytes, so that the settings can hold them.
    static constexpr qint64 mostPictureBytes = 160LL << 20;
    /// What they would have if `stamp`, which need not be in the list, had a picture of so many bytes.
    [[nodiscard]] qint64 pictureBytesWith(const IStampItem& stamp, qint64 bytes) const;

    /// One entry for every installed font family, as the font menu offers them.
    [[nodiscard]] const std::vector<PDFFont>& fonts() const { return fonts_; }
    /// Reads the installed families anew.
    const std::vector<PDFFont>& getPDFFonts();

  private:
    template <class T>
    void change(T& field, T value)
    {
        if (field == value) return;
        field = std::move(value);
        settingsChanged();
    }
    void settingsChanged();

    JobConfiguration fields_; ///< without stamps: those that are being edited are in `stamps`
    store::DefaultsStore* defaults_;
    NumberingDelegate* delegate_ = nullptr;
    bool isUpdating_ = false;
    std::vector<PDFFont> fonts_;
};

} // namespace quillfern
