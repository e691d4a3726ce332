#include "NyPreferencesQuilloServiceInstallation.h"

#include "NyQuilloServiceController.h"
#include "NyQuilloServiceSettings.h"

#include <NyFotoStartDirSelectionBox.h>
#include <NyInstallationSettings.h>
#include <NyLogger.h>

#include <QCheckBox>
#include <QGridLayout>
#include <QKeySequence>
#include <QLabel>

namespace
{
constexpr int indent = 20;
constexpr int bottomMargin = 5;
}

NyPreferencesQuilloServiceInstallation::NyPreferencesQuilloServiceInstallation(QWidget *parent)
    : NyPreferencesBox(parent, tr("Automatische Produktvorschläge"), NyPreferencesType::General)
{
    auto *pageGrid = new QGridLayout(this);
    m_autoStartCheckBox = new QCheckBox(tr("Ja, ich möchte automatische Produktvorschläge erhalten."), this);
    auto *folderLabel = new QLabel(tr("Ordner mit Ihren Fotos für Produktvorschläge"), this);
    m_photoFolderBox = NyFotoStartDirSelectionBox::create(this, false, true);
    folderLabel->setBuddy(m_photoFolderBox);

    auto *inner = new QWidget(parent);
    auto *innerGrid = new QGridLayout(inner);
    innerGrid->setContentsMargins(0, 0, 0, bottomMargin);
    innerGrid->setColumnMinimumWidth(0, indent);
    m_allowToastsCheckBox = new QCheckBox(tr("Bei neuen Produktvorschlägen benachrichtigen."), inner);

    innerGrid->addWidget(m_allowToastsCheckBox, 0, 1);
    innerGrid->addWidget(folderLabel, 1, 1);
    innerGrid->addWidget(m_photoFolderBox, 2, 1);
    pageGrid->addWidget(m_autoStartCheckBox, 0, 0, 1, 2);
    pageGrid->addWidget(inner, 1, 0, 1, 2);

    // Keys beside the texts, which are fixed and mark none.
    m_autoStartCheckBox->setShortcut(QKeySequence::fromString(tr("Alt+J", "key for the yes; no other control of the window has it")));
    m_allowToastsCheckBox->setShortcut(
        QKeySequence::fromString(tr("Alt+B", "key for notifications; no other control of the window has it")));

    // The keyboard goes from top to bottom, not in the order of construction.
    QWidget::setTabOrder(m_autoStartCheckBox, m_allowToastsCheckBox);
    QWidget::setTabOrder(m_allowToastsCheckBox, m_photoFolderBox);

    connect(m_autoStartCheckBox, &QCheckBox::stateChanged, m_allowToastsCheckBox,
        [this](int state) { m_allowToastsCheckBox->setEnabled(state != Qt::Unchecked); });
}

NyPreferencesQuilloServiceInstallation::~NyPreferencesQuilloServiceInstallation() = default;

void NyPreferencesQuilloServiceInstallation::writeToConfig()
{
    const bool autoStart = m_autoStartCheckBox->isChecked();
    if (autoStart)
        NyQuilloServiceController::unquitRunningService();
    else
        NyQuilloServiceController::quitRunningService();

    NyInstallationSettings &installation = NyInstallationSettings::instance();
    if (autoStart != installation.autoStartService()) {
        NyLogger::instance().logQuilloService(QStringLiteral("setAutoStartService VALUE:%1 SOURCE:settingswindow").arg(autoStart ? 1 : 0));
        installation.setAutoStartService(autoStart, false);
        installation.applyAutoStartServiceSetting();
        Q_EMIT quilloServiceSettings().searchHomeChanged();
    }
    quilloServiceSettings().setSearchHomeFolder(m_photoFolderBox->folder());
    quilloServiceSettings().setAllowToastMessages(m_allowToastsCheckBox->isChecked());
    quilloServiceSettings().saveSettings();
}

void NyPreferencesQuilloServiceInstallation::readFromConfig()
{
    m_autoStartCheckBox->setChecked(NyInstallationSettings::instance().autoStartService());
    m_photoFolderBox->setup(quilloServiceSettings().searchHomeFolder(), false, false);
    m_allowToastsCheckBox->setChecked(quilloServiceSettings().allowToastMessages());
    m_allowToastsCheckBox->setEnabled(NyInstallationSettings::instance().autoStartService());
}

NyQuilloServiceSettings &NyPreferencesQuilloServiceInstallation::quilloServiceSettings() const
{
    return NySingleton<NyQuilloServiceSettings>::instance();
}
