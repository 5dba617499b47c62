#pragma once

#include <memory>
#include <stop_token>

class QPDF;

namespace quillfern::store {
class AtomicFile;
}

namespace quillfern::pdf {

class DocumentChanges;
class FileInput;
class NewObjects;

/// A document that was opened from `source` and changed since; all are borrowed.
struct EditedDocument
{
    QPDF& document;
    DocumentChanges& changes; ///< a writer that writes the document anew notes that here
    NewObjects& objects;
    const FileInput& source;
};

/// Writes a changed document to the disk.
class PdfWriter
{
  public:
    virtual ~PdfWriter() = default;
    /// Writes the document with all its changes. Throws Cancelled once `stop` is stopped, Failure, or what
    /// the document's library throws; the caller translates (LibraryErrors.h).
    virtual void write(const EditedDocument& edited, store::AtomicFile& target,
                       std::stop_token stop) const = 0;
};

/// What becomes of the encryption of a document.
enum class Encryption { Kept, Removed };

/// Writes every object anew, streams as they are. Object streams are kept, and so is encryption, with the
/// permissions and both passwords, unless it is to be removed.
class RewritingPdfWriter final : public PdfWriter
{
  public:
    explicit RewritingPdfWriter(Encryption encryption = Encryption::Kept) : encryption_(encryption) {}
    void write(const EditedDocument& edited, store::AtomicFile& target, std::stop_token stop) const override;

  private:
    Encryption encryption_;
};

/// Writes a copy of the source followed by an incremental update (ISO 32000-1, 7.5.6) that holds only the new
/// and the changed objects: the signed revision of a signed document stays valid, and large documents are
/// copied by the system instead of being parsed and written.
///
/// Where the update would be wrong the document is written anew: the source was read with repairs, is
/// encrypted, does not begin with its header, or something is to disappear from it.
class AppendingPdfWriter final : public PdfWriter
{
  public:
    void write(const EditedDocument& edited, store::AtomicFile& target, std::stop_token stop) const override;
};

} // namespace quillfern::pdf
