#pragma once

#include "config/Numbering.h"

#include <memory>

namespace quillfern {

/// The job configuration and the few options that live outside it. Main thread; a running job reads it.
class Settings
{
  public:
    explicit Settings(DefaultsStore* defaults = nullptr) : number(std::make_unique<Numbering>(defaults)) {}

    std::unique_ptr<Numbering> number; ///< never null
    bool isClearProcessedFiles = false;
    bool isOpenFolderAfterConversion = true;
    bool isSetCurrentAsDefaultOutputFolderPath = true; ///< the chosen output folder is remembered
    std::optional<QString> outputFolderPath = QString();
    std::optional<QString> pdfOpenPassword = QString(); ///< tried on protected files when they are added
};

} // namespace quillfern
