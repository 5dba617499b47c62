#pragma once

#include "platform/system/FilePath.h"

#include <QDateTime>
#include <QHash>
#include <QString>
#include <optional>

namespace quillfern {

/// What the words in braces of a template stand for, without the braces: the texts by their words.
using FillIns = QHash<QString, QString>;

/// The words of a job: {file} is the name of the document, {folder} that of its folder, {date} and {time} are
/// the moment as 2026-01-31 and 09:05. Without a document the first two stand for nothing and are printed as
/// they are.
[[nodiscard]] FillIns fillInsFor(const std::optional<FilePath>& document, const QDateTime& moment);

/// The text that begins at `at` in a template and ends behind its brace, when that is a word to fill in; what
/// it stands for then, and `at` moves behind it.
[[nodiscard]] std::optional<QString> takeFillIn(const QString& pattern, qsizetype& at,
                                                const FillIns& fillIns);

} // namespace quillfern
