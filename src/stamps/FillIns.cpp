#include "stamps/FillIns.h"

#include "platform/system/NativePath.h"

namespace quillfern {

FillIns fillInsFor(const std::optional<FilePath>& document, const QDateTime& moment)
{
    FillIns fillIns = {{QStringLiteral("date"), moment.toString(QStringLiteral("yyyy-MM-dd"))},
                       {QStringLiteral("time"), moment.toString(QStringLiteral("HH:mm"))}};
    if (document && !document->isEmpty()) {
        fillIns.insert(QStringLiteral("file"), printable(readableName(document->name())));
        fillIns.insert(QStringLiteral("folder"), printable(readableName(document->parent().name())));
    }
    return fillIns;
}

std::optional<QString> takeFillIn(const QString& pattern, qsizetype& at, const FillIns& fillIns)
{
    if (pattern[at] != u'{') return std::nullopt;
    const qsizetype end = pattern.indexOf(u'}', at);
    if (end < 0) return std::nullopt;
    const auto found = fillIns.constFind(pattern.mid(at + 1, end - at - 1));
    if (found == fillIns.constEnd()) return std::nullopt;
    at = end + 1;
    return *found;
}

} // namespace quillfern
