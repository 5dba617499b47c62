// Starts the complete program and ends it when its window has been painted for the first time. Prints the
// milliseconds since the moment that BENCH_SINCE gives in milliseconds of the monotonic clock.

#include "app/Application.h"
#include "app/MainWindow.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

double now()
{
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

class FirstPaint final : public QObject
{
  public:
    explicit FirstPaint(double since) : since_(since) {}

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        // A call that is posted while the window is painted runs after the whole window has been painted and
        // shown.
        if (event->type() == QEvent::Paint && !std::exchange(isDone_, true))
            QTimer::singleShot(0, this, [this] {
                std::printf("%.1f\n", now() - since_);
                std::fflush(stdout);
                std::_Exit(0);
            });
        return QObject::eventFilter(watched, event);
    }

  private:
    double since_;
    bool isDone_ = false;
};

} // namespace

int main(int argc, char** argv)
{
    const double started = now();
    bool isGiven = false;
    const double since = qEnvironmentVariable("BENCH_SINCE").toDouble(&isGiven);
    quillfern::Application application(argc, argv);
    FirstPaint watch(isGiven ? since : started);
    if (application.window()) application.window()->installEventFilter(&watch);
    return application.exec();
}
