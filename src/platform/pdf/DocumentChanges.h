#pragma once

#include <map>
#include <qpdf/QPDFObjectHandle.hh>
#include <set>
#include <string>
#include <utility>

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
    /// The object became this text; the document's library does not know of it.
    void noteChanged(int number, std::string text) { texts_.insert_or_assign(number, std::move(text)); }
    /// Takes the texts, for the library to become their holder.
    [[nodiscard]] std::map<int, std::string> takeTexts() { return std::exchange(texts_, {}); }
    /// The page tree itself was mended, or something was removed that must not remain in the file: the
    /// document has to be written anew.
    void noteRebuilt() { isRebuilt_ = true; }
    /// Something translucent was added, which PDF 1.3 did not have.
    void noteTransparency() { usesTransparency_ = true; }

    [[nodiscard]] const std::set<QPDFObjGen>& objects() const { return objects_; }
    [[nodiscard]] const std::map<int, std::string>& texts() const { return texts_; }
    [[nodiscard]] bool isRebuilt() const { return isRebuilt_; }
    [[nodiscard]] bool usesTransparency() const { return usesTransparency_; }
    /// Everything that the source refers to is where its cross-reference says.
    void noteSoundReferences() { hasSoundReferences_ = true; }
    [[nodiscard]] bool hasSoundReferences() const { return hasSoundReferences_; }

  private:
    std::set<QPDFObjGen> objects_;
    std::map<int, std::string> texts_; ///< of objects of generation 0
    bool isRebuilt_ = false;
    bool usesTransparency_ = false;
    bool hasSoundReferences_ = false;
};

} // namespace quillfern::pdf
