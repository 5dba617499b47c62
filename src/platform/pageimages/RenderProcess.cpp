#include "platform/pageimages/RenderProcess.h"

#include "platform/pageimages/RenderReply.h"
#include "platform/system/FileFacts.h"
#include "platform/system/LogLine.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QProcess>
#include <algorithm>
#include <sys/resource.h>
#ifdef __linux__
#include <csignal>
#include <sys/prctl.h>
#endif

namespace quillfern::pageimages {

namespace {

void limit(int resource, qint64 value)
{
    const rlimit both{static_cast<rlim_t>(value), static_cast<rlim_t>(value)};
    ::setrlimit(static_cast<__rlimit_resource_t>(resource), &both);
}

/// Runs in the child between fork and exec: nothing here may take memory or locks.
void confine(const RenderProcess::Limits& limits)
{
#ifndef __SANITIZE_ADDRESS__ // whose shadow memory is larger than any sensible limit
    limit(RLIMIT_AS, limits.memoryBytes);
#endif
    // Even when this program is killed, the child ends soon, and it never writes to the disk.
    limit(RLIMIT_CPU, limits.milliseconds / 1000 + 1);
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 0);
#ifdef __linux__
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
}

QString number(double value)
{
    return QString::number(value, 'g', 17);
}

} // namespace

RenderProcess::RenderProcess(QString program, Limits limits) : program_(std::move(program)), limits_(limits)
{
}

QString RenderProcess::installedProgram()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/quillfern-render");
}

std::optional<PageImage> RenderProcess::page(const PageImageRequest& request)
{
    // Reading a pipe or a device could last until the time is up.
    if (!isShowable(request) || fileKind(request.path) != FileKind::Regular) return std::nullopt;
    const QDeadlineTimer deadline(limits_.milliseconds);
    const auto left = [&] { return static_cast<int>(std::max<qint64>(0, deadline.remainingTime())); };

    QProcess process;
    process.setProgram(program_);
    process.setArguments({QString::fromLatin1(request.path.url().toEncoded()), QString::number(request.page),
                          number(request.box.width()), number(request.box.height()), number(request.density),
                          request.visiblePage ? QStringLiteral("visible") : QStringLiteral("whole")});
    // The password goes where no other user of the machine can see it.
    if (request.password.isEmpty()) process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.setChildProcessModifier([this] { confine(limits_); });
    process.start();
    if (!request.password.isEmpty()) {
        process.write(request.password.toUtf8());
        process.closeWriteChannel();
    }

    const qint64 mostBytes = largestRenderReply(request);
    QByteArray reply;
    if (!process.waitForStarted(left())) {
        logLine(QStringLiteral("%1 cannot be started: %2").arg(program_, process.errorString()));
        return std::nullopt;
    }
    while (reply.size() <= mostBytes && process.waitForReadyRead(left()))
        reply += process.readAllStandardOutput();
    const int grace = reply.size() <= mostBytes ? left() : 0;
    if (process.state() != QProcess::NotRunning && !process.waitForFinished(grace)) {
        process.kill();
        process.waitForFinished(limits_.milliseconds);
        return std::nullopt;
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) return std::nullopt;
    reply += process.readAllStandardOutput();
    return decodeRenderReply(reply, request);
}

} // namespace quillfern::pageimages
