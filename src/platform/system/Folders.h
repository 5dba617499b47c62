#pragma once

#include "platform/system/FilePath.h"

#include <QString>

namespace quillfern {

/// Where the application keeps its own files. An interface, so that tests write into folders of their own.
class Folders
{
  public:
    virtual ~Folders() = default;
    /// The per-user folder for data of applications; empty when the system names none.
    [[nodiscard]] virtual FilePath applicationSupport() const = 0;
    /// The per-user folder for configuration files; empty when the system names none.
    [[nodiscard]] virtual FilePath configuration() const = 0;

    /// The application's own folder, "Orvane/Quillfern1" below applicationSupport(); empty when that folder
    /// is.
    [[nodiscard]] FilePath getAppPath() const;

    /// Makes sure that the folder `name` exists below getAppPath(), creating what is missing on the way.
    /// Returns whether it exists afterwards; the reason of a failure goes to `error` when that is given.
    bool createApplicationUsersFolder(const QString& name, QString* error = nullptr) const;
};

/// The user's real folders: those of the XDG variables, where they name absolute paths, or else those in the
/// home folder that are usual.
class UserFolders final : public Folders
{
  public:
    [[nodiscard]] FilePath applicationSupport() const override;
    [[nodiscard]] FilePath configuration() const override;
};

/// The user's home folder; "/" when the system names none.
[[nodiscard]] FilePath homeFolder();

/// The application's display name followed by `suffix`; the title of every alert.
[[nodiscard]] QString getAppTitle(const QString& suffix = QString());

} // namespace quillfern
