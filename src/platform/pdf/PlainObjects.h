#pragma once

#include "platform/pdf/SourceTable.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace quillfern::pdf {

class FileInput;

/// The objects of a file as its text has them, where they are plain in the sense of PlainParser.
class PlainObjects
{
  public:
    /// The file outlives this object.
    PlainObjects(FileInput& file, SourceTable table);

    [[nodiscard]] const SourceTable& table() const { return table_; }
    /// The text of an object's value, of a stream its dictionary; lasts until the next call. Nothing for what
    /// is not plain, of another generation than 0, or not there. Throws Failure when the file cannot be read.
    [[nodiscard]] std::optional<std::string_view> value(int number);

    /// Reads every object but those marked as known, by number; false when one is not plain or a stream does
    /// not end where its length says. Throws Failure, and Cancelled once `stop` is stopped.
    [[nodiscard]] bool readOthers(const std::vector<bool>& known, const std::stop_token& stop);
    /// The highest object number that the trailer and the objects read so far refer to.
    [[nodiscard]] int highestReference() const { return highest_; }
    /// Whether all that they refer to is there, with the generation 0.
    [[nodiscard]] bool isEveryReferenceSound() const;

  private:
    /// The objects of an object stream (ISO 32000-1, 7.5.7).
    struct Unpacked
    {
        std::string data;
        std::map<int, std::pair<int, std::size_t>> places; ///< number of the object: index and offset
    };
    struct Found
    {
        std::string_view value;
        std::optional<std::int64_t> data; ///< where the data of a stream begin
    };
    [[nodiscard]] std::optional<Found> inFile(int number, const SourceTable::Entry& entry);
    [[nodiscard]] std::optional<Found> parsed(std::string_view text, int number,
                                              const SourceTable::Entry& entry, bool& ranOut);
    [[nodiscard]] std::optional<std::string_view> inStream(int number, const SourceTable::Entry& entry);
    [[nodiscard]] const Unpacked* unpacked(int number);
    [[nodiscard]] bool unpack(int number, Unpacked& unpacked);
    [[nodiscard]] std::optional<std::int64_t> lengthOf(std::string_view dictionary);
    [[nodiscard]] bool endsAt(std::int64_t offset);

    /// Counts the bytes parsed; false once they are far more than the file has, because objects that overlap
    /// could take hours.
    [[nodiscard]] bool isWorthwhile(std::size_t parsed);

    FileInput& file_;
    SourceTable table_;
    std::int64_t parsed_ = 0;
    std::vector<bool> referenced_; ///< as PlainParser marks it
    std::string text_;             ///< holds the object that was read last
    std::map<int, std::unique_ptr<Unpacked>> unpacked_;
    std::size_t unpackedSize_ = 0;
    int highest_ = 0;
};

} // namespace quillfern::pdf
