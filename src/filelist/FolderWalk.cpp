#include "filelist/FolderWalk.h"

#include "platform/system/FileIdentity.h"

#include <QCollator>
#include <QDir>
#include <QFileInfo>
#include <unordered_set>

namespace quillfern {

const QStringList& allowedFileTypes()
{
    static const QStringList types =
        QStringLiteral("pdf,PDF,tif,TIF,tiff,TIFF,bmp,BMP,jpg,JPG,jpeg,JPEG,png,PNG,gif,GIF").split(u',');
    return types;
}

bool hasAllowedType(const QString& path)
{
    return allowedFileTypes().contains(QFileInfo(path).suffix());
}

namespace {

class Walk
{
  public:
    explicit Walk(bool includeSubfolders) : includeSubfolders_(includeSubfolders)
    {
        // Without a language (a script's "C" locale) the collator knows no numbers and no case.
        if (QLocale().language() == QLocale::C) collator_.setLocale(QLocale(QLocale::English));
        collator_.setNumericMode(true);
        collator_.setCaseSensitivity(Qt::CaseInsensitive);
    }

    void folder(const QString& path)
    {
        const auto identity = fileIdentity(path);
        if (!identity || !seen_.insert(*identity).second) return;
        const QDir dir(path);
        for (const QString& name : sorted(dir.entryList(QDir::Files)))
            if (hasAllowedType(name)) files_.append(dir.filePath(name));
        if (!includeSubfolders_) return;
        for (const QString& name : sorted(dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot)))
            folder(dir.filePath(name));
    }

    [[nodiscard]] QStringList take() { return std::move(files_); }

  private:
    QStringList sorted(QStringList names) const
    {
        std::stable_sort(names.begin(), names.end(), collator_);
        return names;
    }

    bool includeSubfolders_;
    QCollator collator_;
    std::unordered_set<FileIdentity> seen_;
    QStringList files_;
};

} // namespace

QStringList filesInFolder(const QString& folder, bool includeSubfolders)
{
    Walk walk(includeSubfolders);
    walk.folder(folder);
    return walk.take();
}

} // namespace quillfern
