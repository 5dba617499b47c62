#pragma once

#include "app/CustomTableView.h"
#include "app/PreviewArea.h"
#include "dialogs/BusyIndicator.h"
#include "dialogs/FieldFormatters.h"
#include "support/Widgets.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QToolButton>

namespace quillfern {

/// The controls of the main window, found by their object names, whichever pane owns them.
struct WindowControls
{
    const QWidget& window;
    QSplitter* splitter = &partOf<QSplitter>(window, "splitter");
    CustomTableView* mainTableView = &partOf<CustomTableView>(window, "mainTableView");
    QWidget* lableDragAndDrop = &partOf<QWidget>(window, "lableDragAndDrop");
    QLabel* labelTotalFiles = &partOf<QLabel>(window, "labelTotalFiles");
    QCheckBox* inculdeSubfoldersBtn = &partOf<QCheckBox>(window, "inculdeSubfoldersBtn");
    PreviewArea* previewArea = &partOf<PreviewArea>(window, "previewArea");
    QWidget* previewBox = &partOf<QWidget>(window, "previewBox");
    PreviewImageView* previewImageView = &partOf<PreviewImageView>(window, "previewImageView");
    QCheckBox* isHighlightStamp = &partOf<QCheckBox>(window, "isHighlightStamp");
    QCheckBox* isLivePreview = &partOf<QCheckBox>(window, "isLivePreview");
    QTabWidget* settingTabView = &partOf<QTabWidget>(window, "settingTabView");
    QTableView* stampsTableView = &partOf<QTableView>(window, "stampsTableView");
    NumberField* startPage = &partOf<NumberField>(window, "startPage");
    NumberField* endPage = &partOf<NumberField>(window, "endPage");
    QComboBox* pageRange = &partOf<QComboBox>(window, "pageRange");
    NumberField* startNumber = &partOf<NumberField>(window, "startNumber");
    NumberField* numberSteps = &partOf<NumberField>(window, "numberSteps");
    QCheckBox* isContinuousNumbering = &partOf<QCheckBox>(window, "isContinuousNumbering");
    QLineEdit* marginTop = &partOf<QLineEdit>(window, "marginTop");
    QLineEdit* marginLeft = &partOf<QLineEdit>(window, "marginLeft");
    QLineEdit* marginRight = &partOf<QLineEdit>(window, "marginRight");
    QLineEdit* marginBottom = &partOf<QLineEdit>(window, "marginBottom");
    QComboBox* unitsPopup = &partOf<QComboBox>(window, "unitsPopup");
    QLineEdit* outputFolderPath = &partOf<QLineEdit>(window, "outputFolderPath");
    QCheckBox* setCurrentAsDefaultOutputFolderPathBtn =
        &partOf<QCheckBox>(window, "setCurrentAsDefaultOutputFolderPathBtn");
    QCheckBox* openFolderAfterConversionBtn = &partOf<QCheckBox>(window, "openFolderAfterConversionBtn");
    QLabel* labelTimeTaken = &partOf<QLabel>(window, "labelTimeTaken");
    BusyIndicator* loadingIndicator = &partOf<BusyIndicator>(window, "loadingIndicator");
    QPushButton* cancelBtn = &partOf<QPushButton>(window, "cancelBtn");
    QPushButton* convertBtn = &partOf<QPushButton>(window, "convertBtn");
};

} // namespace quillfern
