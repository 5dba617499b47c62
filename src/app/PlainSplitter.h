#pragma once

#include <QSplitter>

namespace quillfern {

/// A splitter whose dividers are not drawn; the gap can be dragged all the same.
class PlainSplitter final : public QSplitter
{
    Q_OBJECT

  public:
    using QSplitter::QSplitter;

  protected:
    QSplitterHandle* createHandle() override;
};

} // namespace quillfern
