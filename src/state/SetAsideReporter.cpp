#include "SetAsideReporter.h"

#include "model/LogManager.h"
#include "platform/AlertPresenter.h"
#include "platform/SetAsideNotices.h"

SetAsideReporter::SetAsideReporter(AlertPresenter &presenter, QObject *parent)
    : QObject(parent), m_presenter(presenter)
{
    connect(&SetAsideNotices::shared(), &SetAsideNotices::reported, this, &SetAsideReporter::tell);
}

void SetAsideReporter::tell(const SetAsideCopy &copy)
{
    if (m_told.contains(copy.copyPath))
        return;
    m_told.insert(copy.copyPath);
    Alert alert;
    alert.style = Alert::Style::warning;
    alert.buttons = {tr("OK")};
    switch (copy.reason) {
    case SetAsideCopy::Reason::undecodableList:
        alert.title = tr("Your computer list could not be read");
        alert.text = tr("The computer list stored in Telvane's settings could not be read, so it "
                        "is not shown. A copy of the settings file was kept at:\n\n%1\n\nThe "
                        "next change to your computer list replaces the stored one; the copy "
                        "stays.")
                         .arg(copy.copyPath);
        break;
    case SetAsideCopy::Reason::unparseableFile:
        LogManager::shared().log(
            QStringLiteral("The shared settings file could not be read; it was moved aside to ") +
                copy.copyPath,
            QStringLiteral("PERSISTENCE"));
        alert.title = tr("Telvane's settings file could not be read");
        alert.text = tr("It was moved aside, unchanged, to:\n\n%1\n\nTelvane starts with a new "
                        "file: your computer list is empty.")
                         .arg(copy.copyPath);
        break;
    }
    m_presenter.show(alert, [](int) {});
}
