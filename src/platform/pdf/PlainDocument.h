#pragma once

#include "platform/pdf/PdfPageBox.h"
#include "platform/pdf/PlainObjects.h"
#include "platform/pdf/PlainStreams.h"
#include "platform/pdf/SourceEnd.h"

#include <memory>
#include <qpdf/QPDF.hh>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace quillfern::pdf {

class FileInput;
class PlainDictionary;

/// A page as the text of its object. The dictionary is plain in the sense of PlainParser, its content streams
/// in that of PlainStreams.
struct PlainPage
{
    int number = 0;
    std::string text; ///< the dictionary
    PdfPageBox box;
    bool inheritsCropBox = false;
    /// The text of the resources; a dictionary or a reference, null for none.
    std::shared_ptr<const std::string> resources;
    int resourcesOf = 0; ///< the ancestor that has them; 0 for the page itself
    std::size_t firstContent = 0;
    std::size_t contentCount = 0;
};

/// The pages of a sound file, read without the document's library: that makes objects of everything that it
/// sees, which takes most of the time and the memory for a document of many pages. The library then opens the
/// file with a cross-reference that leaves out what is read here, so that it sees the rest alone.
///
/// All or nothing: a document of which a page, its content or its place in the page tree is not plain is left
/// to the library. Used on the document's thread.
class PlainDocument
{
  public:
    /// Nothing for a document that is not plain. Throws Failure when the file cannot be read, Cancelled once
    /// `stop` is stopped. The file outlives this object.
    [[nodiscard]] static std::unique_ptr<PlainDocument> read(FileInput& file, const SourceEnd& end,
                                                             const std::stop_token& stop);

    [[nodiscard]] const std::vector<PlainPage>& pages() const { return pages_; }
    /// The objects of the page's content.
    [[nodiscard]] std::span<const int> contentOf(const PlainPage& page) const
    {
        return std::span(contents_).subspan(page.firstContent, page.contentCount);
    }
    /// Where each of them lies.
    [[nodiscard]] std::span<const PlainStreams::Place> placesOf(const PlainPage& page) const
    {
        return std::span(places_).subspan(page.firstContent, page.contentCount);
    }
    [[nodiscard]] const SourceTable& table() const { return objects_.table(); }
    /// The first number that no object has and, where there is little enough beside the pages and their
    /// content to be read, none refers to.
    [[nodiscard]] int nextNumber() const { return nextNumber_; }
    /// Whether all objects were read, and none refers to one that is not there.
    [[nodiscard]] bool isEveryReferenceSound() const { return isEveryReferenceSound_; }

    /// The number of pages that the root of the page tree states, if the counts of its kids add up to it;
    /// nothing otherwise, and for a file whose cross-reference is not plain.
    [[nodiscard]] static std::optional<int> statedCount(FileInput& file, const SourceEnd& end);

    /// Gives the library an empty page for each that it does not see: a reference to nothing would count as
    /// null, and the entry that has it would not be written.
    void addPlaceholders(QPDF& document, int kept = -1) const;
    /// What the file goes on with for the library: a cross-reference stream (ISO 32000-1, 7.5.8) without the
    /// pages and their content, but with the page of index `kept`.
    [[nodiscard]] std::string libraryTail(const FileInput& file, int kept = -1) const;

    /// How many objects are read beside the pages and their content.
    static constexpr std::size_t smallFile = 5000;

  private:
    PlainDocument(FileInput& file, SourceTable table);

    struct Inherited;
    [[nodiscard]] bool readTable(const std::stop_token& stop);
    [[nodiscard]] bool readNode(int number, int parent, const Inherited& above, int depth);
    [[nodiscard]] bool readKids(const std::vector<int>& kids, int number, const Inherited& inherited,
                                int depth);
    [[nodiscard]] bool readPage(int number, std::string text, const Inherited& above);
    [[nodiscard]] bool readInherited(const PlainDictionary& dictionary, int number, Inherited& inherited);
    [[nodiscard]] bool readContents(std::string_view value, PlainPage& page);
    [[nodiscard]] std::optional<std::string> resolved(std::string_view value);
    /// Notes an object of the page tree; false when the tree names it twice.
    [[nodiscard]] bool isFirstSight(int number);
    /// Whether resources are, or have as a category, an object of the page tree or a page's content.
    [[nodiscard]] bool refersToSeen(std::string_view resources) const;

    PlainObjects objects_;
    PlainStreams streams_;
    std::stop_token stop_;
    std::vector<PlainPage> pages_;
    std::vector<int> contents_;
    std::vector<PlainStreams::Place> places_;
    std::vector<bool> seen_;
    int nextNumber_ = 1;
    bool isEveryReferenceSound_ = false;
};

} // namespace quillfern::pdf
