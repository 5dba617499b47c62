#pragma once

#include <QSplitter>

namespace quillfern {

/// A splitter whose dividers are not drawn; the gaps between the parts can be dragged.
class PlainSplitter final : public QSplitter
{
    Q_OBJECT

  public:
    using QSplitter::QSplitter;

  protected:
    QSplitterHandle* createHandle() override;
};

} // namespace quillfern
