#include "app/AboutDialog.h"

#include "platform/system/Folders.h"

#include <QDialogButtonBox>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillfern {

AboutDialog::AboutDialog(QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("About %1").arg(getAppTitle()));
    auto* picture = new QLabel(this);
    picture->setPixmap(QIcon(QStringLiteral(":/quillfern.svg")).pixmap(QSize(96, 96), devicePixelRatioF()));
    picture->setAlignment(Qt::AlignCenter);
    auto* name = new QLabel(getAppTitle(), this);
    QFont large = name->font();
    large.setPointSizeF(large.pointSizeF() * 1.8);
    large.setBold(true);
    name->setFont(large);
    name->setAlignment(Qt::AlignCenter);
    auto* text = new QLabel(this);
    text->setTextFormat(Qt::PlainText);
    text->setAlignment(Qt::AlignCenter);
    text->setWordWrap(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    text->setText(tr("Version %1\n\nStamps page numbers, text and pictures onto PDF and picture files.\n\n"
                     "Licensed under the Apache License, Version 2.0.\n"
                     "Made with Qt %2, qpdf, HarfBuzz, libtiff, libjpeg-turbo and libdeflate, under their "
                     "own licences.")
                      .arg(QStringLiteral(QUILLFERN_VERSION), QString::fromLatin1(qVersion())));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setIcon({}); // the style's own icon is dark on a dark button
    buttons->button(QDialogButtonBox::Close)->setToolTip(tr("Close this window"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(28, 24, 28, 16);
    layout->setSpacing(10);
    layout->addWidget(picture);
    layout->addWidget(name);
    layout->addWidget(text);
    layout->addSpacing(6);
    layout->addWidget(buttons);
    setMinimumWidth(420);
}

} // namespace quillfern
