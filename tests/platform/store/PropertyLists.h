#pragma once

#include "platform/store/PropertyList.h"
#include "platform/system/Failure.h"

#include <string>

namespace quillfern::store {

/// Why the bytes are refused; empty when they are read.
inline std::string refusal(const QByteArray& bytes)
{
    try {
        static_cast<void>(readPropertyList(bytes));
        return {};
    } catch (const Failure& failure) {
        return failure.what();
    }
}

/// A record of one value, under "v".
inline Record holding(const RecordValue& value)
{
    Record record;
    record.set(QStringLiteral("v"), value);
    return record;
}

} // namespace quillfern::store
