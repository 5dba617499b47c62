#pragma once

#include "platform/pdf/FileInput.h"

#include <cstddef>
#include <map>
#include <qpdf/QPDF.hh>
#include <set>
#include <string>
#include <string_view>

namespace quillfern::pdf {

/// Finds out what qpdf could not read of a damaged file, and how it could.
class FileRepair
{
  public:
    /// Every object of the document has been read. `rebuilt` is true when the file's own cross-reference
    /// table could not be read and was made anew from the objects. Document and input must outlive the
    /// repair.
    FileRepair(QPDF& document, FileInput& input, bool rebuilt);

    /// Objects that are in the file and became null because qpdf could not read them.
    [[nodiscard]] const std::set<QPDFObjGen>& unreadable() const { return unreadable_; }
    /// Whether an update() would let more of the file be read.
    [[nodiscard]] bool helps() const { return !mended_.empty(); }
    /// Bytes with which the file would have to go on, for its reader, so that these objects, and those in
    /// object streams that no cross-reference leads to, can be read: an incremental update (ISO
    /// 32000-1, 7.5.6) that holds them in another form.
    [[nodiscard]] std::string update();

  private:
    void examine(QPDFObjGen id, std::string_view text);
    void add(QPDFObjGen id, std::string text);
    [[nodiscard]] std::string textAt(qpdf_offset_t offset, qpdf_offset_t end);
    const std::map<int, std::string_view>& objectsIn(int streamNumber);
    void unpackStreams(const std::map<QPDFObjGen, QPDFXRefEntry>& table);
    [[nodiscard]] std::string crossReferences(const std::map<QPDFObjGen, std::size_t>& places,
                                              std::size_t at);

    QPDF& document_;
    FileInput& input_;
    bool rebuilt_;
    qpdf_offset_t headerAt_ = 0; ///< offsets in the file count from here
    std::set<QPDFObjGen> unreadable_;
    std::map<QPDFObjGen, std::string> mended_;
    std::size_t mendedSize_ = 0;
    int unpackedNumber_ = 0; ///< the object stream that is at hand
    std::string decoded_;    ///< its data
    std::map<int, std::string_view> unpacked_;
};

} // namespace quillfern::pdf
