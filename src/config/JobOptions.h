#pragma once

#include "config/PageList.h"
#include "platform/store/Record.h"
#include "platform/system/FilePath.h"

#include <QString>
#include <cstdint>

namespace quillfern {

/// What becomes of a copy that exists under the name of a new one. The values are stored in profiles; any
/// other value (of a later version) counts as Skip, which loses nothing.
enum class ExistingCopies : std::int32_t {
    Replace = 0,
    Skip = 1,   ///< the copy stays, and the file is not stamped
    Number = 2, ///< the new copy gets a name with a number beside the earlier one
};

/// What a job does beyond stamping as it always did. With the defaults a job without options is done.
struct JobOptions
{
    bool checkedOnly = false; ///< unchecked files are left out of job, numbers and totals
    /// The pages to stamp, in place of the first and the last page; no list: those count.
    PageList pageList;
    /// With odd or even pages, the others stay as they are in a PDF; otherwise they become blank.
    bool keepOtherPages = false;
    /// Stamps and margins on a page of pixels are measured in points by the page's resolution, otherwise in
    /// pixels.
    bool realSize = false;
    bool visiblePage = false; ///< stamps stand inside a page's crop box, which stays
    /// Files that need a password are opened, with their own of the list, else with `password`. The copy
    /// keeps encryption, permissions and passwords.
    bool usePasswords = false;
    QString password;         ///< the default one; never saved with a configuration
    bool unlock = false;      ///< the copies of encrypted files are not encrypted
    bool keepFolders = false; ///< copies keep their folders below the common folder of the list
    ExistingCopies existing = ExistingCopies::Replace;
    QString namePattern;   ///< of the copies, without extension: {name} {first} {last} {index} {date}; empty:
                           ///< {name}
    bool tifNames = false; ///< copies that are TIFFs get the extension ".tif"
    bool replaceStamps = false; ///< stamps of ours that a file has already are taken out first
    bool index = false;         ///< a CSV file lists the copies
    FilePath indexFile;         ///< where; empty: beside the copies. Not saved

    bool operator==(const JobOptions&) const = default;

    /// The options in a configuration's record. A missing entry, and one of another kind, gives the default.
    [[nodiscard]] static JobOptions read(const store::Record& record);
    /// Appends an entry for each option that is not at its default, so that a record without options has the
    /// same entries as ever.
    void addTo(store::RecordBuilder& builder) const;
};

} // namespace quillfern
