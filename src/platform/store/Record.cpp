#include "platform/store/Record.h"

#include <cmath>
#include <limits>

namespace quillfern::store {

namespace {

std::int64_t wholeNumber(double value)
{
    if (std::isnan(value)) return 0;
    // 2^63 is the first double that no longer fits.
    constexpr double limit = 9223372036854775808.0;
    if (value >= limit) return std::numeric_limits<std::int64_t>::max();
    if (value < -limit) return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(value);
}

template <class T>
const T* findAs(const Record& record, const QString& key)
{
    const RecordValue* value = record.find(key);
    return value ? value->as<T>() : nullptr;
}

} // namespace

void Record::set(const QString& key, RecordValue value)
{
    const auto found = places_.constFind(key);
    if (found != places_.constEnd()) {
        entries_[*found].second = std::move(value);
        return;
    }
    places_.insert(key, entries_.size());
    entries_.emplace_back(key, std::move(value));
}

const RecordValue* Record::find(const QString& key) const
{
    const auto found = places_.constFind(key);
    return found == places_.constEnd() ? nullptr : &entries_[*found].second;
}

bool Record::boolean(const QString& key) const
{
    const RecordValue* value = find(key);
    if (!value) return false;
    if (const auto* flag = value->as<bool>()) return *flag;
    if (const auto* number = value->as<std::int64_t>()) return *number != 0;
    if (const auto* number = value->as<double>()) return *number != 0.0;
    return false;
}

std::int32_t Record::integer32(const QString& key) const
{
    const RecordValue* value = find(key);
    if (!value) return 0;
    if (const auto* number = value->as<std::int64_t>()) return low32(*number);
    if (const auto* number = value->as<double>()) return low32(wholeNumber(*number));
    if (const auto* flag = value->as<bool>()) return *flag ? 1 : 0;
    return 0;
}

double Record::real(const QString& key) const
{
    const RecordValue* value = find(key);
    if (!value) return 0.0;
    if (const auto* number = value->as<double>()) return *number;
    if (const auto* number = value->as<std::int64_t>()) return static_cast<double>(*number);
    if (const auto* flag = value->as<bool>()) return *flag ? 1.0 : 0.0;
    return 0.0;
}

std::optional<QString> Record::text(const QString& key) const
{
    const auto* text = findAs<QString>(*this, key);
    return text ? std::optional(*text) : std::nullopt;
}

std::optional<QByteArray> Record::bytes(const QString& key) const
{
    const auto* bytes = findAs<QByteArray>(*this, key);
    return bytes ? std::optional(*bytes) : std::nullopt;
}

const Record* Record::record(const QString& key) const
{
    return findAs<Record>(*this, key);
}

const std::vector<RecordValue>* Record::list(const QString& key) const
{
    return findAs<RecordValue::List>(*this, key);
}

bool Record::operator==(const Record& other) const
{
    return entries_ == other.entries_;
}

RecordBuilder& RecordBuilder::add(const QString& key, RecordValue value)
{
    if (!cut_) record_.set(key, std::move(value));
    return *this;
}

} // namespace quillfern::store
