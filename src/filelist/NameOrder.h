#pragma once

#include <QCollator>
#include <QString>

namespace quillfern {

/// The order in which people sort names: without regard to case, runs of digits by their value, letters as
/// the user's language has them (as English has them where no language is set). Not for use from two threads
/// at once.
class NameOrder
{
  public:
    NameOrder();

    /// A key of a name. Keys compare like the names themselves, but many times faster.
    [[nodiscard]] QCollatorSortKey key(const QString& name) const { return collator_.sortKey(name); }

  private:
    QCollator collator_;
};

} // namespace quillfern
