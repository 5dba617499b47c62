#include "dialogs/WidgetAlerts.h"

#include "platform/system/Folders.h"

#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <map>

namespace quillfern {

namespace {

QMessageBox::StandardButton ask(QObject* over, QMessageBox::Icon icon, QString message,
                                QMessageBox::StandardButtons buttons, QMessageBox::StandardButton byDefault,
                                QMessageBox::StandardButton onEscape,
                                const std::map<QMessageBox::StandardButton, QString>& titles = {})
{
    message.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\r', u'\n');
    auto* const widget = qobject_cast<QWidget*>(over);
    // The window may be deleted while its alert is open, and deletes the box with it.
    const QPointer box =
        new QMessageBox(icon, getAppTitle(), message, buttons, widget ? widget->window() : nullptr);
    box->setTextFormat(Qt::PlainText);
    box->setWindowModality(Qt::WindowModal);
    box->setDefaultButton(byDefault);
    box->setEscapeButton(onEscape);
    for (const auto& [button, title] : titles)
        box->button(button)->setText(title);
    box->exec();
    if (!box) return onEscape;
    const QMessageBox::StandardButton answer = box->standardButton(box->clickedButton());
    delete box;
    return answer;
}

void tell(QObject* over, QMessageBox::Icon icon, const QString& message)
{
    ask(over, icon, message, QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok);
}

} // namespace

void WidgetAlerts::critical(QObject* over, const QString& message)
{
    tell(over, QMessageBox::Critical, message);
}

void WidgetAlerts::information(QObject* over, const QString& message)
{
    tell(over, QMessageBox::Information, message);
}

bool WidgetAlerts::confirm(QObject* over, const QString& message)
{
    return ask(over, QMessageBox::Question, message, QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes,
               QMessageBox::No) == QMessageBox::Yes;
}

desktop::QuitChoice WidgetAlerts::chooseToQuit(QObject* over, const QString& message)
{
    const auto answer = ask(
        over, QMessageBox::Warning, message, QMessageBox::Retry | QMessageBox::Discard | QMessageBox::Cancel,
        QMessageBox::Retry, QMessageBox::Cancel,
        {{QMessageBox::Retry, tr("Try Again")}, {QMessageBox::Discard, tr("Quit Anyway")}});
    switch (answer) {
    case QMessageBox::Retry:
        return desktop::QuitChoice::TryAgain;
    case QMessageBox::Discard:
        return desktop::QuitChoice::QuitAnyway;
    default:
        return desktop::QuitChoice::Stay;
    }
}

} // namespace quillfern
