#pragma once

#include "platform/store/PropertyList.h"
#include "platform/system/Failure.h"
#include "support/Cases.h"

#include <string>

namespace quillfern::store {

/// Why a list is refused; empty when it is read.
template <class Source>
std::string refusal(const Source& source)
{
    try {
        if constexpr (std::is_same_v<Source, FilePath>)
            static_cast<void>(readPropertyListFile(source));
        else
            static_cast<void>(readPropertyList(source));
        return {};
    } catch (const Failure& failure) {
        return failure.what();
    }
}

/// A record of one value.
inline Record holding(const RecordValue& value, const QString& key = u"v"_s)
{
    Record record;
    record.set(key, value);
    return record;
}

} // namespace quillfern::store
