#pragma once

#include <qpdf/QPDFObjectHandle.hh>
#include <set>

namespace quillfern::pdf {

/// What work on an open document has changed, for a writer that appends the changes to a copy of the source.
/// Whatever edits an object of the source notes the object here; objects that are new need no note.
class DocumentChanges
{
  public:
    /// `object` was edited. A direct object counts with the indirect one that holds it, which the caller
    /// notes instead.
    void noteChanged(const QPDFObjectHandle& object)
    {
        if (QPDFObjectHandle(object).isIndirect()) objects_.insert(QPDFObjectHandle(object).getObjGen());
    }
    /// The page tree itself was mended, or something was removed that must not remain in the file: the
    /// document has to be written anew.
    void noteRebuilt() { isRebuilt_ = true; }
    /// Something translucent was added, which PDF 1.3 did not have.
    void noteTransparency() { usesTransparency_ = true; }

    [[nodiscard]] const std::set<QPDFObjGen>& objects() const { return objects_; }
    [[nodiscard]] bool isRebuilt() const { return isRebuilt_; }
    [[nodiscard]] bool usesTransparency() const { return usesTransparency_; }

  private:
    std::set<QPDFObjGen> objects_;
    bool isRebuilt_ = false;
    bool usesTransparency_ = false;
};

} // namespace quillfern::pdf
