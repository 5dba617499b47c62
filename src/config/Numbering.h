#pragma once

#include "platform/system/FilePath.h"
#include "stamps/PDFFont.h"
#include "stamps/PageCompositor.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quillfern {

class DefaultsStore;
class Numbering;

/// Told when the configuration has changed in a way that shows.
class NumberingDelegate
{
  public:
    virtual ~NumberingDelegate() = default;
    virtual void PropertyChanged(Numbering& number) = 0;
};

/// Which pages inside the page range are stamped. The values are stored in profiles; any other stamps none.
enum PageRange : std::int32_t {
    AllPages = 0,
    OddPages = 1,
    EvenPages = 2,
};

/// The unit of the margins. The values are stored in profiles; any other counts as points.
enum MarginUnit : std::int32_t {
    Points = 0,
    Millimetres = 1,
    Inches = 2,
};

/// Everything the user has set up for a job: the ordered stamps, the pages, the numbers, the margins and the
/// preview's switches.
///
/// Every change of a field in the dependency set tells the delegate at once, unless an update bracket is
/// open; endUpdate(true) then tells it once. Setting a field to the value it has changes nothing. The
/// configuration is edited on the main thread; while a job runs its worker reads it, and nobody edits it.
class Numbering
{
  public:
    /// Starts from the defaults, then applies the record "NUMBERING" of the store, if there is one. The store
    /// (may be null: nothing is remembered) must outlive this object.
    explicit Numbering(DefaultsStore* defaults = nullptr);
    Numbering(const Numbering&) = delete;
    Numbering& operator=(const Numbering&) = delete;

    StampList stamps; ///< drawing order; changing the list tells nobody by itself

    /// Not owned; may be null.
    void setDelegate(NumberingDelegate* delegate) { delegate_ = delegate; }

    [[nodiscard]] bool isLivePreview() const { return isLivePreview_; }
    void setIsLivePreview(bool value) { change(isLivePreview_, value); }
    [[nodiscard]] bool isHighlightStamp() const { return isHighlightStamp_; }
    void setIsHighlightStamp(bool value) { change(isHighlightStamp_, value); }
    [[nodiscard]] std::int64_t startPage() const { return startPage_; } ///< 1-based
    void setStartPage(std::int64_t value) { change(startPage_, value); }
    [[nodiscard]] std::int64_t endPage() const { return endPage_; } ///< 1-based; 0 is the last page
    void setEndPage(std::int64_t value) { change(endPage_, value); }
    [[nodiscard]] std::int64_t startNumber() const { return startNumber_; }
    void setStartNumber(std::int64_t value) { change(startNumber_, value); }
    [[nodiscard]] std::int64_t numberSteps() const { return numberSteps_; }
    void setNumberSteps(std::int64_t value) { change(numberSteps_, value); }
    [[nodiscard]] std::int32_t pageRange() const { return pageRange_; } ///< a PageRange
    void setPageRange(std::int32_t value) { change(pageRange_, value); }
    /// The margins, in marginUnit(), or in percent of the page's width or height. Zero or less is no margin.
    [[nodiscard]] double marginLeft() const { return marginLeft_; }
    void setMarginLeft(double value) { change(marginLeft_, value); }
    [[nodiscard]] double marginTop() const { return marginTop_; }
    void setMarginTop(double value) { change(marginTop_, value); }
    [[nodiscard]] double marginRight() const { return marginRight_; }
    void setMarginRight(double value) { change(marginRight_, value); }
    [[nodiscard]] double marginBottom() const { return marginBottom_; }
    void setMarginBottom(double value) { change(marginBottom_, value); }
    [[nodiscard]] bool isContinuousNumbering() const { return isContinuousNumbering_; }
    void setIsContinuousNumbering(bool value) { change(isContinuousNumbering_, value); }
    [[nodiscard]] bool hasLabel() const { return hasLabel_; } ///< kept and saved only
    void setHasLabel(bool value) { change(hasLabel_, value); }
    [[nodiscard]] const std::optional<QString>& labelPrefix() const
    {
        return labelPrefix_;
    } ///< kept and saved only
    void setLabelPrefix(std::optional<QString> value) { change(labelPrefix_, std::move(value)); }

    // Fields outside the dependency set: changing them tells nobody.
    std::int32_t marginUnit = Points;
    bool isMarginInPercentage = false;
    bool isSymmetryPage = false;                     ///< kept and saved only
    bool isBackupFile = false;                       ///< keep a copy of a file that is processed in place
    std::optional<QString> outputFolder = QString(); ///< kept and saved only

    /// Opens the update bracket. Brackets do not nest.
    void beginUpdate() { isUpdating_ = true; }
    /// Closes the bracket; with `notify` the delegate is told once.
    void endUpdate(bool notify);
    void cancelUpdate() { isUpdating_ = false; }
    /// True inside a bracket, and while a document is being processed. Readable from any thread.
    [[nodiscard]] bool isUpdating() const { return isUpdating_; }

    /// The names of the fields whose change tells the delegate.
    [[nodiscard]] static const std::set<std::string>& keyPathsForValuesAffectingIsSettingsChanged();

    /// The record form: every field in the format's order, then the stamps. It ends before the first absent
    /// value. Nothing on a failure.
    [[nodiscard]] std::optional<Record> getData() const;
    /// Applies a record inside a bracket that tells nobody; a missing key gives 0, false or nothing, and the
    /// stamps are replaced. Returns false, with nothing changed, without a record.
    bool setData(const Record* data);
    /// Writes the record under "NUMBERING" into the store and flushes it.
    void synchronize();
    /// Writes the record into a profile file, an XML property list; a file that is there is replaced only
    /// once the new one is whole. Returns whether it worked.
    bool save(const FilePath& path) const;
    /// Reads a profile file and applies it with setData(). Returns false, with nothing changed, when the file
    /// cannot be read or is no property-list dictionary.
    bool load(const FilePath& path);

    /// The number printed on the page being drawn.
    std::int64_t numberCounter = 1;
    /// Takes the running number and every stamp back to the start of a run.
    void reset();

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

    bool isLivePreview_ = false;
    bool isHighlightStamp_ = true;
    std::int64_t startPage_ = 1;
    std::int64_t endPage_ = 0;
    std::int64_t startNumber_ = 1;
    std::int64_t numberSteps_ = 1;
    std::int32_t pageRange_ = AllPages;
    double marginLeft_ = 0;
    double marginTop_ = 0;
    double marginRight_ = 0;
    double marginBottom_ = 0;
    bool isContinuousNumbering_ = false;
    bool hasLabel_ = false;
    std::optional<QString> labelPrefix_ = QString();

    DefaultsStore* defaults_;
    NumberingDelegate* delegate_ = nullptr;
    std::atomic<bool> isUpdating_ = false;
    std::vector<PDFFont> fonts_;
};

} // namespace quillfern
