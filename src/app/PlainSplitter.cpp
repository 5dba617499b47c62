#include "app/PlainSplitter.h"

#include <QSplitterHandle>

namespace quillfern {

namespace {

class PlainHandle final : public QSplitterHandle
{
  public:
    using QSplitterHandle::QSplitterHandle;

  protected:
    void paintEvent(QPaintEvent*) override {}
};

} // namespace

QSplitterHandle* PlainSplitter::createHandle()
{
    return new PlainHandle(orientation(), this);
}

} // namespace quillfern
