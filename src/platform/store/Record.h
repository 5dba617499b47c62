#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace quillfern::store {

class RecordValue;

/// An ordered dictionary from texts to values: the form in which settings and profiles are kept. The order of
/// the entries is part of the format.
///
/// Reading is tolerant, as the format demands: a missing key and a value of another kind both give zero,
/// false or nothing. Integers, real numbers and booleans can each be read as the others.
class Record
{
  public:
    using Entry = std::pair<QString, RecordValue>;

    /// Appends an entry, or replaces the value of an existing key in its place.
    void set(const QString& key, RecordValue value);

    [[nodiscard]] const RecordValue* find(const QString& key) const;
    [[nodiscard]] bool contains(const QString& key) const { return find(key) != nullptr; }
    [[nodiscard]] const std::vector<Entry>& entries() const { return entries_; }
    [[nodiscard]] bool empty() const;

    [[nodiscard]] bool boolean(const QString& key) const;
    /// The low 32 bits of the number under `key`, as the format stores all integers.
    [[nodiscard]] std::int32_t integer32(const QString& key) const;
    [[nodiscard]] double real(const QString& key) const;
    [[nodiscard]] std::optional<QString> text(const QString& key) const;
    [[nodiscard]] std::optional<QByteArray> bytes(const QString& key) const;
    [[nodiscard]] const Record* record(const QString& key) const;
    [[nodiscard]] const std::vector<RecordValue>* list(const QString& key) const;

    bool operator==(const Record&) const;

  private:
    std::vector<Entry> entries_;
    QHash<QString, std::size_t> places_; ///< the index of each key in entries_
};

/// One value of a record: a boolean, an integer, a real number, a text, bytes, a record or a list of values.
class RecordValue
{
  public:
    using List = std::vector<RecordValue>;
    using Variant = std::variant<bool, std::int64_t, double, QString, QByteArray, Record, List>;

    RecordValue(bool value) : value_(value) {}
    RecordValue(std::int32_t value) : value_(std::int64_t{value}) {}
    RecordValue(std::int64_t value) : value_(value) {}
    RecordValue(double value) : value_(value) {}
    RecordValue(QString value) : value_(std::move(value)) {}
    RecordValue(QByteArray value) : value_(std::move(value)) {}
    RecordValue(Record value) : value_(std::move(value)) {}
    RecordValue(List value) : value_(std::move(value)) {}
    RecordValue(const char*) = delete; // would silently become a boolean

    [[nodiscard]] const Variant& variant() const { return value_; }
    template <class T>
    [[nodiscard]] const T* as() const
    {
        return std::get_if<T>(&value_);
    }

    bool operator==(const RecordValue&) const = default;

  private:
    Variant value_;
};

inline bool Record::empty() const
{
    return entries_.empty();
}

/// Builds a record from values in order and stops for good at the first absent one: the entries after it are
/// missing from the record. This cut is part of the format.
class RecordBuilder
{
  public:
    RecordBuilder& add(const QString& key, RecordValue value);
    template <class T>
    RecordBuilder& add(const QString& key, const std::optional<T>& value)
    {
        if (value) return add(key, RecordValue(*value));
        cut_ = true;
        return *this;
    }
    [[nodiscard]] Record take() { return std::move(record_); }

  private:
    Record record_;
    bool cut_ = false;
};

/// A 64-bit number cut to its low 32 bits, as the format stores integers.
[[nodiscard]] constexpr std::int32_t low32(std::int64_t value)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(value)));
}

} // namespace quillfern::store
