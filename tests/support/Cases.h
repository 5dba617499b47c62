#pragma once

// What every test includes, by itself or with a header of its fixture.

#include <QStringList>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tuple>
#include <vector>

namespace quillfern {

using namespace Qt::StringLiterals; // in all tests: u"..."_s

/// The cases of a test, a row each: `for (const auto& [what, given, expected] : cases)`.
template <class... Columns>
using Rows = std::vector<std::tuple<Columns...>>;

/// The words of a text.
[[nodiscard]] inline QStringList words(const char* text)
{
    return QString::fromUtf8(text).split(u' ', Qt::SkipEmptyParts);
}

} // namespace quillfern
