#pragma once

#include "app/CustomTableView.h"
#include "app/PreviewArea.h"
#include "dialogs/BusyIndicator.h"
#include "dialogs/FieldFormatters.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QToolButton>
#include <stdexcept>
#include <string>

namespace quillfern {

/// The controls of the main window, found by their object names, whichever pane owns them.
struct WindowControls
{
    explicit WindowControls(const QWidget& window) : window_(window) {}

    template <class Control>
    [[nodiscard]] Control* find(const char* name) const
    {
        auto* found = window_.findChild<Control*>(QString::fromLatin1(name));
        if (!found) throw std::runtime_error(std::string("the window has no ") + name);
        return found;
    }

  private:
    const QWidget& window_;

  public:
    QSplitter* splitter = find<QSplitter>("splitter");
    CustomTableView* mainTableView = find<CustomTableView>("mainTableView");
    QWidget* lableDragAndDrop = find<QWidget>("lableDragAndDrop");
    QLabel* labelTotalFiles = find<QLabel>("labelTotalFiles");
    QCheckBox* inculdeSubfoldersBtn = find<QCheckBox>("inculdeSubfoldersBtn");
    PreviewArea* previewArea = find<PreviewArea>("previewArea");
    QWidget* previewBox = find<QWidget>("previewBox");
    PreviewImageView* previewImageView = find<PreviewImageView>("previewImageView");
    QCheckBox* isHighlightStamp = find<QCheckBox>("isHighlightStamp");
    QCheckBox* isLivePreview = find<QCheckBox>("isLivePreview");
    QTabWidget* settingTabView = find<QTabWidget>("settingTabView");
    QTableView* stampsTableView = find<QTableView>("stampsTableView");
    NumberField* startPage = find<NumberField>("startPage");
    NumberField* endPage = find<NumberField>("endPage");
    QComboBox* pageRange = find<QComboBox>("pageRange");
    NumberField* startNumber = find<NumberField>("startNumber");
    NumberField* numberSteps = find<NumberField>("numberSteps");
    QCheckBox* isContinuousNumbering = find<QCheckBox>("isContinuousNumbering");
    QLineEdit* marginTop = find<QLineEdit>("marginTop");
    QLineEdit* marginLeft = find<QLineEdit>("marginLeft");
    QLineEdit* marginRight = find<QLineEdit>("marginRight");
    QLineEdit* marginBottom = find<QLineEdit>("marginBottom");
    QComboBox* unitsPopup = find<QComboBox>("unitsPopup");
    QLineEdit* outputFolderPath = find<QLineEdit>("outputFolderPath");
    QCheckBox* setCurrentAsDefaultOutputFolderPathBtn =
        find<QCheckBox>("setCurrentAsDefaultOutputFolderPathBtn");
    QCheckBox* openFolderAfterConversionBtn = find<QCheckBox>("openFolderAfterConversionBtn");
    QLabel* labelTimeTaken = find<QLabel>("labelTimeTaken");
    BusyIndicator* loadingIndicator = find<BusyIndicator>("loadingIndicator");
    QPushButton* cancelBtn = find<QPushButton>("cancelBtn");
    QPushButton* convertBtn = find<QPushButton>("convertBtn");
};

} // namespace quillfern
