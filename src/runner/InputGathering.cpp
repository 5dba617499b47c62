#include "runner/InputGathering.h"

#include "filelist/AllowedFileTypes.h"
#include "filelist/PathListParser.h"
#include "platform/system/FileFacts.h"
#include "platform/system/NativePath.h"
#include "platform/system/Terminal.h"
#include "runner/Worker.h"

namespace quillfern {

namespace {

/// Adds a path to the last request, or to a new one when the last request is of the other kind.
void addTo(std::vector<Arguments>& requests, const FilePath& path, bool isFolder, bool subfolders)
{
    if (requests.empty() || requests.back().isFolders != isFolder)
        requests.push_back({{}, isFolder, subfolders});
    requests.back().urls.append(path);
}

void readList(PathListParser& parser, const QString& list, const std::function<bool()>& goOn)
{
    if (list != standardInput) {
        if (!parser.parseFile(FilePath::fromText(list)))
            throw WrongUse(QStringLiteral("the list \"%1\" cannot be read").arg(readableName(list)));
        return;
    }
    try {
        parser.parseBytes(readStandardInput(PathListParser::largestList, goOn));
    } catch (const Failure& failure) {
        throw WrongUse(failure.reasons());
    }
}

QList<FilePath> filesOfList(const QString& list, const std::function<bool()>& goOn,
                            std::vector<Remark>& remarks)
{
    PathListParser parser(allowedFileTypes().join(u','));
    readList(parser, list, goOn);
    const QString name =
        list == standardInput ? QStringLiteral("standard input") : u'"' + readableName(list) + u'"';
    const QString left =
        parser.carriageReturns() == 0
            ? QString()
            : QStringLiteral(
                  "%1 line(s) end with a carriage return, as in texts from Windows, and are left out")
                  .arg(parser.carriageReturns());
    if (parser.files().isEmpty() && goOn())
        throw WrongUse(QStringLiteral("the list %1 names no PDF, TIFF, BMP, JPEG, PNG or GIF file%2")
                           .arg(name, left.isEmpty() ? left : QStringLiteral("; ") + left));
    if (!left.isEmpty())
        remarks.push_back({"lines-left-out", QStringLiteral("In the list %1 %2.").arg(name, left)});
    return parser.files();
}

} // namespace

std::vector<Arguments> requestsFor(const RunnerOptions& options, const std::function<bool()>& goOn,
                                   std::vector<Remark>& remarks)
{
    std::vector<Arguments> requests;
    for (const QString& input : options.inputs) {
        const FilePath path = FilePath::fromText(input);
        const FileKind kind = fileKind(path);
        const QString name = readableName(input);
        if (kind == FileKind::Missing)
            throw WrongUse(QStringLiteral("there is no file or folder \"%1\"").arg(name));
        if (kind != FileKind::Folder && !allowedFileTypes().contains(path.extension().toLower()))
            throw WrongUse(QStringLiteral("\"%1\" is not a PDF, TIFF, BMP, JPEG, PNG or GIF file").arg(name));
        addTo(requests, path, kind == FileKind::Folder, options.subfolders);
    }
    for (const QString& list : options.lists)
        for (const FilePath& path : filesOfList(list, goOn, remarks))
            addTo(requests, path, false, false);
    return requests;
}

void InputGathering::gather(const std::vector<Arguments>& requests, const std::function<bool()>& goOn)
{
    for (const Arguments& request : requests) {
        if (!goOn()) return;
        runOnWorker([&] { gatherer_.loadURLs(request, QString()); },
                    [&] {
                        if (!goOn()) isProcessing_ = false;
                    });
    }
}

} // namespace quillfern
