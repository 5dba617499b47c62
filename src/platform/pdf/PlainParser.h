#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quillfern::pdf {

/// Reads objects that are written as nearly all are, without making anything of them: a value is the part of
/// the text that it stands in. Whatever is damaged, ambiguous or unusual (comments, escapes in the names of
/// keys, keys that are named twice, numbers beyond the range) is refused, so that what is accepted means the
/// same to every reader; the document's library reads the rest.
class PlainParser
{
  public:
    explicit PlainParser(std::string_view text) : begin_(text.data()), at_(begin_), end_(begin_ + text.size())
    {
    }

    /// Skips white space and the keyword; false, and nothing but space skipped, where something else follows.
    bool take(std::string_view keyword);
    /// The same for a word that does not go on.
    bool takeWord(std::string_view word);
    /// A whole number from 0 on.
    std::optional<std::int64_t> takeNumber();
    /// "12 0 R" with generation 0: the object's number.
    std::optional<int> takeReference();
    /// The text of the next value, whatever it is.
    std::optional<std::string_view> takeValue();
    /// The line end behind the keyword "stream" (ISO 32000-1, 7.3.8.1).
    bool takeLineEnd();

    [[nodiscard]] std::size_t used() const { return static_cast<std::size_t>(at_ - begin_); }
    /// Why something was refused: the text ended in the middle, so that more of it may help.
    [[nodiscard]] bool ranOut() const { return at_ == end_ || ranOut_; }
    /// The highest object number that the values taken so far refer to.
    [[nodiscard]] int highestReference() const { return highest_; }
    /// Marks what the values refer to, by number; the first mark stands for all objects beyond the marks and
    /// of another generation than 0. The marks outlive the parser.
    void markReferencesIn(std::vector<bool>& marks) { marks_ = &marks; }

  private:
    friend class PlainDictionary;
    void skipSpace();
    bool skipValue(int depth);
    bool skipName();
    bool skipString();
    bool skipHexString();
    bool skipNumberOrReference();

    const char* begin_;
    const char* at_;
    const char* end_;
    bool ranOut_ = false;
    int highest_ = 0;
    std::vector<bool>* marks_ = nullptr;
};

/// The entries of a dictionary that is plain in the sense of PlainParser, in their order. Refers to the text.
class PlainDictionary
{
  public:
    struct Entry
    {
        std::string_view key; ///< with its slash
        std::string_view value;
    };

    /// Nothing for what is no plain dictionary. The parser stands behind the dictionary afterwards.
    static std::optional<PlainDictionary> take(PlainParser& parser);
    static std::optional<PlainDictionary> read(std::string_view text);

    [[nodiscard]] const std::vector<Entry>& entries() const { return entries_; }
    /// The text of the key's value; empty without such a key.
    [[nodiscard]] std::string_view value(std::string_view key) const;
    [[nodiscard]] std::optional<std::int64_t> number(std::string_view key) const;
    /// The number of the object that the key refers to; nothing for any other value.
    [[nodiscard]] std::optional<int> reference(std::string_view key) const;

  private:
    std::vector<Entry> entries_;
};

[[nodiscard]] std::optional<std::int64_t> plainNumber(std::string_view value);
[[nodiscard]] std::optional<int> plainReference(std::string_view value);

} // namespace quillfern::pdf
